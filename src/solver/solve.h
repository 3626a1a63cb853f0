// The linear static solution of a checked frame.
#pragma once

#include "solver/element.h"
#include "solver/fault.h"

#include <string>
#include <vector>

namespace frameslv {

// A sum over the frame: forces and moments, the moments about the first node.
using Resultant = Vector6;

struct Solution {
    std::vector<Vector6> moved;       // displacements and rotations of each node, global axes
    std::vector<EndForces> end_force; // of each member, local axes
    std::vector<Vector6> reaction;    // of each node, global axes; zero where free
    int unknowns = 0;
    size_t repeated_members = 0;

    Resultant loads = Resultant::Zero();     // sum of the loads
    Resultant reactions = Resultant::Zero(); // sum of the reactions
    double residual = 0.0;  // largest unbalanced force or moment of a free node, by the load scale
    double imbalance = 0.0; // loads + reactions, by the load scale
    std::vector<std::string> warnings; // Japanese, UTF-8, one line each
};

// Solves K u = f of a model that check_model and check_held have passed. The unknowns are scaled to
// unit diagonal, so that stiffness of very different kinds (a bar of I = 1e-12) does no harm, and
// the solution is refined on the unbalanced forces of the members themselves. The load scale is the
// largest force, or moment by mean member length, of any node. A residual above 1e-9 of it is a
// warning, one above 1e-4 a fault; so is a pivot below 1e-12 of its diagonal: the fault then names
// the loosest node and direction.
Fault solve(const Model& model, Solution& solution);

} // namespace frameslv
