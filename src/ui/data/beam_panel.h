// What the member dialogs show of one member: its ends, number and section.
#pragma once

#include "ui/kit/session.h"

#include <QWidget>

namespace kigumi {

class NumberEdit;

class BeamPanel : public QWidget, protected Desk {
    Q_OBJECT

  public:
    // Shows the member at a position of the member table; width and thickness can be typed into
    // when `editable`.
    BeamPanel(Session& session, int member, bool editable, QWidget* parent = nullptr);

    NumberEdit* haba() const { return haba_; }
    NumberEdit* atumi() const { return atumi_; }

  private:
    NumberEdit* haba_;
    NumberEdit* atumi_;
};

} // namespace kigumi
