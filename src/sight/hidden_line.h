// Removal of hidden lines: from triangles and an eye to the pieces of edges that the eye sees.
//
// Exact, in object space; docs/hidden-lines.md tells the method and what it costs.
#pragma once

#include "draw/eye.h"
#include "solid/solid.h"

#include <functional>

namespace kigumi {

// A line that the eye sees, and the triangle record (0-based) whose edge it is part of.
struct VisibleSegment {
    Segment line; // perspective plane, cm
    int record;
    bool whole = true; // the edge itself, not a piece that others left of it nor a joint line
};

// Is told how much of the work is done, 0 to 1, from the thread that asked for it; false stops it.
using Progress = std::function<bool(double done)>;

struct HiddenLineOptions {
    bool joints = false;    // also the lines where bars pass into each other (交線)
    double tolerance = 0.0; // cm; 0: hidden_line_tolerance of the records
    int threads = 0;        // 0: as many as the machine has cores. The result is the same
    Progress progress;
};

// How far, cm, a point must lie below a face to be hidden by it, so that edges in a face or along
// it are seen whole. Two edges that meet on paper lie apart in the records by
// - the rounding of each coordinate to a float, half a unit in the last place: |largest|·2^-24 in
//   x, y and z, taken fourfold for both points and the plane's own three; and
// - the turn of the builders with 3.14159 for pi, 2.65e-6 of which is lost in half a turn: a face
//   swings out by as much of the longest edge; 3e-6 is taken.
// A frame of 30 m with bars of 4 m has 0.002 cm: too little to be seen, and no timber is cut so.
double hidden_line_tolerance(std::span<const Trio> records);

// The flagged edges as far as the eye sees them, in the order of records and edges, in plane units,
// cm. Of an edge that two triangles of one bar flag, and of a piece where hidden or seen parts of
// no more than the tolerance would part it, one line is made; edges within a flat face of a bar are
// no outlines and not drawn, nor is an edge along the line of sight, which is a point. Bars may
// pass through each other: what is inside another is hidden, and the lines where they meet can be
// drawn too, after the edges. Nothing when `progress` stopped the work.
std::optional<std::vector<VisibleSegment>>
remove_hidden_lines(std::span<const Trio> records, const ViewCoefficients& v,
                    const HiddenLineOptions& options = {});

} // namespace kigumi
