// The picture of the drawing sheet (手書).
#pragma once

#include "draw/canvas.h"
#include "model/sketch.h"

namespace kigumi {

// Shows the whole sheet from its lower left corner, one unit a pixel where the client size of
// `area` allows it and smaller where it does not.
void fit_sheet(DrawArea& area, const World& sheet);

// The sheet widened to hold every node, and a margin around those that lay outside.
World sheet_around_nodes(const Model& model, World sheet);

// Draws members and nodes where they stand on the sheet, then the marks. A member without data is
// dashed and grey, a node of unknown place two nested squares, of known place a filled circle.
void draw_sheet(const Model& model, Canvas& canvas, const DrawArea& area,
                const std::vector<SheetMark>& marks);

// The sheet point of a pixel. A point drawn there falls on the very pixel, whatever the zoom.
SheetPoint to_sheet(const DrawArea& area, int px, int py);

} // namespace kigumi
