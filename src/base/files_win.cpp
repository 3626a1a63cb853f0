#include "base/files_platform.h"

#include <cerrno>
#include <io.h>
#include <string>
#define NOMINMAX
#include <windows.h>

namespace kigumi {

std::FILE* open_binary(const std::filesystem::path& path, const char* mode) {
    return _wfopen(path.c_str(),
                   std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str());
}

std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        created = target.parent_path() / (L".kigumi-" + std::to_wstring(GetCurrentProcessId()) +
                                          L"-" + std::to_wstring(attempt));
        if (std::FILE* file = _wfopen(created.c_str(), L"wbx")) {
            return file;
        }
        if (errno != EEXIST) {
            return nullptr;
        }
    }
    return nullptr;
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
