// The project file (.kigumi): all of a project but its results, as JSON (docs/formats/kigumi.md).
#pragma once

#include "base/fault.h"
#include "project/project.h"

#include <string>
#include <string_view>

namespace kigumi {

constexpr const char* project_ending = ".kigumi";

// The version that is written, and the newest that is read.
constexpr int project_version = 1;

// The largest project file that is read, bytes.
constexpr std::size_t largest_project = 32u << 20;

// What the file of this project holds (UTF-8). The same project gives the same text, and reading it
// gives every float to the bit.
std::string project_text(const Project& project);

// Reads a whole file's text in place of what the project holds of model, parameters, shift, sketch
// places, stage and view; its results and what was derived from the model before are emptied. 0, or
// -1 with `fault` telling what is wrong at which line or JSON pointer; nothing is changed then.
int parse_project(std::string_view text, Project& project, Fault& fault);

// Writes the file as save_file does. 0, or -1 after a message.
int save_project(const Project& project, const fs::path& path);

// Reads a file as parse_project does. 0, or -1 after a message; nothing is changed then.
int load_project(const fs::path& path, Project& project);

} // namespace kigumi
