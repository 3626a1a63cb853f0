#include "base/message.h"
#include "files/jiku.h"
#include "trace/spy.h"

#include <cmath>

namespace kigumi {

namespace {

constexpr double cubic_metres = 0.000001; // of a cubic centimetre

struct Ends {
    float xs, ys, zs, xl, yl, zl;
};

Ends shifted(const Beam& beam, const Shift& shift) {
    return {beam.xs + shift.dx, beam.ys + shift.dy, beam.zs + shift.dz,
            beam.xl + shift.dx, beam.yl + shift.dy, beam.zl + shift.dz};
}

double volume_of(const Ends& ends, const Beam& beam) {
    const double dx = static_cast<double>(ends.xl) - ends.xs;
    const double dy = static_cast<double>(ends.yl) - ends.ys;
    const double dz = static_cast<double>(ends.zl) - ends.zs;
    const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
    return length * beam.haba * beam.atumi * cubic_metres;
}

void write_member(TextWriter& out, const Ends& ends, const Beam& beam) {
    out.line("1 %f %f %f %f %f %f %f %f", ends.xs, ends.ys, ends.zs, ends.xl, ends.yl, ends.zl,
             beam.haba, beam.atumi);
}

void write_volumes(TextWriter& out, double group, double total) {
    out.line("// 以上の積算容量 小計 volume %7.3f Total Volume %7.3f", group, total);
}

int save(const TextWriter& out, const fs::path& path) {
    std::string reason;
    return out.save(path, &reason) < 0 ? refuse("Error: Unable to open JIKU_FILE", reason) : 0;
}

constexpr size_t usual_line = 96; // bytes of a member line

} // namespace

double beam_volume(const Beam& beam) {
    return volume_of(shifted(beam, {}), beam);
}

int save_jiku_data(const Model& model, const fs::path& path, const Shift& shift) {
    spy("Enter save_jiku_data()");
    TextWriter out;
    out.reserve(usual_line * static_cast<size_t>(model.N_Beam));
    int kind = kind_none;
    double group = 0.0;
    double total = 0.0;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        if (beam.kind != kind) {
            write_volumes(out, group, total);
            if (const char* label = kind_label(beam.kind)) {
                out.line("%s", label);
            } else {
                write_volumes(out, group, total);
            }
            kind = beam.kind;
            group = 0.0;
        }
        const Ends ends = shifted(beam, shift);
        write_member(out, ends, beam);
        const double volume = volume_of(ends, beam);
        group += volume;
        total += volume;
    }
    write_volumes(out, group, total);
    out.line("999");
    return save(out, path);
}

int save_jiku_selection(const Model& model, const fs::path& path, const std::vector<int>& positions,
                        const Shift& shift) {
    spy("Enter save_jiku_selection()");
    TextWriter out;
    for (const int at : positions) {
        write_member(out, shifted(model.beam[at], shift), model.beam[at]);
    }
    out.line("999");
    return save(out, path);
}

} // namespace kigumi
