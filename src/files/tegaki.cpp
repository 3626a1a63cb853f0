#include "files/tegaki.h"

#include "base/codepage.h"
#include "base/message.h"
#include "base/scan.h"
#include "model/nodes.h"
#include "model/sketch.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace kigumi {

namespace {

SheetPoint sheet_point(const Model& model, const SketchPlaces& sketch_places, int position) {
    if (sketch_places.OnSaveOld == 1 && position < sketch_places.N_OldNode) {
        return sketch_places.old_node[position];
    }
    return {model.node[position].X, model.node[position].Y};
}

int refuse_open(const std::string& reason) {
    return refuse("Can't open TEGAKI_FILE", reason);
}

} // namespace

void save_old_node(const Model& model, SketchPlaces& sketch_places) {
    sketch_places.N_OldNode = 0;
    sketch_places.OnSaveOld = model.N_Node > 0 ? 1 : sketch_places.OnSaveOld;
    append_old_node(model, sketch_places);
}

void append_old_node(const Model& model, SketchPlaces& sketch_places) {
    if (sketch_places.OnSaveOld == 0) {
        return;
    }
    for (int i = sketch_places.N_OldNode; i < model.N_Node; ++i) {
        sketch_places.old_node[i] = {model.node[i].X, model.node[i].Y};
    }
    sketch_places.N_OldNode = model.N_Node;
}

void load_old_node(Model& model, const SketchPlaces& sketch_places) {
    if (sketch_places.OnSaveOld == 0) {
        return;
    }
    for (int i = 0; i < std::min<int>(sketch_places.N_OldNode, model.N_Node); ++i) {
        model.node[i].X = sketch_places.old_node[i].X;
        model.node[i].Y = sketch_places.old_node[i].Y;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        if (names_a_node(model, beam.noi)) {
            beam.XS = model.node[position_of(beam.noi)].X;
            beam.YS = model.node[position_of(beam.noi)].Y;
        }
        if (names_a_node(model, beam.noj)) {
            beam.XL = model.node[position_of(beam.noj)].X;
            beam.YL = model.node[position_of(beam.noj)].Y;
        }
    }
}

void forget_old_node(SketchPlaces& sketch_places) {
    sketch_places.N_OldNode = 0;
    sketch_places.OnSaveOld = 0;
}

namespace {

// The file separates its fields by blanks and marks names by quotes, so a name can hold neither.
bool is_writable(const char* id) {
    return std::strpbrk(id, " \t\r\n\v\f\"") == nullptr;
}

int refuse_name(const char* what, int no, const char* id) {
    show_message(text_format("%s %d の名前「%s」は空白か引用符を含むため保存できません。"
                             "名前を変えてください",
                             what, no, id));
    return -1;
}

int check_names(const Model& model) {
    for (int i = 0; i < model.N_Node; ++i) {
        if (!is_writable(model.node[i].id)) {
            return refuse_name("節点", model.node[i].no, model.node[i].id);
        }
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        if (!is_writable(beam.idi) || !is_writable(beam.idj)) {
            return refuse_name("部材", beam.no, is_writable(beam.idi) ? beam.idj : beam.idi);
        }
    }
    return 0;
}

void write_node(const Model& model, const SketchPlaces& sketch_places, TextWriter& file, int i) {
    const Node& node = model.node[i];
    const SheetPoint at = sheet_point(model, sketch_places, i);
    file.line(" %d \"%s\" %f %f %f %f %f %d", node.no, node.id, node.x, node.y, node.z, at.X, at.Y,
              node.flag);
}

void write_beam(const Model& model, const SketchPlaces& sketch_places, TextWriter& file,
                const Beam& beam) {
    SheetPoint start = {beam.XS, beam.YS};
    SheetPoint end = {beam.XL, beam.YL};
    if (sketch_places.OnSaveOld == 1) {
        start = names_a_node(model, beam.noi)
                    ? sheet_point(model, sketch_places, position_of(beam.noi))
                    : start;
        end = names_a_node(model, beam.noj)
                  ? sheet_point(model, sketch_places, position_of(beam.noj))
                  : end;
    }
    file.line(" %d \"%s\" \"%s\" %d %d %f %f %f %f %f %f %d %d %f %f %f %f %f %f %d", beam.no,
              beam.idi, beam.idj, beam.noi, beam.noj, beam.xs, beam.ys, beam.zs, beam.xl, beam.yl,
              beam.zl, beam.size, beam.mat, beam.haba, beam.atumi, start.X, start.Y, end.X, end.Y,
              beam.flag);
}

} // namespace

int save_tegaki_data(const Model& model, const SketchPlaces& sketch_places,
                     const fs::path& file_name) {
    if (check_names(model) < 0) {
        return -1;
    }
    TextWriter file;
    file.line(" %5d", model.N_Node);
    for (int i = 0; i < model.N_Node; ++i) {
        write_node(model, sketch_places, file, i);
    }
    file.line(" %5d", model.N_Beam);
    for (int i = 0; i < model.N_Beam; ++i) {
        write_beam(model, sketch_places, file, model.beam[i]);
    }
    std::string reason;
    return file.save(file_name, &reason) < 0 ? refuse_open(reason) : 0;
}

namespace {

// Reads a whole file into tables of its own. Every step answers false after setting fault().
class TegakiReader {
  public:
    explicit TegakiReader(std::string_view bytes) : scan_(bytes) {}

