// The line-width dialog of the DXF export (DXFの線の太さ).
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class TDxfWidthForm;
}

// Asks for the line width, which a DXF drawing tells by its colour.
class TDxfWidthForm : public QDialog {
    Q_OBJECT

  public:
    explicit TDxfWidthForm(QWidget* parent = nullptr);
    ~TDxfWidthForm() override;

    // Number of the item taken, 1 to 6; -1 after cancelling.
    int choice() const { return choice_; }

    void accept() override;
    void reject() override;

  private:
    std::unique_ptr<Ui::TDxfWidthForm> ui_;
    int choice_;
};
