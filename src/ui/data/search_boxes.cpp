#include "ui/data/search_boxes.h"

#include "model/model.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>

#include <algorithm>

namespace kigumi {

namespace {

struct Axis {
    const char* name;
    const Table<float, level_capacity>& levels;
    int count;
};

std::array<Axis, 3> axes(const Model& model) {
    return {
        {{"X", model.Xval, model.N_X}, {"Y", model.Yval, model.N_Y}, {"Z", model.Zval, model.N_Z}}};
}

} // namespace

LevelRangeBox::LevelRangeBox(Session& session, bool numbered, QWidget* parent)
    : QGroupBox("座標の範囲 (cm)", parent), Desk(session), numbered_(numbered) {
    auto* grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    const auto all = axes(model);
    for (size_t axis = 0; axis < all.size(); ++axis) {
        const QString name = all[axis].name;
        const int row = static_cast<int>(axis);
        auto* from = from_[axis] = new QComboBox;
        auto* to = to_[axis] = new QComboBox;
        from->setObjectName(name + "FromComboBox");
        to->setObjectName(name + "ToComboBox");
        from->setAccessibleName(name + " の下限");
        to->setAccessibleName(name + " の上限");
        auto* label = new QLabel("&" + name);
        label->setBuddy(from);
        grid->addWidget(label, row, 0);
        grid->addWidget(from, row, 1);
        grid->addWidget(new QLabel("～"), row, 2);
        grid->addWidget(to, row, 3);
        connect(from, &QComboBox::currentIndexChanged, this, [this, to](int at) {
            const QSignalBlocker quiet(to);
            to->setCurrentIndex(std::max(to->currentIndex(), at));
            emit changed();
        });
        connect(to, &QComboBox::currentIndexChanged, this, [this, from](int at) {
            const QSignalBlocker quiet(from);
            from->setCurrentIndex(std::min(from->currentIndex(), at));
            emit changed();
        });
    }
    reset();
}

void LevelRangeBox::fill(QComboBox* box, int axis) {
    const Axis levels = axes(model)[static_cast<size_t>(axis)];
    const QSignalBlocker quiet(box);
    box->clear();
    for (int k = 0; k < levels.count; ++k) {
        const float value = levels.levels[static_cast<size_t>(k)];
        const QString number = numbered_ ? QString("%1: ").arg(k) : QString();
        box->addItem(number + QString::number(value, 'f', 1), value);
    }
}

void LevelRangeBox::reset() {
    for (int axis = 0; axis < 3; ++axis) {
        QComboBox* to = to_[static_cast<size_t>(axis)];
        fill(from_[static_cast<size_t>(axis)], axis);
        fill(to, axis);
        const QSignalBlocker quiet(to);
        to->setCurrentIndex(to->count() - 1);
    }
}

LevelRanges LevelRangeBox::levels() const {
    LevelRanges ranges{};
    for (size_t axis = 0; axis < ranges.size(); ++axis) {
        ranges[axis] = {from_[axis]->currentIndex(), to_[axis]->currentIndex()};
    }
    return ranges;
}

std::optional<LevelRangeBox::Range> LevelRangeBox::chosen(int axis) const {
    const QComboBox* from = from_[static_cast<size_t>(axis)];
    const QComboBox* to = to_[static_cast<size_t>(axis)];
    if (from->currentIndex() <= 0 && to->currentIndex() == to->count() - 1) {
        return {};
    }
    return Range{from->currentData().toFloat(), to->currentData().toFloat()};
}

QComboBox* make_section_box(const Model& model) {
    auto* box = new QComboBox;
    box->setObjectName("DanmenComboBox");
    box->addItem("すべて");
    for (const CrossSection& section : cross_sections(model)) {
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
