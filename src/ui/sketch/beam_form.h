// The hand-drawn editor's member dialog (軸データ).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

namespace kigumi {
class BeamPanel;
}

// Shows the member at a position of the member table and asks for its section, cm. A box that is
// left alone keeps its value to the last digit. Both ways out but Cancel store width and thickness,
// in the member or in all, as a step; a value that is not above 0 is refused by a message.
class TBeamForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    // What exec() returns beside 0 for Cancel.
    enum Answer { set_one = 1, set_for_all = 2 };

    TBeamForm(kigumi::Session& session, int member, QWidget* parent);

    void accept() override { store(set_one); }

  private:
    void store(Answer answer);

    int member_;
    kigumi::BeamPanel* panel_;
    QString shown_haba_, shown_atumi_;
};
