// The program: without arguments the main window, else one command.
#include "app/command_line.h"
#include "app/window.h"

int main(int argc, char** argv) {
    return argc > 1 ? kigumi::run_command_line(argc, argv) : kigumi::run_window(argc, argv);
}
