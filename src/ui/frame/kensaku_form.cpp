#include "ui/frame/kensaku_form.h"

#include "base/message.h"
#include "files/jiku.h"
#include "model/model.h"
#include "trace/spy.h"
#include "ui/data/search_boxes.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/document.h"
#include "ui/picture/picture_widget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <set>

using namespace kigumi;

namespace {

// Draws all members in grey and the chosen ones over them, always from the same side.
void draw_choice(const Model& model, Canvas& canvas, DrawArea& area,
                 const std::vector<int>& chosen) {
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

TKensakuForm::TKensakuForm(Session& session, QWidget* parent) : QDialog(parent), Desk(session) {
    setObjectName("KensakuForm");
    setWindowTitle("条件検索");
    resize(1100, 700);
    auto* all = new QHBoxLayout(this);
    auto* column = new QVBoxLayout;
    all->addLayout(column);
    picture_ = new PictureWidget(this);
    all->addWidget(picture_, 1);
    add_kinds(column);
    ranges_ = new LevelRangeBox(session);
    connect(ranges_, &LevelRangeBox::changed, this, [this] { search(); });
    column->addWidget(ranges_);
    add_sections(column);
    column->addStretch(1);
    add_buttons(column);
    if (!kinds_.empty()) {
        kinds_.front().second->setFocus(); // else the picture, which comes first, takes the keys
    }
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

void TKensakuForm::add_sections(QVBoxLayout* column) {
    auto* group = new QGroupBox("断面 巾 × 厚み (cm)");
    auto* boxes = new QVBoxLayout(group);
    section_ = make_section_box(model);
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
    const std::optional<LevelRangeBox::Range> range[] = {ranges_->chosen(0), ranges_->chosen(1),
                                                         ranges_->chosen(2)};
    const auto within = [&](int axis, float value) {
        return !range[axis] || (range[axis]->low <= value && value <= range[axis]->high);
    };
    const std::optional<CrossSection> section = chosen_section(*section_);
    chosen_.clear();
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const bool of_section = !section || *section == CrossSection{beam.haba, beam.atumi};
        if (of_section && kinds.count(beam.kind) > 0 && within(0, beam.xs) && within(0, beam.xl) &&
            within(1, beam.ys) && within(1, beam.yl) && within(2, beam.zs) && within(2, beam.zl)) {
            chosen_.push_back(i);
        }
    }
    spy_now("Pass kensaku %5d of %5d", static_cast<int>(chosen_.size()), model.N_Beam);
    count_->setText(QString("選択した部材 %1 / %2").arg(chosen_.size()).arg(model.N_Beam));
    save_->setEnabled(!chosen_.empty());
    picture_->set_picture([this, chosen = chosen_](Canvas& canvas, DrawArea& area) {
        draw_choice(model, canvas, area, chosen);
    });
}

void TKensakuForm::save() {
    const fs::path path =
        ask_save_file(work_dir, this, "検索データ変換", "軸データ保存(*.jik)|*.jik", "jik");
    if (path.empty()) {
        return;
    }
    if (save_jiku_selection(model, path, chosen_, project.shift) == 0) {
        show_message("軸ファイルを作製しました");
        accept();
    }
}
