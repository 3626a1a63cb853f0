// Runs a piece of work in a child process that meets a fault of the system.
#pragma once

#include <functional>
#include <random>

namespace kigumi::test {

// Random choices of a test; KIGUMI_SEED in the environment sets the seed, which a failure prints.
class Dice {
  public:
    Dice();
    explicit Dice(unsigned seed) : seed_(seed), random_(seed) {}
    // 0 ... count - 1; `count` at least 1.
    int roll(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    unsigned seed() const { return seed_; }

  private:
    unsigned seed_;
    std::mt19937 random_;
};

// A whole number from the environment, or `usual` when it is not there.
int number_from_environment(const char* name, int usual);

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
