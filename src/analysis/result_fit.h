// Whether results belong to a frame: the model in memory, or another.
#pragma once

#include "analysis/result.h"

#include <array>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kigumi {

// A frame by its node numbers, each 1-based: the places of the nodes, cm, and what the members
// join.
struct NumberedFrame {
    std::unordered_map<int, std::array<double, 3>> nodes;
    std::vector<std::pair<int, int>> ends;
};

// The model in memory.
NumberedFrame model_frame(const Model& model);

// Records of results, just read or in the tables.
struct ResultRecords {
    std::span<const Setuten> nodes;
    std::span<const Stress> members;
    std::span<const Disp> displacements;
};

// Those in the tables.
ResultRecords stored_results(const Result& result);

// True when the results can be those of the frame: as many members as it has, between the same
// pairs of nodes; every result node a node of the frame, once, at its place to the tenth of a cm
// that the solver's input holds; the displacements those of the same nodes.
//
// A solver may renumber nodes and members, turn a member's ends, leave out nodes without members
// and change names: nothing of that counts. What cannot be told: results of a frame that differs in
// sections, materials, supports or loads only.
bool results_fit(const NumberedFrame& frame, const ResultRecords& results);

} // namespace kigumi
