#include "solver/modes/modes.h"

#include "solver/modes/lanczos.h"
#include "solver/modes/sturm.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numeric>

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

// What accelerating the ends of member `k` takes, global axes.
void add_inertia(const Model& model, const Settings& settings, const System& system, size_t k,
                 const Vector6& moved_i, const Vector6& moved_j, Vector6& at_i, Vector6& at_j) {
    const Member& member = model.member[k];
    const Element& element = system.elements[k];
    const double mass = model.material[index_of(member.mat)].density *
                        model.section[index_of(member.size)].A * element.length / settings.gravity;
    const Vector6 i = in_local(element, moved_i);
    const Vector6 j = in_local(element, moved_j);
    const EndForces own = settings.mass == MassKind::lumped
                              ? lumped_inertia(element, mass, i, j)
                              : consistent_inertia(element, mass, i, j);
    add_to_nodes(element, own, at_i, at_j);
}

NodeVectors inertia(const Model& model, const Settings& settings, const System& system,
                    const NodeVectors& moved) {
    NodeVectors forces(moved.size(), Vector6::Zero());
    for (size_t k = 0; k < system.elements.size(); k++) {
        const size_t a = index_of(model.member[k].noi);
        const size_t b = index_of(model.member[k].noj);
        add_inertia(model, settings, system, k, moved[a], moved[b], forces[a], forces[b]);
    }
    return forces;
}

StiffnessBlocks inertia_blocks(const Model& model, const Settings& settings, const System& system,
                               size_t k) {
    StiffnessBlocks blocks;
    const Vector6 none = Vector6::Zero();
    for (Eigen::Index dof = 0; dof < 6; dof++) {
        const Vector6 unit = Vector6::Unit(dof);
        Vector6 at_i = none, at_j = none, from_i = none, from_j = none;
        add_inertia(model, settings, system, k, unit, none, at_i, from_i);
        add_inertia(model, settings, system, k, none, unit, from_j, at_j);
        blocks.ii.col(dof) = at_i;
        blocks.jj.col(dof) = at_j;
        blocks.ij.col(dof) = from_j;
    }
    return blocks;
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
class Completion {
  public:
    Completion(const System& system, int count, const Operator& apply, const MemberBlocks& blocks)
        : system_(system), count_(count), apply_(apply), blocks_(blocks),
          known_(static_cast<Eigen::Index>(system.size()), 0) {}

    Fault run(ModeSet& set);

  private:
    // Looks for more values besides those known; returns how many it found.
    Fault search(int more, int& found);
    // How many values are missing above `value`, negative when that cannot be told.
    int missing_above(double value) const;
    void order();

    static constexpr double noise = 1e-12; // of the largest value
    // Values that differ by less are looked for together.
    static constexpr double margin = 1e-6;

    const System& system_;
    int count_;
    const Operator& apply_;
    const MemberBlocks& blocks_;
    Eigen::MatrixXd known_; // orthonormal
    std::vector<double> values_;
    double least_ = 0.0;
};

std::span<double> span_of(Eigen::VectorXd& v) {
    return {v.data(), static_cast<size_t>(v.size())};
}

Fault Completion::search(int more, int& found) {
    const Eigen::Index n = known_.rows();
    const EigenPairs pairs =
        largest_eigenpairs(n, more, known_, least_, [&](const Eigen::VectorXd& y) {
            Eigen::VectorXd x = y;
            system_.factor().solve_upper(span_of(x));
            const std::vector<double> forces =
                system_.scaled_forces(apply_(system_.unscaled(span_of(x))));
            x = Eigen::Map<const Eigen::VectorXd>(forces.data(), n);
            system_.factor().solve_lower(span_of(x));
            return x;
        });
    if (!pairs.converged)
        return {Exit::inexact, "固有値の計算が収束しません"};
    found = static_cast<int>(pairs.values.size());
    known_.conservativeResize(Eigen::NoChange, known_.cols() + pairs.values.size());
    known_.rightCols(pairs.values.size()) = pairs.vectors;
    values_.insert(values_.end(), pairs.values.begin(), pairs.values.end());
    if (!values_.empty())
        least_ = noise * *std::max_element(values_.begin(), values_.end());
    return {};
}

void Completion::order() {
    std::vector<Eigen::Index> by(values_.size());
    std::iota(by.begin(), by.end(), Eigen::Index{0});
    std::stable_sort(by.begin(), by.end(), [this](Eigen::Index a, Eigen::Index b) {
        return values_[static_cast<size_t>(a)] > values_[static_cast<size_t>(b)];
    });
    const Eigen::MatrixXd vectors = known_;
    const std::vector<double> values = values_;
    for (size_t k = 0; k < by.size(); k++) {
        values_[k] = values[static_cast<size_t>(by[k])];
        known_.col(static_cast<Eigen::Index>(k)) = vectors.col(by[k]);
    }
}

int Completion::missing_above(double value) const {
    const double shift = (1.0 + margin) / value;
    const int below = count_below(system_, blocks_, shift);
    const auto known = std::count_if(values_.begin(), values_.end(),
                                     [&](double one) { return 1.0 / one < shift; });
    return below < 0 ? below : below - static_cast<int>(known);
}

Fault Completion::run(ModeSet& set) {
    if (system_.size() == 0)
        return {};
    const size_t wanted = static_cast<size_t>(count_);
    int found = 0;
    int more = count_;
    do {
        if (Fault fault = search(more, found))
            return fault;
        order();
        if (values_.size() < wanted) {
            more = count_ - static_cast<int>(values_.size());
            continue;
        }
        more = missing_above(values_[wanted - 1]);
    } while (more > 0 && found > 0);
    set.proven = values_.empty() || values_.size() >= wanted ? more == 0 || values_.empty()
                                                             : missing_above(values_.back()) == 0;
    for (size_t k = 0; k < std::min(wanted, values_.size()); k++) {
        Eigen::VectorXd y = known_.col(static_cast<Eigen::Index>(k));
        system_.factor().solve_upper(span_of(y));
        set.modes.push_back({values_[k], system_.unscaled(span_of(y))});
        normalise(set.modes.back().shape);
    }
    return {};
}

// The axial force of a member for buckling: none where it is not more than its own error.
double certain_tension(const Solution& solution, size_t k, double uncertain) {
    const double tension = mean_tension(solution.end_force[k]);
    return std::abs(tension) <= uncertain ? 0.0 : tension;
}

double uncertain_tension(const System& system, const Solution& solution) {
    constexpr double rounding = 1e-12; // of the largest force
    double most = 0.0;
    for (const EndForces& forces : solution.end_force)
        for (const Vector6& end : {forces.i, forces.j})
            most = std::max({most, end.head<3>().lpNorm<Eigen::Infinity>(),
                             end.tail<3>().lpNorm<Eigen::Infinity>() / system.arm()});
    const double bound = solution.certainty.bound[static_cast<size_t>(Kind::force)];
    return most * (rounding + 2.0 * bound);
}

} // namespace

