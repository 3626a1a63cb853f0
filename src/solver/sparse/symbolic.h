// What the factorisation will look like, before any number is known.
#pragma once

#include "solver/base/vectors.h"
#include "solver/sparse/graph.h"

namespace frameslv {

// A front: the unknowns of some consecutive places, eliminated together as a dense matrix. Its rows
// are its own columns and below them the unknowns of `rows`. The part of the matrix that its
// elimination changes beyond its columns, its update, is handed to the front `parent`.
struct Front {
    int first = 0, last = 0;   // places of its columns
    int parent = -1;           // front, -1 at a root
    int columns = 0;           // unknowns of its columns
    int below = 0;             // unknowns of its rows below them
    size_t row_start = 0;      // its places below the columns stand in Symbolic::rows from here ...
    size_t row_end = 0;        // ... to here, ascending
    size_t panel = 0;          // where its columns begin among all panels, in numbers
    size_t below_start = 0;    // unknowns below the columns of all earlier fronts
    std::vector<int> children; // fronts

    size_t height() const { return static_cast<size_t>(columns) + static_cast<size_t>(below); }
};

// Vertices are eliminated by place; the fronts stand in an order in which children come first, and
// a front's subtree directly before it. Numbers are counts of 8-byte numbers.
struct Symbolic {
    std::vector<int> order;  // vertex at each place
    std::vector<int> offset; // first unknown of each place; at the end the count of unknowns
    std::vector<Front> fronts;
    std::vector<int> rows;
    size_t panel_numbers = 0; // size of all panels
    size_t below_total = 0;   // sum of Front::below
    double entries = 0.0;     // of the factor, its lower triangle alone
    double flops = 0.0;       // multiplications and additions of the factorisation
};

// The fronts for an order of elimination. `unknowns` holds the count of unknowns of each vertex,
// at least one. Small fronts are merged where the zeros this stores cost less than the handling
// of more fronts.
Symbolic analyse(const Graph& graph, const std::vector<int>& unknowns,
                 const std::vector<int>& order);

// The better of the orders known: approximate minimum degree, and for large graphs nested
// dissection, whichever needs fewer operations.
Symbolic best_symbolic(const Graph& graph, const std::vector<int>& unknowns,
                       const std::vector<Point>& at);

} // namespace frameslv
