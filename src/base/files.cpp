#include "base/files.h"

#include "base/codepage.h"
#include "base/files_platform.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace kigumi {

namespace {

constexpr const char* too_large = "ファイルが大きすぎます";

// Describes a failure of the system for people.
std::string reason_of(int code) {
    switch (code) {
    case ENOENT:
        return "ファイルまたはフォルダがありません";
    case EACCES:
    case EPERM:
        return "アクセスが許可されていません";
    case EROFS:
        return "読み取り専用です";
    case ENOSPC:
    case EFBIG:
#ifdef EDQUOT
    case EDQUOT:
#endif
        return "ディスクの空きがありません";
    case EISDIR:
        return "フォルダです";
    default:
        return std::strerror(code);
    }
}

void tell(std::string* reason, const fs::path& path, const std::string& why) {
    if (reason != nullptr) {
        *reason = utf8_of(path) + ": " + why;
    }
}

// A rename would replace such a file all the same; whoever protected it wants it kept.
bool is_write_protected(const fs::file_status& status) {
    constexpr fs::perms write =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return (status.permissions() & write) == fs::perms::none;
}

} // namespace

fs::path current_dir() {
    std::error_code ignored;
    return fs::current_path(ignored);
}

fs::path work_file(const fs::path& work_dir, std::string_view name) {
    return work_dir / path_of(name);
}

fs::path path_of(std::string_view utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8_of(const fs::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::string ending_of(const fs::path& path) {
    std::string ending = utf8_of(path.extension());
    for (char& c : ending) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return ending;
}

std::optional<std::string> read_file(const fs::path& path, std::string* reason) {
    const auto refuse = [&](const std::string& why) {
        tell(reason, path, why);
        return std::nullopt;
    };
    std::error_code code;
    const fs::file_status status = fs::status(path, code);
    if (fs::is_directory(status)) {
        return refuse(reason_of(EISDIR));
    }
    if (!fs::exists(status)) {
        return refuse(reason_of(code ? code.default_error_condition().value() : ENOENT));
    }
    std::uintmax_t size = fs::is_regular_file(status) ? fs::file_size(path, code) : 0;
    size = code ? 0 : size;
    if (size > largest_file) {
        return refuse(too_large);
    }
    std::FILE* file = open_binary(path, "rb");
    if (file == nullptr) {
        return refuse(reason_of(errno));
    }
    std::string bytes;
    bytes.reserve(static_cast<size_t>(size) + 1);
    char piece[1 << 16];
    size_t got = 0;
    while ((got = std::fread(piece, 1, sizeof piece, file)) > 0 && bytes.size() <= largest_file) {
        bytes.append(piece, got);
    }
    const bool failed = std::ferror(file) != 0;
    const int why = errno;
    std::fclose(file);
    if (failed) {
        return refuse(reason_of(why));
    }
    if (bytes.size() > largest_file) {
        return refuse(too_large);
    }
    return bytes;
}

namespace {

// A file being written: beside its target, or in place where the target is no regular file.
struct Output {
    std::FILE* file = nullptr; // null when it cannot be made
    fs::path target, written;
    bool in_place = false;
};

Output open_output(const fs::path& path, std::string* reason) {
    std::error_code code;
    Output output;
    output.target = path;
    if (fs::is_symlink(fs::symlink_status(path, code))) {
        output.target = fs::weakly_canonical(path, code);
    }
    const fs::file_status status = fs::status(output.target, code);
    int why = fs::is_directory(status) ? EISDIR : 0;
    if (fs::is_regular_file(status) && is_write_protected(status)) {
        why = EACCES;
    }
    output.in_place = fs::exists(status) && !fs::is_regular_file(status);
    output.written = output.target;
    if (why == 0) {
        output.file = output.in_place ? open_binary(output.target, "wb")
                                      : create_beside(output.target, output.written);
        why = errno;
    }
    if (output.file == nullptr) {
        tell(reason, path, reason_of(why));
    }
    return output;
}

} // namespace

bool can_save(const fs::path& path, std::string* reason) {
    std::error_code code;
    const fs::file_status status = fs::status(path, code);
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) {
        return true;
    }
    const Output output = open_output(path, reason);
    if (output.file != nullptr) {
        close_and_remove(output.file, output.written);
    }
    return output.file != nullptr;
}

int save_file(const fs::path& path, std::string_view bytes, std::string* reason, Sync sync) {
    const Output output = open_output(path, reason);
    const auto& [file, target, written, in_place] = output;
    if (file == nullptr) {
        return -1;
    }
    errno = 0;
    bool good = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    good = std::fflush(file) == 0 && good;
    good = good && (in_place || sync == Sync::no || sync_to_disk(file));
    int why = errno;
    if (in_place) {
        good = std::fclose(file) == 0 && good;
    } else if (good) {
        keep_permissions(target, written);
        good = close_and_rename(file, written, target);
        why = errno;
    } else {
        close_and_remove(file, written);
    }
    if (!good) {
        tell(reason, path, reason_of(why != 0 ? why : EIO));
    }
    return good ? 0 : -1;
}

void TextWriter::line(const char* format, ...) {
    const size_t start = bytes_.size();
    constexpr size_t usual = 192;
    bytes_.resize(start + usual);
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(bytes_.data() + start, usual, format, args);
    va_end(args);
    const size_t needed = length > 0 ? static_cast<size_t>(length) : 0;
    if (needed >= usual) {
        bytes_.resize(start + needed + 1);
        std::vsnprintf(bytes_.data() + start, needed + 1, format, again);
    }
    va_end(again);
    bytes_.resize(start + needed);
    for (size_t i = start; i < bytes_.size(); ++i) {
        if (static_cast<unsigned char>(bytes_[i]) >= 0x80) {
            const std::string converted = to_cp932(std::string_view(bytes_).substr(start));
            bytes_.replace(start, std::string::npos, converted);
            break;
        }
    }
    bytes_ += "\r\n";
}

void TextWriter::text(std::string_view utf8) {
    bytes_ += to_cp932(utf8);
}

} // namespace kigumi
