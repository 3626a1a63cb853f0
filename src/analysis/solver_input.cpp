#include "analysis/solver_input.h"

#include "base/codepage.h"
#include "base/message.h"
#include "model/model.h"
#include "trace/spy.h"

#include <cstring>

namespace kigumi {

namespace {

// The separator of the comma-separated lines.
constexpr char comma = ',';

// Bytes that a usual line takes, for the room reserved beforehand.
constexpr size_t usual_line = 80;

// Width in which printf right-aligns a name so that it fills nine bytes of the file: a Japanese
// character takes more bytes in UTF-8 than in the file.
int name_width(const char* name) {
    constexpr int columns = 9;
    const std::string_view text(name);
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return columns + static_cast<int>(text.size()) -
                   static_cast<int>(to_cp932(text).size());
        }
    }
    return columns;
}

void reserve_lines(const Model& model, TextWriter& writer) {
    const int lines = model.N_Node + model.N_Beam + model.N_Size + model.N_Mat + model.N_Fix +
                      model.N_Load + model.N_X + model.N_Y + model.N_Z + 9;
    writer.reserve(static_cast<size_t>(lines) * usual_line);
}

void write_levels(TextWriter& writer, const Table<float, level_capacity>& values, int count) {
    writer.line(" %5d", count);
    for (int i = 0; i < count; ++i) {
        writer.line(" %12.5e", values[i]);
    }
}

void write_members(const Model& model, TextWriter& writer) {
    constexpr double unwritten_angle = 0.0;
    writer.line(" %5d %5d", model.N_Node, model.N_Beam);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& b = model.beam[i];
        writer.line(" %5d %5d %5d %5d %5d %10.1f %*s %*s", b.no, b.noi, b.noj, b.size, b.mat,
                    unwritten_angle, name_width(b.idi), b.idi, name_width(b.idj), b.idj);
    }
}

void write_sections(const Model& model, TextWriter& writer) {
    const SizeTable& size = model.size;
    writer.line(" %5d", model.N_Size);
    for (int k = 0; k < model.N_Size; ++k) {
        writer.line(" %5d %9.3e %9.3e %9.3e %9.3e", number_at(k), size.Iy[k], size.Iz[k], size.A[k],
                    size.J[k]);
    }
}

void write_materials(const Model& model, TextWriter& writer) {
    const MatTable& mat = model.mat;
    writer.line(" %5d", model.N_Mat);
    for (int k = 0; k < model.N_Mat; ++k) {
        writer.line(" %5d %9.3e %9.3e %9.3e", number_at(k), mat.E[k], mat.poisson[k],
                    mat.density[k]);
    }
}

void write_nodes(const Model& model, TextWriter& writer) {
    writer.line(" %5d", model.N_Node);
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& n = model.node[i];
        writer.line(" %5d %9.1f %9.1f %9.1f %*s", n.no, n.x, n.y, n.z, name_width(n.id), n.id);
    }
}

// Both files hold their supports in the same lines.
void write_support_lines(const Model& model, TextWriter& writer) {
    for (int i = 0; i < model.N_Fix; ++i) {
        const Fix& f = model.fix[i];
        writer.line(" %5d%c%1d%1d%1d111", f.no, comma, f.ix, f.iy, f.iz);
    }
}

void write_loads(const Model& model, TextWriter& writer) {
    writer.line(" %5d", model.N_Load);
    for (int i = 0; i < model.N_Load; ++i) {
        const Load& p = model.load[i];
        writer.line(" %*s%c%5d%c%10.1f%c%10.1f%c%10.1f%c%10.1f%c%10.1f%c%10.1f", name_width(p.id),
                    p.id, comma, p.no, comma, p.fx, comma, p.fy, comma, p.fz, comma, 0.0, comma,
                    0.0, comma, 0.0);
    }
}

void write_gra_nodes(const Model& model, TextWriter& writer) {
    writer.line("\"NODE\"");
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& n = model.node[i];
        writer.line(" %5d%c%9.1f%c%9.1f%c%9.1f", number_at(i), comma, n.x, comma, n.y, comma, n.z);
    }
}

void write_gra_members(const Model& model, TextWriter& writer) {
    writer.line("\"BEAM\"");
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& b = model.beam[i];
        writer.line(" %5d%c%5d%c%5d%c%5d%c%5d%c %12.5e", number_at(i), comma, b.noi, comma, b.noj,
                    comma, b.size, comma, b.mat, comma, 0.0);
    }
}

void write_gra_sections(const Model& model, TextWriter& writer) {
    const SizeTable& size = model.size;
    writer.line("\"SHAPE\"");
    for (int k = 0; k < model.N_Size; ++k) {
        writer.line(" %5d%c%9.3e%c%9.3e%c%9.3e%c%9.3e%c%9.3e%c%9.3e", number_at(k), comma,
                    size.A[k], comma, size.Iy[k], comma, size.Iz[k], comma, size.J[k], comma, 0.0,
                    comma, 0.0);
    }
}

void write_gra_materials(const Model& model, TextWriter& writer) {
    const MatTable& mat = model.mat;
    writer.line("\"MAT\"");
    for (int k = 0; k < model.N_Mat; ++k) {
        writer.line(" %5d%c%9.3e%c%9.3e%c%9.3e%c%9.3e", number_at(k), comma, mat.E[k], comma, 0.0,
                    comma, mat.poisson[k], comma, mat.density[k]);
    }
}

void write_gra_loads(const Model& model, TextWriter& writer) {
    writer.line("\"NLOAD\"");
    for (int i = 0; i < model.N_Load; ++i) {
        const Load& p = model.load[i];
        writer.line(" %5d%c%8.1f%c%8.1f%c%8.1f%c%8.1f%c%8.1f%c%8.1f", p.no, comma, p.fx, comma,
                    p.fy, comma, p.fz, comma, 0.0, comma, 0.0, comma, 0.0);
    }
}

int save_or_tell(const TextWriter& writer, const fs::path& path, const char* message) {
    std::string reason;
    return writer.save(path, &reason) < 0 ? refuse(message, reason) : 0;
}

} // namespace

int save_honegumi(const Model& model, const fs::path& path) {
    spy("Enter save_honegumi()");
    TextWriter writer;
    reserve_lines(model, writer);
    write_levels(writer, model.Xval, model.N_X);
    write_levels(writer, model.Yval, model.N_Y);
    write_levels(writer, model.Zval, model.N_Z);
    write_members(model, writer);
    write_sections(model, writer);
    write_materials(model, writer);
    write_nodes(model, writer);
    writer.line(" %5d", model.N_Fix);
    write_support_lines(model, writer);
    write_loads(model, writer);
    return save_or_tell(writer, path, "Error: Unable to open BonFile");
}

int save_honegra(const Model& model, const fs::path& path) {
    spy("Enter save_honegra()");
    TextWriter writer;
    reserve_lines(model, writer);
    write_gra_nodes(model, writer);
    writer.line("\"FIX\"");
    write_support_lines(model, writer);
    write_gra_members(model, writer);
    write_gra_sections(model, writer);
    write_gra_materials(model, writer);
    write_gra_loads(model, writer);
    return save_or_tell(writer, path, "Error: Unable to open GraFile");
}

} // namespace kigumi
