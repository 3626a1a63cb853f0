#include "ui/sketch/tegaki_form.h"

#include "files/tegaki.h"
#include "model/members.h"
#include "model/nodes.h"
#include "solid/solid.h"
#include "ui/kit/document.h"
#include "ui/kit/undo_menu.h"
#include "ui/sketch/beam_form.h"
#include "ui/sketch/node_form.h"
#include "ui/sketch/node_table_form.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QLabel>
#include <QStatusBar>

using namespace kigumi;

namespace {

struct ModeItem {
    SheetMode mode;
    const char* name;
    const char* caption;
    const char* key;
    const char* hint;
};
constexpr ModeItem mode_items[] = {
    {SheetMode::draw, "BuzaiShiteiMenu", "部材指定(&B)", "Ctrl+1",
     "部材指定: 部材の両端を順にクリックします"},
    {SheetMode::remove, "BuzaiSakujyoMenu", "部材削除(&D)", "Ctrl+2",
     "部材削除: 消す部材を横切るようにドラッグします"},
    {SheetMode::node_data, "SetutenDataMenu", "節点データ(&S)", "Ctrl+3",
     "節点データ: 座標を入れる節点をクリックします"},
    {SheetMode::beam_data, "BuzaiDataMenu", "部材データ(&P)", "Ctrl+4",
     "部材データ: 断面を入れる部材を横切るようにドラッグします"},
};

QString node_words(const Node& node) {
    const QString place = QString("(%1, %2, %3)").arg(node.x).arg(node.y).arg(node.z);
    return QString("節点 %1 %2").arg(node.no).arg(is_missing(node) ? "座標未入力" : place);
}

QString beam_words(const Beam& beam) {
    const QString section = QString("%1×%2").arg(beam.haba).arg(beam.atumi);
    return QString("部材 %1（%2－%3）%4")
        .arg(beam.no)
        .arg(beam.noi)
        .arg(beam.noj)
        .arg(is_missing(beam) ? "断面未入力" : section);
}

} // namespace

TTegakiForm::TTegakiForm(Session& session, QWidget* parent)
    : ModelWindow(session, parent, new SheetWidget(session)),
      undo_(new UndoActions(session, this, own_steps(session))) {
    setObjectName("TegakiForm");
    sheet_ = static_cast<SheetWidget*>(&picture());
    undo_->give_up = [this] { return give_up(); };
    undo_->is_half_done = [this] { return sheet_->sheet().is_half_drawn(); };
    autosave_ = new TegakiAutosave(session, this,
                                   [this](const fs::path& path) { return write_copy(path); });
    add_file_menu();
    add_edit_menu();
    add_mode_menu();
    add_shown_menu();
    add_help_menu();
    add_status();
    connect(sheet_, &SheetWidget::acted, this, &TTegakiForm::take);
    connect(sheet_, &SheetWidget::pointed, this, &TTegakiForm::show_pointer);
    connect(autosave_, &TegakiAutosave::failed, this, [this](const QString& why) {
        statusBar()->showMessage(QString("自動保存できません: %1").arg(why));
    });
    if (model.N_Node == 0) {
        name_file_of_step(session_, {});
        const fs::path copy = find_autosave(work_dir);
        if (!copy.empty()) {
            QTimer::singleShot(0, this, [this, copy] { offer_restoring(copy); });
        }
    }
    // The sheet's places, or the drawing of the frame where it has none yet, are no change.
    derive(session, [](Project& p) {
        load_old_node(p.model, p.sketch_places);
        save_old_node(p.model, p.sketch_places);
        return 0;
    });
    show_read_sketch();
    connect(&session.news, &News::stepped, this, &TTegakiForm::follow_step);
    connect(&session.news, &News::changed, this, [this] {
        autosave_->note_change();
        show_state();
    });
}

void TTegakiForm::add_edit_menu() {
    QMenu* menu = add_menu("HensyuMenu", "編集(&E)");
    menu->addAction(undo_->undo_action());
    menu->addAction(undo_->redo_action());
    add_item(
        menu, "ChushiMenu", "描きかけの部材をやめる(&C)", [this] { sheet_->give_up(); },
        QKeySequence(Qt::Key_Escape));
    menu->addSeparator();
    with_members_.push_back(add_item(
        menu, "SetutenHyouMenu", "節点座標の表(&T)...", [this] { edit_all_nodes(); },
        QKeySequence("Ctrl+T")));
}

void TTegakiForm::add_mode_menu() {
    QMenu* menu = add_menu("ModeMenu", "データ指定(&D)");
    auto* group = new QActionGroup(this);
    for (const ModeItem& item : mode_items) {
        QAction* action = add_item(
            menu, item.name, item.caption, [this, mode = item.mode] { set_mode(mode); },
            QKeySequence(item.key));
        action->setCheckable(true);
        group->addAction(action);
        modes_[item.mode] = action;
    }
}

QAction* TTegakiForm::add_toggle(QMenu* menu, const char* name, const QString& caption, bool on,
                                 void (SheetWidget::*set)(bool)) {
    QAction* action = add_item(menu, name, caption, [] {});
    action->setCheckable(true);
    action->setChecked(on);
    connect(action, &QAction::toggled, sheet_, set);
    return action;
}

