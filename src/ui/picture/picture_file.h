// A picture as a file: PNG, SVG or PDF.
#pragma once

#include "base/files.h"
#include "ui/picture/painter_canvas.h"

#include <QString>

#include <functional>
#include <string>

namespace kigumi {

// Draws on the canvas it is given. 0, or -1 after a message.
using PictureFunction = std::function<int(PainterCanvas&)>;

// Largest width or height of a picture file, pixels.
constexpr int largest_picture = 20000;

// The ending of the path is one of those of save_picture.
bool is_picture_file(const fs::path& path);

// The message for a path with another ending.
std::string other_picture_format(const fs::path& path);

// Paints a picture of width × height pixels on white and writes it to `path`, whose ending (.png,
// .svg, .pdf) says the format. A PDF file is a page of A4 paper with the title and the date at its
// head, on its side for a picture that is wider than high. 0, or -1 after a message; an old file
// stays whole then.
int save_picture(const fs::path& path, int width, int height, const PictureFunction& draw,
                 const QString& title = {});

} // namespace kigumi
