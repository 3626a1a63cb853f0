#include "ui/search_boxes.h"

#include "model/model.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

#include <algorithm>

namespace kigumi {

namespace {

struct Axis {
    const char* name;
    const std::array<float, level_capacity>& levels;
    int count;
};

std::array<Axis, 3> axes() {
    return {
        {{"X", model.Xval, model.N_X}, {"Y", model.Yval, model.N_Y}, {"Z", model.Zval, model.N_Z}}};
}

} // namespace

LevelRangeBoxes::LevelRangeBoxes(QWidget* parent) : QGroupBox("座標の範囲 (cm)", parent) {
    auto* grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    const auto all = axes();
    for (size_t axis = 0; axis < all.size(); ++axis) {
        const QString name = all[axis].name;
        const int row = static_cast<int>(axis);
        from_[axis] = new QComboBox;
        to_[axis] = new QComboBox;
        from_[axis]->setObjectName(name + "FromComboBox");
        to_[axis]->setObjectName(name + "ToComboBox");
        from_[axis]->setAccessibleName(name + " の下限");
        to_[axis]->setAccessibleName(name + " の上限");
        for (int k = 0; k < all[axis].count; ++k) {
            const float value = all[axis].levels[static_cast<size_t>(k)];
            for (QComboBox* box : {from_[axis], to_[axis]}) {
                box->addItem(QString::number(value, 'f', 1), value);
            }
        }
        to_[axis]->setCurrentIndex(all[axis].count - 1);
        grid->addWidget(new QLabel(name), row, 0);
        grid->addWidget(from_[axis], row, 1);
        grid->addWidget(new QLabel("～"), row, 2);
        grid->addWidget(to_[axis], row, 3);
        QComboBox* from = from_[axis];
        QComboBox* to = to_[axis];
        connect(from, &QComboBox::currentIndexChanged, this, [this, to](int at) {
            to->setCurrentIndex(std::max(to->currentIndex(), at));
            emit changed();
        });
        connect(to, &QComboBox::currentIndexChanged, this, [this, from](int at) {
            from->setCurrentIndex(std::min(from->currentIndex(), at));
            emit changed();
        });
    }
}

std::optional<LevelRangeBoxes::Range> LevelRangeBoxes::chosen(int axis) const {
    const QComboBox* from = from_[static_cast<size_t>(axis)];
    const QComboBox* to = to_[static_cast<size_t>(axis)];
    if (from->currentIndex() <= 0 && to->currentIndex() == to->count() - 1) {
        return {};
    }
    return Range{from->currentData().toFloat(), to->currentData().toFloat()};
}

QComboBox* make_section_box() {
    auto* box = new QComboBox;
    box->setObjectName("DanmenComboBox");
    box->addItem("すべて");
    for (const CrossSection& section : cross_sections()) {
        box->addItem(QString("%1 × %2").arg(section.haba, 0, 'f', 1).arg(section.atumi, 0, 'f', 1),
                     QVariantList{section.haba, section.atumi});
    }
    return box;
}

std::optional<CrossSection> chosen_section(const QComboBox& box) {
    const QVariantList section = box.currentData().toList();
    if (section.isEmpty()) {
        return {};
    }
    return CrossSection{section[0].toFloat(), section[1].toFloat()};
}

} // namespace kigumi
