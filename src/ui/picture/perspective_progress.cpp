#include "ui/picture/perspective_progress.h"

#include "sight/perspective.h"
#include "ui/kit/dialogs.h"

#include <QProgressDialog>

namespace kigumi {

int prepare_perspective_shown(const View& view, Solids& solids, PerspectiveLines& perspective,
                              const fs::path& work_dir, QWidget* parent, int patience) {
    constexpr int percent = 100;
    const BusyCursor busy;
    QProgressDialog box("隠れ線を処理しています", "中止", 0, percent, parent);
    box.setObjectName("KakuresenProgress");
    box.setWindowTitle("視点座標モデル");
    box.setWindowModality(Qt::ApplicationModal);
    box.setMinimumDuration(patience);
    QObject::connect(&box, &QDialog::rejected, &box, &QProgressDialog::cancel);
    return prepare_perspective(view, solids, perspective, work_dir, [&box](double done) {
        const int value = static_cast<int>(done * percent);
        if (value != box.value()) {
            box.setValue(value);
        }
        return !box.wasCanceled();
    });
}

} // namespace kigumi
