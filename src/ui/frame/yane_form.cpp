#include "ui/frame/yane_form.h"

#include "base/message.h"
#include "generate/param.h"
#include "ui/kit/form.h"

#include "ui_yane_form.h"

using kigumi::NumberEdit;
using kigumi::Param;

namespace {

struct Field {
    NumberEdit* Ui::TYaneForm::*box;
    float Param::*length;
};

constexpr Field fields[] = {
    {&Ui::TYaneForm::YaneHashiraEdit, &Param::YaneHashira},
    {&Ui::TYaneForm::YaneTakasaEdit, &Param::YaneTakasa},
    {&Ui::TYaneForm::YaneHashiraHabaEdit, &Param::YaneHashiraHaba},
    {&Ui::TYaneForm::KetaHabaEdit, &Param::KetaHaba},
    {&Ui::TYaneForm::KetaAtumiEdit, &Param::KetaAtumi},
    {&Ui::TYaneForm::SumiGashoHabaEdit, &Param::SumiGashoHaba},
    {&Ui::TYaneForm::SumiGashoAtumiEdit, &Param::SumiGashoAtumi},
    {&Ui::TYaneForm::HiraGashoHabaEdit, &Param::HiraGashoHaba},
    {&Ui::TYaneForm::HiraGashoAtumiEdit, &Param::HiraGashoAtumi},
    {&Ui::TYaneForm::HiuchiHabaEdit, &Param::HiuchiHaba},
    {&Ui::TYaneForm::HiuchiAtumiEdit, &Param::HiuchiAtumi},
    {&Ui::TYaneForm::MoyaHabaEdit, &Param::MoyaHaba},
    {&Ui::TYaneForm::MoyaAtumiEdit, &Param::MoyaAtumi},
};

QString column_type(int sumi_type) {
    return sumi_type == 1 ? "タイプⅠ" : sumi_type == 2 ? "タイプⅡ" : "柱なし";
}

// The roof data as the dialog first shows them. Once a roof is in force its post height of 0 stands
// for no posts.
Param offered(const Param& param) {
    Param offer = param;
    if (offer.YaneMode != 1 && !(offer.YaneHashira > 0.0f)) {
        offer.YaneHashira = Param{}.YaneHashira;
    }
    if (!(offer.YaneTakasa > 0.0f)) {
        offer.YaneTakasa = static_cast<float>(offer.NX) * offer.TukaHaba * 0.25f;
    }
    return offer;
}

// True when a roof can have this length; else false after a message.
bool length_ok(const Field& field, float value, const QString& label) {
    const bool may_be_zero = field.length == &Param::YaneHashira;
    if (value > 0.0f || (may_be_zero && value >= 0.0f)) {
        return true;
    }
    const QString rule =
        may_be_zero ? "%1は 0 以上にしてください" : "%1は 0 より大きくしてください";
    kigumi::show_message(rule.arg(label).toStdString());
    return false;
}

} // namespace

TYaneForm::TYaneForm(kigumi::Session& session, QWidget* parent)
    : QDialog(parent), Desk(session), ui_(std::make_unique<Ui::TYaneForm>()) {
    ui_->setupUi(this);
    const Param offer = offered(param);
    for (const Field& field : fields) {
        (ui_.get()->*field.box)->setText(kigumi::number_text(offer.*field.length));
    }
    kigumi::choose_item(ui_->YaneTypeGroup, offer.YaneType - 1);
    ui_->HashiraTypeLabel->setText(column_type(offer.SumiType));
    connect(ui_->OKButton, &QPushButton::clicked, this, &TYaneForm::accept);
    connect(ui_->CancelButton, &QPushButton::clicked, this, &TYaneForm::reject);
}

TYaneForm::~TYaneForm() = default;

void TYaneForm::accept() {
    Param read = param;
    read.YaneType = kigumi::chosen_item(ui_->YaneTypeGroup) + 1;
    for (const Field& field : fields) {
        NumberEdit* const box = ui_.get()->*field.box;
        if (!kigumi::read_box(box, read.*field.length)) {
            return;
        }
        if (!length_ok(field, read.*field.length, kigumi::label_of(box))) {
            box->setFocus();
            box->selectAll();
            return;
        }
    }
    session_.project.param = read; // part of the draft of the basic data
    QDialog::accept();
}
