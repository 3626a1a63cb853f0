#include "base/console.h"

#include "base/files.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <shellapi.h>

#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace kigumi {

char** utf8_arguments(int& argc, char** argv) {
    static std::vector<std::string> texts;
    static std::vector<char*> arguments;
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
        return argv;
    }
    for (int i = 0; i < count; ++i) {
        texts.push_back(utf8_of(wide[i]));
    }
    LocalFree(wide);
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    argc = count;
    return arguments.data();
}

void use_utf8_console() {
    static const UINT before = GetConsoleOutputCP();
    if (before == 0) {
        return; // no console
    }
    SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { SetConsoleOutputCP(before); });
    // Else the bytes of a character may go out one by one, and the console shows none of them.
    std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
    std::atexit([] { std::fflush(stdout); });
}

void leave_own_console() {
    DWORD programs[2];
    if (GetConsoleProcessList(programs, 2) == 1) {
        FreeConsole();
    }
}

bool has_terminal() {
    DWORD programs[2];
    return GetConsoleProcessList(programs, 2) > 1 &&
           (_isatty(_fileno(stdin)) != 0 || _isatty(_fileno(stdout)) != 0);
}

} // namespace kigumi
