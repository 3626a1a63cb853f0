#include "ui/kensaku_form.h"

#include "base/float.h"
#include "base/message.h"
#include "files/jiku.h"
#include "model/lookup.h"
#include "trace/spy.h"
#include "ui/dialogs.h"
#include "ui/document.h"
#include "ui/picture_widget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <set>

using namespace kigumi;

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

// A cross-section, whatever the member's length.
struct CrossSection {
    float haba, atumi;
    bool operator<(const CrossSection& other) const {
        return haba < other.haba || (same_float(haba, other.haba) && atumi < other.atumi);
    }
};

// Draws all members in grey and the chosen ones over them, always from the same side.
void draw_choice(Canvas& canvas, DrawArea& area, const std::vector<int>& chosen) {
    constexpr float isometric = 30.0f; // degrees
    const Projector projector(isometric, isometric);
    PlaneBounds bounds = square_fit_start;
    for (int i = 0; i < model.N_Node; ++i) {
        bounds.widen(projector(model.node[i].x, model.node[i].y, model.node[i].z));
    }
    square_fit(area, bounds);
    canvas.set_area(area);
    const auto draw = [&](const Beam& beam) {
        const PlanePoint start = projector(beam.xs, beam.ys, beam.zs);
        const PlanePoint end = projector(beam.xl, beam.yl, beam.zl);
        canvas.move(start.X, start.Y);
        canvas.line(end.X, end.Y);
    };
    canvas.set_pen(pen_solid, 1, colour_silver);
    for (int i = 0; i < model.N_Beam; ++i) {
        draw(model.beam[i]);
    }
    canvas.set_pen(pen_solid, 2, colour_red);
    for (const int at : chosen) {
        draw(model.beam[at]);
    }
}

} // namespace

TKensakuForm::TKensakuForm(QWidget* parent) : QDialog(parent) {
    setObjectName("KensakuForm");
    setWindowTitle("条件検索");
    resize(1100, 700);
    auto* all = new QHBoxLayout(this);
    auto* column = new QVBoxLayout;
    all->addLayout(column);
    picture_ = new PictureWidget(this);
    all->addWidget(picture_, 1);
    add_kinds(column);
    add_ranges(column);
    add_sections(column);
    column->addStretch(1);
    add_buttons(column);
    search();
}

void TKensakuForm::add_kinds(QVBoxLayout* column) {
    auto* group = new QGroupBox("部材の区分");
    group->setObjectName("KindGroup");
    auto* boxes = new QVBoxLayout(group);
    std::set<int> present;
    for (int i = 0; i < model.N_Beam; ++i) {
        present.insert(model.beam[i].kind);
    }
    for (const int kind : present) {
        auto* box = new QCheckBox(kind_name(kind));
        box->setObjectName(QString("Kind%1CheckBox").arg(kind));
        box->setChecked(true);
        boxes->addWidget(box);
        kinds_.emplace_back(kind, box);
        connect(box, &QCheckBox::toggled, this, [this] { search(); });
    }
    column->addWidget(group);
}

void TKensakuForm::add_ranges(QVBoxLayout* column) {
    auto* group = new QGroupBox("座標の範囲 (cm)");
    auto* grid = new QGridLayout(group);
    const auto all = axes();
    for (int axis = 0; axis < 3; ++axis) {
        Range& range = ranges_[axis];
        range = {new QComboBox, new QComboBox};
        range.from->setObjectName(QString("%1FromComboBox").arg(all[axis].name));
        range.to->setObjectName(QString("%1ToComboBox").arg(all[axis].name));
        for (int k = 0; k < all[axis].count; ++k) {
            const QString level = QString::number(all[axis].levels[k], 'f', 1);
            range.from->addItem(level);
            range.to->addItem(level);
        }
        range.to->setCurrentIndex(all[axis].count - 1);
        grid->addWidget(new QLabel(all[axis].name), axis, 0);
        grid->addWidget(range.from, axis, 1);
        grid->addWidget(new QLabel("～"), axis, 2);
        grid->addWidget(range.to, axis, 3);
        for (QComboBox* box : {range.from, range.to}) {
            connect(box, &QComboBox::currentIndexChanged, this, [this] { search(); });
        }
    }
    column->addWidget(group);
}

void TKensakuForm::add_sections(QVBoxLayout* column) {
    auto* group = new QGroupBox("断面 巾 × 厚み (cm)");
    auto* boxes = new QVBoxLayout(group);
    section_ = new QComboBox;
    section_->setObjectName("DanmenComboBox");
    section_->addItem("すべて");
    std::set<CrossSection> sections;
    for (int i = 0; i < model.N_Beam; ++i) {
        sections.insert({model.beam[i].haba, model.beam[i].atumi});
    }
    for (const CrossSection& section : sections) {
        section_->addItem(
            QString("%1 × %2").arg(section.haba, 0, 'f', 1).arg(section.atumi, 0, 'f', 1),
            QVariantList{section.haba, section.atumi});
    }
    boxes->addWidget(section_);
    connect(section_, &QComboBox::currentIndexChanged, this, [this] { search(); });
    column->addWidget(group);
}

void TKensakuForm::add_buttons(QVBoxLayout* column) {
    count_ = new QLabel;
    count_->setObjectName("CountLabel");
    column->addWidget(count_);
    save_ = new QPushButton("保存(&S)");
    save_->setObjectName("OKButton");
    save_->setDefault(true);
    auto* cancel = new QPushButton("閉じる(&C)");
    cancel->setObjectName("CancelButton");
    auto* row = new QHBoxLayout;
    row->addWidget(save_);
    row->addWidget(cancel);
    column->addLayout(row);
    connect(save_, &QPushButton::clicked, this, [this] { save(); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void TKensakuForm::search() {
    if (save_ == nullptr) {
        return;
    }
    std::set<int> kinds;
    for (const auto& [kind, box] : kinds_) {
        if (box->isChecked()) {
            kinds.insert(kind);
        }
    }
    const auto all = axes();
    const auto within = [&](int axis, float value) {
        return all[axis].levels[ranges_[axis].from->currentIndex()] <= value &&
               value <= all[axis].levels[ranges_[axis].to->currentIndex()];
    };
    const QVariantList section = section_->currentData().toList();
    chosen_.clear();
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const bool of_section = section.isEmpty() || (same_float(beam.haba, section[0].toFloat()) &&
                                                      same_float(beam.atumi, section[1].toFloat()));
        if (of_section && kinds.count(beam.kind) > 0 && within(0, beam.xs) && within(0, beam.xl) &&
            within(1, beam.ys) && within(1, beam.yl) && within(2, beam.zs) && within(2, beam.zl)) {
            chosen_.push_back(i);
        }
    }
    spy_now("Pass kensaku %5d of %5d", static_cast<int>(chosen_.size()), model.N_Beam);
    count_->setText(QString("選択した部材 %1 / %2").arg(chosen_.size()).arg(model.N_Beam));
    save_->setEnabled(!chosen_.empty());
    picture_->set_picture(
        [chosen = chosen_](Canvas& canvas, DrawArea& area) { draw_choice(canvas, area, chosen); });
}

void TKensakuForm::save() {
    const fs::path path = ask_save_file(this, "検索データ変換", "軸データ保存(*.jik)|*.jik", "jik");
    if (path.empty()) {
        return;
    }
    if (save_jiku_selection(path, chosen_, document.shift) == 0) {
        show_message("軸ファイルを作製しました");
        accept();
    }
}
