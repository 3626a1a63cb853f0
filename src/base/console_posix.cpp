#include "base/console.h"

namespace kigumi {

char** utf8_arguments(int&, char** argv) {
    return argv;
}

void use_utf8_console() {}

void leave_own_console() {}

} // namespace kigumi
