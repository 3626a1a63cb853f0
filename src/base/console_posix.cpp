#include "base/console.h"

#include <unistd.h>

namespace kigumi {

char** utf8_arguments(int&, char** argv) {
    return argv;
}

void use_utf8_console() {}

void leave_own_console() {}

bool has_terminal() {
    return isatty(STDIN_FILENO) != 0 || isatty(STDOUT_FILENO) != 0;
}

} // namespace kigumi
