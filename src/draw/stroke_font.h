// The stroke font of the result pictures, read from symbol.cod (docs/formats/symbol-cod.md).
#pragma once

#include "base/files.h"
#include "draw/canvas.h"

#include <string_view>

namespace kigumi {

// A start coordinate of this value continues where the text before ended.
constexpr float continue_text = 999.0f;

// What holds for all texts until it is changed.
struct TextStyle {
    float spacing = 0.0f; // added to the advance of 12 units
    float slant = 0.0f;   // degrees; ignored beyond 60 either way
};

// The stroke font and the state of the writing.
struct Lettering {
    std::string table; // the font file, one entry a byte; empty while none was read
    TextStyle style;
    PlanePoint text_end{0.0f, 0.0f}; // where the text before ended, plane units
};

// Reads a font file in place of the one in use. 0, or -1 after a message when it is missing or too
// short to hold the table of glyphs; the font in use stays.
int load_stroke_font(Lettering& lettering, const fs::path& path);

// Reads symbol.cod once: beside the program, else in ../share/kigumi or ../data from there. 0, or
// -1 after a message when there is none; the program then ends with exit code 1 (its main function
// decides, the core never ends it).
int load_stroke_font(Lettering& lettering);

// Draws the first |length| characters of `text` (UTF-8; a character without a glyph is a box) with
// the canvas's pen. Start (x, y) and `height` (of the cell of 12 units) in plane units (cm),
// `angle` in degrees, turning left. A negative length moves every character by (-4, -6) units,
// which puts the first one's middle on the start. continue_text as x or y goes on behind the text
// before. 0, or -1 after a message when there is no font. A glyph that does not lie within the font
// is left out.
int draw_text(Lettering& lettering, Canvas& canvas, std::string_view text, int length, float x,
              float y, float angle, float height);

} // namespace kigumi
