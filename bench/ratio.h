// Times a piece of work beside a yardstick.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

namespace kigumi::bench {

inline double seconds_of(auto&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Runs `work` and `yardstick` by turns and reports the ratio of their shortest times, which other
// load on the machine disturbs least, as the counter "ratio" beside the bound it must keep.
// `prepare` runs before each of them, untimed.
template <class Prepare, class Work, class Yardstick>
void compare(benchmark::State& state, double bound, Prepare prepare, Work work,
             Yardstick yardstick) {
    double shortest_work = 1e9;
    double shortest_yardstick = 1e9;
    for (auto _ : state) {
        prepare();
        shortest_yardstick = std::min(shortest_yardstick, seconds_of(yardstick));
        prepare();
        const double seconds = seconds_of(work);
        shortest_work = std::min(shortest_work, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["yardstick_ms"] = shortest_yardstick * 1e3;
    state.counters["ms"] = shortest_work * 1e3;
    state.counters["ratio"] = shortest_work / shortest_yardstick;
    state.counters["bound"] = bound;
}

} // namespace kigumi::bench
