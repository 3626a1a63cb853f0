#include "frames.h"
#include "ratio.h"

#include "analysis/result_reader.h"
#include "analysis/solver_input.h"
#include "base/message.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "geometry/solid.h"
#include "model/lookup.h"

#include <charconv>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace kigumi::bench {
namespace {

void nothing() {}

// Reads every number of a text and passes over every other word.
double sum_of_numbers(std::string_view text) {
    double sum = 0.0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at < end) {
        float value = 0.0f;
        const auto [next, fault] = std::from_chars(at, end, value);
        if (fault == std::errc()) {
            sum += static_cast<double>(value);
            at = next;
        } else {
            ++at;
        }
    }
    return sum;
}

// The generators beside writing the same records once into the tables.
void generators(benchmark::State& state) {
    set_floor(full_cells);
    generate_floor();
    const std::vector<Node> nodes(model.node.begin(), model.node.begin() + model.N_Node);
    const std::vector<Beam> beams(model.beam.begin(), model.beam.begin() + model.N_Beam);
    compare(state, 10.0, nothing, generate_floor, [&] {
        std::copy(nodes.begin(), nodes.end(), model.node.begin());
        std::copy(beams.begin(), beams.end(), model.beam.begin());
        benchmark::ClobberMemory();
    });
    state.counters["members"] = model.N_Beam;
}
BENCHMARK(generators)->UseManualTime();

// Reading axis data beside reading the numbers in the same bytes.
void axis_reader(benchmark::State& state) {
    make_floor(full_cells);
    const fs::path path = work_file("bench.jik");
    save_jiku_data(path, {});
    const std::string bytes = *read_file(path);
    compare(
        state, 3.0, reset_model, [&] { load_jiku_data(path); },
        [&] { benchmark::DoNotOptimize(sum_of_numbers(bytes)); });
    state.counters["members"] = model.N_Beam;
}
BENCHMARK(axis_reader)->UseManualTime();

// Writing axis data beside the same printf calls into memory.
void axis_writer(benchmark::State& state) {
    make_floor(full_cells);
    const fs::path path = work_file("bench.jik");
    const auto text = std::make_unique<char[]>(1 << 22);
    compare(
        state, 3.0, nothing, [&] { save_jiku_data(path, {}); },
        [&] {
            char* at = text.get();
            for (int i = 0; i < model.N_Beam; ++i) {
                const Beam& b = model.beam[i];
                at += std::snprintf(at, 256, "1 %f %f %f %f %f %f %f %f\r\n", b.xs, b.ys, b.zs,
                                    b.xl, b.yl, b.zl, b.haba, b.atumi);
            }
            benchmark::DoNotOptimize(text.get());
        });
}
BENCHMARK(axis_writer)->UseManualTime();

// Writing solver input beside the same printf calls for its members and nodes into memory.
void solver_input(benchmark::State& state) {
    make_floor(full_cells);
    const fs::path path = work_file("bench.bon");
    const auto text = std::make_unique<char[]>(1 << 22);
    compare(
        state, 3.0, nothing, [&] { save_honegumi(path); },
        [&] {
            char* at = text.get();
            for (int i = 0; i < model.N_Beam; ++i) {
                const Beam& b = model.beam[i];
                at += std::snprintf(at, 256, " %5d %5d %5d %5d %5d %10.1f %9s %9s\r\n", b.no, b.noi,
                                    b.noj, b.size, b.mat, 0.0, b.idi, b.idj);
            }
            for (int i = 0; i < model.N_Node; ++i) {
                const Node& n = model.node[i];
                at += std::snprintf(at, 256, " %5d %12.5e %12.5e %12.5e %s\r\n", n.no, n.x, n.y,
                                    n.z, n.id);
            }
            benchmark::DoNotOptimize(text.get());
        });
}
BENCHMARK(solver_input)->UseManualTime();

// Reading the results of about 3000 members beside reading the numbers in the same bytes.
void result_reader(benchmark::State& state) {
    const ResultFiles files = make_result_files();
    compare(
        state, 3.0, nothing,
        [&] {
            if (read_frameslv(files.listing) < 0 || read_dsp(files.displacements) < 0) {
                state.SkipWithError("the results were refused");
            }
        },
        [&] {
            benchmark::DoNotOptimize(sum_of_numbers(files.listing));
            benchmark::DoNotOptimize(sum_of_numbers(files.displacements));
        });
}
BENCHMARK(result_reader)->UseManualTime();

// Building the triangles and their file beside writing the file's bytes to the page cache.
void triangles(benchmark::State& state) {
    make_floor(full_cells);
    build_trio_file();
    const std::string bytes = *read_file(work_file("TRIO.DAT"));
    compare(
        state, 5.0,
        [] {
            reset_solids();
            clear_points();
        },
        [] { build_trio_file(); }, [&] { save_file(work_file("bytes.dat"), bytes, false); });
    state.counters["megabytes"] = static_cast<double>(bytes.size()) / (1 << 20);
}
BENCHMARK(triangles)->UseManualTime();

// Work that must grow with the members: at most 2.3 times as long for twice as many.
struct Growing {
    const char* name;
    void (*work)();
};

const Growing growing[] = {
    {"growth/generate", generate_floor},
    {"growth/rebuild_tables", [] { rebuild_tables(); }},
    {"growth/sort_node", [] { sort_node(); }},
    {"growth/save_jiku", [] { save_jiku_data(work_file("growth.jik"), {}); }},
    {"growth/load_jiku",
     [] {
         reset_model();
         load_jiku_data(work_file("growth.jik"));
         rebuild_tables();
     }},
    {"growth/save_honegumi", [] { save_honegumi(work_file("growth.bon")); }},
    {"growth/save_honegra", [] { save_honegra(work_file("growth.ydu")); }},
    {"growth/make_men", [] { make_men(); }},
    {"growth/save_trio_file", [] { save_trio_file(); }},
};

// Waits for the disk are not what grows.
double processor_seconds_of(void (*work)()) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void grow(benchmark::State& state, const Growing& what) {
    double times[3] = {};
    double members[3] = {};
    for (auto _ : state) {
        for (int size = 0; size < 3; ++size) {
            make_floor(cells_of[size]);
            make_men();
            save_jiku_data(work_file("growth.jik"), {});
            times[size] = processor_seconds_of(what.work);
            for (int run = 0; run < 30; ++run) {
                times[size] = std::min(times[size], processor_seconds_of(what.work));
            }
            members[size] = model.N_Beam;
        }
        state.SetIterationTime(times[2]);
    }
    // As for exactly twice as many members: the sizes differ by a factor of a little less.
    const auto doubled = [&](int from) {
        return times[from + 1] / times[from] * 2.0 / (members[from + 1] / members[from]);
    };
    state.counters["ms_2560"] = times[0] * 1e3;
    state.counters["ms_4968"] = times[1] * 1e3;
    state.counters["ms_9768"] = times[2] * 1e3;
    state.counters["doubled_1"] = doubled(0);
    state.counters["doubled_2"] = doubled(1);
}

// Removes the working directory when the measurements are over.
struct WorkFolder {
    WorkFolder() {
        work_dir() = fs::temp_directory_path() / "kigumi-bench";
        fs::create_directories(work_dir());
    }
    ~WorkFolder() {
        std::error_code ignored;
        fs::remove_all(work_dir(), ignored);
    }
};

} // namespace
} // namespace kigumi::bench

int main(int argc, char** argv) {
    using namespace kigumi::bench;
    const WorkFolder folder;
    for (const Growing& what : growing) {
        benchmark::RegisterBenchmark(what.name, grow, what)->UseManualTime()->Iterations(1);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
