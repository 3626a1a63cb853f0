#include "ui/frame/kihon_form.h"

#include "base/format.h"
#include "model/model.h"
#include "ui/frame/yane_form.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"

#include "ui_kihon_form.h"

#include <QApplication>

using kigumi::NumberEdit;
using kigumi::Param;

namespace {

constexpr QPoint place_on_screen{64, 64};

// A box of the dialog, the number behind it and the characters that its text takes.
template <class Number> struct Field {
    NumberEdit* Ui::TKihonForm::*box;
    Number Param::*number;
    int width;
};

constexpr Field<std::int32_t> counts[] = {
    {&Ui::TKihonForm::XtukaEdit, &Param::NX, 5},
    {&Ui::TKihonForm::YtukaEdit, &Param::NY, 5},
};

// In the order in which they are read.
constexpr Field<float> lengths[] = {
    {&Ui::TKihonForm::TukaHabaEdit, &Param::TukaHaba, 8},
    {&Ui::TKihonForm::TukaTakasaEdit, &Param::TukaAtumi, 8},
    {&Ui::TKihonForm::HashiraEdit, &Param::Hashira, 8},
    {&Ui::TKihonForm::WakuEdit, &Param::WakuHaba, 8},
    {&Ui::TKihonForm::GenEdit, &Param::GenHaba, 8},
    {&Ui::TKihonForm::ShaEdit, &Param::ShaHaba, 8},
    {&Ui::TKihonForm::SujiEdit, &Param::Sujikai, 8},
    {&Ui::TKihonForm::LowestEdit, &Param::Lowest, 9},
    {&Ui::TKihonForm::No1HashiraHeightEdit, &Param::HashiraHeight1, 9},
    {&Ui::TKihonForm::No2HashiraHeightEdit, &Param::HashiraHeight2, 9},
    {&Ui::TKihonForm::No3HashiraHeightEdit, &Param::HashiraHeight3, 9},
    {&Ui::TKihonForm::YaneHashiraEdit, &Param::YaneHashira, 9},
    {&Ui::TKihonForm::YaneTakasaEdit, &Param::YaneTakasa, 9},
};

// The lengths that cancelling restores, besides the counts.
constexpr float Param::*dimensions[] = {
    &Param::TukaHaba, &Param::TukaAtumi, &Param::Hashira, &Param::WakuHaba,
    &Param::GenHaba,  &Param::ShaHaba,   &Param::Sujikai,
};

QString length_text(float value, int width) {
    return kigumi::qt_text(kigumi::text_format("%*.1f", width, static_cast<double>(value)));
}

// As the outcomes of a click or a check are shown.
void show_outcome(QLineEdit* box, float value) {
    box->setText(' ' + length_text(value, 8));
}

} // namespace

TKihonForm::TKihonForm(kigumi::Session& session, QWidget* parent)
    : QDialog(parent), Desk(session), ui_(std::make_unique<Ui::TKihonForm>()),
      draft_(session.project.param), at_opening_(draft_), E_at_opening_(model.mat.E[0]),
      density_at_opening_(model.mat.density[0]) {
    ui_->setupUi(this);
    draft_.SouMode = 0;
    fill();
    connect_controls();
    update_sketch();
    move(place_on_screen);
}

TKihonForm::~TKihonForm() {
    // The focus still moves while the controls go.
    disconnect(qApp, nullptr, this, nullptr);
}

void TKihonForm::fill() {
    for (const auto& field : counts) {
        (ui_.get()->*field.box)
            ->setText(kigumi::qt_text(
                kigumi::text_format("%*d", field.width, static_cast<int>(draft_.*field.number))));
    }
    for (const auto& field : lengths) {
        (ui_.get()->*field.box)->setText(length_text(draft_.*field.number, field.width));
    }
    kigumi::choose_item(ui_->HashiraGroup, draft_.SumiType);
    kigumi::choose_item(ui_->KaisouGroup, draft_.N_Sou - 1);
    // A new frame starts without a choice, which a mode of -1 stands for, too.
    kigumi::choose_item(ui_->YaneGroup,
                        project.generated ? kigumi::yane_choice(draft_.YaneMode) : draft_.YaneMode);
    if (draft_.N_Sou >= 1) {
        enable_heights();
    }
}

