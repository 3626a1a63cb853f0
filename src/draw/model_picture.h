// The picture of the model itself, with labels and marks, as the main window shows it.
#pragma once

#include "draw/canvas.h"
#include "draw/projection.h"
#include "draw/stroke_font.h"

namespace kigumi {

// What is drawn on top of the members.
struct ModelLabels {
    bool node_marks = false;     // a circle at every node
    bool node_names = false;     // 節点名称
    bool member_numbers = false; // 部材番号, at the middle of each member
    bool fixed_nodes = false;    // 固定節点: a blue square at every restrained node
    bool loaded_nodes = false;   // 荷重節点: a red disc at every loaded node
};

// Projects the model with the shared view angles, fits the window (square fit) and draws the
// members with the chosen labels and marks; supports and loads come from the node flags, and nodes
// that the search has found get a blue circle. 0, or -1 after a message when there is no stroke
// font.
int draw_model_picture(Model& model, const View& view, Lettering& lettering, Canvas& canvas,
                       DrawArea& area, const ModelLabels& labels);

} // namespace kigumi
