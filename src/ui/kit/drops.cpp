#include "ui/kit/drops.h"

#include "ui/kit/dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

namespace kigumi {

namespace {

// The first frame file among what is dragged; empty without one.
QString frame_file_in(const QMimeData* data) {
    for (const QUrl& url : data->urls()) {
        const QString file = url.toLocalFile();
        if (!file.isEmpty() && is_frame_file(path_of_qt(file))) {
            return file;
        }
    }
    return {};
}

bool is_dialog_open() {
    return qobject_cast<QDialog*>(QApplication::activeModalWidget()) != nullptr;
}

} // namespace

bool is_frame_file(const fs::path& file) {
    const std::string ending = ending_of(file);
    return ending == ".kigumi" || ending == ".jik" || ending == ".tgk";
}

FileDrops::FileDrops(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool FileDrops::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
        if (auto* widget = qobject_cast<QWidget*>(watched);
            widget != nullptr && widget->isWindow()) {
            widget->setAcceptDrops(true);
        }
        return false;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        break;
    default:
        return false;
    }
    auto* drop = static_cast<QDropEvent*>(event);
    const QString file = frame_file_in(drop->mimeData());
    if (file.isEmpty() || is_dialog_open()) {
        return false;
    }
    drop->setDropAction(Qt::CopyAction); // the file stays where it is
    drop->accept();
    if (event->type() == QEvent::Drop) {
        QTimer::singleShot(0, this, [this, file] { emit dropped(file); });
    }
    return true;
}

} // namespace kigumi
