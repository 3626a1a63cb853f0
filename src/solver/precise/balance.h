// What the members ask of the nodes, in twice the precision.
#pragma once

#include "solver/model/element.h"
#include "solver/precise/members.h"

#include <vector>

namespace frameslv {

// Vectors of the nodes whose numbers are sums of two, about 32 digits.
struct PreciseVectors {
    std::vector<Vector6> high, low;

    explicit PreciseVectors(size_t nodes)
        : high(nodes, Vector6::Zero()), low(nodes, Vector6::Zero()) {}
    // Adds numbers of simple precision.
    void add(const std::vector<Vector6>& more);
};

// K u without supports for the members of `model` as its numbers stand, their axes, lengths and
// stiffness included, so that rounding in `elements`, of which the axial forces and joints alone
// are taken, counts for nothing. Errors are some 1e-31 of the sizes added. With `local` the
// members' end forces in local axes, rounded once, come back too, without those of loads on
// members.
PreciseVectors precise_member_forces(const Model& model, const std::vector<Element>& elements,
                                     const PreciseVectors& moved,
                                     std::vector<EndForces>* local = nullptr);

} // namespace frameslv
