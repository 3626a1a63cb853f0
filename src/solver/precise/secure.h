// How far a solution is off, and its mending in twice the precision.
#pragma once

#include "solver/model/system.h"

#include <array>

namespace frameslv {

// What results are compared by: each kind with the largest of its own.
enum class Kind : size_t { translation, rotation, force, moment };
constexpr size_t kind_count = 4;

struct Certainty {
    // Of the scaled stiffness: an estimate of the Frobenius norm of its inverse times 12, which the
    // 2-norm of no frame's stiffness scaled to unit diagonal exceeds.
    double condition = 1.0;
    // Forward errors by the largest value of each kind in the frame. A kind whose largest is below
    // 1e-7 of what the kind beside it makes of it with the mean member length (translation and
    // rotation, force and moment) is compared with that.
    std::array<double, kind_count> bound{};
    bool mended = false; // solved again in twice the precision
    bool known = true;   // false: nothing bounds the error
};

// What is to be made sure of.
struct Solved {
    const NodeVectors& load; // of each node, with its share of the members' loads
    NodeVectors& moved;
    std::vector<EndForces>& end_force; // with those of loads on members
    NodeVectors& unbalanced;           // loads less what the members ask
};

// Bounds the error of a solution found with the factor of `system`: the residual is taken in twice
// the precision from the model's own numbers, and the correction d that the factor makes of it is
// the error up to a part q, where q bounds ||1 - M^-1 K|| for the factored matrix M: rounding of
// the factorisation times ||M^-1||, or, where that says little, twice what repeated products with
// 1 - M^-1 K in twice the precision show of it. (N. J. Higham, Accuracy and Stability of Numerical
// Algorithms, 2002, chapters 10, 12 and 15.)
//
// Where the bound of any kind is above 1e-8 the solution is corrected in twice the precision until
// it is below 1e-10 or shrinks no more. Otherwise it stays as it is, bit by bit.
Certainty secure(const Model& model, const System& system, const Solved& solved);

} // namespace frameslv
