// All state of one piece of work as one value. Who works on it is given it, or the part that is
// needed; two projects may live beside each other, and on different threads.
#pragma once

#include "analysis/result.h"
#include "analysis/solver_run.h"
#include "base/files.h"
#include "draw/projection.h"
#include "draw/stroke_font.h"
#include "files/jiku.h"
#include "generate/param.h"
#include "model/model.h"
#include "model/sketch.h"
#include "sight/perspective.h"
#include "solid/solid.h"

namespace kigumi {

// How far the work has come; what opens the commands.
enum class Stage : std::int32_t {
    empty,   // start, or nothing was made
    reading, // a model-making command is under way
    made,    // a model was made and passed the model check
    loaded,  // at least one support and one load were entered
};

struct Project {
    // What a person makes: saved in the project file, and put back by undo.
    Model model;
    Param param;
    bool generated = false; // the model is the frame of `param`
    Shift shift;            // 座標移動 of written axis data, cm; a new model starts at 0
    SketchPlaces sketch_places;
    Stage stage = Stage::empty;

    // How it is looked at: saved, but no step of the history.
    View view;

    // What the solver said of it, and of which input.
    Result result;

    // Derived from the model, and made again when they are asked for.
    Solids solids;
    PerspectiveLines perspective;

    // What it works with.
    Lettering lettering;
    SolverSeams solver_seams{run_program, hundredths_of_day};
    fs::path work_dir = current_dir(); // of FRAMESLV.IN, TRIO.DAT and the other fixed names
};

} // namespace kigumi
