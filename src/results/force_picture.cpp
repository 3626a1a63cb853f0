#include "results/force_picture.h"

#include "analysis/result_reader.h"
#include "base/format.h"
#include "draw/eye.h"
#include "draw/stroke_font.h"
#include "results/selection.h"
#include "trace/spy.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <string>

namespace kigumi {

namespace {

struct Pen {
    int style, width, colour;
};

constexpr Pen thin_black{pen_solid, 1, colour_black};
constexpr Pen not_selected{pen_solid, 1, colour_silver};

void set_pen(Canvas& canvas, Pen pen) {
    canvas.set_pen(pen.style, pen.width, pen.colour);
}

void draw_between(Canvas& canvas, PlanePoint from, PlanePoint to) {
    canvas.move(from.X, from.Y);
    canvas.line(to.X, to.Y);
}

void draw_member(Canvas& canvas, const Projector& plane, const Stress& s) {
    draw_between(canvas, plane(s.xi, s.yi, s.zi), plane(s.xj, s.yj, s.zj));
}

void draw_axes(Canvas& canvas, const Projector& plane) {
    constexpr float length = 100.0f; // cm
    const PlanePoint origin = plane(0.0f, 0.0f, 0.0f);
    set_pen(canvas, {pen_solid, 1, colour_blue});
    draw_between(canvas, origin, plane(length, 0.0f, 0.0f));
    set_pen(canvas, {pen_solid, 1, colour_green});
    draw_between(canvas, origin, plane(0.0f, length, 0.0f));
    set_pen(canvas, {pen_solid, 1, colour_red});
    draw_between(canvas, origin, plane(0.0f, 0.0f, length));
}

Pen band_pen(const Stress& s, const ResultView& shown) {
    if (s.percent > shown.upper || s.percent < shown.lower) {
        return thin_black;
    }
    return {pen_solid, 1, sign_colour(s.force)};
}

Pen width_pen(const Stress& s) {
    const int width = static_cast<int>(0.1 * s.percent);
    return width < 1 ? thin_black : Pen{pen_solid, width, sign_colour(s.force)};
}

Pen member_pen(const Stress& s, const ResultView& shown) {
    switch (shown.mode) {
    case mode_wire:
        return thin_black;
    case mode_band:
        return band_pen(s, shown);
    case mode_width:
        return width_pen(s);
    default:
        return {pen_solid, 1, sign_colour(s.force)};
    }
}

// Draws every member with its pen of the mode. With a selection the members outside it come first
// and grey.
void draw_by_pen(const Result& result, Canvas& canvas, const Projector& plane,
                 const ResultView& shown) {
    const bool any_selected = result.Nken_Stress > 0;
    if (any_selected) {
        set_pen(canvas, not_selected);
        for (int i = 0; i < result.N_Stress; ++i) {
            if (!is_selected(result, i)) {
                draw_member(canvas, plane, result.stress[i]);
            }
        }
    }
    for (int i = 0; i < result.N_Stress; ++i) {
        if (!any_selected || is_selected(result, i)) {
            set_pen(canvas, member_pen(result.stress[i], shown));
            draw_member(canvas, plane, result.stress[i]);
        }
    }
}

void draw_all_members(const Result& result, Canvas& canvas, const Projector& plane) {
    set_pen(canvas, thin_black);
    for (int i = 0; i < result.N_Stress; ++i) {
        draw_member(canvas, plane, result.stress[i]);
    }
}

// Both shapes of the members that are in the selection, or out of it; each shape with its pen.
void draw_shapes(const Result& result, Canvas& canvas, const Projector& plane, bool selected,
                 Pen before, Pen after) {
    set_pen(canvas, before);
    for (int i = 0; i < result.N_Stress; ++i) {
        if (is_selected(result, i) == selected) {
            draw_member(canvas, plane, result.stress[i]);
        }
    }
    set_pen(canvas, after);
    for (int i = 0; i < result.N_Stress; ++i) {
        if (is_selected(result, i) == selected) {
            const HeniBeam& b = result.heni_beam[i];
            draw_between(canvas, plane(b.xs, b.ys, b.zs), plane(b.xl, b.yl, b.zl));
        }
    }
}

// Where a picture shows a point of the model; nothing for one that it cannot show.
using Place = std::function<std::optional<PlanePoint>(float x, float y, float z)>;

// The places in the picture of the mode.
Place place_of(const View& view, const ResultView& shown) {
    if (shown.mode != mode_solids) {
        return [plane = Projector(shown.TAU, shown.FAI)](float x, float y, float z) {
            return std::optional(plane(x, y, z));
        };
    }
    const ViewCoefficients eye = view_coefficients(view.Rho, view.Theta, view.Phi);
    return [eye](float x, float y, float z) {
        const EyePoint p = to_eye(eye, x, y, z);
        return p.ze < near_plane(eye) ? std::nullopt : std::optional(to_perspective(eye, p));
    };
}

// Draws labels at points of the model in one fitted window. The font has to be there.
struct Labeller {
    const Result& result;
    Lettering& lettering;
    Canvas& canvas;
    const Place place;
    const float name_height;  // plane units
    const float other_height; // of all other labels

