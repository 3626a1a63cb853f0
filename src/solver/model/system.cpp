#include "solver/model/system.h"

#include "solver/model/check.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace frameslv {

namespace {

// A pivot that elimination has brought below this part of its diagonal is rounding, not stiffness:
// 16 digits less the growth of rounding in a large frame.
constexpr double smallest_pivot = 1e-12;

// Shift of the unit diagonal that makes a singular matrix solvable, and rounds of inverse
// iteration: each favours the motion without resistance by the inverse of the shift.
constexpr double iteration_shift = 1e-9;
constexpr int iteration_rounds = 3;

FreeDofs free_of(const Node& node) {
    FreeDofs free;
    for (size_t k = 0; k < dof_count; k++)
        if (!node.held[k])
            free.dof[static_cast<size_t>(free.count++)] = static_cast<unsigned char>(k);
    return free;
}

} // namespace

System::System(const Model& model, int most_threads) : model_(model) {
    elements.reserve(model.member.size());
    double lengths = 0.0;
    for (int no = 1; no <= static_cast<int>(model.member.size()); no++) {
        elements.push_back(make_element(model, no));
        lengths += elements.back().length;
    }
    arm_ = lengths / static_cast<double>(elements.size());
    std::vector<FreeDofs> free;
    std::vector<int> counts;
    std::vector<Point> at;
    vertex_.assign(model.node.size(), -1);
    for (size_t i = 0; i < model.node.size(); i++) {
        const FreeDofs own = free_of(model.node[i]);
        if (own.count == 0)
            continue;
        vertex_[i] = static_cast<int>(free.size());
        free.push_back(own);
        counts.push_back(own.count);
        at.push_back(model.node[i].at);
    }
    std::vector<Edge> edges, ends;
    edges.reserve(elements.size());
    ends.reserve(elements.size());
    for (const Member& member : model.member) {
        edges.emplace_back(static_cast<int>(index_of(member.noi)),
                           static_cast<int>(index_of(member.noj)));
        ends.emplace_back(vertex_[index_of(member.noi)], vertex_[index_of(member.noj)]);
    }
    const Graph nodes = make_graph(static_cast<int>(model.node.size()), edges);
    repeated_ = edges.size() - nodes.next.size() / 2;
    if (free.empty())
        return;
    Symbolic symbolic = best_symbolic(make_graph(static_cast<int>(free.size()), ends), counts, at);
    factor_ = std::make_unique<Cholesky>(std::move(symbolic), std::move(ends), std::move(free),
                                         most_threads);
    number_unknowns();
}

void System::number_unknowns() {
    const Symbolic& symbolic = factor_->symbolic();
    std::vector<int> node_of(symbolic.order.size());
    for (size_t i = 0; i < vertex_.size(); i++)
        if (vertex_[i] >= 0)
            node_of[static_cast<size_t>(vertex_[i])] = static_cast<int>(i);
    unknowns_.reserve(static_cast<size_t>(symbolic.offset.back()));
    for (const int vertex : symbolic.order) {
        const int node = node_of[static_cast<size_t>(vertex)];
        const FreeDofs free = free_of(model_.node[static_cast<size_t>(node)]);
        for (int k = 0; k < free.count; k++)
            unknowns_.push_back({node, free.dof[static_cast<size_t>(k)]});
    }
}

Fault System::set_scale() {
    NodeVectors diagonal(model_.node.size(), Vector6::Zero());
    for (size_t i = 0; i < elements.size(); i++) {
        const Vector6 own = stiffness_diagonal(elements[i]);
        diagonal[index_of(model_.member[i].noi)] += own;
        diagonal[index_of(model_.member[i].noj)] += own;
    }
    scale_.resize(size());
    for (size_t j = 0; j < size(); j++) {
        const auto [node, dof] = unknowns_[j];
        const double own = diagonal[static_cast<size_t>(node)](dof);
        if (!std::isfinite(own) || own < DBL_MIN)
            return {Exit::inexact, text_of("%s の剛性 %g が計算できる範囲を越えています",
                                           node_label(model_, node + 1).c_str(), own)};
        scale_[j] = 1.0 / std::sqrt(own);
    }
    return {};
}

bool System::factorise_shifted(double shift) {
    return factor_->factorise(
        [this](size_t member, StiffnessBlocks& blocks) {
            blocks = stiffness_blocks(elements[member]);
        },
        scale_, shift);
}

bool System::try_factorise() {
    if (size() == 0)
        return true;
    if (!factorise_shifted(0.0))
        return false;
    least_pivot_ = *std::min_element(factor_->pivots().begin(), factor_->pivots().end());
    return least_pivot_ >= smallest_pivot;
}

Fault System::factorise() {
    if (size() == 0)
        return {};
    if (Fault fault = set_scale())
        return fault;
    if (try_factorise())
        return {};
    const auto [node, dof] = loosest_motion();
    return {Exit::inexact,
            text_of("部材の剛性の差が大きすぎて計算できません: %s がほとんど抵抗なく %s",
                    node_label(model_, node + 1).c_str(), motion_label(static_cast<size_t>(dof)))};
}

System::Unknown System::loosest_motion() {
    std::vector<double> motion(size());
    for (size_t j = 0; j < motion.size(); j++) // deliberate: a start that no symmetry shares
        motion[j] = 1.0 + 0.5 * std::sin(static_cast<double>(j) * 1.7);
    double shift = iteration_shift;
    while (!factorise_shifted(shift) && shift < 1.0)
        shift *= 10.0;
    for (int round = 0; round < iteration_rounds; round++) {
        factor_->solve(motion);
        double most = 0.0;
        for (const double value : motion)
            most = std::max(most, std::abs(value));
        for (double& value : motion)
            value /= most;
    }
    size_t loosest = 0;
    double most = -1.0;
    for (size_t j = 0; j < motion.size(); j++) {
        const double moved = std::abs(motion[j]) * scale_[j] * (unknowns_[j].dof < 3 ? 1.0 : arm_);
        if (moved > most) {
            most = moved;
            loosest = j;
        }
    }
    return unknowns_[loosest];
}

std::vector<double> System::scaled_forces(const NodeVectors& forces) const {
    std::vector<double> x(size());
    for (size_t j = 0; j < x.size(); j++)
        x[j] = forces[static_cast<size_t>(unknowns_[j].node)](unknowns_[j].dof) * scale_[j];
    return x;
}

NodeVectors System::unscaled(std::span<const double> x) const {
    NodeVectors moved(model_.node.size(), Vector6::Zero());
    for (size_t j = 0; j < x.size(); j++)
        moved[static_cast<size_t>(unknowns_[j].node)](unknowns_[j].dof) = x[j] * scale_[j];
    return moved;
}

void System::add_solution(const NodeVectors& forces, NodeVectors& moved) const {
    if (size() == 0)
        return;
    std::vector<double> x = scaled_forces(forces);
    factor_->solve(x);
    for (size_t j = 0; j < x.size(); j++)
        moved[static_cast<size_t>(unknowns_[j].node)](unknowns_[j].dof) += x[j] * scale_[j];
}

NodeVectors System::member_forces(const std::vector<Element>& members,
                                  const NodeVectors& moved) const {
    NodeVectors forces(moved.size(), Vector6::Zero());
    for (size_t i = 0; i < members.size(); i++) {
        const size_t a = index_of(model_.member[i].noi);
        const size_t b = index_of(model_.member[i].noj);
        add_to_nodes(members[i], end_forces(members[i], moved[a], moved[b]), forces[a], forces[b]);
    }
    return forces;
}

} // namespace frameslv
