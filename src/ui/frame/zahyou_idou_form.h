// The coordinate move dialog (座標移動).
#pragma once

#include "files/jiku.h"
#include "ui/kit/session.h"

#include <QDialog>

#include <memory>

namespace Ui {
class TZahyouIdouForm;
}

// Asks for the shift of a written axis data file. It starts from the shift given last
// (`Project::shift`), which OK sets.
class TZahyouIdouForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    explicit TZahyouIdouForm(kigumi::Session& session, QWidget* parent = nullptr);
    ~TZahyouIdouForm() override;

    void accept() override;

  private:
    std::unique_ptr<Ui::TZahyouIdouForm> ui_;
};
