// A solver input file read back: supports and loads, and the frame itself.
#pragma once

#include "analysis/fingerprint.h"
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

// What FRAMESLV.IN tells of the frame.
struct SolverFrame {
    struct Member {
        double area;   // cm²
        double length; // cm
    };
    std::vector<Member> members;
    FrameShape shape;
    Fingerprint print;
    std::vector<ResultFix> fix;
    std::vector<ResultLoad> load;
};

// The frame of FRAMESLV.IN in the working directory; nothing when the file is missing or broken, or
// a member names no section or node of it.
std::optional<SolverFrame> read_solver_frame(const fs::path& work_dir);

// What a person is told of ResultRoles::State::of_other_frame.
constexpr const char* roles_of_other_frame =
    "FRAMESLV.IN がこの計算結果の入力ではないので、固定節点と荷重節点は表示できません";

} // namespace kigumi
