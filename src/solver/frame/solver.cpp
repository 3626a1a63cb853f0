#include "solver/frame/solver.h"

#include "solver/base/fault.h"
#include "solver/frame/input_check.h"
#include "solver/model/check.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace frame_analysis {

namespace {

using frameslv::dof_count;
using frameslv::EndForces;
using frameslv::Equations;
using frameslv::FreeDofs;
using frameslv::Kernels;
using frameslv::NodeVectors;
using frameslv::StiffnessBlocks;
using frameslv::text_of;
using frameslv::Vector6;

constexpr double stiffness_norm = 12.0; // see precise/secure.h
constexpr double doubtful_condition = 1e12;
constexpr double doubtful_residual = 1e-9; // by the largest load: corrected, and told if it stays
constexpr int most_refinements = 4;
// An axial force on the wrong side below this part of the largest load is rounding.
constexpr double idle_force = 1e-9;

bool is_spring(double support) {
    return support > 0.0 && std::isfinite(support);
}

Six sum_of(const Six& six, const Vector6& more) {
    Six sum;
    for (size_t k = 0; k < dof_count; k++)
        sum[k] = six[k] + more(static_cast<Eigen::Index>(k));
    return sum;
}

frameslv::Point point_of(const Node& node) {
    return {node.at[0], node.at[1], node.at[2]};
}

std::vector<size_t> sprung_nodes(const Frame& frame) {
    std::vector<size_t> sprung;
    for (size_t i = 0; i < frame.nodes.size(); i++)
        if (std::any_of(frame.nodes[i].support.begin(), frame.nodes[i].support.end(), is_spring))
            sprung.push_back(i);
    return sprung;
}

std::vector<frameslv::Edge> edges_of(const Frame& frame) {
    std::vector<frameslv::Edge> edges;
    edges.reserve(frame.members.size());
    for (const Member& member : frame.members)
        edges.emplace_back(static_cast<int>(member.i), static_cast<int>(member.j));
    return edges;
}

Equations equations_of(const Frame& frame, int most_threads) {
    std::vector<FreeDofs> free(frame.nodes.size());
    std::vector<frameslv::Point> at;
    for (size_t i = 0; i < free.size(); i++) {
        for (size_t k = 0; k < dof_count; k++)
            if (std::isfinite(frame.nodes[i].support[k]))
                free[i].dof[static_cast<size_t>(free[i].count++)] = static_cast<unsigned char>(k);
        at.push_back(point_of(frame.nodes[i]));
    }
    return {free, at, edges_of(frame), sprung_nodes(frame), most_threads};
}

template <size_t width> double size_of(const LanesSix<width>& force, size_t lane, double arm) {
    double most = 0.0;
    for (size_t k = 0; k < dof_count; k++)
        most = std::max(most, std::abs(force[k].v[lane]) / (k < 3 ? 1.0 : arm));
    return most;
}

} // namespace

Solver::Solver(const Frame& frame, const std::vector<LoadVector>& loads, int most_threads,
               int most_rounds, Analysis& analysis)
    : frame_(frame), loads_(loads), most_rounds_(most_rounds), analysis_(analysis),
      sprung_(sprung_nodes(frame)), equations_(equations_of(frame, most_threads)),
      carrying_(frame.members.size(), 1), search_(loads.size()) {
    double lengths = 0.0;
    members_.reserve(frame.members.size());
    for (const Member& member : frame.members) {
        if (member.carries != Member::Carries::both)
            one_way_.push_back(members_.size());
        members_.push_back(make_jointed(frame, member));
        lengths += members_.back().length;
        const double weight = member.weight * members_.back().length;
        weight_ += weight;
        for (size_t k = 0; k < 3; k++)
            weight_arm_(static_cast<Eigen::Index>(k)) +=
                weight * (0.5 * (frame.nodes[member.i].at[k] + frame.nodes[member.j].at[k]) -
                          frame.nodes[0].at[k]);
    }
    arm_ = lengths / static_cast<double>(members_.size());
}

