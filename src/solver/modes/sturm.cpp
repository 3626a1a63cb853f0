#include "solver/modes/sturm.h"

#include <Eigen/SparseCholesky>

#include <algorithm>

namespace frameslv {

namespace {

using Sparse = Eigen::SparseMatrix<double>;
using Triplet = Eigen::Triplet<double>;

// A pivot below this part of the least one of the stiffness itself has no certain sign.
constexpr double least_pivot = 1e-6;

// Adds the lower triangle of a member's matrix, scaled.
class Assembly {
  public:
    explicit Assembly(const System& system)
        : system_(system), unknown_(system.nodes() * dof_count, -1) {
        for (size_t j = 0; j < system.size(); j++) {
            const auto [node, dof] = system.unknowns()[j];
            unknown_[static_cast<size_t>(node) * dof_count + static_cast<size_t>(dof)] =
                static_cast<int>(j);
        }
    }

    void add(const Member& member, const StiffnessBlocks& blocks, double factor) {
        const size_t i = index_of(member.noi);
        const size_t j = index_of(member.noj);
        add_block(i, i, blocks.ii, factor, true);
        add_block(j, j, blocks.jj, factor, true);
        add_block(i, j, blocks.ij, factor, false);
    }
    Sparse matrix() const {
        const auto n = static_cast<Eigen::Index>(system_.size());
        Sparse sum(n, n);
        sum.setFromTriplets(entries_.begin(), entries_.end());
        return sum;
    }

  private:
    void add_block(size_t row, size_t column, const Matrix6& block, double factor, bool own) {
        for (size_t r = 0; r < dof_count; r++)
            for (size_t c = 0; c < dof_count; c++) {
                const int i = unknown_[row * dof_count + r];
                const int j = unknown_[column * dof_count + c];
                if (i < 0 || j < 0 || (own && i < j))
                    continue;
                const double value =
                    block(static_cast<Eigen::Index>(r), static_cast<Eigen::Index>(c)) * factor *
                    system_.scale()[static_cast<size_t>(i)] *
                    system_.scale()[static_cast<size_t>(j)];
                entries_.emplace_back(std::max(i, j), std::min(i, j), value);
            }
    }

    const System& system_;
    std::vector<int> unknown_; // by node and direction
    std::vector<Triplet> entries_;
};

} // namespace

int count_below(const System& system, const MemberBlocks& blocks, double shift) {
    constexpr int tries = 4;
    constexpr double step = 1e-8; // of the shift, away from a pivot of zero
    for (int k = 0; k < tries; k++) {
        Assembly assembly(system);
        for (size_t i = 0; i < system.elements.size(); i++) {
            const Member& member = system.model().member[i];
            assembly.add(member, stiffness_blocks(system.elements[i]), 1.0);
            assembly.add(member, blocks(i), -shift * (1.0 + k * step));
        }
        // The unknowns stand in an order that leaves the factor sparse.
        const Eigen::SimplicialLDLT<Sparse, Eigen::Lower, Eigen::NaturalOrdering<int>> factor(
            assembly.matrix());
        if (factor.info() != Eigen::Success)
            continue;
        const Eigen::VectorXd pivots = factor.vectorD();
        if (!pivots.allFinite() ||
            pivots.cwiseAbs().minCoeff() < least_pivot * system.least_pivot())
            continue;
        return static_cast<int>((pivots.array() < 0.0).count());
    }
    return -1;
}

} // namespace frameslv
