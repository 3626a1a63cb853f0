// What every picture window has: the drawing widget, menus, exports, and being shown modally.
#pragma once

#include "ui/kit/session.h"
#include "ui/picture/picture_widget.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>

#include <functional>

namespace kigumi {

class PictureWindow : public QMainWindow, protected Desk {
    Q_OBJECT

  public:
    // `picture` is what the window shows pictures on; it makes a plain one where none is given.
    explicit PictureWindow(Session& session, QWidget* parent = nullptr,
                           PictureWidget* picture = nullptr);

    PictureWidget& picture() { return *picture_; }
    // Shows the window, filling the screen, and returns when it is closed.
    void run_modal();

  protected:
    using Handler = std::function<void()>;

    // A menu of the menu bar. Captions carry their mnemonic behind the words: "ファイル(&F)".
    QMenu* add_menu(const char* name, const QString& caption);
    QAction* add_item(QMenu* menu, const char* name, const QString& caption, Handler handler,
                      const QKeySequence& shortcut = {});
    // The entry that shows the whole picture again.
    QAction* add_fit_item(QMenu* menu);
    // The entry that switches the lines where bars meet (View::joints); `changed` is called then.
    QAction* add_joint_item(QMenu* menu, Handler changed);
    // ヘルプ and バージョン情報.
    void add_help_menu();

    // DXF保存: file name, line dialog, then the picture as shown, without zoom; `done` is the
    // message of its success.
    void export_dxf(const char* done = "ＤＸＦファイルを作製しました");
    // Win3D保存 with the filter of the window.
    void export_win3d(const QString& filter);

    // Has the perspective picture painted anew after prepare_perspective_shown gave `status`. What
    // the status bar is to say of it: why nothing is seen, which a box tells too, once until
    // something is seen again; that hidden lines are drawn; or null.
    const char* paint_perspective(int status);
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  signals:
    void closed();

  private:
    PictureWidget* picture_;
    bool told_nothing_in_sight_ = false;
};

} // namespace kigumi
