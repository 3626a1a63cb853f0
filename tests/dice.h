// Random choices that can be repeated.
#pragma once

#include <cstdlib>
#include <random>
#include <vector>

namespace kigumi::test {

// A whole number from the environment, or `usual` when it is not there.
inline int number_from_environment(const char* name, int usual) {
    const char* text = std::getenv(name);
    return text == nullptr ? usual : std::atoi(text);
}

// The seed of this run: KIGUMI_SEED in the environment, else always the same.
inline unsigned seed_of_run() {
    return static_cast<unsigned>(number_from_environment("KIGUMI_SEED", 20261121));
}

class Dice {
  public:
    explicit Dice(unsigned seed) : seed_(seed), random_(seed) {}
    // 0 ... count - 1; `count` at least 1.
    int roll(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    template <class Items> const auto& one_of(const Items& items) {
        return items[static_cast<std::size_t>(roll(static_cast<int>(items.size())))];
    }
    unsigned seed() const { return seed_; }

  private:
    unsigned seed_;
    std::mt19937 random_;
};

} // namespace kigumi::test
