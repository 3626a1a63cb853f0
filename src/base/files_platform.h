// What file handling needs of the platform; one small source a platform.
#pragma once

#include <cstdio>
#include <filesystem>

namespace kigumi {

// fopen for any path name. Null with errno set when it fails.
std::FILE* open_binary(const std::filesystem::path& path, const char* mode);

// Creates a new file in the folder of `target` under a name of its own, told in `created`.
// Null with errno set when it fails.
std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created);

// Waits until the file's bytes are on the disk.
bool sync_to_disk(std::FILE* file);

// Gives `written` the permissions of `old` where that exists.
void keep_permissions(const std::filesystem::path& old, const std::filesystem::path& written);

// The folder of the running program's own file.
std::filesystem::path program_dir();

} // namespace kigumi
