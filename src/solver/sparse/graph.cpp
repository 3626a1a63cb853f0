#include "solver/sparse/graph.h"

#include <algorithm>

namespace frameslv {

Graph make_graph(int count, std::span<const Edge> edges) {
    const size_t n = static_cast<size_t>(count);
    std::vector<std::int64_t> at(n + 1, 0);
    const auto each_end = [&](auto act) {
        for (const auto& [a, b] : edges)
            if (a >= 0 && b >= 0 && a != b) {
                act(static_cast<size_t>(a), b);
                act(static_cast<size_t>(b), a);
            }
    };
    each_end([&](size_t from, int) { at[from + 1]++; });
    for (size_t v = 0; v < n; v++)
        at[v + 1] += at[v];
    Graph graph;
    graph.next.resize(static_cast<size_t>(at[n]));
    std::vector<std::int64_t> fill(at.begin(), at.end() - 1);
    each_end([&](size_t from, int to) { graph.next[static_cast<size_t>(fill[from]++)] = to; });
    graph.start.resize(n + 1);
    auto out = graph.next.begin();
    for (size_t v = 0; v < n; v++) {
        const auto first = graph.next.begin() + at[v];
        const auto last = graph.next.begin() + at[v + 1];
        std::sort(first, last);
        out = std::copy(first, std::unique(first, last), out);
        graph.start[v + 1] = out - graph.next.begin();
    }
    graph.next.resize(static_cast<size_t>(out - graph.next.begin()));
    return graph;
}

} // namespace frameslv
