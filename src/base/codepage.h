// UTF-8 inside the program, code page 932 in files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kigumi {

// Converts UTF-8 to code page 932. A character without a code there becomes '?'.
std::string to_cp932(std::string_view utf8);

// Converts code page 932 to UTF-8; nothing when the bytes are not valid in it.
std::optional<std::string> from_cp932(std::string_view bytes);

} // namespace kigumi
