#include "solver/base/fault.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#if !defined(_WIN32)
#include <locale.h>
#endif

namespace frameslv {

namespace {

// Numbers have a decimal point, whatever locale the process has set.
class PlainNumbers {
#if !defined(_WIN32)
  public:
    PlainNumbers() : plain_(newlocale(LC_NUMERIC_MASK, "C", nullptr)), before_(uselocale(plain_)) {}
    ~PlainNumbers() {
        uselocale(before_);
        freelocale(plain_);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

  private:
    locale_t plain_, before_;
#endif
};

} // namespace

std::string text_of(const char* format, ...) {
    [[maybe_unused]] const PlainNumbers plain;
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
