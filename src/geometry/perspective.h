// The picture of the solids from the viewpoint (視点座標モデル), without the lines that are hidden.
#pragma once

#include "geometry/hidden_line.h"

namespace kigumi {

// Pen colour (PenColour) of the edges of a triangle record (0-based).
using TrioColour = std::function<int(int record)>;

// Leaves out the crumbs: pieces of cut edges shorter than `shortest`, plane cm. Whole edges stay.
std::vector<VisibleSegment> without_crumbs(std::span<const VisibleSegment> lines, double shortest);

// The lines of the solids that the eye sees, in the order of the triangles, without crumbs.
std::vector<VisibleSegment> visible_segments(std::span<const Trio> records,
                                             const ViewCoefficients& v, double shortest = 0.0);

// Outcomes of prepare_perspective besides -1.
constexpr int perspective_ready = 0;
constexpr int perspective_stopped = 1;

// Finds the lines of TRIO.DAT that are seen from the shared viewpoint and keeps them for
// draw_perspective until solids, viewpoint or View::joints change; nothing is computed again before
// that. The places of the vertices in the perspective plane go into the records
// (project_trio_file). A window calls it before it paints, with its progress display.
// perspective_ready, or perspective_stopped when `progress` stopped it: draw_perspective then shows
// all flagged edges, hidden ones too, until the next call. -1 after the message "Error: Unable to
// open TRIO_FILE jikuire 03" or that of project_trio_file.
int prepare_perspective(const Progress& progress = {});

// What a picture without a line has to say.
constexpr const char* nothing_in_sight = "視点から見える部材がありません";

// True when there are solids, and no line of them is kept: all lie behind the eye.
bool is_nothing_in_sight();

// The lines last kept; none when they are not of the solids as they now are.
std::span<const VisibleSegment> perspective_lines();

// Draws TRIO.DAT from the shared viewpoint: visible segments, margin fit, TEMP.DAT, picture; every
// line black, or in the colour told for its record. Prepares first what is not prepared. Crumbs of
// less than half a pixel are left out, in TEMP.DAT as the fit shows them and in the picture as the
// canvas is zoomed. 0, or -1 after a message of prepare_perspective, that of save_segment_file or,
// when there are triangles and none is before the eye, nothing_in_sight; nothing is
// drawn then. Called while a preparation asks for its progress, it draws the lines last
// kept, or nothing when the solids are not theirs.
int draw_perspective(Canvas& canvas, DrawArea& area, const TrioColour& colour = {});

} // namespace kigumi
