#include "victim.h"

#include <csignal>
#include <cstdio>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kigumi::test {

namespace {

void meet(const Fault& fault) {
    if (fault.file_size >= 0) {
        std::signal(SIGXFSZ, fault.die_at_limit ? SIG_DFL : SIG_IGN);
        const auto size = static_cast<rlim_t>(fault.file_size);
        const rlimit limit{size, size};
        setrlimit(RLIMIT_FSIZE, &limit);
        const rlimit no_core{0, 0};
        setrlimit(RLIMIT_CORE, &no_core);
    }
    constexpr uid_t nobody = 65534;
    if (fault.stranger && geteuid() == 0 && setuid(nobody) != 0) {
        _exit(127);
    }
    if (fault.kill_at_call >= 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
    }
}

// Lets the stopped child run from call to call until it ends or its time has come.
int follow(pid_t child, int kill_at_call, Fate& fate) {
    constexpr int at_call = SIGTRAP | 0x80;
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    long passed_on = 0;
    while (ptrace(PTRACE_SYSCALL, child, nullptr, passed_on) == 0 &&
           waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
        const int stopped_by = WSTOPSIG(status);
        passed_on = stopped_by == at_call || stopped_by == SIGTRAP ? 0 : stopped_by;
        if (stopped_by == at_call && fate.calls++ == kill_at_call) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            break;
        }
    }
    return status;
}

} // namespace

Fate suffer(const Fault& fault, const std::function<int()>& work) {
    std::fflush(nullptr); // or the child writes it again
    const pid_t child = fork();
    if (child == 0) {
        meet(fault);
        _exit(work());
    }
    Fate fate;
    int status = 0;
    if (fault.kill_at_call >= 0) {
        status = follow(child, fault.kill_at_call, fate);
    } else {
        waitpid(child, &status, 0);
    }
    fate.killed = WIFSIGNALED(status);
    fate.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return fate;
}

} // namespace kigumi::test
