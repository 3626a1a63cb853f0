// The wires of a model (ワイヤモデル), and the picture of it with labels and marks that the main
// window shows.
#pragma once

#include "draw/canvas.h"
#include "draw/projection.h"
#include "draw/stroke_font.h"

namespace kigumi {

// Radius of a node mark, pixels.
constexpr int node_mark_radius = 5;

// Fits the window around the projected nodes (square fit) and draws a line for every member; with
// `node_marks` a circle at every node after them.
void draw_wire(const PlanarModel& plane, Canvas& canvas, DrawArea& area, bool node_marks);

// What is drawn on top of the members.
struct ModelLabels {
    bool node_marks = false;     // a circle at every node
    bool node_names = false;     // 節点名称
    bool member_numbers = false; // 部材番号, at the middle of each member
    bool fixed_nodes = false;    // 固定節点: a blue square at every restrained node
    bool loaded_nodes = false;   // 荷重節点: a red disc at every loaded node
};

// Fits the window around the projected model (project_model; square fit) and draws the members with
// the chosen labels and marks; supports and loads come from the node flags, and nodes
// that the search has found get a blue circle. 0, or -1 after a message when there is no stroke
// font.
int draw_model_picture(const Model& model, const PlanarModel& plane, Lettering& lettering,
                       Canvas& canvas, DrawArea& area, const ModelLabels& labels);

} // namespace kigumi
