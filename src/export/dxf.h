// DXF drawing of the last picture.
#pragma once

#include "base/files.h"
#include "draw/projection.h"

#include <span>

namespace kigumi {

// Choices of the line dialog (DXFの線の太さ), 1-based.
constexpr int dxf_colour_count = 6;
constexpr int dxf_colour_default = 2;

struct Segment;

// Writes these segments of a picture as make_dxf_file writes those of TEMP.DAT: what the program
// drew itself, whatever another one has put into that file.
int make_dxf_file(const fs::path& path, const World& world, std::span<const Segment> segments,
                  int colour);

// Writes the segments of TEMP.DAT as LINE entities, one a segment, in file order; code page 932.
// `colour` is the dialog's choice 1 ... 6 (cyan, black, green, yellow, magenta, blue); any other is
// black. Lengths are cm, or 1/1000 cm throughout when an edge of the picture's world window lies
// within 0.1 of zero. 0, or -1 after the message "Error: Unable to open TEMP_FILE" or
// "Error: Unable to open DXF_FILE"; no file, or the old one, is left then.
int make_dxf_file(const fs::path& work_dir, const fs::path& path, int colour);

} // namespace kigumi
