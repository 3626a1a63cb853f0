#include "solid/axis_picture.h"

#include "base/message.h"
#include "solid/solid.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

void fit_solids(Solids& solids, const View& view, DrawArea& area, std::span<const Trio> records) {
    const Projector projector(view.TAU, view.FAI);
    reset_bounds(solids);
    PlaneBounds bounds = square_fit_start;
    for (const Trio& trio : records) {
        for (const auto& [x, y, z] : trio.vertex) {
            widen_bounds(solids, x, y, z);
            bounds.widen(projector(x, y, z));
        }
    }
    square_fit(area, bounds);
}

} // namespace

int get_jiku_world(const View& view, Solids& solids, DrawArea& area) {
    spy("Enter get_jiku_world()");
    const auto records = saved_records(solids);
    if (!records) {
        return refuse("Error: Unable to open TRIO_FILE jikuire 01");
    }
    fit_solids(solids, view, area, *records);
    spy("World %12.5e %12.5e %12.5e %12.5e", area.world.xmin, area.world.ymin, area.world.xmax,
        area.world.ymax);
    return 0;
}

int draw_axis_model(const View& view, Solids& solids, Canvas& canvas, DrawArea& area) {
    spy("Enter draw_axis_model()");
    const auto records = saved_records(solids);
    if (!records) {
        return refuse("Error: Unable to open TRIO_FILE jikuire 02");
    }
    fit_solids(solids, view, area, *records);
    canvas.set_area(area);
    canvas.set_pen(pen_solid, 1, colour_black);
    const Projector projector(view.TAU, view.FAI);
    const auto plane = [&projector](const float(&v)[3]) { return projector(v[0], v[1], v[2]); };
    for (const Trio& trio : *records) {
        for (const TrioEdge& edge : trio_edges) {
            if ((trio.hyoji & edge.bit) == 0) {
                continue;
            }
            const PlanePoint from = plane(trio.vertex[edge.from]);
            const PlanePoint to = plane(trio.vertex[edge.to]);
            canvas.move(from.X, from.Y);
            canvas.line(to.X, to.Y);
        }
    }
    return 0;
}

} // namespace kigumi
