// The picture of the solids from the viewpoint (視点座標モデル).
#pragma once

#include "geometry/solid.h"
#include "geometry/viewpoint.h"

namespace kigumi {

// The lines of the solids that the eye sees, in the perspective plane, cm, in the order of the
// triangles. All flagged edges count as seen.
std::vector<Segment> visible_segments(std::span<const Trio> records, const ViewCoefficients& v);

// Draws TRIO.DAT from the shared viewpoint: visible segments, margin fit, TEMP.DAT, picture. 0, or
// -1 after the message "Error: Unable to open TRIO_FILE jikuire 03", or that of save_segment_file;
// nothing is drawn then.
int draw_perspective(Canvas& canvas, DrawArea& area);

} // namespace kigumi
