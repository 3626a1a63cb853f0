#include "ui/data/node_picking.h"

#include "base/message.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "ui/data/node_kensaku_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/undo_menu.h"
#include "ui/picture/picture_widget.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>

namespace kigumi {

namespace {

constexpr int tick = 200; // ms

int picked_role(PickMode mode) {
    return mode == PickMode::restrain ? role_fixed : role_loaded;
}

QString mode_text(const Model& model, PickMode mode) {
    if (mode == PickMode::none) {
        return {};
    }
    const QString name = mode == PickMode::restrain ? "拘束節点指定" : "荷重節点指定";
    return name + (model.fix_load_edited != 0
                       ? "：支点と荷重は入力済みで、ここでは変わりません（変更は節点データ入力）"
                       : "：節点を左クリック（Esc で終わり）");
}

QString node_text(const Model& model, int node) {
    const int role = role_of(model, node);
    return QString("　%1 %2").arg(qt_text(model.node[node].id),
                                  QString(role == role_fixed    ? "固定節点"
                                          : role == role_loaded ? "荷重節点"
                                                                : "指定なし"));
}

} // namespace

NodePicking::NodePicking(Session& session, QMainWindow* window, PictureWidget* picture)
    : QObject(window), Desk(session), picture_(picture),
      search_(new TNodeKensakuForm(session, window)), status_(new QLabel),
      timer_(new QTimer(window)) {
    status_->setObjectName("PickLabel");
    window->statusBar()->addPermanentWidget(status_);
    timer_->setObjectName("Timer1");
    timer_->setInterval(tick);
    connect(timer_, &QTimer::timeout, this, &NodePicking::on_timer);
    connect(picture, &PictureWidget::picked, this, &NodePicking::pick);
    connect(picture, &PictureWidget::hovered, this, &NodePicking::hover);
    connect(picture, &PictureWidget::left, this, [this] { show_status(-1); });
    connect(search_, &TNodeKensakuForm::marked, picture, qOverload<>(&QWidget::update));
    connect(search_, &TNodeKensakuForm::closed, this, &NodePicking::stop);
    connect(&session.news, &News::stepped, this, &NodePicking::follow);
    window->installEventFilter(this);
    connect(new QShortcut(Qt::Key_F6, window), &QShortcut::activated, search_,
            [this] { search_->activateWindow(); });
    connect(new QShortcut(Qt::Key_F6, search_), &QShortcut::activated, window,
            [window] { window->activateWindow(); });
}

bool NodePicking::eventFilter(QObject* window, QEvent* event) {
    // Whatever in the window has the focus: a key that it has no use for comes to the window.
    if (event->type() == QEvent::KeyPress && mode_ != PickMode::none &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        stop();
        return true;
    }
    return QObject::eventFilter(window, event);
}

void NodePicking::start(PickMode mode) {
    mode_ = mode;
    search_->open(picked_role(mode), *picture_);
    timer_->start();
    show_status(-1);
}

void NodePicking::follow() {
    if (project.stage != Stage::made && project.stage != Stage::loaded) {
        stop(); // the frame that was picked in is gone
        return;
    }
    show_status(-1);
    picture_->update();
}

void NodePicking::stop() {
    mode_ = PickMode::none;
    on_timer();
    show_status(-1);
}

void NodePicking::on_timer() {
    if (mode_ == PickMode::none) {
        search_->hide();
        timer_->stop();
    }
}

int NodePicking::node_at(QPoint at) const {
    if (shown.node.empty() || !can_map(picture_->area())) {
        return -1;
    }
    const PlanePoint point = to_plane(picture_->area(), at.x(), at.y());
    return find_plane_node(shown, point, model.snap_radius);
}

void NodePicking::pick(QPoint at) {
    if (mode_ == PickMode::none) {
        return;
    }
    const int node = node_at(at);
    if (node < 0) {
        show_message("節点が見つかりません");
        picture_->window()->activateWindow();
        return;
    }
    if (model.fix_load_edited == 0) {
        const char* name = mode_ == PickMode::restrain ? "拘束節点の指定" : "荷重節点の指定";
        change(session_, name, [this, node](Project& p) {
            pick_role(p.model, node, picked_role(mode_));
            return 0;
        });
        picture_->update();
    }
    show_status(node);
}

void NodePicking::hover(QPoint at) {
    show_status(node_at(at));
}

void NodePicking::show_status(int node) {
    const QString text = mode_text(model, mode_) + (node >= 0 ? node_text(model, node) : QString());
    status_->setText(text);
    status_->setVisible(!text.isEmpty());
}

} // namespace kigumi
