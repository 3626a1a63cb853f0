// The program: without arguments the main window, else one command.
#include "app/command_line.h"
#include "app/window.h"
#include "base/console.h"

int main(int argc, char** argv) {
    if (argc <= 1) {
        kigumi::leave_own_console();
        return kigumi::run_window(argc, argv);
    }
    kigumi::use_utf8_console();
    char** const arguments = kigumi::utf8_arguments(argc, argv);
    return kigumi::run_command_line(argc, arguments);
}
