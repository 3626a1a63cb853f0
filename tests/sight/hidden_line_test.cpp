#include "sight/hidden_line.h"

#include "generate/generate.h"
#include "model/sections.h"
#include "sight/edge_cutter.h"
#include "solid/solid_support.h"
#include "support.h"

#include <cmath>
#include <cstring>
#include <map>
#include <random>

namespace kigumi::test {

namespace {

using namespace hidden_line;

using HiddenLineTest = CoreTest;

struct Space {
    int x, y, z;
};

// Makes records of solids whose corners are whole numbers, so that their faces are exactly flat.
void append_triangle(std::vector<Trio>& records, const std::vector<Space>& corner, int a, int b,
                     int c, int hyoji) {
    Trio& trio = records.emplace_back();
    trio.hyoji = hyoji;
    const int at[3] = {a, b, c};
    for (int i = 0; i < 3; ++i) {
        trio.vertex[i][0] = static_cast<float>(corner[at[i]].x);
        trio.vertex[i][1] = static_cast<float>(corner[at[i]].y);
        trio.vertex[i][2] = static_cast<float>(corner[at[i]].z);
    }
}

// The box from `at` along three edges, its faces and flags as the builder makes them.
void append_box(std::vector<Trio>& records, Space at, Space along, Space across, Space up) {
    constexpr int faces[12][4] = {{5, 0, 4, 1}, {0, 5, 1, 1}, {6, 1, 5, 2}, {1, 6, 2, 2},
                                  {7, 2, 6, 1}, {2, 7, 3, 1}, {4, 3, 7, 2}, {3, 4, 0, 2},
                                  {0, 2, 3, 1}, {2, 0, 1, 1}, {7, 5, 4, 1}, {5, 7, 6, 1}};
    std::vector<Space> corner;
    for (int v = 0; v < 8; ++v) {
        const int l = v / 4;
        const int w = v % 4 == 1 || v % 4 == 2 ? 1 : 0;
        const int h = v % 4 < 2 ? 1 : 0;
        corner.push_back({at.x + l * along.x + w * across.x + h * up.x,
                          at.y + l * along.y + w * across.y + h * up.y,
                          at.z + l * along.z + w * across.z + h * up.z});
    }
    for (const auto& f : faces) {
        append_triangle(records, corner, f[0], f[1], f[2], f[3]);
    }
}

void append_level_box(std::vector<Trio>& records, Space low, Space size) {
    append_box(records, low, {size.x, 0, 0}, {0, size.y, 0}, {0, 0, size.z});
}

double length_of(const VisibleSegment& s) {
    return std::hypot(s.line.X2 - s.line.X1, s.line.Y2 - s.line.Y1);
}

double seen_length(const std::vector<VisibleSegment>& segments) {
    double sum = 0.0;
    for (const VisibleSegment& s : segments) {
        sum += length_of(s);
    }
    return sum;
}

std::vector<VisibleSegment> seen(const std::vector<Trio>& records, double Rho, double Theta,
                                 double Phi, bool joints = false) {
    HiddenLineOptions options;
    options.joints = joints;
    return *remove_hidden_lines(records, view_coefficients(Rho, Theta, Phi), options);
}

// --- Every edge against every triangle, on paper: cut by the sides of the projected triangle, and
// where it lies deeper than the triangle's plane by 1/z, which is linear along a projected line.

constexpr double fine = 1.0e-9; // tolerance where all is exact, cm

struct Paper {
    double x, y, w; // projected point and 1/z
};

Paper paper(const EyePoint& p) {
    return {p.xe / p.ze, p.ye / p.ze, 1.0 / p.ze};
}

double turn(const Paper& p, const Paper& q, const Paper& r) {
    return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
}

// Keeps the part of `piece` where the linear function with values a and b at the ends is positive.
void keep_positive(Piece& piece, double a, double b) {
    if (a <= 0.0 && b <= 0.0) {
        piece.to = piece.from;
    } else if (a < 0.0) {
        piece.from = std::max(piece.from, a / (a - b));
    } else if (b < 0.0) {
        piece.to = std::min(piece.to, a / (a - b));
    }
}

// The part of the projected edge that the polygon's triangle hides, as parts of it on paper.
Piece hidden_on_paper(const EyePoint& a, const EyePoint& b, const std::vector<EyePoint>& polygon,
                      const Plane& plane) {
    const Paper from = paper(a);
    const Paper to = paper(b);
    const size_t count = polygon.size();
    const double sense = turn(paper(polygon[0]), paper(polygon[1]), paper(polygon[2])) > 0 ? 1 : -1;
    Piece piece{0.0, 1.0};
    for (size_t i = 0; i < count; ++i) {
        const Paper p = paper(polygon[i]);
        const Paper q = paper(polygon[(i + 1) % count]);
        keep_positive(piece, sense * turn(p, q, from), sense * turn(p, q, to));
    }
    const double side = plane.d > 0 ? -1.0 : 1.0; // of the eye
    const auto depth = [&](const Paper& p) {
        return side * (plane.a * p.x + plane.b * p.y + plane.c + plane.d * p.w) - fine * p.w;
    };
    keep_positive(piece, depth(from), depth(to));
    return piece;
}

std::vector<EyePoint> cut_polygon(const std::vector<EyePoint>& corner, double near) {
    std::vector<EyePoint> polygon;
    for (size_t i = 0; i < corner.size(); ++i) {
        const EyePoint& p = corner[i];
        const EyePoint& q = corner[(i + 1) % corner.size()];
        if (p.ze >= near) {
            polygon.push_back(p);
        }
        if ((p.ze >= near) != (q.ze >= near)) {
            polygon.push_back(point_between(p, q, (near - p.ze) / (q.ze - p.ze)));
        }
    }
    return polygon;
}

// Length in space of what is left of the edge, given the hidden parts on paper.
double left_of(const EyePoint& a, const EyePoint& b, std::vector<Piece> hidden) {
    const auto in_space = [&](double s) { return s * a.ze / (b.ze + s * (a.ze - b.ze)); };
    std::sort(hidden.begin(), hidden.end(),
              [](const Piece& p, const Piece& q) { return p.from < q.from; });
    double part = 0.0;
    double at = 0.0;
    for (const Piece& h : hidden) {
        part += std::max(0.0, in_space(h.from) - in_space(at));
        at = std::max(at, h.to);
    }
    part += in_space(1.0) - in_space(at);
    return part * std::hypot(b.xe - a.xe, b.ye - a.ye, b.ze - a.ze);
}

double brute_force_length(const std::vector<Trio>& records, const ViewCoefficients& v) {
    const auto eye = [&v](const float(&p)[3]) { return to_eye(v, p[0], p[1], p[2]); };
    double sum = 0.0;
    for (const Trio& drawn : records) {
        for (const TrioEdge& edge : trio_edges) {
            EyePoint a = eye(drawn.vertex[edge.from]);
            EyePoint b = eye(drawn.vertex[edge.to]);
            if ((drawn.hyoji & edge.bit) == 0 || !cut_at_near_plane(v, a, b)) {
                continue;
            }
            std::vector<Piece> hidden;
            for (const Trio& t : records) {
                const std::vector<EyePoint> corner{eye(t.vertex[0]), eye(t.vertex[1]),
                                                   eye(t.vertex[2])};
                const auto polygon = cut_polygon(corner, near_plane(v));
                const auto plane = plane_through(corner[0], corner[1], corner[2], fine);
                if (polygon.size() >= 3 && plane) {
                    const Piece piece = hidden_on_paper(a, b, polygon, *plane);
                    if (piece.from < piece.to) {
                        hidden.push_back(piece);
                    }
                }
            }
            sum += left_of(a, b, hidden);
        }
    }
    return sum;
}

double length_in_space(const std::vector<Trio>& records, const ViewCoefficients& v) {
    const Scene scene = make_scene(records, v, fine);
    double sum = 0.0;
    const auto pieces = seen_pieces(scene, fine, 1, {});
    for (const SeenPiece& s : *pieces) {
        const SceneEdge& e = scene.edges[static_cast<size_t>(s.edge)];
        sum += (s.piece.to - s.piece.from) *
               std::hypot(e.b.xe - e.a.xe, e.b.ye - e.a.ye, e.b.ze - e.a.ze);
    }
    return sum;
}

// Bars of all directions through each other within 400 cm of the origin.
std::vector<Trio> random_frame(std::mt19937& random, int bars) {
    const auto within = [&random](int limit) {
        return std::uniform_int_distribution<int>(-limit, limit)(random);
    };
    std::vector<Trio> records;
    for (int i = 0; i < bars; ++i) {
        const Space along{within(300), within(300), within(300)};
        const Space across{7 + within(3), within(3), within(3)};
        const Space up{within(3), within(3), 9 + within(3)};
        append_box(records, {within(200), within(200), within(200)}, along, across, up);
    }
    return records;
}

TEST_F(HiddenLineTest, SeesAsMuchAsEveryEdgeAgainstEveryTriangle) {
    std::mt19937 random(20261121);
    struct Eye {
        double Rho, Theta, Phi;
    };
    // From outside, from straight above and below, and from among the bars.
    for (const Eye& eye : {Eye{1500, 20, 70}, Eye{900, -131, 101}, Eye{1200, 33, 0},
                           Eye{1200, 0, 180}, Eye{150, 75, 62}, Eye{40, 10, 95}}) {
        const std::vector<Trio> records = random_frame(random, 40);
        const ViewCoefficients v = view_coefficients(eye.Rho, eye.Theta, eye.Phi);
        const double expected = brute_force_length(records, v);
        ASSERT_GT(expected, 1000);
        EXPECT_NEAR(length_in_space(records, v) / expected, 1.0, 1.0e-9) << eye.Rho;
    }
}

// --- Against a depth buffer.

constexpr int buffer_size = 2000; // pixels across the picture

class DepthBuffer {
  public:
    DepthBuffer(const PlaneBounds& b, double v43)
        : b_(b), v43_(v43), scale_((buffer_size - 3) / static_cast<double>(b.xmax - b.xmin)),
          rows_(static_cast<int>((b.ymax - b.ymin) * scale_) + 3),
          w_(static_cast<size_t>(buffer_size * rows_), 0.0) {}

