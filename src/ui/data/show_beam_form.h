// The member detail dialog (部材詳細).
#pragma once

#include <QDialog>

namespace kigumi {
struct Session;
}

// Shows the member at a position of the member table.
class TShowBeamForm : public QDialog {
    Q_OBJECT

  public:
    TShowBeamForm(kigumi::Session& session, int member, QWidget* parent);
};
