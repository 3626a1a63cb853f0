// The bars of a list of triangles, as the hidden-line removal sees them.
#pragma once

#include "draw/eye.h"
#include "solid/solid.h"

namespace kigumi::hidden_line {

// Signed distance from a plane, cm: a·xe + b·ye + c·ze + d with a unit normal (a, b, c), or a
// multiple of it where only the sign and ratios matter.
struct Plane {
    double a, b, c, d;
    double at(const EyePoint& p) const { return a * p.xe + b * p.ye + c * p.ze + d; }
};

// The plane of three points; nothing when they lie within `thinnest` cm of a line.
std::optional<Plane> plane_through(const EyePoint& p, const EyePoint& q, const EyePoint& r,
                                   double thinnest);

// The plane through two points and the eye, its positive side that of `inside`; nothing when both
// points lie on one line of sight.
std::optional<Plane> sight_plane(const EyePoint& p, const EyePoint& q, const EyePoint& inside);

// The triangles of the largest bar, a prism, and what they have in common.
constexpr int bar_triangles = 24;
constexpr int bar_points = 14;
constexpr int bar_edges = 36;

// An edge of a bar: its points, the faces on both sides (the same one twice: the edge runs within
// a flat face and is no outline) and the first record whose flags show it, -1 for none.
struct BarEdge {
    int from, to;
    int face[2];
    int record;
};

// Consecutive triangles that close into a convex body.
struct BarShape {
    int first = 0, count = 0; // records
    int n_points = 0, n_faces = 0, n_edges = 0;
    EyePoint point[bar_points];
    Plane face[bar_triangles]; // triangles of one plane are one face; negative within the body
    BarEdge edge[bar_edges];   // in the order of records and, within a record, of trio_edges
    EyePoint middle{};         // a point within
};

// Reads the bar that begins at record `first`: the shortest run of records in which every edge
// (two points, equal by their exact coordinates) belongs to two triangles. False when there is no
// such run, or what it encloses is not convex, or flat, to within `tolerance` cm; such triangles
// stand for themselves.
bool read_bar(std::span<const Trio> records, std::size_t first, const ViewCoefficients& v,
              double tolerance, BarShape& bar);

} // namespace kigumi::hidden_line
