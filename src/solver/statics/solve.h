// The linear static solution of a checked frame.
#pragma once

#include "solver/base/fault.h"
#include "solver/base/note.h"
#include "solver/model/element.h"
#include "solver/model/system.h"
#include "solver/precise/secure.h"
#include "solver/statics/settings.h"

#include <string>
#include <vector>

namespace frameslv {

// A sum over the frame: forces and moments, the moments about the first node.
using Resultant = Vector6;

struct Solution {
    NodeVectors moved;                // displacements and rotations of each node, global axes
    std::vector<EndForces> end_force; // of each member, local axes
    NodeVectors reaction;             // of each node, global axes; zero where free
    int unknowns = 0;
    size_t repeated_members = 0;
    int rounds = 0; // of the second-order iteration

    Resultant loads = Resultant::Zero();     // sum of the loads
    Resultant reactions = Resultant::Zero(); // sum of the reactions
    double residual = 0.0;  // largest unbalanced force or moment of a free node, by the load scale
    double imbalance = 0.0; // loads + reactions, by the load scale
    Certainty certainty;
    Notes notes; // warnings about the numbers
};

// Solves K u = f of a model that check_model and check_held have passed; `system` is its own. The
// solution is refined on the unbalanced forces of the members themselves, and its error is bounded,
// and mended where that is needed, in twice the precision (precise/secure.h). The load scale is the
// largest force, or moment by mean member length, of any node. A residual above 1e-9 of it is a
// warning, one above 1e-4 a fault; so is an error above 1e-6 and 1e-3 of the largest value of its
// kind; and a pivot below 1e-12 of its diagonal is a fault that names the loosest node and
// direction.
//
// With self-weight every member carries density x A along -Z, evenly along its length. With
// second order the members' axial forces stiffen or weaken them sideways (Element::tension), in
// rounds until the forces change by less than 1e-9 of the largest; a frame that is not stable under
// its loads is a fault. Afterwards `system` holds the stiffness of the last round.
Fault solve(const Model& model, const Settings& settings, System& system, Solution& solution);

} // namespace frameslv
