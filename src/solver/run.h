// A whole run of the solver in a folder.
#pragma once

#include "solver/settings.h"

#include <filesystem>
#include <iosfwd>

namespace frameslv {

// Removes the results of an earlier run, reads FRAMESLV.IN in `folder`, solves the frame and leaves
// frameslv.zlv, frameslv.lst and frameslv.dsp there. The checks and warnings go to `out`. A fault
// goes as one line to `err` and to frameslv.err, and leaves no result file. Returns the exit code
// of the program (Exit). Modes that `settings` asks for go to frameslv.mod and frameslv.buc. A mere
// check touches no file.
int run(const std::filesystem::path& folder, const Settings& settings, std::ostream& out,
        std::ostream& err);

} // namespace frameslv
