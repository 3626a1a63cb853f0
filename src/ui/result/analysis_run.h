// 構造解析実施 as the windows run it.
#pragma once

class QWidget;

namespace kigumi {

// Analyses the model: tells what is missing, else minimises `main_window`, runs the solver behind a
// small modal window that shows the time and can stop it, as closing either window does, brings the
// main window back as it was and tells how long the solver took. True when results should be looked
// at; false after a message or when the user stopped it.
bool run_analysis(QWidget& main_window);

} // namespace kigumi
