// Starting another program and waiting for it; one small source a platform.
#pragma once

#include "base/files.h"

#include <functional>

namespace kigumi {

// Asked again and again while a program runs; it returns after some milliseconds. False ends the
// program, and what it started, at once.
using KeepWaiting = std::function<bool()>;

// Starts `program` without arguments in `folder` and waits for it, without limit or as long as
// `keep_waiting` says; it inherits the standard streams. -1 when it could not be started (missing,
// not executable, no program at all); else its exit status, 128 + the signal's number when a signal
// ended it.
int run_program(const fs::path& program, const fs::path& folder,
                const KeepWaiting& keep_waiting = {});

// True when `path` is a file that the system would try to start.
bool is_program(const fs::path& path);

} // namespace kigumi
