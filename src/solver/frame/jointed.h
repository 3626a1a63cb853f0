// A member with springs at its ends, condensed.
#pragma once

#include "solver/frame_analysis.h"
#include "solver/model/element.h"

namespace frame_analysis {

// Bending in one plane by the rotations r of the ends against the chord: M_i = near_i r_i + far
// r_j, M_j = far r_i + near_j r_j. With a, b, a of the member itself (a = (4 + f) k / (1 + f), b =
// (2 - f) k / (1 + f), k = EI/L, f = 12 EI / (G As L^2): Przemieniecki, section 5.6) and springs s,
// t at its ends the condensation of the two inner rotations is exact:
//   near_i = s (a t + a^2 - b^2) / d, far = b s t / d, near_j = t (a s + a^2 - b^2) / d,
//   d = (s + a) (t + a) - b^2,
// and its limits where a spring is rigid.
struct Bending {
    double near_i = 0.0, far = 0.0, near_j = 0.0;
    // What end moments of the clamped member, without springs, become with them.
    double keep_i = 1.0, keep_j = 1.0, hand_i = 0.0, hand_j = 0.0;
    // M_i = keep_i m_i + hand_i m_j, M_j = keep_j m_j + hand_j m_i.
    double a = 0.0, b = 0.0; // of the member itself
    double stiffness = 0.0;  // EI
};

Bending condense(double EI, double length, double shear_stiffness, double spring_i,
                 double spring_j);

struct Jointed {
    Eigen::Matrix3d axes; // rows: local x, y, z
    double length = 0.0;
    double axial = 0.0, torsion = 0.0;
    Bending about_y, about_z;
};

Jointed make_jointed(const Frame& frame, const Member& member);

// The stiffness in global axes. Without `axial` the member carries no axial force.
frameslv::StiffnessBlocks blocks_of(const Jointed& member, bool axial);
void add_diagonal(const Jointed& member, bool axial, frameslv::Vector6& at_i,
                  frameslv::Vector6& at_j);

// Adds `sign` times the end forces, turned into global axes.
void add_to_nodes(const Jointed& member, const frameslv::EndForces& forces, double sign,
                  frameslv::Vector6& at_i, frameslv::Vector6& at_j);

// What the nodes exert on the ends, local axes, with both nodes held, under a load.
frameslv::EndForces held_forces(const Jointed& member, const MemberLoad& load);
frameslv::EndForces held_forces_uniform(const Jointed& member, const Eigen::Vector3d& local);

// The uniform load of a uniform or projected one by length of the member, or a point load, local.
Eigen::Vector3d local_load(const Jointed& member, const MemberLoad& load);

} // namespace frame_analysis
