// What the eye has before it: the edges to be drawn and the bodies that can hide them.
//
// What a convex body hides from the eye (its shadow, if the eye were a lamp) is convex itself: the
// points behind the planes of all faces turned to the eye and on the inner side of the planes
// through the eye and the body's outline. So a body hides at most one piece of an edge, found by
// cutting the edge with these planes in space, where no depth has to be divided.
#pragma once

#include "sight/bar_shape.h"

namespace kigumi::hidden_line {

// A point as projected onto the plane at distance 1 from the eye.
struct SightPoint {
    double x, y;
};

struct SightLine {
    SightPoint from, to;
};

SightPoint sight_point(const EyePoint& p);

// A body that hides: ranges of the scene's planes and outlines, and its distance from the eye.
struct Occluder {
    int first_plane, n_planes;
    int first_line, n_lines;
    double nearest; // least ze, cm
};

// An edge to be drawn, cut off at the near plane.
struct SceneEdge {
    EyePoint a, b;
    int record;
    int own[2]; // bodies on whose surface it lies and that do not hide it; -1: none
};

// A piece of an edge: 0 at its start, 1 at its end.
struct Piece {
    double from, to;
};

struct Scene {
    std::vector<Plane> planes; // positive where a body hides
    std::vector<SightLine> outlines;
    std::vector<Occluder> occluders;
    std::vector<SceneEdge> edges;
};

// The scene of these triangles. A bar (see read_bar) beyond the near plane is one body without its
// edges between two averted faces, which it hides itself, and without edges inside a flat face.
// Other triangles, and those of a bar that the near plane cuts open, each hide for themselves, from
// both sides. A point is hidden when it lies more than `tolerance` cm below each face plane. With
// `joints` the lines where bars pass into each other follow the edges.
Scene make_scene(std::span<const Trio> records, const ViewCoefficients& v, double tolerance,
                 bool joints = false);

// The piece of the edge that the body hides; false when there is none.
bool hidden_piece(const Scene& scene, const Occluder& body, const SceneEdge& edge, Piece& piece);

} // namespace kigumi::hidden_line
