// The solid view of axial forces (角丸表示): square and round bars.
#pragma once

#include "analysis/result.h"
#include "base/files.h"
#include "draw/projection.h"
#include "draw/stroke_font.h"
#include "sight/perspective.h"
#include "solid/solid.h"

namespace kigumi {

class Canvas;
struct ResultView;

// Fits `shown` around all result members, sets the eye of `view` to its start values and
// builds TRIO.DAT from the selected members (`kensaku` of `result`): a bar whose section is as many
// cm² as its percent v, round (radius √(v/π)) for a positive force with v above 1, else square
// (side √v). An empty selection makes an empty file. 0, or -1 after a message when the point table
// is full or the file cannot be written.
int make_marukaku(View& view, Result& result, Solids& solids, const fs::path& work_dir,
                  ResultView& shown);

// The pen colour of a triangle record (0-based) of the bars built last: that of its member's sign,
// or silver for a member outside the selection, when there is one. A TrioColour for
// draw_perspective.
int marukaku_colour(const Result& result, int record);

// Row (0-based, of result.stress) of the member of a triangle record of the bars built last; -1 for
// no such record.
int marukaku_row(const Result& result, int record);

// One repaint of `shown` in mode_solids: the bars built last, seen from `view`, and the labels.
// 0, or -1 as draw_perspective and draw_result_labels.
int draw_marukaku(const View& view, const Result& result, Solids& solids,
                  PerspectiveLines& perspective, Lettering& lettering, const fs::path& work_dir,
                  Canvas& canvas, ResultView& shown);

} // namespace kigumi
