// The straight Euler-Bernoulli member with twelve unknowns.
//
// Local axes: x from I to J, y horizontal, z = x times y upward; for a vertical member y is global
// Y, or what is across the member of it. The section angle turns y and z about x by the right-hand
// rule. Iy resists bending about y (in the vertical plane), Iz bending about z. Unknowns of an end:
// u v w along x y z, then the rotations about x y z. Stiffness: J. S. Przemieniecki, Theory of
// Matrix Structural Analysis (1968), section 5.6, without shear deformation.
#pragma once

#include "solver/model/model.h"

#include <Eigen/Dense>

namespace frameslv {

// A member ready for computing.
struct Element {
    Eigen::Matrix3d axes; // rows: local x, y, z in global components
    bool vertical = false;
    double length = 0.0;
    double axial = 0.0;     // E A / L
    double torsion = 0.0;   // G J / L
    double bending_y = 0.0; // E Iy / L, about local y
    double bending_z = 0.0; // E Iz / L, about local z
    // Axial force that already acts and makes the member stiffer sideways, tension positive: the
    // geometric stiffness of Przemieniecki, section 15.2, with the twist's share P (Iy + Iz) / A.
    double tension = 0.0;
    double radius2 = 0.0; // (Iy + Iz) / A
    // Distributed load by member length, local components.
    Eigen::Vector3d load = Eigen::Vector3d::Zero();
};

// The forces and moments that the nodes exert on the member's ends, in local axes.
struct EndForces {
    Vector6 i;
    Vector6 j;
};

// The axial force of a member, tension positive; under a load along it the mean of its ends.
inline double mean_tension(const EndForces& forces) {
    return 0.5 * (forces.j(0) - forces.i(0));
}

// Whether y of a member between these places, which must differ, is global Y.
bool is_vertical(const Point& at_i, const Point& at_j);

// `at_i` and `at_j` must differ; `angle` is in degrees.
Eigen::Matrix3d local_axes(const Point& at_i, const Point& at_j, double angle);

// The member of number `no`; its references must have been checked.
Element make_element(const Model& model, int no);

StiffnessBlocks stiffness_blocks(const Element& element);

// The diagonal of either end's own block.
Vector6 stiffness_diagonal(const Element& element);

// The member that has the geometric stiffness of `tension` alone.
Element tension_alone(const Element& element, double tension);

// End forces for end displacements in global axes. Evaluated from the difference of the ends, so
// that the large common motion of a frame does not cancel, and in equilibrium by construction.
EndForces end_forces(const Element& element, const Vector6& moved_i, const Vector6& moved_j);

// End forces under the distributed load with both ends fixed.
EndForces fixed_end_forces(const Element& element);

// Adds what the nodes exert on the member, in global axes.
void add_to_nodes(const Element& element, const EndForces& forces, Vector6& at_i, Vector6& at_j);

} // namespace frameslv
