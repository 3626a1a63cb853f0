#include "ui/data/beam_panel.h"

#include "base/format.h"
#include "model/model.h"
#include "ui/kit/dialogs.h"
#include "ui/kit/form.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

namespace kigumi {

namespace {

QString written(float value) {
    return qt_text(text_format(" %8.1f", static_cast<double>(value)));
}

struct End {
    const char* caption;
    const char* prefix; // of the object names
    int no;
    const char* id;
    float x, y, z;
};

QGroupBox* end_group(const End& end) {
    auto* group = new QGroupBox(end.caption);
    auto* rows = new QFormLayout(group);
    const auto add = [&](const char* name, const char* caption, const QString& text) {
        const QByteArray object = QByteArray(end.prefix) + name;
        add_shown_box(rows, object.constData(), caption)->setText(text);
    };
    add("BanchiEdit", "番地", QString::number(end.no));
    add("MeishouEdit", "名称", qt_text(end.id));
    add("XEdit", "X値", written(end.x));
    add("YEdit", "Y値", written(end.y));
    add("ZEdit", "Z値", written(end.z));
    return group;
}

} // namespace

BeamPanel::BeamPanel(Session& session, int member, bool editable, QWidget* parent)
    : QWidget(parent), Desk(session) {
    const Beam& beam = model.beam[member];
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    auto* number = new QFormLayout;
    add_shown_box(number, "BangouEdit", "軸番号")->setText(QString::number(beam.no));
    all->addLayout(number);
    auto* ends = new QHBoxLayout;
    ends->addWidget(end_group({"開始座標", "I", beam.noi, beam.idi, beam.xs, beam.ys, beam.zs}));
    ends->addWidget(end_group({"終了座標", "J", beam.noj, beam.idj, beam.xl, beam.yl, beam.zl}));
    all->addLayout(ends);
    auto* section = new QFormLayout;
    haba_ = add_number_box(section, "HabaEdit", "巾", beam.haba);
    atumi_ = add_number_box(section, "AtumiEdit", "厚み", beam.atumi);
    for (NumberEdit* box : {haba_, atumi_}) {
        box->setReadOnly(!editable);
    }
    haba_->setText(written(beam.haba));
    atumi_->setText(written(beam.atumi));
    all->addLayout(section);
}

} // namespace kigumi
