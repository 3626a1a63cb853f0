// Checks of what the program itself promises (never of what a user or a file says).
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the program with the broken condition, its values, file and line when it does not hold.
#define KIGUMI_CHECK(condition, format, ...)                                                       \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: broken: %s: " format "\n", __FILE__, __LINE__,            \
                         #condition __VA_OPT__(, ) __VA_ARGS__);                                   \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
