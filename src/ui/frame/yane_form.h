// The roof data dialog (屋根データ入力).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <memory>

namespace Ui {
class TYaneForm;
}

// Edits the roof's type, heights and member sizes in `param`, and shows the column type. Only OK,
// with sizes that a roof can have, changes them. Where another choice set the heights to 0, it
// offers those that a new frame starts with.
class TYaneForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    explicit TYaneForm(kigumi::Session& session, QWidget* parent = nullptr);
    ~TYaneForm() override;

    void accept() override;

  private:
    std::unique_ptr<Ui::TYaneForm> ui_;
};
