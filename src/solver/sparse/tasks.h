// The tree of fronts shared out among threads.
#pragma once

#include "solver/sparse/symbolic.h"

namespace frameslv {

// Subtrees, each for one thread, and the fronts above them, which all threads do together.
struct Tasks {
    struct Subtree {
        int first = 0, root = 0; // its fronts stand from here to here
        double flops = 0.0;
        size_t stack = 0; // most numbers of waiting updates at one time, packed, without the root's
        size_t square = 0; // numbers of the largest update as a square
    };
    std::vector<Subtree> subtrees; // the largest first
    std::vector<int> top;          // ascending
};

// Numbers of the lower triangle of rows x rows.
inline size_t packed_numbers(size_t rows) {
    return rows * (rows + 1) / 2;
}

// One thread gets each tree whole; more get subtrees that take them about equally long.
Tasks share_out(const Symbolic& symbolic, int threads);

} // namespace frameslv
