// The pictures of the results window: wires, axial forces, and the labels on top of them.
#pragma once

#include "analysis/result.h"
#include "draw/canvas.h"
#include "draw/projection.h"
#include "draw/stroke_font.h"

namespace kigumi {

// What a repaint of the results window draws.
enum ResultMode {
    mode_wire = 2,   // members in black, and the axes
    mode_sign = 3,   // red or blue by the sign of the axial force
    mode_band = 4,   // as mode_sign within the bounds, else black
    mode_width = 5,  // 太さ色分: as mode_sign, width by percent
    mode_solids = 6, // hidden-line picture, drawn elsewhere
    mode_displaced = 9,
};

enum ResultLabel {
    label_node_names = 0,
    label_member_numbers = 1,
    label_fixed_nodes = 2,
    label_loaded_nodes = 3,
    result_label_count = 4,
};

// The state of one results window.
struct ResultView {
    int mode = mode_sign; // ResultMode
    float upper = 100.0f; // bounds of mode_band, percent, inclusive
    float lower = 0.0f;
    bool all_bars = true; // mode_solids: bars of all members, not of the selection alone
    int label[result_label_count] = {}; // 1 shows the labels of a ResultLabel
    float TAU = 30.0f;                  // azimuth, degrees
    float FAI = 30.0f;                  // elevation, degrees
    DrawArea area; // xScreen and yScreen, pixels, are set by the window, the rest by each fit
};

// Pen colour of a force: red for tension, blue for compression; a zero force counts as compression.
int sign_colour(float force);

// Fits the window around all result members (aspect fit). False when there are none or when they or
// the client size cannot be mapped; the pictures below then draw nothing.
bool fit_result(const Result& result, ResultView& shown);

// With a selection (results/selection.h) modes 2 to 5 and 9 draw the members outside it first and
// in silver, the selected ones as they would else be drawn.

// Fits, tells the canvas and draws mode 2: every result member in black and the axes, 100 cm each,
// from the origin.
void make_wire(const Result& result, Canvas& canvas, ResultView& shown);

// Fits, tells the canvas and draws mode 3, 4 or 5: every result member with a pen by its force and
// percent.
void make_force_wire(const Result& result, Canvas& canvas, ResultView& shown);

// Fits, tells the canvas and draws mode 9: the members in black and, over them, the displaced
// members of get_new_beam in red.
void make_heni(const Result& result, Canvas& canvas, ResultView& shown);

// Draws, with the pen as it stands, the labels whose flags are set into the window fitted before:
// node names, member numbers, supports and loads (`roles` of the result). In mode_solids they stand
// where the shared eye (`view`) sees their points, and those before its near plane are left out. 0,
// or -1 after a message when there is no stroke font.
int draw_result_labels(const View& view, const Result& result, Lettering& lettering, Canvas& canvas,
                       const ResultView& shown);

// One repaint: the picture of the mode and its labels. Nothing for mode_solids and unknown modes.
// 0, or -1 as draw_result_labels.
int draw_result_picture(const View& view, const Result& result, Lettering& lettering,
                        Canvas& canvas, ResultView& shown);

} // namespace kigumi
