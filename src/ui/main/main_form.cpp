#include "ui/main/main_form.h"

#include "analysis/result_input.h"
#include "analysis/solver_input.h"
#include "base/message.h"
#include "draw/stroke_font.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "model/roles.h"
#include "model/sections.h"
#include "project/accept.h"
#include "project/regenerate.h"
#include "solid/solid.h"
#include "ui/data/sel_beam_form.h"
#include "ui/data/sel_node_form.h"
#include "ui/frame/kihon_form.h"
#include "ui/frame/kihon_unit_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"
#include "ui/kit/drops.h"
#include "ui/kit/help_form.h"
#include "ui/kit/undo_menu.h"
#include "ui/result/age_question.h"
#include "ui/result/analysis_run.h"
#include "ui/result/frame_slv_form.h"
#include "ui/sketch/tegaki_form.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStatusBar>

#include <memory>

using namespace kigumi;

namespace {

constexpr int taskbar_height = 64; // pixels left below the window

// Settings, log and tables as a fresh program has them.
void start_program(Work& work, Document& document, std::optional<SpyLog>& log) {
    Project& project = work.project;
    reset_model(project.model);
    reset_solids(project.solids);
    clear_points(project.solids);
    log.emplace(project.work_dir);
    spy_text("cDirectory " + utf8_of(project.work_dir));
    const QSize screen = QGuiApplication::primaryScreen()->size();
    spy_now("xScreen %5d yScreen %5d", screen.width(), screen.height() - taskbar_height);
    project.model.snap_radius = 10.0f;
    project.view = View{};
    document = Document{};
    work.history.start(project);
}

} // namespace

TMainForm::TMainForm(Session& session)
    : PictureWindow(session, nullptr), picking_(new NodePicking(session, this, &picture())),
      autosave_(new Autosave(session, this)) {
    setObjectName("MainForm");
    start_program(session.work, document, log_);
    add_file_menu();
    add_edit_menu();
    add_data_menu();
    add_view_menu();
    add_help();
    connect(new FileDrops(this), &FileDrops::dropped, this,
            [this](const QString& file) { open_dropped(path_of_qt(file)); });
    connect(autosave_, &Autosave::failed, this, [this](const QString& why) {
        statusBar()->showMessage(QString("自動保存できません: %1").arg(why));
    });
    connect(qApp, &QGuiApplication::commitDataRequest, this, &TMainForm::end_session);
    lock_ = std::make_unique<FolderLock>(session.project.work_dir, *statusBar());
    resize(1200, 740);
    follow();
}

void TMainForm::add_file_menu() {
    QMenu* file = add_menu("FileMenu", "ファイル(&F)");
    add_item(
        file, "SinkiMenu", "新規作成(&N)", [this] { new_model(); }, QKeySequence::New);
    add_project_items(file);
    file->addSeparator();
    QAction* kihon = add_item(
        file, "KihonMenu", "基本データ選択(&K)", [this] { basic_data(); }, QKeySequence("Ctrl+G"));
    QAction* henkou =
        add_item(file, "KihonHenkouMenu", "基本データ変更(&B)...", [this] { change_basic_data(); });
    QAction* tegaki = add_item(file, "TegakiMenu", "手書入力編集(&T)", [this] { draw_by_hand(); });
    QAction* read =
        add_item(file, "JikuDataReadMenu", "軸データ編集(&J)", [this] { read_axis_data(); });
    file->addSeparator();
    QMenu* save = file->addMenu("ファイル保存(&S)");
    save->setObjectName("SaveFileMenu");
    QAction* textbook =
        add_item(save, "HoneSaveMenu", "骨組入力データ(&H)", [this] { save_textbook_input(); });
    QAction* solver = add_item(save, "FrameSlvSaveMenu", "FrameSlv入力データ(&F)",
                               [this] { save_solver_input(); });
    QAction* solve = add_item(
        file, "KaisekiMenu", "構造解析実施(&A)", [this] { analyse(); }, QKeySequence(Qt::Key_F5));
    QAction* keep =
        add_item(file, "KekkaHozonMenu", "解析結果保存(&R)", [this] { save_result_files(); });
    QAction* last = add_item(file, "SaigoKaisekiMenu", "最後の解析結果(&L)",
                             [this] { show_results(ResultsOf::any_frame); });
    QAction* own = add_item(file, "KekkaHyoujiMenu", "結果表示(&V)", [this] { show_results({}); });
    file->addSeparator();
    QAction* exit = add_item(
        file, "ExitMenu", "終了(&X)", [this] { close(); }, QKeySequence("Ctrl+Q"));
    opened_by_.insert(opened_by_.end(), {{kihon, &CommandFlags::KihonMenu},
                                         {henkou, &CommandFlags::KihonHenkouMenu},
                                         {tegaki, &CommandFlags::TegakiMenu},
                                         {read, &CommandFlags::JikuDataReadMenu},
                                         {save->menuAction(), &CommandFlags::SaveFileMenu},
                                         {textbook, &CommandFlags::HoneSaveMenu},
                                         {solver, &CommandFlags::FrameSlvSaveMenu},
                                         {solve, &CommandFlags::KaisekiMenu},
                                         {keep, &CommandFlags::KekkaHozonMenu},
                                         {last, &CommandFlags::SaigoKaisekiMenu},
                                         {own, &CommandFlags::KekkaHyoujiMenu},
                                         {exit, &CommandFlags::ExitMenu}});
}

