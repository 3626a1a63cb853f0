// Runs the built program and collects what it says.
#pragma once

#include "base/files.h"

#include <string>
#include <vector>

namespace kigumi::test {

struct Outcome {
    int status = -1; // exit status; -1 when it was ended by a signal
    std::string out, err;
};

// Runs kigumi with these arguments in `folder` and waits for it.
Outcome run_kigumi(const fs::path& folder, const std::vector<std::string>& arguments);

} // namespace kigumi::test
