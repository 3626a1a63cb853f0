#include "ui/data/show_beam_form.h"

#include "ui/data/beam_panel.h"

#include <QPushButton>
#include <QVBoxLayout>

TShowBeamForm::TShowBeamForm(kigumi::Session& session, int member, QWidget* parent)
    : QDialog(parent) {
    setObjectName("ShowBeamForm");
    setWindowTitle("部材詳細");
    auto* all = new QVBoxLayout(this);
    all->addWidget(new kigumi::BeamPanel(session, member, false));
    auto* ok = new QPushButton("OK");
    ok->setObjectName("OKButton");
    ok->setDefault(true);
    all->addWidget(ok, 0, Qt::AlignRight);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    ok->setFocus();
}
