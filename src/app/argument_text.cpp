#include "app/argument_text.h"

#include "base/scan.h"

#include <algorithm>

namespace kigumi {

namespace {

// Splits at commas into numbers; false when there are more, fewer, or something else.
template <class... Numbers> bool parse_list(std::string text, Numbers&... numbers) {
    std::replace(text.begin(), text.end(), ',', ' ');
    Scanner scan(text);
    return (scan.next(numbers) && ...) && scan.at_end();
}

} // namespace

bool parse_load(const std::string& text, RoleOption& role) {
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos || colon == 0) {
        return false;
    }
    role.load = true;
    role.selector = text.substr(0, colon);
    return parse_list(text.substr(colon + 1), role.fx, role.fy, role.fz);
}

bool parse_shift(const std::string& text, GenerateOptions& options) {
    return parse_list(text, options.dx, options.dy, options.dz);
}

bool parse_band(const std::string& text, DrawOptions& options) {
    return parse_list(text, options.low, options.high) && options.low <= options.high;
}

bool parse_size(std::string text, DrawOptions& options) {
    constexpr int largest = 20000;
    const size_t cross = text.find('x');
    if (cross != std::string::npos) {
        text[cross] = ',';
    }
    return parse_list(text, options.width, options.height) && options.width > 0 &&
           options.height > 0 && options.width <= largest && options.height <= largest;
}

bool parse_labels(std::string text, DrawOptions& options, std::string& unknown) {
    std::replace(text.begin(), text.end(), ',', ' ');
    Scanner scan(text);
    for (std::string_view label; scan.next(label);) {
        if (label != "nodes" && label != "members" && label != "fix" && label != "load") {
            unknown = label;
            return false;
        }
        options.labels.emplace_back(label);
    }
    return true;
}

} // namespace kigumi
