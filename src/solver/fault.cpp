#include "solver/fault.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace frameslv {

std::string text_of(const char* format, ...) {
    std::va_list args;
    std::va_list again;
    va_start(args, format);
    va_copy(again, args);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    std::string text(static_cast<size_t>(std::max(length, 0)), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

std::string printable(std::string_view bytes) {
    constexpr size_t longest = 40; // deliberate: a message stays one line on the screen
    std::string text(bytes.substr(0, longest));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return bytes.size() > longest ? text + "..." : text;
}

} // namespace frameslv
