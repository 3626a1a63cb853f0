// The parallel picture of the solids: their flagged edges (軸モデル).
#pragma once

#include "base/files.h"
#include "draw/canvas.h"
#include "draw/projection.h"
#include "solid/solid.h"

namespace kigumi {

// Fits the window around the solids of TRIO.DAT (square fit) with the angles of `view`, and sets
// the bounds X_MIN ... Z_MAX to them. 0, or -1 after the message
// "Error: Unable to open TRIO_FILE jikuire 01"; window and bounds are then as before.
int get_jiku_world(const View& view, Solids& solids, DrawArea& area);

// Fits as get_jiku_world and draws the flagged edges of the solids. 0, or -1 after the one message
// "Error: Unable to open TRIO_FILE jikuire 02"; nothing is drawn or changed then.
int draw_axis_model(const View& view, Solids& solids, Canvas& canvas, DrawArea& area);

} // namespace kigumi
