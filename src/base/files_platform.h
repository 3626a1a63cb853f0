// What file handling needs of the platform; one small source a platform.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>

namespace kigumi {

// fopen for any path name. Null with errno set when it fails.
std::FILE* open_binary(const std::filesystem::path& path, const char* mode);

// Creates a new file in the folder of `target` under a name of its own (".kigumi-0", ...), told in
// `created`, and keeps it from other programs until close_and_rename or close_and_remove. Files of
// these names that no running program keeps were left by one that was killed: they are taken away,
// so that they never pile up. Null with errno set when it fails.
std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created);

// Closes a file of create_beside and renames it to `target`. False with errno set when either
// fails; `created` is then taken away.
bool close_and_rename(std::FILE* file, const std::filesystem::path& created,
                      const std::filesystem::path& target);

// Closes a file of create_beside and takes it away.
void close_and_remove(std::FILE* file, const std::filesystem::path& created);

// Waits until the file's bytes are on the disk.
bool sync_to_disk(std::FILE* file);

// Gives `written` the permissions of `old` where that exists.
void keep_permissions(const std::filesystem::path& old, const std::filesystem::path& written);

// When the file was last written, in the finest steps that the system tells. Nothing when it tells
// none. (Of the C++ libraries one for Windows tells whole seconds only.)
std::optional<std::int64_t> write_time(const std::filesystem::path& path);

// The folder of the running program's own file.
std::filesystem::path program_dir();

} // namespace kigumi