    // `clear` times the height is left free to the right of the point.
    void put(const std::string& text, int length, const std::optional<PlanePoint>& at, float height,
             float clear) const {
        if (!at || !canvas.shows(at->X, at->Y)) {
            return;
        }
        draw_text(lettering, canvas, text, length, at->X + clear * height, at->Y, 0.0f, height);
    }
    void put(const std::string& text, const std::optional<PlanePoint>& at, float clear) const {
        put(text, static_cast<int>(text.size()), at, other_height, clear);
    }
};

constexpr float beside_node = 2.0f;
constexpr float at_point = 0.0f;

void label_names(const Labeller& labeller) {
    for (int i = 0; i < labeller.result.N_Setuten; ++i) {
        const Setuten& node = labeller.result.setuten[i];
        labeller.put(node.pname, matched_name_length, labeller.place(node.x, node.y, node.z),
                     labeller.name_height, beside_node);
    }
}

void label_members(const Labeller& labeller) {
    for (int i = 0; i < labeller.result.N_Stress; ++i) {
        const Stress& s = labeller.result.stress[i];
        const std::optional<PlanePoint> middle =
            labeller.place((s.xi + s.xj) * 0.5f, (s.yi + s.yj) * 0.5f, (s.zi + s.zj) * 0.5f);
        labeller.put(text_format("%5d", s.no), middle, at_point);
    }
}

void label_fixes(const Labeller& labeller) {
    for (const ResultFix& role : labeller.result.roles.fix) {
        const Fix& f = role.fix;
        labeller.put(text_format("Fix %1d%1d%1d111", f.ix, f.iy, f.iz),
                     labeller.place(role.x, role.y, role.z), beside_node);
    }
}

void label_loads(const Labeller& labeller) {
    for (const ResultLoad& role : labeller.result.roles.load) {
        const Load& p = role.load;
        labeller.put(text_format("Load x %8.1f y %5.1f z %8.1f", p.fx, p.fy, p.fz),
                     labeller.place(role.x, role.y, role.z), at_point);
    }
}

bool has_room(const Viewport& crt) {
    return crt.right > crt.left && crt.bottom > crt.top;
}

bool is_fitted(const Result& result, const DrawArea& area) {
    return result.N_Stress > 0 && has_room(area.crt) && can_map(area);
}

bool start_picture(const Result& result, Canvas& canvas, ResultView& shown) {
    if (!fit_result(result, shown)) {
        return false;
    }
    canvas.set_area(shown.area);
    return true;
}

} // namespace

int sign_colour(float force) {
    return force > 0.0f ? colour_red : colour_blue;
}

bool fit_result(const Result& result, ResultView& shown) {
    const Projector plane(shown.TAU, shown.FAI);
    PlaneBounds bounds = aspect_fit_start;
    for (int i = 0; i < result.N_Stress; ++i) {
        const Stress& s = result.stress[i];
        bounds.widen(plane(s.xi, s.yi, s.zi));
        bounds.widen(plane(s.xj, s.yj, s.zj));
    }
    aspect_fit(shown.area, bounds);
    return is_fitted(result, shown.area);
}

void make_wire(const Result& result, Canvas& canvas, ResultView& shown) {
    spy("Enter make_wire()");
    if (!start_picture(result, canvas, shown)) {
        return;
    }
    const Projector plane(shown.TAU, shown.FAI);
    if (result.Nken_Stress > 0) {
        draw_by_pen(result, canvas, plane, shown);
    } else {
        draw_all_members(result, canvas, plane);
    }
    draw_axes(canvas, plane);
    set_pen(canvas, thin_black);
}

void make_force_wire(const Result& result, Canvas& canvas, ResultView& shown) {
    spy("Enter make_force_wire()");
    if (!start_picture(result, canvas, shown)) {
        return;
    }
    draw_by_pen(result, canvas, Projector(shown.TAU, shown.FAI), shown);
    set_pen(canvas, thin_black);
}

void make_heni(const Result& result, Canvas& canvas, ResultView& shown) {
    spy("Enter make_heni()");
    if (!start_picture(result, canvas, shown)) {
        return;
    }
    const Projector plane(shown.TAU, shown.FAI);
    constexpr Pen displaced{pen_solid, 1, colour_red};
    const bool any_selected = result.Nken_Stress > 0;
    if (any_selected) {
        draw_shapes(result, canvas, plane, false, not_selected, not_selected);
    }
    draw_shapes(result, canvas, plane, any_selected, thin_black, displaced);
    set_pen(canvas, thin_black);
}

int draw_result_labels(const View& view, const Result& result, Lettering& lettering, Canvas& canvas,
                       const ResultView& shown) {
    constexpr void (*put_labels[])(const Labeller&) = {label_names, label_members, label_fixes,
                                                       label_loads};
    const bool wanted = std::any_of(std::begin(shown.label), std::end(shown.label),
                                    [](int flag) { return flag != 0; });
    if (!wanted || !is_fitted(result, shown.area)) {
        return 0;
    }
    if (load_stroke_font(lettering) < 0) {
        return -1;
    }
    const float height = (shown.area.world.ymax - shown.area.world.ymin) / canvas.zoom();
    const Labeller labeller{result,         lettering,     canvas, place_of(view, shown),
                            height / 75.0f, height * 0.01f};
    for (int kind = 0; kind < result_label_count; ++kind) {
        if (shown.label[kind] != 0) {
            put_labels[kind](labeller);
        }
    }
    return 0;
}

int draw_result_picture(const View& view, const Result& result, Lettering& lettering,
                        Canvas& canvas, ResultView& shown) {
    switch (shown.mode) {
    case mode_wire:
        make_wire(result, canvas, shown);
        break;
    case mode_sign:
    case mode_band:
    case mode_width:
        make_force_wire(result, canvas, shown);
        break;
    case mode_displaced:
        make_heni(result, canvas, shown);
        break;
    default:
        return 0;
    }
    return draw_result_labels(view, result, lettering, canvas, shown);
}

} // namespace kigumi
