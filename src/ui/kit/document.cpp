#include "ui/kit/document.h"

#include "model/members.h"
#include "model/nodes.h"
#include "model/sketch.h"
#include "ui/kit/dialogs.h"

#include <cmath>

namespace kigumi {

void Document::set_generated() {
    file.clear();
    changed = true;
    set_data_saved();
}

void Document::set_data_saved() {
    roles_changed = sections_changed = false;
}

void Document::set_read(const fs::path& path) {
    file = path;
    changed = false;
    set_data_saved();
}

void Document::set_saved(const fs::path& path) {
    file = path;
    changed = false;
}

void Document::set_empty() {
    file.clear();
    changed = false;
    set_data_saved();
    shift = Shift{};
}

QString sketch_summary(const Model& model) {
    const SketchCount count = count_sketch(model);
    const auto part = [](const char* what, int missing, int all) {
        const QString number = missing > 0 ? QString("%1/%2 未入力").arg(missing).arg(all)
                                           : QString("%1 入力済み").arg(all);
        return QString("%1 %2").arg(what, number);
    };
    const QString nodes = part("節点", count.missing_nodes, count.nodes);
    return count.beams > 0 ? nodes + "　" + part("部材", count.missing_beams, count.beams) : nodes;
}

QString document_summary(const Model& model, const Document& document) {
    if (model.N_Beam == 0) {
        return "モデルがありません。ファイル → 基本データ選択 で骨組を作るか、"
               "手書入力編集 で描くか、軸データ編集 で軸データを読み込みます";
    }
    if (check_all_beam(model) < 0) {
        return QString("手書データは未完成です（%1）。手書入力編集 で続けられます")
            .arg(sketch_summary(model));
    }
    const Extent extent = node_extent(model);
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

QString document_name(const Document& document) {
    return document.file.empty() ? QString("名称未設定") : qt_path(document.file.filename());
}

} // namespace kigumi
