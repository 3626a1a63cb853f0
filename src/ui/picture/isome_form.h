// The angle dialog of the parallel pictures (アイソメ).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <memory>

namespace Ui {
class TIsomeForm;
}

// Turns the view angles TAU and FAI, by scroll bars or to one of the four presets, while the
// picture behind follows. Opens in the lower right corner of its parent, so that the picture stays
// in sight.
class TIsomeForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    explicit TIsomeForm(kigumi::Session& session, QWidget* parent = nullptr);
    ~TIsomeForm() override;

  signals:
    // TAU or FAI is another than before: the picture is to be drawn again.
    void changed();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void take_positions();
    void choose_preset(int item);
    void show_angles();

    std::unique_ptr<Ui::TIsomeForm> ui_;
};
