// Builds over all members, and the triangle file TRIO.DAT.
#include "base/files.h"
#include "base/files_platform.h"
#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "draw/eye.h"
#include "solid/solid_store.h"
#include "trace/spy.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace kigumi {

static_assert(std::endian::native == std::endian::little,
              "TRIO.DAT is written as it lies in memory");

namespace {

constexpr const char* trio_name = "TRIO.DAT";

int write_records(const fs::path& work_dir, std::span<const Trio> records) {
    const std::string_view bytes(reinterpret_cast<const char*>(records.data()),
                                 records.size_bytes());
    std::string reason;
    return save_file(work_file(work_dir, trio_name), bytes, &reason, Sync::no) < 0
               ? refuse("Error: Unable to open TRIO_FILE 01", reason)
               : 0;
}

void project(std::span<Trio> records, const ViewCoefficients& v) {
    const double near = near_plane(v);
    for (Trio& trio : records) {
        for (int i = 0; i < 3; ++i) {
            const float(&p)[3] = trio.vertex[i];
            const EyePoint eye = to_eye(v, p[0], p[1], p[2]);
            const double scale = eye.ze < near ? 0.0 : v.v43 / eye.ze;
            trio.plane[i][0] = eye.xe * scale;
            trio.plane[i][1] = eye.ye * scale;
        }
    }
}

// Builds boxes of the first `count` members; -1 when the point table is full.
int append_boxes(const Model& model, Solids& solids, int count) {
    reset_solids(solids);
    solids.trio.reserve(static_cast<size_t>(count) * 12);
    for (int i = 0; i < count; ++i) {
        if (solid_store::append_box(solids, model.beam[i]) < 0) {
            return -1;
        }
    }
    return 0;
}

// The same, dropping the points of earlier builds when there is no room beside them. The points of
// one build always fit.
void build_boxes(const Model& model, Solids& solids, int count) {
    if (append_boxes(model, solids, count) < 0) {
        clear_points(solids);
        append_boxes(model, solids, count);
    }
}

} // namespace

void make_men(const Model& model, Solids& solids) {
    spy("Enter make_men()");
    if (model.N_Beam == 0) {
        write_console("N_Beam == 0\n");
        return;
    }
    int count = 0;
    while (count < model.N_Beam && !same_float(model.beam[count].haba, 0.0f) &&
           !same_float(model.beam[count].atumi, 0.0f)) {
        ++count;
    }
    build_boxes(model, solids, count);
    if (count < model.N_Beam) {
        write_console(text_format("width or depth = 0.0 at %5d\n", count));
    }
}

int save_trio_file(Solids& solids, const fs::path& work_dir) {
    spy("Enter save_trio_file()");
    solids.saved = write_records(work_dir, solids.trio) == 0;
    if (!solids.saved) {
        return -1;
    }
    ++solids.edition;
    return 0;
}

int build_trio_file(const Model& model, Solids& solids, const fs::path& work_dir) {
    spy("Enter build_trio_file()");
    build_boxes(model, solids, model.N_Beam);
    return save_trio_file(solids, work_dir);
}

std::optional<std::span<const Trio>> saved_records(const Solids& solids) {
    return solids.saved ? std::optional(std::span<const Trio>(solids.trio)) : std::nullopt;
}

std::uint32_t trio_edition(const Solids& solids) {
    return solids.edition;
}

int project_trio_file(Solids& solids, const fs::path& work_dir, const ViewCoefficients& v) {
    project(solids.trio, v);
    return write_records(work_dir, solids.trio);
}

} // namespace kigumi
