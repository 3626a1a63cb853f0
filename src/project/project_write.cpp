#include "base/message.h"
#include "project/json_tree.h"
#include "project/project_fields.h"
#include "project/project_file.h"

#include <bit>
#include <cstring>
#include <tuple>
#include <vector>

namespace kigumi {

namespace {

bool same_bits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

class Writer {
  public:
    explicit Writer(const Project& project) : project_(project), model_(project.model) {}

    // True when every number was finite.
    bool write();
    std::string text;

  private:
    void put(std::int32_t number) { text += std::to_string(number); }
    void put(float number) { finite_ = append_json(text, number) && finite_; }
    void put(double number) { finite_ = append_json(text, number) && finite_; }
    void put(const char* name) { append_json(text, std::string_view(name)); }
    void put(bool truth) { text += truth ? "true" : "false"; }

    // The key of the next field of the outermost object, on a line of its own.
    void field(const char* name) {
        text += first_ ? "{\n " : ",\n ";
        first_ = false;
        put(name);
        text += ": ";
    }
    template <class... Values> void row(const Values&... values) {
        const char* before = "[";
        ((text += before, put(values), before = ","), ...);
        text += "]";
    }
    // An array with a row of `count` records a line.
    template <class PutRow> void rows(const char* name, int count, PutRow put_row) {
        field(name);
        text += "[";
        for (int i = 0; i < count; ++i) {
            text += i == 0 ? "\n  " : ",\n  ";
            put_row(i);
        }
        text += count == 0 ? "]" : "\n ]";
    }
    template <class Columns> void columns(const char* name, int count, const Columns& all) {
        rows(name, count, [&](int i) {
            const char* before = "[";
            for (const float* column : all) {
                text += before;
                put(column[i]);
                before = ",";
            }
            text += "]";
        });
    }
    // An object of single fields, wrapped between words.
    template <class Visit> void object(const char* name, Visit visit) {
        field(name);
        std::size_t line = text.size();
        const char* before = "{";
        visit([&](const char* key, const auto& value, auto...) {
            text += before;
            if (text.size() - line > longest_line) {
                text += "\n  ";
                line = text.size();
            }
            put(key);
            text += ": ";
            put(value);
            before = ", ";
            return true;
        });
        text += "}";
    }

    void put_node(const Node& node);
    void put_beam(const Beam& beam);
    bool follows_its_nodes(const Beam& beam) const;
    template <class Record, class... Values>
    void put_role(const Record& record, const Values&... values);
    void put_levels();
    void put_edits();
    void put_found_roles();
    void put_sketch();

    static constexpr std::size_t longest_line = 90;

