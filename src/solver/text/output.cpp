#include "solver/text/output.h"

#include "solver/text/digits.h"
#include "solver/text/signals.h"

#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <fstream>
#include <numbers>
#include <string_view>
#include <system_error>
#include <unordered_set>

namespace frameslv {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view line_end = "\r\n";
constexpr size_t compared_bytes = 9; // of a name, by the readers
constexpr size_t longest_name = 31;  // the readers' field has 32 bytes with its end

// A text of right-aligned columns.
class Columns {
  public:
    void reserve(size_t bytes) { text_.reserve(bytes); }

    void integer(int value) {
        char digits[12];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        put({digits, static_cast<size_t>(end - digits)}, 6);
    }
    // All digits that tell the value from its neighbours, for coordinates.
    void exact(double value) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, readable(value)).ptr;
        put({digits, static_cast<size_t>(end - digits)}, 14);
    }
    // Nine significant digits, two more than single precision holds.
    void real(double value) {
        char digits[most_digits];
        char* end = write_digits(digits, readable(value));
        put({digits, static_cast<size_t>(end - digits)}, 16);
    }
    void name(const std::string& word) { put(word, 10); }
    void end_line() { text_ += line_end; }

    std::string take() { return std::move(text_); }

  private:
    // What single precision rounds to zero, and minus zero, goes out as zero: a reader in single
    // precision might refuse it.
    static double readable(double value) { return std::abs(value) < FLT_MIN ? 0.0 : value; }

    void put(std::string_view word, size_t width) {
        text_.append(word.size() < width ? width - word.size() : 1, ' ');
        text_ += word;
    }

    std::string text_;
};

void add_levels(Columns& text, const std::vector<double>& levels) {
    text.integer(static_cast<int>(levels.size()));
    text.end_line();
    for (const double level : levels) {
        text.exact(level);
        text.end_line();
    }
}

std::string level_text(const Model& model) {
    Columns text;
    add_levels(text, model.Xval);
    add_levels(text, model.Yval);
    add_levels(text, model.Zval);
    return text.take();
}

void add_member(Columns& text, const Member& member, int no, const std::vector<std::string>& names,
                const EndForces& end_force) {
    const SectionForces s = section_forces(end_force);
    text.integer(no);
    for (const int node : {member.noi, member.noj}) {
        text.integer(node);
        text.integer(node);
        text.name(names[index_of(node)]);
    }
    text.real(std::abs(s.p2) > std::abs(s.p1) ? s.p2 : s.p1);
    text.end_line();
    for (const double value : {s.p1, s.p2, s.xv1, s.xv2, s.yv1, s.yv2})
        text.real(value);
    text.end_line();
    // The readers turn the sign of ym1.
    for (const double value : {s.xm1, s.xm2, -s.ym1, s.ym2, s.zm})
        text.real(value);
    text.end_line();
}

std::string listing_text(const Model& model, const Solution& solution,
                         const std::vector<std::string>& names) {
    constexpr size_t node_bytes = 80;
    constexpr size_t member_bytes = 256;
    Columns text;
    text.reserve(model.node.size() * node_bytes + model.member.size() * member_bytes);
    text.integer(static_cast<int>(model.node.size()));
    text.end_line();
    for (size_t i = 0; i < model.node.size(); i++) {
        text.integer(number_of(i));
        text.integer(number_of(i));
        text.exact(model.node[i].at.x);
        text.exact(model.node[i].at.y);
        text.exact(model.node[i].at.z);
        text.name(names[i]);
        text.end_line();
    }
    text.integer(static_cast<int>(model.member.size()));
    text.end_line();
    for (size_t i = 0; i < model.member.size(); i++)
        add_member(text, model.member[i], number_of(i), names, solution.end_force[i]);
    return text.take();
}

constexpr size_t displacement_bytes = 128; // of a node

void add_displacements(Columns& text, const NodeVectors& moved,
                       const std::vector<std::string>& names) {
    for (size_t i = 0; i < names.size(); i++) {
        text.integer(number_of(i));
        text.integer(number_of(i));
        text.name(names[i]);
        for (const double value : moved[i])
            text.real(value);
        text.end_line();
    }
}

std::string displacement_text(const Solution& solution, const std::vector<std::string>& names) {
    Columns text;
    text.reserve(names.size() * displacement_bytes);
    text.integer(static_cast<int>(names.size()));
    text.end_line();
    add_displacements(text, solution.moved, names);
    return text.take();
}

// The counts of modes and nodes; then of each mode its number, its values and its shape.
template <class Values>
std::string mode_text(const Model& model, const std::vector<Mode>& modes, Values values) {
    const std::vector<std::string> names = result_names(model);
    Columns text;
    text.reserve(modes.size() * (names.size() + 1) * displacement_bytes);
    text.integer(static_cast<int>(modes.size()));
    text.integer(static_cast<int>(names.size()));
    text.end_line();
    for (size_t k = 0; k < modes.size(); k++) {
        text.integer(number_of(k));
        for (const double value : values(modes[k].value))
            text.real(value);
        text.end_line();
        add_displacements(text, modes[k].shape, names);
    }
    return text.take();
}

