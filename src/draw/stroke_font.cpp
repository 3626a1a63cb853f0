#include "draw/stroke_font.h"

#include "base/files_platform.h"
#include "base/message.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>

namespace kigumi {

namespace {

constexpr double cell = 12.0;   // units of a character's cell, and its advance
constexpr double pi = 3.141592; // deliberate: the precision with which text angles are turned
constexpr double steepest_slant = 60.0;
constexpr unsigned first_printable = 16; // characters below are lowered
constexpr double lowering = 3.0;
constexpr unsigned no_glyph = 0x7F; // its glyph is the box
constexpr size_t table_bytes = 512; // two a character

size_t entry(const Lettering& lettering, size_t at) {
    return static_cast<unsigned char>(lettering.table[at]);
}

// The entries of a glyph's strokes, two each; empty when they are not all within the table.
std::string_view strokes_of(const Lettering& lettering, size_t character) {
    const std::string& table = lettering.table;
    const size_t start =
        entry(lettering, 2 * character) * 256 + entry(lettering, 2 * character + 1);
    if (start < table_bytes || start >= table.size()) {
        return {};
    }
    const size_t bytes = 2 * entry(lettering, start);
    return start + 1 + bytes <= table.size() ? std::string_view(table).substr(start + 1, bytes)
                                             : std::string_view();
}

// The characters of a UTF-8 text one after the other; blanks behind its end.
class Characters {
  public:
    explicit Characters(std::string_view text) : text_(text) {}

    unsigned next() {
        if (at_ >= text_.size()) {
            return ' ';
        }
        const auto lead = static_cast<unsigned char>(text_[at_++]);
        while (at_ < text_.size() && (static_cast<unsigned char>(text_[at_]) & 0xC0) == 0x80) {
            ++at_;
        }
        return lead < 0x80 ? lead : no_glyph;
    }

  private:
    std::string_view text_;
    size_t at_ = 0;
};

// From units along and above the line of writing to the plane.
struct TextPlacement {
    double x, y;          // start, plane units
    double along, across; // cosine and sine of the text's angle, times the plane units of a unit
    double slope;         // tangent of the slant
    double offset[2];     // added to every point, units

    PlanePoint at(double u, double v) const {
        return {static_cast<float>(x + u * along - v * across),
                static_cast<float>(y + u * across + v * along)};
    }
    PlanePoint point(double shift, unsigned code, double lowered) const {
        const unsigned row = code / 16;
        const double v = row + offset[1] - 1.0 - lowered;
        const double u = code % 16 + offset[0] - 2.0;
        return at(shift + u + slope * v, v);
    }
};

void draw_character(const Lettering& lettering, Canvas& canvas, const TextPlacement& placement,
                    unsigned character, double shift) {
    const double lowered = character < first_printable ? lowering : 0.0;
    const std::string_view strokes = strokes_of(lettering, character);
    for (size_t k = 0; k + 1 < strokes.size(); k += 2) {
        const auto code = static_cast<unsigned char>(strokes[k + 1]);
        const PlanePoint p = placement.point(shift, code, lowered);
        if (strokes[k] == 0) {
            canvas.move(p.X, p.Y);
        } else {
            canvas.line(p.X, p.Y);
        }
    }
}

bool is_continued(float start) {
    return start >= continue_text && start <= continue_text;
}

} // namespace

int load_stroke_font(Lettering& lettering, const fs::path& path) {
    std::string reason;
    auto bytes = read_file(path, &reason);
    if (!bytes || bytes->size() < table_bytes) {
        return refuse("文字フォント" + utf8_of(path) + "を読み込めません", reason);
    }
    lettering.table = std::move(*bytes);
    return 0;
}

int load_stroke_font(Lettering& lettering) {
    if (!lettering.table.empty()) {
        return 0;
    }
    const fs::path beside = program_dir();
    std::error_code code;
    for (const fs::path& folder : {beside, beside / "../share/kigumi", beside / "../data"}) {
        if (fs::exists(folder / "symbol.cod", code)) {
            return load_stroke_font(lettering, folder / "symbol.cod");
        }
    }
    return load_stroke_font(lettering, beside / "symbol.cod");
}

int draw_text(Lettering& lettering, Canvas& canvas, std::string_view text, int length, float x,
              float y, float angle, float height) {
    if (load_stroke_font(lettering) < 0) {
        return -1;
    }
    const double turn = angle * pi / 180.0;
    const double scale = height / cell;
    const double slant =
        std::fabs(lettering.style.slant) > steepest_slant ? 0.0 : lettering.style.slant;
    const double advance = cell + lettering.style.spacing;
    const TextPlacement placement{is_continued(x) ? lettering.text_end.X : x,
                                  is_continued(y) ? lettering.text_end.Y : y,
                                  std::cos(turn) * scale,
                                  std::sin(turn) * scale,
                                  std::tan(slant * pi / 180.0),
                                  {length < 0 ? -4.0 : 0.0, length < 0 ? -6.0 : 0.0}};
    Characters characters(text);
    const int count = std::abs(length);
    for (int i = 0; i < count; ++i) {
        draw_character(lettering, canvas, placement, characters.next(), i * advance);
    }
    lettering.text_end = placement.at(count * advance, 0.0);
    return 0;
}

} // namespace kigumi
