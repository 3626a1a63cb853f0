// Finding a result member by a click in a picture.
#pragma once

#include "analysis/result.h"
#include "draw/projection.h"
#include "sight/perspective.h"
#include "solid/solid.h"

namespace kigumi {

struct ResultView;

// Row (0-based, of result.stress) of the member whose line in the picture of the mode lies nearest
// to the plane point `at`, the first of equally near ones; in the displaced picture both shapes of
// a member count, in mode_solids the visible lines of its bar. -1 when none lies within `reach`,
// plane units, or the mode shows no lines.
int pick_member(const Result& result, const Solids& solids, const PerspectiveLines& perspective,
                const ResultView& shown, PlanePoint at, float reach);

} // namespace kigumi
