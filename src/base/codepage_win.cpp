#include "base/codepage.h"

#include <windows.h>

#include <algorithm>

namespace kigumi {

namespace {

constexpr UINT code_page = 932;

int size_of(size_t length) {
    return static_cast<int>(length);
}

// UTF-16 of text in a code page; nothing when it is not valid in it.
std::optional<std::wstring> widened(UINT from, std::string_view text) {
    std::wstring wide(text.size(), L'\0'); // never more characters than bytes
    const int length = MultiByteToWideChar(from, MB_ERR_INVALID_CHARS, text.data(),
                                           size_of(text.size()), wide.data(), size_of(wide.size()));
    wide.resize(static_cast<size_t>(length));
    return length > 0 ? std::optional(wide) : std::nullopt;
}

// True when the bytes fall into single and double ones of the ranges that the code page has. The
// system takes some that it has not for characters of private use.
bool has_form(std::string_view bytes) {
    for (size_t i = 0; i < bytes.size(); ++i) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        if (first < 0x80 || (first >= 0xA1 && first <= 0xDF)) {
            continue;
        }
        if (first == 0x80 || first == 0xA0 || first > 0xFC || ++i == bytes.size()) {
            return false;
        }
        const auto second = static_cast<unsigned char>(bytes[i]);
        if (second < 0x40 || second == 0x7F || second > 0xFC) {
            return false;
        }
    }
    return true;
}

// Signs that other systems take for those of the code page, and theirs of the same look.
wchar_t known_sign(wchar_t sign) {
    constexpr wchar_t pairs[][2] = {{0xA2, 0xFFE0}, {0xA3, 0xFFE1},   {0xA5, L'\\'},
                                    {0xAC, 0xFFE2}, {0x2014, 0x2015}, {0x2016, 0x2225},
                                    {0x203E, L'~'}, {0x2212, 0xFF0D}, {0x301C, 0xFF5E}};
    for (const auto& [other, own] : pairs) {
        if (sign == other) {
            return own;
        }
    }
    return sign;
}

// Code page 932 of UTF-8; nothing when it is broken or a character has no code there.
std::optional<std::string> converted(std::string_view utf8) {
    auto wide = widened(CP_UTF8, utf8);
    if (!wide) {
        return std::nullopt;
    }
    std::transform(wide->begin(), wide->end(), wide->begin(), known_sign);
    std::string bytes(2 * wide->size(), '\0');
    BOOL lost = FALSE;
    const int length =
        WideCharToMultiByte(code_page, WC_NO_BEST_FIT_CHARS, wide->data(), size_of(wide->size()),
                            bytes.data(), size_of(bytes.size()), nullptr, &lost);
    bytes.resize(static_cast<size_t>(length));
    return lost == FALSE && has_form(bytes) ? std::optional(bytes) : std::nullopt;
}

// Bytes of the character at the start of `utf8` as its first byte tells.
size_t told_length(std::string_view utf8) {
    const auto first = static_cast<unsigned char>(utf8[0]);
    return first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// The first byte and all those behind it that continue a character.
size_t length_of_run(std::string_view utf8) {
    size_t length = 1;
    while (length < utf8.size() && (static_cast<unsigned char>(utf8[length]) & 0xC0) == 0x80) {
        ++length;
    }
    return length;
}

} // namespace

std::string to_cp932(std::string_view utf8) {
    if (const auto whole = converted(utf8)) {
        return *whole;
    }
    std::string out;
    while (!utf8.empty()) {
        const size_t run = length_of_run(utf8);
        const size_t length = std::min(run, told_length(utf8));
        const auto bytes = converted(utf8.substr(0, length));
        out += bytes.value_or("?");
        utf8.remove_prefix(bytes ? length : run);
    }
    return out;
}

std::optional<std::string> from_cp932(std::string_view bytes) {
    if (bytes.empty()) {
        return std::string();
    }
    const auto wide = has_form(bytes) ? widened(code_page, bytes) : std::nullopt;
    if (!wide) {
        return std::nullopt;
    }
    std::string utf8(3 * wide->size(), '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide->data(), size_of(wide->size()),
                                           utf8.data(), size_of(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<size_t>(length));
    return utf8;
}

} // namespace kigumi
