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
               read_records(0, [this] { read_section(); }) &&
               read_records(0, [this] { read_material(); }) &&
               read_records(0, [this] { read_node(); }) && read_fixes() && read_loads() &&
               read_rest();
    }

    struct Member {
        int start, end, section, material; // numbers
        double turn;                       // degrees
    };
    std::vector<Member> members;
    std::map<int, InputPrint::Section> sections;
    std::map<int, InputPrint::Material> materials;
    std::map<int, InputPrint::Place> nodes;
    bool frame_complete = true;
    std::vector<Fix> fixes;
    std::vector<Load> loads;
    std::string extras; // what stands behind the blocks

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
    // Takes the numbers of a record from the second on, under the number that is its first.
    template <class Values, class... Fields>
    void read_numbered(std::map<int, Values>& table, Fields Values::*... fields) {
        int no = 0;
        Values values{};
        std::size_t at = 0;
        const bool good = field(0, no) && (field(++at, values.*fields) && ...);
        frame_complete = frame_complete && good;
        table[no] = values;
    }
    void read_member() {
        Member member{};
        const bool good = field(1, member.start) && field(2, member.end) &&
                          field(3, member.section) && field(4, member.material);
        field(5, member.turn);
        frame_complete = frame_complete && good;
        members.push_back(member);
    }
    void read_section() {
        using Section = InputPrint::Section;
        read_numbered(sections, &Section::Iy, &Section::Iz, &Section::A, &Section::J);
    }
    void read_material() {
        using Material = InputPrint::Material;
        read_numbered(materials, &Material::E, &Material::poisson, &Material::density);
    }
    void read_node() {
        using Place = InputPrint::Place;
        read_numbered(nodes, &Place::x, &Place::y, &Place::z);
    }
    // What stands behind the blocks, word by word.
    bool read_rest() {
        while (next_record()) {
            for (const std::string_view word : fields_) {
                extras += std::string(word) + ' ';
            }
        }
        return true;
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

namespace {

// The record of a table under this number, or null.
template <class Record> const Record* find(const std::map<int, Record>& table, int no) {
    const auto found = table.find(no);
    return found == table.end() ? nullptr : &found->second;
}

// Adds members, with their places in `position` of the nodes; false when one names what is not
// there.
bool add_members(const InputReader& reader, const std::map<int, int>& position, SolverFrame& frame,
                 InputPrint& print) {
    for (const InputReader::Member& member : reader.members) {
        const InputPrint::Place* start = find(reader.nodes, member.start);
        const InputPrint::Place* end = find(reader.nodes, member.end);
        const InputPrint::Section* section = find(reader.sections, member.section);
        if (start == nullptr || end == nullptr || section == nullptr) {
            return false;
        }
        const InputPrint::Material* material = find(reader.materials, member.material);
        print.add_member(
            *start, *end, InputPrint::hash_of(*section),
            InputPrint::hash_of(material == nullptr ? InputPrint::Material{} : *material),
            member.turn);
        frame.members.push_back(
            {section->A, std::hypot(end->x - start->x, end->y - start->y, end->z - start->z)});
        frame.shape.bars.push_back({static_cast<int>(frame.members.size()),
                                    position.at(member.start), position.at(member.end)});
    }
    return true;
}

void add_roles(const InputReader& reader, SolverFrame& frame, InputPrint& print) {
    const auto place = [&reader](int no) {
        const InputPrint::Place* at = find(reader.nodes, no);
        return at == nullptr ? InputPrint::Place{} : *at;
    };
    for (const Fix& fix : reader.fixes) {
        const InputPrint::Place at = place(fix.no);
        print.add_fix(at, fix.ix != 0, fix.iy != 0, fix.iz != 0);
        frame.fix.push_back(
            {fix, static_cast<float>(at.x), static_cast<float>(at.y), static_cast<float>(at.z)});
    }
    for (const Load& load : reader.loads) {
        const InputPrint::Place at = place(load.no);
        print.add_load(at, load.fx, load.fy, load.fz);
        frame.load.push_back(
            {load, static_cast<float>(at.x), static_cast<float>(at.y), static_cast<float>(at.z)});
    }
    if (!reader.extras.empty()) {
        print.add_words(reader.extras);
    }
}

} // namespace

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
    InputPrint print;
    std::map<int, int> position;
    for (const auto& [no, at] : reader.nodes) {
        position[no] = static_cast<int>(frame.shape.nodes.size());
        frame.shape.nodes.push_back({no, at.x, at.y, at.z});
        print.add_node(at);
    }
    if (!add_members(reader, position, frame, print)) {
        return {};
    }
    add_roles(reader, frame, print);
    frame.print = print.print();
    return frame;
}

} // namespace kigumi
