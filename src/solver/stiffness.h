// Unknowns, their order, and the stiffness matrix of the frame.
#pragma once

#include "solver/element.h"
#include "solver/sparse.h"

#include <array>

namespace frameslv {

// The neighbourhood of the nodes: every pair joined by at least one member, once. Column j holds
// the neighbours of vertex j that are below j, ascending. Vertices are node indices or, after
// reordering, places in the order.
struct NodeGraph {
    std::vector<int> start; // node count + 1
    std::vector<int> row;
    size_t repeated = 0; // members whose two nodes another member joins already
};

NodeGraph make_node_graph(const Model& model);

// The free unknowns, numbered node by node in an order of little fill. The six unknowns of a node
// stay together: one vertex of the node graph, which makes the ordering several times cheaper than
// on single unknowns.
struct Unknowns {
    static constexpr int none = -1;

    struct Place {
        size_t node; // index
        size_t dof;  // 0..5
    };
    std::vector<std::array<int, dof_count>> of_node; // number of each unknown, none when held
    std::vector<Place> place;                        // the other way round
    std::vector<int> order;                          // node indices in the order of elimination

    int count() const { return static_cast<int>(place.size()); }
};

Unknowns number_unknowns(const Model& model, const NodeGraph& graph);

// The stiffness of the free unknowns.
SymmetricMatrix assemble(const Model& model, const std::vector<Element>& elements,
                         const NodeGraph& graph, const Unknowns& unknowns);

} // namespace frameslv
