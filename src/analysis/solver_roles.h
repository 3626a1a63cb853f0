// A solver input file read back: supports and loads, and the frame itself.
#pragma once

#include "base/files.h"

#include <optional>
#include <vector>

namespace kigumi {

// Replaces the support and load tables by those of FRAMESLV.IN in the working directory, for the
// labels of result pictures when no model is loaded. The file may be in any form that the solver
// takes. 0, or -1 without a message when it is missing or broken; the tables are then empty.
int load_solver_roles();

// What FRAMESLV.IN tells of the frame.
struct SolverFrame {
    struct Member {
        double area;   // cm²
        double length; // cm
    };
    int nodes = 0, sections = 0, materials = 0;
    std::vector<Member> members;
};

// The frame of FRAMESLV.IN in the working directory; nothing when the file is missing or broken, or
// a member names no section or node of it.
std::optional<SolverFrame> read_solver_frame();

} // namespace kigumi
