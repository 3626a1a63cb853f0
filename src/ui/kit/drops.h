// Frame files that are dropped on a window of the program, whichever it is.
#pragma once

#include "base/files.h"

#include <QObject>

class QMimeData;

namespace kigumi {

// True for a file that the program opens: .kigumi, .jik, .tgk.
bool is_frame_file(const fs::path& file);

// Takes the first frame file that is dropped on any window. A dialog that waits for an answer takes
// none. Lives as long as the application, whose events it watches.
class FileDrops : public QObject {
    Q_OBJECT

  public:
    explicit FileDrops(QObject* parent);

  signals:
    // Sent once the drop itself is over.
    void dropped(const QString& file);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace kigumi
