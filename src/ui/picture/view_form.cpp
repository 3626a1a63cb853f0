#include "ui/picture/view_form.h"

#include "draw/projection.h"
#include "sight/viewpoint.h"
#include "trace/spy.h"

#include "ui_view_form.h"

TViewForm::TViewForm(kigumi::Session& session, QWidget* parent)
    : QDialog(parent), Desk(session), ui_(std::make_unique<Ui::TViewForm>()) {
    kigumi::spy("Enter TViewForm()");
    ui_->setupUi(this);
    ui_->RhoScrollBar->setFocus(); // else the preview, which comes first, takes the keys
    connect(ui_->RhoScrollBar, &QScrollBar::valueChanged, ui_->RhoLabel,
            qOverload<int>(&QLabel::setNum));
    connect(ui_->ThetaScrollBar, &QScrollBar::valueChanged, ui_->ThetaLabel,
            qOverload<int>(&QLabel::setNum));
    connect(ui_->PhiScrollBar, &QScrollBar::valueChanged, ui_->PhiLabel,
            qOverload<int>(&QLabel::setNum));
    show_stored();
    kigumi::spy("Rho %8.1f Theta %8.1f Phi %8.1f", view.Rho, view.Theta, view.Phi);
    ui_->Image2->set_picture([this](kigumi::Canvas& canvas, kigumi::DrawArea& area) {
        kigumi::make_cuve(solids, view, canvas, area);
    });
    connect(ui_->OKButton, &QPushButton::clicked, this, [this] {
        store_positions();
        show_stored();
        emit stored();
    });
    connect(ui_->DefautrButton, &QPushButton::clicked, this, &TViewForm::use_default);
    connect(ui_->PersButton, &QPushButton::clicked, this, &TViewForm::use_perspective);
    connect(ui_->CancelButton, &QPushButton::clicked, this, &TViewForm::reject);
}

TViewForm::~TViewForm() = default;

void TViewForm::show_stored() {
    ui_->RhoScrollBar->setValue(static_cast<int>(view.Rho));
    ui_->ThetaScrollBar->setValue(static_cast<int>(view.Theta));
    ui_->PhiScrollBar->setValue(static_cast<int>(view.Phi));
    ui_->RhoLabel->setNum(view.Rho);
    ui_->ThetaLabel->setNum(view.Theta);
    ui_->PhiLabel->setNum(view.Phi);
    ui_->Image2->fit();
}

void TViewForm::store_positions() {
    view.Rho = ui_->RhoScrollBar->value();
    view.Theta = ui_->ThetaScrollBar->value();
    view.Phi = ui_->PhiScrollBar->value();
}

void TViewForm::use_default() {
    const kigumi::View initial;
    view.Rho = initial.Rho;
    view.Theta = initial.Theta;
    view.Phi = initial.Phi;
    show_stored();
    emit stored();
}

void TViewForm::use_perspective() {
    store_positions();
    view.perspective = 1;
    accept();
}
