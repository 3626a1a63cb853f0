#include "draw/canvas.h"

namespace kigumi {

void PixelCanvas::move(float X, float Y) {
    at_valid_ = to_screen(area_, X, Y, at_.x, at_.y);
}

void PixelCanvas::line(float X, float Y) {
    Pixel to{};
    const bool valid = to_screen(area_, X, Y, to.x, to.y);
    if (valid && at_valid_) {
        draw_line(at_, to);
    }
    at_ = to;
    at_valid_ = valid;
}

void PixelCanvas::circle(float X, float Y, int half, bool filled) {
    Pixel centre{};
    if (to_screen(area_, X, Y, centre.x, centre.y)) {
        draw_circle(centre, half, filled);
    }
}

void PixelCanvas::square(float X, float Y, int half, bool filled) {
    Pixel centre{};
    if (to_screen(area_, X, Y, centre.x, centre.y)) {
        draw_square(centre, half, filled);
    }
}

void PixelCanvas::polygon(std::span<const PlanePoint> points) {
    std::vector<Pixel> pixels;
    for (const PlanePoint& p : points) {
        Pixel pixel{};
        if (!to_screen(area_, p.X, p.Y, pixel.x, pixel.y)) {
            return;
        }
        pixels.push_back(pixel);
    }
    draw_polygon(pixels);
}

void SegmentCanvas::set_pen(int style, int, int) {
    visible_ = style != pen_invisible;
}

void SegmentCanvas::line(float X, float Y) {
    if (visible_) {
        segments_.push_back({at_.X, at_.Y, X, Y});
    }
    at_ = {X, Y};
}

void SegmentCanvas::circle(float, float, int, bool) {}

void SegmentCanvas::square(float, float, int, bool) {}

void SegmentCanvas::polygon(std::span<const PlanePoint> points) {
    if (points.empty()) {
        return;
    }
    move(points.back().X, points.back().Y);
    for (const PlanePoint& p : points) {
        line(p.X, p.Y);
    }
}

} // namespace kigumi