    bool read();
    const char* fault() const { return fault_; }
    int line() const { return scan_.line(); }
    const std::vector<Node>& nodes() const { return nodes_; }
    const std::vector<Beam>& beams() const { return beams_; }

  private:
    bool refuse(const char* why) {
        fault_ = why;
        return false;
    }
    bool read_count(int capacity, int& count, const char* why);
    bool read_name(char (&field)[name_bytes]);
    bool read_node(int position);
    bool read_beam(int position);

    bool read_int(int& value) {
        return scan_.next(value) || refuse("整数であるべき項目がありません");
    }
    template <class... Floats> bool read_floats(Floats&... values) {
        return (scan_.next(values) && ...) || refuse("数値であるべき項目がありません");
    }
    // A member's section or material number: -1 or one of its table.
    bool read_reference(int& value, int capacity) {
        return read_int(value) && (value == -1 || (value >= 1 && value <= capacity) ||
                                   refuse("断面番号・材料番号が範囲外です"));
    }
    bool read_end(int& no) {
        return read_int(no) && ((no >= 1 && no <= static_cast<int>(nodes_.size())) ||
                                refuse("部材端の節点番号が範囲外です"));
    }

    Scanner scan_;
    std::vector<Node> nodes_;
    std::vector<Beam> beams_;
    const char* fault_ = nullptr;
};

bool TegakiReader::read_count(int capacity, int& count, const char* why) {
    return read_int(count) && ((count >= 0 && count <= capacity) || refuse(why));
}

bool TegakiReader::read_name(char (&field)[name_bytes]) {
    std::string_view token;
    if (!scan_.next(token) || token.size() < 2 || token.front() != '"' || token.back() != '"') {
        return refuse("引用符で囲まれた名前がありません（名前に空白は使えません）");
    }
    std::string bytes(token);
    std::erase(bytes, '"');
    const auto name = from_cp932(bytes);
    if (!name || name->find('\0') != std::string::npos) {
        return refuse("名前の文字を読めません");
    }
    if (name->size() >= name_bytes) {
        return refuse("名前が長すぎます");
    }
    set_name(field, name->c_str());
    return true;
}

bool TegakiReader::read_node(int position) {
    Node node{};
    if (!read_int(node.no)) {
        return false;
    }
    if (node.no != number_at(position)) {
        return refuse("節点番号が順番どおりではありません");
    }
    if (!read_name(node.id) || !read_floats(node.x, node.y, node.z, node.X, node.Y) ||
        !read_int(node.flag)) {
        return false;
    }
    if ((node.flag < 0 || node.flag > 2) && node.flag != role_found) {
        return refuse("節点の状態が範囲外です");
    }
    nodes_.push_back(node);
    return true;
}

bool TegakiReader::read_beam(int position) {
    Beam beam{};
    if (!read_int(beam.no)) {
        return false;
    }
    if (beam.no != number_at(position)) {
        return refuse("部材番号が順番どおりではありません");
    }
    if (!read_name(beam.idi) || !read_name(beam.idj) || !read_end(beam.noi) ||
        !read_end(beam.noj) || !read_floats(beam.xs, beam.ys, beam.zs, beam.xl, beam.yl, beam.zl) ||
        !read_reference(beam.size, size_capacity) || !read_reference(beam.mat, mat_capacity) ||
        !read_floats(beam.haba, beam.atumi, beam.XS, beam.YS, beam.XL, beam.YL) ||
        !read_int(beam.flag)) {
        return false;
    }
    if (beam.flag < 0 || beam.flag > 2) {
        return refuse("部材の状態が範囲外です");
    }
    beams_.push_back(beam);
    return true;
}

bool TegakiReader::read() {
    int count = 0;
    if (!read_count(node_capacity, count, "節点数が範囲外です")) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (!read_node(i)) {
            return false;
        }
    }
    if (!read_count(beam_capacity, count, "部材数が範囲外です")) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (!read_beam(i)) {
            return false;
        }
    }
    return scan_.at_end() || refuse("部材の後に余分なデータがあります");
}

} // namespace

int load_tegaki_data(Model& model, SketchPlaces& sketch_places, const fs::path& file_name) {
    std::string reason;
    std::optional<std::string> bytes = read_file(file_name, &reason);
    if (!bytes) {
        return refuse_open(reason);
    }
    constexpr char end_mark = 0x1A; // old editors close a text with it
    if (bytes->ends_with(end_mark)) {
        bytes->pop_back();
    }
    TegakiReader reader(*bytes);
    if (!reader.read()) {
        show_message(text_format("手書データを読めません（%s %d 行目: %s）",
                                 utf8_of(file_name.filename()).c_str(), reader.line(),
                                 reader.fault()));
        return -1;
    }
    reset_model(model);
    std::copy(reader.nodes().begin(), reader.nodes().end(), model.node.begin());
    std::copy(reader.beams().begin(), reader.beams().end(), model.beam.begin());
    model.N_Node = static_cast<std::int32_t>(reader.nodes().size());
    model.N_Beam = static_cast<std::int32_t>(reader.beams().size());
    forget_node_index(model);
    forget_old_node(sketch_places);
    sketch_places.OnSaveOld = 1;
    append_old_node(model, sketch_places);
    return 0;
}

} // namespace kigumi
