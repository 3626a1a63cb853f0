// The unknowns of a frame of any kind of members, in the order of elimination, and the factor of
// its stiffness.
#pragma once

#include "solver/base/fault.h"
#include "solver/sparse/cholesky.h"

#include <memory>
#include <optional>

namespace frameslv {

// A pivot that elimination has brought below this part of its diagonal is rounding, not stiffness:
// 16 digits less the growth of rounding in a large frame.
constexpr double smallest_pivot = 1e-12;

class Equations {
  public:
    using Blocks = Cholesky::Blocks;

    // `free` and `at` are of each node. `members` are their ends' nodes; the springs of `sprung`
    // nodes count as members of one end after them. `most_threads` 0: as many as help.
    Equations(const std::vector<FreeDofs>& free, const std::vector<Point>& at,
              const std::vector<Edge>& members, const std::vector<size_t>& sprung,
              int most_threads);

    // A free unknown.
    struct Unknown {
        int node; // index
        int dof;  // 0..5
    };
    // The free unknowns in the order of elimination.
    const std::vector<Unknown>& unknowns() const { return unknowns_; }
    // S of each: one by the root of the diagonal.
    const std::vector<double>& scale() const { return scale_; }
    size_t size() const { return unknowns_.size(); }
    const Cholesky& factor() const { return *factor_; }
    // Gives back the memory of the factor, which must not be used any more.
    void drop_factor() { factor_.reset(); }

    // Whether the factorisation fits in this much memory; else a fault with both figures. Without
    // `available` it is what the system can give.
    Fault fits_memory() const;
    Fault fits_memory(size_t available) const;

    // Takes S from the diagonal of the stiffness. Returns the first unknown whose diagonal is out
    // of range, or below `least` times the largest of the same kind at its node.
    std::optional<Unknown> set_scale(const NodeVectors& diagonal, double least = 0.0);

    // Factorises S K S + shift x identity. False at a pivot that is not positive.
    bool factorise(const Blocks& blocks, double shift = 0.0);
    // The same, and whether no pivot is below smallest_pivot.
    bool factorise_surely(const Blocks& blocks);
    // The smallest pivot of the last factorise_surely, by its diagonal.
    double least_pivot() const { return least_pivot_; }

    // The unknown that resists least, by inverse iteration with a factor of the shifted matrix;
    // `arm` sets rotations against translations. There must be an unknown.
    Unknown loosest_motion(const Blocks& blocks, double arm);

    // Vectors of the scaled unknowns: x = S^-1 u, forces S f.
    std::vector<double> scaled_forces(const NodeVectors& forces) const;
    NodeVectors unscaled(std::span<const double> x) const;
    // K^-1 times the forces on free unknowns, added to `moved`.
    void add_solution(const NodeVectors& forces, NodeVectors& moved) const;

  private:
    void number(const std::vector<FreeDofs>& free);

    size_t nodes_ = 0;
    std::vector<int> vertex_; // of each node; -1 when wholly held
    std::vector<Unknown> unknowns_;
    std::vector<double> scale_; // 1 / sqrt(diagonal) of each unknown
    std::unique_ptr<Cholesky> factor_;
    double least_pivot_ = 1.0;
};

} // namespace frameslv
