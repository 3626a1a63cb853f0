#include "trace/spy.h"

#include "base/codepage.h"
#include "base/files_platform.h"

namespace kigumi {

namespace {

std::FILE*& log_file() {
    thread_local std::FILE* file = nullptr;
    return file;
}

} // namespace

bool spy_open(const fs::path& folder) {
    spy_close();
    log_file() = open_binary(folder / "SPY.TXT", "wb");
    spy_now("Spy Start");
    return log_file() != nullptr;
}

bool spy_is_open() {
    return log_file() != nullptr;
}

void spy_write() {
    std::FILE* file = log_file();
    const spy_detail::PendingLine& line = spy_detail::pending;
    if (file == nullptr || line.formatter == nullptr) {
        return;
    }
    const std::string bytes = to_cp932(line.formatter(line.kept)) + "\r\n";
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fflush(file);
}

void spy_text(const std::string& line) {
    if (std::FILE* file = log_file()) {
        const std::string bytes = to_cp932(line) + "\r\n";
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fflush(file);
    }
}

void spy_close() {
    if (log_file() != nullptr) {
        std::fclose(log_file());
        log_file() = nullptr;
    }
}

} // namespace kigumi
