#include "solver/text/signals.h"

#include <atomic>
#include <csignal>

#include <unistd.h>

namespace frameslv {

namespace {

constexpr int requests[] = {SIGTERM, SIGINT, SIGHUP};

// A handler gets no argument: the process has one such list.
std::atomic<const char* const*> removed{nullptr};

// The handler is gone when it is called: the same signal ends the process.
void remove_and_end(int signal) {
    for (const char* const* name = removed; name != nullptr && *name != nullptr; name++)
        unlink(*name);
    raise(signal);
}

sigset_t request_set() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : requests)
        sigaddset(&set, signal);
    return set;
}

} // namespace

void remove_when_ended(const char* const* names) {
    removed = names;
    for (const int signal : requests) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = remove_and_end;
        action.sa_flags = SA_RESETHAND;
        sigaction(signal, &action, nullptr);
    }
}

EndsWait::EndsWait() {
    const sigset_t set = request_set();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

EndsWait::~EndsWait() {
    const sigset_t set = request_set();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

} // namespace frameslv
