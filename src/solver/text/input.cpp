#include "solver/text/input.h"

#include "solver/text/records.h"

#include <algorithm>

namespace frameslv {

namespace {

// The fewest items of a record of each block; names may be left out.
constexpr size_t member_items = 6;
constexpr size_t section_items = 5;
constexpr size_t material_items = 4;
constexpr size_t node_items = 4;
constexpr size_t support_items = 2;
constexpr size_t load_items = 1 + dof_count;

// Reads the blocks one after the other; every function returns false with the fault noted.
class InputReader {
  public:
    InputReader(std::string_view text, Model& model) : records_(text), model_(model) {}

    bool read() {
        return read_levels("X レベル", model_.Xval) && read_levels("Y レベル", model_.Yval) &&
               read_levels("Z レベル", model_.Zval) && read_members() && read_sections() &&
               read_materials() && read_nodes() && read_supports() && read_loads() &&
               records_.expect_end();
    }
    const Fault& fault() const { return records_.fault(); }

  private:
    bool read_levels(const char* block, std::vector<double>& levels);
    bool read_members();
    bool read_sections();
    bool read_materials();
    bool read_nodes();
    bool read_supports();
    bool read_loads();

    bool read_count(const char* block, size_t items, int& count);
    // Takes field 0 as a number 1..size that has not come before.
    bool read_own_number(const char* block, std::vector<bool>& seen, int& no);
    bool read_node_number(const char* block, size_t field, int& no);
    bool read_values(size_t first, std::initializer_list<double*> values);
    bool read_support_digits(Node& node);