struct ResultFile {
    const char* name;
    const char* temporary;
};
constexpr ResultFile result_files[] = {
    {"frameslv.zlv", "frameslv.zl~"}, {"frameslv.lst", "frameslv.ls~"},
    {"frameslv.dsp", "frameslv.ds~"}, {"frameslv.mod", "frameslv.mo~"},
    {"frameslv.buc", "frameslv.bu~"}, {"frameslv.not", "frameslv.no~"}};
constexpr const char* error_file = "frameslv.err";

// A link of that name is replaced, not followed.
bool write_file(const fs::path& path, std::string_view bytes) {
    std::error_code ignored;
    fs::remove(path, ignored);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return !file.fail();
}

Fault write_fault(const char* name) {
    return {Exit::no_output, text_of("%s を書けません", name)};
}

void remove_temporaries(const fs::path& folder) {
    std::error_code ignored;
    for (const ResultFile& file : result_files)
        fs::remove(folder / file.temporary, ignored);
}

} // namespace

std::vector<std::string> result_names(const Model& model) {
    std::unordered_set<std::string> taken;
    std::vector<std::string> names;
    names.reserve(model.node.size());
    taken.reserve(model.node.size());
    for (const Node& node : model.node) {
        const bool named =
            !node.name.empty() && taken.insert(node.name.substr(0, compared_bytes)).second;
        names.push_back(named ? node.name.substr(0, longest_name) : std::string());
    }
    for (size_t i = 0; i < names.size(); i++)
        for (int number = number_of(i); names[i].empty(); number++) {
            const std::string made = text_of("N%08d", number);
            if (taken.insert(made.substr(0, compared_bytes)).second)
                names[i] = made;
        }
    return names;
}

SectionForces section_forces(const EndForces& forces) {
    const Vector6& i = forces.i;
    const Vector6& j = forces.j;
    SectionForces s{};
    s.p1 = -i(0);
    s.p2 = j(0);
    s.xv1 = -i(1);
    s.xv2 = j(1);
    s.yv1 = -i(2);
    s.yv2 = j(2);
    s.xm1 = -i(4);
    s.xm2 = j(4);
    s.ym1 = -i(5);
    s.ym2 = j(5);
    s.zm = j(3);
    return s;
}

void add_result_texts(const Model& model, const Solution& solution, ResultTexts& texts) {
    const std::vector<std::string> names = result_names(model);
    texts.zlv = level_text(model);
    texts.lst = listing_text(model, solution, names);
    texts.dsp = displacement_text(solution, names);
}

std::string natural_mode_text(const Model& model, const std::vector<Mode>& modes) {
    return mode_text(model, modes, [](double circular) {
        const double frequency = circular / (2.0 * std::numbers::pi);
        return std::array<double, 3>{frequency, circular, 1.0 / frequency};
    });
}

std::string buckling_mode_text(const Model& model, const std::vector<Mode>& modes) {
    return mode_text(model, modes, [](double factor) { return std::array<double, 1>{factor}; });
}

const char* const* temporary_names() {
    static constexpr const char* names[] = {result_files[0].temporary,
                                            result_files[1].temporary,
                                            result_files[2].temporary,
                                            result_files[3].temporary,
                                            result_files[4].temporary,
                                            result_files[5].temporary,
                                            nullptr};
    static_assert(std::size(names) == std::size(result_files) + 1);
    return names;
}

Fault remove_results(const fs::path& folder) {
    const EndsWait wait;
    remove_temporaries(folder);
    Fault fault;
    for (const ResultFile& file : result_files) {
        std::error_code error;
        fs::remove(folder / file.name, error);
        if (error)
            fault = {Exit::no_output, text_of("前の結果 %s を消せません", file.name)};
    }
    return fault;
}

Fault write_results(const fs::path& folder, const ResultTexts& texts) {
    const std::string* bytes[] = {&texts.zlv, &texts.lst, &texts.dsp,
                                  &texts.mod, &texts.buc, &texts.notes};
    static_assert(std::size(bytes) == std::size(result_files));
    std::error_code error;
    for (size_t i = 0; i < std::size(result_files); i++) {
        const ResultFile& file = result_files[i];
        if (fs::is_directory(folder / file.name, error) ||
            (!bytes[i]->empty() && !write_file(folder / file.temporary, *bytes[i]))) {
            remove_temporaries(folder);
            return write_fault(file.name);
        }
    }
    const EndsWait wait;
    for (size_t i = 0; i < std::size(result_files); i++) {
        const ResultFile& file = result_files[i];
        if (bytes[i]->empty())
            fs::remove(folder / file.name, error);
        else
            fs::rename(folder / file.temporary, folder / file.name, error);
        if (error) {
            remove_results(folder);
            return write_fault(file.name);
        }
    }
    fs::remove(folder / error_file, error);
    return {};
}

Fault write_notes(const fs::path& folder, const Notes& notes) {
    const ResultFile& file = result_files[std::size(result_files) - 1];
    std::error_code error;
    const bool written = write_file(folder / file.temporary, notes_text(notes));
    if (written)
        fs::rename(folder / file.temporary, folder / file.name, error);
    if (written && !error)
        return {};
    remove_temporaries(folder);
    return write_fault(file.name);
}

void write_error_file(const fs::path& folder, const std::string& text) {
    write_file(folder / error_file, text + "\r\n");
}

} // namespace frameslv