    const Project& project_;
    const Model& model_;
    bool first_ = true;
    bool finite_ = true;
};

// The place on the sheet stands at the end of the rows that have one.
void Writer::put_node(const Node& node) {
    if (same_bits(node.X, 0.0f) && same_bits(node.Y, 0.0f)) {
        row(node.id, node.x, node.y, node.z, node.flag);
    } else {
        row(node.id, node.x, node.y, node.z, node.flag, node.X, node.Y);
    }
}

// True when names, places and sheet places of the ends are those of the nodes.
bool Writer::follows_its_nodes(const Beam& beam) const {
    const Node& start = model_.node[position_of(beam.noi)];
    const Node& end = model_.node[position_of(beam.noj)];
    return std::strcmp(beam.idi, start.id) == 0 && std::strcmp(beam.idj, end.id) == 0 &&
           same_bits(beam.xs, start.x) && same_bits(beam.ys, start.y) &&
           same_bits(beam.zs, start.z) && same_bits(beam.xl, end.x) && same_bits(beam.yl, end.y) &&
           same_bits(beam.zl, end.z) && same_bits(beam.XS, start.X) &&
           same_bits(beam.YS, start.Y) && same_bits(beam.XL, end.X) && same_bits(beam.YL, end.Y);
}

void Writer::put_beam(const Beam& beam) {
    if (follows_its_nodes(beam)) {
        row(beam.noi, beam.noj, beam.haba, beam.atumi, beam.kind, beam.size, beam.mat, beam.flag);
    } else {
        row(beam.noi, beam.noj, beam.haba, beam.atumi, beam.kind, beam.size, beam.mat, beam.flag,
            beam.idi, beam.idj, beam.xs, beam.ys, beam.zs, beam.xl, beam.yl, beam.zl, beam.XS,
            beam.YS, beam.XL, beam.YL);
    }
}

// A support or load; its name at the end where it is not the node's.
template <class Record, class... Values>
void Writer::put_role(const Record& record, const Values&... values) {
    if (std::strcmp(record.id, model_.node[position_of(record.no)].id) == 0) {
        row(record.no, values...);
    } else {
        row(record.no, values..., record.id);
    }
}

void Writer::put_levels() {
    field("levels");
    const char* before = "{";
    for (const auto& [name, levels, count] :
         {std::tuple{"x", &model_.Xval, model_.N_X}, std::tuple{"y", &model_.Yval, model_.N_Y},
          std::tuple{"z", &model_.Zval, model_.N_Z}}) {
        text += before;
        put(name);
        text += ": [";
        for (int i = 0; i < count; ++i) {
            text += i == 0 ? "" : ",";
            put((*levels)[i]);
        }
        text += "]";
        before = ",\n  ";
    }
    text += "}";
}

// Of the members only that have one: [number, section or null, material or null, timber].
void Writer::put_edits() {
    std::vector<int> edited;
    for (int i = 0; i < model_.N_Beam; ++i) {
        const MemberEdit& edit = model_.edit[i];
        if (edit.section != 0 || edit.material != 0 || edit.species[0] != '\0') {
            edited.push_back(i);
        }
    }
    rows("edits", static_cast<int>(edited.size()), [&](int at) {
        const int i = edited[static_cast<std::size_t>(at)];
        const MemberEdit& edit = model_.edit[i];
        const auto values = [this](bool set, float a, float b, float c) {
            text += ",";
            if (set) {
                row(a, b, c);
            } else {
                text += "null";
            }
        };
        text += "[";
        put(number_at(i));
        values(edit.section != 0, edit.haba, edit.atumi, edit.angle);
        values(edit.material != 0, edit.E, edit.poisson, edit.density);
        text += ",";
        put(edit.species);
        text += "]";
    });
}

// Of the nodes only that have one: [number, role].
void Writer::put_found_roles() {
    field("found_roles");
    const char* before = "[";
    for (int i = 0; i < model_.N_Node; ++i) {
        if (model_.node[i].flag == role_found && model_.found_role[i] != role_plain) {
            text += before;
            row(number_at(i), model_.found_role[i]);
            before = ",";
        }
    }
    text += *before == '[' ? "[]" : "]";
}

void Writer::put_sketch() {
    field("sketch_kept");
    put(project_.sketch_places.OnSaveOld == 1);
    rows("sketch_places", project_.sketch_places.N_OldNode, [this](int i) {
        const SheetPoint& at = project_.sketch_places.old_node[i];
        row(at.X, at.Y);
    });
}

bool Writer::write() {
    constexpr std::size_t usual_row = 64;
    text.reserve(usual_row * static_cast<std::size_t>(model_.N_Node + model_.N_Beam + 100));
    field("format");
    put("kigumi");
    field("version");
    put(project_version);
    field("stage");
    put(stage_names[static_cast<int>(project_.stage)]);
    field("generated");
    put(project_.generated);
    object("param", [this](auto visit) { return visit_param(project_.param, visit); });
    field("shift");
    row(project_.shift.dx, project_.shift.dy, project_.shift.dz);
    object("view", [this](auto visit) { return visit_view(project_.view, visit); });
    object("defaults", [this](auto visit) { return visit_defaults(model_, visit); });
    field("outer_columns");
    row(model_.GaichuStart, model_.GaichuEnd);
    field("roles_edited");
    put(model_.fix_load_edited == 1);
    put_levels();
    columns("sections", model_.N_Size, section_columns(model_.size));
    columns("materials", model_.N_Mat, material_columns(model_.mat));
    rows("nodes", model_.N_Node, [this](int i) { put_node(model_.node[i]); });
    rows("members", model_.N_Beam, [this](int i) { put_beam(model_.beam[i]); });
    put_edits();
    rows("supports", model_.N_Fix, [this](int i) {
        const Fix& fix = model_.fix[i];
        put_role(fix, fix.ix, fix.iy, fix.iz);
    });
    rows("loads", model_.N_Load, [this](int i) {
        const Load& load = model_.load[i];
        put_role(load, load.fx, load.fy, load.fz);
    });
    put_found_roles();
    put_sketch();
    text += "\n}\n";
    return finite_;
}

} // namespace

std::string project_text(const Project& project) {
    Writer writer(project);
    writer.write();
    return std::move(writer.text);
}

int save_project(const Project& project, const fs::path& path) {
    constexpr const char* cannot_save = "プロジェクトを保存できません";
    Writer writer(project);
    if (!writer.write()) {
        return refuse(cannot_save, "数値でない値があります");
    }
    std::string reason;
    return save_file(path, writer.text, &reason) < 0 ? refuse(cannot_save, reason) : 0;
}

} // namespace kigumi
