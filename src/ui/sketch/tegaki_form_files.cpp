// The hand-drawn editor's files: new, read, save, leave, and what a crash left.
#include "base/message.h"
#include "files/tegaki.h"
#include "model/members.h"
#include "solid/solid.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"
#include "ui/kit/settings.h"
#include "ui/kit/undo_menu.h"
#include "ui/sketch/tegaki_form.h"

#include <QCloseEvent>
#include <QDateTime>
#include <QFileInfo>
#include <QStatusBar>

#include <memory>

using namespace kigumi;

namespace {

constexpr const char* sketch_filter = "手書データ(*.TGK)|*.tgk";

// What reads a sketch file in place of the model; its nodes then stand at their places on the
// sheet.
std::function<int(Project&)> read_from(const fs::path& path) {
    return [path](Project& p) {
        if (load_tegaki_data(p.model, p.sketch_places, path) < 0) {
            return -1;
        }
        load_old_node(p.model, p.sketch_places);
        reset_solids(p.solids);
        clear_points(p.solids);
        p.shift = {};
        p.generated = false;
        return 0;
    };
}

} // namespace

void TTegakiForm::add_file_menu() {
    QMenu* menu = add_menu("FileMenu", "ファイル(&F)");
    add_item(
        menu, "SinkiMenu", "新規データ(&N)", [this] { new_sketch(); }, QKeySequence::New);
    add_item(
        menu, "TegakiReadMenu", "手書データ読込(&O)", [this] { read_sketch(); },
        QKeySequence::Open);
    with_members_.push_back(add_item(
        menu, "TegakiSaveMenu", "手書データ保存(&S)", [this] { save_sketch(); },
        QKeySequence::Save));
    menu->addSeparator();
    with_members_.push_back(add_item(menu, "DxfMenu", "DXF保存(&D)", [this] { export_dxf(); }));
    with_members_.push_back(
        add_item(menu, "Win3DMenu", "Win3D保存(&W)", [this] { export_solids(); }));
    menu->addSeparator();
    add_item(
        menu, "ModoruMenu", "戻る(&X)", [this] { close(); }, QKeySequence("Ctrl+W"));
}

bool TTegakiForm::may_lose(const QString& consequence) {
    sheet_->give_up();
    if (model.N_Node == 0 || model.N_Beam == 0 || !is_unsaved(session_.work)) {
        return true;
    }
    switch (ask_unsaved(this, "描いた骨組はまだ保存されていません。" + consequence,
                        "このデータを保存する", "このデータを保存しない", "編集を続ける")) {
    case UnsavedAnswer::save:
        return save_sketch();
    case UnsavedAnswer::discard:
        return true;
    case UnsavedAnswer::cancel:
        break;
    }
    return false;
}

bool TTegakiForm::may_leave() {
    const SketchCount count = count_sketch(model);
    if (count.beams == 0 || count.is_finished()) {
        return may_lose({});
    }
    const QString missing =
        QString("\n未入力のデータがあります（%1）。").arg(sketch_summary(model));
    if (count.missing_beams > 0) {
        return may_lose(missing + "\nこのまま戻ると、解析には進めません。");
    }
    // The main window takes a sketch whose members are finished.
    const QString taken = missing + "\nこのまま戻ると、座標のない節点は (-1, -1, -1) として"
                                    "扱われ、正しい骨組になりません。";
    return may_lose(taken);
}

void TTegakiForm::new_sketch() {
    if (!may_lose({})) {
        return;
    }
    change(session_, "新規データ", [](Project& p) {
        reset_model(p.model);
        reset_solids(p.solids);
        clear_points(p.solids);
        forget_old_node(p.sketch_places);
        p.shift = {};
        p.generated = false;
        return 0;
    });
    autosave_->remove();
    name_file_of_step(session_, {});
    show_read_sketch();
}

void TTegakiForm::read_sketch() {
    if (!may_lose({})) {
        return;
    }
    const fs::path path = ask_open_file(work_dir, this, "手書データ読込", sketch_filter);
    if (path.empty()) {
        return;
    }
    const fs::path copy = find_autosave_of(work_dir, path);
    load_sketch(path);
    if (!copy.empty() && document.file == path) {
        offer_restoring(copy);
    }
}