// Exact for the rigid motions of each connected part; joints that give may leave others, which the
// factorisation finds.
bool Solver::check_supports() {
    frameslv::Skeleton skeleton;
    for (const Node& node : frame_.nodes) {
        skeleton.at.push_back(point_of(node));
        std::array<bool, dof_count> held{};
        for (size_t k = 0; k < dof_count; k++)
            held[k] = node.support[k] > 0.0;
        skeleton.held.push_back(held);
    }
    skeleton.members = edges_of(frame_);
    skeleton.label = [this](size_t node) { return node_label(frame_, node); };
    analysis_.fault = check_held(skeleton).text;
    return analysis_.fault.empty();
}

Equations::Blocks Solver::blocks() const {
    return [this](size_t member, StiffnessBlocks& own) {
        if (member < members_.size()) {
            own = blocks_of(members_[member], carrying_[member] != 0);
            return;
        }
        own.ii.setZero();
        own.ij.setZero();
        own.jj.setZero();
        const Six& springs = frame_.nodes[sprung_[member - members_.size()]].support;
        for (size_t k = 0; k < dof_count; k++)
            if (is_spring(springs[k]))
                own.ii.diagonal()(static_cast<Eigen::Index>(k)) = springs[k];
    };
}

std::string Solver::loose(const Equations::Unknown& unknown) const {
    return text_of("構造が不安定です: %s が %s%s",
                   node_label(frame_, static_cast<size_t>(unknown.node)).c_str(),
                   frameslv::motion_label(static_cast<size_t>(unknown.dof)),
                   unknown.dof >= 3 ? " (接合がどれも回転を止めていません)" : "");
}

bool Solver::set_scale(std::string& fault) {
    NodeVectors diagonal(frame_.nodes.size(), Vector6::Zero());
    for (size_t i = 0; i < members_.size(); i++)
        add_diagonal(members_[i], carrying_[i] != 0, diagonal[frame_.members[i].i],
                     diagonal[frame_.members[i].j]);
    for (const size_t node : sprung_)
        for (size_t k = 0; k < dof_count; k++)
            if (is_spring(frame_.nodes[node].support[k]))
                diagonal[node](static_cast<Eigen::Index>(k)) += frame_.nodes[node].support[k];
    // What a turned axis leaves of a released direction is rounding.
    const auto bad = equations_.set_scale(diagonal, frameslv::smallest_pivot);
    if (!bad)
        return true;
    const auto node = static_cast<size_t>(bad->node);
    fault = std::isfinite(diagonal[node](bad->dof))
                ? loose(*bad)
                : node_label(frame_, node) + " の剛性が計算できる範囲を越えています";
    return false;
}

bool Solver::factorise(std::string& fault) {
    if (equations_.size() == 0)
        return true;
    fault = equations_.fits_memory().text;
    if (!fault.empty() || !set_scale(fault))
        return false;
    if (equations_.factorise_surely(blocks()))
        return true;
    fault = loose(equations_.loosest_motion(blocks(), arm_));
    return false;
}

void Solver::estimate_condition() {
    if (equations_.size() == 0)
        return;
    std::vector<double> x(equations_.size() * Kernels::block);
    unsigned state = 20;
    double before = 0.0, after = 0.0;
    for (double& value : x) {
        state = state * 1664525U + 1013904223U;
        value = static_cast<double>(state) * 0x1p-31 - 1.0;
        before += value * value;
    }
    equations_.factor().solve_block(x);
    for (const double value : x)
        after += value * value;
    const double condition =
        stiffness_norm * std::sqrt(after / before * static_cast<double>(equations_.size()));
    analysis_.condition = std::max(analysis_.condition, condition);
}

