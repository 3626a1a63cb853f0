#include "solver/sparse/team.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace frameslv {

namespace {

constexpr int spins = 20000; // some tens of microseconds

// Waits until the value is no longer `old`.
void await_change(const std::atomic<unsigned>& value, unsigned old) {
    for (int i = 0; i < spins; i++)
        if (value.load(std::memory_order_acquire) != old)
            return;
    value.wait(old, std::memory_order_acquire);
}

} // namespace

Team::Team(int size) : failed_(static_cast<size_t>(std::max(size, 1))) {
    for (int id = 1; id < size; id++)
        threads_.emplace_back([this, id] { serve(id); });
}

Team::~Team() {
    ended_ = true;
    round_++;
    round_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void Team::guarded(int id) {
    try {
        (*work_)(id);
    } catch (...) {
        failed_[static_cast<size_t>(id)] = std::current_exception();
    }
}

void Team::serve(int id) {
    unsigned seen = 0;
    while (true) {
        await_change(round_, seen);
        seen++;
        if (ended_)
            return;
        guarded(id);
        if (busy_.fetch_sub(1, std::memory_order_acq_rel) == 1)
            busy_.notify_one();
    }
}

void Team::run(const std::function<void(int)>& work) {
    work_ = &work;
    busy_ = static_cast<unsigned>(threads_.size());
    if (!threads_.empty()) {
        round_++;
        round_.notify_all();
    }
    guarded(0);
    for (unsigned left = busy_; left != 0; left = busy_)
        await_change(busy_, left);
    for (std::exception_ptr& failure : failed_)
        if (failure)
            std::rethrow_exception(std::exchange(failure, nullptr));
}

int useful_threads(int most, double operations) {
    constexpr double worth_a_thread = 3e7; // operations: some milliseconds
    const int machine = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    const int allowed = most > 0 ? most : machine;
    return static_cast<int>(
        std::clamp(operations / worth_a_thread, 1.0, static_cast<double>(allowed)));
}

} // namespace frameslv
