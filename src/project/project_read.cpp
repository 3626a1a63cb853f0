#include "base/check.h"
#include "base/format.h"
#include "base/message.h"
#include "model/names.h"
#include "model/nodes.h"
#include "model/validate.h"
#include "project/json_tree.h"
#include "project/project_fault.h"
#include "project/project_fields.h"
#include "project/project_file.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace kigumi {

namespace {

constexpr const char* cannot_read = "プロジェクトを読めません";

// Reads the tree into a project of its own. Every function that answers bool answers false after
// setting the fault.
class Reader {
  public:
    explicit Reader(Project& to) : to_(to), model_(to.model) {}

    bool read(const JsonValue& root);
    Fault fault;

  private:
    // A step of the way to the value that is being read.
    struct Step {
        const char* key; // null: a position in an array
        std::size_t index;
    };

    bool refuse(std::string_view why) {
        fault = {cannot_read, pointer() + ": " + std::string(why)};
        return false;
    }
    std::string pointer() const;

    // Reads `value` with the step to it on the way.
    template <class Read> bool at(Step step, const JsonValue& value, Read read) {
        way_.push_back(step);
        const bool good = read(value);
        way_.pop_back();
        return good;
    }

    bool take(const JsonValue& value, float& number);
    bool take(const JsonValue& value, double& number);
    bool take(const JsonValue& value, bool& truth);
    bool take(const JsonValue& value, std::int32_t& number, std::int64_t lowest,
              std::int64_t highest);
    template <std::size_t Size> bool take(const JsonValue& value, char (&name)[Size]) {
        return take_name(value, name, Size);
    }
    bool take_name(const JsonValue& value, char* name, std::size_t size);
    // A whole number within bounds, as an item of a row.
    struct Bounded {
        std::int32_t& number;
        std::int64_t lowest, highest;
    };
    bool take(const JsonValue& value, const Bounded& item) {
        return take(value, item.number, item.lowest, item.highest);
    }

    bool is_array(const JsonValue& value, std::size_t least, std::size_t most);
    // A row that begins with these items; more may follow.
    template <class... Items> bool head(const JsonValue& row, Items&&... items) {
        std::size_t next = 0;
        return (item(row, next++, items) && ...);
    }
    template <class Item> bool item(const JsonValue& row, std::size_t index, Item&& into) {
        return at({nullptr, index}, row.items[index],
                  [&](const JsonValue& value) { return take(value, into); });
    }
    // An array of rows into a table.
    template <class ReadRow>
    bool rows(const JsonValue& array, int capacity, std::int32_t& count, ReadRow read_row) {
        if (!is_array(array, 0, static_cast<std::size_t>(capacity))) {
            return false;
        }
        count = static_cast<std::int32_t>(array.items.size());
        for (int i = 0; i < count; ++i) {
            const auto index = static_cast<std::size_t>(i);
            if (!at({nullptr, index}, array.items[index],
                    [&](const JsonValue& row) { return read_row(row, i); })) {
                return false;
            }
        }
        return true;
    }
    template <class Columns>
    bool columns(const JsonValue& array, int capacity, std::int32_t& count, Columns all) {
        return rows(array, capacity, count, [&](const JsonValue& row, int i) {
            if (!is_array(row, all.size(), all.size())) {
                return false;
            }
            for (std::size_t k = 0; k < all.size(); ++k) {
                if (!item(row, k, all[k][i])) {
                    return false;
                }
            }
            return true;
        });
    }

    // The field of an object under this key.
    template <class Read> bool field(const JsonValue& object, const char* key, Read read) {
        const auto found = std::find(object.keys.begin(), object.keys.end(), key);
        if (found == object.keys.end()) {
            return refuse(std::string("項目「") + key + "」がありません");
        }
        ++fields_;
        return at({key, 0}, object.items[static_cast<std::size_t>(found - object.keys.begin())],
                  read);
    }
    // An object whose fields `read_fields` reads, and that has no others.
    template <class ReadFields> bool object(const JsonValue& value, ReadFields read_fields) {
        if (value.type != JsonValue::Type::object) {
            return refuse("項目の集まり { } ではありません");
        }
        const std::size_t outside = fields_;
        fields_ = 0;
        const bool good = read_fields();
        const bool known = fields_ == value.keys.size();
        fields_ = outside;
        return good && (known || refuse("知らない項目があります"));
    }
    template <class Visit> bool single_fields(const JsonValue& value, Visit visit) {
        return object(value, [&] {
            return visit([&](const char* key, auto& into, auto... bounds) {
                return field(value, key, [&](const JsonValue& each) {
                    return take(each, into, static_cast<std::int64_t>(bounds)...);
                });
            });
        });
    }

