// Runs a piece of work in a child process that meets a fault of the system.
#pragma once

#include <functional>

namespace kigumi::test {

// What the child meets.
struct Fault {
    long file_size = -1;       // no file can grow beyond it, bytes; -1 none
    bool die_at_limit = false; // ... and the attempt kills the child
    bool stranger = false;     // it has no rights of ours on files
    int kill_at_call = -1;     // killed at this entry to or return from the system, from 0
};

struct Fate {
    bool killed = false;
    int status = -1; // what the work returned, 0 ... 255, when it was not killed
    int calls = 0;   // entries and returns seen; counted with kill_at_call only
};

// A kill_at_call beyond all calls: they are only counted.
constexpr int never = 1 << 30;

// Forks, does the work under the fault in the child and waits for it.
Fate suffer(const Fault& fault, const std::function<int()>& work);

} // namespace kigumi::test
