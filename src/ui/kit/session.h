// What all windows of the running program work on.
#pragma once

#include "project/gate.h"
#include "ui/kit/document.h"
#include "ui/kit/news.h"

#include <array>

namespace kigumi {

// One run of the program. Lives longer than every window.
struct Session {
    Session() { work.history.start(project); }

    Work work;
    Project& project = work.project;
    Document document;
    News news;
    // The person has agreed to leave the work: windows close without a question.
    bool leaving = false;
    std::array<float, 3> last_entered{}; // what the node dialog of a sketch stored last, cm
};

// The parts of a session under the names that the core's functions give them; base of the windows.
// What a person makes is looked at; commands change it by kigumi::change (ui/kit/undo_menu.h), and
// by session_.project what is no step: the hits of a search, what a dialog has not stored yet.
class Desk {
  public:
    explicit Desk(Session& of)
        : session_(of), project(of.project), model(of.project.model), param(of.project.param),
          view(of.project.view), result(of.project.result), solids(of.project.solids),
          perspective(of.project.perspective), sketch_places(of.project.sketch_places),
          lettering(of.project.lettering), solver_seams(of.project.solver_seams),
          work_dir(of.project.work_dir), document(of.document) {}

  protected:
    Session& session_; // for the windows that this one opens
    const Project& project;
    const Model& model;
    const Param& param;
    View& view;
    Result& result;
    Solids& solids;
    PerspectiveLines& perspective;
    const SketchPlaces& sketch_places;
    Lettering& lettering;
    SolverSeams& solver_seams;
    fs::path& work_dir;
    Document& document;
};

} // namespace kigumi
