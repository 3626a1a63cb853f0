// A table of fixed capacity.
#pragma once

#include "base/check.h"

#include <cstddef>
#include <vector>

namespace kigumi {

// `Capacity` records on the heap, all of them zero at first; how many are in use is the business of
// the count that stands beside the table. Copying copies all records. A position outside the table
// ends the program in debug builds.
template <class Record, int Capacity> class Table {
  public:
    Table() : records_(static_cast<std::size_t>(Capacity)) {}

    Record& operator[](std::ptrdiff_t position) { return records_[checked(position)]; }
    const Record& operator[](std::ptrdiff_t position) const { return records_[checked(position)]; }

    static constexpr std::size_t size() { return static_cast<std::size_t>(Capacity); }
    auto begin() { return records_.begin(); }
    auto begin() const { return records_.begin(); }
    auto end() { return records_.end(); }
    auto end() const { return records_.end(); }
    Record* data() { return records_.data(); }
    const Record* data() const { return records_.data(); }
    void fill(const Record& record) { records_.assign(size(), record); }

  private:
    static std::size_t checked(std::ptrdiff_t position) {
#ifndef NDEBUG
        KIGUMI_CHECK(position >= 0 && position < Capacity, "position %td of %d", position,
                     Capacity);
#endif
        return static_cast<std::size_t>(position);
    }

    std::vector<Record> records_;
};

} // namespace kigumi
