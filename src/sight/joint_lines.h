// The lines along which bars pass into each other (交線).
#pragma once

#include "sight/sight_scene.h"

namespace kigumi::hidden_line {

// A bar that hides as one body.
struct SceneBody {
    BarShape shape;
    int occluder;               // its place in the scene
    bool facing[bar_triangles]; // faces turned to the eye
};

// Appends to the scene's edges the lines in which the faces turned to the eye of two bodies cross,
// each as an edge of the earlier bar's first record that neither of the two hides. Lines that lie
// no more than twice the tolerance below a face that they do not belong to are left out: along a
// flush face they would only repeat an edge.
void append_joint_lines(Scene& scene, std::span<const SceneBody> bodies, double tolerance);

} // namespace kigumi::hidden_line
