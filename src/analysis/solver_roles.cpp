#include "analysis/solver_roles.h"

#include "base/scan.h"
#include "model/model.h"

#include <algorithm>
#include <vector>

namespace kigumi {

namespace {

// Reads the blocks of the file in their order, in the free form that the solver takes.
class RoleReader {
  public:
    explicit RoleReader(std::string_view bytes) : lines_(bytes) {}

    bool read() {
        for (int block = 0; block < level_blocks; ++block) {
            if (!skip_levels()) {
                return false;
            }
        }
        for (int block = 0; block < record_blocks; ++block) {
            if (!skip_records(block == member_block ? 1 : 0)) {
                return false;
            }
        }
        return read_fixes() && read_loads();
    }

    std::vector<Fix> fixes;
    std::vector<Load> loads;

  private:
    static constexpr int level_blocks = 3;
    static constexpr int record_blocks = 4; // members, sections, materials, nodes
    static constexpr int member_block = 0;  // its count line has the node count in front

    // Takes the items of the next line that is not blank; commas separate as blanks do.
    bool next_record() {
        fields_.clear();
        std::string_view line;
        while (fields_.empty() && lines_.next(line)) {
            text_ = line;
            std::replace(text_.begin(), text_.end(), ',', ' ');
            Scanner scan(text_);
            for (std::string_view word; scan.next(word);) {
                fields_.push_back(word);
            }
        }
        return !fields_.empty();
    }
    bool next_count(size_t at, int& count) {
        return next_record() && fields_.size() > at && parse_number(fields_[at], count) &&
               count >= 0;
    }
    // The values may stand on the line of the count, and any number of them on a line.
    bool skip_levels() {
        int count = 0;
        if (!next_count(0, count)) {
            return false;
        }
        size_t values = fields_.size() - 1;
        while (values < static_cast<size_t>(count) && next_record()) {
            values += fields_.size();
        }
        return values == static_cast<size_t>(count);
    }
    bool skip_records(size_t count_at) {
        int count = 0;
        if (!next_count(count_at, count)) {
            return false;
        }
        while (count > 0 && next_record()) {
            --count;
        }
        return count == 0;
    }
    bool read_fixes();
    bool read_loads();

    LineReader lines_;
    std::string text_; // the line that the fields lie in
    std::vector<std::string_view> fields_;
};

bool RoleReader::read_fixes() {
    int count = 0;
    if (!next_count(0, count) || count > fix_capacity) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        Fix fix{};
        if (!next_record() || fields_.size() < 2 || fields_[1].size() < 3 ||
            !parse_number(fields_[0], fix.no)) {
            return false;
        }
        const std::string_view digits = fields_[1];
        fix.ix = digits[0] == '1' ? 1 : 0;
        fix.iy = digits[1] == '1' ? 1 : 0;
        fix.iz = digits[2] == '1' ? 1 : 0;
        fixes.push_back(fix);
    }
    return true;
}

bool RoleReader::read_loads() {
    constexpr size_t unnamed = 7; // number, three forces, three moments; a name may come before
    int count = 0;
    if (!next_count(0, count) || count > load_capacity) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        Load load{};
        if (!next_record() || fields_.size() < unnamed || fields_.size() > unnamed + 1) {
            return false;
        }
        const size_t first = fields_.size() - unnamed;
        if (!parse_number(fields_[first], load.no) || !parse_number(fields_[first + 1], load.fx) ||
            !parse_number(fields_[first + 2], load.fy) ||
            !parse_number(fields_[first + 3], load.fz)) {
            return false;
        }
        if (first > 0) {
            set_name(load.id, std::string(fields_[0]).c_str());
        }
        loads.push_back(load);
    }
    return true;
}

} // namespace

int load_solver_roles() {
    model.N_Fix = model.N_Load = 0;
    const auto bytes = read_file(work_file("FRAMESLV.IN"));
    if (!bytes) {
        return -1;
    }
    RoleReader reader(*bytes);
    if (!reader.read()) {
        return -1;
    }
    std::copy(reader.fixes.begin(), reader.fixes.end(), model.fix.begin());
    std::copy(reader.loads.begin(), reader.loads.end(), model.load.begin());
    model.N_Fix = static_cast<std::int32_t>(reader.fixes.size());
    model.N_Load = static_cast<std::int32_t>(reader.loads.size());
    return 0;
}

} // namespace kigumi
