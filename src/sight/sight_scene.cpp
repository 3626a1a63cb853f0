#include "sight/sight_scene.h"

#include "sight/joint_lines.h"

#include <algorithm>
#include <cmath>

namespace kigumi::hidden_line {

namespace {

Plane below(const Plane& face, double tolerance) {
    return {-face.a, -face.b, -face.c, -face.d - tolerance};
}

bool is_finite(const Trio& trio) {
    return std::all_of(&trio.vertex[0][0], &trio.vertex[0][0] + 9,
                       [](float value) { return std::isfinite(value); });
}

// A triangle cut off at the near plane.
struct Polygon {
    EyePoint point[4];
    int count = 0;
};

class SceneMaker {
  public:
    SceneMaker(std::span<const Trio> records, const ViewCoefficients& v, double tolerance,
               bool joints)
        : records_(records), v_(v), near_(near_plane(v)), tolerance_(tolerance), joints_(joints) {}

    Scene make();

  private:
    bool beyond(const EyePoint& p) const { return p.ze >= near_; }
    void add_bar(const BarShape& bar);
    void add_body(const BarShape& bar);
    void add_open_bar(const BarShape& bar);
    void add_triangle(const Trio& trio, int record);
    void add_edge(const EyePoint& a, const EyePoint& b, int record, int own);
    void add_surface(const EyePoint (&corner)[3]);
    Polygon beyond_near(const EyePoint (&corner)[3]) const;
    EyePoint eye(const float (&p)[3]) const { return to_eye(v_, p[0], p[1], p[2]); }

    // An occluder of these points takes the sides and planes added between these two calls.
    void begin_occluder(std::span<const EyePoint> points);
    void add_side(const EyePoint& p, const EyePoint& q, const EyePoint& inside);
    void end_occluder();

