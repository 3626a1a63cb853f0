// The trace log SPY.TXT with its line buffer, one a thread.
//
// Nearly every function leaves trace lines, each replacing the one before; only spy_write puts the
// line that stands in the buffer into the file. A line is therefore kept as its format and values
// and is formatted only when it is written.
#pragma once

#include "base/files.h"

#include <cstdio>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace kigumi {

namespace spy_detail {

struct PendingLine {
    using Formatter = std::string (*)(const void* kept);
    alignas(16) unsigned char kept[192];
    Formatter formatter = nullptr;
};

inline thread_local PendingLine pending;

template <class... Values> struct Kept {
    const char* format;
    std::tuple<Values...> values;
};

} // namespace spy_detail

// Puts a line into the buffer. `format` and all texts among the values must be literals, since
// they are looked at later.
template <class... Values> void spy(const char* format, Values... values) {
    static_assert((std::is_trivially_copyable_v<Values> && ...));
    using Line = spy_detail::Kept<Values...>;
    static_assert(sizeof(Line) <= sizeof(spy_detail::PendingLine::kept));
    new (spy_detail::pending.kept) Line{format, {values...}};
    spy_detail::pending.formatter = [](const void* kept) {
        const Line& line = *static_cast<const Line*>(kept);
        return std::apply(
            [&line](auto... all) {
                char text[256];
                if constexpr (sizeof...(all) == 0) {
                    std::snprintf(text, sizeof text, "%s", line.format);
                } else {
                    std::snprintf(text, sizeof text, line.format, all...);
                }
                return std::string(text);
            },
            line.values);
    };
}

// The log of this thread as long as it lives: SPY.TXT in `folder`, made anew, with the line "Spy
// Start". Where the file cannot be made nothing is written. Logs end in the opposite order of their
// making; the log before then goes on.
class SpyLog {
  public:
    explicit SpyLog(const fs::path& folder);
    ~SpyLog();
    SpyLog(const SpyLog&) = delete;
    SpyLog& operator=(const SpyLog&) = delete;

  private:
    std::FILE* file_;
    std::FILE* outer_;
};

// True while this thread has a log.
bool spy_is_open();

// Writes the line in the buffer to the log (nothing when no log is open).
void spy_write();

// Puts a line together, and writes it at once.
template <class... Values> void spy_now(const char* format, Values... values) {
    spy(format, values...);
    spy_write();
}

// Writes a line of text that is no literal at once.
void spy_text(const std::string& line);

} // namespace kigumi
