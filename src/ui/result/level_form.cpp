#include "ui/result/level_form.h"

#include "results/force_picture.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace kigumi;

namespace {

NumberEdit* add_bound(QFormLayout* rows, const char* name, const QString& label, float value) {
    auto* box = new NumberEdit;
    box->setObjectName(name);
    box->setAccessibleName(label.section('(', 0, 0));
    box->setText(number_text(value));
    rows->addRow(label, box);
    return box;
}

QPushButton* add_button(QDialogButtonBox* buttons, const char* name, const QString& caption,
                        QDialogButtonBox::ButtonRole role) {
    QPushButton* button = buttons->addButton(caption, role);
    button->setObjectName(name);
    return button;
}

} // namespace

TLevelForm::TLevelForm(ResultView& shown, QWidget* parent) : QDialog(parent), shown_(shown) {
    setObjectName("LevelForm");
    setWindowTitle("軸力表示境界値");
    auto* column = new QVBoxLayout(this);
    column->addWidget(new QLabel("境界値を％で入力"));
    auto* rows = new QFormLayout;
    high_ = add_bound(rows, "HighPercentEdit", "上限値(&H)", shown.upper);
    low_ = add_bound(rows, "LowPercentEdit", "下限値(&L)", shown.lower);
    column->addLayout(rows);
    auto* buttons = new QDialogButtonBox;
    add_button(buttons, "OKButton", "OK", QDialogButtonBox::AcceptRole)->setDefault(true);
    add_button(buttons, "CancelButton", "Cancel", QDialogButtonBox::RejectRole);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &TLevelForm::take);
    connect(buttons, &QDialogButtonBox::rejected, this, &TLevelForm::reject);
    high_->setFocus();
    high_->selectAll();
}

void TLevelForm::take() {
    float upper = 0.0f;
    float lower = 0.0f;
    if (!read_box(high_, upper) || !read_box(low_, lower)) {
        return;
    }
    shown_.upper = upper;
    shown_.lower = lower;
    shown_.mode = mode_band;
    accept();
}