    RecordReader records_;
    Model& model_;
    int N_Node_ = 0; // as told by the member block
};

bool InputReader::read_count(const char* block, size_t items, int& count) {
    return records_.next(block, 1, 1) && records_.integer(0, count) &&
           records_.expect_count(block, count, items);
}

bool InputReader::read_own_number(const char* block, std::vector<bool>& seen, int& no) {
    if (!records_.integer(0, no))
        return false;
    if (no < 1 || static_cast<size_t>(no) > seen.size())
        return records_.fail(
            text_of("%sの番号 %d は 1～%zu の範囲にありません", block, no, seen.size()));
    if (seen[index_of(no)])
        return records_.fail(text_of("%sの番号 %d が二度あります", block, no));
    seen[index_of(no)] = true;
    return true;
}

bool InputReader::read_node_number(const char* block, size_t field, int& no) {
    if (!records_.integer(field, no))
        return false;
    if (no < 1 || static_cast<size_t>(no) > model_.node.size())
        return records_.fail(text_of("%sの節点番号 %d の節点はありません", block, no));
    return true;
}

bool InputReader::read_values(size_t first, std::initializer_list<double*> values) {
    for (double* value : values)
        if (!records_.real(first++, *value))
            return false;
    return true;
}

bool InputReader::read_levels(const char* block, std::vector<double>& levels) {
    int count = 0;
    if (!records_.next(block, 1, RecordReader::any_count) || !records_.integer(0, count) ||
        !records_.expect_count(block, count, 1))
        return false;
    size_t field = 1;
    while (levels.size() < static_cast<size_t>(count)) {
        if (field == records_.size()) {
            if (!records_.next(block, 1, RecordReader::any_count))
                return false;
            field = 0;
        }
        double value = 0.0;
        if (!records_.real(field++, value))
            return false;
        levels.push_back(value);
    }
    if (field != records_.size())
        return records_.fail(text_of("%sの個数 %d より多くの値があります", block, count));
    return true;
}

bool InputReader::read_members() {
    constexpr const char* block = "部材";
    int N_Beam = 0;
    if (!records_.next(block, 2, 2) || !records_.integer(0, N_Node_) ||
        !records_.integer(1, N_Beam) || !records_.expect_count("節点", N_Node_, node_items) ||
        !records_.expect_count(block, N_Beam, member_items))
        return false;
    model_.member.resize(static_cast<size_t>(N_Beam));
    std::vector<bool> seen(model_.member.size());
    for (int i = 0; i < N_Beam; i++) {
        int no = 0;
        // Six numbers, then the names of both ends, either of which may be blank.
        if (!records_.next(block, member_items, member_items + 2) ||
            !records_.expect_names(block, member_items) || !read_own_number(block, seen, no))
            return false;
        Member& member = model_.member[index_of(no)];
        if (!records_.integer(1, member.noi) || !records_.integer(2, member.noj) ||
            !records_.integer(3, member.size) || !records_.integer(4, member.mat) ||
            !records_.real(5, member.angle))
            return false;
    }
    return true;
}

bool InputReader::read_sections() {
    constexpr const char* block = "断面";
    int count = 0;
    if (!read_count(block, section_items, count))
        return false;
    model_.section.resize(static_cast<size_t>(count));
    std::vector<bool> seen(model_.section.size());
    for (int i = 0; i < count; i++) {
        int no = 0;
        if (!records_.next(block, section_items, section_items) ||
            !read_own_number(block, seen, no))
            return false;
        Section& section = model_.section[index_of(no)];
        if (!read_values(1, {&section.Iy, &section.Iz, &section.A, &section.J}))
            return false;
    }
    return true;
}

bool InputReader::read_materials() {
    constexpr const char* block = "材料";
    int count = 0;
    if (!read_count(block, material_items, count))
        return false;
    model_.material.resize(static_cast<size_t>(count));
    std::vector<bool> seen(model_.material.size());
    for (int i = 0; i < count; i++) {
        int no = 0;
        if (!records_.next(block, material_items, material_items) ||
            !read_own_number(block, seen, no))
            return false;
        Material& material = model_.material[index_of(no)];
        if (!read_values(1, {&material.E, &material.poisson, &material.density}))
            return false;
    }
    return true;
}

bool InputReader::read_nodes() {
    constexpr const char* block = "節点";
    int count = 0;
    if (!read_count(block, node_items, count))
        return false;
    if (count != N_Node_)
        return records_.fail(
            text_of("節点の数 %d が部材の見出し行の節点数 %d と合いません", count, N_Node_));
    model_.node.resize(static_cast<size_t>(count));
    std::vector<bool> seen(model_.node.size());
    for (int i = 0; i < count; i++) {
        int no = 0;
        if (!records_.next(block, node_items, node_items + 1) ||
            !records_.expect_names(block, node_items) || !read_own_number(block, seen, no))
            return false;
        Node& node = model_.node[index_of(no)];
        if (!read_values(1, {&node.at.x, &node.at.y, &node.at.z}))
            return false;
        if (records_.size() > node_items)
            node.name = records_.field(node_items);
    }
    return true;
}

bool InputReader::read_support_digits(Node& node) {
    const std::string_view digits = records_.field(1);
    const bool binary =
        std::all_of(digits.begin(), digits.end(), [](char c) { return c == '0' || c == '1'; });
    if (digits.size() != dof_count || !binary)
        return records_.fail(text_of("支点の拘束記号「%s」は 0 と 1 の 6 桁ではありません",
                                     printable(digits).c_str()));
    for (size_t i = 0; i < dof_count; i++)
        node.held[i] = node.held[i] || digits[i] == '1';
    return true;
}

bool InputReader::read_supports() {
    constexpr const char* block = "支点";
    if (!read_count(block, support_items, model_.N_Fix))
        return false;
    for (int i = 0; i < model_.N_Fix; i++) {
        int no = 0;
        if (!records_.next(block, support_items, support_items) ||
            !read_node_number(block, 0, no) || !read_support_digits(model_.node[index_of(no)]))
            return false;
    }
    return true;
}

bool InputReader::read_loads() {
    constexpr const char* block = "荷重";
    if (!read_count(block, load_items, model_.N_Load))
        return false;
    for (int i = 0; i < model_.N_Load; i++) {
        // The node's name, which may be blank; its number; six components.
        if (!records_.next(block, load_items, load_items + 1, true))
            return false;
        const size_t first = records_.size() - load_items;
        int no = 0;
        if (!read_node_number(block, first, no))
            return false;
        Node& node = model_.node[index_of(no)];
        // Eight items of which the first is a number are more likely a decimal comma than a name.
        if (first == 1 && records_.is_real(0) && records_.field(0) != node.name)
            return records_.fail("荷重の項目の数が合いません (節点名か小数点を確かめてください)");
        for (size_t k = 0; k < dof_count; k++) {
            double value = 0.0;
            if (!records_.real(first + 1 + k, value))
                return false;
            node.load[k] += value;
        }
    }
    return true;
}

} // namespace

Fault read_input(std::string_view text, Model& model) {
    InputReader reader(text, model);
    return reader.read() ? Fault{} : reader.fault();
}

} // namespace frameslv
