#include "trace/spy.h"

#include "base/codepage.h"
#include "base/files_platform.h"

namespace kigumi {

namespace {

thread_local std::FILE* log_file = nullptr;

void write_line(const std::string& line) {
    const std::string bytes = to_cp932(line) + "\r\n";
    std::fwrite(bytes.data(), 1, bytes.size(), log_file);
    std::fflush(log_file);
}

} // namespace

SpyLog::SpyLog(const fs::path& folder)
    : file_(open_binary(folder / "SPY.TXT", "wb")), outer_(std::exchange(log_file, file_)) {
    spy_now("Spy Start");
}

SpyLog::~SpyLog() {
    log_file = outer_;
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

bool spy_is_open() {
    return log_file != nullptr;
}

void spy_write() {
    const spy_detail::PendingLine& line = spy_detail::pending;
    if (log_file != nullptr && line.formatter != nullptr) {
        write_line(line.formatter(line.kept));
    }
}

void spy_text(const std::string& line) {
    if (log_file != nullptr) {
        write_line(line);
    }
}

} // namespace kigumi
