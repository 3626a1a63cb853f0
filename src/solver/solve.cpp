#include "solver/solve.h"

#include "solver/check.h"
#include "solver/stiffness.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace frameslv {

namespace {

// A pivot that elimination has brought below this part of its diagonal is rounding, not stiffness:
// 16 digits less the growth of rounding in a large frame.
constexpr double least_pivot = 1e-12;
// Below this the result has fewer than about 7 certain digits, and the user is told.
constexpr double doubtful_pivot = 1e-9;
// Members of one kind of stiffness further apart than this are most likely a slip in the input.
constexpr double doubtful_ratio = 1e9;
// Unbalanced forces by the load scale: refine above the first, warn above the second, refuse above
// the third.
constexpr double refined_residual = 1e-12;
constexpr double doubtful_residual = 1e-9;
constexpr double worst_residual = 1e-4;
constexpr int most_refinements = 5;

// Shift of the unit diagonal that makes a singular matrix solvable, and rounds of inverse
// iteration: each favours the motion without resistance by the inverse of the shift.
constexpr double iteration_shift = 1e-9;
constexpr int iteration_rounds = 3;

Vector6 vector_of(const Six& six) {
    return Eigen::Map<const Vector6>(six.data());
}

// What the solution passes through on its way, so that every step is a short function.
class Analysis {
  public:
    Analysis(const Model& model, Solution& solution) : model_(model), solution_(solution) {}

    Fault run();

  private:
    void build();
    Fault scale();
    Fault factorise();
    Fault loosest_motion();
    void refine();
    void correct(const std::vector<Vector6>& unbalanced);
    // Member end forces for the present displacements, and loads less member forces at each node.
    std::vector<Vector6> balance();
    double residual_of(const std::vector<Vector6>& unbalanced) const;
    Fault judge();
    void sum_up(const std::vector<Vector6>& unbalanced);
    void warn_of_stiffness();
    void set_load_scale();
    double relative(const Vector6& force) const;

