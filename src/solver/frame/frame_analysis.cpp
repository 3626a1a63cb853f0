#include "solver/frame_analysis.h"

#include "solver/base/fault.h"
#include "solver/frame/input_check.h"
#include "solver/frame/jointed.h"
#include "solver/model/check.h"
#include "solver/sparse/cholesky.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <memory>

namespace frame_analysis {

namespace {

using frameslv::Cholesky;
using frameslv::dof_count;
using frameslv::EndForces;
using frameslv::StiffnessBlocks;
using frameslv::text_of;
using frameslv::Vector6;
using Vectors = std::vector<Vector6>;

constexpr size_t width = frameslv::Kernels::block;
constexpr double smallest_pivot = 1e-12; // of the diagonal: below it is rounding
constexpr double stiffness_norm = 12.0;  // see precise/secure.h
constexpr double doubtful_condition = 1e12;
constexpr double refined_residual = 1e-10; // by the largest load
constexpr double doubtful_residual = 1e-9;
constexpr int most_refinements = 4;

Vector6 vector_of(const Six& six) {
    return Eigen::Map<const Vector6>(six.data());
}

Six six_of(const Vector6& v) {
    Six six;
    std::copy(v.begin(), v.end(), six.begin());
    return six;
}

class Solver {
  public:
    Solver(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads,
           Analysis& analysis);

    void run();

  private:
    struct Unknown {
        size_t node, dof;
    };

    void number();
    bool set_scale();
    bool factorise();
    StiffnessBlocks blocks(size_t member) const;
    std::string loose(const Unknown& unknown) const;
    Unknown loosest();
    void estimate_condition();
    void add_held(size_t member, const EndForces& forces, Vectors& held, Response& response) const;
    // Loads of the nodes and, with the sign of the reactions, those of the held members.
    Vectors load_of(const LoadVector& load, Response& response) const;
    void solve(size_t first, size_t count);
    Vectors unbalanced(const Vectors& load, const Vectors& moved,
                       std::vector<EndForces>& ends) const;
    double residual(const Vectors& left, double scale) const;
    void add_corrections(const std::vector<Vectors>& forces, std::vector<Vectors>& moved);
    void finish(const Vectors& load, const Vectors& moved, const Vectors& left,
                const std::vector<EndForces>& ends, Response& response);
    double relative(const Vector6& force, double scale) const;

