#include "solver/frame/jointed.h"

#include <cmath>

namespace frame_analysis {

namespace {

using frameslv::EndForces;
using frameslv::Vector6;

// End moments of the held member from the end rotations that the load makes with simple supports,
// which shear does not change: it integrates to zero between moments of zero.
void held_moments(const Bending& bending, double r_i, double r_j, double& m_i, double& m_j) {
    const double clamped_i = -(bending.a * r_i + bending.b * r_j);
    const double clamped_j = -(bending.b * r_i + bending.a * r_j);
    m_i = bending.keep_i * clamped_i + bending.hand_i * clamped_j;
    m_j = bending.keep_j * clamped_j + bending.hand_j * clamped_i;
}

// Forces of simple supports and the moments' own shears.
EndForces with_shears(const Jointed& member, const Eigen::Vector3d& at_i,
                      const Eigen::Vector3d& at_j, double my_i, double my_j, double mz_i,
                      double mz_j) {
    const double shear_y = (mz_i + mz_j) / member.length;
    const double shear_z = -(my_i + my_j) / member.length;
    EndForces forces;
    forces.i << at_i.x(), at_i.y() + shear_y, at_i.z() + shear_z, 0.0, my_i, mz_i;
    forces.j << at_j.x(), at_j.y() - shear_y, at_j.z() - shear_z, 0.0, my_j, mz_j;
    return forces;
}

// Force by a displacement across the member.
double sway(const Bending& bending, double length) {
    return (bending.near_i + 2.0 * bending.far + bending.near_j) / (length * length);
}

double in_series(double a, double b, double c) {
    if (!(a > 0.0) || !(b > 0.0) || !(c > 0.0))
        return 0.0;
    return 1.0 / (1.0 / a + 1.0 / b + 1.0 / c); // 1 / rigid is 0
}

EndForces held_forces_point(const Jointed& member, const Eigen::Vector3d& load, double p) {
    const double L = member.length;
    const double q = L - p;
    // Rotations at I and J of a simple beam under a unit force, times EI.
    const double r_i = p * q * (L + q) / (6.0 * L);
    const double r_j = -p * q * (L + p) / (6.0 * L);
    double my_i = 0.0, my_j = 0.0, mz_i = 0.0, mz_j = 0.0;
    const double by_z = load.y() / member.about_z.stiffness;
    const double by_y = -load.z() / member.about_y.stiffness;
    held_moments(member.about_z, r_i * by_z, r_j * by_z, mz_i, mz_j);
    held_moments(member.about_y, r_i * by_y, r_j * by_y, my_i, my_j);
    return with_shears(member, -load * (q / L), -load * (p / L), my_i, my_j, mz_i, mz_j);
}

} // namespace

Bending condense(double EI, double length, double shear_stiffness, double spring_i,
                 double spring_j) {
    Bending result;
    const double k = EI / length;
    const double f = shear_stiffness > 0.0 ? 12.0 * EI / (shear_stiffness * length * length) : 0.0;
    const double a = result.a = (4.0 + f) * k / (1.0 + f);
    const double b = result.b = (2.0 - f) * k / (1.0 + f);
    const double rest = a * a - b * b;
    result.stiffness = EI;
    const double s = spring_i, t = spring_j;
    const bool rigid_i = std::isinf(s), rigid_j = std::isinf(t);
    if (rigid_i && rigid_j) {
        result.near_i = result.near_j = a;
        result.far = b;
    } else if (rigid_i) {
        result.near_i = (a * t + rest) / (t + a);
        result.far = b * t / (t + a);
        result.near_j = a * t / (t + a);
        result.hand_i = -b / (t + a);
        result.keep_j = t / (t + a);
    } else if (rigid_j) {
        result.near_j = (a * s + rest) / (s + a);
        result.far = b * s / (s + a);
        result.near_i = a * s / (s + a);
        result.hand_j = -b / (s + a);
        result.keep_i = s / (s + a);
    } else {
        const double d = (s + a) * (t + a) - b * b;
        result.near_i = s * (a * t + rest) / d;
        result.far = b * s * t / d;
        result.near_j = t * (a * s + rest) / d;
        result.keep_i = s * (t + a) / d;
        result.hand_i = -s * b / d;
        result.keep_j = t * (s + a) / d;
        result.hand_j = -t * b / d;
    }
    return result;
}

Jointed make_jointed(const Frame& frame, const Member& member) {
    const auto point = [&](size_t node) {
        const Vector3& at = frame.nodes[node].at;
        return frameslv::Point{at[0], at[1], at[2]};
    };
    const frameslv::Point i = point(member.i), j = point(member.j);
    Jointed jointed;
    jointed.axes = frameslv::local_axes(i, j, member.turn);
    const double L = jointed.length = frameslv::distance(i, j);
    const Vector3& s = member.joint_i.spring;
    const Vector3& t = member.joint_j.spring;
    jointed.axial = member.E * member.A / L;
    jointed.torsion = in_series(s[0], member.G * member.J / L, t[0]);
    jointed.about_y = condense(member.E * member.Iy, L, member.G * member.shear_z, s[1], t[1]);
    jointed.about_z = condense(member.E * member.Iz, L, member.G * member.shear_y, s[2], t[2]);
    return jointed;
}

void add_to_nodes(const Jointed& member, const EndForces& forces, double sign, Vector6& at_i,
                  Vector6& at_j) {
    const Eigen::Matrix3d to_global = sign * member.axes.transpose();
    at_i.head<3>() += to_global * forces.i.head<3>();
    at_i.tail<3>() += to_global * forces.i.tail<3>();
    at_j.head<3>() += to_global * forces.j.head<3>();
    at_j.tail<3>() += to_global * forces.j.tail<3>();
}

frameslv::StiffnessBlocks blocks_of(const Jointed& member, bool axial) {
    const double L = member.length;
    const Bending& y = member.about_y;
    const Bending& z = member.about_z;
    const Eigen::Matrix3d& T = member.axes;
    const auto turned = [&T](double a, double b, double c) -> Eigen::Matrix3d {
        return T.transpose() * Eigen::Vector3d(a, b, c).asDiagonal() * T;
    };
    // Force by the rotation of an end: v with the rotation about z, w with minus that about y.
    const auto cross = [&](double by_y, double by_z) -> Eigen::Matrix3d {
        return T.row(1).transpose() * (by_z / L) * T.row(2) -
               T.row(2).transpose() * (by_y / L) * T.row(1);
    };
    const Eigen::Matrix3d force = turned(axial ? member.axial : 0.0, sway(z, L), sway(y, L));
    const Eigen::Matrix3d cross_i = cross(y.near_i + y.far, z.near_i + z.far);
    const Eigen::Matrix3d cross_j = cross(y.near_j + y.far, z.near_j + z.far);
    frameslv::StiffnessBlocks blocks;
    blocks.ii << force, cross_i, cross_i.transpose(), turned(member.torsion, y.near_i, z.near_i);
    blocks.ij << -force, cross_j, -cross_i.transpose(), turned(-member.torsion, y.far, z.far);
    blocks.jj << force, -cross_j, -cross_j.transpose(), turned(member.torsion, y.near_j, z.near_j);
    return blocks;
}

void add_diagonal(const Jointed& member, bool axial, Vector6& at_i, Vector6& at_j) {
    const Eigen::Matrix3d squares = member.axes.cwiseAbs2().transpose();
    const Eigen::Vector3d force =
        squares * Eigen::Vector3d(axial ? member.axial : 0.0, sway(member.about_z, member.length),
                                  sway(member.about_y, member.length));
    at_i.head<3>() += force;
    at_j.head<3>() += force;
    at_i.tail<3>() +=
        squares * Eigen::Vector3d(member.torsion, member.about_y.near_i, member.about_z.near_i);
    at_j.tail<3>() +=
        squares * Eigen::Vector3d(member.torsion, member.about_y.near_j, member.about_z.near_j);
}

Eigen::Vector3d local_load(const Jointed& member, const MemberLoad& load) {
    const Eigen::Vector3d force(load.force[0], load.force[1], load.force[2]);
    if (load.local && load.kind != MemberLoad::Kind::projected)
        return force;
    const Eigen::Vector3d local = member.axes * force;
    if (load.kind != MemberLoad::Kind::projected || !(local.norm() > 0.0))
        return local;
    return local * (local.tail<2>().norm() / local.norm());
}

EndForces held_forces_uniform(const Jointed& member, const Eigen::Vector3d& local) {
    const double L = member.length;
    const double r = L * L * L / 24.0; // at I, times EI
    double my_i = 0.0, my_j = 0.0, mz_i = 0.0, mz_j = 0.0;
    const double by_z = r * local.y() / member.about_z.stiffness;
    const double by_y = -r * local.z() / member.about_y.stiffness;
    held_moments(member.about_z, by_z, -by_z, mz_i, mz_j);
    held_moments(member.about_y, by_y, -by_y, my_i, my_j);
    const Eigen::Vector3d half = local * (-L / 2.0);
    return with_shears(member, half, half, my_i, my_j, mz_i, mz_j);
}

EndForces held_forces(const Jointed& member, const MemberLoad& load) {
    const Eigen::Vector3d local = local_load(member, load);
    if (load.kind == MemberLoad::Kind::point)
        return held_forces_point(member, local, load.distance);
    return held_forces_uniform(member, local);
}

} // namespace frame_analysis
