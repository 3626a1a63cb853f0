#include "ui/main/main_form.h"

#include "analysis/solver_input.h"
#include "base/message.h"
#include "draw/stroke_font.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "model/members.h"
#include "model/roles.h"
#include "model/sections.h"
#include "solid/solid.h"
#include "trace/spy.h"
#include "ui/data/sel_beam_form.h"
#include "ui/data/sel_node_form.h"
#include "ui/frame/jiku_form.h"
#include "ui/frame/kihon_unit_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"
#include "ui/kit/help_form.h"
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
void start_program(Work& work, Document& document) {
    Project& project = work.project;
    reset_model(project.model);
    reset_solids(project.solids);
    clear_points(project.solids);
    spy_open(project.work_dir);
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
    : PictureWindow(session, nullptr), picking_(new NodePicking(session, this, &picture())) {
    setObjectName("MainForm");
    start_program(session.work, document);
    add_file_menu();
    add_data_menu();
    add_view_menu();
    add_help();
    resize(1200, 740);
    set_stage(Stage::empty);
}

void TMainForm::add_file_menu() {
    QMenu* file = add_menu("FileMenu", "ファイル(&F)");
    add_item(
        file, "SinkiMenu", "新規作成(&N)", [this] { new_model(); }, QKeySequence::New);
    file->addSeparator();
    QAction* kihon = add_item(
        file, "KihonMenu", "基本データ選択(&K)", [this] { basic_data(); }, QKeySequence("Ctrl+G"));
    QAction* tegaki = add_item(file, "TegakiMenu", "手書入力編集(&T)", [this] { draw_by_hand(); });
    QAction* read = add_item(
        file, "JikuDataReadMenu", "軸データ編集(&J)", [this] { read_axis_data(); },
        QKeySequence::Open);
    file->addSeparator();
    QMenu* save = file->addMenu("ファイル保存(&S)");
    save->setObjectName("SaveFileMenu");
    QAction* textbook =
        add_item(save, "HoneSaveMenu", "骨組入力データ(&H)", [this] { save_textbook_input(); });
    QAction* solver = add_item(
        save, "FrameSlvSaveMenu", "FrameSlv入力データ(&F)", [this] { save_solver_input(); },
        QKeySequence::Save);
    QAction* solve = add_item(
        file, "KaisekiMenu", "構造解析実施(&A)", [this] { analyse(); }, QKeySequence(Qt::Key_F5));
    QAction* keep =
        add_item(file, "KekkaHozonMenu", "解析結果保存(&R)", [this] { save_result_files(); });
    QAction* last = add_item(file, "SaigoKaisekiMenu", "最後の解析結果(&L)",
                             [this] { show_results(ResultsOf::any_frame); });
    file->addSeparator();
    QAction* exit = add_item(
        file, "ExitMenu", "終了(&X)", [this] { close(); }, QKeySequence("Ctrl+Q"));
    opened_by_ = {
        {kihon, &CommandFlags::KihonMenu},       {tegaki, &CommandFlags::TegakiMenu},
        {read, &CommandFlags::JikuDataReadMenu}, {save->menuAction(), &CommandFlags::SaveFileMenu},
        {textbook, &CommandFlags::HoneSaveMenu}, {solver, &CommandFlags::FrameSlvSaveMenu},
        {solve, &CommandFlags::KaisekiMenu},     {keep, &CommandFlags::KekkaHozonMenu},
        {last, &CommandFlags::SaigoKaisekiMenu}, {exit, &CommandFlags::ExitMenu}};
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
    commit("部材データの変更");
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

void TMainForm::commit(const char* name) {
    session_.work.history.commit(name, project);
}

void TMainForm::set_stage(Stage stage) {
    project.stage = stage;
    const CommandFlags flags = command_flags(project, results_);
    for (const auto& [action, flag] : opened_by_) {
        action->setEnabled(flags.*flag);
    }
    show_state();
}

void TMainForm::show_state() {
    const bool present = project.stage == Stage::made || project.stage == Stage::loaded;
    setWindowTitle(present ? marked_name(document, is_unsaved(session_.work)) + " - kigumi"
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
    const bool saved = !is_unsaved(session_.work);
    accept_model();
    commit("骨組の受け取り");
    if (saved) {
        session_.work.history.mark_saved();
        show_state();
    }
}

void TMainForm::accept_model() {
    if (model.N_Node == 0 && model.N_Beam == 0) {
        set_stage(Stage::empty);
        return;
    }
    if (model.N_Beam >= 1) {
        if (check_all_beam(model) < 0) {
            return;
        }
        view.TAU = view.FAI = 30.0f;
        const BusyCursor busy;
        place_on_sheet(model, project_model(model, view));
        if (rebuild_tables(model) < 0) {
            return;
        }
    }
    // What the drawing editor kept in the flags is no role.
    clear_roles(model);
    picture().fit();
    set_stage(Stage::made);
}

void TMainForm::new_model() {
    if (!may_leave()) {
        return;
    }
    picking_->stop();
    reset_model(model);
    reset_solids(solids);
    clear_points(solids);
    forget_old_node(sketch_places);
    project.param = {};
    project.generated = false;
    project.shift = {};
    document.file.clear();
    results_ = false;
    picture().fit();
    set_stage(Stage::empty);
    session_.work.history.start(project);
}

void TMainForm::basic_data() {
    TKihonUnitForm window(session_, this);
    window.run_modal();
    check_model();
}

void TMainForm::draw_by_hand() {
    TTegakiForm window(session_, this);
    window.run_modal();
    check_model();
    show_state();
}

void TMainForm::read_axis_data() {
    const fs::path path = ask_open_file(work_dir, this, "軸データ編集", "軸データ(*.JIK)|*.jik");
    if (path.empty()) {
        return;
    }
    set_stage(Stage::reading);
    const auto before = std::make_unique<Model>(model);
    reset_model(model);
    reset_solids(solids);
    clear_points(solids);
    int status = 0;
    std::string reason;
    {
        const BusyCursor busy;
        status = load_jiku_data(model, solids, work_dir, path, &reason);
        status = status < 0 ? -1 : rebuild_tables(model);
    }
    reset_solids(solids); // reading makes solids of some lines
    clear_points(solids);
    if (status < 0) {
        show_message("軸データ読みこみに失敗しました", reason);
        reset_model(model);
        model = *before;
        set_stage(Stage::empty);
        return;
    }
    forget_old_node(sketch_places);
    project.shift = {};
    project.generated = false;
    document.file = path;
    session_.work.history.commit("軸データの読みこみ", project);
    session_.work.history.mark_saved();
    TJikuForm window(session_, this);
    window.run_modal();
    check_model();
}

void TMainForm::support_and_load_data() {
    picking_->stop();
    if (model.fix_load_edited == 0 && make_fix_and_load(model) < 0) {
        return;
    }
    TSelNodeForm window(session_, this);
    connect(&window, &TSelNodeForm::changed, &picture(), qOverload<>(&QWidget::update));
    window.exec();
    if (model.N_Fix >= 1 && model.N_Load >= 1) {
        model.fix_load_edited = 1;
        project.stage = Stage::loaded;
    }
    commit("支点と荷重の入力");
    set_stage(project.stage);
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

void TMainForm::show_results(ResultsOf whose) {
    TFrameSlvForm window(session_, this, whose);
    window.run_modal();
    view.TAU = view.FAI = 30.0f;
    results_ = true;
    set_stage(project.stage);
}

bool TMainForm::save_axis_data() {
    const fs::path path =
        ask_save_file(work_dir, this, "軸データ保存", "軸データ(*.JIK)|*.jik", "jik");
    if (path.empty() || save_jiku_data(model, path, project.shift) < 0) {
        return false;
    }
    document.file = path;
    session_.work.history.mark_saved();
    show_state();
    return true;
}

bool TMainForm::may_leave() {
    if (!is_unsaved(session_.work)) {
        return true;
    }
    switch (ask_unsaved(this, "保存していない仕事があります。保存しますか?", "保存する(&S)",
                        "保存しない(&D)", "キャンセル(&C)")) {
    case UnsavedAnswer::save:
        return save_axis_data();
    case UnsavedAnswer::discard:
        return true;
    case UnsavedAnswer::cancel:
        break;
    }
    return false;
}

void TMainForm::closeEvent(QCloseEvent* event) {
    if (!may_leave()) {
        event->ignore();
        return;
    }
    picking_->stop();
    spy_close();
    PictureWindow::closeEvent(event);
}
