// The perspective picture made ready, with its progress shown.
#pragma once

#include "base/files.h"
#include "draw/projection.h"
#include "sight/perspective.h"
#include "solid/solid.h"

class QWidget;

namespace kigumi {

// What a window says of a picture whose hidden lines are drawn because the work was stopped.
constexpr const char* hidden_lines_stopped = "隠れ線の処理を中止したので、隠れた線も描いています";

// Makes the picture of TRIO.DAT from the eye of `view` ready for draw_perspective, which a paint
// must not do; a window calls it when it turns to the perspective picture and whenever solids or
// viewpoint have changed. Work that goes on after `patience` ms shows a box with its progress over
// `parent`, and Esc or 中止 stops it. As prepare_perspective: perspective_ready,
// perspective_stopped (the picture then shows the hidden lines too), or -1 after its message.
int prepare_perspective_shown(const View& view, Solids& solids, PerspectiveLines& perspective,
                              const fs::path& work_dir, QWidget* parent, int patience = 300);

} // namespace kigumi