template <size_t width>
void Solver::subtract_weight(const Pass<width>& pass, NodeLanes<width>& left) {
    if constexpr (width == 1) {
        subtract_members<width>(pass, nullptr, left, nullptr);
    } else {
        if (unit_weight_.empty()) { // under a unit of gravity along each axis, one a lane
            Pass<width> unit{frame_, members_, carrying_, {}, true, {}};
            for (size_t k = 0; k < 3; k++)
                unit.gravity[k].v[k] = 1.0;
            unit_weight_.assign(frame_.nodes.size(), {});
            subtract_members<width>(unit, nullptr, unit_weight_, nullptr);
        }
        for (size_t i = 0; i < left.size(); i++)
            for (size_t dof = 0; dof < dof_count; dof++)
                for (size_t k = 0; k < 3; k++)
                    for (size_t c = 0; c < width; c++)
                        left[i][dof].v[c] += unit_weight_[i][dof].v[k] * pass.gravity[k].v[c];
    }
}

template <size_t width> void Solver::set_loads(Pass<width>& pass, Block<width>& block) {
    block.scale.fill(0.0);
    block.load.assign(frame_.nodes.size(), {});
    block.moved.assign(frame_.nodes.size(), {});
    for (size_t c = 0; c < block.loads.size(); c++) {
        const LoadVector& load = loads_[block.loads[c]];
        for (const NodeLoad& one : load.nodes)
            for (size_t k = 0; k < dof_count; k++)
                block.load[one.node][k].v[c] += one.value[k];
        for (const MemberLoad& one : load.members) {
            const Member& member = frame_.members[one.member];
            const EndForces held = held_forces(members_[one.member], one);
            Vector6 at_i = Vector6::Zero(), at_j = Vector6::Zero();
            add_to_nodes(members_[one.member], held, -1.0, at_i, at_j);
            for (size_t k = 0; k < dof_count; k++) {
                block.load[member.i][k].v[c] += at_i(static_cast<Eigen::Index>(k));
                block.load[member.j][k].v[c] += at_j(static_cast<Eigen::Index>(k));
            }
        }
        for (size_t k = 0; k < 3; k++) {
            pass.gravity[k].v[c] = load.gravity[k];
            pass.weighs = pass.weighs || std::abs(load.gravity[k]) > 0.0;
        }
    }
    block.left = block.load;
    if (pass.weighs)
        subtract_weight(pass, block.left);
    for (size_t c = 0; c < block.loads.size(); c++) {
        for (const LanesSix<width>& force : block.left)
            block.scale[c] = std::max(block.scale[c], size_of(force, c, arm_));
        block.scale[c] = block.scale[c] > 0.0 ? block.scale[c] : 1.0;
    }
}

template <size_t width> void Solver::add_corrections(Block<width>& block) {
    const auto& unknowns = equations_.unknowns();
    const auto& scale = equations_.scale();
    std::vector<double>& x = block.x;
    x.resize(unknowns.size() * width);
    const auto lanes = [&](NodeLanes<width>& of, size_t j) -> Lanes<width>& {
        return of[static_cast<size_t>(unknowns[j].node)][static_cast<size_t>(unknowns[j].dof)];
    };
    for (size_t j = 0; j < unknowns.size(); j++)
        for (size_t c = 0; c < width; c++)
            x[j * width + c] = lanes(block.left, j).v[c] * scale[j];
    if constexpr (width == 1)
        equations_.factor().solve(x);
    else
        equations_.factor().solve_wide_block(x);
    for (size_t j = 0; j < unknowns.size(); j++)
        for (size_t c = 0; c < width; c++)
            lanes(block.moved, j).v[c] += x[j * width + c] * scale[j];
}

