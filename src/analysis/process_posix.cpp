#include "analysis/process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kigumi {

namespace {

// Becomes the program; returns only by ending the child, after telling errno through `report`.
[[noreturn]] void become(const char* program, const char* folder, int report, bool own_group) {
    if (own_group) {
        setpgid(0, 0);
    }
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

// waitpid that signals do not disturb.
pid_t wait_pid(pid_t child, int& status, int options) {
    pid_t ended = 0;
    do {
        ended = waitpid(child, &status, options);
    } while (ended < 0 && errno == EINTR);
    return ended;
}

// Exit status of the child, which is the leader of its own process group when it may be ended.
int wait_for(pid_t child, const KeepWaiting& keep_waiting) {
    int status = 0;
    pid_t ended = 0;
    while (keep_waiting && ended == 0) {
        ended = wait_pid(child, status, WNOHANG);
        if (ended == 0 && !keep_waiting()) {
            kill(-child, SIGKILL);
            break;
        }
    }
    if (ended == 0) {
        ended = wait_pid(child, status, 0);
    }
    if (ended < 0) {
        return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

int run_program(const fs::path& program, const fs::path& folder, const KeepWaiting& keep_waiting) {
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
        become(file.c_str(), start.c_str(), ends[1], static_cast<bool>(keep_waiting));
    }
    close(ends[1]);
    const bool failed = child < 0 || start_failed(ends[0]);
    close(ends[0]);
    const int status = child < 0 ? -1 : wait_for(child, failed ? KeepWaiting{} : keep_waiting);
    return failed ? -1 : status;
}

bool is_program(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace kigumi