    const Model& model_;
    Solution& solution_;
    std::vector<Element> elements_;
    Unknowns unknowns_;
    SymmetricMatrix matrix_;
    std::vector<double> scale_; // 1 / sqrt(diagonal) of each unknown
    std::unique_ptr<Factoriser> factoriser_;
    double arm_ = 1.0;   // mean member length: sets moments against forces
    double force_ = 1.0; // the load scale
};

void Analysis::build() {
    elements_.reserve(model_.member.size());
    double lengths = 0.0;
    for (int no = 1; no <= static_cast<int>(model_.member.size()); no++) {
        elements_.push_back(make_element(model_, no));
        lengths += elements_.back().length;
    }
    arm_ = lengths / static_cast<double>(elements_.size());
    const NodeGraph graph = make_node_graph(model_);
    solution_.repeated_members = graph.repeated;
    unknowns_ = number_unknowns(model_, graph);
    solution_.unknowns = unknowns_.count();
    matrix_ = assemble(model_, elements_, graph, unknowns_);
}

Fault Analysis::scale() {
    const size_t n = static_cast<size_t>(matrix_.n);
    scale_.resize(n);
    for (size_t j = 0; j < n; j++) {
        const double diagonal = matrix_.value[static_cast<size_t>(matrix_.start[j + 1]) - 1];
        if (!std::isfinite(diagonal) || diagonal < DBL_MIN) {
            const auto [node, dof] = unknowns_.place[j];
            return {Exit::inexact, text_of("%s の剛性 %g が計算できる範囲を越えています",
                                           node_label(model_, number_of(node)).c_str(), diagonal)};
        }
        scale_[j] = 1.0 / std::sqrt(diagonal);
    }
    for (size_t j = 0; j < n; j++) {
        const size_t last = static_cast<size_t>(matrix_.start[j + 1]);
        for (size_t k = static_cast<size_t>(matrix_.start[j]); k < last; k++)
            matrix_.value[k] *= scale_[j] * scale_[static_cast<size_t>(matrix_.row[k])];
    }
    return {};
}

Fault Analysis::factorise() {
    factoriser_ = make_factoriser(matrix_.n);
    if (matrix_.n == 0)
        return {};
    double least = 0.0;
    if (factoriser_->factorise(matrix_, 0.0)) {
        const auto pivots = factoriser_->pivots();
        least = *std::min_element(pivots.begin(), pivots.end());
    }
    if (!(least >= least_pivot))
        return loosest_motion();
    if (least < doubtful_pivot)
        solution_.warnings.push_back(
            text_of("剛性の差が大きく (枢軸の比 %.1e)、結果の確かな桁は約 %d 桁です", least,
                    static_cast<int>(std::floor(-std::log10(DBL_EPSILON / least)))));
    return {};
}

Fault Analysis::loosest_motion() {
    const size_t n = static_cast<size_t>(matrix_.n);
    std::vector<double> motion(n);
    for (size_t j = 0; j < n; j++) // deliberate: a start that no symmetry of the frame shares
        motion[j] = 1.0 + 0.5 * std::sin(static_cast<double>(j) * 1.7);
    factoriser_->factorise(matrix_, iteration_shift);
    for (int round = 0; round < iteration_rounds; round++) {
        factoriser_->solve(motion);
        const double most =
            std::abs(*std::max_element(motion.begin(), motion.end(), [](double a, double b) {
                return std::abs(a) < std::abs(b);
            }));
        for (double& value : motion)
            value /= most;
    }
    size_t loosest = 0;
    double most = -1.0;
    for (size_t j = 0; j < n; j++) {
        const double arm = unknowns_.place[j].dof < 3 ? 1.0 : arm_;
        const double moved = std::abs(motion[j]) * scale_[j] * arm;
        if (moved > most) {
            most = moved;
            loosest = j;
        }
    }
    const auto [node, dof] = unknowns_.place[loosest];
    return {Exit::inexact,
            text_of("部材の剛性の差が大きすぎて計算できません: %s がほとんど抵抗なく %s",
                    node_label(model_, number_of(node)).c_str(), motion_label(dof))};
}

void Analysis::set_load_scale() {
    double most = 0.0;
    for (const Node& node : model_.node) {
        const Vector6 load = vector_of(node.load);
        most = std::max({most, load.head<3>().lpNorm<Eigen::Infinity>(),
                         load.tail<3>().lpNorm<Eigen::Infinity>() / arm_});
    }
    force_ = most > 0.0 ? most : 1.0;
}

double Analysis::relative(const Vector6& force) const {
    if (!force.allFinite())
        return std::numeric_limits<double>::infinity();
    return std::max(force.head<3>().lpNorm<Eigen::Infinity>() / force_,
                    force.tail<3>().lpNorm<Eigen::Infinity>() / (force_ * arm_));
}

std::vector<Vector6> Analysis::balance() {
    std::vector<Vector6> unbalanced;
    unbalanced.reserve(model_.node.size());
    for (const Node& node : model_.node)
        unbalanced.push_back(vector_of(node.load));
    for (size_t i = 0; i < elements_.size(); i++) {
        const size_t a = index_of(model_.member[i].noi);
        const size_t b = index_of(model_.member[i].noj);
        const EndForces forces = end_forces(elements_[i], solution_.moved[a], solution_.moved[b]);
        const Eigen::Matrix3d to_global = elements_[i].axes.transpose();
        unbalanced[a].head<3>() -= to_global * forces.i.head<3>();
        unbalanced[a].tail<3>() -= to_global * forces.i.tail<3>();
        unbalanced[b].head<3>() -= to_global * forces.j.head<3>();
        unbalanced[b].tail<3>() -= to_global * forces.j.tail<3>();
        solution_.end_force[i] = forces;
    }
    return unbalanced;
}

double Analysis::residual_of(const std::vector<Vector6>& unbalanced) const {
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

void Analysis::correct(const std::vector<Vector6>& unbalanced) {
    std::vector<double> x(static_cast<size_t>(matrix_.n));
    for (size_t j = 0; j < x.size(); j++) {
        const auto [node, dof] = unknowns_.place[j];
        x[j] = unbalanced[node](static_cast<Eigen::Index>(dof)) * scale_[j];
    }
    factoriser_->solve(x);
    for (size_t j = 0; j < x.size(); j++) {
        const auto [node, dof] = unknowns_.place[j];
        solution_.moved[node](static_cast<Eigen::Index>(dof)) += x[j] * scale_[j];
    }
}

void Analysis::refine() {
    solution_.moved.assign(model_.node.size(), Vector6::Zero());
    solution_.end_force.resize(elements_.size());
    std::vector<Vector6> unbalanced;
    for (const Node& node : model_.node)
        unbalanced.push_back(vector_of(node.load));
    if (matrix_.n > 0)
        correct(unbalanced);
    unbalanced = balance();
    solution_.residual = residual_of(unbalanced);
    for (int i = 0; i < most_refinements && solution_.residual > refined_residual; i++) {
        const std::vector<Vector6> kept = solution_.moved;
        correct(unbalanced);
        const std::vector<Vector6> better = balance();
        const double residual = residual_of(better);
        if (!(residual < solution_.residual)) {
            solution_.moved = kept;
            unbalanced = balance();
            break;
        }
        unbalanced = better;
        solution_.residual = residual;
    }
    sum_up(unbalanced);
}

void Analysis::sum_up(const std::vector<Vector6>& unbalanced) {
    const Point& about = model_.node.front().at;
    const auto add = [&about](Resultant& sum, const Point& at, const Vector6& force) {
        const Eigen::Vector3d arm(at.x - about.x, at.y - about.y, at.z - about.z);
        sum += force;
        sum.tail<3>() += arm.cross(force.head<3>());
    };
    solution_.reaction.assign(model_.node.size(), Vector6::Zero());
    for (size_t i = 0; i < model_.node.size(); i++) {
        const Node& node = model_.node[i];
        for (size_t k = 0; k < dof_count; k++)
            if (node.held[k])
                solution_.reaction[i](static_cast<Eigen::Index>(k)) =
                    -unbalanced[i](static_cast<Eigen::Index>(k));
        add(solution_.loads, node.at, vector_of(node.load));
        add(solution_.reactions, node.at, solution_.reaction[i]);
    }
    solution_.imbalance = relative(solution_.loads + solution_.reactions);
}

void Analysis::warn_of_stiffness() {
    const auto compare = [this](const char* name, auto stiffness) {
        const auto less = [&](const Element& a, const Element& b) {
            return stiffness(a) < stiffness(b);
        };
        const auto [low, high] = std::minmax_element(elements_.begin(), elements_.end(), less);
        const double ratio = stiffness(*high) / stiffness(*low);
        if (!(ratio < doubtful_ratio))
            solution_.warnings.push_back(
                text_of("%s の比が %.1e もあります (部材 %d と部材 %d)", name, ratio,
                        number_of(static_cast<size_t>(high - elements_.begin())),
                        number_of(static_cast<size_t>(low - elements_.begin()))));
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
        solution_.warnings.push_back(text_of("釣合いの残差 %.1e が %.0e を越えています",
                                             solution_.residual, doubtful_residual));
    return {};
}

Fault Analysis::run() {
    build();
    warn_of_stiffness();
    set_load_scale();
    if (Fault fault = scale())
        return fault;
    if (Fault fault = factorise())
        return fault;
    refine();
    return judge();
}

} // namespace

Fault solve(const Model& model, Solution& solution) {
    return Analysis(model, solution).run();
}

} // namespace frameslv
