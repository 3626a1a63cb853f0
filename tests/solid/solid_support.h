// Members and byte dumps for the tests of solids and of what is made from them.
#pragma once

#include "base/format.h"
#include "model/members.h"

#include <string>
#include <string_view>

namespace kigumi::test {

inline void add_member(Model& model, const float (&start)[3], const float (&end)[3],
                       float haba = 10, float atumi = 20) {
    append_beam(model, start, end, haba, atumi, kind_none, 2);
}

// Offset and 16 bytes a line; lines of zeros only are left out.
inline std::string hex_dump(std::string_view bytes) {
    std::string text;
    for (size_t at = 0; at < bytes.size(); at += 16) {
        const std::string_view row = bytes.substr(at, 16);
        if (row.find_first_not_of('\0') == std::string_view::npos) {
            continue;
        }
        text += text_format("%06zx", at);
        for (const char c : row) {
            text += text_format(" %02x", static_cast<unsigned char>(c));
        }
        text += "\n";
    }
    return text + text_format("%06zx\n", bytes.size());
}

} // namespace kigumi::test
