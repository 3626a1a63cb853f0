// Natural vibration and buckling: the ends of a spectrum, found with the factor of the stiffness.
#pragma once

#include "solver/base/fault.h"
#include "solver/model/system.h"
#include "solver/statics/settings.h"
#include "solver/statics/solve.h"

namespace frameslv {

// One mode; its largest translation is 1, or its largest rotation where nothing is displaced.
struct Mode {
    double value = 0.0; // circular frequency, rad by unit of time; or load factor
    NodeVectors shape;
};

struct ModeSet {
    std::vector<Mode> modes; // ascending
    bool proven = false;     // a Sturm count has shown that none below the last is missing
};

// The lowest natural modes of K u = w^2 M u, ascending; K is the stiffness that `system` holds
// (with second order, that of the loaded frame). Mass is density x A / gravity along the members:
// consistent after Przemieniecki, sections 11.2 to 11.4, without the rotary inertia of bending, or
// half of it at either end, with its inertia against twist. Repeated ones come as often as they
// are. Fewer modes than asked for come back where the frame has no more.
Fault natural_modes(const Model& model, const Settings& settings, const System& system,
                    ModeSet& set);

// The lowest positive load factors at which the frame under its axial forces buckles,
// K u = -factor x Kg u with the geometric stiffness Kg of Element::tension. A member bends as one
// cubic between its nodes: a column should be divided in two or more. Axial forces that are not
// above their error count as none; without any there are no modes.
Fault buckling_modes(const Settings& settings, const System& system, const Solution& solution,
                     ModeSet& set);

} // namespace frameslv
