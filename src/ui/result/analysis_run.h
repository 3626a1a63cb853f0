// 構造解析実施 as the windows run it.
#pragma once

#include "analysis/solver_run.h"
#include "base/files.h"
#include "model/model.h"

class QWidget;

namespace kigumi {

// Analyses the model: tells what is missing, else minimises `main_window`, runs the solver behind a
// small modal window that shows the time and can stop it, as closing either window does, brings the
// main window back as it was and tells how long the solver took. True when results should be looked
// at; false after a message or when the user stopped it.
bool run_analysis(const Model& model, const SolverSeams& solver_seams, const fs::path& work_dir,
                  QWidget& main_window);

} // namespace kigumi
