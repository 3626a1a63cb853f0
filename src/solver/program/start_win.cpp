#include "solver/program/start.h"

#include <windows.h>

#include <cstdlib>

namespace frameslv {

// The messages are UTF-8; the console is as it was before once the program ends.
void prepare_process() {
    static const UINT before = GetConsoleOutputCP();
    if (before != 0) {
        SetConsoleOutputCP(CP_UTF8);
        std::atexit([] { SetConsoleOutputCP(before); });
    }
}

} // namespace frameslv
