#include "analysis/solver_roles.h"

#include "base/scan.h"
#include "model/model.h"

#include <algorithm>
#include <vector>

namespace kigumi {

namespace {

// Reads the blocks of the file in their order; every block is a count line and its lines.
class RoleReader {
  public:
    explicit RoleReader(std::string_view bytes) : lines_(bytes) {}

    bool read() {
        for (int block = 0; block < blocks_before; ++block) {
            const int count = read_count(block);
            if (count < 0 || !skip(count)) {
                return false;
            }
        }
        return read_fixes() && read_loads();
    }

    std::vector<Fix> fixes;
    std::vector<Load> loads;

  private:
    static constexpr int blocks_before = 7; // levels, members, sections, materials, nodes
    static constexpr int member_block = 3;  // its count line has the node count in front

    int read_count(int block) {
        std::string_view line;
        int count = -1;
        if (!lines_.next(line)) {
            return -1;
        }
        Scanner scan(line);
        const bool good = scan.next(count) && (block != member_block || scan.next(count));
        return good ? count : -1;
    }
    bool skip(int count) {
        std::string_view line;
        while (count > 0 && lines_.next(line)) {
            --count;
        }
        return count == 0;
    }
    // The comma-separated fields of the next line, as blank-separated text.
    bool next_fields(std::string& fields) {
        std::string_view line;
        if (!lines_.next(line)) {
            return false;
        }
        fields = line;
        std::replace(fields.begin(), fields.end(), ',', ' ');
        return true;
    }
    bool read_fixes();
    bool read_loads();

    LineReader lines_;
};

bool RoleReader::read_fixes() {
    const int count = read_count(blocks_before);
    std::string fields;
    for (int i = 0; i < count; ++i) {
        Fix fix{};
        std::string_view digits;
        if (!next_fields(fields)) {
            return false;
        }
        Scanner scan(fields);
        if (!scan.next(fix.no) || !scan.next(digits) || digits.size() < 3) {
            return false;
        }
        fix.ix = digits[0] == '1' ? 1 : 0;
        fix.iy = digits[1] == '1' ? 1 : 0;
        fix.iz = digits[2] == '1' ? 1 : 0;
        fixes.push_back(fix);
    }
    return count >= 0 && count <= fix_capacity;
}

bool RoleReader::read_loads() {
    const int count = read_count(blocks_before + 1);
    std::string fields;
    for (int i = 0; i < count; ++i) {
        Load load{};
        std::string_view name;
        if (!next_fields(fields)) {
            return false;
        }
        Scanner scan(fields);
        if (!scan.next(name) || !scan.next(load.no) || !scan.next(load.fx) || !scan.next(load.fy) ||
            !scan.next(load.fz)) {
            return false;
        }
        set_name(load.id, std::string(name).c_str());
        loads.push_back(load);
    }
    return count >= 0 && count <= load_capacity;
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
