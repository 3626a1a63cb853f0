#include "ui/picture/picture_window.h"

#include "base/message.h"
#include "draw/segment_file.h"
#include "export/dxf.h"
#include "export/win3d.h"
#include "sight/perspective.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/file_mark.h"
#include "ui/kit/help_form.h"
#include "ui/picture/dxf_width_form.h"
#include "ui/picture/perspective_progress.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>

#include <utility>

namespace kigumi {

PictureWindow::PictureWindow(Session& session, QWidget* parent, PictureWidget* picture)
    : QMainWindow(parent), Desk(session),
      picture_(picture != nullptr ? picture : new PictureWidget) {
    setCentralWidget(picture_);
}

void PictureWindow::run_modal() {
    setWindowModality(Qt::ApplicationModal);
    // Where no window manager maximises it, the window fills the screen all the same.
    setGeometry(screen()->availableGeometry());
    if (findChild<QLabel*>("FileLabel") == nullptr) {
        statusBar()->addPermanentWidget(new FileMark(session_));
    }
    showMaximized();
    picture_->setFocus();
    QEventLoop loop;
    connect(this, &PictureWindow::closed, &loop, &QEventLoop::quit);
    loop.exec();
    if (parentWidget() != nullptr) {
        parentWidget()->activateWindow();
    }
}

QMenu* PictureWindow::add_menu(const char* name, const QString& caption) {
    QMenu* menu = menuBar()->addMenu(caption);
    menu->setObjectName(name);
    return menu;
}

QAction* PictureWindow::add_item(QMenu* menu, const char* name, const QString& caption,
                                 Handler handler, const QKeySequence& shortcut) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [handler = std::move(handler)] { handler(); });
    return action;
}

QAction* PictureWindow::add_fit_item(QMenu* menu) {
    return add_item(
        menu, "ZentaiMenu", "全体表示(&F)", [this] { picture_->fit(); }, QKeySequence("Ctrl+0"));
}

QAction* PictureWindow::add_joint_item(QMenu* menu, Handler changed) {
    QAction* item =
        add_item(menu, "KousenMenu", "部材の交線(&X)", [this, changed = std::move(changed)] {
            view.joints = 1 - view.joints;
            changed();
        });
    item->setCheckable(true);
    item->setChecked(view.joints != 0);
    connect(menu, &QMenu::aboutToShow, item, [this, item] { item->setChecked(view.joints != 0); });
    return item;
}

void PictureWindow::add_help_menu() {
    QMenu* menu = add_menu("HelpMenu", "ヘルプ(&H)");
    add_item(
        menu, "Help1", "ヘルプ(&H)", [this] { show_help(this); }, QKeySequence(Qt::Key_F1));
    add_item(menu, "About1", "バージョン情報(&A)", [this] { show_about(this); });
}

void PictureWindow::export_dxf(const char* done) {
    const fs::path path =
        ask_save_file(work_dir, this, "DXF保存", "DXFファイル(*.DXF)|*.dxf", "dxf");
    if (path.empty()) {
        return;
    }
    TDxfWidthForm width(this);
    width.exec();
    if (width.choice() < 0) {
        return;
    }
    {
        const BusyCursor busy;
        const std::optional<SegmentCanvas> lines = picture_->segments();
        if (!lines || save_segment_file(work_dir, lines->area(), lines->segments()) < 0) {
            return;
        }
        make_dxf_file(path, lines->area().world, lines->segments(), width.choice());
    }
    show_message(done);
}

void PictureWindow::export_win3d(const QString& filter) {
    const fs::path path = ask_save_file(work_dir, this, "Win3D保存", filter, "dat");
    if (path.empty()) {
        return;
    }
    int status = 0;
    {
        const BusyCursor busy;
        status = save_win3d(solids, path);
    }
    show_message(status == 0 ? "Win3Dデータを保存しました" : "Win3Dデータ保存に失敗しました");
}

const char* PictureWindow::paint_perspective(int status) {
    if (status < 0) {
        picture_->update();
        return nullptr;
    }
    const bool nothing = is_nothing_in_sight(solids, perspective);
    picture_->paint_again(nothing ? nothing_in_sight : ""); // first: the box lets it paint
    if (nothing && !std::exchange(told_nothing_in_sight_, nothing)) {
        show_message(nothing_in_sight);
    }
    told_nothing_in_sight_ = nothing;
    return nothing                         ? nothing_in_sight
           : status == perspective_stopped ? hidden_lines_stopped
                                           : nullptr;
}

// The menu entries have no tips for the status bar; the empty ones would wipe its message.
bool PictureWindow::event(QEvent* event) {
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

void PictureWindow::closeEvent(QCloseEvent* event) {
    QMainWindow::closeEvent(event);
    if (event->isAccepted()) {
        emit closed();
    }
}

} // namespace kigumi
