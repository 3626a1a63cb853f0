#include "frames.h"
#include "ratio.h"

#include "analysis/result_reader.h"
#include "analysis/solver_input.h"
#include "base/message.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/nodes.h"
#include "model/sections.h"
#include "solid/solid.h"

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
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    set_floor(param, full_cells);
    generate_floor(model, param);
    const std::vector<Node> nodes(model.node.begin(), model.node.begin() + model.N_Node);
    const std::vector<Beam> beams(model.beam.begin(), model.beam.begin() + model.N_Beam);
    compare(
        state, 10.0, nothing, [&] { generate_floor(model, param); },
        [&] {
            std::copy(nodes.begin(), nodes.end(), model.node.begin());
            std::copy(beams.begin(), beams.end(), model.beam.begin());
            benchmark::ClobberMemory();
        });
    state.counters["members"] = model.N_Beam;
}
BENCHMARK(generators)->UseManualTime();

// Reading axis data beside reading the numbers in the same bytes.
void axis_reader(benchmark::State& state) {
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    const fs::path& work_dir = place.project->work_dir;
    make_floor(model, param, full_cells);
    const fs::path path = work_file(work_dir, "bench.jik");
    save_jiku_data(model, path, {});
    const std::string bytes = *read_file(path);
    compare(
        state, 3.0, [&] { reset_model(model); },
        [&] { load_jiku_data(model, place.project->solids, work_dir, path); },
        [&] { benchmark::DoNotOptimize(sum_of_numbers(bytes)); });
    state.counters["members"] = model.N_Beam;
}
BENCHMARK(axis_reader)->UseManualTime();

// Writing axis data beside the same printf calls into memory.
void axis_writer(benchmark::State& state) {
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    const fs::path& work_dir = place.project->work_dir;
    make_floor(model, param, full_cells);
    const fs::path path = work_file(work_dir, "bench.jik");
    const auto text = std::make_unique<char[]>(1 << 22);
    compare(
        state, 3.0, nothing, [&] { save_jiku_data(model, path, {}); },
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
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    const fs::path& work_dir = place.project->work_dir;
    make_floor(model, param, full_cells);
    const fs::path path = work_file(work_dir, "bench.bon");
    const auto text = std::make_unique<char[]>(1 << 22);
    compare(
        state, 3.0, nothing, [&] { save_honegumi(model, path); },
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
    const Workplace place;
    Result& result = place.project->result;
    const ResultFiles files = make_result_files(place.project->model, place.project->param);
    compare(
        state, 3.0, nothing,
        [&] {
            if (read_frameslv(result, files.listing) < 0 ||
                read_dsp(result, files.displacements) < 0) {
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
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    Solids& solids = place.project->solids;
    const fs::path& work_dir = place.project->work_dir;
    make_floor(model, param, full_cells);
    build_trio_file(model, solids, work_dir);
    const std::string bytes = *read_file(work_file(work_dir, "TRIO.DAT"));
    compare(
        state, 5.0,
        [&] {
            reset_solids(solids);
            clear_points(solids);
        },
        [&] { build_trio_file(model, solids, work_dir); },
        [&] { save_file(work_file(work_dir, "bytes.dat"), bytes, nullptr, Sync::no); });
    state.counters["megabytes"] = static_cast<double>(bytes.size()) / (1 << 20);
}
BENCHMARK(triangles)->UseManualTime();

// Work that must grow with the members: at most 2.3 times as long for twice as many.
struct Growing {
    const char* name;
    void (*work)(Project& project);
};

fs::path growth_file(const Project& project) {
    return work_file(project.work_dir, "growth.jik");
}

const Growing growing[] = {
    {"growth/generate", [](Project& project) { generate_floor(project.model, project.param); }},
    {"growth/rebuild_tables", [](Project& project) { rebuild_tables(project.model); }},
    {"growth/sort_node", [](Project& project) { sort_node(project.model); }},
    {"growth/save_jiku",
     [](Project& project) { save_jiku_data(project.model, growth_file(project), {}); }},
    {"growth/load_jiku",
     [](Project& project) {
         reset_model(project.model);
         load_jiku_data(project.model, project.solids, project.work_dir, growth_file(project));
         rebuild_tables(project.model);
     }},
    {"growth/save_honegumi",
     [](Project& project) {
         save_honegumi(project.model, work_file(project.work_dir, "growth.bon"));
     }},
    {"growth/save_honegra",
     [](Project& project) {
         save_honegra(project.model, work_file(project.work_dir, "growth.ydu"));
     }},
    {"growth/make_men", [](Project& project) { make_men(project.model, project.solids); }},
    {"growth/save_trio_file",
     [](Project& project) { save_trio_file(project.solids, project.work_dir); }},
};

// Waits for the disk are not what grows.
double processor_seconds_of(const Growing& what, Project& project) {
    const std::clock_t start = std::clock();
    what.work(project);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void grow(benchmark::State& state, const Growing& what) {
    const Workplace place;
    Project& project = *place.project;
    double times[3] = {};
    double members[3] = {};
    for (auto _ : state) {
        for (int size = 0; size < 3; ++size) {
            make_floor(project.model, project.param, cells_of[size]);
            reset_solids(project.solids);
            clear_points(project.solids);
            make_men(project.model, project.solids);
            save_jiku_data(project.model, growth_file(project), {});
            times[size] = processor_seconds_of(what, project);
            for (int run = 0; run < 30; ++run) {
                times[size] = std::min(times[size], processor_seconds_of(what, project));
            }
            members[size] = project.model.N_Beam;
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

} // namespace
} // namespace kigumi::bench

int main(int argc, char** argv) {
    using namespace kigumi::bench;
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