    std::span<const Trio> records_;
    const ViewCoefficients& v_;
    const double near_, tolerance_;
    const bool joints_;
    Scene scene_;
    std::vector<SceneBody> bodies_; // kept for joint lines
    Occluder occluder_{};
};

Scene SceneMaker::make() {
    scene_.edges.reserve(records_.size());
    BarShape bar;
    std::size_t i = 0;
    while (i < records_.size()) {
        if (read_bar(records_, i, v_, tolerance_, bar)) {
            add_bar(bar);
            i += static_cast<std::size_t>(bar.count);
        } else {
            add_triangle(records_[i], static_cast<int>(i));
            ++i;
        }
    }
    append_joint_lines(scene_, bodies_, tolerance_);
    return std::move(scene_);
}

void SceneMaker::add_bar(const BarShape& bar) {
    const auto count = std::count_if(bar.point, bar.point + bar.n_points,
                                     [this](const EyePoint& p) { return beyond(p); });
    if (count == bar.n_points) {
        add_body(bar);
    } else if (count > 0) {
        add_open_bar(bar);
    }
}

void SceneMaker::add_body(const BarShape& bar) {
    bool facing[bar_triangles];
    for (int f = 0; f < bar.n_faces; ++f) {
        facing[f] = bar.face[f].d > tolerance_;
    }
    begin_occluder({bar.point, static_cast<std::size_t>(bar.n_points)});
    for (int e = 0; e < bar.n_edges; ++e) {
        const BarEdge& edge = bar.edge[e];
        if (facing[edge.face[0]] != facing[edge.face[1]]) {
            add_side(bar.point[edge.from], bar.point[edge.to], bar.middle);
        }
    }
    for (int f = 0; f < bar.n_faces; ++f) {
        if (facing[f]) {
            scene_.planes.push_back(below(bar.face[f], tolerance_));
        }
    }
    end_occluder();
    const int own = static_cast<int>(scene_.occluders.size()) - 1;
    if (joints_) {
        SceneBody& body = bodies_.emplace_back(SceneBody{bar, own, {}});
        std::copy(facing, facing + bar.n_faces, body.facing);
    }
    for (int e = 0; e < bar.n_edges; ++e) {
        const BarEdge& edge = bar.edge[e];
        const bool outline = edge.record >= 0 && edge.face[0] != edge.face[1];
        if (outline && (facing[edge.face[0]] || facing[edge.face[1]])) {
            add_edge(bar.point[edge.from], bar.point[edge.to], edge.record, own);
        }
    }
}

void SceneMaker::add_open_bar(const BarShape& bar) {
    for (int e = 0; e < bar.n_edges; ++e) {
        const BarEdge& edge = bar.edge[e];
        if (edge.record >= 0 && edge.face[0] != edge.face[1]) {
            add_edge(bar.point[edge.from], bar.point[edge.to], edge.record, -1);
        }
    }
    for (int i = bar.first; i < bar.first + bar.count; ++i) {
        const Trio& trio = records_[static_cast<std::size_t>(i)];
        add_surface({eye(trio.vertex[0]), eye(trio.vertex[1]), eye(trio.vertex[2])});
    }
}

void SceneMaker::add_triangle(const Trio& trio, int record) {
    if (!is_finite(trio)) {
        return;
    }
    const EyePoint corner[3] = {eye(trio.vertex[0]), eye(trio.vertex[1]), eye(trio.vertex[2])};
    for (const TrioEdge& edge : trio_edges) {
        if ((trio.hyoji & edge.bit) != 0) {
            add_edge(corner[edge.from], corner[edge.to], record, -1);
        }
    }
    add_surface(corner);
}

void SceneMaker::add_edge(const EyePoint& a, const EyePoint& b, int record, int own) {
    SceneEdge edge{a, b, record, {own, -1}};
    if (cut_at_near_plane(v_, edge.a, edge.b)) {
        scene_.edges.push_back(edge);
    }
}

Polygon SceneMaker::beyond_near(const EyePoint (&corner)[3]) const {
    Polygon polygon;
    for (int i = 0; i < 3; ++i) {
        const EyePoint& p = corner[i];
        const EyePoint& q = corner[(i + 1) % 3];
        if (beyond(p)) {
            polygon.point[polygon.count++] = p;
        }
        if (beyond(p) != beyond(q)) {
            polygon.point[polygon.count++] = point_between(p, q, (near_ - p.ze) / (q.ze - p.ze));
        }
    }
    return polygon;
}

void SceneMaker::add_surface(const EyePoint (&corner)[3]) {
    const auto plane = plane_through(corner[0], corner[1], corner[2], tolerance_);
    const Polygon polygon = beyond_near(corner);
    if (!plane || polygon.count < 3 || std::fabs(plane->d) <= tolerance_) {
        return;
    }
    EyePoint middle{};
    for (int i = 0; i < polygon.count; ++i) {
        middle.xe += polygon.point[i].xe;
        middle.ye += polygon.point[i].ye;
        middle.ze += polygon.point[i].ze;
    }
    begin_occluder({polygon.point, static_cast<std::size_t>(polygon.count)});
    for (int i = 0; i < polygon.count; ++i) {
        add_side(polygon.point[i], polygon.point[(i + 1) % polygon.count], middle);
    }
    const Plane& p = *plane;
    scene_.planes.push_back(below(p.d > 0.0 ? p : Plane{-p.a, -p.b, -p.c, -p.d}, tolerance_));
    end_occluder();
}

void SceneMaker::begin_occluder(std::span<const EyePoint> points) {
    occluder_.first_plane = static_cast<int>(scene_.planes.size());
    occluder_.first_line = static_cast<int>(scene_.outlines.size());
    occluder_.nearest =
        std::min_element(points.begin(), points.end(), [](const EyePoint& p, const EyePoint& q) {
            return p.ze < q.ze;
        })->ze;
}

void SceneMaker::add_side(const EyePoint& p, const EyePoint& q, const EyePoint& inside) {
    scene_.outlines.push_back({sight_point(p), sight_point(q)});
    if (const auto plane = sight_plane(p, q, inside)) {
        scene_.planes.push_back(*plane);
    }
}

void SceneMaker::end_occluder() {
    occluder_.n_planes = static_cast<int>(scene_.planes.size()) - occluder_.first_plane;
    occluder_.n_lines = static_cast<int>(scene_.outlines.size()) - occluder_.first_line;
    scene_.occluders.push_back(occluder_);
}

} // namespace

SightPoint sight_point(const EyePoint& p) {
    return {p.xe / p.ze, p.ye / p.ze};
}

Scene make_scene(std::span<const Trio> records, const ViewCoefficients& v, double tolerance,
                 bool joints) {
    return SceneMaker(records, v, tolerance, joints).make();
}

bool hidden_piece(const Scene& scene, const Occluder& body, const SceneEdge& edge, Piece& piece) {
    piece = {0.0, 1.0};
    const Plane* plane = scene.planes.data() + body.first_plane;
    for (const Plane* const end = plane + body.n_planes; plane != end; ++plane) {
        const double a = plane->at(edge.a);
        const double b = plane->at(edge.b);
        if (a <= 0.0 && b <= 0.0) {
            return false;
        }
        if (a < 0.0) {
            piece.from = std::max(piece.from, a / (a - b));
        } else if (b < 0.0) {
            piece.to = std::min(piece.to, a / (a - b));
        }
    }
    return piece.from < piece.to;
}

} // namespace kigumi::hidden_line