    const Frame& frame_;
    const std::vector<LoadVector>& loads_;
    int most_threads_;
    Analysis& analysis_;
    std::vector<Jointed> members_;
    std::vector<size_t> sprung_; // nodes with springs: members of one end after the others
    double arm_ = 1.0;
    std::vector<int> vertex_;
    std::vector<Unknown> unknowns_;
    std::vector<double> scale_;
    std::unique_ptr<Cholesky> factor_;
};

Solver::Solver(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads,
               Analysis& analysis)
    : frame_(frame), loads_(loads), most_threads_(most_threads), analysis_(analysis) {
    double lengths = 0.0;
    for (const Member& member : frame.members) {
        members_.push_back(make_jointed(frame, member));
        lengths += members_.back().length;
    }
    arm_ = lengths / static_cast<double>(members_.size());
    for (size_t i = 0; i < frame.nodes.size(); i++)
        if (std::any_of(frame.nodes[i].support.begin(), frame.nodes[i].support.end(),
                        [](double s) { return s > 0.0 && std::isfinite(s); }))
            sprung_.push_back(i);
}

void Solver::number() {
    std::vector<frameslv::FreeDofs> free;
    std::vector<int> counts;
    std::vector<frameslv::Point> at;
    std::vector<size_t> node_of;
    vertex_.assign(frame_.nodes.size(), -1);
    for (size_t i = 0; i < frame_.nodes.size(); i++) {
        frameslv::FreeDofs own;
        for (size_t k = 0; k < dof_count; k++)
            if (std::isfinite(frame_.nodes[i].support[k]))
                own.dof[static_cast<size_t>(own.count++)] = static_cast<unsigned char>(k);
        if (own.count == 0)
            continue;
        vertex_[i] = static_cast<int>(free.size());
        free.push_back(own);
        counts.push_back(own.count);
        const Vector3& place = frame_.nodes[i].at;
        at.push_back({place[0], place[1], place[2]});
        node_of.push_back(i);
    }
    if (free.empty())
        return;
    std::vector<frameslv::Edge> ends;
    for (const Member& member : frame_.members)
        ends.emplace_back(vertex_[member.i], vertex_[member.j]);
    const std::vector<frameslv::Edge> joined = ends;
    for (const size_t node : sprung_)
        ends.emplace_back(vertex_[node], -1);
    frameslv::Symbolic symbolic = frameslv::best_symbolic(
        frameslv::make_graph(static_cast<int>(free.size()), joined), counts, at);
    for (const int vertex : symbolic.order) {
        const frameslv::FreeDofs& own = free[static_cast<size_t>(vertex)];
        for (int k = 0; k < own.count; k++)
            unknowns_.push_back({node_of[static_cast<size_t>(vertex)],
                                 static_cast<size_t>(own.dof[static_cast<size_t>(k)])});
    }
    factor_ = std::make_unique<Cholesky>(std::move(symbolic), std::move(ends), std::move(free),
                                         most_threads_);
}

StiffnessBlocks Solver::blocks(size_t member) const {
    if (member < members_.size())
        return blocks_of(members_[member]);
    StiffnessBlocks own;
    own.ii.setZero();
    own.ij.setZero();
    own.jj.setZero();
    const Six& springs = frame_.nodes[sprung_[member - members_.size()]].support;
    for (size_t k = 0; k < dof_count; k++)
        if (std::isfinite(springs[k]))
            own.ii.diagonal()(static_cast<Eigen::Index>(k)) = springs[k];
    return own;
}

std::string Solver::loose(const Unknown& unknown) const {
    const bool released = unknown.dof >= 3;
    return text_of("構造が不安定です: %s が %s%s", node_label(frame_, unknown.node).c_str(),
                   frameslv::motion_label(unknown.dof),
                   released ? " (接合がどれも回転を止めていません)" : "");
}

bool Solver::set_scale() {
    Vectors diagonal(frame_.nodes.size(), Vector6::Zero());
    for (size_t i = 0; i < members_.size(); i++) {
        const StiffnessBlocks own = blocks(i);
        diagonal[frame_.members[i].i] += own.ii.diagonal();
        diagonal[frame_.members[i].j] += own.jj.diagonal();
    }
    for (size_t i = 0; i < sprung_.size(); i++)
        diagonal[sprung_[i]] += blocks(members_.size() + i).ii.diagonal();
    for (const Unknown& unknown : unknowns_) {
        const double own = diagonal[unknown.node](static_cast<Eigen::Index>(unknown.dof));
        // What a turned axis leaves of a released direction is rounding.
        const Vector6& all = diagonal[unknown.node];
        const double beside = unknown.dof < 3 ? all.head<3>().maxCoeff() : all.tail<3>().maxCoeff();
        if (!std::isfinite(own) || !(own > DBL_MIN) || !(own > smallest_pivot * beside)) {
            analysis_.fault = std::isfinite(own) ? loose(unknown)
                                                 : node_label(frame_, unknown.node) +
                                                       " の剛性が計算できる範囲を越えています";
            return false;
        }
        scale_.push_back(1.0 / std::sqrt(own));
    }
    return true;
}

bool Solver::factorise() {
    const Cholesky::Blocks give = [this](size_t member, StiffnessBlocks& own) {
        own = blocks(member);
    };
    const bool done = factor_->factorise(give, scale_, 0.0);
    const auto pivots = factor_->pivots();
    if (done && *std::min_element(pivots.begin(), pivots.end()) >= smallest_pivot)
        return true;
    double shift = 1e-9; // as System::loosest_motion
    while (!factor_->factorise(give, scale_, shift) && shift < 1.0)
        shift *= 10.0;
    analysis_.fault = loose(loosest());
    return false;
}

// What inverse iteration with the shifted factor makes largest.
Solver::Unknown Solver::loosest() {
    constexpr int rounds = 3;
    std::vector<double> motion(unknowns_.size());
    for (size_t j = 0; j < motion.size(); j++)
        motion[j] = 1.0 + 0.5 * std::sin(static_cast<double>(j) * 1.7);
    for (int round = 0; round < rounds; round++) {
        factor_->solve(motion);
        double most = 0.0;
        for (const double value : motion)
            most = std::max(most, std::abs(value));
        for (double& value : motion)
            value /= most;
    }
    size_t found = 0;
    double most = -1.0;
    for (size_t j = 0; j < motion.size(); j++) {
        const double moved = std::abs(motion[j]) * scale_[j] * (unknowns_[j].dof < 3 ? 1.0 : arm_);
        if (moved > most * (1.0 + 1e-6)) {
            most = moved;
            found = j;
        }
    }
    return unknowns_[found];
}

void Solver::estimate_condition() {
    std::vector<double> x(unknowns_.size() * width);
    unsigned state = 20;
    double before = 0.0, after = 0.0;
    for (double& value : x) {
        state = state * 1664525U + 1013904223U;
        value = static_cast<double>(state) * 0x1p-31 - 1.0;
        before += value * value;
    }
    factor_->solve_block(x);
    for (const double value : x)
        after += value * value;
    analysis_.condition =
        stiffness_norm * std::sqrt(after / before * static_cast<double>(unknowns_.size()));
    if (!(analysis_.condition <= doubtful_condition))
        analysis_.notes.push_back(
            {Note::Weight::warning, "condition",
             text_of("条件数の推定 %.1e が大きく、確かな桁が少ないおそれがあります",
                     analysis_.condition)});
}

void Solver::add_held(size_t member, const EndForces& forces, Vectors& held,
                      Response& response) const {
    add_to_nodes(members_[member], forces, -1.0, held[frame_.members[member].i],
                 held[frame_.members[member].j]);
    auto& ends = response.end_force[member];
    ends[0] = six_of(vector_of(ends[0]) + forces.i);
    ends[1] = six_of(vector_of(ends[1]) + forces.j);
}

Vectors Solver::load_of(const LoadVector& load, Response& response) const {
    Vectors forces(frame_.nodes.size(), Vector6::Zero());
    response.end_force.assign(members_.size(), {});
    for (const NodeLoad& one : load.nodes)
        forces[one.node] += vector_of(one.value);
    for (const MemberLoad& one : load.members)
        add_held(one.member, held_forces(members_[one.member], one), forces, response);
    const Eigen::Vector3d gravity(load.gravity[0], load.gravity[1], load.gravity[2]);
    if (gravity.norm() > 0.0)
        for (size_t i = 0; i < members_.size(); i++)
            add_held(i,
                     held_forces_uniform(members_[i],
                                         members_[i].axes * gravity * frame_.members[i].weight),
                     forces, response);
    return forces;
}

Vectors Solver::unbalanced(const Vectors& load, const Vectors& moved,
                           std::vector<EndForces>& ends) const {
    Vectors left = load;
    for (size_t i = 0; i < members_.size(); i++) {
        const Member& member = frame_.members[i];
        ends[i] = forces_of(members_[i], moved[member.i], moved[member.j]);
        add_to_nodes(members_[i], ends[i], -1.0, left[member.i], left[member.j]);
    }
    for (const size_t node : sprung_)
        for (size_t k = 0; k < dof_count; k++)
            if (std::isfinite(frame_.nodes[node].support[k])) {
                const auto dof = static_cast<Eigen::Index>(k);
                left[node](dof) -= frame_.nodes[node].support[k] * moved[node](dof);
            }
    return left;
}

void Solver::add_corrections(const std::vector<Vectors>& forces, std::vector<Vectors>& moved) {
    std::vector<double> x(unknowns_.size() * width, 0.0);
    const auto at = [this](size_t j) { return static_cast<Eigen::Index>(unknowns_[j].dof); };
    for (size_t j = 0; j < unknowns_.size(); j++)
        for (size_t c = 0; c < forces.size(); c++)
            x[j * width + c] = forces[c][unknowns_[j].node](at(j)) * scale_[j];
    factor_->solve_block(x);
    for (size_t j = 0; j < unknowns_.size(); j++)
        for (size_t c = 0; c < forces.size(); c++)
            moved[c][unknowns_[j].node](at(j)) += x[j * width + c] * scale_[j];
}

double Solver::relative(const Vector6& force, double scale) const {
    return std::max(force.head<3>().lpNorm<Eigen::Infinity>(),
                    force.tail<3>().lpNorm<Eigen::Infinity>() / arm_) /
           scale;
}

double Solver::residual(const Vectors& left, double scale) const {
    double worst = 0.0;
    for (const Unknown& unknown : unknowns_) {
        const double one = std::abs(left[unknown.node](static_cast<Eigen::Index>(unknown.dof)));
        worst = std::max(worst, unknown.dof < 3 ? one : one / arm_);
    }
    return worst / scale;
}

void Solver::solve(size_t first, size_t count) {
    std::vector<Vectors> load(count), left(count);
    std::vector<Vectors> moved(count, Vectors(frame_.nodes.size(), Vector6::Zero()));
    std::vector<std::vector<EndForces>> ends(count, std::vector<EndForces>(members_.size()));
    std::vector<double> scale(count, 0.0);
    for (size_t c = 0; c < count; c++) {
        left[c] = load[c] = load_of(loads_[first + c], analysis_.responses[first + c]);
        for (const Vector6& force : load[c])
            scale[c] = std::max(scale[c], relative(force, 1.0));
        scale[c] = scale[c] > 0.0 ? scale[c] : 1.0;
    }
    double before = std::numeric_limits<double>::infinity();
    for (int round = 0; round <= most_refinements; round++) {
        if (!unknowns_.empty())
            add_corrections(left, moved);
        double most = 0.0;
        for (size_t c = 0; c < count; c++) {
            left[c] = unbalanced(load[c], moved[c], ends[c]);
            analysis_.responses[first + c].residual = residual(left[c], scale[c]);
            most = std::max(most, analysis_.responses[first + c].residual);
        }
        if (most <= refined_residual || !(most < 0.5 * before))
            break;
        before = most;
    }
    for (size_t c = 0; c < count; c++)
        finish(load[c], moved[c], left[c], ends[c], analysis_.responses[first + c]);
}

void Solver::finish(const Vectors& load, const Vectors& moved, const Vectors& left,
                    const std::vector<EndForces>& ends, Response& response) {
    for (size_t i = 0; i < ends.size(); i++) {
        response.end_force[i][0] = six_of(vector_of(response.end_force[i][0]) + ends[i].i);
        response.end_force[i][1] = six_of(vector_of(response.end_force[i][1]) + ends[i].j);
    }
    Vector6 sum = Vector6::Zero();
    double scale = 0.0;
    for (size_t i = 0; i < moved.size(); i++) {
        Vector6 reaction = Vector6::Zero();
        for (size_t k = 0; k < dof_count; k++) {
            const auto dof = static_cast<Eigen::Index>(k);
            const double support = frame_.nodes[i].support[k];
            reaction(dof) = std::isinf(support) ? -left[i](dof) : -support * moved[i](dof);
        }
        response.moved.push_back(six_of(moved[i]));
        response.reaction.push_back(six_of(reaction));
        const Vector6 both = load[i] + reaction;
        Eigen::Vector3d arm;
        for (size_t k = 0; k < 3; k++)
            arm(static_cast<Eigen::Index>(k)) = frame_.nodes[i].at[k] - frame_.nodes[0].at[k];
        sum += both;
        sum.tail<3>() += arm.cross(both.head<3>());
        scale = std::max(scale, relative(load[i], 1.0));
    }
    response.imbalance = relative(sum, scale > 0.0 ? scale : 1.0);
}

void Solver::run() {
    number();
    if (!unknowns_.empty()) {
        if (!set_scale() || !factorise())
            return;
        estimate_condition();
    }
    analysis_.responses.resize(loads_.size());
    for (size_t first = 0; first < loads_.size(); first += width)
        solve(first, std::min(width, loads_.size() - first));
    for (size_t i = 0; i < loads_.size(); i++)
        if (!(analysis_.responses[i].residual <= doubtful_residual))
            analysis_.notes.push_back(
                {Note::Weight::warning, "residual",
                 text_of("荷重「%s」: 釣合いの残差 %.1e が %.0e を越えています",
                         loads_[i].name.c_str(), analysis_.responses[i].residual,
                         doubtful_residual)});
}

} // namespace

Analysis analyse(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads) {
    Analysis analysis;
    analysis.fault = check(frame);
    for (const LoadVector& load : loads)
        if (analysis.fault.empty())
            analysis.fault = check(frame, load);
    if (analysis.fault.empty())
        Solver(frame, loads, most_threads, analysis).run();
    return analysis;
}

Six internal_forces(const Frame& frame, const LoadVector& load, const Response& response,
                    size_t member, double distance) {
    const Jointed own = make_jointed(frame, frame.members[member]);
    const Six& end = response.end_force[member][0];
    Eigen::Vector3d force(end[0], end[1], end[2]); // on the part before the section
    Eigen::Vector3d moment(end[3], end[4], end[5]);
    const Eigen::Vector3d along(distance, 0.0, 0.0);
    moment -= along.cross(force); // about the section: arm from there to I is -along
    const auto add = [&](const Eigen::Vector3d& more, double before) {
        force += more;
        moment -= Eigen::Vector3d(before, 0.0, 0.0).cross(more);
    };
    for (const MemberLoad& one : load.members)
        if (one.member == member) {
            const Eigen::Vector3d local = local_load(own, one);
            if (one.kind != MemberLoad::Kind::point)
                add(local * distance, distance / 2.0);
            else if (one.distance < distance)
                add(local, distance - one.distance);
        }
    const Eigen::Vector3d gravity(load.gravity[0], load.gravity[1], load.gravity[2]);
    add(own.axes * gravity * (frame.members[member].weight * distance), distance / 2.0);
    return {-force.x(), -force.y(), -force.z(), -moment.x(), -moment.y(), -moment.z()};
}

} // namespace frame_analysis
