// The frame as a system of equations: its members, its free unknowns and the factor of its
// stiffness.
#pragma once

#include "solver/base/fault.h"
#include "solver/model/element.h"
#include "solver/sparse/cholesky.h"

#include <memory>

namespace frameslv {

class System {
  public:
    // The model must have passed check_model and check_held. `most_threads` 0: as many as help.
    System(const Model& model, int most_threads);

    // The members; a change of their stiffness needs factorise() anew.
    std::vector<Element> elements;

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
    const Model& model() const { return model_; }
    size_t nodes() const { return vertex_.size(); }
    // Mean length of the members: sets moments against forces.
    double arm() const { return arm_; }
    size_t repeated_members() const { return repeated_; }

    // Factorises the stiffness, scaled to unit diagonal, so that stiffness of very different kinds
    // (a bar of I = 1e-12) does no harm. Fails at stiffness out of range and at a pivot below 1e-12
    // of its diagonal; the fault then names the loosest node and direction, found by inverse
    // iteration with a factor of the shifted matrix.
    Fault factorise();
    // The same without naming: false at such a pivot.
    bool try_factorise();
    // The smallest pivot of the last factorisation, by its diagonal.
    double least_pivot() const { return least_pivot_; }

    // Node and direction that resist least; there must be an unknown.
    Unknown loosest_motion();

    // K^-1 times the forces on free unknowns, added to `moved`.
    void add_solution(const NodeVectors& forces, NodeVectors& moved) const;

    // Vectors of the scaled unknowns: x = S^-1 u, forces S f.
    std::vector<double> scaled_forces(const NodeVectors& forces) const;
    NodeVectors unscaled(std::span<const double> x) const;
    const Cholesky& factor() const { return *factor_; }
    // Gives back the memory of the factor, which must not be used any more.
    void drop_factor() { factor_.reset(); }

    // What the members ask of the nodes for these displacements: K u without supports.
    NodeVectors member_forces(const std::vector<Element>& members, const NodeVectors& moved) const;

  private:
    void number_unknowns();
    Fault set_scale();
    bool factorise_shifted(double shift);

    const Model& model_;
    double arm_ = 1.0;
    size_t repeated_ = 0;
    std::vector<int> vertex_; // of each node; -1 when wholly held
    std::vector<Unknown> unknowns_;
    std::vector<double> scale_; // 1 / sqrt(diagonal) of each unknown
    std::unique_ptr<Cholesky> factor_;
    double least_pivot_ = 1.0;
};

} // namespace frameslv
