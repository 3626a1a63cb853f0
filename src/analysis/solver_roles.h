// A solver input file read back: supports and loads, and the frame itself.
#pragma once

#include "analysis/result.h"
#include "analysis/result_fit.h"
#include "base/files.h"
#include "model/model.h"

#include <optional>
#include <vector>

namespace kigumi {

// Replaces the support and load tables by those of FRAMESLV.IN in the working directory. The file
// may be in any form that the solver takes. 0, or -1 without a message when it is missing or
// broken; the tables are then empty.
int load_solver_roles(Model& model, const fs::path& work_dir);

// The same for the labels of result pictures when no model is loaded: only where the frame of
// FRAMESLV.IN can be that of the result tables. The tables are empty but for `read`; `missing` is
// said of a broken file, too.
enum class ResultRoles { read, missing, of_other_frame };
ResultRoles load_result_roles(Model& model, const Result& result, const fs::path& work_dir);

// What a person is told of ResultRoles::of_other_frame.
constexpr const char* roles_of_other_frame =
    "FRAMESLV.IN がこの計算結果の骨組のものではないので、固定節点と荷重節点は表示できません";

// What FRAMESLV.IN tells of the frame.
struct SolverFrame {
    struct Member {
        double area;   // cm²
        double length; // cm
    };
    std::vector<Member> members;
    NumberedFrame numbered;
};

// The frame of FRAMESLV.IN in the working directory; nothing when the file is missing or broken, or
// a member names no section or node of it.
std::optional<SolverFrame> read_solver_frame(const fs::path& work_dir);

} // namespace kigumi
