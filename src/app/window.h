// The windows.
#pragma once

#include "base/files.h"

namespace kigumi {

// Opens the main window, on this file where one is given, and returns the program's exit status
// when it is closed. It works in the current directory; with a file whose name nobody typed (a
// double click: `typed` false) in the file's folder, or, where that takes no file or is the user's
// home, in a folder of the user's own.
int run_window(int argc, char** argv, const fs::path& file, bool typed = true);

} // namespace kigumi
