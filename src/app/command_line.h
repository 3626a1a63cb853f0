// The command line.
#pragma once

namespace kigumi {

// Runs the command that the arguments name. 0 when it succeeded, 1 when it failed (one line on
// standard error says why), 2 when the arguments are wrong.
int run_command_line(int argc, char** argv);

} // namespace kigumi
