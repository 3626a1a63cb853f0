// The one gate through which commands change a project.
#pragma once

#include "project/history.h"

#include <functional>

namespace kigumi {

// A project with its history: the piece of work of one window program or one command.
struct Work {
    Project project;
    History history;
};

// Runs `edit`, the command of this name ("部材の削除"), on the project. Its status is returned: 0
// or more, or -1 after a message. Afterwards the tables are checked (find_project_fault): in debug
// builds a fault ends the program, else the change is taken back, the fault is told and -1 is
// returned. A change becomes one step of the history; what was derived from the model before is
// emptied. An edit that fails and is to leave no trace restores what it changed by itself, or says
// so with `take_back_failures`.
enum class OnFailure { keep, take_back };
int change(Work& work, std::string_view name, const std::function<int(Project&)>& edit,
           OnFailure on_failure = OnFailure::keep);

// Runs `edit`, which only completes what the last command made by tables that follow from it: the
// last step takes it in, and what was saved stays saved. Its status is returned; when that is -1,
// the project is as before.
int derive(Work& work, const std::function<int(Project&)>& edit);

// Takes back the last step, or repeats it; false when there is none.
bool undo(Work& work);
bool redo(Work& work);

} // namespace kigumi
