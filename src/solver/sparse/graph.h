// The neighbourhood of the nodes: which of them members join.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace frameslv {

// An undirected graph without loops: the neighbours of every vertex, ascending, each once.
struct Graph {
    std::vector<std::int64_t> start{0}; // vertex count + 1
    std::vector<int> next;

    int size() const { return static_cast<int>(start.size()) - 1; }
    std::span<const int> neighbours(int vertex) const {
        const auto first = static_cast<size_t>(start[static_cast<size_t>(vertex)]);
        const auto last = static_cast<size_t>(start[static_cast<size_t>(vertex) + 1]);
        return {next.data() + first, last - first};
    }
};

using Edge = std::pair<int, int>;

// The graph of `count` vertices with these edges; edges may repeat, in either direction. An edge of
// which an end is negative is left out.
Graph make_graph(int count, std::span<const Edge> edges);

} // namespace frameslv
