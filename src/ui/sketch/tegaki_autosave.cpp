#include "ui/sketch/tegaki_autosave.h"

#include "base/message.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"

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

// The k-th name of a copy, from 1: "a.autosave.tgk", "a-2.autosave.tgk" ...
fs::path numbered_copy(const fs::path& first, int k) {
    const std::string stem = utf8_of(first.parent_path() / first.stem().stem());
    return k == 1 ? first : path_of(text_format("%s-%d%s", stem.c_str(), k, copy_ending));
}

// Of the copies considered, the one written last whose program does not run any more.
class NewestCopy {
  public:
    void consider(const fs::path& copy) {
        std::error_code missing;
        const fs::file_time_type written = fs::last_write_time(copy, missing);
        if (!missing && (path_.empty() || written > time_) && lock_copy(copy)) {
            path_ = copy;
            time_ = written;
        }
    }
    const fs::path& path() const { return path_; }

  private:
    fs::path path_;
    fs::file_time_type time_;
};

} // namespace

fs::path autosave_path(const fs::path& work_dir, const fs::path& file) {
    const fs::path stem =
        file.empty() ? work_file(work_dir, nameless) : file.parent_path() / file.stem();
    return path_of(utf8_of(stem) + copy_ending);
}

fs::path find_autosave(const fs::path& work_dir) {
    NewestCopy newest;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(work_dir, error)) {
        if (is_copy(entry.path())) {
            newest.consider(entry.path());
        }
    }
    return newest.path();
}

fs::path find_autosave_of(const fs::path& work_dir, const fs::path& file) {
    const fs::path first = autosave_path(work_dir, file);
    NewestCopy newest;
    std::error_code error;
    for (int k = 1; k == 1 || fs::exists(numbered_copy(first, k), error); ++k) {
        newest.consider(numbered_copy(first, k));
    }
    return newest.path();
}

fs::path autosaved_file(const fs::path& copy) {
    std::string name = utf8_of(copy.filename());
    name.resize(name.size() - std::string_view(copy_ending).size());
    const fs::path file = copy.parent_path() / path_of(name + ".tgk");
    return fs::exists(file) ? file : fs::path();
}

TegakiAutosave::TegakiAutosave(Session& session, QObject* parent,
                               std::function<int(const fs::path& path)> save)
    : QObject(parent), Desk(session), save_(std::move(save)) {
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
    const fs::path first = autosave_path(work_dir, document.file);
    lock_.reset(); // of a copy that could not be written
    for (int k = 1;; ++k) {
        const fs::path path = numbered_copy(first, k);
        lock_ = fs::exists(path) ? nullptr : lock_copy(path);
        if (lock_) {
            return path;
        }
    }
}

void TegakiAutosave::tick() {
    if (!changed_) {
        return;
    }
    const fs::path path = written_.empty() ? take_path() : written_;
    Fault why;
    int status = 0;
    {
        const ScopedMessageSink sink([&why](const Fault& fault) { why = fault; });
        status = save_(path);
    }
    if (status == 0) {
        written_ = path;
        changed_ = told_ = false;
    } else if (!told_) {
        told_ = true;
        emit failed(qt_text(why.sentence + " " + why.reason));
    }
}

} // namespace kigumi
