// Whole files: read with a bound, written beside the target and renamed.
#pragma once

#include "base/format.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kigumi {

namespace fs = std::filesystem;

// The current directory; empty when it has gone.
fs::path current_dir();

// `name` in the working directory `work_dir`, the folder of the fixed file names (FRAMESLV.IN,
// TRIO.DAT, ...).
fs::path work_file(const fs::path& work_dir, std::string_view name);

// Opens `path` as UTF-8 whatever the platform's own encoding is.
fs::path path_of(std::string_view utf8);
std::string utf8_of(const fs::path& path);

// The file name's ending with its dot, A to Z as a to z (".jik" of "A.JIK").
std::string ending_of(const fs::path& path);

// The largest file that any reader takes, bytes.
constexpr std::uintmax_t largest_file = 512u << 20;

// The three below that can fail tell why in `reason`, where one is given: a Japanese text for a
// Fault, the path in front. Without a failure it stays as it was.

// Reads a whole file. Nothing when it is missing, a directory, unreadable or larger than
// `largest_file`.
std::optional<std::string> read_file(const fs::path& path, std::string* reason = nullptr);

// Whether a save waits until the bytes are on the disk; working files that can be made again do
// without.
enum class Sync { yes, no };

// Writes `bytes` beside `path`, syncs and renames, so that a failure leaves the old file whole.
// Returns 0 or -1. A write-protected file is refused. A target that is not a regular file (a
// device, a pipe) is written in place. What a killed program left beside a target is taken away by
// the next save in that folder.
int save_file(const fs::path& path, std::string_view bytes, std::string* reason = nullptr,
              Sync sync = Sync::yes);

// True when a file could now be made at `path`: its folder takes one, and what stands there may be
// replaced. Nothing is changed.
bool can_save(const fs::path& path, std::string* reason = nullptr);

// A text file in the making: lines end in CR LF and are code page 932, as all files of the program.
class TextWriter {
  public:
    // Adds one formatted line (UTF-8) and its line end.
    void line(const char* format, ...) KIGUMI_PRINTF(2, 3);
    // Adds text (UTF-8) as it stands, without a line end.
    void text(std::string_view utf8);
    // Makes room beforehand, bytes.
    void reserve(size_t bytes) { bytes_.reserve(bytes); }
    // All that was added, in file encoding.
    const std::string& bytes() const { return bytes_; }
    // Writes the file as save_file does.
    int save(const fs::path& path, std::string* reason = nullptr) const {
        return save_file(path, bytes_, reason);
    }

  private:
    std::string bytes_;
};

} // namespace kigumi
