#include "sight/bar_shape.h"

#include "base/float.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kigumi::hidden_line {

namespace {

EyePoint minus(const EyePoint& p, const EyePoint& q) {
    return {p.xe - q.xe, p.ye - q.ye, p.ze - q.ze};
}

EyePoint cross(const EyePoint& p, const EyePoint& q) {
    return {p.ye * q.ze - p.ze * q.ye, p.ze * q.xe - p.xe * q.ze, p.xe * q.ye - p.ye * q.xe};
}

double length(const EyePoint& p) {
    return std::sqrt(p.xe * p.xe + p.ye * p.ye + p.ze * p.ze);
}

Plane turned(const Plane& p) {
    return {-p.a, -p.b, -p.c, -p.d};
}

// Collects the triangles of one bar.
class BarReader {
  public:
    BarReader(std::span<const Trio> records, const ViewCoefficients& v, BarShape& bar)
        : records_(records), v_(v), bar_(bar) {
        std::memset(edge_of_, -1, sizeof edge_of_);
    }

    // Adds triangles until every edge has two; false when that does not happen.
    bool close();
    // Makes the faces out of the triangles; false when the body is flat or not convex.
    bool make_faces(double tolerance);
    void sort_edges();

  private:
    bool add(int triangle);
    int point_at(const float (&vertex)[3]);
    bool add_edge(int triangle, int side, int from, int to);
    int face_of(int triangle, const Plane& plane, double tolerance);

    std::span<const Trio> records_;
    const ViewCoefficients& v_;
    BarShape& bar_;
    const float* vertex_[bar_points];
    signed char edge_of_[bar_points][bar_points]; // of two points, the smaller first
    int corner_[bar_triangles][3];
    int side_[bar_triangles][3]; // edges, in the order of trio_edges
    int face_[bar_triangles];
    int open_ = 0; // edges with one triangle
};

int BarReader::point_at(const float (&vertex)[3]) {
    for (int i = 0; i < bar_.n_points; ++i) {
        const float* known = vertex_[i];
        if (same_float(known[0], vertex[0]) && same_float(known[1], vertex[1]) &&
            same_float(known[2], vertex[2])) {
            return i;
        }
    }
    if (bar_.n_points == bar_points) {
        return -1;
    }
    vertex_[bar_.n_points] = vertex;
    bar_.point[bar_.n_points] = to_eye(v_, vertex[0], vertex[1], vertex[2]);
    return bar_.n_points++;
}

bool BarReader::add_edge(int triangle, int side, int from, int to) {
    if (from == to) {
        return false;
    }
    signed char& known = edge_of_[std::min(from, to)][std::max(from, to)];
    if (known < 0) {
        if (bar_.n_edges == bar_edges) {
            return false;
        }
        known = static_cast<signed char>(bar_.n_edges++);
        bar_.edge[known] = {from, to, {triangle, -1}, -1};
        ++open_;
    } else {
        if (bar_.edge[known].face[1] >= 0) {
            return false;
        }
        bar_.edge[known].face[1] = triangle;
        --open_;
    }
    side_[triangle][side] = known;
    return true;
}

bool BarReader::add(int triangle) {
    const Trio& trio = records_[static_cast<std::size_t>(bar_.first + triangle)];
    int(&corner)[3] = corner_[triangle];
    for (int i = 0; i < 3; ++i) {
        corner[i] = point_at(trio.vertex[i]);
        if (corner[i] < 0) {
            return false;
        }
    }
    for (int side = 0; side < 3; ++side) {
        const TrioEdge& edge = trio_edges[side];
        if (!add_edge(triangle, side, corner[edge.from], corner[edge.to])) {
            return false;
        }
    }
    return true;
}

bool BarReader::close() {
    const std::size_t left = records_.size() - static_cast<std::size_t>(bar_.first);
    const int most = static_cast<int>(std::min<std::size_t>(left, bar_triangles));
    while (bar_.count < most) {
        if (!add(bar_.count)) {
            return false;
        }
        ++bar_.count;
        if (open_ == 0) {
            return true;
        }
    }
    return false;
}

int BarReader::face_of(int triangle, const Plane& plane, double tolerance) {
    for (int f = 0; f < bar_.n_faces; ++f) {
        const Plane& face = bar_.face[f];
        const bool flat =
            std::all_of(std::begin(corner_[triangle]), std::end(corner_[triangle]),
                        [&](int p) { return std::fabs(face.at(bar_.point[p])) <= tolerance; });
        if (flat && face.a * plane.a + face.b * plane.b + face.c * plane.c > 0.0) {
            return f;
        }
    }
    bar_.face[bar_.n_faces] = plane;
    return bar_.n_faces++;
}

bool BarReader::make_faces(double tolerance) {
    EyePoint& middle = bar_.middle;
    for (int i = 0; i < bar_.n_points; ++i) {
        middle.xe += bar_.point[i].xe / bar_.n_points;
        middle.ye += bar_.point[i].ye / bar_.n_points;
        middle.ze += bar_.point[i].ze / bar_.n_points;
    }
    for (int t = 0; t < bar_.count; ++t) {
        const int(&corner)[3] = corner_[t];
        const auto plane = plane_through(bar_.point[corner[0]], bar_.point[corner[1]],
                                         bar_.point[corner[2]], tolerance);
        if (!plane || std::fabs(plane->at(middle)) <= tolerance) {
            return false;
        }
        face_[t] = face_of(t, plane->at(middle) < 0.0 ? *plane : turned(*plane), tolerance);
    }
    for (int f = 0; f < bar_.n_faces; ++f) {
        for (int i = 0; i < bar_.n_points; ++i) {
            if (bar_.face[f].at(bar_.point[i]) > tolerance) {
                return false;
            }
        }
    }
    return true;
}

void BarReader::sort_edges() {
    BarEdge sorted[bar_edges];
    int count = 0;
    for (int t = 0; t < bar_.count; ++t) {
        const int record = bar_.first + t;
        for (int side = 0; side < 3; ++side) {
            BarEdge& edge = bar_.edge[side_[t][side]];
            const bool flagged =
                (records_[static_cast<std::size_t>(record)].hyoji & trio_edges[side].bit) != 0;
            if (flagged && edge.record < 0) {
                edge.record = record;
                sorted[count++] = {corner_[t][trio_edges[side].from],
                                   corner_[t][trio_edges[side].to],
                                   {face_[edge.face[0]], face_[edge.face[1]]},
                                   record};
            }
        }
    }
    for (int e = 0; e < bar_.n_edges; ++e) {
        const BarEdge& edge = bar_.edge[e];
        if (edge.record < 0) {
            sorted[count++] = {edge.from, edge.to, {face_[edge.face[0]], face_[edge.face[1]]}, -1};
        }
    }
    std::copy(sorted, sorted + count, bar_.edge);
}

} // namespace

