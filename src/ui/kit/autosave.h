// Automatic saving of the whole project, and finding what a program left that was killed.
#pragma once

#include "ui/kit/session.h"

#include <QDateTime>
#include <QLockFile>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace kigumi {

// The lock of a copy, a file of its name with ".lock" behind it. Whoever writes a copy keeps its
// lock, so that no other program offers it as left over; it is void once that program has ended on
// this machine, in whatever way. Null while a program keeps it, here or on another machine. Where
// no lock can be made, in a folder that takes no file, no copy can be written either: what comes
// back then keeps nothing.
using CopyLock = std::unique_ptr<QLockFile>;
CopyLock lock_copy(const fs::path& copy);

// The folder of the copies, in the user's own data folder; empty when it cannot be made.
fs::path recovery_folder();

// A copy that a program left, locked as long as this lives.
struct LeftCopy {
    fs::path copy;
    fs::path file;  // the work's own file; empty for work that had none
    QDateTime time; // when the copy was written
    CopyLock lock;
};

// Of the copies in the folder, the one written last whose program does not run any more.
std::optional<LeftCopy> find_left_copy(const fs::path& folder);

// Removes a copy with what belongs to it.
void remove_copy(const fs::path& copy);

// Between two looks whether there is something to write.
constexpr std::chrono::seconds autosave_interval{15};

// Writes the project's copy while its work is not saved, at most autosave_interval after a change,
// and removes it once the work is saved. A copy that cannot be written is told once, without a box.
class Autosave : public QObject, protected Desk {
    Q_OBJECT

  public:
    Autosave(Session& session, QObject* parent);

    // The work was restored from this copy, which stays until the work is safe.
    void adopt(LeftCopy left);
    // The work is safe, or given up: its copy is removed.
    void remove();
    // What happens after every autosave_interval.
    void tick();

  signals:
    void failed(const QString& why);

  private:
    // Where the first copy goes, locked: never over one that another run of the program left.
    // Empty when there is no folder for it.
    fs::path take_path();
    int write(const fs::path& path);

    QTimer timer_;
    fs::path written_;                       // the copy that is there
    CopyLock lock_;                          // of that copy
    std::uint64_t newest_ = 0, present_ = 0; // steps of the history that the copy holds
    bool told_ = false;
};

} // namespace kigumi
