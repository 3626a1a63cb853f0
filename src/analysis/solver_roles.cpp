#include "analysis/solver_roles.h"

#include "base/scan.h"
#include "model/model.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

namespace kigumi {

namespace {

// Reads the blocks of the file in their order, in the free form that the solver takes. A record of
// the frame that cannot be read makes it incomplete; supports and loads are read all the same.
class InputReader {
  public:
    explicit InputReader(std::string_view bytes) : lines_(bytes) {}

    bool read() {
        for (int block = 0; block < level_blocks; ++block) {
            if (!skip_levels()) {
                return false;
            }
        }
        return read_records(1, [this] { read_member(); }) &&
               read_records(0, [this] { read_section(); }) && read_records(0, [] {}) &&
               read_records(0, [this] { read_node(); }) && read_fixes() && read_loads();
    }

    struct Member {
        int start, end, section; // numbers
    };
    std::vector<Member> members;
    std::map<int, double> areas; // by section number, cm²
    std::map<int, std::array<double, 3>> nodes;
    bool frame_complete = true;
    std::vector<Fix> fixes;
    std::vector<Load> loads;

  private:
    static constexpr int level_blocks = 3;

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
    // A block of records; the count stands in this field of its first line.
    template <class Read> bool read_records(size_t count_at, Read read) {
        int count = 0;
        if (!next_count(count_at, count)) {
            return false;
        }
        while (count > 0 && next_record()) {
            read();
            --count;
        }
        return count == 0;
    }
    template <class Number> bool field(size_t at, Number& value) const {
        return at < fields_.size() && parse_number(fields_[at], value);
    }
    void read_member() {
        Member member{};
        const bool good =
            field(1, member.start) && field(2, member.end) && field(3, member.section);
        frame_complete = frame_complete && good;
        members.push_back(member);
    }
    void read_section() {
        int no = 0;
        double area = 0.0;
        const bool good = field(0, no) && field(3, area);
        frame_complete = frame_complete && good;
        areas[no] = area;
    }
    void read_node() {
        int no = 0;
        std::array<double, 3> at{};
        const bool good = field(0, no) && field(1, at[0]) && field(2, at[1]) && field(3, at[2]);
        frame_complete = frame_complete && good;
        nodes[no] = at;
    }
    bool read_fixes();
    bool read_loads();

    LineReader lines_;
    std::string text_; // the line that the fields lie in
    std::vector<std::string_view> fields_;
};

bool InputReader::read_fixes() {
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

bool InputReader::read_loads() {
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

int load_solver_roles(Model& model, const fs::path& work_dir) {
    model.N_Fix = model.N_Load = 0;
    const auto bytes = read_file(work_file(work_dir, "FRAMESLV.IN"));
    if (!bytes) {
        return -1;
    }
    InputReader reader(*bytes);
    if (!reader.read()) {
        return -1;
    }
    std::copy(reader.fixes.begin(), reader.fixes.end(), model.fix.begin());
    std::copy(reader.loads.begin(), reader.loads.end(), model.load.begin());
    model.N_Fix = static_cast<std::int32_t>(reader.fixes.size());
    model.N_Load = static_cast<std::int32_t>(reader.loads.size());
    return 0;
}

std::optional<SolverFrame> read_solver_frame(const fs::path& work_dir) {
    const auto bytes = read_file(work_file(work_dir, "FRAMESLV.IN"));
    if (!bytes) {
        return {};
    }
    InputReader reader(*bytes);
    if (!reader.read() || !reader.frame_complete) {
        return {};
    }
    SolverFrame frame;
    frame.numbered.nodes = {reader.nodes.begin(), reader.nodes.end()};
    for (const InputReader::Member& member : reader.members) {
        const auto start = reader.nodes.find(member.start);
        const auto end = reader.nodes.find(member.end);
        const auto area = reader.areas.find(member.section);
        if (start == reader.nodes.end() || end == reader.nodes.end() ||
            area == reader.areas.end()) {
            return {};
        }
        const auto& [x, y, z] = start->second;
        const auto& [xl, yl, zl] = end->second;
        frame.members.push_back({area->second, std::hypot(xl - x, yl - y, zl - z)});
        frame.numbered.ends.emplace_back(member.start, member.end);
    }
    return frame;
}

ResultRoles load_result_roles(Model& model, const Result& result, const fs::path& work_dir) {
    if (load_solver_roles(model, work_dir) < 0) {
        return ResultRoles::missing;
    }
    const auto frame = read_solver_frame(work_dir);
    if (frame && results_fit(frame->numbered, stored_results(result))) {
        return ResultRoles::read;
    }
    model.N_Fix = model.N_Load = 0;
    return frame ? ResultRoles::of_other_frame : ResultRoles::missing;
}

} // namespace kigumi