std::optional<Plane> plane_through(const EyePoint& p, const EyePoint& q, const EyePoint& r,
                                   double thinnest) {
    const EyePoint u = minus(q, p);
    const EyePoint w = minus(r, p);
    const EyePoint n = cross(u, w);
    const double twice_area = length(n);
    const double longest = std::max({length(u), length(w), length(minus(r, q))});
    if (!(twice_area > thinnest * longest)) {
        return std::nullopt;
    }
    const EyePoint unit{n.xe / twice_area, n.ye / twice_area, n.ze / twice_area};
    return Plane{unit.xe, unit.ye, unit.ze, -(unit.xe * p.xe + unit.ye * p.ye + unit.ze * p.ze)};
}

std::optional<Plane> sight_plane(const EyePoint& p, const EyePoint& q, const EyePoint& inside) {
    // Below this sine of the angle between the lines of sight their plane is rounding noise.
    constexpr double least_sine = 1.0e-12;
    const EyePoint n = cross(p, q);
    if (!(length(n) > least_sine * length(p) * length(q))) {
        return std::nullopt;
    }
    const Plane plane{n.xe, n.ye, n.ze, 0.0};
    return plane.at(inside) < 0.0 ? turned(plane) : plane;
}

bool read_bar(std::span<const Trio> records, std::size_t first, const ViewCoefficients& v,
              double tolerance, BarShape& bar) {
    bar.first = static_cast<int>(first);
    bar.count = bar.n_points = bar.n_faces = bar.n_edges = 0;
    bar.middle = {};
    BarReader reader(records, v, bar);
    if (!reader.close() || !reader.make_faces(tolerance)) {
        return false;
    }
    reader.sort_edges();
    return true;
}

} // namespace kigumi::hidden_line
