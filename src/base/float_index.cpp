#include "base/float_index.h"

#include "base/float.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace kigumi {

namespace {

constexpr size_t smallest_table = 1024;

std::uint32_t bits_of(float value) {
    return std::bit_cast<std::uint32_t>(same_float(value, 0.0f) ? 0.0f : value);
}

// False when one of the values equals nothing.
bool make_key(float a, float b, float c, std::uint32_t (&key)[3]) {
    key[0] = bits_of(a);
    key[1] = bits_of(b);
    key[2] = bits_of(c);
    return !std::isnan(a) && !std::isnan(b) && !std::isnan(c);
}

size_t hash_of(const std::uint32_t (&key)[3]) {
    std::uint64_t h = (std::uint64_t{key[0]} << 32 | key[1]) * 0x9E3779B97F4A7C15u;
    h = (h ^ (h >> 29) ^ key[2]) * 0xFF51AFD7ED558CCDu;
    return static_cast<size_t>(h ^ (h >> 32));
}

} // namespace

void FloatIndex::clear() {
    for (Slot& slot : slots_) {
        slot.position = -1;
    }
    count_ = 0;
}

// The slot that holds the key, or the free one where it belongs.
size_t FloatIndex::place_of(const std::uint32_t (&key)[3]) const {
    const size_t mask = slots_.size() - 1;
    size_t at = hash_of(key) & mask;
    while (slots_[at].position >= 0 && std::memcmp(slots_[at].key, key, sizeof key) != 0) {
        at = (at + 1) & mask;
    }
    return at;
}

int FloatIndex::find(float a, float b, float c) const {
    std::uint32_t key[3];
    if (slots_.empty() || !make_key(a, b, c, key)) {
        return -1;
    }
    return slots_[place_of(key)].position;
}

int FloatIndex::add(float a, float b, float c, int position) {
    std::uint32_t key[3];
    if (!make_key(a, b, c, key)) {
        return position;
    }
    if (2 * (count_ + 1) > slots_.size()) {
        grow();
    }
    Slot& slot = slots_[place_of(key)];
    if (slot.position < 0) {
        std::memcpy(slot.key, key, sizeof key);
        slot.position = position;
        ++count_;
    }
    return slot.position;
}

void FloatIndex::grow() {
    std::vector<Slot> old(std::max(smallest_table, 4 * slots_.size()), Slot{{}, -1});
    old.swap(slots_);
    for (const Slot& slot : old) {
        if (slot.position >= 0) {
            slots_[place_of(slot.key)] = slot;
        }
    }
}

} // namespace kigumi
