// Threads that do one piece of work together, time and again.
#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace frameslv {

// `size` threads with the calling one. Between two pieces of work the others wait, at first
// without giving up their processor: the pieces of a large front follow one another quickly.
class Team {
  public:
    explicit Team(int size);
    ~Team();
    Team(const Team&) = delete;
    Team& operator=(const Team&) = delete;

    int size() const { return static_cast<int>(threads_.size()) + 1; }

    // Calls work(0) here and work(1) ... work(size - 1) on the others; returns when all are done.
    // An exception of any of them is thrown here again.
    void run(const std::function<void(int)>& work);

  private:
    void serve(int id);
    void guarded(int id);

    const std::function<void(int)>* work_ = nullptr;
    std::atomic<unsigned> round_{0};
    std::atomic<unsigned> busy_{0};
    std::atomic<bool> ended_{false};
    std::vector<std::exception_ptr> failed_;
    std::vector<std::thread> threads_;
};

// How many threads serve a piece of work of so many operations when up to `most` are allowed (0: as
// many as the machine has).
int useful_threads(int most, double operations);

} // namespace frameslv
