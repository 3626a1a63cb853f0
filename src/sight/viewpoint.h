// The preview of the viewpoint dialog.
#pragma once

#include "draw/eye.h"
#include "solid/solid.h"

namespace kigumi {

// Preview (視点の箱): the twelve edges of the box of the bounds X_MIN ... Z_MAX as seen from
// the eye of `view`, fitted by the aspect rule with its margins of 100 pixels. Draws nothing
// while there are no bounds.
void make_cuve(const Solids& solids, const View& view, Canvas& canvas, DrawArea& area);

} // namespace kigumi
