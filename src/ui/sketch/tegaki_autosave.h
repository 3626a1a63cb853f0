// Automatic saving of a sketch while it is drawn, and finding what a crash left.
#pragma once

#include "base/files.h"
#include "ui/kit/autosave.h"
#include "ui/kit/session.h"

#include <QLockFile>
#include <QTimer>

#include <functional>
#include <memory>

namespace kigumi {

// The copy of a sketch: "a.autosave.tgk" beside "a.tgk", "tegaki.autosave.tgk" in the working
// directory for a sketch without a file.
fs::path autosave_path(const fs::path& work_dir, const fs::path& file);

// The newest copy in the working directory whose program does not run any more, or an empty path.
fs::path find_autosave(const fs::path& work_dir);

// The same of the copies of one file, which stand beside it.
fs::path find_autosave_of(const fs::path& work_dir, const fs::path& file);

// The file that a copy belongs to; empty for a sketch that had none, or has none any more.
fs::path autosaved_file(const fs::path& copy);

// Writes the copy once a minute while the sketch is changed. A copy that cannot be written is told
// once, without a box.
class TegakiAutosave : public QObject, protected Desk {
    Q_OBJECT

  public:
    // `save` writes the sketch to a path, 0 or -1.
    TegakiAutosave(Session& session, QObject* parent,
                   std::function<int(const fs::path& path)> save);

    // The sketch was changed since its copy was written.
    void note_change() { changed_ = true; }
    // The sketch was restored from this copy, which stays until the sketch is safe.
    void adopt(const fs::path& copy, CopyLock lock);
    // The sketch is safe, or given up: its copy is removed.
    void remove();
    // What happens once a minute.
    void tick();

  signals:
    void failed(const QString& why);

  private:
    // Where the first copy goes, locked: never over one that another run of the program left.
    fs::path take_path();

    QTimer timer_;
    std::function<int(const fs::path& path)> save_;
    fs::path written_; // the copy that is there
    CopyLock lock_;    // of that copy
    bool changed_ = false;
    bool told_ = false;
};

} // namespace kigumi