void TTegakiForm::load_sketch(const fs::path& path) {
    const BusyCursor busy;
    if (change(session_, "手書データの読込", read_from(path), OnFailure::take_back) < 0) {
        return;
    }
    session_.work.history.mark_saved();
    autosave_->remove();
    name_file_of_step(session_, path);
    note_recent(path);
    show_read_sketch();
}

void TTegakiForm::restore_copy(const fs::path& copy, CopyLock lock) {
    const BusyCursor busy;
    if (change(session_, "手書データの復元", read_from(copy), OnFailure::take_back) < 0) {
        return;
    }
    session_.work.history.mark_unsaved();
    name_file_of_step(session_, autosaved_file(copy));
    autosave_->adopt(copy, std::move(lock));
    show_read_sketch();
}

void TTegakiForm::show_read_sketch() {
    view.TAU = view.FAI = 30.0f;
    if (check_all_beam(model) == 1 && build_trio_file(model, solids, work_dir) < 0) {
        show_message("get_jiku() failed at tegaki()");
    }
    sheet_->sheet().set_mode(SheetMode::draw);
    show_mode(ModelMode::nothing);
    statusBar()->clearMessage();
    sheet_->show_sheet();
    show_state();
}

bool TTegakiForm::save_sketch() {
    sheet_->give_up();
    const fs::path path =
        ask_save_file(work_dir, this, "手書データ保存", sketch_filter, "tgk", document.file);
    if (path.empty() || save_tegaki_data(model, sketch_places, path) < 0) {
        return false;
    }
    autosave_->remove();
    session_.work.history.mark_saved();
    name_file(session_, path);
    note_recent(path);
    constexpr int shown_for = 5000; // ms
    statusBar()->showMessage(QString("%1 に保存しました").arg(qt_path(path.filename())), shown_for);
    show_state();
    return true;
}

int TTegakiForm::write_copy(const fs::path& path) {
    // A node of a half-drawn member is not part of the sketch yet.
    if (!sheet_->sheet().has_loose_node()) {
        return save_tegaki_data(model, sketch_places, path);
    }
    const auto drawn = std::make_unique<Model>(model);
    --drawn->N_Node;
    return save_tegaki_data(*drawn, sketch_places, path);
}

void TTegakiForm::offer_restoring(const fs::path& copy) {
    CopyLock lock = lock_copy(copy); // kept while the question stands
    if (!lock) {
        return;
    }
    const QDateTime time = QFileInfo(qt_path(copy)).lastModified();
    const QString text = QString("前回、保存されずに終わった手書データがあります（%1、%2）。\n"
                                 "復元しますか?")
                             .arg(qt_path(copy.filename()), time.toString("yyyy/MM/dd HH:mm"));
    switch (ask_unsaved(this, text, "復元する", "捨てる", "あとで決める")) {
    case UnsavedAnswer::save:
        restore_copy(copy, std::move(lock));
        break;
    case UnsavedAnswer::discard: {
        std::error_code ignored;
        fs::remove(copy, ignored);
        break;
    }
    case UnsavedAnswer::cancel:
        break;
    }
}

void TTegakiForm::export_solids() {
    if (!all_nodes_known(model) || check_all_beam(model) < 0) {
        show_message("Win3D保存には、すべての節点と部材のデータが必要です（" +
                     sketch_summary(model).toStdString() + "）");
        return;
    }
    clear_points(solids);
    if (build_trio_file(model, solids, work_dir) == 0) {
        export_win3d("Win3Dデータ保存(*.dat)|*.dat");
    }
}

void TTegakiForm::closeEvent(QCloseEvent* event) {
    sheet_->give_up();
    if (!session_.leaving && !may_leave()) {
        event->ignore();
        return;
    }
    autosave_->remove();
    back_to_sheet();
    view.TAU = view.FAI = 30.0f;
    if (model.N_Beam == 0) {
        name_file_of_step(session_, {});
    }
    PictureWindow::closeEvent(event);
}
