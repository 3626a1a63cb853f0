#include "draw/eye.h"

#include "base/float.h"
#include "trace/spy.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kigumi {

ViewCoefficients view_coefficients(double Rho, double Theta, double Phi) {
    const double t = Theta * std::numbers::pi / 180.0;
    const double p = Phi * std::numbers::pi / 180.0;
    ViewCoefficients v{};
    v.v11 = -std::sin(t);
    v.v12 = -std::cos(p) * std::cos(t);
    v.v13 = -std::sin(p) * std::cos(t);
    v.v21 = std::cos(t);
    v.v22 = -std::cos(p) * std::sin(t);
    v.v23 = -std::sin(p) * std::sin(t);
    v.v32 = std::sin(p);
    v.v33 = -std::cos(p);
    v.v43 = Rho;
    spy("v11 %12.5e v21 %12.5e", v.v11, v.v21);
    spy("v12 %12.5e v22 %12.5e v32 %12.5e", v.v12, v.v22, v.v32);
    spy("v13 %12.5e v23 %12.5e v33 %12.5e v43 %12.5e", v.v13, v.v23, v.v33, v.v43);
    return v;
}

EyePoint to_eye(const ViewCoefficients& v, float x, float y, float z) {
    return {v.v11 * x + v.v21 * y, v.v12 * x + v.v22 * y + v.v32 * z,
            v.v13 * x + v.v23 * y + v.v33 * z + v.v43};
}

double near_plane(const ViewCoefficients& v) {
    constexpr double part_of_distance = 0.1;
    constexpr double nearest = 1.0;
    return std::max(part_of_distance * v.v43, nearest);
}

EyePoint point_between(const EyePoint& a, const EyePoint& b, double part) {
    return {a.xe + part * (b.xe - a.xe), a.ye + part * (b.ye - a.ye), a.ze + part * (b.ze - a.ze)};
}

bool cut_at_near_plane(const ViewCoefficients& v, EyePoint& a, EyePoint& b) {
    const double near = near_plane(v);
    if (a.ze < near && b.ze < near) {
        return false;
    }
    const auto cut = [near](const EyePoint& behind, const EyePoint& seen) {
        EyePoint at = point_between(behind, seen, (near - behind.ze) / (seen.ze - behind.ze));
        at.ze = near;
        return at;
    };
    if (a.ze < near) {
        a = cut(a, b);
    } else if (b.ze < near) {
        b = cut(b, a);
    }
    return true;
}

PlanePoint to_perspective(const ViewCoefficients& v, const EyePoint& p) {
    const double scale = v.v43 / p.ze;
    return {round_once(p.xe * scale), round_once(p.ye * scale)};
}

std::optional<Segment> perspective_edge(const ViewCoefficients& v, EyePoint a, EyePoint b) {
    if (!cut_at_near_plane(v, a, b)) {
        return std::nullopt;
    }
    const PlanePoint from = to_perspective(v, a);
    const PlanePoint to = to_perspective(v, b);
    return Segment{from.X, from.Y, to.X, to.Y};
}

PlaneBounds segment_bounds(std::span<const Segment> segments) {
    if (segments.empty()) {
        return {0, 0, 0, 0};
    }
    const Segment& first = segments.front();
    PlaneBounds bounds{first.X1, first.Y1, first.X1, first.Y1};
    for (const Segment& s : segments) {
        bounds.widen({s.X1, s.Y1});
        bounds.widen({s.X2, s.Y2});
    }
    return bounds;
}

} // namespace kigumi
