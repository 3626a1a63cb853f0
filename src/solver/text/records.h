// Records of free-format text: one line each, its items separated by blanks, tabs or commas.
#pragma once

#include "solver/base/fault.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace frameslv {

// Whether the last record of a text has no line end: written by hand, or cut off.
bool lacks_line_end(std::string_view text);

// Hands out the records of a text in memory, which must outlive it. Every function that returns
// false has noted a fault that names the line.
class RecordReader {
  public:
    static constexpr size_t any_count = static_cast<size_t>(-1);

    explicit RecordReader(std::string_view text);

    // Goes to the next line that is not blank; it must have `least` to `most` items. `block` names
    // the block in the message. A comma before the first item is allowed only with `blank_first`;
    // two commas with nothing between are refused.
    bool next(const char* block, size_t least, size_t most, bool blank_first = false);

    // True when only blank lines are left.
    bool expect_end();

    // The items of the record.
    size_t size() const { return fields_.size(); }
    std::string_view field(size_t i) const { return fields_[i]; }

    // Takes the whole of item `i` as a finite decimal number.
    bool integer(size_t i, int& value);
    bool real(size_t i, double& value);
    // Whether item `i` is such a number; notes no fault.
    bool is_real(size_t i) const;

    // Refuses a record whose items from `first` on, names that may be left out, look like what a
    // decimal comma has split off: a number, where the line separates by commas and by blanks.
    bool expect_names(const char* block, size_t first);

    // Refuses a count of records that is negative or that the rest of the text cannot hold, so that
    // tables may be sized by it. A record has at least `items` items.
    bool expect_count(const char* block, int count, size_t items);

    // Notes a fault at the current line; returns false.
    bool fail(const std::string& what);
    const Fault& fault() const { return fault_; }

  private:
    bool next_line(std::string_view& line);
    bool split(std::string_view line, bool blank_first);

    std::string_view text_;
    size_t at_ = 0;
    // What separates the items of the record.
    bool by_comma_ = false;
    bool by_blank_ = false;
    int line_ = 0; // 1-based number of the line handed out last
    std::vector<std::string_view> fields_;
    Fault fault_;
};

} // namespace frameslv