Fault natural_modes(const Model& model, const Settings& settings, const System& system,
                    ModeSet& set) {
    const Operator apply = [&](const NodeVectors& moved) {
        return inertia(model, settings, system, moved);
    };
    const MemberBlocks blocks = [&](size_t k) {
        return inertia_blocks(model, settings, system, k);
    };
    Fault fault = Completion(system, settings.modes, apply, blocks).run(set);
    for (Mode& mode : set.modes)
        mode.value = 1.0 / std::sqrt(mode.value);
    return fault;
}

Fault buckling_modes(const Settings& settings, const System& system, const Solution& solution,
                     ModeSet& set) {
    std::vector<Element> geometric;
    geometric.reserve(system.elements.size());
    const double uncertain = uncertain_tension(system, solution);
    bool tense = false;
    for (size_t k = 0; k < system.elements.size(); k++) {
        const double tension = certain_tension(solution, k, uncertain);
        tense = tense || std::abs(tension) > 0.0;
        geometric.push_back(tension_alone(system.elements[k], -tension));
    }
    set.proven = true;
    if (!tense)
        return {};
    const Operator apply = [&](const NodeVectors& moved) {
        return system.member_forces(geometric, moved);
    };
    const MemberBlocks blocks = [&](size_t k) { return stiffness_blocks(geometric[k]); };
    Fault fault = Completion(system, settings.buckling, apply, blocks).run(set);
    for (Mode& mode : set.modes)
        mode.value = 1.0 / mode.value;
    return fault;
}

} // namespace frameslv
