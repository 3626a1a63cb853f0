#include "solver/model/element.h"

#include <cmath>
#include <numbers>

namespace frameslv {

namespace {

// A member whose horizontal run is below this part of its length counts as vertical: coordinates of
// single precision carry seven digits.
constexpr double vertical_run = 1e-6;

Eigen::Vector3d direction(const Point& at_i, const Point& at_j) {
    return Eigen::Vector3d(at_j.x - at_i.x, at_j.y - at_i.y, at_j.z - at_i.z).stableNormalized();
}

} // namespace

bool is_vertical(const Point& at_i, const Point& at_j) {
    const Eigen::Vector3d x = direction(at_i, at_j);
    return std::hypot(x.x(), x.y()) <= vertical_run;
}

Eigen::Matrix3d local_axes(const Point& at_i, const Point& at_j, double angle) {
    const Eigen::Vector3d x = direction(at_i, at_j);
    const Eigen::Vector3d across = Eigen::Vector3d::UnitY() - x.y() * x;
    const Eigen::Vector3d level = is_vertical(at_i, at_j)
                                      ? across.normalized()
                                      : Eigen::Vector3d(-x.y(), x.x(), 0.0).normalized();
    const Eigen::Vector3d up = x.cross(level);
    const double turn = std::fmod(angle, 360.0) * (std::numbers::pi / 180.0);
    Eigen::Matrix3d axes;
    axes.row(0) = x;
    axes.row(1) = std::cos(turn) * level + std::sin(turn) * up;
    axes.row(2) = std::cos(turn) * up - std::sin(turn) * level;
    return axes;
}

Element make_element(const Model& model, int no) {
    const Member& member = model.member[index_of(no)];
    const Point& at_i = model.node[index_of(member.noi)].at;
    const Point& at_j = model.node[index_of(member.noj)].at;
    const Section& section = model.section[index_of(member.size)];
    const Material& material = model.material[index_of(member.mat)];
    Element element;
    element.axes = local_axes(at_i, at_j, member.angle);
    element.vertical = is_vertical(at_i, at_j);
    element.length = distance(at_i, at_j);
    element.axial = material.E * section.A / element.length;
    element.torsion = material.G() * section.J / element.length;
    element.bending_y = material.E * section.Iy / element.length;
    element.bending_z = material.E * section.Iz / element.length;
    element.radius2 = (section.Iy + section.Iz) / section.A;
    return element;
}

Element tension_alone(const Element& element, double tension) {
    Element alone = element;
    alone.axial = alone.torsion = alone.bending_y = alone.bending_z = 0.0;
    alone.load.setZero();
    alone.tension = tension;
    return alone;
}

StiffnessBlocks stiffness_blocks(const Element& element) {
    const double L = element.length;
    const double P = element.tension;
    const double ky = element.bending_y;
    const double kz = element.bending_z;
    const double torsion = element.torsion + P * element.radius2 / L;
    const double sway = 6.0 * P / (5.0 * L);
    const Eigen::Matrix3d& T = element.axes;
    const auto turned = [&T](double a, double b, double c) -> Eigen::Matrix3d {
        return T.transpose() * Eigen::Vector3d(a, b, c).asDiagonal() * T;
    };
    // Force by displacement, moment by rotation of the same and of the other end.
    const Eigen::Matrix3d force =
        turned(element.axial, 12.0 * kz / (L * L) + sway, 12.0 * ky / (L * L) + sway);
    const Eigen::Matrix3d near =
        turned(torsion, 4.0 * ky + 2.0 * P * L / 15.0, 4.0 * kz + 2.0 * P * L / 15.0);
    const Eigen::Matrix3d far = turned(-torsion, 2.0 * ky - P * L / 30.0, 2.0 * kz - P * L / 30.0);
    // Force by rotation: v with the rotation about z, w with minus the rotation about y.
    const Eigen::Matrix3d cross = T.row(1).transpose() * (6.0 * kz / L + P / 10.0) * T.row(2) -
                                  T.row(2).transpose() * (6.0 * ky / L + P / 10.0) * T.row(1);
    StiffnessBlocks blocks;
    blocks.ii << force, cross, cross.transpose(), near;
    blocks.ij << -force, cross, -cross.transpose(), far;
    blocks.jj << force, -cross, -cross.transpose(), near;
    return blocks;
}

Vector6 stiffness_diagonal(const Element& element) {
    const double L = element.length;
    const double sway = 6.0 * element.tension / (5.0 * L);
    const double turn = 2.0 * element.tension * L / 15.0;
    const Eigen::Matrix3d squares = element.axes.cwiseAbs2().transpose();
    Vector6 diagonal;
    diagonal << squares * Eigen::Vector3d(element.axial, 12.0 * element.bending_z / (L * L) + sway,
                                          12.0 * element.bending_y / (L * L) + sway),
        squares * Eigen::Vector3d(element.torsion + element.tension * element.radius2 / L,
                                  4.0 * element.bending_y + turn, 4.0 * element.bending_z + turn);
    return diagonal;
}

EndForces end_forces(const Element& element, const Vector6& moved_i, const Vector6& moved_j) {
    const double L = element.length;
    const Eigen::Matrix3d& T = element.axes;
    const Eigen::Vector3d shift = T * (moved_j.head<3>() - moved_i.head<3>());
    const Eigen::Vector3d twist = T * (moved_j.tail<3>() - moved_i.tail<3>());
    const Eigen::Vector3d turn_i = T * moved_i.tail<3>();
    // Rotation of end I against the chord; end J has turned by `twist` more.
    const double about_y = turn_i.y() + shift.z() / L;
    const double about_z = turn_i.z() - shift.y() / L;
    const double P = element.tension;
    const auto near_moment = [&](double bending, double about, double more) {
        return bending * (6.0 * about + 2.0 * more) + P * L / 30.0 * (3.0 * about - more);
    };
    const auto far_moment = [&](double bending, double about, double more) {
        return bending * (6.0 * about + 4.0 * more) + P * L / 30.0 * (3.0 * about + 4.0 * more);
    };
    const double my_i = near_moment(element.bending_y, about_y, twist.y());
    const double my_j = far_moment(element.bending_y, about_y, twist.y());
    const double mz_i = near_moment(element.bending_z, about_z, twist.z());
    const double mz_j = far_moment(element.bending_z, about_z, twist.z());
    const double normal = element.axial * shift.x();
    const double torque = (element.torsion + P * element.radius2 / L) * twist.x();
    const double shear_y = (mz_i + mz_j) / L - P * shift.y() / L;
    const double shear_z = -(my_i + my_j) / L - P * shift.z() / L;
    EndForces forces;
    forces.i << -normal, shear_y, shear_z, -torque, my_i, mz_i;
    forces.j << normal, -shear_y, -shear_z, torque, my_j, mz_j;
    return forces;
}

EndForces fixed_end_forces(const Element& element) {
    const Eigen::Vector3d half = element.load * (element.length / 2.0);
    const Eigen::Vector3d moment = half * (element.length / 6.0);
    EndForces forces;
    forces.i << -half, 0.0, moment.z(), -moment.y();
    forces.j << -half, 0.0, -moment.z(), moment.y();
    return forces;
}

void add_to_nodes(const Element& element, const EndForces& forces, Vector6& at_i, Vector6& at_j) {
    const Eigen::Matrix3d to_global = element.axes.transpose();
    at_i.head<3>() += to_global * forces.i.head<3>();
    at_i.tail<3>() += to_global * forces.i.tail<3>();
    at_j.head<3>() += to_global * forces.j.head<3>();
    at_j.tail<3>() += to_global * forces.j.tail<3>();
}

} // namespace frameslv
