#include "ui/sketch/tegaki_autosave.h"

#include "base/message.h"
#include "ui/dialogs.h"
#include "ui/document.h"

#include <chrono>

namespace kigumi {

namespace {

constexpr std::chrono::minutes interval{1};
constexpr const char* copy_ending = ".autosave.tgk";
constexpr const char* nameless = "tegaki";

bool is_copy(const fs::path& path) {
    return utf8_of(path.filename()).ends_with(copy_ending);
}

void remove_file(const fs::path& path) {
    std::error_code ignored;
    fs::remove(path, ignored);
}

} // namespace

fs::path autosave_path(const fs::path& file) {
    const fs::path stem = file.empty() ? work_file(nameless) : file.parent_path() / file.stem();
    return path_of(utf8_of(stem) + copy_ending);
}

CopyLock lock_copy(const fs::path& copy) {
    auto lock = std::make_unique<QLockFile>(qt_path(copy) + ".lock");
    lock->setStaleLockTime(0); // void by the end of its program, not by its age
    const bool kept = !lock->tryLock(0) && lock->error() == QLockFile::LockFailedError;
    return kept ? nullptr : std::move(lock);
}

fs::path find_autosave() {
    fs::path newest;
    fs::file_time_type time;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(work_dir(), error)) {
        std::error_code no_time;
        const fs::file_time_type written = entry.last_write_time(no_time);
        const bool newer = newest.empty() || written > time;
        if (is_copy(entry.path()) && !no_time && newer && lock_copy(entry.path())) {
            newest = entry.path();
            time = written;
        }
    }
    return newest;
}

fs::path autosaved_file(const fs::path& copy) {
    std::string name = utf8_of(copy.filename());
    name.resize(name.size() - std::string_view(copy_ending).size());
    const fs::path file = copy.parent_path() / path_of(name + ".tgk");
    return fs::exists(file) ? file : fs::path();
}

TegakiAutosave::TegakiAutosave(QObject* parent, std::function<int(const fs::path& path)> save)
    : QObject(parent), save_(std::move(save)) {
    connect(&timer_, &QTimer::timeout, this, &TegakiAutosave::tick);
    timer_.start(interval);
}

void TegakiAutosave::adopt(const fs::path& copy, CopyLock lock) {
    written_ = copy;
    lock_ = std::move(lock);
    changed_ = true;
}

void TegakiAutosave::remove() {
    if (!written_.empty()) {
        remove_file(written_);
    }
    written_.clear();
    lock_.reset();
    changed_ = false;
}

fs::path TegakiAutosave::take_path() {
    const fs::path first = autosave_path(document.file);
    const std::string stem = utf8_of(first.parent_path() / first.stem().stem());
    fs::path path = first;
    lock_.reset(); // of a copy that could not be written
    for (int k = 2;; ++k) {
        lock_ = fs::exists(path) ? nullptr : lock_copy(path);
        if (lock_) {
            return path;
        }
        path = path_of(text_format("%s-%d%s", stem.c_str(), k, copy_ending));
    }
}

void TegakiAutosave::tick() {
    if (!changed_) {
        return;
    }
    const fs::path path = written_.empty() ? take_path() : written_;
    std::string why;
    MessageSink sink = set_message_sink([&why](std::string_view text) { why = text; });
    const int status = save_(path);
    set_message_sink(std::move(sink));
    if (status == 0) {
        written_ = path;
        changed_ = told_ = false;
    } else if (!told_) {
        told_ = true;
        emit failed(qt_text(why + " " + file_error()));
    }
    clear_file_error();
}

} // namespace kigumi
