// The windows.
#pragma once

namespace kigumi {

// Opens the main window in the current directory and returns the program's exit status when it is
// closed.
int run_window(int argc, char** argv);

} // namespace kigumi
