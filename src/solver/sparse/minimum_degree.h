#pragma once

#include "solver/sparse/graph.h"

namespace frameslv {

// The vertices in approximate minimum degree order: P. R. Amestoy, T. A. Davis, I. S. Duff, An
// approximate minimum degree ordering algorithm, SIAM J. Matrix Anal. Appl. 17 (1996), as Eigen
// has it.
std::vector<int> minimum_degree(const Graph& graph);

} // namespace frameslv
