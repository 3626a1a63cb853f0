#include "draw/pen.h"

namespace kigumi {

std::uint32_t pen_colour(int index) {
    constexpr std::uint32_t colours[16] = {
        0x000000, 0xFF0000, 0x008000, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
        0x800000, 0x00FF00, 0x808000, 0x000080, 0x800080, 0x008080, 0x808080, 0xC0C0C0,
    };
    return index >= 0 && index < 16 ? colours[index] : 0x000000;
}

} // namespace kigumi
