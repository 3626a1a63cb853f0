#include "analysis/process.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <shellapi.h>

namespace kigumi {

namespace {

// The program and what it starts, to be ended together.
class Job {
  public:
    explicit Job(HANDLE program) : program_(program), job_(CreateJobObjectW(nullptr, nullptr)) {
        holds_ = job_ != nullptr && AssignProcessToJobObject(job_, program) != 0;
    }
    ~Job() {
        if (job_ != nullptr) {
            CloseHandle(job_);
        }
    }
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    void end() const {
        constexpr UINT status = 255;
        if (!holds_ || TerminateJobObject(job_, status) == 0) {
            TerminateProcess(program_, status);
        }
    }

  private:
    HANDLE program_, job_;
    bool holds_ = false;
};

void wait_for(HANDLE program, const KeepWaiting& keep_waiting) {
    if (keep_waiting) {
        const Job job(program);
        while (WaitForSingleObject(program, 0) == WAIT_TIMEOUT) {
            if (!keep_waiting()) {
                job.end();
                break;
            }
        }
    }
    WaitForSingleObject(program, INFINITE);
}

} // namespace

int run_program(const fs::path& program, const fs::path& folder, const KeepWaiting& keep_waiting) {
    std::error_code code;
    // A name without its folder would be searched for elsewhere.
    const fs::path file = fs::absolute(program, code).make_preferred();
    const fs::path start = fs::absolute(folder, code).make_preferred();
    if (!is_program(file) || !fs::is_directory(start, code)) {
        return -1;
    }
    SHELLEXECUTEINFOW request{};
    request.cbSize = sizeof request;
    // The program writes to the console of this one, where there is one.
    request.fMask =
        SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC | SEE_MASK_NO_CONSOLE;
    request.lpVerb = L"open";
    request.lpFile = file.c_str();
    request.lpDirectory = start.c_str();
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