void TTegakiForm::add_shown_menu() {
    QMenu* menu = add_menu("HyoujiMenu", "表示(&V)");
    wire_ = add_item(menu, "WireMenu", "ワイヤモデル(&W)", [this] { view_model(ModelMode::wire); });
    when_complete_.push_back(
        add_item(menu, "JikuMenu", "軸モデル(&J)", [this] { view_model(ModelMode::axis); }));
    when_complete_.push_back(add_item(menu, "ShitenMenu", "視点座標モデル(&S)",
                                      [this] { view_model(ModelMode::perspective); }));
    add_item(
        menu, "TegakiModosuMenu", "手書に戻す(&T)", [this] { set_mode(SheetMode::draw); },
        QKeySequence("Ctrl+B"));
    menu->addSeparator();
    add_joint_item(menu, [this] { follow_joints(); });
    add_toggle(menu, "KousiMenu", "格子(&G)", false, &SheetWidget::set_grid);
    add_toggle(menu, "SetutenBangouMenu", "節点番号(&N)", true, &SheetWidget::set_node_numbers);
    add_toggle(menu, "BuzaiBangouMenu", "部材番号(&B)", false, &SheetWidget::set_beam_numbers);
    menu->addSeparator();
    add_item(
        menu, "ZentaiMenu", "全体表示(&F)", [this] { sheet_->show_whole(); },
        QKeySequence("Ctrl+0"));
}

void TTegakiForm::add_status() {
    const auto add = [this](const char* name) {
        auto* label = new QLabel;
        label->setObjectName(name);
        label->setMargin(fontMetrics().horizontalAdvance(' '));
        statusBar()->addPermanentWidget(label);
        return label;
    };
    mode_label_ = new QLabel;
    mode_label_->setObjectName("ModeLabel");
    statusBar()->addWidget(mode_label_);
    pointer_label_ = add("PointerLabel");
    position_label_ = add("PositionLabel");
    missing_label_ = add("MissingLabel");
    file_label_ = add("FileLabel");
}

void TTegakiForm::set_mode(SheetMode mode) {
    back_to_sheet();
    sheet_->set_mode(mode);
    show_state();
}

void TTegakiForm::take(SheetOutcome outcome) {
    if (outcome.event == SheetEvent::ask_node) {
        edit_node(outcome.at);
        sheet_->sheet().clear_marks();
    } else if (outcome.event == SheetEvent::ask_beam) {
        edit_beam(outcome.at);
    }
    show_state();
}

void TTegakiForm::edit_node(int node) {
    TNodeForm(session_, node, this).exec();
}

void TTegakiForm::edit_beam(int beam) {
    TBeamForm form(session_, beam, this);
    if (form.exec() != QDialog::Rejected && check_all_beam(model) == 1) {
        build_trio_file(model, solids, work_dir);
    }
}

void TTegakiForm::edit_all_nodes() {
    back_to_sheet();
    sheet_->give_up();
    TNodeTableForm form(session_, this, undo_->since());
    connect(&form, &TNodeTableForm::chosen, sheet_, &SheetWidget::set_current_node);
    form.exec();
    sheet_->set_current_node(-1);
}

bool TTegakiForm::give_up() {
    back_to_sheet();
    return sheet_->give_up();
}

void TTegakiForm::follow_step() {
    sheet_->sheet().clear_marks();
    show_state();
}

void TTegakiForm::view_model(ModelMode mode) {
    back_to_sheet();
    sheet_->leave_sheet();
    view.TAU = view.FAI = 30.0f;
    mode_label_->setText("手書に戻す（Ctrl+B）で図面に戻ります");
    if (mode == ModelMode::axis) {
        show_axis_model();
    } else if (mode == ModelMode::perspective) {
        show_viewpoint_model();
    } else {
        turn_parallel(mode);
    }
    if (this->mode() == ModelMode::nothing) {
        back_to_sheet(); // the solids could not be built
    }
    show_state();
}

void TTegakiForm::back_to_sheet() {
    if (sheet_->shows_sheet()) {
        return;
    }
    show_mode(ModelMode::nothing);
    statusBar()->clearMessage();
    sheet_->show_sheet();
}

void TTegakiForm::show_state() {
    const bool members = model.N_Beam > 0;
    for (QAction* action : with_members_) {
        action->setEnabled(members);
    }
    const bool known = all_nodes_known(model);
    wire_->setEnabled(known);
    for (QAction* action : when_complete_) {
        action->setEnabled(known && check_all_beam(model) == 1);
    }
    undo_->refresh();
    const SheetMode mode = sheet_->sheet().mode();
    modes_[mode]->setChecked(true);
    if (sheet_->shows_sheet()) {
        const bool half = sheet_->sheet().is_half_drawn();
        mode_label_->setText(half ? QString("部材指定: 終わりの端をクリックします（Esc でやめる）")
                                  : QString(mode_items[static_cast<int>(mode)].hint));
    }
    missing_label_->setText(model.N_Node > 0 ? sketch_summary(model)
                                             : QString("何も描かれていません"));
    setWindowTitle("手書");
    file_label_->setText(
        marked_name(document, model.N_Node > 0 && !session_.work.history.is_saved()));
    show_pointer();
    sheet_->update();
}

void TTegakiForm::show_pointer() {
    constexpr float reach = 5.0f; // sheet units from a member
    const std::optional<SheetPoint> at = sheet_->pointer();
    QString words;
    if (at) {
        const int node = search_2dim_node(model, at->X, at->Y);
        const int beam = node < 0 ? search_near_beam(model, at->X, at->Y, reach) : -1;
        words = node >= 0   ? node_words(model.node[node])
                : beam >= 0 ? beam_words(model.beam[beam])
                            : QString();
    }
    pointer_label_->setText(words);
    position_label_->setText(at ? QString("X %1  Y %2").arg(at->X, 0, 'f', 1).arg(at->Y, 0, 'f', 1)
                                : QString());
}
