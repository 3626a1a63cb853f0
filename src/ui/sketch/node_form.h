// The hand-drawn editor's node dialog (節点データ).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <array>

namespace kigumi {
class NumberEdit;
}

// Asks for the place of the node at a position of the node table, cm. Where it is not known yet the
// place entered last is offered. A box that is left alone keeps its value to the last digit.
class TNodeForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    TNodeForm(kigumi::Session& session, int node, QWidget* parent);

    // Gives the node its place, and its members with it, as a step.
    void accept() override;

  private:
    int node_;
    std::array<float, 3> offered_{};
    std::array<kigumi::NumberEdit*, 3> boxes_{};
};