    Paper pixel(const EyePoint& p) const {
        return {(p.xe / p.ze * v43_ - b_.xmin) * scale_ + 1,
                (p.ye / p.ze * v43_ - b_.ymin) * scale_ + 1, 1.0 / p.ze};
    }
    void fill(const Paper& p, const Paper& q, const Paper& r) {
        const double area = turn(p, q, r);
        const auto [x1, x2] = std::minmax({p.x, q.x, r.x});
        const auto [y1, y2] = std::minmax({p.y, q.y, r.y});
        for (int y = static_cast<int>(y1); y <= static_cast<int>(y2) + 1 && y < rows_; ++y) {
            for (int x = static_cast<int>(x1); x <= static_cast<int>(x2) + 1; ++x) {
                const Paper at{static_cast<double>(x), static_cast<double>(y), 0};
                const double a = turn(q, r, at) / area;
                const double b = turn(r, p, at) / area;
                if (a >= 0 && b >= 0 && a + b <= 1) {
                    double& w = w_[static_cast<size_t>(y * buffer_size + x)];
                    w = std::max(w, a * p.w + b * q.w + (1 - a - b) * r.w);
                }
            }
        }
    }
    // How many of the nine pixels around the point show something nearer than it.
    int nearer_around(const Paper& p) const {
        constexpr double clear = 1.0e-4; // of 1/z: 2 mm at 20 m
        int count = 0;
        for (int i = 0; i < 9; ++i) {
            const int x = static_cast<int>(p.x + 0.5) + i % 3 - 1;
            const int y = static_cast<int>(p.y + 0.5) + i / 3 - 1;
            count += w_[static_cast<size_t>(y * buffer_size + x)] > p.w * (1 + clear) ? 1 : 0;
        }
        return count;
    }

