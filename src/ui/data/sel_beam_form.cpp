#include "ui/data/sel_beam_form.h"

#include "base/format.h"
#include "model/model.h"
#include "model/sections.h"
#include "ui/data/record_grid.h"
#include "ui/data/section_forms.h"
#include "ui/data/show_beam_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"
#include "ui/kit/undo_menu.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

using namespace kigumi;

namespace {

template <class Number> QString written(const char* format, Number value) {
    return qt_text(text_format(format, value));
}

QString written(const char* format, float value) {
    return written(format, static_cast<double>(value));
}

QStringList member_texts(const Model& model, int row) {
    const Beam& beam = model.beam[row];
    return {written(" %5d", beam.no), qt_text(beam.idi), qt_text(beam.idj),
            written(" %5d", beam.size), written(" %5d", beam.mat)};
}

QStringList section_texts(const Model& model, int row) {
    const SizeTable& size = model.size;
    return {QString::number(row + 1),          written("%8.1f", size.haba[row]),
            written("%8.1f", size.atumi[row]), written("%10.3e", size.A[row]),
            written("%10.3e", size.Iy[row]),   written("%10.3e", size.Iz[row]),
            written("%10.3e", size.J[row]),    written("%8.1f", size.angle[row])};
}

QStringList material_texts(const Model& model, int row) {
    return {QString::number(row + 1), written("%10.3e", model.mat.E[row]),
            written("%8.3f", model.mat.poisson[row]), written("%10.3e", model.mat.density[row])};
}

// A count with its caption above a grid.
QFormLayout* count_row(const char* name, const QString& caption, int count) {
    auto* row = new QFormLayout;
    add_shown_box(row, name, caption)->setText(QString::number(count));
    return row;
}

// A button with the words for it beside it.
QPushButton* add_action(QHBoxLayout* row, const char* name, const QString& caption,
                        const QString& words) {
    auto* button = new QPushButton(caption);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setAccessibleName(words);
    row->addWidget(button);
    row->addWidget(new QLabel(words));
    row->addStretch(1);
    return button;
}

} // namespace

TSelBeamForm::TSelBeamForm(Session& session, QWidget* parent) : QDialog(parent), Desk(session) {
    setObjectName("SelBeamForm");
    setWindowTitle("部材データ");
    resize(1120, 680);
    members_ = new RecordGrid("ZenStringGrid", {"No", "IDi", "IDj", "形状", "物性"});
    sections_ = new RecordGrid("SizeStringGrid", {"No", "巾", "厚み", "断面積", "垂直2次",
                                                  "水平2次", "ねじれ", "ColdAngle"});
    materials_ = new RecordGrid("MatStringGrid", {"No", "ヤング率", "ポアソン比", "質量密度"});
    auto* show = new QHBoxLayout;
    auto* change_size = new QHBoxLayout;
    auto* change_mat = new QHBoxLayout;
    auto* member_button = add_action(show, "ShousaiSpeedButton", "詳(&D)", "詳細データ");
    auto* size_button = add_action(change_size, "HabahenSpeedButton", "変(&H)", "巾・厚変更");
    auto* mat_button = add_action(change_mat, "MathenSpeedButton", "物(&M)", "物性値変更");
    auto* ok = new QPushButton("OK");
    ok->setObjectName("OKButton");
    ok->setDefault(true);

    auto* all = new QGridLayout(this);
    all->addLayout(count_row("ZenBeamEdit", "全部材数", model.N_Beam), 0, 0);
    all->addWidget(members_, 1, 0, 4, 1);
    all->addLayout(show, 5, 0);
    all->addLayout(count_row("SizeEdit", "形状データ数", model.N_Size), 0, 1);
    all->addWidget(sections_, 1, 1);
    all->addLayout(change_size, 2, 1);
    all->addLayout(count_row("MatEdit", "物性データ数", model.N_Mat), 3, 1);
    all->addWidget(materials_, 4, 1);
    all->addLayout(change_mat, 5, 1);
    all->addWidget(ok, 6, 1, Qt::AlignRight);
    all->setColumnStretch(0, 2);
    all->setColumnStretch(1, 3);

    connect(member_button, &QPushButton::clicked, this, [this] { show_member(); });
    connect(size_button, &QPushButton::clicked, this, [this] { change_section(); });
    connect(mat_button, &QPushButton::clicked, this, [this] { change_material(); });
    connect(members_, &RecordGrid::opened, this, [this] { show_member(); });
    connect(sections_, &RecordGrid::opened, this, [this] { change_section(); });
    connect(materials_, &RecordGrid::opened, this, [this] { change_material(); });
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    new UndoActions(session, this, own_steps(session));
    connect(&session.news, &News::stepped, this, &TSelBeamForm::fill_grids);
    fill_grids();
    members_->setFocus();
}

void TSelBeamForm::fill_grids() {
    const BusyCursor busy;
    members_->fill(model.N_Beam, [this](int row) { return member_texts(model, row); });
    sections_->fill(model.N_Size, [this](int row) { return section_texts(model, row); });
    materials_->fill(model.N_Mat, [this](int row) { return material_texts(model, row); });
}

void TSelBeamForm::change_section() {
    const int row = sections_->currentRow();
    if (row < 0) {
        return;
    }
    THenSizeForm form(session_, row, this);
    form.exec();
    if (form.change() == Change::stored) {
        sections_->set_row(row, section_texts(model, row));
    }
}

void TSelBeamForm::change_material() {
    const int row = materials_->currentRow();
    if (row < 0) {
        return;
    }
    THenMatForm form(session_, row, this);
    form.exec();
    if (form.change() == Change::stored) {
        materials_->set_row(row, material_texts(model, row));
    }
}

void TSelBeamForm::show_member() {
    if (members_->currentRow() >= 0) {
        TShowBeamForm(session_, members_->currentRow(), this).exec();
    }
}
