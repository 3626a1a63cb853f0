#include "ui/frame/kihon_unit_form.h"

#include "base/message.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "model/sections.h"
#include "project/accept.h"
#include "solid/solid.h"
#include "ui/frame/kensaku_form.h"
#include "ui/frame/kihon_form.h"
#include "ui/frame/zahyou_idou_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"
#include "ui/kit/settings.h"
#include "ui/kit/undo_menu.h"

#include <QTimer>

using namespace kigumi;

namespace {

constexpr const char* axis_filter = "軸データ保存(*.jik)|*.jik";

} // namespace

TKihonUnitForm::TKihonUnitForm(Session& session, QWidget* parent) : ModelWindow(session, parent) {
    setObjectName("KihonUnitForm");
    setWindowTitle("QZ基本ユニット");
    set_default_param(session.project.param); // a draft until the frame is made
    QMenu* file = add_menu("FileMenu", "ファイル(&F)");
    frame_items_ = {
        add_item(
            file, "JikuSaveMenu", "軸データ保存(&S)", [this] { save_axis_data(false); },
            QKeySequence::Save),
        add_item(file, "ZenDataMenu", "全データ変換(&A)", [this] { save_axis_data(true); }),
        add_item(file, "KensakuDataMenu", "検索データ変換(&K)", [this] { save_selection(); }),
        add_item(file, "DxfSaveMenu", "DXF保存(&D)", [this] { export_dxf(); }),
        add_item(file, "Win3dSaveMenu", "Win3D保存(&W)",
                 [this] { export_win3d("Win3Dデータ(*.DAT)|*.dat"); }),
    };
    file->addSeparator();
    add_item(
        file, "ModoruMenu", "戻る(&X)", [this] { close(); }, QKeySequence("Ctrl+W"));
    add_view_menu(ModelMode::wire_nodes);
    add_help_menu();
    set_frame_exists(false);
}

void TKihonUnitForm::set_frame_exists(bool exists) {
    for (QAction* item : frame_items_) {
        item->setEnabled(exists);
    }
    set_views_enabled(exists);
}

void TKihonUnitForm::showEvent(QShowEvent* event) {
    ModelWindow::showEvent(event);
    if (!asked_) {
        asked_ = true;
        QTimer::singleShot(0, this, [this] { ask_basic_data(); });
    }
}

void TKihonUnitForm::ask_basic_data() {
    TKihonForm dialog(session_, this);
    if (dialog.exec() != QDialog::Accepted) {
        session_.work.history.restore(session_.project);
        close();
        return;
    }
    generate();
}

void TKihonUnitForm::generate() {
    const BusyCursor busy;
    const auto make_frame = [](Project& p) {
        forget_old_node(p.sketch_places);
        if (make_unit(p.model, p.param, p.solids) < 0 || rebuild_tables(p.model) < 0) {
            return -1;
        }
        p.generated = true;
        p.shift = {};
        return accept_model(p);
    };
    if (change(session_, "骨組の生成", make_frame, OnFailure::take_back) < 0) {
        return;
    }
    name_file_of_step(session_, {});
    // The frame is there and can be saved even where its solids cannot be (a folder without the
    // right to write, say); the message has told so.
    save_trio_file(solids, work_dir);
    set_frame_exists(true);
    tell(document_summary(project));
    show_mode(ModelMode::wire);
}

void TKihonUnitForm::save_axis_data(bool move) {
    if (move) {
        TZahyouIdouForm dialog(session_, this);
        if (dialog.exec() != QDialog::Accepted) {
            return;
        }
        tell(document_summary(project)); // it tells the shift
    }
    const fs::path path = ask_save_file(work_dir, this, "軸データ保存", axis_filter, "jik");
    if (path.empty()) {
        return;
    }
    int status = 0;
    {
        const BusyCursor busy;
        status = save_jiku_data(model, path, project.shift);
    }
    if (status == 0) {
        name_file(session_, path);
        note_recent(path);
        if (fits_axis_data(project)) {
            session_.work.history.mark_saved();
        }
        show_message("軸ファイルを作製しました");
    }
}

void TKihonUnitForm::save_selection() {
    TKensakuForm search(session_, this);
    search.exec();
}
