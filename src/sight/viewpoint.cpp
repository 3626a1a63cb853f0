#include "sight/viewpoint.h"

#include "draw/segment_file.h"
#include "trace/spy.h"

#include <vector>

namespace kigumi {

void make_cuve(const Solids& solids, const View& view, Canvas& canvas, DrawArea& area) {
    spy("Enter make_cuve()");
    if (solids.X_MIN > solids.X_MAX) {
        return;
    }
    // Corner c takes its x, y and z maximum where bit 0, 1 and 2 of c are set.
    const ViewCoefficients v = view_coefficients(view.Rho, view.Theta, view.Phi);
    EyePoint corner[8];
    for (int c = 0; c < 8; ++c) {
        const float x = (c & 1) != 0 ? solids.X_MAX : solids.X_MIN;
        const float y = (c & 2) != 0 ? solids.Y_MAX : solids.Y_MIN;
        const float z = (c & 4) != 0 ? solids.Z_MAX : solids.Z_MIN;
        corner[c] = to_eye(v, x, y, z);
        const double scale = v.v43 / corner[c].ze;
        spy("x %7.1f y %7.1f z %7.1f X %7.1f Y %7.1f", x, y, z, corner[c].xe * scale,
            corner[c].ye * scale);
    }
    std::vector<Segment> edges;
    for (int bit = 1; bit < 8; bit *= 2) {
        for (int c = 0; c < 8; ++c) {
            const auto edge =
                (c & bit) == 0 ? perspective_edge(v, corner[c], corner[c | bit]) : std::nullopt;
            if (edge) {
                edges.push_back(*edge);
            }
        }
    }
    const PlaneBounds bounds = segment_bounds(edges);
    spy("x_min %8.1f y_min %8.1f x_max %8.1f y_max %8.1f", bounds.xmin, bounds.ymin, bounds.xmax,
        bounds.ymax);
    aspect_fit(area, bounds);
    spy("World %12.5e %12.5e %12.5e %12.5e", area.world.xmin, area.world.ymin, area.world.xmax,
        area.world.ymax);
    spy("Crt    %d %d %d %d", area.crt.left, area.crt.top, area.crt.right, area.crt.bottom);
    canvas.set_area(area);
    draw_segments(canvas, edges);
}

} // namespace kigumi
