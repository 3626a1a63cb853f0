#include "ui/document.h"

#include "model/lookup.h"
#include "ui/dialogs.h"

#include <cmath>

namespace kigumi {

Document document;

void Document::set_generated() {
    file.clear();
    changed = true;
    roles_changed = false;
}

void Document::set_read(const fs::path& path) {
    file = path;
    changed = false;
    roles_changed = false;
}

void Document::set_saved(const fs::path& path) {
    file = path;
    changed = false;
}

void Document::set_empty() {
    file.clear();
    changed = roles_changed = false;
    shift = Shift{};
}

QString document_summary() {
    if (model.N_Beam == 0) {
        return "モデルがありません。ファイル → 基本データ選択 で骨組を作るか、"
               "軸データ編集 で軸データを読み込みます";
    }
    const Extent extent = node_extent();
    double volume = 0.0;
    for (int i = 0; i < model.N_Beam; ++i) {
        volume += beam_volume(model.beam[i]);
    }
    const auto range = [&](int axis) {
        return QString("%1～%2").arg(extent.low[axis], 0, 'f', 1).arg(extent.high[axis], 0, 'f', 1);
    };
    const bool moved =
        std::fabs(document.shift.dx) + std::fabs(document.shift.dy) + std::fabs(document.shift.dz) >
        0.0f;
    const QString shift = QString("　座標移動 %1, %2, %3")
                              .arg(document.shift.dx)
                              .arg(document.shift.dy)
                              .arg(document.shift.dz);
    return QString("節点 %1　部材 %2　X %3　Y %4　Z %5 cm　材積 %6 m³")
               .arg(model.N_Node)
               .arg(model.N_Beam)
               .arg(range(0), range(1), range(2))
               .arg(volume, 0, 'f', 3) +
           (moved ? shift : QString());
}

QString document_name() {
    return document.file.empty() ? QString("名称未設定") : qt_path(document.file.filename());
}

} // namespace kigumi
