// The hidden-line removal beside one pass over the triangles, from the default viewpoint, and how
// it grows with the members.
#include "frames.h"
#include "ratio.h"

#include "sight/hidden_line.h"

#include <sys/resource.h>

#include <cmath>
#include <ctime>

namespace kigumi::bench {
namespace {

constexpr int cells_of_1000_3000_10000[] = {10, 17, 33}; // 1120, 2856 and 9768 members

ViewCoefficients default_viewpoint() {
    const View start;
    return view_coefficients(start.Rho, start.Theta, start.Phi);
}

// Projects every vertex.
double pass_over_triangles(const Solids& solids, const ViewCoefficients& v) {
    double sum = 0.0;
    for (const Trio& trio : solids.trio) {
        for (const float(&p)[3] : trio.vertex) {
            const EyePoint eye = to_eye(v, p[0], p[1], p[2]);
            sum += eye.xe / eye.ze + eye.ye / eye.ze;
        }
    }
    return sum;
}

double megabytes_used() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// Wall time with two threads.
void hidden_lines(benchmark::State& state) {
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    Solids& solids = place.project->solids;
    make_floor(model, param, cells_of_1000_3000_10000[state.range(0)]);
    make_men(model, solids);
    const ViewCoefficients v = default_viewpoint();
    HiddenLineOptions options;
    options.threads = 2;
    std::size_t lines = 0;
    constexpr double bound = 50.0;
    compare(
        state, bound, [] {}, [&] { lines = remove_hidden_lines(solids.trio, v, options)->size(); },
        [&] { benchmark::DoNotOptimize(pass_over_triangles(solids, v)); });
    state.counters["members"] = model.N_Beam;
    state.counters["lines"] = static_cast<double>(lines);
    state.counters["MB_process"] = megabytes_used();
}
BENCHMARK(hidden_lines)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMillisecond);

// Processor time with one thread, and the powers of the members with which it grows.
void hidden_lines_growth(benchmark::State& state) {
    const Workplace place;
    Model& model = place.project->model;
    Param& param = place.project->param;
    Solids& solids = place.project->solids;
    const ViewCoefficients v = default_viewpoint();
    HiddenLineOptions options;
    options.threads = 1;
    constexpr int runs = 15;
    double shortest[3];
    double members[3];
    for (auto _ : state) {
        for (int size = 0; size < 3; ++size) {
            make_floor(model, param, cells_of_1000_3000_10000[size]);
            reset_solids(solids);
            clear_points(solids);
            make_men(model, solids);
            members[size] = model.N_Beam;
            shortest[size] = 1e9;
            for (int run = 0; run < runs; ++run) {
                const std::clock_t start = std::clock();
                benchmark::DoNotOptimize(remove_hidden_lines(solids.trio, v, options));
                const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
                shortest[size] = std::min(shortest[size], seconds);
            }
        }
        state.SetIterationTime(shortest[2]);
    }
    const auto power = [&](int from) {
        return std::log(shortest[from + 1] / shortest[from]) /
               std::log(members[from + 1] / members[from]);
    };
    state.counters["ms_1120"] = shortest[0] * 1e3;
    state.counters["ms_2856"] = shortest[1] * 1e3;
    state.counters["ms_9768"] = shortest[2] * 1e3;
    state.counters["power_1"] = power(0);
    state.counters["power_2"] = power(1);
    state.counters["bound"] = 1.3;
}
BENCHMARK(hidden_lines_growth)->UseManualTime()->Iterations(1);

} // namespace
} // namespace kigumi::bench
