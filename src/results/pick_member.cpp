#include "results/pick_member.h"

#include "results/force_picture.h"
#include "results/marukaku.h"
#include "sight/perspective.h"

#include <algorithm>
#include <cmath>

namespace kigumi {

namespace {

// Distance of a point from the line between two plane points.
double distance(PlanePoint at, PlanePoint from, PlanePoint to) {
    const double dx = static_cast<double>(to.X) - from.X;
    const double dy = static_cast<double>(to.Y) - from.Y;
    const double ax = static_cast<double>(at.X) - from.X;
    const double ay = static_cast<double>(at.Y) - from.Y;
    const double square = dx * dx + dy * dy;
    const double along = square > 0.0 ? std::clamp((ax * dx + ay * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(ax - along * dx, ay - along * dy);
}

int pick_bar(const Result& result, const Solids& solids, const PerspectiveLines& perspective,
             PlanePoint at, float reach) {
    int record = -1;
    double shortest = reach;
    for (const VisibleSegment& seen : perspective_lines(solids, perspective)) {
        const Segment& s = seen.line;
        const double away = distance(at, {s.X1, s.Y1}, {s.X2, s.Y2});
        if (away < shortest || (record < 0 && away <= shortest)) {
            shortest = away;
            record = seen.record;
        }
    }
    return marukaku_row(result, record);
}

} // namespace

int pick_member(const Result& result, const Solids& solids, const PerspectiveLines& perspective,
                const ResultView& shown, PlanePoint at, float reach) {
    if (shown.mode == mode_solids) {
        return pick_bar(result, solids, perspective, at, reach);
    }
    const bool displaced = shown.mode == mode_displaced;
    if (!displaced && (shown.mode < mode_wire || shown.mode > mode_width)) {
        return -1;
    }
    const Projector plane(shown.TAU, shown.FAI);
    int nearest = -1;
    double shortest = reach;
    for (int i = 0; i < result.N_Stress; ++i) {
        const Stress& s = result.stress[i];
        double away = distance(at, plane(s.xi, s.yi, s.zi), plane(s.xj, s.yj, s.zj));
        if (displaced) {
            const HeniBeam& b = result.heni_beam[i];
            away = std::min(away, distance(at, plane(b.xs, b.ys, b.zs), plane(b.xl, b.yl, b.zl)));
        }
        if (away < shortest || (nearest < 0 && away <= shortest)) {
            shortest = away;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace kigumi
