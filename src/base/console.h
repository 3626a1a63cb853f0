// The console and the arguments of the program; one small source a platform.
#pragma once

namespace kigumi {

// The arguments of main in UTF-8 and as they were typed; they live as long as the program. `argc`
// is told anew.
char** utf8_arguments(int& argc, char** argv);

// What is printed is UTF-8 from now on; the console is as it was before once the program ends.
void use_utf8_console();

// Takes leave of a console that the system opened for this program alone, for a program of windows.
void leave_own_console();

// True when input or output of the program is a terminal: somebody has typed its name there.
bool has_terminal();

} // namespace kigumi
