#include "draw/model_picture.h"

#include "base/format.h"
#include "draw/stroke_font.h"
#include "model/roles.h"
#include "trace/spy.h"

#include <cstring>

namespace kigumi {

namespace {

constexpr int mark_half = 4;             // pixels
constexpr int found_radius = 7;          // pixels
constexpr float labels_a_window = 75.0f; // label height: the window's height / 75

void draw_marks(const Model& model, const PlanarModel& plane, Canvas& canvas,
                const ModelLabels& labels) {
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        const auto [X, Y] = plane.node[i];
        const int role = role_of(model, i);
        if (node.flag == role_found) {
            canvas.set_pen(pen_solid, 2, colour_blue);
            canvas.circle(X, Y, found_radius, false);
        }
        if (labels.fixed_nodes && role == role_fixed) {
            canvas.set_pen(pen_solid, 1, colour_blue);
            canvas.square(X, Y, mark_half, true);
        } else if (labels.loaded_nodes && role == role_loaded) {
            canvas.set_pen(pen_solid, 1, colour_red);
            canvas.circle(X, Y, mark_half, true);
        }
    }
}

int draw_names(const Model& model, const PlanarModel& plane, Lettering& lettering, Canvas& canvas,
               float height) {
    canvas.set_pen(pen_solid, 1, colour_navy);
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        const auto [X, Y] = plane.node[i];
        if (!canvas.shows(X, Y)) {
            continue;
        }
        const int length = static_cast<int>(std::strlen(node.id));
        if (draw_text(lettering, canvas, node.id, length, X + 0.5f * height, Y + 0.3f * height,
                      0.0f, height) < 0) {
            return -1;
        }
    }
    return 0;
}

int draw_numbers(const Model& model, const PlanarModel& plane, Lettering& lettering, Canvas& canvas,
                 float height) {
    canvas.set_pen(pen_solid, 1, colour_maroon);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const float X = 0.5f * (plane.start[i].X + plane.end[i].X);
        const float Y = 0.5f * (plane.start[i].Y + plane.end[i].Y);
        if (!canvas.shows(X, Y)) {
            continue;
        }
        const std::string number = text_format("%d", beam.no);
        if (draw_text(lettering, canvas, number, static_cast<int>(number.size()), X, Y, 0.0f,
                      height) < 0) {
            return -1;
        }
    }
    return 0;
}

} // namespace

void draw_wire(const PlanarModel& plane, Canvas& canvas, DrawArea& area, bool node_marks) {
    spy("Enter draw_wire()");
    get_new_world(plane, area);
    canvas.set_area(area);
    canvas.set_pen(pen_solid, 1, colour_black);
    for (std::size_t i = 0; i < plane.start.size(); ++i) {
        canvas.move(plane.start[i].X, plane.start[i].Y);
        canvas.line(plane.end[i].X, plane.end[i].Y);
    }
    for (std::size_t i = 0; node_marks && i < plane.node.size(); ++i) {
        canvas.circle(plane.node[i].X, plane.node[i].Y, node_mark_radius, false);
    }
}

int draw_model_picture(const Model& model, const PlanarModel& plane, Lettering& lettering,
                       Canvas& canvas, DrawArea& area, const ModelLabels& labels) {
    if (model.N_Beam == 0) {
        return 0;
    }
    draw_wire(plane, canvas, area, labels.node_marks);
    if (!can_map(area)) {
        return 0;
    }
    draw_marks(model, plane, canvas, labels);
    const float window = (area.world.ymax - area.world.ymin) / canvas.zoom();
    if (labels.node_names &&
        draw_names(model, plane, lettering, canvas, window / labels_a_window) < 0) {
        return -1;
    }
    if (labels.member_numbers &&
        draw_numbers(model, plane, lettering, canvas, window / labels_a_window) < 0) {
        return -1;
    }
    canvas.set_pen(pen_solid, 1, colour_black);
    return 0;
}

} // namespace kigumi
