#include "base/files_platform.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kigumi {

std::FILE* open_binary(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

namespace {

constexpr int most_attempts = 10000;

// True when the file of the descriptor has a name; false once it was removed.
bool has_name(int handle) {
    struct stat status {};
    return fstat(handle, &status) == 0 && status.st_nlink > 0;
}

// Removes a file that nobody keeps any more. False when somebody does, or when it is not a file
// that this user's programs made.
bool remove_abandoned(const char* path) {
    const int handle = open(path, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0) {
        return errno == ENOENT;
    }
    struct stat status {};
    const bool own =
        fstat(handle, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
    // Whoever keeps the file holds the lock; who has removed it meanwhile has left no name.
    const bool removed =
        own && flock(handle, LOCK_EX | LOCK_NB) == 0 && (!has_name(handle) || unlink(path) == 0);
    close(handle);
    return removed;
}

// Creates and locks the file; -1 with errno set when it fails, EEXIST when it is not ours to take.
int create_locked(const char* path) {
    for (;;) {
        const int handle = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (handle < 0) {
            if (errno != EEXIST) {
                return -1;
            }
            if (remove_abandoned(path)) {
                continue;
            }
            errno = EEXIST;
            return -1;
        }
        // Another program may have taken the file for abandoned before it was locked. A file system
        // without locks never lets that happen.
        flock(handle, LOCK_EX);
        if (has_name(handle)) {
            return handle;
        }
        close(handle);
    }
}

} // namespace

std::FILE* create_beside(const std::filesystem::path& target, std::filesystem::path& created) {
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        created = target.parent_path() / (".kigumi-" + std::to_string(attempt));
        const int handle = create_locked(created.c_str());
        if (handle >= 0) {
            return fdopen(handle, "wb");
        }
        if (errno != EEXIST) {
            return nullptr;
        }
    }
    return nullptr;
}

bool close_and_rename(std::FILE* file, const std::filesystem::path& created,
                      const std::filesystem::path& target) {
    const int lock = dup(fileno(file)); // keeps the file until it has its name
    const bool good = std::fclose(file) == 0 && std::rename(created.c_str(), target.c_str()) == 0;
    const int why = errno;
    if (!good) {
        unlink(created.c_str());
    }
    close(lock);
    errno = why;
    return good;
}

void close_and_remove(std::FILE* file, const std::filesystem::path& created) {
    unlink(created.c_str());
    std::fclose(file);
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

std::optional<std::int64_t> write_time(const std::filesystem::path& path) {
    std::error_code code;
    const std::int64_t time =
        std::filesystem::last_write_time(path, code).time_since_epoch().count();
    return code ? std::nullopt : std::optional(time);
}

std::filesystem::path program_dir() {
    std::error_code code;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", code);
    return code ? std::filesystem::current_path(code) : program.parent_path();
}

} // namespace kigumi
