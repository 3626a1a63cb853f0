// Whether results belong to a frame, and which record of them belongs to which of its nodes and
// members. The one place that answers this: by place, not by number.
#pragma once

#include "analysis/result.h"

#include <span>
#include <vector>

namespace kigumi {

// A frame by its places. Positions are 0-based.
struct FrameShape {
    struct Point {
        int no;         // node number
        double x, y, z; // cm
    };
    struct Bar {
        int no;         // member number
        int start, end; // positions in nodes; -1 for an end that is no node
    };
    std::vector<Point> nodes;
    std::vector<Bar> bars;
};

// The model; nodes and members stand at their positions in its tables.
FrameShape model_shape(const Model& model);

// Records of results, just read or in the tables.
struct ResultRecords {
    std::span<const Setuten> nodes;
    std::span<const Stress> members;
    std::span<const Disp> displacements;
};

// Those in the tables.
ResultRecords stored_results(const Result& result);

// Which node and member of a frame each result record is of: positions, by those of the records; -1
// where the frame has none.
//
// A result node is of the frame's node at its place, to the tenth of a cm that the solver's input
// holds; a result member of one that joins the same two places. Of several at the same place, or
// between the same places, the one of the same number is taken first, then each once in order. A
// solver may thus renumber nodes and members, turn a member's ends, leave out nodes without members
// and change names.
struct ResultMatch {
    std::vector<int> node, member;
    // The results can be those of the frame: every result node has a place in it, every member one
    // result and every result a member, and the displacements are those of the result nodes. What
    // cannot be told: results of a frame that differs in sections, materials, supports or loads
    // only (analysis/result_input.h).
    bool fits = false;
};

ResultMatch match_results(const FrameShape& frame, const ResultRecords& results);

// `fits` of the results in the tables and the model.
bool results_fit(const Model& model, const Result& result);

} // namespace kigumi
