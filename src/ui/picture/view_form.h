// The viewpoint dialog (視点).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <memory>

namespace Ui {
class TViewForm;
}

// Chooses the viewpoint Rho, Theta, Phi. OK stores the positions and shows the model's box
// from there, Default stores the defaults; both keep the dialog open. Pers stores the positions,
// asks for the perspective picture and ends accepted.
class TViewForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    explicit TViewForm(kigumi::Session& session, QWidget* parent = nullptr);
    ~TViewForm() override;

  signals:
    // OK or Default stored a viewpoint; the dialog goes on.
    void stored();

  private:
    // Scroll bars and labels as the stored viewpoint says.
    void show_stored();
    void store_positions();
    void use_default();
    void use_perspective();

    std::unique_ptr<Ui::TViewForm> ui_;
};
