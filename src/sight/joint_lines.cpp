#include "sight/joint_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace kigumi::hidden_line {

namespace {

// Least and greatest xe, ye and ze of a body.
struct Extent {
    double low[3], high[3];
};

Extent extent_of(const BarShape& shape) {
    constexpr double most = std::numeric_limits<double>::max();
    Extent extent{{most, most, most}, {-most, -most, -most}};
    for (int i = 0; i < shape.n_points; ++i) {
        const double at[3] = {shape.point[i].xe, shape.point[i].ye, shape.point[i].ze};
        for (int axis = 0; axis < 3; ++axis) {
            extent.low[axis] = std::min(extent.low[axis], at[axis]);
            extent.high[axis] = std::max(extent.high[axis], at[axis]);
        }
    }
    return extent;
}

bool overlap(const Extent& p, const Extent& q) {
    return p.low[0] < q.high[0] && q.low[0] < p.high[0] && p.low[1] < q.high[1] &&
           q.low[1] < p.high[1] && p.low[2] < q.high[2] && q.low[2] < p.high[2];
}

// True when a face of `a` has all of `b` before it.
bool parts(const BarShape& a, const BarShape& b, double tolerance) {
    return std::any_of(a.face, a.face + a.n_faces, [&](const Plane& face) {
        return std::all_of(b.point, b.point + b.n_points,
                           [&](const EyePoint& p) { return face.at(p) >= -tolerance; });
    });
}

// A line through `at` along the unit vector `along`.
struct Line {
    EyePoint at, along;
    double from = std::numeric_limits<double>::lowest();
    double to = std::numeric_limits<double>::max();

    EyePoint point(double t) const {
        return {at.xe + t * along.xe, at.ye + t * along.ye, at.ze + t * along.ze};
    }
    // Cuts off what is not at least `depth` below the face.
    void keep_below(const Plane& face, double depth) {
        const double start = face.at(at) + depth;
        const double slope = face.a * along.xe + face.b * along.ye + face.c * along.ze;
        if (slope > 0.0) {
            to = std::min(to, -start / slope);
        } else if (slope < 0.0) {
            from = std::max(from, -start / slope);
        } else if (start > 0.0) {
            to = from;
        }
    }
};

// The line in which two planes cross; nothing when they are parallel, but for the builders' turn.
std::optional<Line> crossing(const Plane& p, const Plane& q) {
    constexpr double least_sine = 1.0e-4;
    const EyePoint n{p.b * q.c - p.c * q.b, p.c * q.a - p.a * q.c, p.a * q.b - p.b * q.a};
    const double square = n.xe * n.xe + n.ye * n.ye + n.ze * n.ze;
    if (square < least_sine * least_sine) {
        return std::nullopt;
    }
    // The point of the line that is nearest to the eye: (q.d·p − p.d·q) × n / |n|².
    const double x = q.d * p.a - p.d * q.a;
    const double y = q.d * p.b - p.d * q.b;
    const double z = q.d * p.c - p.d * q.c;
    const double length = std::sqrt(square);
    return Line{{(y * n.ze - z * n.ye) / square, (z * n.xe - x * n.ze) / square,
                 (x * n.ye - y * n.xe) / square},
                {n.xe / length, n.ye / length, n.ze / length}};
}

void cross_faces(Scene& scene, const SceneBody& a, const SceneBody& b, int face_a, int face_b,
                 double depth) {
    auto line = crossing(a.shape.face[face_a], b.shape.face[face_b]);
    if (!line) {
        return;
    }
    const auto keep_within = [&](const BarShape& shape, int but) {
        for (int f = 0; f < shape.n_faces && line->from < line->to; ++f) {
            if (f != but) {
                line->keep_below(shape.face[f], depth);
            }
        }
    };
    keep_within(a.shape, face_a);
    keep_within(b.shape, face_b);
    if (line->to - line->from > depth) {
        scene.edges.push_back({line->point(line->from),
                               line->point(line->to),
                               std::min(a.shape.first, b.shape.first),
                               {a.occluder, b.occluder}});
    }
}

void cross_bodies(Scene& scene, const SceneBody& a, const SceneBody& b, double tolerance) {
    if (parts(a.shape, b.shape, tolerance) || parts(b.shape, a.shape, tolerance)) {
        return;
    }
    for (int i = 0; i < a.shape.n_faces; ++i) {
        for (int j = 0; a.facing[i] && j < b.shape.n_faces; ++j) {
            if (b.facing[j]) {
                cross_faces(scene, a, b, i, j, 2 * tolerance);
            }
        }
    }
}

} // namespace

void append_joint_lines(Scene& scene, std::span<const SceneBody> bodies, double tolerance) {
    std::vector<Extent> extents;
    for (const SceneBody& body : bodies) {
        extents.push_back(extent_of(body.shape));
    }
    std::vector<std::size_t> order(bodies.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&extents](std::size_t i, std::size_t j) {
        return extents[i].low[0] < extents[j].low[0];
    });
    // Bodies that begin, from left to right, before the present one ends.
    for (std::size_t i = 0; i < order.size(); ++i) {
        const Extent& left = extents[order[i]];
        for (std::size_t j = i + 1; j < order.size() && extents[order[j]].low[0] < left.high[0];
             ++j) {
            if (overlap(left, extents[order[j]])) {
                cross_bodies(scene, bodies[order[i]], bodies[order[j]], tolerance);
            }
        }
    }
}

} // namespace kigumi::hidden_line
