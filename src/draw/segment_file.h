// The segment file TEMP.DAT: the lines of the last picture, from which the DXF export reads.
//
// A picture other than the perspective is put there by drawing it on a SegmentCanvas and saving
// the canvas's area and segments.
#pragma once

#include "base/files.h"
#include "draw/canvas.h"
#include "draw/projection.h"

#include <optional>

namespace kigumi {

struct SegmentFile {
    World world;  // plane window of the picture, cm
    Viewport crt; // its pixel rectangle
    std::vector<Segment> segments;
};

// Writes TEMP.DAT in the working directory from the world window and viewport of `area`. 0, or -1
// after the message "Error: Unable to open TEMP_FILE01"; the old file is then as before.
int save_segment_file(const fs::path& work_dir, const DrawArea& area,
                      std::span<const Segment> segments);

// Reads TEMP.DAT. Nothing, and no message, when it is missing, cut off within the header or a
// record, or holds numbers that no picture has.
std::optional<SegmentFile> read_segment_file(const fs::path& work_dir,
                                             std::string* reason = nullptr);

// Draws segments with the solid black pen of 1 pixel.
void draw_segments(Canvas& canvas, std::span<const Segment> segments);

// Draws the picture in TEMP.DAT in the window and viewport told there. 0, or -1 after the message
// "Error: Unable to open TEMP_FILE01", with both view angles back at 30.
int draw_segment_file(View& view, const fs::path& work_dir, Canvas& canvas, DrawArea& area);

} // namespace kigumi