template <size_t width> void Solver::refine(const Pass<width>& pass, Block<width>& block) {
    block.stretch.resize(one_way_.empty() ? 0 : members_.size());
    double before = std::numeric_limits<double>::infinity();
    for (int round = 0; round <= most_refinements; round++) {
        if (equations_.size() > 0)
            add_corrections(block);
        block.left = block.load;
        subtract_members<width>(pass, &block.moved, block.left,
                                one_way_.empty() ? nullptr : &block.stretch);
        for (const size_t node : sprung_)
            for (size_t k = 0; k < dof_count; k++)
                if (const double spring = frame_.nodes[node].support[k]; is_spring(spring))
                    for (size_t c = 0; c < width; c++)
                        block.left[node][k].v[c] -= spring * block.moved[node][k].v[c];
        double most = 0.0;
        for (size_t c = 0; c < block.loads.size(); c++) {
            double& residual = analysis_.responses[block.loads[c]].residual;
            residual = 0.0;
            for (const auto& [node, dof] : equations_.unknowns())
                residual = std::max(
                    residual,
                    std::abs(block.left[static_cast<size_t>(node)][static_cast<size_t>(dof)].v[c]) /
                        (dof < 3 ? 1.0 : arm_));
            residual /= block.scale[c];
            most = std::max(most, residual);
        }
        if (most <= doubtful_residual || !(most < 0.5 * before))
            return;
        before = most;
    }
}

template <size_t width> void Solver::solve(const std::vector<size_t>& loads, Block<width>& block) {
    block.loads = loads;
    Pass<width> pass{frame_, members_, carrying_, {}, false, {}};
    set_loads(pass, block);
    for (const size_t load : loads) {
        analysis_.responses[load].end_force.resize(members_.size());
        pass.ends.push_back(analysis_.responses[load].end_force.data());
    }
    refine(pass, block);
    for (size_t c = 0; c < loads.size(); c++)
        if (settles(block, c))
            finish(block, c);
}

template <size_t width> bool Solver::settles(const Block<width>& block, size_t lane) {
    Search& search = search_[block.loads[lane]];
    search.rounds++;
    Carrying next = carrying_;
    double worst = 0.0;
    for (const size_t member : one_way_) {
        const bool tension = frame_.members[member].carries == Member::Carries::tension;
        const double force = (tension ? 1.0 : -1.0) * block.stretch[member].v[lane];
        const double off = carrying_[member] != 0 ? -force : force;
        if (!(off > idle_force * block.scale[lane]))
            continue;
        if (!search.one_by_one)
            next[member] = carrying_[member] == 0;
        if (off > worst) {
            worst = off;
            search.changed = member;
        }
    }
    search.done = !(worst > 0.0);
    if (search.done || one_way_.empty())
        return search.done;
    if (search.one_by_one)
        next[search.changed] = carrying_[search.changed] == 0;
    const bool known = std::find(search.seen.begin(), search.seen.end(), next) != search.seen.end();
    if (known && !search.one_by_one) {
        search.one_by_one = true;
        search.seen.clear();
        next = carrying_;
        next[search.changed] = carrying_[search.changed] == 0;
    } else if (known) {
        search.rounds = most_rounds_; // it would go round for ever
    }
    search.seen.push_back(carrying_);
    search.now = std::move(next);
    return false;
}

// Those of the loads on members with both nodes held, which the pass leaves out.
void Solver::add_held_forces(size_t load) {
    for (const MemberLoad& one : loads_[load].members) {
        const EndForces held = held_forces(members_[one.member], one);
        auto& ends = analysis_.responses[load].end_force[one.member];
        ends[0] = sum_of(ends[0], held.i);
        ends[1] = sum_of(ends[1], held.j);
    }
}

template <size_t width> void Solver::finish(const Block<width>& block, size_t lane) {
    const size_t load = block.loads[lane];
    Response& response = analysis_.responses[load];
    add_held_forces(load);
    for (const size_t member : one_way_)
        if (carrying_[member] == 0)
            response.idle.push_back(member);
    response.rounds = one_way_.empty() ? 0 : search_[load].rounds;
    response.moved.resize(frame_.nodes.size());
    response.reaction.resize(frame_.nodes.size());
    // Loads and reactions are in balance where what is left of the nodes' loads after the members'
    // forces is: those of each member balance with its weight.
    Vector6 sum = Vector6::Zero();
    for (size_t i = 0; i < frame_.nodes.size(); i++) {
        Vector6 both;
        for (size_t k = 0; k < dof_count; k++) {
            const double support = frame_.nodes[i].support[k];
            const double moved = block.moved[i][k].v[lane];
            response.moved[i][k] = moved;
            response.reaction[i][k] =
                std::isinf(support) ? -block.left[i][k].v[lane] : -support * moved;
            both(static_cast<Eigen::Index>(k)) = block.load[i][k].v[lane] + response.reaction[i][k];
        }
        const Vector3& at = frame_.nodes[i].at;
        const Vector3& first = frame_.nodes[0].at;
        sum += both;
        sum.tail<3>() += Eigen::Vector3d(at[0] - first[0], at[1] - first[1], at[2] - first[2])
                             .cross(both.head<3>());
    }
    const Eigen::Map<const Eigen::Vector3d> gravity(loads_[load].gravity.data());
    sum.head<3>() += weight_ * gravity;
    sum.tail<3>() += weight_arm_.cross(gravity);
    response.imbalance = std::max(sum.head<3>().lpNorm<Eigen::Infinity>(),
                                  sum.tail<3>().lpNorm<Eigen::Infinity>() / arm_) /
                         block.scale[lane];
}

