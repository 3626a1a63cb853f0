#include "ui/frame/zahyou_idou_form.h"

#include "ui/kit/document.h"
#include "ui/kit/form.h"
#include "ui/kit/undo_menu.h"

#include "ui_zahyou_idou_form.h"

TZahyouIdouForm::TZahyouIdouForm(kigumi::Session& session, QWidget* parent)
    : QDialog(parent), Desk(session), ui_(std::make_unique<Ui::TZahyouIdouForm>()) {
    ui_->setupUi(this);
    ui_->DxEdit->setText(kigumi::number_text(project.shift.dx));
    ui_->DyEdit->setText(kigumi::number_text(project.shift.dy));
    ui_->DzEdit->setText(kigumi::number_text(project.shift.dz));
    connect(ui_->OKButton, &QPushButton::clicked, this, &TZahyouIdouForm::accept);
    connect(ui_->CancelButton, &QPushButton::clicked, this, &TZahyouIdouForm::reject);
}

TZahyouIdouForm::~TZahyouIdouForm() = default;

void TZahyouIdouForm::accept() {
    kigumi::Shift read;
    if (kigumi::read_box(ui_->DxEdit, read.dx) && kigumi::read_box(ui_->DyEdit, read.dy) &&
        kigumi::read_box(ui_->DzEdit, read.dz)) {
        kigumi::change(session_, "座標移動", [&read](kigumi::Project& p) {
            p.shift = read;
            return 0;
        });
        QDialog::accept();
    }
}
