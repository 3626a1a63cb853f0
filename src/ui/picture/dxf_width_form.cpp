#include "ui/picture/dxf_width_form.h"

#include "ui/kit/form.h"

#include "ui_dxf_width_form.h"

namespace {

constexpr int initial_choice = 2;

} // namespace

TDxfWidthForm::TDxfWidthForm(QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TDxfWidthForm>()), choice_(initial_choice) {
    ui_->setupUi(this);
    kigumi::choose_item(ui_->WidthGroup, initial_choice - 1);
    connect(ui_->OKButton, &QPushButton::clicked, this, &TDxfWidthForm::accept);
    connect(ui_->CancelButton, &QPushButton::clicked, this, &TDxfWidthForm::reject);
}

TDxfWidthForm::~TDxfWidthForm() = default;

void TDxfWidthForm::accept() {
    choice_ = kigumi::chosen_item(ui_->WidthGroup) + 1;
    QDialog::accept();
}

void TDxfWidthForm::reject() {
    choice_ = -1;
    QDialog::reject();
}
