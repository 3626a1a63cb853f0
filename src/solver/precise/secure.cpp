#include "solver/precise/secure.h"

#include "solver/precise/balance.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

namespace frameslv {

namespace {

constexpr double kept_bound = 1e-8;    // a solution this certain is left alone
constexpr double mended_bound = 1e-10; // one that is mended ends here
constexpr int most_corrections = 60;
constexpr double least_gain = 0.7; // of a correction over the one before
constexpr int most_stuck = 3;      // corrections in a row without it

// Largest eigenvalue of a sum of positive semidefinite 12 x 12 matrices scaled to unit diagonal.
constexpr double stiffness_norm = 12.0;
// Rounding of the factorisation by the stiffness norm: a few of each entry, and what adds up along
// the columns of an unknown.
constexpr double entry_rounding = 64.0 * DBL_EPSILON;
constexpr double column_rounding = 4.0 * DBL_EPSILON; // times the root of the unknowns
// Above this the product of rounding and norm is replaced by what products show.
constexpr double doubtful_part = 1e-2;
constexpr double useless_part = 0.9;
constexpr int probe_rounds = 4;
constexpr double probe_safety = 2.0;

constexpr double companion = 1e-7; // of the kind beside it, for kinds that vanish

constexpr size_t width = Kernels::block;
constexpr size_t probes = width - 1; // the last vector of the block is the residual's

using Sizes = std::array<double, kind_count>;
constexpr double unknown = std::numeric_limits<double>::infinity();

size_t at(Kind kind) {
    return static_cast<size_t>(kind);
}

// The larger, and NaN if any is.
double larger(double a, double b) {
    return a >= b ? a : b >= a ? b : std::numeric_limits<double>::quiet_NaN();
}

// Numbers between -1 and 1, the same every time.
class Dice {
  public:
    double next() {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(static_cast<std::int64_t>(state_)) * 0x1p-63;
    }

  private:
    std::uint64_t state_ = 20;
};

void add_sizes(const Vector6& v, double& head, double& tail) {
    for (Eigen::Index k = 0; k < 3; k++) {
        head = larger(head, std::abs(v(k)));
        tail = larger(tail, std::abs(v(k + 3)));
    }
}

class Securing {
  public:
    Securing(const Model& model, const System& system, const Solved& solved)
        : model_(model), system_(system), solved_(solved), moved_(model.node.size()),
          block_(system.size() * width) {
        moved_.high = solved.moved;
    }

    Certainty run();

  private:
    void estimate_norm();
    void balance();
    void probe();
    // Puts the correction for the unbalanced forces, scaled, into `correction_`.
    void correct();
    Sizes sizes() const;
    Sizes errors();
    void set_bound(const Sizes& listing);
    void mend();
    double column_norm(size_t c) const;

