#include "base/codepage.h"

#include <algorithm>
#include <cerrno>
#include <iconv.h>

namespace kigumi {

namespace {

bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// One converter, opened at the first use and kept for the run.
class Converter {
  public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
    ~Converter() {
        if (usable()) {
            iconv_close(handle_);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool usable() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // Converts `input` and appends to `out`; false at the first character that cannot be
    // converted, with `used` telling how many bytes came before it.
    bool convert(std::string_view input, std::string& out, size_t& used) {
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(input.data());
        size_t left = input.size();
        char piece[1024];
        while (left > 0) {
            char* to = piece;
            size_t room = sizeof piece;
            const size_t result = iconv(handle_, &from, &left, &to, &room);
            out.append(piece, sizeof piece - room);
            if (result == static_cast<size_t>(-1) && errno != E2BIG) {
                used = input.size() - left;
                return false;
            }
        }
        used = input.size();
        return true;
    }

  private:
    iconv_t handle_;
};

// Bytes of the character at the start of `utf8`: the first and those that continue it.
size_t character_length(std::string_view utf8) {
    size_t length = 1;
    while (length < utf8.size() && (static_cast<unsigned char>(utf8[length]) & 0xC0) == 0x80) {
        ++length;
    }
    return length;
}

} // namespace

std::string to_cp932(std::string_view utf8) {
    if (is_ascii(utf8)) {
        return std::string(utf8);
    }
    thread_local Converter converter("CP932", "UTF-8");
    std::string out;
    while (!utf8.empty()) {
        size_t used = 0;
        if (converter.usable() && converter.convert(utf8, out, used)) {
            break;
        }
        out += '?';
        utf8.remove_prefix(used);
        utf8.remove_prefix(character_length(utf8));
    }
    return out;
}

std::optional<std::string> from_cp932(std::string_view bytes) {
    if (is_ascii(bytes)) {
        return std::string(bytes);
    }
    thread_local Converter converter("UTF-8", "CP932");
    std::string out;
    size_t used = 0;
    if (!converter.usable() || !converter.convert(bytes, out, used)) {
        return std::nullopt;
    }
    return out;
}

} // namespace kigumi
