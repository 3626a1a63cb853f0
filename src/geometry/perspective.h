// The picture of the solids from the viewpoint (視点座標モデル).
#pragma once

#include "geometry/solid.h"
#include "geometry/viewpoint.h"

#include <functional>

namespace kigumi {

// A line that the eye sees, and the triangle record (0-based) whose edge it is part of.
struct VisibleSegment {
    Segment line; // perspective plane, cm
    int record;
};

// Pen colour (PenColour) of the edges of a triangle record (0-based).
using TrioColour = std::function<int(int record)>;

// The lines of the solids that the eye sees, in the order of the triangles. All flagged edges count
// as seen.
std::vector<VisibleSegment> visible_segments(std::span<const Trio> records,
                                             const ViewCoefficients& v);

// Draws TRIO.DAT from the shared viewpoint: visible segments, margin fit, TEMP.DAT, picture; every
// line black, or in the colour told for its record. 0, or -1 after the message "Error: Unable to
// open TRIO_FILE jikuire 03", or that of save_segment_file; nothing is drawn then.
int draw_perspective(Canvas& canvas, DrawArea& area, const TrioColour& colour = {});

} // namespace kigumi
