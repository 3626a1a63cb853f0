#include "draw/projection.h"

#include "base/float.h"
#include "trace/spy.h"

#include <cmath>

namespace kigumi {

namespace {

// Deliberate: the parallel projection converts degrees with this truncated pi.
constexpr long double truncated_pi = 3.14159L;

long double radians(float degrees) {
    return static_cast<long double>(degrees) * truncated_pi / 180.0L;
}

// Pixels beyond this are no place on any screen; they are left out instead of overflowing.
constexpr long double pixel_limit = 1.0e8L;

} // namespace

Projector::Projector(float TAU, float FAI)
    : cos_t_(std::cos(radians(TAU))), sin_t_(std::sin(radians(TAU))),
      cos_f_(std::cos(radians(FAI))), sin_f_(std::sin(radians(FAI))) {}

PlanePoint Projector::operator()(float x, float y, float z) const {
    const long double X = y * cos_t_ - x * sin_t_;
    const long double Y = z * cos_f_ - sin_f_ * (x * cos_t_ + y * sin_t_);
    return {static_cast<float>(X), static_cast<float>(Y)};
}

PlanePoint project(float x, float y, float z, float TAU, float FAI) {
    return Projector(TAU, FAI)(x, y, z);
}

PlanePoint project(const View& view, float x, float y, float z) {
    return project(x, y, z, view.TAU, view.FAI);
}

void PlaneBounds::widen(PlanePoint p) {
    xmin = p.X < xmin ? p.X : xmin;
    ymin = p.Y < ymin ? p.Y : ymin;
    xmax = p.X > xmax ? p.X : xmax;
    ymax = p.Y > ymax ? p.Y : ymax;
}

PlanarModel project_model(const Model& model, const View& view) {
    const Projector projector(view.TAU, view.FAI);
    PlanarModel plane;
    plane.node.reserve(model.N_Node);
    plane.start.reserve(model.N_Beam);
    plane.end.reserve(model.N_Beam);
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        plane.node.push_back(projector(node.x, node.y, node.z));
        plane.bounds.widen(plane.node.back());
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        plane.start.push_back(projector(beam.xs, beam.ys, beam.zs));
        plane.end.push_back(projector(beam.xl, beam.yl, beam.zl));
    }
    return plane;
}

int find_plane_node(const PlanarModel& plane, PlanePoint at, float radius) {
    for (std::size_t i = 0; i < plane.node.size(); ++i) {
        const double dx = static_cast<double>(plane.node[i].X) - at.X;
        const double dy = static_cast<double>(plane.node[i].Y) - at.Y;
        if (round_once(std::sqrt(dx * dx + dy * dy)) < radius) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void place_on_sheet(Model& model, const PlanarModel& plane) {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].X = plane.node[i].X;
        model.node[i].Y = plane.node[i].Y;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        beam.XS = plane.start[i].X;
        beam.YS = plane.start[i].Y;
        beam.XL = plane.end[i].X;
        beam.YL = plane.end[i].Y;
    }
}

void square_fit(DrawArea& area, const PlaneBounds& b) {
    const float w = std::fabs(b.xmax - b.xmin);
    const float h = std::fabs(b.ymax - b.ymin);
    const float cx = (b.xmin + b.xmax) * 0.5f;
    const float cy = (b.ymin + b.ymax) * 0.5f;
    if (h >= w) {
        const float half = (b.ymax - b.ymin) * 0.5f;
        area.world = {cx - half, b.ymin, cx + half, b.ymax};
    } else {
        const float half = (b.xmax - b.xmin) * 0.5f;
        area.world = {b.xmin, cy - half, b.xmax, cy + half};
    }
    constexpr int margin = 16;
    const int half_width = area.xScreen / 2;
    const int half_height = area.yScreen / 2;
    area.crt = {half_width - half_height + margin, margin, half_width + half_height - margin,
                area.yScreen - margin};
}

void aspect_fit(DrawArea& area, const PlaneBounds& b) {
    constexpr int margin = 100;
    area.crt = {margin, margin, area.xScreen - margin, area.yScreen - margin};
    const float ratio = std::fabs(b.xmax - b.xmin) / std::fabs(b.ymax - b.ymin);
    const float ratio_crt = static_cast<float>(area.crt.right - area.crt.left) /
                            static_cast<float>(area.crt.bottom - area.crt.top);
    if (ratio >= ratio_crt) {
        spy("横長");
        const float cy = (b.ymin + b.ymax) * 0.5f;
        const float half = (b.xmax - b.xmin) / (2.0f * ratio_crt);
        area.world = {b.xmin, cy - half, b.xmax, cy + half};
    } else {
        spy("縦長");
        const float cx = (b.xmin + b.xmax) * 0.5f;
        const float half = (b.ymax - b.ymin) * ratio_crt * 0.5f;
        area.world = {cx - half, b.ymin, cx + half, b.ymax};
    }
}

void margin_fit(DrawArea& area, const PlaneBounds& b) {
    area.crt = {0, 0, area.xScreen, area.yScreen};
    const float ratio_crt = static_cast<float>(area.yScreen) / static_cast<float>(area.xScreen);
    const float w = std::fabs(b.xmax - b.xmin);
    const float h = std::fabs(b.ymax - b.ymin);
    // One side may be flat: a comparison of products instead of h / w.
    const bool tall = h >= ratio_crt * w;
    const float across = tall ? h / ratio_crt : w;
    const float up = tall ? h : w * ratio_crt;
    area.world = {b.xmin - across * 0.1f, b.ymin - up * 0.1f, b.xmin + across * 1.1f,
                  b.ymin + up * 1.1f};
}

void get_new_world(const PlanarModel& plane, DrawArea& area) {
    square_fit(area, plane.bounds);
}

void get_world(DrawArea& area, float xmin, float ymin, float xmax, float ymax) {
    margin_fit(area, {xmin, ymin, xmax, ymax});
}

bool can_map(const DrawArea& area) {
    const float w = area.world.xmax - area.world.xmin;
    const float h = area.world.ymax - area.world.ymin;
    return std::isfinite(w) && std::isfinite(h) && (w < 0.0f || w > 0.0f) && (h < 0.0f || h > 0.0f);
}

bool to_screen(const DrawArea& area, float X, float Y, int& px, int& py) {
    if (!can_map(area)) {
        return false;
    }
    const World& world = area.world;
    const Viewport& crt = area.crt;
    const long double x = static_cast<long double>(crt.right - crt.left) * (X - world.xmin) /
                              (world.xmax - world.xmin) +
                          crt.left;
    const long double y = static_cast<long double>(crt.bottom - crt.top) * (world.ymax - Y) /
                              (world.ymax - world.ymin) +
                          crt.top;
    if (!(std::fabs(x) < pixel_limit && std::fabs(y) < pixel_limit)) {
        return false;
    }
    px = static_cast<int>(x);
    py = static_cast<int>(y);
    return true;
}

PlanePoint to_plane(const DrawArea& area, int px, int py) {
    const World& world = area.world;
    const Viewport& crt = area.crt;
    const double across = static_cast<double>(px - crt.left) / (crt.right - crt.left);
    const double up = static_cast<double>(crt.bottom - py) / (crt.bottom - crt.top);
    return {static_cast<float>(world.xmin + across * (world.xmax - world.xmin)),
            static_cast<float>(world.ymin + up * (world.ymax - world.ymin))};
}

} // namespace kigumi
