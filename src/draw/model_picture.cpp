#include "draw/model_picture.h"

#include "base/format.h"
#include "draw/stroke_font.h"
#include "model/roles.h"
#include "solid/axis_picture.h"

#include <cstring>

namespace kigumi {

namespace {

constexpr int mark_half = 4;             // pixels
constexpr int found_radius = 7;          // pixels
constexpr float labels_a_window = 75.0f; // label height: the window's height / 75

void draw_marks(const Model& model, Canvas& canvas, const ModelLabels& labels) {
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        const int role = role_of(model, i);
        if (node.flag == role_found) {
            canvas.set_pen(pen_solid, 2, colour_blue);
            canvas.circle(node.X, node.Y, found_radius, false);
        }
        if (labels.fixed_nodes && role == role_fixed) {
            canvas.set_pen(pen_solid, 1, colour_blue);
            canvas.square(node.X, node.Y, mark_half, true);
        } else if (labels.loaded_nodes && role == role_loaded) {
            canvas.set_pen(pen_solid, 1, colour_red);
            canvas.circle(node.X, node.Y, mark_half, true);
        }
    }
}

int draw_names(const Model& model, Lettering& lettering, Canvas& canvas, float height) {
    canvas.set_pen(pen_solid, 1, colour_navy);
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        if (!canvas.shows(node.X, node.Y)) {
            continue;
        }
        const int length = static_cast<int>(std::strlen(node.id));
        if (draw_text(lettering, canvas, node.id, length, node.X + 0.5f * height,
                      node.Y + 0.3f * height, 0.0f, height) < 0) {
            return -1;
        }
    }
    return 0;
}

int draw_numbers(const Model& model, Lettering& lettering, Canvas& canvas, float height) {
    canvas.set_pen(pen_solid, 1, colour_maroon);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const float X = 0.5f * (beam.XS + beam.XL);
        const float Y = 0.5f * (beam.YS + beam.YL);
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

int draw_model_picture(Model& model, const View& view, Lettering& lettering, Canvas& canvas,
                       DrawArea& area, const ModelLabels& labels) {
    if (model.N_Beam == 0) {
        return 0;
    }
    draw_wire(model, view, canvas, area, labels.node_marks);
    if (!can_map(area)) {
        return 0;
    }
    draw_marks(model, canvas, labels);
    const float window = (area.world.ymax - area.world.ymin) / canvas.zoom();
    if (labels.node_names && draw_names(model, lettering, canvas, window / labels_a_window) < 0) {
        return -1;
    }
    if (labels.member_numbers &&
        draw_numbers(model, lettering, canvas, window / labels_a_window) < 0) {
        return -1;
    }
    canvas.set_pen(pen_solid, 1, colour_black);
    return 0;
}

} // namespace kigumi
