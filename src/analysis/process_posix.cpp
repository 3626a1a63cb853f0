#include "analysis/process.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kigumi {

namespace {

// Becomes the program; returns only by ending the child, after telling errno through `report`.
[[noreturn]] void become(const char* program, const char* folder, int report) {
    char* const arguments[] = {const_cast<char*>(program), nullptr};
    if (chdir(folder) == 0) {
        execv(program, arguments);
    }
    const int why = errno;
    const ssize_t told = write(report, &why, sizeof why);
    _exit(told > 0 ? 127 : 126);
}

// True when the child told a failure; false at the end of file, which a started program leaves.
bool start_failed(int report) {
    int why = 0;
    ssize_t got = 0;
    do {
        got = read(report, &why, sizeof why);
    } while (got < 0 && errno == EINTR);
    return got != 0;
}

int wait_for(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

int run_program(const fs::path& program, const fs::path& folder) {
    std::error_code code;
    const std::string file = fs::absolute(program, code).string();
    const std::string start = folder.string();
    int ends[2];
    if (code || pipe(ends) != 0) {
        return -1;
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    const pid_t child = fork();
    if (child == 0) {
        become(file.c_str(), start.c_str(), ends[1]);
    }
    close(ends[1]);
    const bool failed = child < 0 || start_failed(ends[0]);
    close(ends[0]);
    const int status = child < 0 ? -1 : wait_for(child);
    return failed ? -1 : status;
}

bool is_program(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace kigumi
