#include "ui/result/marukaku_form.h"

#include "analysis/result.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

TMarukakuKakuninForm::TMarukakuKakuninForm(kigumi::Session& session, QWidget* parent)
    : QDialog(parent), Desk(session) {
    setObjectName("MarukakuKakuninForm");
    setWindowTitle("角丸表示");
    auto* column = new QVBoxLayout(this);
    column->addWidget(new QLabel("軸力を棒の断面で表します（引張は丸、圧縮は角）。\n"
                                 "断面積 1 cm² が最大軸力の 1 ％です。"));
    auto* group = new QGroupBox("表示する部材");
    group->setObjectName("BuzaiGroup");
    auto* items = new QVBoxLayout(group);
    auto* chosen = new QRadioButton(QString("選択した部材 %1 本(&S)").arg(result.Nken_Stress));
    chosen->setObjectName("SentakuRadioButton");
    all_ = new QRadioButton(QString("全部材 %1 本(&A)").arg(result.N_Stress));
    all_->setObjectName("ZenBuzaiRadioButton");
    items->addWidget(chosen);
    items->addWidget(all_);
    (result.Nken_Stress > 0 ? chosen : all_)->setChecked(true);
    column->addWidget(group);
    auto* buttons = new QDialogButtonBox;
    QPushButton* ok = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
    ok->setObjectName("OKButton");
    ok->setDefault(true);
    buttons->addButton("Cancel", QDialogButtonBox::RejectRole)->setObjectName("CancelButton");
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

bool TMarukakuKakuninForm::all_members() const {
    return all_->isChecked();
}

TMarukakuForm::TMarukakuForm(QWidget* parent) : QDialog(parent, Qt::Tool) {
    setObjectName("MarukakuForm");
    setWindowTitle("角丸表示");
    auto* column = new QVBoxLayout(this);
    auto* group = new QGroupBox("最後の計算結果");
    auto* items = new QVBoxLayout(group);
    auto* colours = new QPushButton("赤青表示(&R)");
    colours->setObjectName("AkaAoButton");
    auto* solids = new QPushButton("角丸表示(&M)");
    solids->setObjectName("MarukakuButton");
    items->addWidget(colours);
    items->addWidget(solids);
    column->addWidget(group);
    connect(colours, &QPushButton::clicked, this, &TMarukakuForm::colours_wanted);
    connect(solids, &QPushButton::clicked, this, &TMarukakuForm::solids_wanted);
}
