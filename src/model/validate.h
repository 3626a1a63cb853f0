// Whether the tables keep the promises of model.h.
#pragma once

#include "model/model.h"

namespace kigumi {

// How far a model has come, which decides what its tables promise.
enum class Promise {
    drawn,  // members and nodes may wait for data, and their flags tell so; names and levels, and
            // the numbers of sections and materials, may be those of an earlier state
    placed, // the same, but a member's ends have the names of their nodes
    made,   // every member is finished and has a section and a material; the flags of the nodes are
            // roles, those of the tables once these were entered by hand
};

// Describes the first fault of the tables, in Japanese, or null when they are sound: counts,
// numbers, ends, names, places and measures that are numbers, kinds, flags, sections and materials,
// what was changed of members, supports and loads (one record a node). Levels are not looked at.
const char* find_model_fault(const Model& model, Promise promise);
// As drawn, or, with `names`, as placed.
const char* find_model_fault(const Model& model, bool names);

// The same of the levels: ascending, and exactly those of the nodes.
const char* find_level_fault(const Model& model);

} // namespace kigumi
