// What follows every command that makes a model.
#pragma once

#include "project/project.h"

namespace kigumi {

// Takes the nodes and members as the model of the work: sections, materials, names, no roles, and
// the stage made; empty without nodes. An unfinished sketch is left as it is. 0, or -1 after a
// message when the sections or levels have no room; the tables are then half made.
int accept_model(Project& project);

// Supports and loads were entered by hand: with at least one of each they are no longer made from
// the node flags, and the stage is loaded.
void note_roles_entered(Project& project);

} // namespace kigumi
