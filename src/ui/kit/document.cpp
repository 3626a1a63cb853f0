#include "ui/kit/document.h"

#include "model/members.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "model/sketch.h"
#include "ui/kit/dialogs.h"

#include <algorithm>
#include <cmath>

namespace kigumi {

bool is_unsaved(const Work& work) {
    const Model& model = work.project.model;
    if (model.N_Node == 0 && model.N_Beam == 0) {
        return false;
    }
    return !work.history.is_saved() || work.history.differs(work.project);
}

bool fits_axis_data(const Project& project) {
    const Model& model = project.model;
    if (model.N_Fix > 0 || model.N_Load > 0 || any_role(model)) {
        return false;
    }
    return std::none_of(model.edit.begin(), model.edit.begin() + model.N_Beam,
                        [](const MemberEdit& edit) {
                            return edit.section != 0 || edit.material != 0 || edit.species[0] != 0;
                        });
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

QString document_summary(const Project& project) {
    const Model& model = project.model;
    if (model.N_Beam == 0) {
        return "モデルがありません。ファイル → "
               "開く（プロジェクト・軸データ・手書データ）で続けるか、"
               "基本データ選択 で骨組を作るか、手書入力編集 で描きます";
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
        std::fabs(project.shift.dx) + std::fabs(project.shift.dy) + std::fabs(project.shift.dz) >
        0.0f;
    const QString shift = QString("　座標移動 %1, %2, %3")
                              .arg(project.shift.dx)
                              .arg(project.shift.dy)
                              .arg(project.shift.dz);
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

QString marked_name(const Document& document, bool unsaved) {
    return document_name(document) + (unsaved ? "*" : "");
}

} // namespace kigumi
