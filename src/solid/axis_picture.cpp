#include "solid/axis_picture.h"

#include "base/message.h"
#include "solid/solid.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

void fit_solids(Model& model, const View& view, DrawArea& area, std::span<const Trio> records) {
    const Projector projector(view.TAU, view.FAI);
    reset_bounds(model);
    PlaneBounds bounds = square_fit_start;
    for (const Trio& trio : records) {
        for (const auto& [x, y, z] : trio.vertex) {
            widen_bounds(model, x, y, z);
            bounds.widen(projector(x, y, z));
        }
    }
    square_fit(area, bounds);
}

} // namespace

int get_jiku_world(Model& model, const View& view, Solids& solids, const fs::path& work_dir,
                   DrawArea& area) {
    spy("Enter get_jiku_world()");
    std::string reason;
    const auto records = read_trio_file(solids, work_dir, &reason);
    if (!records) {
        return refuse("Error: Unable to open TRIO_FILE jikuire 01", reason);
    }
    fit_solids(model, view, area, *records);
    spy("World %12.5e %12.5e %12.5e %12.5e", area.world.xmin, area.world.ymin, area.world.xmax,
        area.world.ymax);
    return 0;
}

int draw_axis_model(Model& model, const View& view, Solids& solids, const fs::path& work_dir,
                    Canvas& canvas, DrawArea& area) {
    spy("Enter draw_axis_model()");
    std::string reason;
    const auto records = read_trio_file(solids, work_dir, &reason);
    if (!records) {
        return refuse("Error: Unable to open TRIO_FILE jikuire 02", reason);
    }
    fit_solids(model, view, area, *records);
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

void draw_wire(Model& model, const View& view, Canvas& canvas, DrawArea& area, bool node_marks) {
    spy("Enter draw_wire()");
    get_new_world(model, view, area);
    canvas.set_area(area);
    canvas.set_pen(pen_solid, 1, colour_black);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        canvas.move(beam.XS, beam.YS);
        canvas.line(beam.XL, beam.YL);
    }
    for (int i = 0; node_marks && i < model.N_Node; ++i) {
        canvas.circle(model.node[i].X, model.node[i].Y, node_mark_radius, false);
    }
}

} // namespace kigumi
