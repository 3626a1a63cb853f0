#include "draw/sheet_picture.h"

#include <algorithm>

namespace kigumi {

namespace {

constexpr int node_half = 3;          // inner square and circle of a node, pixels
constexpr int mark_half = 4;          // outer square, and the mark of a second end
constexpr int mark_radius = 5;        // filled marks
constexpr float sheet_margin = 20.0f; // around nodes outside the sheet, sheet units

void draw_nested_squares(Canvas& canvas, float X, float Y) {
    canvas.set_pen(pen_solid, 1, colour_black);
    canvas.square(X, Y, node_half, false);
    canvas.square(X, Y, mark_half, false);
}

void draw_mark(Canvas& canvas, const SheetMark& mark) {
    const auto [X, Y] = mark.at;
    switch (mark.kind) {
    case MarkKind::new_node:
        draw_nested_squares(canvas, X, Y);
        break;
    case MarkKind::snapped:
        canvas.set_pen(pen_solid, 1, colour_black);
        canvas.circle(X, Y, mark_radius, true);
        break;
    case MarkKind::snapped_known:
        canvas.set_pen(pen_solid, 1, colour_red);
        canvas.circle(X, Y, mark_radius, true);
        break;
    case MarkKind::second_end:
        canvas.set_pen(pen_solid, 1, colour_red);
        canvas.square(X, Y, mark_half, true);
        canvas.square(X, Y, node_half, true);
        break;
    case MarkKind::picked:
        canvas.set_pen(pen_solid, 1, colour_blue);
        canvas.circle(X, Y, mark_radius, true);
        break;
    }
}

} // namespace

void fit_sheet(DrawArea& area, const World& sheet) {
    const double width = static_cast<double>(sheet.xmax) - sheet.xmin;
    const double height = static_cast<double>(sheet.ymax) - sheet.ymin;
    const double scale = std::min({1.0, area.xScreen / width, area.yScreen / height});
    area.crt = {0, 0, area.xScreen, area.yScreen};
    area.world = {sheet.xmin, sheet.ymin, static_cast<float>(sheet.xmin + area.xScreen / scale),
                  static_cast<float>(sheet.ymin + area.yScreen / scale)};
}

World sheet_around_nodes(const Model& model, World sheet) {
    const World bare = sheet;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        sheet.xmin = node.X < bare.xmin ? std::min(sheet.xmin, node.X - sheet_margin) : sheet.xmin;
        sheet.ymin = node.Y < bare.ymin ? std::min(sheet.ymin, node.Y - sheet_margin) : sheet.ymin;
        sheet.xmax = node.X > bare.xmax ? std::max(sheet.xmax, node.X + sheet_margin) : sheet.xmax;
        sheet.ymax = node.Y > bare.ymax ? std::max(sheet.ymax, node.Y + sheet_margin) : sheet.ymax;
    }
    return sheet;
}

void draw_sheet(const Model& model, Canvas& canvas, const DrawArea& area,
                const std::vector<SheetMark>& marks) {
    canvas.set_area(area);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const bool missing = is_missing(beam);
        canvas.set_pen(missing ? pen_dashed : pen_solid, 1, missing ? colour_grey : colour_black);
        canvas.move(beam.XS, beam.YS);
        canvas.line(beam.XL, beam.YL);
    }
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        if (is_missing(node)) {
            draw_nested_squares(canvas, node.X, node.Y);
        } else {
            canvas.set_pen(pen_solid, 1, colour_black);
            canvas.circle(node.X, node.Y, node_half, true);
        }
    }
    for (const SheetMark& mark : marks) {
        draw_mark(canvas, mark);
    }
}

SheetPoint to_sheet(const DrawArea& area, int px, int py) {
    constexpr float part = 1.0f / 16.0f; // of a pixel
    constexpr int most_steps = 4;
    const float step_x = part * (area.world.xmax - area.world.xmin) / area.xScreen;
    const float step_y = part * (area.world.ymax - area.world.ymin) / area.yScreen;
    const PlanePoint exact = to_plane(area, px, py);
    SheetPoint at{exact.X, exact.Y};
    // Rounded to float a point may fall just short of its pixel, to which drawing truncates.
    int drawn_x = px;
    int drawn_y = py;
    for (int i = 0; i < most_steps && to_screen(area, at.X, at.Y, drawn_x, drawn_y); ++i) {
        at.X += drawn_x < px ? step_x : 0.0f;
        at.Y -= drawn_y < py ? step_y : 0.0f;
    }
    return at;
}

} // namespace kigumi
