// Nested dissection by the places of the nodes.
//
// A. George, Nested dissection of a regular finite element mesh, SIAM J. Numer. Anal. 10 (1973):
// a set of vertices that parts the graph is eliminated last, the parts before it, each in the same
// way. The parting sets are found as in coordinate bisection: a plane halves the vertices, and the
// ends of the edges across it, on the side that has fewer of them, form the set. Frames are made on
// grids, for which such planes part as well as the graph partitioners do, at a fraction of the
// cost.
#pragma once

#include "solver/base/vectors.h"
#include "solver/sparse/graph.h"

namespace frameslv {

// The vertices in an order of elimination of little fill. `at` are their places.
std::vector<int> dissect(const Graph& graph, const std::vector<Point>& at);

} // namespace frameslv
