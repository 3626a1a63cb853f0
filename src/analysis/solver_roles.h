// Supports and loads read back from a solver input file.
#pragma once

#include "base/files.h"

namespace kigumi {

// Replaces the support and load tables by those of FRAMESLV.IN in the working directory, for the
// labels of result pictures when no model is loaded. The file may be in any form that the solver
// takes. 0, or -1 without a message when it is missing or broken; the tables are then empty.
int load_solver_roles();

} // namespace kigumi
