// Starting another program and waiting for it; one small source a platform.
#pragma once

#include "base/files.h"

namespace kigumi {

// Starts `program` without arguments in `folder` and waits for it without limit; it inherits the
// standard streams. -1 when it could not be started (missing, not executable, no program at all);
// else its exit status, 128 + the signal's number when a signal ended it.
int run_program(const fs::path& program, const fs::path& folder);

// True when `path` is a file that the system would try to start.
bool is_program(const fs::path& path);

} // namespace kigumi
