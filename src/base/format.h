// printf formatting into std::string.
#pragma once

#include <string>

#if defined(__MINGW32__) && !defined(__clang__)
#define KIGUMI_PRINTF(format_at, args_at) __attribute__((format(gnu_printf, format_at, args_at)))
#elif defined(__GNUC__)
#define KIGUMI_PRINTF(format_at, args_at) __attribute__((format(printf, format_at, args_at)))
#else
#define KIGUMI_PRINTF(format_at, args_at)
#endif

namespace kigumi {

// The text that printf would print for these arguments.
std::string text_format(const char* format, ...) KIGUMI_PRINTF(1, 2);

} // namespace kigumi
