#include "base/files_platform.h"

#include <cerrno>
#include <io.h>
#include <share.h>
#include <string>
#define NOMINMAX
#include <windows.h>

namespace kigumi {

std::FILE* open_binary(const std::filesystem::path& path, const char* mode) {
    return _wfopen(path.c_str(),
                   std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str());
}

std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created) {
    constexpr int most_attempts = 10000;
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        created = target.parent_path() / (L".kigumi-" + std::to_wstring(attempt));
        // Not shared: a program that still writes the file keeps others from opening it.
        if (std::FILE* file = _wfsopen(created.c_str(), L"wb", _SH_DENYRW)) {
            return file;
        }
        if (GetFileAttributesW(created.c_str()) == INVALID_FILE_ATTRIBUTES) {
            return nullptr;
        }
    }
    return nullptr;
}

bool close_and_rename(std::FILE* file, const std::filesystem::path& created,
                      const std::filesystem::path& target) {
    std::error_code code;
    bool good = std::fclose(file) == 0;
    if (good) {
        std::filesystem::rename(created, target, code);
        good = !code;
        errno = code.default_error_condition().value();
    }
    if (!good) {
        const int why = errno;
        std::filesystem::remove(created, code);
        errno = why;
    }
    return good;
}

void close_and_remove(std::FILE* file, const std::filesystem::path& created) {
    std::error_code ignored;
    std::fclose(file);
    std::filesystem::remove(created, ignored);
}

bool sync_to_disk(std::FILE* file) {
    return _commit(_fileno(file)) == 0;
}

void keep_permissions(const std::filesystem::path&, const std::filesystem::path&) {}

std::filesystem::path program_dir() {
    wchar_t name[32768];
    const DWORD length = GetModuleFileNameW(nullptr, name, 32768);
    return std::filesystem::path(std::wstring(name, length)).parent_path();
}

} // namespace kigumi
