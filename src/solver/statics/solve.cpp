#include "solver/statics/solve.h"

#include "solver/model/check.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace frameslv {

namespace {

// Error bounds above the first are told, above the second there is no result.
constexpr double doubtful_error = 1e-6;
constexpr double useless_error = 1e-3;
// Members of one kind of stiffness further apart than this are most likely a slip in the input.
constexpr double doubtful_ratio = 1e9;
// Unbalanced forces by the load scale: refine above the first, warn above the second, refuse above
// the third.
constexpr double refined_residual = 1e-12;
constexpr double doubtful_residual = 1e-9;
constexpr double worst_residual = 1e-4;
constexpr int most_refinements = 5;
// A correction that leaves more than this part of the residual has met the rounding of the
// displacements; another one would not help.
constexpr double least_gain = 0.5;

// The second-order iteration ends when no axial force changes by more than this part of the
// largest, and gives up after so many rounds: near the critical load it converges slowly.
constexpr double settled_change = 1e-9;
constexpr int most_rounds = 60;

Vector6 vector_of(const Six& six) {
    return Eigen::Map<const Vector6>(six.data());
}

// What the solution passes through on its way, so that every step is a short function.
class Analysis {
  public:
    Analysis(const Model& model, const Settings& settings, System& system, Solution& solution)
        : model_(model), settings_(settings), system_(system), solution_(solution) {}

    Fault run();

  private:
    void set_loads();
    Fault iterate();
    Fault buckled();
    void refine();
    // Member end forces for the present displacements, and loads less member forces at each node.
    NodeVectors balance();
    double residual_of(const NodeVectors& unbalanced) const;
    Fault make_certain();
    Fault judge();
    void sum_up();
    void warn(const char* key, const std::string& text);
    void warn_of_stiffness();
    void set_load_scale();
    double relative(const Vector6& force) const;

