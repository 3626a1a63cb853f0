// The builders: local vertices of a box and a prism, turned into the member's direction.
#include "solid/solid.h"

#include "base/float.h"
#include "base/message.h"
#include "solid/solid_store.h"
#include "trace/spy.h"

#include <cmath>

namespace kigumi {

namespace {

// Deliberate: the angles are made with this reciprocal of pi and undone with the truncated pi.
constexpr double one_by_pi = 0.31830988614222805;
constexpr double truncated_pi = 3.14159;
// The pi of the prism's ring and volume.
constexpr double ring_pi = 3.141592654;
constexpr int ring_points = 6;

// Start and end of a member, cm.
struct Axis {
    float xs, ys, zs, xl, yl, zl;
};

// What the builders say about a member parallel to the ground.
constexpr const char* box_level = "kakudoY = 0.0  角材は地面と平行";
constexpr const char* prism_level = "kakudoY = 0.0  ６角形は地面と平行";

// The direction of a member; places local points (x along the member, y across, z up).
class MemberFrame {
  public:
    MemberFrame(const Axis& a, const char* level_trace);

    // Places a local point as vertex number `v`; false when the point table is full.
    template <int count>
    bool place(Solids& solids, double x, double y, double z, float (&vertex)[count][3],
               int (&no)[count], int v) const {
        const double along = x * cos_y_ - z * sin_y_;
        const double up = x * sin_y_ + z * cos_y_;
        vertex[v][0] = round_once(along * cos_z_ - y * sin_z_ + start_[0]);
        vertex[v][1] = round_once(along * sin_z_ + y * cos_z_ + start_[1]);
        vertex[v][2] = round_once(up + start_[2]);
        no[v] = solid_store::find_or_add_point(solids, vertex[v][0], vertex[v][1], vertex[v][2]);
        return no[v] > 0;
    }
    double length() const { return length_; }

