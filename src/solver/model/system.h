// The frame as a system of equations: its members, its free unknowns and the factor of its
// stiffness.
#pragma once

#include "solver/base/fault.h"
#include "solver/model/element.h"
#include "solver/model/equations.h"

namespace frameslv {

class System {
  public:
    // The model must have passed check_model and check_held. `most_threads` 0: as many as help.
    System(const Model& model, int most_threads);

    // The members; a change of their stiffness needs factorise() anew.
    std::vector<Element> elements;

    using Unknown = Equations::Unknown;
    const std::vector<Unknown>& unknowns() const { return equations_.unknowns(); }
    const std::vector<double>& scale() const { return equations_.scale(); }
    size_t size() const { return equations_.size(); }
    const Model& model() const { return model_; }
    size_t nodes() const { return model_.node.size(); }
    // Mean length of the members: sets moments against forces.
    double arm() const { return arm_; }
    size_t repeated_members() const { return repeated_; }

    // Factorises the stiffness, scaled to unit diagonal, so that stiffness of very different kinds
    // (a bar of I = 1e-12) does no harm. Fails at stiffness out of range and at a pivot below 1e-12
    // of its diagonal; the fault then names the loosest node and direction, found by inverse
    // iteration with a factor of the shifted matrix.
    Fault factorise();
    // The same without naming: false at such a pivot.
    bool try_factorise() { return equations_.factorise_surely(blocks()); }
    // The smallest pivot of the last factorisation, by its diagonal.
    double least_pivot() const { return equations_.least_pivot(); }

    // Node and direction that resist least; there must be an unknown.
    Unknown loosest_motion() { return equations_.loosest_motion(blocks(), arm_); }

    const Equations& equations() const { return equations_; }
    void add_solution(const NodeVectors& forces, NodeVectors& moved) const {
        equations_.add_solution(forces, moved);
    }
    std::vector<double> scaled_forces(const NodeVectors& forces) const {
        return equations_.scaled_forces(forces);
    }
    NodeVectors unscaled(std::span<const double> x) const { return equations_.unscaled(x); }
    const Cholesky& factor() const { return equations_.factor(); }
    // Gives back the memory of the factor, which must not be used any more.
    void drop_factor() { equations_.drop_factor(); }

    // What the members ask of the nodes for these displacements: K u without supports.
    NodeVectors member_forces(const std::vector<Element>& members, const NodeVectors& moved) const;

  private:
    Equations::Blocks blocks() const;

    const Model& model_;
    Equations equations_;
    double arm_ = 1.0;
    size_t repeated_ = 0;
};

} // namespace frameslv