    const Model& model_;
    const System& system_;
    const Solved& solved_;
    Certainty certainty_;
    PreciseVectors moved_;
    std::vector<double> block_; // vectors side by side
    std::vector<double> correction_;
    NodeVectors unbalanced_;
    std::vector<EndForces> local_; // without those of loads on members
    double inverse_norm_ = 0.0;
    double part_ = 0.0; // q
    double correction_norm_ = 0.0;
};

double Securing::column_norm(size_t c) const {
    double sum = 0.0;
    for (size_t j = c; j < block_.size(); j += width)
        sum += block_[j] * block_[j];
    return std::sqrt(sum);
}

void Securing::balance() {
    const PreciseVectors asked = precise_member_forces(model_, system_.elements, moved_, &local_);
    unbalanced_.resize(solved_.load.size());
    for (size_t i = 0; i < unbalanced_.size(); i++)
        unbalanced_[i] = (solved_.load[i] - asked.high[i]) - asked.low[i];
}

// The norm of the inverse from what it makes of random vectors, and the correction. The mean of
// |M^-1 z|^2 / |z|^2 is the square of the Frobenius norm, which is not below the 2-norm, by the
// unknowns.
void Securing::estimate_norm() {
    Dice dice;
    const std::vector<double> forces = system_.scaled_forces(unbalanced_);
    for (size_t j = 0; j < forces.size(); j++) {
        for (size_t c = 0; c < probes; c++)
            block_[j * width + c] = dice.next();
        block_[j * width + probes] = forces[j];
    }
    std::array<double, probes> before{};
    for (size_t c = 0; c < probes; c++)
        before[c] = column_norm(c);
    system_.factor().solve_block(block_);
    double squares = 0.0;
    for (size_t c = 0; c < probes; c++)
        squares += std::pow(column_norm(c) / before[c], 2);
    const double unknowns = static_cast<double>(system_.size());
    inverse_norm_ = std::sqrt(squares / static_cast<double>(probes) * unknowns);
    correction_.resize(forces.size());
    for (size_t j = 0; j < forces.size(); j++)
        correction_[j] = block_[j * width + probes];
    certainty_.condition = stiffness_norm * inverse_norm_;
    part_ = (entry_rounding + column_rounding * std::sqrt(unknowns)) * inverse_norm_;
}

// Repeated products v := v - M^-1 K v of the softest vectors that are known.
void Securing::probe() {
    std::vector<double> v(system_.size());
    system_.factor().solve_block(block_);
    double most = 0.0;
    for (int round = 0; round < probe_rounds; round++) {
        std::array<std::vector<double>, probes> kept;
        for (size_t c = 0; c < probes; c++) {
            const double norm = column_norm(c);
            for (size_t j = 0; j < v.size(); j++)
                v[j] = norm > 0.0 ? block_[j * width + c] / norm : 0.0;
            PreciseVectors shape(model_.node.size());
            shape.high = system_.unscaled(v);
            const PreciseVectors asked = precise_member_forces(model_, system_.elements, shape);
            kept[c] = v;
            const std::vector<double> forces = system_.scaled_forces(asked.high);
            for (size_t j = 0; j < v.size(); j++)
                block_[j * width + c] = forces[j];
        }
        system_.factor().solve_block(block_);
        for (size_t c = 0; c < probes; c++) {
            for (size_t j = 0; j < v.size(); j++)
                block_[j * width + c] = kept[c][j] - block_[j * width + c];
            most = larger(most, column_norm(c));
        }
    }
    part_ = probe_safety * most;
}

void Securing::correct() {
    correction_ = system_.scaled_forces(unbalanced_);
    system_.factor().solve(correction_);
}

Sizes Securing::sizes() const {
    Sizes most{};
    for (const Vector6& u : moved_.high)
        add_sizes(u, most[at(Kind::translation)], most[at(Kind::rotation)]);
    for (const EndForces& forces : solved_.end_force) {
        add_sizes(forces.i, most[at(Kind::force)], most[at(Kind::moment)]);
        add_sizes(forces.j, most[at(Kind::force)], most[at(Kind::moment)]);
    }
    const double arm = system_.arm();
    const Sizes own = most;
    const auto compare = [&](Kind kind, double other) {
        most[at(kind)] = larger(most[at(kind)], companion * other);
    };
    compare(Kind::translation, own[at(Kind::rotation)] * arm);
    compare(Kind::rotation, own[at(Kind::translation)] / arm);
    compare(Kind::force, own[at(Kind::moment)] / arm);
    compare(Kind::moment, own[at(Kind::force)] * arm);
    return most;
}

// The bounds by kind that the correction gives: itself, and q / (1 - q) times its norm, which may
// fall on any unknown; a force is at most the root of its stiffness times the energy.
Sizes Securing::errors() {
    Sizes most{};
    double square = 0.0;
    for (const double value : correction_)
        square += value * value;
    correction_norm_ = std::sqrt(square);
    const double rest = correction_norm_ * part_ / (1.0 - part_);
    Sizes weakest{};
    for (size_t j = 0; j < correction_.size(); j++) {
        const size_t kind = at(system_.unknowns()[j].dof < 3 ? Kind::translation : Kind::rotation);
        weakest[kind] = std::max(weakest[kind], system_.scale()[j]);
        most[kind] = larger(most[kind], std::abs(correction_[j]) * system_.scale()[j]);
    }
    const NodeVectors moved = system_.unscaled(correction_);
    double stiff_force = 0.0, stiff_moment = 0.0;
    for (size_t i = 0; i < system_.elements.size(); i++) {
        const Element& element = system_.elements[i];
        const EndForces forces = end_forces(element, moved[index_of(model_.member[i].noi)],
                                            moved[index_of(model_.member[i].noj)]);
        add_sizes(forces.i, most[at(Kind::force)], most[at(Kind::moment)]);
        add_sizes(forces.j, most[at(Kind::force)], most[at(Kind::moment)]);
        const double bending = std::max(element.bending_y, element.bending_z);
        stiff_force = std::max(
            {stiff_force, element.axial, 12.0 * bending / (element.length * element.length)});
        stiff_moment = std::max({stiff_moment, element.torsion, 4.0 * bending});
    }
    most[at(Kind::translation)] += rest * weakest[at(Kind::translation)];
    most[at(Kind::rotation)] += rest * weakest[at(Kind::rotation)];
    most[at(Kind::force)] += rest * std::sqrt(stiffness_norm * stiff_force);
    most[at(Kind::moment)] += rest * std::sqrt(stiffness_norm * stiff_moment);
    return most;
}

// `listing`: what the listed forces differ from those of the displacements.
void Securing::set_bound(const Sizes& listing) {
    const Sizes error = errors();
    const Sizes size = sizes();
    for (size_t k = 0; k < kind_count; k++) {
        const double both = error[k] + listing[k];
        const bool none = size[k] <= 0.0 && both <= 0.0;
        const double bound = none ? 0.0 : both / size[k];
        certainty_.bound[k] = std::isfinite(bound) ? bound : unknown;
    }
}

void Securing::mend() {
    certainty_.mended = true;
    std::vector<EndForces> own = solved_.end_force; // of the loads on members, after this
    for (size_t i = 0; i < own.size(); i++) {
        const Element& element = system_.elements[i];
        own[i] = element.load.isZero(0.0) ? EndForces{Vector6::Zero(), Vector6::Zero()}
                                          : fixed_end_forces(element);
    }
    int stuck = 0;
    for (int round = 0; round < most_corrections && stuck < most_stuck; round++) {
        const double before = correction_norm_;
        moved_.add(system_.unscaled(correction_));
        balance();
        for (size_t i = 0; i < own.size(); i++)
            solved_.end_force[i] = {local_[i].i + own[i].i, local_[i].j + own[i].j};
        correct();
        set_bound({});
        if (*std::max_element(certainty_.bound.begin(), certainty_.bound.end()) <= mended_bound)
            break;
        stuck = correction_norm_ < least_gain * before ? 0 : stuck + 1;
    }
    solved_.moved = moved_.high;
    solved_.unbalanced = unbalanced_;
}

Certainty Securing::run() {
    if (system_.size() == 0)
        return certainty_;
    balance();
    estimate_norm();
    if (!(part_ <= doubtful_part))
        probe();
    if (!(part_ <= useless_part)) {
        certainty_.known = false;
        certainty_.bound.fill(unknown);
        return certainty_;
    }
    Sizes listing{};
    for (size_t i = 0; i < local_.size(); i++) {
        EndForces listed = solved_.end_force[i];
        if (!system_.elements[i].load.isZero(0.0)) {
            const EndForces fixed = fixed_end_forces(system_.elements[i]);
            listed.i -= fixed.i;
            listed.j -= fixed.j;
        }
        add_sizes(listed.i - local_[i].i, listing[at(Kind::force)], listing[at(Kind::moment)]);
        add_sizes(listed.j - local_[i].j, listing[at(Kind::force)], listing[at(Kind::moment)]);
    }
    set_bound(listing);
    if (!(*std::max_element(certainty_.bound.begin(), certainty_.bound.end()) <= kept_bound))
        mend();
    return certainty_;
}

} // namespace

Certainty secure(const Model& model, const System& system, const Solved& solved) {
    return Securing(model, system, solved).run();
}

} // namespace frameslv
