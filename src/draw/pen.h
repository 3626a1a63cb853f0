// Pen colours and styles by number, as every drawing call names them.
#pragma once

#include <cstdint>

namespace kigumi {

enum PenColour {
    colour_black = 0,
    colour_blue = 1,
    colour_green = 2,
    colour_aqua = 3,
    colour_red = 4,
    colour_fuchsia = 5,
    colour_yellow = 6,
    colour_white = 7,
    colour_navy = 8,
    colour_lime = 9,
    colour_teal = 10,
    colour_maroon = 11,
    colour_purple = 12,
    colour_olive = 13,
    colour_grey = 14,
    colour_silver = 15,
};

// Colour value 0x00BBGGRR of a colour number; black for any other number.
std::uint32_t pen_colour(int index);

enum PenStyle {
    pen_solid = 0,
    pen_dotted = 1,
    pen_dashed = 2,
    pen_dash_dot = 3,
    pen_dash_dot_dot = 4,
    pen_invisible = 5,
};

} // namespace kigumi
