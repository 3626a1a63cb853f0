// The main window's files: the project, what else it opens, and what may be lost.
#include "analysis/result_reader.h"
#include "base/message.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "model/sections.h"
#include "project/accept.h"
#include "project/project_file.h"
#include "solid/solid.h"
#include "ui/frame/jiku_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/settings.h"
#include "ui/kit/undo_menu.h"
#include "ui/main/main_form.h"

#include <QApplication>
#include <QSessionManager>
#include <QStatusBar>

using namespace kigumi;

namespace {

constexpr const char* project_filter = "プロジェクト(*.kigumi)|*.kigumi";
constexpr const char* frame_filter = "骨組のファイル(*.kigumi)|*.kigumi *.jik *.tgk";

// Leaves nothing of the model before: nodes and members, and what was made of them.
void clear_work(Project& project) {
    reset_model(project.model);
    reset_solids(project.solids);
    clear_points(project.solids);
    forget_old_node(project.sketch_places);
    project.param = {};
    project.generated = false;
    project.shift = {};
    project.stage = Stage::empty;
}

int load_axis_data(Project& project, const fs::path& path, std::string& reason) {
    clear_work(project);
    project.stage = Stage::reading;
    const bool loaded =
        load_jiku_data(project.model, project.solids, project.work_dir, path, &reason) >= 0 &&
        rebuild_tables(project.model) >= 0;
    reset_solids(project.solids); // reading makes solids of some lines
    clear_points(project.solids);
    return loaded ? accept_model(project) : -1;
}

int load_sketch(Project& project, const fs::path& path) {
    clear_work(project);
    return load_tegaki_data(project.model, project.sketch_places, path);
}

} // namespace

void TMainForm::add_project_items(QMenu* file) {
    add_item(
        file, "OpenMenu", "開く(&O)...", [this] { ask_open(); }, QKeySequence::Open);
    QMenu* recent = recent_ = file->addMenu("最近使ったファイル(&U)");
    recent->setObjectName("RecentMenu");
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { list_recent(recent); });
    list_recent(recent);
    QAction* save = add_item(
        file, "SaveProjectMenu", "保存(&E)", [this] { save_work(); }, QKeySequence::Save);
    QAction* save_as = add_item(
        file, "SaveAsMenu", "名前を付けて保存(&M)...", [this] { save_work_as(); },
        QKeySequence("Ctrl+Shift+S"));
    opened_by_.emplace_back(save, &CommandFlags::SaveProjectMenu);
    opened_by_.emplace_back(save_as, &CommandFlags::SaveAsMenu);
}

void TMainForm::list_recent(QMenu* menu) {
    menu->clear();
    int number = 0;
    for (const fs::path& file : recent_files()) {
        ++number;
        const QString name = qt_path(file.filename()).replace('&', "&&");
        const QString folder = qt_path(file.parent_path()).replace('&', "&&");
        add_item(menu, qPrintable(QString("RecentFile%1").arg(number)),
                 QString("&%1　%2　（%3）").arg(number).arg(name, folder),
                 [this, file] { open_recent(file); });
    }
    if (number == 0) {
        menu->addAction("（まだありません）")->setEnabled(false);
    }
}

void TMainForm::remember(const fs::path& file) {
    note_recent(file);
    // Later: the item that was chosen goes with the list.
    QTimer::singleShot(0, this, [this] { list_recent(recent_); });
}

void TMainForm::open_recent(const fs::path& file) {
    std::error_code missing;
    if (!fs::exists(file, missing)) {
        forget_recent(file);
        show_message("「" + utf8_of(file) + "」はもうありません");
        return;
    }
    open_file(file);
}

void TMainForm::ask_open() {
    const fs::path path = ask_open_file(work_dir, this, "開く", frame_filter);
    if (!path.empty()) {
        open_file(path);
    }
}

void TMainForm::open_file(const fs::path& path) {
    if (may_leave(this)) {
        load_file(path);
    }
}

bool TMainForm::load_file(const fs::path& path) {
    picking_->stop();
    const std::string ending = ending_of(path);
    if (ending != ".jik" && ending != ".tgk") {
        const auto load = [&](Project& p) {
            clear_work(p); // what an older file does not tell is as in a new project
            return load_project(path, p);
        };
        return replace_work(path, load);
    }
    if (ending == ".jik") {
        std::string reason;
        const bool loaded =
            replace_work(path, [&](Project& p) { return load_axis_data(p, path, reason); });
        if (!loaded) {
            show_message("軸データ読みこみに失敗しました", reason);
            return false;
        }
        view.TAU = view.FAI = 30.0f;
        picture().update();
        return true;
    }
    const bool loaded = replace_work(path, [&](Project& p) { return load_sketch(p, path); });
    if (loaded) {
        draw_by_hand();
    }
    return loaded;
}

