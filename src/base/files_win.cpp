#include "base/files_platform.h"

#include <windows.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <string>

namespace kigumi {

std::FILE* open_binary(const std::filesystem::path& path, const char* mode) {
    return _wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
}

namespace {

// What errno says of such a failure.
int errno_of(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
        return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return EACCES;
    case ERROR_WRITE_PROTECT:
        return EROFS;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return ENOSPC;
    case ERROR_FILE_EXISTS:
        return EEXIST;
    default:
        return EIO;
    }
}

// Makes a new file that no other program can open or remove until it is closed. 0 or the reason.
DWORD create_kept(const std::filesystem::path& path, HANDLE& file) {
    file = CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
    return file == INVALID_HANDLE_VALUE ? GetLastError() : 0;
}

std::FILE* stream_of(HANDLE file) {
    const int number = _open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_BINARY);
    if (number < 0) {
        CloseHandle(file);
        return nullptr;
    }
    return _fdopen(number, "wb");
}

HANDLE handle_of(std::FILE* file) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
}

// Gives an open file its name, in place of an older file of that name.
bool rename_kept(HANDLE file, const std::filesystem::path& target) {
    std::error_code code;
    const std::wstring name = std::filesystem::absolute(target, code).make_preferred().wstring();
    const size_t bytes = name.size() * sizeof(wchar_t);
    const size_t whole = sizeof(FILE_RENAME_INFO) + bytes; // with a wide zero behind the name
    const auto memory = std::make_unique<std::byte[]>(whole);
    auto* const wanted = reinterpret_cast<FILE_RENAME_INFO*>(memory.get());
    wanted->ReplaceIfExists = TRUE;
    wanted->FileNameLength = static_cast<DWORD>(bytes);
    std::memcpy(wanted->FileName, name.data(), bytes);
    return SetFileInformationByHandle(file, FileRenameInfo, wanted, static_cast<DWORD>(whole)) != 0;
}

} // namespace

std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created) {
    constexpr int most_attempts = 10000;
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        created = target.parent_path() / (L".kigumi-" + std::to_wstring(attempt));
        HANDLE file = nullptr;
        DWORD why = create_kept(created, file);
        // What a running program keeps cannot be removed.
        if (why == ERROR_FILE_EXISTS && DeleteFileW(created.c_str()) != 0) {
            why = create_kept(created, file);
        }
        if (why == 0) {
            return stream_of(file);
        }
        errno = errno_of(why);
        if (why != ERROR_FILE_EXISTS) {
            return nullptr;
        }
    }
    return nullptr;
}

bool close_and_rename(std::FILE* file, const std::filesystem::path& created,
                      const std::filesystem::path& target) {
    const HANDLE self = GetCurrentProcess();
    HANDLE kept = nullptr; // keeps the file until it has its name
    bool good =
        DuplicateHandle(self, handle_of(file), self, &kept, 0, FALSE, DUPLICATE_SAME_ACCESS) != 0;
    errno = EIO;
    good = std::fclose(file) == 0 && good;
    if (good && !rename_kept(kept, target)) {
        errno = errno_of(GetLastError());
        good = false;
    }
    const int why = errno;
    if (kept != nullptr) {
        CloseHandle(kept);
    }
    if (!good) {
        DeleteFileW(created.c_str());
    }
    errno = why;
    return good;
}

void close_and_remove(std::FILE* file, const std::filesystem::path& created) {
    std::fclose(file);
    DeleteFileW(created.c_str());
}

bool sync_to_disk(std::FILE* file) {
    return _commit(_fileno(file)) == 0;
}

// The folder gives its files their rights.
void keep_permissions(const std::filesystem::path&, const std::filesystem::path&) {}

std::optional<std::int64_t> write_time(const std::filesystem::path& path) {
    WIN32_FILE_ATTRIBUTE_DATA told{};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &told) == 0) {
        return std::nullopt;
    }
    const FILETIME& time = told.ftLastWriteTime;
    return static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

std::filesystem::path program_dir() {
    constexpr DWORD longest = 32768; // characters that the system allows
    std::wstring name(longest, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), longest));
    return std::filesystem::path(name).parent_path();
}

} // namespace kigumi
