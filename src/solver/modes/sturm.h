// Counting the eigenvalues of a frame below a number.
#pragma once

#include "solver/model/system.h"

#include <functional>

namespace frameslv {

// A member's blocks of a matrix B, by its index, global axes.
using MemberBlocks = std::function<StiffnessBlocks(size_t member)>;

// How many values w with 0 < w < `shift` the problem K u = w B u has, where K is the stiffness of
// `system`: by J. J. Sylvester's law as many as K - shift x B has negative eigenvalues, which are
// the negative pivots of its factor L D L^T (B. N. Parlett, The Symmetric Eigenvalue Problem, 1980,
// section 3.3). Negative when some pivot is too near zero to tell.
int count_below(const System& system, const MemberBlocks& blocks, double shift);

} // namespace frameslv