void Solver::give_up(size_t load) {
    const Search& search = search_[load];
    analysis_.responses[load] = {};
    analysis_.responses[load].rounds = search.rounds;
    analysis_.responses[load].fault = text_of(
        "荷重「%s」: 引張だけ、圧縮だけを負担する部材の組が定まりません (最後に変わったのは %s)",
        loads_[load].name.c_str(), member_label(frame_, search.changed).c_str());
}

void Solver::take(const std::vector<size_t>& group) {
    if (group.size() == 1) {
        Block<1> block;
        return solve<1>(group, block);
    }
    Block<Kernels::wide_block> block;
    for (size_t first = 0; first < group.size(); first += Kernels::wide_block) {
        const size_t last = std::min(group.size(), first + Kernels::wide_block);
        solve<Kernels::wide_block>({group.begin() + static_cast<std::ptrdiff_t>(first),
                                    group.begin() + static_cast<std::ptrdiff_t>(last)},
                                   block);
    }
}

void Solver::iterate() {
    while (true) {
        std::map<Carrying, std::vector<size_t>> groups;
        for (size_t load = 0; load < loads_.size(); load++) {
            Search& search = search_[load];
            if (!search.done && search.rounds < most_rounds_)
                groups[search.now].push_back(load);
            else if (!search.done && analysis_.responses[load].fault.empty())
                give_up(load);
        }
        if (groups.empty())
            return;
        for (const auto& [carrying, group] : groups) {
            carrying_ = carrying;
            std::string fault;
            if (factorise(fault)) {
                estimate_condition();
                take(group);
                continue;
            }
            for (const size_t load : group) {
                search_[load].done = true;
                analysis_.responses[load] = {};
                analysis_.responses[load].fault =
                    text_of("荷重「%s」: 引張だけ、圧縮だけを負担する部材が効かず、%s",
                            loads_[load].name.c_str(), fault.c_str());
            }
        }
    }
}

void Solver::warn() {
    const auto tell = [this](const char* key, const std::string& text) {
        analysis_.notes.push_back({Note::Weight::warning, key, text});
    };
    if (!(analysis_.condition <= doubtful_condition))
        tell("condition", text_of("条件数の推定 %.1e が大きく、確かな桁が少ないおそれがあります",
                                  analysis_.condition));
    for (size_t i = 0; i < loads_.size(); i++) {
        const Response& response = analysis_.responses[i];
        if (!response.fault.empty())
            tell("idle", response.fault);
        if (!(response.residual <= doubtful_residual))
            tell("residual", text_of("荷重「%s」: 釣合いの残差 %.1e が %.0e を越えています",
                                     loads_[i].name.c_str(), response.residual, doubtful_residual));
    }
}

void Solver::run() {
    if (!check_supports() || !factorise(analysis_.fault))
        return;
    estimate_condition();
    analysis_.responses.resize(loads_.size());
    std::vector<size_t> all(loads_.size());
    for (size_t load = 0; load < all.size(); load++)
        all[load] = load;
    if (!all.empty())
        take(all);
    iterate();
    warn();
}

} // namespace frame_analysis
