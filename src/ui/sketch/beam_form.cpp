#include "ui/sketch/beam_form.h"

#include "base/message.h"
#include "model/members.h"
#include "model/sketch.h"
#include "ui/data/beam_panel.h"
#include "ui/kit/form.h"
#include "ui/sketch/sketch_change.h"

#include <QFormLayout>
#include <QPushButton>

using namespace kigumi;

TBeamForm::TBeamForm(Session& session, int member, QWidget* parent)
    : QDialog(parent), Desk(session), member_(member) {
    setObjectName("BeamForm");
    setWindowTitle("軸データ");
    auto* rows = new QFormLayout(this);
    panel_ = new BeamPanel(session, member, true);
    rows->addRow(panel_);
    auto* all = new QPushButton("全データ同一巾・厚みにする(&A)");
    all->setObjectName("AllButton");
    all->setAutoDefault(false);
    connect(all, &QPushButton::clicked, this, [this] { store(set_for_all); });
    rows->addRow(all);
    add_buttons(rows, *this, "OK");
    panel_->haba()->setFocus();
    shown_haba_ = panel_->haba()->text();
    shown_atumi_ = panel_->atumi()->text();
}

void TBeamForm::store(Answer answer) {
    const Beam& beam = model.beam[member_];
    float haba = beam.haba;
    float atumi = beam.atumi;
    if ((panel_->haba()->text() != shown_haba_ && !read_box(panel_->haba(), haba)) ||
        (panel_->atumi()->text() != shown_atumi_ && !read_box(panel_->atumi(), atumi))) {
        return;
    }
    if (!(haba > 0.0f) || !(atumi > 0.0f)) {
        show_message(haba > 0.0f ? "厚みの値に誤りがあります" : "巾の値に誤りがあります");
        return;
    }
    const bool all = answer == set_for_all;
    change_sketch(session_, all ? "全部材の断面" : "部材の断面", [&](Model& m) {
        if (all) {
            set_all_beam_section(m, haba, atumi);
        } else {
            set_beam_section(m, member_, haba, atumi);
        }
    });
    done(answer);
}