bool TMainForm::replace_work(const fs::path& path, const std::function<int(Project&)>& load) {
    {
        const BusyCursor busy;
        const View before = view;
        if (change(session_, "開く", load, OnFailure::take_back) < 0) {
            view = before;
            follow();
            return false;
        }
    }
    start_work(path);
    remember(path);
    return true;
}

void TMainForm::start_work(const fs::path& file) {
    name_file(session_, file);
    results_ = false;
    forget_results(result);
    session_.work.history.start(project);
    autosave_->remove();
    picture().fit();
    emit session_.news.changed();
}

void TMainForm::read_axis_data() {
    if (!may_leave(this)) {
        return;
    }
    const fs::path path = ask_open_file(work_dir, this, "軸データ編集", "軸データ(*.JIK)|*.jik");
    if (path.empty() || !load_file(path)) {
        return;
    }
    TJikuForm window(session_, this);
    run(window);
}

bool TMainForm::save_work() {
    return ending_of(document.file) == ".kigumi" ? save_to(document.file) : save_work_as();
}

bool TMainForm::save_work_as() {
    fs::path suggested = document.file;
    if (!suggested.empty()) {
        suggested.replace_extension(".kigumi");
    }
    const fs::path path = ask_save_file(
        work_dir,
        QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget() : this,
        "名前を付けて保存", project_filter, "kigumi", suggested);
    return !path.empty() && save_to(path);
}

bool TMainForm::save_to(const fs::path& path) {
    {
        const BusyCursor busy;
        if (save_project(project, path) < 0) {
            return false;
        }
    }
    name_file(session_, path);
    remember(path);
    session_.work.history.mark_saved();
    autosave_->remove();
    emit session_.news.changed();
    return true;
}

bool TMainForm::may_leave(QWidget* over) {
    if (!is_unsaved(session_.work)) {
        return true;
    }
    const QString text =
        QString("「%1」に保存していない変更があります。保存しますか?").arg(document_name(document));
    switch (ask_unsaved(over, text, "保存する(&S)", "保存しない(&D)", "キャンセル(&C)")) {
    case UnsavedAnswer::save:
        return save_work();
    case UnsavedAnswer::discard:
        return true;
    case UnsavedAnswer::cancel:
        break;
    }
    return false;
}

void TMainForm::open_dropped(const fs::path& path) {
    QWidget* front = QApplication::activeModalWidget();
    if (!may_leave(front != nullptr ? front : this)) {
        return;
    }
    if (front == nullptr) {
        load_file(path);
        return;
    }
    // Asked once for all windows: the one in front goes without a question of its own.
    session_.leaving = true;
    dropped_ = path;
    if (!front->close()) {
        dropped_.clear();
        session_.leaving = false;
    }
}

void TMainForm::run(PictureWindow& window) {
    window.run_modal();
    session_.leaving = false;
    if (!dropped_.empty()) {
        QTimer::singleShot(0, this, [this] { load_file(std::exchange(dropped_, {})); });
    }
}

void TMainForm::start(const fs::path& file) {
    offer_left_copy();
    if (!file.empty() && file != document.file) {
        open_file(file);
    }
}

bool TMainForm::offer_left_copy() {
    std::optional<LeftCopy> left = find_left_copy(recovery_folder());
    if (!left) {
        return false;
    }
    const QString name =
        left->file.empty() ? QString("名称未設定") : qt_path(left->file.filename());
    const QString text = QString("前回、保存されずに終わった仕事があります。\n%1（%2 の写し）\n"
                                 "復元しますか?")
                             .arg(name, left->time.toString("yyyy/MM/dd HH:mm:ss"));
    switch (ask_unsaved(this, text, "復元(&R)", "破棄(&D)", "あとで(&L)")) {
    case UnsavedAnswer::save: {
        const fs::path copy = left->copy;
        if (change(
                session_, "復元", [&](Project& p) { return load_project(copy, p); },
                OnFailure::take_back) < 0) {
            return false;
        }
        start_work(left->file);
        session_.work.history.mark_unsaved();
        autosave_->adopt(std::move(*left));
        emit session_.news.changed();
        return true;
    }
    case UnsavedAnswer::discard:
        remove_copy(left->copy);
        break;
    case UnsavedAnswer::cancel:
        break;
    }
    return false;
}

void TMainForm::end_session(QSessionManager& manager) {
    if (manager.allowsInteraction() && !may_leave(this)) {
        manager.cancel();
    } else {
        autosave_->tick();
    }
}
