// The options of the command line.
#pragma once

#include "solver/base/fault.h"
#include "solver/statics/settings.h"

#include <span>

namespace frameslv {

struct Options {
    Settings settings;
    bool help = false;
    bool version = false;
};

// Takes the arguments after the program's name into `options`.
Fault read_options(std::span<const char* const> arguments, Options& options);

// What --help prints: Japanese, UTF-8.
const char* help_text();

} // namespace frameslv
