// Finds records again by three exact floats.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kigumi {

// Positions (0-based) of records under their three float values, matched as same_float does: +0
// equals -0, and NaN equals nothing, so that a record with one is never found. The first position
// added under equal values stays.
class FloatIndex {
  public:
    void clear();
    // Number of different keys added.
    size_t size() const { return count_; }
    // The position under these values, or -1.
    int find(float a, float b, float c) const;
    // Adds a position unless one is there already; returns the one that then stands there.
    int add(float a, float b, float c, int position);

  private:
    // An open-addressing table, at most half full; position -1 where nothing is.
    struct Slot {
        std::uint32_t key[3];
        std::int32_t position;
    };
    size_t place_of(const std::uint32_t (&key)[3]) const;
    void grow();

    std::vector<Slot> slots_;
    size_t count_ = 0;
};

} // namespace kigumi
