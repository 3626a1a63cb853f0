// The sparse Cholesky factorisation of a frame's stiffness, straight from its members.
//
// Multifrontal: I. S. Duff, J. K. Reid, The multifrontal solution of indefinite sparse symmetric
// linear equations, ACM Trans. Math. Softw. 9 (1983). A front is a dense matrix to which its
// members and the updates of its children are added; its columns are eliminated, what is left is
// handed up. The stiffness matrix itself is never made.
#pragma once

#include "solver/base/vectors.h"
#include "solver/sparse/dense.h"
#include "solver/sparse/pages.h"
#include "solver/sparse/tasks.h"

#include <functional>
#include <memory>

namespace frameslv {

// The free unknowns of a vertex: which of the six, ascending.
struct FreeDofs {
    int count = 0;
    std::array<unsigned char, dof_count> dof{};
};

class Cholesky {
  public:
    // Gives a member's stiffness; called by several threads at once.
    using Blocks = std::function<void(size_t member, StiffnessBlocks& blocks)>;

    // `ends` are the members' vertices, negative for an end that is wholly held. `most_threads` 0:
    // as many as the machine has, where they help.
    Cholesky(Symbolic symbolic, std::vector<Edge> ends, std::vector<FreeDofs> free,
             int most_threads);

    // Factorises S K S + shift x identity, where K is the sum of the members and S the diagonal of
    // `scale`, one value an unknown. False when a pivot is not positive; then pivots() tells how
    // far it got, and solve must not be called.
    bool factorise(const Blocks& blocks, std::span<const double> scale, double shift);

    // The pivots of L D L^T, by unknown.
    std::span<const double> pivots() const { return pivots_; }

    // Replaces the right-hand side by the solution; or by L^-1 or L^-T times it.
    void solve(std::span<double> x) const {
        solve_lower(x);
        solve_upper(x);
    }
    void solve_lower(std::span<double> x) const;
    void solve_upper(std::span<double> x) const;
    // Solves for Kernels::block vectors at once; their numbers of one unknown stand together.
    void solve_block(std::span<double> x) const;
    // The same for Kernels::wide_block vectors.
    void solve_wide_block(std::span<double> x) const;

    const Symbolic& symbolic() const { return symbolic_; }
    int threads() const { return team_->size(); }
    // Bytes that factorise may fill in all: the factor and what waits or is made beside it.
    size_t needed_bytes() const;
    // Bytes of the factor as stored.
    size_t factor_bytes() const { return symbolic_.panel_numbers * sizeof(double); }

  private:
    // What a thread needs for itself.
    struct Worker {
        std::vector<int> position; // of each place among the rows of the front at hand
        std::vector<double> vector;
        Pages stack;
        size_t stack_numbers = 0;
        Pages square; // the update that is being made
        size_t square_numbers = 0;
    };
    // Consecutive rows of a child that are consecutive in its parent.
    struct Run {
        size_t from, to, count;
    };

    const Front& front(int f) const { return symbolic_.fronts[static_cast<size_t>(f)]; }
    double* panel(int f) const { return panels_.data() + front(f).panel; }
    void sort_members();
    void do_subtree(const Tasks::Subtree& subtree, Worker& worker, size_t id);
    void do_top(int f);
    double* square_for(size_t below, size_t most, Worker& worker, Pages& own) const;
    void set_positions(int f, Worker& worker) const;
    void add_members(int f, Worker& worker);
    void add_block(int f, const Worker& worker, size_t row_vertex, size_t column_vertex,
                   const Matrix6& block);
    std::vector<Run> runs_of(int child, const Worker& worker) const;
    void add_update(int child, int f, const std::vector<Run>& runs, size_t first, size_t last,
                    double* update) const;
    bool eliminate(int f, DenseEliminator& dense);
    template <size_t width> void lower_front(int f, std::span<double> x, Worker& worker) const;
    template <size_t width> void upper_front(int f, std::span<double> x, Worker& worker) const;
    template <size_t width> void solve_lower_as(std::span<double> x) const;
    template <size_t width> void solve_upper_as(std::span<double> x) const;

    Symbolic symbolic_;
    std::vector<Edge> ends_;
    std::vector<FreeDofs> free_;
    std::vector<int> place_; // of each vertex
    Tasks tasks_;
    std::unique_ptr<Team> team_;
    std::vector<size_t> member_start_; // by place: the members eliminated there first ...
    std::vector<size_t> members_;      // ... in this list
    Pages panels_;
    std::vector<double*> update_; // of each front while it waits
    std::vector<Pages> kept_;     // updates of subtrees and top fronts
    std::vector<double> pivots_;
    mutable std::vector<Worker> workers_;
    mutable std::vector<double> handed_up_; // what fronts hand up in solve_lower
    std::vector<PackBuffers> buffers_;
    std::atomic<bool> failed_{false};
    bool used_ = false;
    const Blocks* blocks_ = nullptr;
    std::span<const double> scale_;
    double shift_ = 0.0;
};

} // namespace frameslv
