#include "solver/model/equations.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace frameslv {

namespace {

// Shift of the unit diagonal that makes a singular matrix solvable, and rounds of inverse
// iteration: each favours the motion without resistance by the inverse of the shift.
constexpr double iteration_shift = 1e-9;
constexpr int iteration_rounds = 3;

} // namespace

Equations::Equations(const std::vector<FreeDofs>& free, const std::vector<Point>& at,
                     const std::vector<Edge>& members, const std::vector<size_t>& sprung,
                     int most_threads)
    : nodes_(free.size()), vertex_(free.size(), -1) {
    std::vector<FreeDofs> kept;
    std::vector<int> counts;
    std::vector<Point> places;
    for (size_t i = 0; i < free.size(); i++) {
        if (free[i].count == 0)
            continue;
        vertex_[i] = static_cast<int>(kept.size());
        kept.push_back(free[i]);
        counts.push_back(free[i].count);
        places.push_back(at[i]);
    }
    if (kept.empty())
        return;
    std::vector<Edge> ends;
    ends.reserve(members.size() + sprung.size());
    for (const auto& [i, j] : members)
        ends.emplace_back(vertex_[static_cast<size_t>(i)], vertex_[static_cast<size_t>(j)]);
    Symbolic symbolic =
        best_symbolic(make_graph(static_cast<int>(kept.size()), ends), counts, places);
    for (const size_t node : sprung)
        ends.emplace_back(vertex_[node], -1);
    factor_ = std::make_unique<Cholesky>(std::move(symbolic), std::move(ends), std::move(kept),
                                         most_threads);
    number(free);
}

void Equations::number(const std::vector<FreeDofs>& free) {
    const Symbolic& symbolic = factor_->symbolic();
    std::vector<int> node_of(symbolic.order.size());
    for (size_t i = 0; i < vertex_.size(); i++)
        if (vertex_[i] >= 0)
            node_of[static_cast<size_t>(vertex_[i])] = static_cast<int>(i);
    unknowns_.reserve(static_cast<size_t>(symbolic.offset.back()));
    for (const int vertex : symbolic.order) {
        const int node = node_of[static_cast<size_t>(vertex)];
        const FreeDofs& own = free[static_cast<size_t>(node)];
        for (int k = 0; k < own.count; k++)
            unknowns_.push_back({node, own.dof[static_cast<size_t>(k)]});
    }
}

Fault Equations::fits_memory() const {
    constexpr size_t asked_from = size_t{64} << 20; // bytes: asking costs as much as a small frame
    if (size() == 0 || factor_->needed_bytes() < asked_from)
        return {};
    return fits_memory(available_memory());
}

Fault Equations::fits_memory(size_t available) const {
    constexpr double giga = 1e9;
    if (size() == 0 || factor_->needed_bytes() <= available)
        return {};
    return {
        Exit::no_memory,
        text_of("メモリが足りません: 剛性行列の分解に %.3f GB 要りますが、使えるのは %.3f GB です",
                static_cast<double>(factor_->needed_bytes()) / giga,
                static_cast<double>(available) / giga)};
}

std::optional<Equations::Unknown> Equations::set_scale(const NodeVectors& diagonal, double least) {
    scale_.resize(size());
    for (size_t j = 0; j < size(); j++) {
        const Vector6& all = diagonal[static_cast<size_t>(unknowns_[j].node)];
        const int dof = unknowns_[j].dof;
        const double own = all(dof);
        const double beside = dof < 3 ? all.head<3>().maxCoeff() : all.tail<3>().maxCoeff();
        if (!std::isfinite(own) || own < DBL_MIN || own < least * beside)
            return unknowns_[j];
        scale_[j] = 1.0 / std::sqrt(own);
    }
    return {};
}

bool Equations::factorise(const Blocks& blocks, double shift) {
    return factor_->factorise(blocks, scale_, shift);
}

bool Equations::factorise_surely(const Blocks& blocks) {
    if (size() == 0)
        return true;
    if (!factorise(blocks))
        return false;
    least_pivot_ = *std::min_element(factor_->pivots().begin(), factor_->pivots().end());
    return least_pivot_ >= smallest_pivot;
}

Equations::Unknown Equations::loosest_motion(const Blocks& blocks, double arm) {
    std::vector<double> motion(size());
    for (size_t j = 0; j < motion.size(); j++) // deliberate: a start that no symmetry shares
        motion[j] = 1.0 + 0.5 * std::sin(static_cast<double>(j) * 1.7);
    double shift = iteration_shift;
    while (!factorise(blocks, shift) && shift < 1.0)
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
        const double moved = std::abs(motion[j]) * scale_[j] * (unknowns_[j].dof < 3 ? 1.0 : arm);
        if (moved > most) {
            most = moved;
            loosest = j;
        }
    }
    return unknowns_[loosest];
}

std::vector<double> Equations::scaled_forces(const NodeVectors& forces) const {
    std::vector<double> x(size());
    for (size_t j = 0; j < x.size(); j++)
        x[j] = forces[static_cast<size_t>(unknowns_[j].node)](unknowns_[j].dof) * scale_[j];
    return x;
}

NodeVectors Equations::unscaled(std::span<const double> x) const {
    NodeVectors moved(nodes_, Vector6::Zero());
    for (size_t j = 0; j < x.size(); j++)
        moved[static_cast<size_t>(unknowns_[j].node)](unknowns_[j].dof) = x[j] * scale_[j];
    return moved;
}

void Equations::add_solution(const NodeVectors& forces, NodeVectors& moved) const {
    if (size() == 0)
        return;
    std::vector<double> x = scaled_forces(forces);
    factor_->solve(x);
    for (size_t j = 0; j < x.size(); j++)
        moved[static_cast<size_t>(unknowns_[j].node)](unknowns_[j].dof) += x[j] * scale_[j];
}

} // namespace frameslv
