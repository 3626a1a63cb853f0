// What the program remembers of its user from one run to the next, in a file of the user's own.
#pragma once

#include "base/files.h"

#include <vector>

namespace kigumi {

// Files offered at most by 最近使ったファイル.
constexpr int most_recent_files = 8;

// The folder of the file that was chosen last; empty when there is none, or none any more.
fs::path last_folder();
void note_folder(const fs::path& folder);

// The files that were opened or saved, the last one first.
std::vector<fs::path> recent_files();
void note_recent(const fs::path& file);
void forget_recent(const fs::path& file);

// A folder `name` in the user's own data folder, made when it is missing; empty when it cannot be.
fs::path own_folder(std::string_view name);

} // namespace kigumi
