#include "base/files_platform.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kigumi {

std::FILE* open_binary(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        created = target.parent_path() /
                  (".kigumi-" + std::to_string(getpid()) + "-" + std::to_string(attempt));
        const int handle = open(created.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (handle >= 0) {
            return fdopen(handle, "wb");
        }
        if (errno != EEXIST) {
            return nullptr;
        }
    }
    return nullptr;
}

bool sync_to_disk(std::FILE* file) {
    return fsync(fileno(file)) == 0;
}

void keep_permissions(const std::filesystem::path& old, const std::filesystem::path& written) {
    struct stat status {};
    if (stat(old.c_str(), &status) == 0) {
        chmod(written.c_str(), status.st_mode & 07777);
    }
}

std::filesystem::path program_dir() {
    std::error_code code;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", code);
    return code ? std::filesystem::current_path(code) : program.parent_path();
}

} // namespace kigumi
