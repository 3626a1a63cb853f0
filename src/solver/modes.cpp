#include "solver/modes.h"

#include "solver/lanczos.h"

#include <cmath>

namespace frameslv {

namespace {

using Operator = std::function<NodeVectors(const NodeVectors&)>;

// What accelerating the ends of a member by these vectors takes, in local axes.
EndForces consistent_inertia(const Element& element, double mass, const Vector6& i,
                             const Vector6& j) {
    const double L = element.length;
    const double m = mass / 420.0;
    EndForces forces;
    const auto pair = [](double half, double a, double b, double& to_a, double& to_b) {
        to_a = half * (2.0 * a + b) / 3.0;
        to_b = half * (a + 2.0 * b) / 3.0;
    };
    pair(mass / 2.0, i(0), j(0), forces.i(0), forces.j(0));
    pair(mass * element.radius2 / 2.0, i(3), j(3), forces.i(3), forces.j(3));
    // Across and along with the turn that goes with it: v with z, w with minus y.
    const auto bend = [&](Eigen::Index across, Eigen::Index turn, double sign) {
        const double a = i(across), b = j(across);
        const double p = sign * i(turn), q = sign * j(turn);
        forces.i(across) = m * (156.0 * a + 22.0 * L * p + 54.0 * b - 13.0 * L * q);
        forces.j(across) = m * (54.0 * a + 13.0 * L * p + 156.0 * b - 22.0 * L * q);
        forces.i(turn) = sign * m * L * (22.0 * a + 4.0 * L * p + 13.0 * b - 3.0 * L * q);
        forces.j(turn) = sign * m * L * (-13.0 * a - 3.0 * L * p - 22.0 * b + 4.0 * L * q);
    };
    bend(1, 5, 1.0);
    bend(2, 4, -1.0);
    return forces;
}

EndForces lumped_inertia(const Element& element, double mass, const Vector6& i, const Vector6& j) {
    Vector6 half = Vector6::Zero();
    half.head<3>().setConstant(mass / 2.0);
    half(3) = mass * element.radius2 / 2.0;
    return {half.cwiseProduct(i), half.cwiseProduct(j)};
}

Vector6 in_local(const Element& element, const Vector6& global) {
    Vector6 local;
    local << element.axes * global.head<3>(), element.axes * global.tail<3>();
    return local;
}

NodeVectors inertia(const Model& model, const Settings& settings, const System& system,
                    const NodeVectors& moved) {
    NodeVectors forces(moved.size(), Vector6::Zero());
    for (size_t k = 0; k < system.elements.size(); k++) {
        const Member& member = model.member[k];
        const Element& element = system.elements[k];
        const double mass = model.material[index_of(member.mat)].density *
                            model.section[index_of(member.size)].A * element.length /
                            settings.gravity;
        const size_t a = index_of(member.noi);
        const size_t b = index_of(member.noj);
        const Vector6 i = in_local(element, moved[a]);
        const Vector6 j = in_local(element, moved[b]);
        const EndForces own = settings.mass == MassKind::lumped
                                  ? lumped_inertia(element, mass, i, j)
                                  : consistent_inertia(element, mass, i, j);
        add_to_nodes(element, own, forces[a], forces[b]);
    }
    return forces;
}

void normalise(NodeVectors& shape) {
    double moved = 0.0;
    double turned = 0.0;
    for (const Vector6& u : shape)
        for (Eigen::Index k = 0; k < 6; k++) {
            double& most = k < 3 ? moved : turned;
            if (std::abs(u(k)) > std::abs(most) * (1.0 + 1e-9)) // the first of several alike
                most = u(k);
        }
    constexpr double nothing = 1e-9; // of the rotations: rounding
    const double by = std::abs(moved) > nothing * std::abs(turned) ? moved : turned;
    for (Vector6& u : shape)
        u /= by;
}

// The pairs of B u = value x K u with the largest values.
Fault largest_modes(const System& system, int count, const Operator& apply,
                    std::vector<Mode>& modes) {
    const auto n = static_cast<Eigen::Index>(system.size());
    const auto span_of = [n](Eigen::VectorXd& v) {
        return std::span<double>(v.data(), static_cast<size_t>(n));
    };
    if (n == 0)
        return {};
    const EigenPairs pairs = largest_eigenpairs(n, count, [&](const Eigen::VectorXd& y) {
        Eigen::VectorXd x = y;
        system.factor().solve_upper(span_of(x));
        const std::vector<double> forces = system.scaled_forces(apply(system.unscaled(span_of(x))));
        x = Eigen::Map<const Eigen::VectorXd>(forces.data(), n);
        system.factor().solve_lower(span_of(x));
        return x;
    });
    if (!pairs.converged)
        return {Exit::inexact, "固有値の計算が収束しません"};
    for (Eigen::Index k = 0; k < pairs.values.size(); k++) {
        Eigen::VectorXd y = pairs.vectors.col(k);
        system.factor().solve_upper(span_of(y));
        modes.push_back({pairs.values(k), system.unscaled(span_of(y))});
        normalise(modes.back().shape);
    }
    return {};
}

} // namespace

Fault natural_modes(const Model& model, const Settings& settings, const System& system,
                    std::vector<Mode>& modes) {
    Fault fault = largest_modes(
        system, settings.modes,
        [&](const NodeVectors& moved) { return inertia(model, settings, system, moved); }, modes);
    for (Mode& mode : modes)
        mode.value = 1.0 / std::sqrt(mode.value);
    return fault;
}

Fault buckling_modes(const Settings& settings, const System& system, const Solution& solution,
                     std::vector<Mode>& modes) {
    std::vector<Element> geometric;
    geometric.reserve(system.elements.size());
    for (size_t k = 0; k < system.elements.size(); k++)
        geometric.push_back(
            tension_alone(system.elements[k], -mean_tension(solution.end_force[k])));
    Fault fault = largest_modes(
        system, settings.buckling,
        [&](const NodeVectors& moved) { return system.member_forces(geometric, moved); }, modes);
    for (Mode& mode : modes)
        mode.value = 1.0 / mode.value;
    return fault;
}

} // namespace frameslv
