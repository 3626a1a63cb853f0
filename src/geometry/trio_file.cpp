// Builds over all members, and the triangle file TRIO.DAT.
#include "base/files.h"
#include "base/files_platform.h"
#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "geometry/solid_store.h"
#include "geometry/viewpoint.h"
#include "trace/spy.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace kigumi {

static_assert(std::endian::native == std::endian::little,
              "TRIO.DAT is written as it lies in memory");

namespace {

constexpr const char* trio_name = "TRIO.DAT";

// Tells one writing of a file from the next.
struct FileStamp {
    fs::path path;
    std::uintmax_t size;
    std::int64_t time; // as write_time
    bool operator==(const FileStamp&) const = default;
};

std::optional<FileStamp> stamp_of_file() {
    const fs::path path = work_file(trio_name);
    std::error_code no_size;
    const std::uintmax_t size = fs::file_size(path, no_size);
    const auto time = write_time(path);
    if (no_size || !time) {
        return std::nullopt;
    }
    return FileStamp{path, size, *time};
}

// The file as it was when the triangles in memory were saved.
std::optional<FileStamp>& saved_stamp() {
    static std::optional<FileStamp> stamp;
    return stamp;
}

// Records read from a file that is not what the memory holds.
struct LoadedFile {
    std::vector<Trio> records;
    std::optional<FileStamp> stamp;
    std::uint32_t edition = 0;
};

LoadedFile& loaded_file() {
    static LoadedFile loaded;
    return loaded;
}

// Numbers of all records that were ever saved or loaded.
struct Editions {
    std::uint32_t newest = 0;
    std::uint32_t saved = 0; // of the triangles in memory
    std::uint32_t read = 0;  // of those that were read last
};

Editions& editions() {
    static Editions numbers;
    return numbers;
}

int write_records(std::span<const Trio> records) {
    const std::string_view bytes(reinterpret_cast<const char*>(records.data()),
                                 records.size_bytes());
    if (save_file(work_file(trio_name), bytes, false) < 0) {
        show_message("Error: Unable to open TRIO_FILE 01");
        return -1;
    }
    return 0;
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

bool names_points(const Trio& trio) {
    const int count = static_cast<int>(solids.points.size());
    return std::all_of(std::begin(trio.bangou), std::end(trio.bangou),
                       [count](int no) { return no >= 1 && no <= count; });
}

// Builds boxes of the first `count` members; -1 when the point table is full.
int append_boxes(int count) {
    reset_solids();
    solids.trio.reserve(static_cast<size_t>(count) * 12);
    for (int i = 0; i < count; ++i) {
        if (solid_store::append_box(model.beam[i]) < 0) {
            return -1;
        }
    }
    return 0;
}

// The same, dropping the points of earlier builds when there is no room beside them. The points of
// one build always fit.
void build_boxes(int count) {
    if (append_boxes(count) < 0) {
        clear_points();
        append_boxes(count);
    }
}

} // namespace

void make_men() {
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
    build_boxes(count);
    if (count < model.N_Beam) {
        write_console(text_format("width or depth = 0.0 at %5d\n", count));
    }
}

int save_trio_file() {
    spy("Enter save_trio_file()");
    follow_model();
    solids.saved = write_records(solids.trio) == 0;
    if (!solids.saved) {
        return -1;
    }
    saved_stamp() = stamp_of_file();
    editions().saved = ++editions().newest;
    return 0;
}

int build_trio_file() {
    spy("Enter build_trio_file()");
    build_boxes(model.N_Beam);
    return save_trio_file();
}

std::optional<std::span<const Trio>> read_trio_file() {
    follow_model();
    const size_t size = static_cast<size_t>(solids.n_trio) * sizeof(Trio);
    const std::optional<FileStamp> stamp = stamp_of_file();
    if (!stamp || stamp->size != size) {
        return std::nullopt;
    }
    if (solids.saved && stamp == saved_stamp()) {
        editions().read = editions().saved;
        return solids.trio;
    }
    LoadedFile& loaded = loaded_file();
    if (stamp != loaded.stamp) {
        const auto bytes = read_file(stamp->path);
        if (!bytes || bytes->size() != size) {
            return std::nullopt;
        }
        loaded.stamp = stamp;
        loaded.edition = ++editions().newest;
        loaded.records.resize(static_cast<size_t>(solids.n_trio));
        if (size > 0) {
            std::memcpy(loaded.records.data(), bytes->data(), size);
        }
    }
    if (!std::all_of(loaded.records.begin(), loaded.records.end(), names_points)) {
        return std::nullopt;
    }
    editions().read = loaded.edition;
    return loaded.records;
}

std::uint32_t trio_edition() {
    return editions().read;
}

int project_trio_file(const ViewCoefficients& v) {
    const bool in_memory = editions().read == editions().saved;
    std::vector<Trio>& records = in_memory ? solids.trio : loaded_file().records;
    project(records, v);
    if (write_records(records) < 0) {
        return -1;
    }
    (in_memory ? saved_stamp() : loaded_file().stamp) = stamp_of_file();
    return 0;
}

} // namespace kigumi
