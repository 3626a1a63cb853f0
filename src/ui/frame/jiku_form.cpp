#include "ui/frame/jiku_form.h"

#include "solid/solid.h"
#include "ui/kit/document.h"

using namespace kigumi;

TJikuForm::TJikuForm(Session& session, QWidget* parent) : ModelWindow(session, parent) {
    setObjectName("JikuForm");
    setWindowTitle("軸データ入力");
    QMenu* file = add_menu("FileMenu", "ファイル(&F)");
    add_item(file, "DxfSaveMenu", "DXF保存(&D)", [this] { export_dxf(); });
    add_item(file, "Win3dSaveMenu", "Win3D保存(&W)", [this] {
        // A mesh of a model whose solids were never built would be empty.
        if (solids.n_trio > 0 || build_trio_file(model, solids, work_dir) == 0) {
            export_win3d("Win3Dデータ保存(*.dat)|*.dat");
        }
    });
    file->addSeparator();
    add_item(
        file, "ModoruMenu", "戻る(&X)", [this] { close(); }, QKeySequence("Ctrl+W"));
    // Deliberate: both wire items draw without node marks here.
    add_view_menu(ModelMode::wire);
    viewpoint_item_->setEnabled(false);
    add_help_menu();
    tell(document_summary(project));
    show_mode(ModelMode::wire);
}
