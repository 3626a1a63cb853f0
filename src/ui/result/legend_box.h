// The legend in a picture.
#pragma once

#include "results/legend.h"

namespace kigumi {

class PainterCanvas;

// Paints the lines as a box in the upper right corner of a picture of this width, pixels, over what
// is there; nothing without lines. That corner is the one which the fits leave free most often. On
// a large picture the letters are `enlarged` that many times.
void paint_legend(PainterCanvas& canvas, int width, const std::vector<LegendLine>& lines,
                  double enlarged = 1.0);

} // namespace kigumi