  private:
    double length_;
    double cos_y_, sin_y_, cos_z_, sin_z_;
    double start_[3];
};

MemberFrame::MemberFrame(const Axis& a, const char* level_trace) : start_{a.xs, a.ys, a.zs} {
    const double dx = static_cast<double>(a.xl) - a.xs;
    const double dy = static_cast<double>(a.yl) - a.ys;
    const double dz = static_cast<double>(a.zl) - a.zs;
    const double lengthXY = std::sqrt(dx * dx + dy * dy);
    length_ = std::sqrt(dx * dx + dy * dy + dz * dz);
    double kakudoY = 0.0;
    double kakudoZ = 0.0;
    if (same_float(a.xs, a.xl) && same_float(a.ys, a.yl)) {
        kakudoY = dz > 0.0 ? 90.0 : (dz < 0.0 ? -90.0 : 0.0);
    } else {
        kakudoZ = std::atan2(dy, dx) * 180 * one_by_pi;
        if (length_ > lengthXY) {
            kakudoY = std::acos(lengthXY / length_) * 180 * one_by_pi;
            kakudoY = a.zl <= a.zs ? -kakudoY : kakudoY;
        } else {
            spy(level_trace);
        }
    }
    const double turn_y = kakudoY * (1.0 / 180.0) * truncated_pi;
    const double turn_z = kakudoZ * (1.0 / 180.0) * truncated_pi;
    cos_y_ = std::cos(turn_y);
    sin_y_ = std::sin(turn_y);
    cos_z_ = std::cos(turn_z);
    sin_z_ = std::sin(turn_z);
}

// Appends the triangle of three of the placed vertices.
template <int count>
Trio& append_trio(Solids& solids, const float (&vertex)[count][3], const int (&no)[count], int a,
                  int b, int c, int hyoji) {
    Trio& trio = solids.trio.emplace_back();
    trio.no = ++solids.n_trio;
    trio.hyoji = hyoji;
    const int corner[3] = {a, b, c};
    for (int i = 0; i < 3; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            trio.vertex[i][axis] = vertex[corner[i]][axis];
        }
        trio.bangou[i] = no[corner[i]];
    }
    return trio;
}

void add_volume(Solids& solids, double cubic_metres) {
    solids.Volume = round_once(solids.Volume + cubic_metres);
    spy("積算 Volume %8.3f", solids.Volume);
}

int append_box(Solids& solids, const Axis& axis, float width, float depth) {
    constexpr struct {
        int a, b, c, hyoji;
    } faces[12] = {
        {5, 0, 4, 1}, {0, 5, 1, 1}, {6, 1, 5, 2}, {1, 6, 2, 2}, {7, 2, 6, 1}, {2, 7, 3, 1},
        {4, 3, 7, 2}, {3, 4, 0, 2}, {0, 2, 3, 1}, {2, 0, 1, 1}, {7, 5, 4, 1}, {5, 7, 6, 1},
    };
    constexpr int sign_y[4] = {-1, 1, 1, -1};
    constexpr int sign_z[4] = {1, 1, -1, -1};
    spy("Enter make_kakuzai3()");
    const MemberFrame frame(axis, box_level);
    float vertex[8][3];
    int no[8];
    for (int v = 0; v < 8; ++v) {
        const double x = v < 4 ? 0.0 : frame.length();
        const double y = sign_y[v % 4] * 0.5 * width;
        const double z = sign_z[v % 4] * 0.5 * depth;
        if (!frame.place(solids, x, y, z, vertex, no, v)) {
            return -1;
        }
    }
    solids.saved = false;
    for (const auto& face : faces) {
        append_trio(solids, vertex, no, face.a, face.b, face.c, face.hyoji);
    }
    add_volume(solids, (0.01 * frame.length()) * width * 0.01 * depth * 0.01);
    return 0;
}

// Vertices of a prism: ring 0, ring 1, centre of ring 0, centre of ring 1.
constexpr int prism_points = 2 * ring_points + 2;

void append_prism_faces(Solids& solids, const float (&vertex)[prism_points][3],
                        const int (&no)[prism_points]) {
    const auto append = [&](int a, int b, int c) {
        const Trio& trio = append_trio(solids, vertex, no, a, b, c, 7);
        const auto& p = trio.vertex;
        spy("x0 %8.1f y0 %8.1f z0 %8.1f", p[0][0], p[0][1], p[0][2]);
        spy("x1 %8.1f y1 %8.1f z1 %8.1f", p[1][0], p[1][1], p[1][2]);
        spy("x2 %8.1f y2 %8.1f z2 %8.1f", p[2][0], p[2][1], p[2][2]);
    };
    const auto next = [](int k) { return (k + 1) % ring_points; };
    constexpr int other = ring_points;
    spy("入口側円 16個の三角形");
    for (int k = 0; k < ring_points; ++k) {
        append(k, next(k), 2 * ring_points);
    }
    spy("出口側円 16個の三角形");
    for (int k = 0; k < ring_points; ++k) {
        append(other + k, other + next(k), 2 * ring_points + 1);
    }
    spy("側面有線 16個の三角形");
    for (int k = 0; k < ring_points; ++k) {
        append(k, next(k), other + k);
    }
    spy("側面無線 16個の三角形");
    for (int k = 0; k < ring_points; ++k) {
        append(next(k), other + next(k), other + k);
    }
}

int append_prism(Solids& solids, const Axis& axis, float radius) {
    spy("Enter make_enchu2()");
    const MemberFrame frame(axis, prism_level);
    spy("変換前14個の頂点座標");
    float vertex[prism_points][3];
    int no[prism_points];
    for (int v = 0; v < 2 * ring_points; ++v) {
        const double theta = (v % ring_points) * 2 * ring_pi * (1.0 / 6.0);
        const double x = v < ring_points ? 0.0 : frame.length();
        if (!frame.place(solids, x, -radius * std::cos(theta), radius * std::sin(theta), vertex, no,
                         v)) {
            return -1;
        }
    }
    if (!frame.place(solids, 0.0, 0.0, 0.0, vertex, no, 2 * ring_points) ||
        !frame.place(solids, frame.length(), 0.0, 0.0, vertex, no, 2 * ring_points + 1)) {
        return -1;
    }
    spy("変換後32個の頂点座標");
    solids.saved = false;
    append_prism_faces(solids, vertex, no);
    add_volume(solids, 0.01 * frame.length() * radius * ring_pi);
    return 0;
}

void empty_triangles(Solids& solids) {
    solids.trio.clear();
    solids.n_trio = 0;
    solids.Volume = 0.0f;
    solids.saved = false;
}

int report_if_full(int result) {
    if (result < 0) {
        solid_store::report_full();
    }
    return result;
}

} // namespace

int solid_store::append_box(Solids& solids, const Beam& beam) {
    return kigumi::append_box(solids, {beam.xs, beam.ys, beam.zs, beam.xl, beam.yl, beam.zl},
                              beam.haba, beam.atumi);
}

void reset_solids(Solids& solids) {
    spy("Enter reset_solids()");
    empty_triangles(solids);
}

int make_kakuzai3(Solids& solids, float xs, float ys, float zs, float xl, float yl, float zl,
                  float width, float depth) {
    return report_if_full(append_box(solids, {xs, ys, zs, xl, yl, zl}, width, depth));
}

int make_enchu2(Solids& solids, float xs, float ys, float zs, float xl, float yl, float zl,
                float radius, float) {
    return report_if_full(append_prism(solids, {xs, ys, zs, xl, yl, zl}, radius));
}

} // namespace kigumi
