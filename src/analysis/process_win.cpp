#include "analysis/process.h"

#define NOMINMAX
#include <windows.h>
// After windows.h, whose types it needs.
#include <shellapi.h>

namespace kigumi {

namespace {

void wait_for(HANDLE process, const KeepWaiting& keep_waiting) {
    while (keep_waiting && WaitForSingleObject(process, 0) == WAIT_TIMEOUT) {
        if (!keep_waiting()) {
            TerminateProcess(process, ERROR_CANCELLED);
            break;
        }
    }
    WaitForSingleObject(process, INFINITE);
}

} // namespace

int run_program(const fs::path& program, const fs::path& folder, const KeepWaiting& keep_waiting) {
    SHELLEXECUTEINFOW request{};
    request.cbSize = sizeof request;
    request.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    request.lpVerb = L"open";
    request.lpFile = program.c_str();
    request.lpDirectory = folder.c_str();
    request.nShow = SW_SHOWDEFAULT;
    if (ShellExecuteExW(&request) == 0 || request.hProcess == nullptr) {
        return -1;
    }
    wait_for(request.hProcess, keep_waiting);
    DWORD status = 0;
    GetExitCodeProcess(request.hProcess, &status);
    CloseHandle(request.hProcess);
    // A crash leaves a status beyond int; the start itself did not fail.
    return status <= 255 ? static_cast<int>(status) : 255;
}

bool is_program(const fs::path& path) {
    std::error_code code;
    return fs::is_regular_file(path, code);
}

} // namespace kigumi
