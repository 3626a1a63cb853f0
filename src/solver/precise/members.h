// End forces of members in twice the precision, several members at a time.
#pragma once

#include <cstddef>

namespace frameslv {

// Members side by side: every array holds one number for each of `members`. Numbers with a second
// index of two are pairs, high part first. Axes, stiffness and signs are those of element.h.
struct PreciseBatch {
    static constexpr size_t members = 8;
    static constexpr size_t dofs = 12; // of both ends, I first

    // What holds for the whole batch; arrays that belong to a false one are not read.
    bool turned = false;  // some section is turned
    bool tense = false;   // some member has an axial force that stiffens it
    bool jointed = false; // bending and torsion stiffness are given

    double at_i[3][members], at_j[3][members];
    double vertical[members]; // 1 where y is global Y, made square with x; else 0
    double cosine[2][members], sine[2][members]; // of the section's turn
    double E[members], G[2][members], A[members], Iy[members], Iz[members], J[members];
    double tension[members];
    // Where jointed: torsion, and for the planes about y and z the end moments by the ends'
    // rotations against the chord: M_i = near_i r_i + far r_j, M_j = far r_i + near_j r_j.
    double torsion[2][members];
    double near_i[2][2][members], far[2][2][members], near_j[2][2][members];
    // Translations and rotations of the ends, global axes.
    double moved[dofs][2][members];

    // Results: forces and moments that the nodes exert on the ends, local and global axes.
    double local[dofs][2][members];
    double global[dofs][2][members];
};

// Fills in the results of a batch. Every processor gets the same bits.
using PreciseForces = void (*)(PreciseBatch& batch);

// The function for the widest registers of this processor.
PreciseForces precise_forces();

// Those that this processor can run, the widest first; a null pointer ends them.
const PreciseForces* usable_precise_forces();

} // namespace frameslv