    const Model& model_;
    const Settings& settings_;
    System& system_;
    Solution& solution_;
    NodeVectors load_;       // of each node, with its share of the members' loads
    NodeVectors unbalanced_; // loads less member forces for the present displacements
    double force_ = 1.0;     // the load scale
};

void Analysis::set_loads() {
    load_.reserve(model_.node.size());
    for (const Node& node : model_.node)
        load_.push_back(vector_of(node.load));
    if (!settings_.self_weight)
        return;
    for (size_t i = 0; i < system_.elements.size(); i++) {
        const Member& member = model_.member[i];
        Element& element = system_.elements[i];
        const double weight =
            model_.material[index_of(member.mat)].density * model_.section[index_of(member.size)].A;
        element.load = element.axes * Eigen::Vector3d(0.0, 0.0, -weight);
        EndForces share = fixed_end_forces(element);
        share.i = -share.i;
        share.j = -share.j;
        add_to_nodes(element, share, load_[index_of(member.noi)], load_[index_of(member.noj)]);
    }
}

Fault Analysis::buckled() {
    const auto [node, dof] = system_.loosest_motion();
    return {Exit::unstable,
            text_of("P-Δ 解析の %d 回目で構造が不安定です (荷重が座屈荷重を越えています): %s が %s",
                    solution_.rounds, node_label(model_, node + 1).c_str(),
                    motion_label(static_cast<size_t>(dof)))};
}

Fault Analysis::iterate() {
    while (solution_.rounds < most_rounds) {
        solution_.rounds++;
        double most = 0.0;
        double change = 0.0;
        for (size_t i = 0; i < system_.elements.size(); i++) {
            const double tension = mean_tension(solution_.end_force[i]);
            change = std::max(change, std::abs(tension - system_.elements[i].tension));
            most = std::max(most, std::abs(tension));
            system_.elements[i].tension = tension;
        }
        if (change <= settled_change * most)
            return {};
        if (!system_.try_factorise())
            return buckled();
        refine();
    }
    return {Exit::unstable,
            text_of("P-Δ 解析が %d 回で収束しません (荷重が座屈荷重に近すぎます)", most_rounds)};
}

void Analysis::set_load_scale() {
    double most = 0.0;
    for (const Vector6& load : load_)
        most = std::max({most, load.head<3>().lpNorm<Eigen::Infinity>(),
                         load.tail<3>().lpNorm<Eigen::Infinity>() / system_.arm()});
    force_ = most > 0.0 ? most : 1.0;
}

double Analysis::relative(const Vector6& force) const {
    if (!force.allFinite())
        return std::numeric_limits<double>::infinity();
    return std::max(force.head<3>().lpNorm<Eigen::Infinity>() / force_,
                    force.tail<3>().lpNorm<Eigen::Infinity>() / (force_ * system_.arm()));
}

NodeVectors Analysis::balance() {
    NodeVectors unbalanced;
    unbalanced.reserve(model_.node.size());
    for (const Node& node : model_.node)
        unbalanced.push_back(-vector_of(node.load));
    for (size_t i = 0; i < system_.elements.size(); i++) {
        const size_t a = index_of(model_.member[i].noi);
        const size_t b = index_of(model_.member[i].noj);
        const Element& element = system_.elements[i];
        EndForces forces = end_forces(element, solution_.moved[a], solution_.moved[b]);
        if (settings_.self_weight) {
            const EndForces fixed = fixed_end_forces(element);
            forces.i += fixed.i;
            forces.j += fixed.j;
        }
        add_to_nodes(element, forces, unbalanced[a], unbalanced[b]);
        solution_.end_force[i] = forces;
    }
    for (Vector6& force : unbalanced)
        force = -force;
    return unbalanced;
}

double Analysis::residual_of(const NodeVectors& unbalanced) const {
    double most = 0.0;
    for (size_t i = 0; i < unbalanced.size(); i++) {
        Vector6 free = unbalanced[i];
        for (size_t k = 0; k < dof_count; k++)
            if (model_.node[i].held[k])
                free(static_cast<Eigen::Index>(k)) = 0.0;
        most = std::max(most, relative(free));
    }
    return most;
}

void Analysis::refine() {
    solution_.moved.assign(model_.node.size(), Vector6::Zero());
    solution_.end_force.resize(system_.elements.size());
    system_.add_solution(load_, solution_.moved);
    unbalanced_ = balance();
    solution_.residual = residual_of(unbalanced_);
    for (int i = 0; i < most_refinements && solution_.residual > refined_residual; i++) {
        const NodeVectors kept = solution_.moved;
        system_.add_solution(unbalanced_, solution_.moved);
        NodeVectors better = balance();
        const double residual = residual_of(better);
        if (!(residual < solution_.residual)) {
            solution_.moved = kept;
            unbalanced_ = balance();
            break;
        }
        const bool stuck = residual > least_gain * solution_.residual;
        unbalanced_ = std::move(better);
        solution_.residual = residual;
        if (stuck)
            break;
    }
}

Fault Analysis::make_certain() {
    Certainty& certainty = solution_.certainty;
    certainty = secure(model_, system_, {load_, solution_.moved, solution_.end_force, unbalanced_});
    if (certainty.mended)
        solution_.residual = residual_of(unbalanced_);
    const auto& bound = certainty.bound;
    const double worst = *std::max_element(bound.begin(), bound.end());
    if (!certainty.known || !(worst <= useless_error))
        return {Exit::inexact,
                text_of("部材の剛性の差が大きすぎて計算できません: 結果の誤差を確かめられません "
                        "(条件数の推定 %.1e)",
                        certainty.condition)};
    if (worst <= doubtful_error)
        return {};
    constexpr const char* names[kind_count] = {"変位", "回転", "力", "モーメント"};
    std::string digits;
    for (size_t k = 0; k < kind_count; k++) {
        const double lost = std::max(bound[k], 1e-9);
        digits += text_of("%s%s 約 %d 桁", k == 0 ? "" : "、", names[k],
                          static_cast<int>(std::floor(-std::log10(lost))));
    }
    warn("digits", "剛性の差が大きく、確かな桁は " + digits + " です");
    return {};
}

void Analysis::sum_up() {
    const auto place = [this](size_t i) -> Eigen::Vector3d {
        const Point& at = model_.node[i].at;
        const Eigen::Vector3d here(at.x, at.y, at.z);
        // The second order balances the frame where it has moved to.
        return settings_.p_delta ? here + solution_.moved[i].head<3>() : here;
    };
    const Eigen::Vector3d about = place(0);
    const auto add = [&](Resultant& sum, size_t i, const Vector6& force) {
        sum += force;
        sum.tail<3>() += (place(i) - about).cross(force.head<3>());
    };
    solution_.loads.setZero();
    solution_.reactions.setZero();
    solution_.reaction.assign(model_.node.size(), Vector6::Zero());
    for (size_t i = 0; i < model_.node.size(); i++) {
        const Node& node = model_.node[i];
        for (size_t k = 0; k < dof_count; k++)
            if (node.held[k])
                solution_.reaction[i](static_cast<Eigen::Index>(k)) =
                    -unbalanced_[i](static_cast<Eigen::Index>(k));
        add(solution_.loads, i, load_[i]);
        add(solution_.reactions, i, solution_.reaction[i]);
    }
    solution_.imbalance = relative(solution_.loads + solution_.reactions);
}

void Analysis::warn(const char* key, const std::string& text) {
    solution_.notes.push_back({Note::Weight::warning, key, text});
}

void Analysis::warn_of_stiffness() {
    const std::vector<Element>& elements = system_.elements;
    const auto compare = [&](const char* name, auto stiffness) {
        const auto less = [&](const Element& a, const Element& b) {
            return stiffness(a) < stiffness(b);
        };
        const auto [low, high] = std::minmax_element(elements.begin(), elements.end(), less);
        const double ratio = stiffness(*high) / stiffness(*low);
        if (!(ratio < doubtful_ratio))
            warn("stiffness-ratio",
                 text_of("%s の比が %.1e もあります (部材 %d と部材 %d)", name, ratio,
                         number_of(static_cast<size_t>(high - elements.begin())),
                         number_of(static_cast<size_t>(low - elements.begin()))));
    };
    compare("EA/L", [](const Element& e) { return e.axial; });
    compare("EIy/L", [](const Element& e) { return e.bending_y; });
    compare("EIz/L", [](const Element& e) { return e.bending_z; });
    compare("GJ/L", [](const Element& e) { return e.torsion; });
}

Fault Analysis::judge() {
    if (!(solution_.residual <= worst_residual))
        return {Exit::inexact,
                text_of("釣合いの残差 %.1e が大きすぎます (部材の剛性の差が大きすぎます)",
                        solution_.residual)};
    const auto readable = [](const Vector6& v) {
        return v.allFinite() && v.lpNorm<Eigen::Infinity>() <= FLT_MAX;
    };
    for (size_t i = 0; i < solution_.moved.size(); i++)
        if (!readable(solution_.moved[i]))
            return {Exit::inexact,
                    text_of("%s の変位が大きすぎます", node_label(model_, number_of(i)).c_str())};
    for (size_t i = 0; i < solution_.end_force.size(); i++)
        if (!readable(solution_.end_force[i].i) || !readable(solution_.end_force[i].j))
            return {Exit::inexact, text_of("%s の部材力が大きすぎます",
                                           member_label(model_, number_of(i)).c_str())};
    if (solution_.residual > doubtful_residual)
        warn("residual", text_of("釣合いの残差 %.1e が %.0e を越えています", solution_.residual,
                                 doubtful_residual));
    return {};
}

Fault Analysis::run() {
    solution_.repeated_members = system_.repeated_members();
    solution_.unknowns = static_cast<int>(system_.size());
    warn_of_stiffness();
    set_loads();
    set_load_scale();
    if (Fault fault = system_.factorise())
        return fault;
    refine();
    if (settings_.p_delta)
        if (Fault fault = iterate())
            return fault;
    if (Fault fault = make_certain())
        return fault;
    sum_up();
    return judge();
}

} // namespace

Fault solve(const Model& model, const Settings& settings, System& system, Solution& solution) {
    return Analysis(model, settings, system, solution).run();
}

} // namespace frameslv
