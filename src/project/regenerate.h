// A generated frame made again of other parameters (基本データ変更).
#pragma once

#include "project/project.h"

namespace kigumi {

// Generates the frame of these parameters, which check_param has passed, in place of the model, and
// keeps supports, loads and roles, and what was changed of members. A node of before is the one of
// the same levels where the numbers of levels in x, y and z have stayed, else the one at the same
// place; a member the one of the same category between the same nodes. What was changed alike of
// all members of a category holds for all of it. What could not be kept is told in one sentence. 0,
// or -1 after a message; the project is then as before.
int regenerate(Project& project, const Param& param);

} // namespace kigumi