    bool read_head(const JsonValue& root);
    bool read_settings(const JsonValue& root);
    bool read_tables(const JsonValue& root);
    bool read_stage(const JsonValue& value);
    bool read_levels(const JsonValue& value);
    bool read_node(const JsonValue& row, int i);
    bool read_beam(const JsonValue& row, int i);
    bool read_edit(const JsonValue& row);
    bool read_edited(const JsonValue& row, std::size_t index, std::uint8_t& edited,
                     float (&values)[3]);
    bool read_fix(const JsonValue& row, int i);
    bool read_load(const JsonValue& row, int i);
    bool read_found_roles(const JsonValue& array);
    bool read_sketch(const JsonValue& root);
    template <class Record> bool read_role_name(const JsonValue& row, Record& record);

    Bounded node_number(std::int32_t& number) const { return {number, 1, model_.N_Node}; }
    // The number of a section or material: -1 or 0 while there is none, in a sketch that of an
    // earlier state. The check of the whole project knows how far the table must reach.
    static Bounded table_number(std::int32_t& number, int capacity) {
        return {number, -1, capacity};
    }

    Project& to_;
    Model& model_;
    std::vector<Step> way_;
    std::size_t fields_ = 0; // read of the object at hand
};

std::string Reader::pointer() const {
    std::string text;
    for (const Step& step : way_) {
        text += '/';
        text += step.key != nullptr ? std::string(step.key) : std::to_string(step.index);
    }
    return text.empty() ? "/" : text;
}

bool Reader::take(const JsonValue& value, float& number) {
    number = value.single;
    return value.type == JsonValue::Type::number
               ? std::isfinite(number) || refuse("数値が大きすぎるか小さすぎます")
               : refuse("数値ではありません");
}

bool Reader::take(const JsonValue& value, double& number) {
    number = value.number;
    return value.type == JsonValue::Type::number
               ? std::isfinite(number) || refuse("数値が大きすぎます")
               : refuse("数値ではありません");
}

bool Reader::take(const JsonValue& value, bool& truth) {
    truth = value.truth;
    return value.type == JsonValue::Type::boolean || refuse("true か false ではありません");
}

bool Reader::take(const JsonValue& value, std::int32_t& number, std::int64_t lowest,
                  std::int64_t highest) {
    if (value.type != JsonValue::Type::number || !value.whole) {
        return refuse("整数ではありません");
    }
    if (!(value.number >= static_cast<double>(lowest) &&
          value.number <= static_cast<double>(highest))) {
        return refuse("番号か値が範囲外です");
    }
    number = static_cast<std::int32_t>(value.number);
    return true;
}

// The parser has seen to it that texts are UTF-8.
bool Reader::take_name(const JsonValue& value, char* name, std::size_t size) {
    if (value.type != JsonValue::Type::text) {
        return refuse("文字列ではありません");
    }
    if (value.text.find('\0') != std::string::npos) {
        return refuse("名前に使えない文字があります");
    }
    if (value.text.size() >= size) {
        return refuse("名前が長すぎます");
    }
    std::memset(name, 0, size);
    std::memcpy(name, value.text.data(), value.text.size());
    return true;
}

bool Reader::is_array(const JsonValue& value, std::size_t least, std::size_t most) {
    if (value.type != JsonValue::Type::array) {
        return refuse("並び [ ] ではありません");
    }
    const std::size_t size = value.items.size();
    return (size >= least && size <= most) || refuse(text_format("個数 %zu が範囲外です", size));
}

bool Reader::read_stage(const JsonValue& value) {
    for (int stage = 0; stage < static_cast<int>(std::size(stage_names)); ++stage) {
        if (value.type == JsonValue::Type::text && value.text == stage_names[stage]) {
            to_.stage = static_cast<Stage>(stage);
            return true;
        }
    }
    return refuse("知らない段階です");
}

bool Reader::read_levels(const JsonValue& value) {
    return object(value, [&] {
        const auto levels = [&](const char* key, auto& table, std::int32_t& count) {
            return field(value, key, [&](const JsonValue& array) {
                return rows(array, level_capacity, count,
                            [&](const JsonValue& level, int i) { return take(level, table[i]); });
            });
        };
        return levels("x", model_.Xval, model_.N_X) && levels("y", model_.Yval, model_.N_Y) &&
               levels("z", model_.Zval, model_.N_Z);
    });
}

bool Reader::read_node(const JsonValue& row, int i) {
    constexpr std::size_t plain = 5;
    constexpr std::size_t drawn = 7;
    Node& node = model_.node[i];
    node.no = number_at(i);
    if (!is_array(row, plain, drawn) ||
        !head(row, node.id, node.x, node.y, node.z, Bounded{node.flag, 0, role_found})) {
        return false;
    }
    if (row.items.size() != plain && !(is_array(row, drawn, drawn) && item(row, plain, node.X) &&
                                       item(row, plain + 1, node.Y))) {
        return false;
    }
    return node.flag <= role_loaded || node.flag == role_found || refuse("節点の状態が範囲外です");
}

bool Reader::read_beam(const JsonValue& row, int i) {
    constexpr std::size_t plain = 8;
    constexpr std::size_t whole = 20;
    constexpr int data_set = 2;
    Beam& beam = model_.beam[i];
    beam.no = number_at(i);
    if (!is_array(row, plain, whole) ||
        !head(row, node_number(beam.noi), node_number(beam.noj), beam.haba, beam.atumi,
              Bounded{beam.kind, 0, kind_count - 1}, table_number(beam.size, size_capacity),
              table_number(beam.mat, mat_capacity), Bounded{beam.flag, 0, data_set})) {
        return false;
    }
    if (row.items.size() != plain) {
        std::int32_t noi = 0;
        std::int32_t noj = 0;
        float passed = 0.0f;
        std::int32_t number = 0;
        const Bounded any{number, any_lowest, any_highest};
        return is_array(row, whole, whole) &&
               head(row, node_number(noi), node_number(noj), passed, passed, any, any, any, any,
                    beam.idi, beam.idj, beam.xs, beam.ys, beam.zs, beam.xl, beam.yl, beam.zl,
                    beam.XS, beam.YS, beam.XL, beam.YL);
    }
    const Node& start = model_.node[position_of(beam.noi)];
    const Node& end = model_.node[position_of(beam.noj)];
    set_name(beam.idi, start.id);
    set_name(beam.idj, end.id);
    beam.xs = start.x;
    beam.ys = start.y;
    beam.zs = start.z;
    beam.xl = end.x;
    beam.yl = end.y;
    beam.zl = end.z;
    beam.XS = start.X;
    beam.YS = start.Y;
    beam.XL = end.X;
    beam.YL = end.Y;
    return true;
}

// Three values, or null where they are as they were made.
bool Reader::read_edited(const JsonValue& row, std::size_t index, std::uint8_t& edited,
                         float (&values)[3]) {
    return at({nullptr, index}, row.items[index], [&](const JsonValue& value) {
        edited = value.type == JsonValue::Type::null ? 0 : 1;
        return edited == 0 ||
               (is_array(value, 3, 3) && head(value, values[0], values[1], values[2]));
    });
}

bool Reader::read_edit(const JsonValue& row) {
    std::int32_t no = 0;
    if (!is_array(row, 4, 4) || !head(row, Bounded{no, 1, model_.N_Beam})) {
        return false;
    }
    MemberEdit& edit = model_.edit[position_of(no)];
    float section[3] = {};
    float material[3] = {};
    if (!read_edited(row, 1, edit.section, section) ||
        !read_edited(row, 2, edit.material, material) || !item(row, 3, edit.species)) {
        return false;
    }
    edit.haba = section[0];
    edit.atumi = section[1];
    edit.angle = section[2];
    edit.E = material[0];
    edit.poisson = material[1];
    edit.density = material[2];
    return true;
}

// The name at the end of a row of four, or that of the node.
template <class Record> bool Reader::read_role_name(const JsonValue& row, Record& record) {
    constexpr std::size_t named = 5;
    if (row.items.size() == named) {
        return item(row, named - 1, record.id);
    }
    set_name(record.id, model_.node[position_of(record.no)].id);
    return true;
}

bool Reader::read_fix(const JsonValue& row, int i) {
    Fix& fix = model_.fix[i];
    return is_array(row, 4, 5) &&
           head(row, node_number(fix.no), Bounded{fix.ix, 0, 1}, Bounded{fix.iy, 0, 1},
                Bounded{fix.iz, 0, 1}) &&
           read_role_name(row, fix);
}

bool Reader::read_load(const JsonValue& row, int i) {
    Load& load = model_.load[i];
    return is_array(row, 4, 5) && head(row, node_number(load.no), load.fx, load.fy, load.fz) &&
           read_role_name(row, load);
}

bool Reader::read_found_roles(const JsonValue& array) {
    std::int32_t count = 0;
    return rows(array, node_capacity, count, [this](const JsonValue& row, int) {
        std::int32_t no = 0;
        std::int32_t role = role_plain;
        if (!is_array(row, 2, 2) ||
            !head(row, node_number(no), Bounded{role, role_fixed, role_loaded})) {
            return false;
        }
        model_.found_role[position_of(no)] = role;
        return true;
    });
}

bool Reader::read_sketch(const JsonValue& root) {
    SketchPlaces& places = to_.sketch_places;
    bool kept = false;
    return field(root, "sketch_kept", [&](const JsonValue& value) { return take(value, kept); }) &&
           (places.OnSaveOld = kept ? 1 : 0, true) &&
           field(root, "sketch_places", [&](const JsonValue& array) {
               return rows(array, node_capacity, places.N_OldNode,
                           [&](const JsonValue& row, int i) {
                               SheetPoint& point = places.old_node[i];
                               return is_array(row, 2, 2) && head(row, point.X, point.Y);
                           });
           });
}

// Format and version come before everything else, wherever they stand.
bool Reader::read_head(const JsonValue& root) {
    const auto value_of = [&root](const char* key) -> const JsonValue* {
        const auto found = std::find(root.keys.begin(), root.keys.end(), key);
        return found == root.keys.end()
                   ? nullptr
                   : &root.items[static_cast<std::size_t>(found - root.keys.begin())];
    };
    const JsonValue* format = value_of("format");
    if (root.type != JsonValue::Type::object || format == nullptr || format->text != "kigumi") {
        fault = {cannot_read, "kigumi のプロジェクトではありません"};
        return false;
    }
    const JsonValue* version = value_of("version");
    if (version != nullptr && version->whole && version->number > project_version) {
        fault = {
            "この版の kigumi では読めない新しい形式です",
            text_format("形式の版 %.0f、読めるのは %d まで", version->number, project_version)};
        return false;
    }
    std::int32_t number = 0;
    return field(root, "format", [](const JsonValue&) { return true; }) &&
           field(root, "version",
                 [&](const JsonValue& value) { return take(value, number, 1, project_version); });
}

bool Reader::read_settings(const JsonValue& root) {
    bool edited = false;
    return field(root, "stage", [this](const JsonValue& v) { return read_stage(v); }) &&
           field(root, "generated",
                 [this](const JsonValue& v) { return take(v, to_.generated); }) &&
           field(root, "param",
                 [this](const JsonValue& v) {
                     return single_fields(
                         v, [this](auto visit) { return visit_param(to_.param, visit); });
                 }) &&
           field(root, "shift",
                 [this](const JsonValue& v) {
                     return is_array(v, 3, 3) && head(v, to_.shift.dx, to_.shift.dy, to_.shift.dz);
                 }) &&
           field(root, "view",
                 [this](const JsonValue& v) {
                     return single_fields(
                         v, [this](auto visit) { return visit_view(to_.view, visit); });
                 }) &&
           field(root, "defaults",
                 [this](const JsonValue& v) {
                     return single_fields(
                         v, [this](auto visit) { return visit_defaults(model_, visit); });
                 }) &&
           field(root, "outer_columns",
                 [this](const JsonValue& v) {
                     return is_array(v, 2, 2) &&
                            head(v, Bounded{model_.GaichuStart, 0, beam_capacity},
                                 Bounded{model_.GaichuEnd, 0, beam_capacity});
                 }) &&
           field(root, "roles_edited", [&](const JsonValue& v) { return take(v, edited); }) &&
           (model_.fix_load_edited = edited ? 1 : 0, true) &&
           field(root, "levels", [this](const JsonValue& v) { return read_levels(v); });
}

// Each table after those whose numbers it names.
bool Reader::read_tables(const JsonValue& root) {
    const auto table = [&](const char* key, int capacity, std::int32_t& count,
                           bool (Reader::*read_row)(const JsonValue&, int)) {
        return field(root, key, [&](const JsonValue& array) {
            return rows(array, capacity, count,
                        [&](const JsonValue& row, int i) { return (this->*read_row)(row, i); });
        });
    };
    return field(root, "sections",
                 [this](const JsonValue& v) {
                     return columns(v, size_capacity, model_.N_Size, section_columns(model_.size));
                 }) &&
           field(root, "materials",
                 [this](const JsonValue& v) {
                     return columns(v, mat_capacity, model_.N_Mat, material_columns(model_.mat));
                 }) &&
           table("nodes", node_capacity, model_.N_Node, &Reader::read_node) &&
           table("members", beam_capacity, model_.N_Beam, &Reader::read_beam) &&
           field(root, "edits",
                 [this](const JsonValue& v) {
                     std::int32_t count = 0;
                     return rows(v, beam_capacity, count,
                                 [this](const JsonValue& row, int) { return read_edit(row); });
                 }) &&
           table("supports", fix_capacity, model_.N_Fix, &Reader::read_fix) &&
           table("loads", load_capacity, model_.N_Load, &Reader::read_load) &&
           field(root, "found_roles", [this](const JsonValue& v) { return read_found_roles(v); }) &&
           read_sketch(root);
}

bool Reader::read(const JsonValue& root) {
    if (!read_head(root)) {
        return false;
    }
    fields_ = 0;
    return object(root, [&] {
        fields_ = 2; // format and version
        return read_settings(root) && read_tables(root);
    });
}

bool is_sound(Project& read, Fault& fault) {
    // Levels may be those of results that were shown when it was saved, which are not in the file.
    const bool made = read.stage == Stage::made || read.stage == Stage::loaded;
    const CollectedMessages unsaid;
    if (made && find_level_fault(read.model) != nullptr && save_level_name(read.model) < 0) {
        fault = {cannot_read, "座標の種類が多すぎます"};
        return false;
    }
    const char* found = find_project_fault(read);
    if (found != nullptr) {
        fault = {cannot_read, std::string("内容が合いません: ") + found};
    }
    return found == nullptr;
}

void move_into(Project& from, Project& project) {
    project.model = std::move(from.model);
    project.param = from.param;
    project.generated = from.generated;
    project.shift = from.shift;
    project.sketch_places = std::move(from.sketch_places);
    project.stage = from.stage;
    project.view = from.view;
    forget_node_index(project.model);

    const std::uint64_t edition = project.result.kensaku_edition;
    project.result = {};
    project.result.kensaku_edition = edition + 1;
    reset_solids(project.solids);
    clear_points(project.solids);
    reset_bounds(project.solids);
    for (int i = 0; i < project.model.N_Beam; ++i) {
        const Beam& beam = project.model.beam[i];
        widen_bounds(project.solids, beam.xs, beam.ys, beam.zs);
        widen_bounds(project.solids, beam.xl, beam.yl, beam.zl);
    }
}

} // namespace

int parse_project(std::string_view text, Project& project, Fault& fault) {
    JsonValue root;
    fault = {cannot_read, "ファイルが大きすぎます"};
    if (text.size() > largest_project || !parse_json(text, root, fault.reason)) {
        return -1;
    }
    const auto read = std::make_unique<Project>();
    Reader reader(*read);
    if (!reader.read(root)) {
        fault = reader.fault;
        return -1;
    }
    if (!is_sound(*read, fault)) {
        return -1;
    }
    fault = {};
    move_into(*read, project);
    return 0;
}

int load_project(const fs::path& path, Project& project) {
    Fault fault{cannot_read, {}};
    const auto bytes = read_file(path, &fault.reason);
    if (!bytes) {
        return refuse(fault);
    }
    if (parse_project(*bytes, project, fault) < 0) {
        return refuse(fault.sentence, utf8_of(path.filename()) + ": " + fault.reason);
    }
    return 0;
}

} // namespace kigumi