void TKihonForm::connect_controls() {
    kigumi::on_item_clicked(ui_->HashiraGroup, [this](int item) { hashira_clicked(item); });
    kigumi::on_item_clicked(ui_->KaisouGroup, [this](int item) { kaisou_clicked(item); });
    kigumi::on_item_clicked(ui_->YaneGroup, [this](int item) { yane_clicked(item); });
    connect(ui_->CheckButton, &QPushButton::clicked, this, [this] { check(); });
    connect(ui_->OKButton, &QPushButton::clicked, this, &TKihonForm::accept);
    connect(ui_->CancelButton, &QPushButton::clicked, this, &TKihonForm::reject);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now != nullptr && now->window() == this) {
            ui_->Sketch->mark(kigumi::label_of(now));
        }
    });
}

void TKihonForm::hashira_clicked(int item) {
    draft_.SumiType = item;
    update_sketch();
}

void TKihonForm::kaisou_clicked(int item) {
    draft_.N_Sou = item + 1;
    enable_heights();
    update_sketch();
}

void TKihonForm::yane_clicked(int item) {
    if (item == 1) {
        ask_roof();
    } else {
        kigumi::apply_yane_choice(draft_, item);
        show_roof_heights();
    }
    update_sketch();
}

void TKihonForm::ask_roof() {
    // The roof's height is offered for the floor that stands in the boxes.
    kigumi::peek_box(ui_->XtukaEdit, draft_.NX);
    kigumi::peek_box(ui_->TukaHabaEdit, draft_.TukaHaba);
    TYaneForm roof(session_, this);
    if (roof.exec() != QDialog::Accepted) {
        kigumi::choose_item(ui_->YaneGroup, 0);
        draft_.YaneMode = 0;
        draft_.YaneTakasa = 0.0f;
        show_outcome(ui_->YaneTakasaEdit, draft_.YaneTakasa);
        return;
    }
    kigumi::apply_yane_choice(draft_, 1);
    show_roof_heights();
    if (draft_.N_Sou == 1) {
        show_outcome(ui_->No2HashiraHeightEdit, draft_.HashiraHeight2);
        ui_->No2HashiraHeightEdit->setEnabled(false);
    }
    show_outcome(ui_->No3HashiraHeightEdit, draft_.HashiraHeight3);
    ui_->No3HashiraHeightEdit->setEnabled(false);
}

void TKihonForm::show_roof_heights() {
    show_outcome(ui_->YaneHashiraEdit, draft_.YaneHashira);
    show_outcome(ui_->YaneTakasaEdit, draft_.YaneTakasa);
}

void TKihonForm::enable_heights() {
    ui_->No1HashiraHeightEdit->setEnabled(true);
    ui_->No2HashiraHeightEdit->setEnabled(draft_.N_Sou >= 2);
    ui_->No3HashiraHeightEdit->setEnabled(draft_.N_Sou >= 3);
}

kigumi::KihonChoice TKihonForm::choice() const {
    return {kigumi::chosen_item(ui_->HashiraGroup), kigumi::chosen_item(ui_->KaisouGroup),
            kigumi::chosen_item(ui_->YaneGroup)};
}

bool TKihonForm::read() {
    for (const auto& field : counts) {
        if (!kigumi::read_box(ui_.get()->*field.box, draft_.*field.number)) {
            return false;
        }
    }
    for (const auto& field : lengths) {
        if (!kigumi::read_box(ui_.get()->*field.box, draft_.*field.number)) {
            return false;
        }
    }
    return true;
}

bool TKihonForm::check() {
    if (!read() || kigumi::check_param(draft_, choice()) < 0) {
        return false;
    }
    show_outcome(ui_->TakasaEdit, draft_.Takasa);
    return true;
}

void TKihonForm::update_sketch() {
    ui_->Sketch->show_frame(choice());
}

void TKihonForm::accept() {
    if (check()) {
        QDialog::accept();
    }
}

void TKihonForm::reject() {
    for (const auto& field : counts) {
        draft_.*field.number = at_opening_.*field.number;
    }
    for (const auto dimension : dimensions) {
        draft_.*dimension = at_opening_.*dimension;
    }
    session_.project.model.mat.E[0] = E_at_opening_;
    session_.project.model.mat.density[0] = density_at_opening_;
    QDialog::reject();
}
