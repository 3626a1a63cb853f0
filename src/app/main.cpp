// The program: without arguments the main window, with a file alone the main window on it, else one
// command.
#include "app/command_line.h"
#include "app/window.h"
#include "base/console.h"
#include "base/files.h"
#include "ui/kit/drops.h"

int main(int argc, char** argv) {
    if (argc <= 1) {
        kigumi::leave_own_console();
        return kigumi::run_window(argc, argv, {});
    }
    int count = argc;
    char** const arguments = kigumi::utf8_arguments(count, argv);
    if (count == 2 && kigumi::is_frame_file(kigumi::path_of(arguments[1]))) {
        const bool typed = kigumi::has_terminal();
        kigumi::leave_own_console();
        return kigumi::run_window(argc, argv, kigumi::path_of(arguments[1]), typed);
    }
    kigumi::use_utf8_console();
    return kigumi::run_command_line(count, arguments);
}
