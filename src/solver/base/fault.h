// What ends a run without results: an exit code and one line of text.
#pragma once

#include <string>
#include <string_view>

#if defined(__MINGW32__) && !defined(__clang__)
#define FRAMESLV_PRINTF(format_at, args_at) __attribute__((format(gnu_printf, format_at, args_at)))
#elif defined(__GNUC__)
#define FRAMESLV_PRINTF(format_at, args_at) __attribute__((format(printf, format_at, args_at)))
#else
#define FRAMESLV_PRINTF(format_at, args_at)
#endif

namespace frameslv {

// Exit codes of the program, one for each kind of fault. 1 is left to the system's own failures.
enum class Exit : int {
    ok = 0,
    no_input = 2,  // FRAMESLV.IN is missing, unreadable, a directory or empty
    bad_text = 3,  // the text breaks the form: a bad number, a wrong count, a cut-off file
    bad_model = 4, // the numbers make no frame: unknown numbers, properties, zero length
    mechanism = 5, // the frame or a part of it can move without resistance
    inexact = 6,   // the numbers are too far apart for a result with any certain digit
    no_output = 7, // a result file cannot be written
    no_memory = 8,
    unstable = 9,   // the loads exceed what the frame carries without buckling (second order)
    bad_usage = 10, // unknown or misused options
};

// A fault, or none. The text is Japanese, UTF-8, one line without its line end.
struct Fault {
    Exit code = Exit::ok;
    std::string text;

    explicit operator bool() const { return code != Exit::ok; }
};

// The text that printf would print for these arguments.
std::string text_of(const char* format, ...) FRAMESLV_PRINTF(1, 2);

// `bytes` fit for a message: whatever is not printable ASCII becomes '?', and a long text is cut.
std::string printable(std::string_view bytes);

} // namespace frameslv
