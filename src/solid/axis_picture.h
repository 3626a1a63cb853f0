// The parallel pictures of a model: wires, and the flagged edges of the solids (軸モデル).
#pragma once

#include "base/files.h"
#include "draw/canvas.h"
#include "draw/projection.h"
#include "solid/solid.h"

namespace kigumi {

// Radius of a node mark, pixels.
constexpr int node_mark_radius = 5;

// Fits the window around the solids of TRIO.DAT (square fit) with the shared view angles, and sets
// the model bounds X_MIN ... Z_MAX to them. 0, or -1 after the message
// "Error: Unable to open TRIO_FILE jikuire 01"; window and bounds are then as before.
int get_jiku_world(Model& model, const View& view, Solids& solids, const fs::path& work_dir,
                   DrawArea& area);

// Fits as get_jiku_world and draws the flagged edges of the solids. 0, or -1 after the one message
// "Error: Unable to open TRIO_FILE jikuire 02"; nothing is drawn or changed then.
int draw_axis_model(Model& model, const View& view, Solids& solids, const fs::path& work_dir,
                    Canvas& canvas, DrawArea& area);

// Projects the model, fits the window around its nodes (square fit) and draws a line for every
// member; with `node_marks` a circle at every node after them. Tables written: the plane
// coordinates of nodes and members.
void draw_wire(Model& model, const View& view, Canvas& canvas, DrawArea& area, bool node_marks);

} // namespace kigumi