void TMainForm::add_edit_menu() {
    QMenu* menu = add_menu("HensyuMenu", "編集(&E)");
    auto* undo = new UndoActions(session_, this, all_steps);
    menu->addAction(undo->undo_action());
    menu->addAction(undo->redo_action());
    connect(&session_.news, &News::changed, this, &TMainForm::follow);
}

void TMainForm::add_data_menu() {
    QMenu* menu = add_menu("SetutenShiteiMenu", "データ指定(&D)");
    opened_by_.emplace_back(menu->menuAction(), &CommandFlags::SetutenShiteiMenu);
    QAction* const items[] = {
        add_item(menu, "KousokuSetutenMenu", "拘束節点指定(&K)",
                 [this] { picking_->start(PickMode::restrain); }),
        add_item(menu, "KajyuSetutenMenu", "荷重節点指定(&L)",
                 [this] { picking_->start(PickMode::load); }),
        add_item(menu, "SetutenDataMenu", "節点データ入力(&N)",
                 [this] { support_and_load_data(); }),
        add_item(menu, "BeamParamMenu", "部材データ(&B)", [this] { member_data(); }),
    };
    for (QAction* item : items) {
        opened_by_.emplace_back(item, &CommandFlags::SetutenShiteiMenu);
    }
}

QAction* TMainForm::add_toggle(QMenu* menu, const char* name, const QString& caption, bool& flag,
                               bool letters) {
    QAction* action = add_item(menu, name, caption, [] {});
    action->setCheckable(true);
    action->setChecked(flag);
    connect(action, &QAction::toggled, this, [this, action, &flag, letters](bool on) {
        if (on && letters && load_stroke_font(lettering) < 0) {
            action->setChecked(false);
            return;
        }
        flag = on;
        show_state();
    });
    return action;
}

void TMainForm::member_data() {
    TSelBeamForm window(session_, this);
    window.exec();
    show_state();
}

void TMainForm::add_view_menu() {
    labels_.fixed_nodes = labels_.loaded_nodes = true;
    QMenu* shown = add_menu("HyoujiMenu", "表示(&V)");
    opened_by_.emplace_back(shown->menuAction(), &CommandFlags::HyoujiMenu);
    opened_by_.emplace_back(
        add_toggle(shown, "SetutenMeishouMenu", "節点名称(&N)", labels_.node_names, true),
        &CommandFlags::SetutenMeishouMenu);
    opened_by_.emplace_back(
        add_toggle(shown, "BuzaiBangouMenu", "部材番号(&B)", labels_.member_numbers, true),
        &CommandFlags::BuzaiBangouMenu);
    opened_by_.emplace_back(
        add_toggle(shown, "KoteiStutenMenu", "固定節点(&K)", labels_.fixed_nodes),
        &CommandFlags::KoteiStutenMenu);
    opened_by_.emplace_back(
        add_toggle(shown, "KajyuryouMenu", "荷重節点(&L)", labels_.loaded_nodes),
        &CommandFlags::KajyuryouMenu);
    shown->addSeparator();
    add_fit_item(shown);
}

void TMainForm::add_help() {
    QMenu* help = add_menu("HelpMenu", "ヘルプ(&H)");
    add_item(
        help, "Help2", "ヘルプ(&H)", [this] { show_help(this); }, QKeySequence(Qt::Key_F1));
    // Deliberate: this item does nothing in the main window.
    add_item(help, "About1", "バージョン情報(&A)", [] {});
}

void TMainForm::follow() {
    const CommandFlags flags = command_flags(project, results_);
    for (const auto& [action, flag] : opened_by_) {
        action->setEnabled(flags.*flag);
    }
    show_state();
}