  private:
    PlaneBounds b_;
    double v43_, scale_;
    int rows_;
    std::vector<double> w_;
};

bool on_segment(const Segment& s, PlanePoint p) {
    constexpr double plane_cm = 0.01;
    return std::hypot(p.X - s.X1, p.Y - s.Y1) + std::hypot(p.X - s.X2, p.Y - s.Y2) <=
           std::hypot(s.X2 - s.X1, s.Y2 - s.Y1) + plane_cm;
}

void make_floor_solids(Model& model, Param& param, Solids& solids, int NX, int NY) {
    reset_model(model);
    reset_solids(solids);
    clear_points(solids);
    set_default_param(param);
    param.NX = NX;
    param.NY = NY;
    ASSERT_EQ(check_param(param, {0, 0, 0}), 0);
    ASSERT_EQ(make_unit(model, param, solids), 0);
    rebuild_tables(model);
    make_men(model, solids);
}

TEST_F(HiddenLineTest, AgreesWithADepthBuffer) {
    make_floor_solids(model, param, solids, 3, 3);
    const ViewCoefficients v = view_coefficients(2000, 20, 70);
    const auto eye = [&v](const float(&p)[3]) { return to_eye(v, p[0], p[1], p[2]); };
    std::multimap<int, Segment> seen_of;
    std::vector<Segment> all;
    const auto lines = remove_hidden_lines(solids.trio, v);
    for (const VisibleSegment& s : *lines) {
        seen_of.emplace(s.record, s.line);
        all.push_back(s.line);
    }
    DepthBuffer buffer(segment_bounds(all), v.v43);
    for (const Trio& t : solids.trio) {
        buffer.fill(buffer.pixel(eye(t.vertex[0])), buffer.pixel(eye(t.vertex[1])),
                    buffer.pixel(eye(t.vertex[2])));
    }
    int samples = 0;
    int differ = 0;
    for (size_t i = 0; i < solids.trio.size(); ++i) {
        const Trio& t = solids.trio[i];
        const int side = t.hyoji == 2 ? 1 : 2; // boxes flag one edge a triangle
        const EyePoint a = eye(t.vertex[trio_edges[side].from]);
        const EyePoint b = eye(t.vertex[trio_edges[side].to]);
        for (double part = 0.005; part < 1.0; part += 0.01) {
            const EyePoint p = point_between(a, b, part);
            const auto [first, last] = seen_of.equal_range(static_cast<int>(i));
            const bool is_seen = std::any_of(first, last, [&](const auto& of) {
                return on_segment(of.second, to_perspective(v, p));
            });
            const int nearer = buffer.nearer_around(buffer.pixel(p));
            differ += (is_seen && nearer == 9) || (!is_seen && nearer == 0) ? 1 : 0;
            ++samples;
        }
    }
    EXPECT_GT(samples, 100000);
    EXPECT_LT(differ, samples / 1000) << samples;
}

// --- Small scenes.

TEST_F(HiddenLineTest, LinesOfOneBody) {
    std::vector<Trio> box;
    append_level_box(box, {-30, -20, -10}, {60, 40, 20});
    EXPECT_EQ(seen(box, 1000, 20, 70).size(), 9u) << "three faces";
    EXPECT_EQ(seen(box, 1000, 20, 90).size(), 7u) << "two faces";
    EXPECT_EQ(seen(box, 1000, 0, 90).size(), 4u) << "face on";
    EXPECT_EQ(seen(box, 1000, 20, 0).size(), 4u) << "from straight above";
    EXPECT_EQ(seen(box, 1000, 20, 180).size(), 4u) << "from straight below";
    // The eye in the plane of the upper face, which then is a line.
    std::vector<Trio> edge_on;
    append_level_box(edge_on, {-30, -20, -20}, {60, 40, 20});
    EXPECT_EQ(seen(edge_on, 1000, 20, 90).size(), 7u);
    EXPECT_TRUE(seen(box, 1000, 20, 70).front().whole);

    ASSERT_EQ(make_enchu2(solids, -100, 0, 0, 100, 0, 0, 15, 0), 0);
    const auto prism = seen(solids.trio, 2000, 80, 90);
    EXPECT_EQ(prism.size(), 11u) << "an end and two sides; no spokes and no diagonals";
}

TEST_F(HiddenLineTest, OneBodyBehindAnother) {
    std::vector<Trio> records;
    append_level_box(records, {100, -20, -20}, {10, 40, 40});
    const double alone = seen_length(seen(records, 1000, 0, 90));
    append_level_box(records, {-100, -5, -5}, {10, 10, 10});
    EXPECT_DOUBLE_EQ(seen_length(seen(records, 1000, 0, 90)), alone) << "a small one behind";
    EXPECT_EQ(seen(records, 1000, 180, 90).size(), 8u) << "the small one before";

    // A rod through the board: cut where it enters, whole in front.
    std::vector<Trio> through;
    append_level_box(through, {0, -20, -20}, {10, 40, 40});
    append_level_box(through, {-100, -5, -5}, {200, 10, 10});
    const auto lines = seen(through, 1000, 30, 70);
    int pieces = 0;
    for (const VisibleSegment& s : lines) {
        pieces += s.whole ? 0 : 1;
        EXPECT_TRUE(s.record < 24);
    }
    EXPECT_GE(pieces, 3) << "the rod's long edges end in the board";
    const auto with_joints = seen(through, 1000, 30, 70, true);
    ASSERT_EQ(with_joints.size(), lines.size() + 2) << "two sides of the rod enter the board";
    EXPECT_FALSE(with_joints.back().whole);
    EXPECT_EQ(with_joints.back().record, 0);
    // Behind the eye there is nothing; around it something.
    EXPECT_TRUE(seen(through, 1000, 0, 90).size() > 0);
    std::vector<Trio> behind;
    append_level_box(behind, {5000, 0, 0}, {10, 10, 10});
    EXPECT_TRUE(seen(behind, 1000, 0, 90).empty());
}

TEST_F(HiddenLineTest, EdgesInAFaceAreSeenWhole) {
    // Bars side by side, end to end and flush across each other, turned by the builders and so not
    // exactly where they should be.
    for (const double turn : {0.0, 90.0, 137.0, -60.0}) {
        const auto at = [turn](double x, double y) {
            const double t = turn * 3.14159265358979 / 180;
            return std::pair{static_cast<float>(x * std::cos(t) - y * std::sin(t)),
                             static_cast<float>(x * std::sin(t) + y * std::cos(t))};
        };
        reset_solids(solids);
        const double lines[][4] = {
            {-200, 0, 0, 0}, {0, 0, 200, 0}, {-200, 12, 200, 12}, {50, -150, 50, 150}};
        for (const auto& l : lines) {
            const auto [x1, y1] = at(l[0], l[1]);
            const auto [x2, y2] = at(l[2], l[3]);
            ASSERT_EQ(make_kakuzai3(solids, x1, y1, 0, x2, y2, 0, 12, 12), 0);
        }
        int upper = 0;
        for (const VisibleSegment& s : seen(solids.trio, 3000, 25, 40)) {
            const Trio& t = solids.trio[static_cast<size_t>(s.record)];
            const TrioEdge& edge = trio_edges[t.hyoji == 2 ? 1 : 2];
            if (t.vertex[edge.from][2] > 5.9f && t.vertex[edge.to][2] > 5.9f) {
                EXPECT_TRUE(s.whole) << turn;
                ++upper;
            }
        }
        EXPECT_EQ(upper, 16) << turn;
        EXPECT_EQ(seen(solids.trio, 3000, 25, 40, true).size(),
                  seen(solids.trio, 3000, 25, 40).size() + 1)
            << "the corner between crossing bars; nothing in flush faces";
    }
}

TEST_F(HiddenLineTest, SameBytesWithAnyNumberOfThreads) {
    make_floor_solids(model, param, solids, 6, 5);
    const ViewCoefficients v = view_coefficients(4000, 20, 70);
    HiddenLineOptions options;
    options.threads = 1;
    const auto one = *remove_hidden_lines(solids.trio, v, options);
    for (const int threads : {2, 5}) {
        options.threads = threads;
        const auto many = *remove_hidden_lines(solids.trio, v, options);
        ASSERT_EQ(one.size(), many.size());
        for (size_t i = 0; i < one.size(); ++i) {
            ASSERT_EQ(std::memcmp(&one[i].line, &many[i].line, sizeof(Segment)), 0) << i;
            ASSERT_EQ(one[i].record, many[i].record) << i;
        }
    }
    int told = 0;
    options.threads = 1;
    options.progress = [&told](double) { return ++told < 3; };
    EXPECT_FALSE(remove_hidden_lines(solids.trio, v, options));
    EXPECT_EQ(told, 3) << "stopped at once";
}

} // namespace

} // namespace kigumi::test
