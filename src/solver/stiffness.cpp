#include "solver/stiffness.h"

#include <algorithm>
#include <utility>

namespace frameslv {

namespace {

using Pair = std::pair<int, int>; // row, column

// Columns of sorted rows without repetition from pairs with row < column.
NodeGraph graph_of(const std::vector<Pair>& pairs, size_t count) {
    NodeGraph graph;
    std::vector<int> at(count + 1, 0);
    for (const Pair& pair : pairs)
        at[static_cast<size_t>(pair.second) + 1]++;
    for (size_t j = 0; j < count; j++)
        at[j + 1] += at[j];
    std::vector<int> rows(pairs.size());
    std::vector<int> fill(at.begin(), at.end() - 1);
    for (const Pair& pair : pairs)
        rows[static_cast<size_t>(fill[static_cast<size_t>(pair.second)]++)] = pair.first;
    graph.start.reserve(count + 1);
    graph.row.reserve(pairs.size());
    graph.start.push_back(0);
    for (size_t j = 0; j < count; j++) {
        const auto first = rows.begin() + at[j];
        const auto last = rows.begin() + at[j + 1];
        std::sort(first, last);
        graph.row.insert(graph.row.end(), first, std::unique(first, last));
        graph.start.push_back(static_cast<int>(graph.row.size()));
    }
    graph.repeated = pairs.size() - graph.row.size();
    return graph;
}

// Fills the upper triangle. The columns of one node are alike: the free unknowns of its earlier
// neighbours, then its own.
class Assembler {
  public:
    Assembler(const NodeGraph& graph, const Unknowns& unknowns)
        : unknowns_(unknowns), rank_(unknowns.order.size()) {
        for (size_t k = 0; k < rank_.size(); k++)
            rank_[static_cast<size_t>(unknowns.order[k])] = static_cast<int>(k);
        reorder(graph);
        lay_out();
    }

    void add(const Member& member, const StiffnessBlocks& blocks) {
        const size_t i = index_of(member.noi);
        const size_t j = index_of(member.noj);
        add_own(i, blocks.ii);
        add_own(j, blocks.jj);
        if (rank_[i] < rank_[j])
            add_pair(i, j, blocks.ij);
        else
            add_pair(j, i, blocks.ij.transpose());
    }

    SymmetricMatrix take() { return std::move(matrix_); }

  private:
    void reorder(const NodeGraph& graph);
    void lay_out();
    void add_own(size_t node, const Matrix6& block);
    void add_pair(size_t row_node, size_t column_node, const Matrix6& block);
    // The free unknowns of a node, ascending.
    template <class Act> void for_free(size_t node, Act act) const {
        for (size_t k = 0; k < dof_count; k++)
            if (unknowns_.of_node[node][k] != Unknowns::none)
                act(unknowns_.of_node[node][k], static_cast<Eigen::Index>(k));
    }
    std::int64_t& start(int column) { return matrix_.start[static_cast<size_t>(column)]; }

    const Unknowns& unknowns_;
    std::vector<int> rank_;        // place of a node in the order
    NodeGraph graph_;              // the node graph with places as vertices
    std::vector<int> rows_before_; // for each entry of graph_: unknowns above it in its column
    SymmetricMatrix matrix_;
};

void Assembler::reorder(const NodeGraph& graph) {
    std::vector<Pair> pairs;
    pairs.reserve(graph.row.size());
    for (size_t j = 0; j + 1 < graph.start.size(); j++)
        for (int k = graph.start[j]; k < graph.start[j + 1]; k++) {
            const int a = rank_[static_cast<size_t>(graph.row[static_cast<size_t>(k)])];
            const int b = rank_[j];
            pairs.emplace_back(std::min(a, b), std::max(a, b));
        }
    graph_ = graph_of(pairs, rank_.size());
}

void Assembler::lay_out() {
    const auto node_at = [this](int place) {
        return static_cast<size_t>(unknowns_.order[static_cast<size_t>(place)]);
    };
    matrix_.n = unknowns_.count();
    matrix_.start.reserve(static_cast<size_t>(matrix_.n) + 1);
    matrix_.start.push_back(0);
    rows_before_.reserve(graph_.row.size());
    std::vector<int> rows;
    for (size_t place = 0; place < rank_.size(); place++) {
        rows.clear();
        for (int k = graph_.start[place]; k < graph_.start[place + 1]; k++) {
            rows_before_.push_back(static_cast<int>(rows.size()));
            for_free(node_at(graph_.row[static_cast<size_t>(k)]),
                     [&](int row, Eigen::Index) { rows.push_back(row); });
        }
        for_free(node_at(static_cast<int>(place)), [&](int column, Eigen::Index) {
            rows.push_back(column);
            matrix_.row.insert(matrix_.row.end(), rows.begin(), rows.end());
            matrix_.start.push_back(static_cast<std::int64_t>(matrix_.row.size()));
        });
    }
    matrix_.value.assign(matrix_.row.size(), 0.0);
}

void Assembler::add_own(size_t node, const Matrix6& block) {
    for_free(node, [&](int column, Eigen::Index c) {
        // The node's own rows end the column, the diagonal last.
        std::int64_t at = start(column + 1) - 1;
        for_free(node, [&](int row, Eigen::Index r) {
            if (row <= column)
                matrix_.value[static_cast<size_t>(at - (column - row))] += block(r, c);
        });
    });
}

void Assembler::add_pair(size_t row_node, size_t column_node, const Matrix6& block) {
    const size_t place = static_cast<size_t>(rank_[column_node]);
    const auto first = graph_.row.begin() + graph_.start[place];
    const auto last = graph_.row.begin() + graph_.start[place + 1];
    const auto found = std::lower_bound(first, last, rank_[row_node]);
    const int before = rows_before_[static_cast<size_t>(found - graph_.row.begin())];
    for_free(column_node, [&](int column, Eigen::Index c) {
        size_t at = static_cast<size_t>(start(column) + before);
        for_free(row_node, [&](int, Eigen::Index r) { matrix_.value[at++] += block(r, c); });
    });
}

} // namespace

NodeGraph make_node_graph(const Model& model) {
    std::vector<Pair> pairs;
    pairs.reserve(model.member.size());
    for (const Member& member : model.member)
        pairs.emplace_back(std::min(member.noi, member.noj) - 1,
                           std::max(member.noi, member.noj) - 1);
    return graph_of(pairs, model.node.size());
}

Unknowns number_unknowns(const Model& model, const NodeGraph& graph) {
    Unknowns unknowns;
    unknowns.order = order_vertices(graph.start, graph.row);
    unknowns.of_node.resize(model.node.size());
    unknowns.place.reserve(model.node.size() * dof_count);
    for (const int vertex : unknowns.order) {
        const size_t node = static_cast<size_t>(vertex);
        for (size_t k = 0; k < dof_count; k++) {
            unknowns.of_node[node][k] =
                model.node[node].held[k] ? Unknowns::none : unknowns.count();
            if (!model.node[node].held[k])
                unknowns.place.push_back({node, k});
        }
    }
    return unknowns;
}

SymmetricMatrix assemble(const Model& model, const std::vector<Element>& elements,
                         const NodeGraph& graph, const Unknowns& unknowns) {
    Assembler assembler(graph, unknowns);
    for (size_t i = 0; i < elements.size(); i++)
        assembler.add(model.member[i], stiffness_blocks(elements[i]));
    return assembler.take();
}

} // namespace frameslv
