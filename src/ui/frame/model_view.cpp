#include "ui/frame/model_view.h"

#include "base/message.h"
#include "draw/model_picture.h"
#include "sight/perspective.h"
#include "solid/axis_picture.h"
#include "solid/solid.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/isome_form.h"
#include "ui/picture/perspective_progress.h"
#include "ui/picture/view_form.h"

#include <QStatusBar>

namespace kigumi {

namespace {

void paint_model(const Model& model, const View& view, Solids& solids,
                 PerspectiveLines& perspective, const fs::path& work_dir, ModelMode mode,
                 Canvas& canvas, DrawArea& area) {
    switch (mode) {
    case ModelMode::wire_nodes:
        draw_wire(project_model(model, view), canvas, area, true);
        break;
    case ModelMode::wire:
        draw_wire(project_model(model, view), canvas, area, false);
        break;
    case ModelMode::axis:
        draw_axis_model(view, solids, canvas, area);
        break;
    case ModelMode::perspective:
        draw_perspective(view, solids, perspective, work_dir, canvas, area);
        break;
    case ModelMode::nothing:
        break;
    }
}

} // namespace

ModelWindow::ModelWindow(Session& session, QWidget* parent, PictureWidget* picture)
    : PictureWindow(session, parent, picture) {
    view.TAU = view.FAI = 30.0f;
}

void ModelWindow::show_mode(ModelMode mode) {
    mode_ = mode;
    picture().fit();
    picture().set_picture([this, mode](Canvas& canvas, DrawArea& area) {
        paint_model(model, view, solids, perspective, work_dir, mode, canvas, area);
    });
    if (mode != ModelMode::perspective) {
        tell_of_perspective(nullptr);
    }
}

void ModelWindow::add_view_menu(ModelMode marked) {
    QMenu* menu = add_menu("HyoujiMenu", "表示(&V)");
    view_items_.push_back(add_item(menu, "WireNodeMenu", "節点付ワイヤモデル(&N)",
                                   [this, marked] { turn_parallel(marked); }));
    view_items_.push_back(add_item(menu, "WireMenu", "節点なしワイヤモデル(&W)",
                                   [this] { turn_parallel(ModelMode::wire); }));
    view_items_.push_back(
        add_item(menu, "JikuModelMenu", "軸モデル(&J)", [this] { show_axis_model(); }));
    viewpoint_item_ =
        add_item(menu, "SitenModelMenu", "視点座標モデル(&S)", [this] { show_viewpoint_model(); });
    view_items_.push_back(viewpoint_item_);
    menu->addSeparator();
    add_joint_item(menu, [this] { follow_joints(); });
    add_fit_item(menu);
}

void ModelWindow::set_views_enabled(bool enabled) {
    for (QAction* item : view_items_) {
        item->setEnabled(enabled);
    }
}

void ModelWindow::turn_parallel(ModelMode mode) {
    view.TAU = view.FAI = 30.0f;
    view.perspective = 0;
    show_mode(mode);
    TIsomeForm angles(session_, this);
    connect(&angles, &TIsomeForm::changed, &picture(), qOverload<>(&QWidget::update));
    angles.exec();
}

int ModelWindow::rebuild_solids() {
    const BusyCursor busy;
    DrawArea area;
    area.xScreen = picture().width();
    area.yScreen = picture().height();
    return build_trio_file(model, solids, work_dir) < 0 ? -1 : get_jiku_world(view, solids, area);
}

void ModelWindow::show_axis_model() {
    view.TAU = view.FAI = 30.0f;
    if (rebuild_solids() < 0) {
        show_message("get_jiku failed at jikuire()");
        return;
    }
    if (viewpoint_item_ != nullptr) {
        viewpoint_item_->setEnabled(true);
    }
    turn_parallel(ModelMode::axis);
}

void ModelWindow::show_viewpoint_model() {
    if (rebuild_solids() < 0) {
        show_message("get_jiku failed at jikuire()");
        return;
    }
    if (prepare_viewpoint(this) < 0) {
        return;
    }
    show_mode(ModelMode::perspective);
    TViewForm viewpoint(session_, this);
    connect(&viewpoint, &TViewForm::stored, this, [&] { prepare_viewpoint(&viewpoint); });
    viewpoint.exec();
    prepare_viewpoint(this);
}

int ModelWindow::prepare_viewpoint(QWidget* parent) {
    const int status = prepare_perspective_shown(view, solids, perspective, work_dir, parent);
    tell_of_perspective(paint_perspective(status));
    return status;
}

void ModelWindow::follow_joints() {
    if (mode_ == ModelMode::perspective) {
        prepare_viewpoint(this);
    }
}

void ModelWindow::tell(const QString& text) {
    if (told_of_perspective_) {
        message_before_ = text;
    } else {
        statusBar()->showMessage(text);
    }
}

void ModelWindow::tell_of_perspective(const char* text) {
    if (text != nullptr && !told_of_perspective_) {
        message_before_ = statusBar()->currentMessage();
    }
    if (text != nullptr || told_of_perspective_) {
        statusBar()->showMessage(text != nullptr ? text : message_before_);
    }
    told_of_perspective_ = text != nullptr;
}

} // namespace kigumi
