#include "ui/picture/isome_form.h"

#include "draw/projection.h"
#include "ui/kit/form.h"

#include "ui_isome_form.h"

namespace {

// Angles of the items アイソメ図, 正面図, 側面図, 平面図, degrees.
struct Preset {
    int tau, fai;
};
constexpr Preset presets[] = {{30, 30}, {90, 0}, {0, 0}, {0, 90}};

// Item of these angles, or -1.
int preset_of(int tau, int fai) {
    for (int i = 0; i < static_cast<int>(std::size(presets)); ++i) {
        if (presets[i].tau == tau && presets[i].fai == fai) {
            return i;
        }
    }
    return -1;
}

} // namespace

TIsomeForm::TIsomeForm(kigumi::Session& session, QWidget* parent)
    : QDialog(parent), Desk(session), ui_(std::make_unique<Ui::TIsomeForm>()) {
    ui_->setupUi(this);
    ui_->Tau->setValue(static_cast<int>(view.TAU));
    ui_->Fai->setValue(static_cast<int>(view.FAI));
    show_angles();
    connect(ui_->Tau, &QScrollBar::valueChanged, this, &TIsomeForm::take_positions);
    connect(ui_->Fai, &QScrollBar::valueChanged, this, &TIsomeForm::take_positions);
    kigumi::on_item_clicked(ui_->ZumenGroup, [this](int item) { choose_preset(item); });
    connect(ui_->CloseButton, &QPushButton::clicked, this, &TIsomeForm::accept);
}

TIsomeForm::~TIsomeForm() = default;

void TIsomeForm::take_positions() {
    view.TAU = static_cast<float>(ui_->Tau->value());
    view.FAI = static_cast<float>(ui_->Fai->value());
    show_angles();
    emit changed();
}

void TIsomeForm::choose_preset(int item) {
    {
        const QSignalBlocker tau(ui_->Tau);
        const QSignalBlocker fai(ui_->Fai);
        ui_->Tau->setValue(presets[item].tau);
        ui_->Fai->setValue(presets[item].fai);
    }
    take_positions();
}

void TIsomeForm::show_angles() {
    const int tau = ui_->Tau->value();
    const int fai = ui_->Fai->value();
    ui_->TauLabel->setNum(tau);
    ui_->FaiLabel->setNum(fai);
    kigumi::choose_item(ui_->ZumenGroup, preset_of(tau, fai));
}

void TIsomeForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    kigumi::place_in_corner(*this);
}
