// The one gate through which commands change a project.
#pragma once

#include "project/history.h"

#include <functional>

namespace kigumi {

// Whether a fault of the tables ends the program: in debug builds, and where the environment holds
// KIGUMI_STRICT, as in the tests.
bool faults_are_fatal();

// A project with its history: the piece of work of one window program or one command.
struct Work {
    Project project;
    History history;
    bool strict = faults_are_fatal();
};

// Runs `edit`, the command of this name ("部材の削除"), on the project. Its status is returned: 0
// or more, or -1 after a message. Afterwards the tables are checked (find_project_fault): a fault
// ends a strict program, else the change is taken back, the fault is told and -1 is returned. A
// change becomes one step of the history. When it changes members, and does not make the solids
// anew by itself, solids, points and perspective are emptied. An edit that fails and is to leave no
// trace restores what it changed by itself, or says so with `take_back`.
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
