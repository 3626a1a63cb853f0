#include "draw/segment_file.h"

#include "base/files.h"
#include "base/message.h"
#include "trace/spy.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace kigumi {

static_assert(std::endian::native == std::endian::little,
              "TEMP.DAT is written as it lies in memory");

namespace {

constexpr const char* temp_name = "TEMP.DAT";
constexpr size_t header_bytes = sizeof(World) + sizeof(Viewport);
static_assert(header_bytes == 32);

// No picture has lengths of this size, cm, or viewports of this size, pixels.
constexpr float length_limit = 1.0e30f;
constexpr int pixel_limit = 1 << 20;

bool sound(std::initializer_list<float> lengths) {
    return std::all_of(lengths.begin(), lengths.end(),
                       [](float value) { return std::fabs(value) < length_limit; });
}

bool sound(const World& w) {
    return sound({w.xmin, w.ymin, w.xmax, w.ymax});
}

bool sound(const Viewport& crt) {
    const int sides[4] = {crt.left, crt.top, crt.right, crt.bottom};
    return std::all_of(std::begin(sides), std::end(sides),
                       [](int side) { return side > -pixel_limit && side < pixel_limit; });
}

bool sound(const Segment& s) {
    return sound({s.X1, s.Y1, s.X2, s.Y2});
}

} // namespace

int save_segment_file(const fs::path& work_dir, const DrawArea& area,
                      std::span<const Segment> segments) {
    spy("Enter save_segment_file()");
    std::string bytes(header_bytes + segments.size_bytes(), '\0');
    std::memcpy(bytes.data(), &area.world, sizeof area.world);
    std::memcpy(bytes.data() + sizeof area.world, &area.crt, sizeof area.crt);
    if (!segments.empty()) {
        std::memcpy(bytes.data() + header_bytes, segments.data(), segments.size_bytes());
    }
    std::string reason;
    return save_file(work_file(work_dir, temp_name), bytes, &reason, Sync::no) < 0
               ? refuse("Error: Unable to open TEMP_FILE01", reason)
               : 0;
}

std::optional<SegmentFile> read_segment_file(const fs::path& work_dir, std::string* reason) {
    const auto bytes = read_file(work_file(work_dir, temp_name), reason);
    if (!bytes || bytes->size() < header_bytes ||
        (bytes->size() - header_bytes) % sizeof(Segment) != 0) {
        return std::nullopt;
    }
    SegmentFile file;
    std::memcpy(&file.world, bytes->data(), sizeof file.world);
    std::memcpy(&file.crt, bytes->data() + sizeof file.world, sizeof file.crt);
    file.segments.resize((bytes->size() - header_bytes) / sizeof(Segment));
    if (!file.segments.empty()) {
        std::memcpy(file.segments.data(), bytes->data() + header_bytes,
                    bytes->size() - header_bytes);
    }
    const bool good = sound(file.world) && sound(file.crt) &&
                      std::all_of(file.segments.begin(), file.segments.end(),
                                  [](const Segment& s) { return sound(s); });
    return good ? std::optional(std::move(file)) : std::nullopt;
}

void draw_segments(Canvas& canvas, std::span<const Segment> segments) {
    canvas.set_pen(pen_solid, 1, colour_black);
    for (const Segment& s : segments) {
        canvas.move(s.X1, s.Y1);
        canvas.line(s.X2, s.Y2);
    }
}

int draw_segment_file(View& view, const fs::path& work_dir, Canvas& canvas, DrawArea& area) {
    spy("Enter draw_segment_file()");
    std::string reason;
    const auto file = read_segment_file(work_dir, &reason);
    if (!file) {
        show_message("Error: Unable to open TEMP_FILE01", reason);
        view.TAU = View{}.TAU;
        view.FAI = View{}.FAI;
        return -1;
    }
    area.world = file->world;
    area.crt = file->crt;
    canvas.set_area(area);
    draw_segments(canvas, file->segments);
    return 0;
}

} // namespace kigumi
