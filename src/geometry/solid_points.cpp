// The point table: distinct vertices, found again by their exact coordinates.
#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "geometry/solid_store.h"
#include "trace/spy.h"

#include <algorithm>
#include <bit>

namespace kigumi {

namespace {

std::uint32_t key_bits(float value) {
    return std::bit_cast<std::uint32_t>(same_float(value, 0.0f) ? 0.0f : value);
}

size_t hash_of(float x, float y, float z) {
    std::uint64_t h = (std::uint64_t{key_bits(x)} << 32 | key_bits(y)) * 0x9E3779B97F4A7C15u;
    h = (h ^ (h >> 29) ^ key_bits(z)) * 0xFF51AFD7ED558CCDu;
    return static_cast<size_t>(h ^ (h >> 32));
}

// Point numbers by coordinates: open addressing, at most half full, 0 where nothing is.
class PointIndex {
  public:
    // The slot of the point: its number, or 0 for the caller to fill with the next number.
    std::int32_t& slot(float x, float y, float z) {
        follow();
        const size_t mask = slots_.size() - 1;
        size_t at = hash_of(x, y, z) & mask;
        while (slots_[at] != 0 && !equals(solids.points[position_of(slots_[at])], x, y, z)) {
            at = (at + 1) & mask;
        }
        return slots_[at];
    }
    void count_one() { ++count_; }

  private:
    static bool equals(const SolidPoint& p, float x, float y, float z) {
        return same_float(p.x, x) && same_float(p.y, y) && same_float(p.z, z);
    }
    // Makes the index anew when the table was changed by others, or has grown to half the slots.
    void follow() {
        const size_t points = solids.points.size();
        if (count_ == points && 2 * (points + 1) <= slots_.size()) {
            return;
        }
        constexpr size_t smallest = 1024;
        slots_.assign(std::max(smallest, std::bit_ceil(4 * (points + 1))), 0);
        const size_t mask = slots_.size() - 1;
        for (const SolidPoint& p : solids.points) {
            size_t at = hash_of(p.x, p.y, p.z) & mask;
            while (slots_[at] != 0) {
                at = (at + 1) & mask;
            }
            slots_[at] = p.no;
        }
        count_ = points;
    }

    std::vector<std::int32_t> slots_;
    size_t count_ = 0;
};

PointIndex& point_index() {
    static PointIndex index;
    return index;
}

} // namespace

int solid_store::find_or_add_point(float x, float y, float z) {
    std::int32_t& no = point_index().slot(x, y, z);
    if (no != 0) {
        return no;
    }
    if (solids.points.size() >= static_cast<size_t>(point_capacity)) {
        return -1;
    }
    no = number_at(static_cast<int>(solids.points.size()));
    solids.points.push_back({no, x, y, z});
    point_index().count_one();
    return no;
}

void solid_store::report_full() {
    show_message(text_format("頂点が多すぎます（最大 %d 個）", point_capacity));
}

int register_point(float x, float y, float z) {
    follow_model();
    const int no = solid_store::find_or_add_point(x, y, z);
    if (no < 0) {
        solid_store::report_full();
    }
    return no;
}

void clear_points() {
    spy("Enter clear_points()");
    solids.points.clear();
}

} // namespace kigumi
