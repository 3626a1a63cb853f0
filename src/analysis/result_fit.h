// Whether results belong to the model in memory.
#pragma once

#include "analysis/result_reader.h"

namespace kigumi {

// True when these results can be those of the model: as many members as the model has, between the
// same pairs of nodes; every result node a node of the model, once, at its place to the tenth of a
// cm that the solver's input holds; the displacements those of the same nodes. To be asked after a
// run on this very model, not for results of an earlier one.
//
// A solver may renumber nodes and members, turn a member's ends, leave out nodes without members
// and change names: nothing of that counts. What cannot be told: results of a model that differs in
// sections, materials, supports or loads only.
bool results_fit_model(const Listing& listing, const std::vector<Disp>& disp);

} // namespace kigumi
