// A whole run of the solver in a folder.
#pragma once

#include "solver/statics/settings.h"

#include <filesystem>
#include <iosfwd>

namespace frameslv {

// Reads FRAMESLV.IN in `folder`, solves the frame and leaves frameslv.zlv, frameslv.lst and
// frameslv.dsp there, and what there is to say about them in frameslv.not; it goes to `out` too. A
// fault goes as one line to `err` and to frameslv.err and as the last note to frameslv.not, and
// leaves no result file; but results that cannot be written leave those of an earlier run. Returns
// the exit code of the program (Exit). Modes that `settings` asks for go to frameslv.mod and
// frameslv.buc. A mere check touches no file.
int run(const std::filesystem::path& folder, const Settings& settings, std::ostream& out,
        std::ostream& err);

} // namespace frameslv
