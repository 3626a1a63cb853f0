#include "ui/kit/autosave.h"

#include "base/message.h"
#include "project/project_file.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/settings.h"

#include <QFile>
#include <QFileInfo>

namespace kigumi {

namespace {

constexpr const char* copy_ending = ".kigumi";
constexpr const char* name_ending = ".file"; // beside a copy: the path of the work's own file

void remove_file(const fs::path& path) {
    std::error_code ignored;
    fs::remove(path, ignored);
}

fs::path beside(const fs::path& copy, const char* ending) {
    return path_of(utf8_of(copy) + ending);
}

// True for a lock that tells no program, as a loss of power leaves it. One just being made may look
// so for a moment.
bool is_torn(const QLockFile& lock, const QString& name) {
    constexpr int moment = 60; // seconds
    qint64 process = 0;
    QString host;
    QString program;
    return !lock.getLockInfo(&process, &host, &program) &&
           QFileInfo(name).lastModified().secsTo(QDateTime::currentDateTime()) > moment;
}

} // namespace

CopyLock lock_copy(const fs::path& copy) {
    const QString name = qt_path(copy) + ".lock";
    auto lock = std::make_unique<QLockFile>(name);
    lock->setStaleLockTime(0); // void by the end of its program, not by its age
    const auto is_kept = [&lock] {
        return !lock->tryLock(0) && lock->error() == QLockFile::LockFailedError;
    };
    if (is_kept() && (!is_torn(*lock, name) || !QFile::remove(name) || is_kept())) {
        return nullptr;
    }
    return lock;
}

fs::path recovery_folder() {
    return own_folder("recovery");
}

std::optional<LeftCopy> find_left_copy(const fs::path& folder) {
    std::optional<LeftCopy> newest;
    fs::file_time_type newest_time;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const fs::path& copy = entry.path();
        std::error_code missing;
        const fs::file_time_type time = fs::last_write_time(copy, missing);
        if (copy.extension() != copy_ending || missing || (newest && time <= newest_time)) {
            continue;
        }
        if (CopyLock lock = lock_copy(copy)) {
            const std::string name = read_file(beside(copy, name_ending)).value_or("");
            newest = LeftCopy{copy, path_of(name), QFileInfo(qt_path(copy)).lastModified(),
                              std::move(lock)};
            newest_time = time;
        }
    }
    return newest;
}

void remove_copy(const fs::path& copy) {
    remove_file(copy);
    remove_file(beside(copy, name_ending));
}

Autosave::Autosave(Session& session, QObject* parent) : QObject(parent), Desk(session) {
    connect(&timer_, &QTimer::timeout, this, &Autosave::tick);
    timer_.start(autosave_interval);
}

void Autosave::adopt(LeftCopy left) {
    remove();
    written_ = left.copy;
    lock_ = std::move(left.lock);
    newest_ = 0;
}

void Autosave::remove() {
    if (!written_.empty()) {
        remove_copy(written_);
    }
    written_.clear();
    lock_.reset();
    told_ = false;
}

fs::path Autosave::take_path() {
    constexpr int most = 1000;
    const fs::path folder = recovery_folder();
    lock_.reset(); // of a copy that could not be written
    for (int k = 1; !folder.empty() && k < most; ++k) {
        const fs::path path = folder / (std::to_string(k) + copy_ending);
        lock_ = fs::exists(path) ? nullptr : lock_copy(path);
        if (lock_) {
            return path;
        }
    }
    return {};
}

int Autosave::write(const fs::path& path) {
    // The present without what is half done, a member with one end, say.
    const auto present = std::make_unique<Project>();
    session_.work.history.restore(*present);
    present->view = view;
    if (save_project(*present, path) < 0) {
        return -1;
    }
    const fs::path name = beside(path, name_ending);
    std::error_code failed;
    const fs::path file = document.file.empty() ? fs::path() : fs::absolute(document.file, failed);
    return save_file(name, utf8_of(file));
}

void Autosave::tick() {
    const History& history = session_.work.history;
    if (!is_unsaved(session_.work)) {
        remove();
        return;
    }
    if (!written_.empty() && newest_ == history.newest() && present_ == history.undo_number()) {
        return;
    }
    const fs::path path = written_.empty() ? take_path() : written_;
    CollectedMessages messages;
    if (!path.empty() && write(path) == 0) {
        written_ = path;
        newest_ = history.newest();
        present_ = history.undo_number();
        told_ = false;
    } else if (!told_) {
        told_ = true;
        emit failed(messages.faults.empty() ? QString() : qt_text(messages.faults.front().text()));
    }
}

} // namespace kigumi