void TMainForm::show_state() {
    const bool present = project.stage == Stage::made || project.stage == Stage::loaded;
    const bool work = present || model.N_Node > 0; // perhaps an unfinished sketch
    setWindowTitle(work ? marked_name(document, is_unsaved(session_.work)) + " - kigumi"
                        : QString("kigumi"));
    statusBar()->showMessage(document_summary(session_.project));
    if (present) {
        picture().set_picture([this](Canvas& canvas, DrawArea& area) {
            picking_->shown = project_model(model, view);
            draw_model_picture(model, picking_->shown, lettering, canvas, area, labels_);
        });
    } else {
        picture().set_picture({});
    }
}

void TMainForm::check_model() {
    {
        // A frame that a window leaves behind belongs to that window's last step.
        const BusyCursor busy;
        derive(session_, accept_model);
    }
    if (project.stage == Stage::made) {
        view.TAU = view.FAI = 30.0f;
        picture().fit();
    }
    follow();
}

void TMainForm::new_model() {
    if (!may_leave(this)) {
        return;
    }
    picking_->stop();
    change(session_, "新規作成", [](Project& p) {
        reset_model(p.model);
        reset_solids(p.solids);
        clear_points(p.solids);
        forget_old_node(p.sketch_places);
        p.param = {};
        p.generated = false;
        p.shift = {};
        p.stage = Stage::empty;
        return 0;
    });
    start_work({});
}

void TMainForm::basic_data() {
    if (!may_leave(this)) { // an unfinished sketch, which the frame takes the place of
        return;
    }
    TKihonUnitForm window(session_, this);
    run(window);
    if (session_.work.history.differs(project)) {
        session_.work.history.restore(session_.project); // what the dialog left without a frame
    }
    check_model();
}

void TMainForm::change_basic_data() {
    picking_->stop();
    const Param before = param;
    TKihonForm dialog(session_, this);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    const Param chosen = std::exchange(session_.project.param, before);
    if (!accepted) {
        return;
    }
    const BusyCursor busy;
    change(
        session_, "基本データの変更", [&](Project& p) { return regenerate(p, chosen); },
        OnFailure::take_back);
    picture().fit();
    follow();
}

void TMainForm::draw_by_hand() {
    TTegakiForm window(session_, this);
    run(window);
    check_model();
}

void TMainForm::support_and_load_data() {
    picking_->stop();
    const auto make_tables = [](Project& p) { return make_fix_and_load(p.model); };
    if (model.fix_load_edited == 0 && derive(session_, make_tables) < 0) {
        return;
    }
    TSelNodeForm window(session_, this);
    connect(&window, &TSelNodeForm::changed, &picture(), qOverload<>(&QWidget::update));
    window.exec();
    change(session_, "節点データ入力", [](Project& p) {
        note_roles_entered(p);
        return 0;
    });
    follow();
}

bool TMainForm::save_solver_input() {
    const fs::path path = ask_save_file(work_dir, this, "FrameSlv入力データ",
                                        "FrameSlv入力データ(*.bon)|*.bon", "bon");
    if (path.empty()) {
        return false;
    }
    if (save_honegumi(model, path) < 0) {
        show_message("｢FrameSlvデータ保存に失敗しました");
        return false;
    }
    return true;
}

bool TMainForm::save_textbook_input() {
    const fs::path path =
        ask_save_file(work_dir, this, "骨組入力データ", "骨グラ保存(*.ydu)|*.ydu", "ydu");
    if (path.empty()) {
        return false;
    }
    if (save_honegra(model, path) < 0) {
        show_message("｢フレームラボ」データ保存に失敗しました");
        return false;
    }
    return true;
}

void TMainForm::save_result_files() {
    const auto age = stored_result_age(model, work_dir);
    if (age && !may_save_results(this, model, *age)) {
        return;
    }
    const fs::path path =
        ask_save_file(work_dir, this, "解析結果保存", "解析結果保存(*.out)|*.out", "out");
    if (!path.empty()) {
        save_results(work_dir, path);
    }
}

void TMainForm::analyse() {
    picking_->stop();
    if (run_analysis(model, solver_seams, work_dir, *this)) {
        show_results(ResultsOf::this_model);
    }
}

void TMainForm::show_results(std::optional<ResultsOf> whose) {
    TFrameSlvForm window(session_, this, whose);
    run(window);
    view.TAU = view.FAI = 30.0f;
    results_ = true;
    follow();
}

void TMainForm::closeEvent(QCloseEvent* event) {
    if (!session_.leaving && !may_leave(this)) {
        event->ignore();
        return;
    }
    picking_->stop();
    autosave_->remove();
    log_.reset();
    PictureWindow::closeEvent(event);
}
