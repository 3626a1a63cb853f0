// The dialogs of the square and round bars (角丸表示).
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

class QRadioButton;

// Confirms the view of square and round bars, and asks which members it is to show.
class TMarukakuKakuninForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    TMarukakuKakuninForm(kigumi::Session& session, QWidget* parent);

    // All members were chosen, and not those of the selection alone.
    bool all_members() const;

  private:
    using Desk::result; // and not that of QDialog

    QRadioButton* all_;
};

// A small window beside the results window that changes between its two pictures of the forces.
class TMarukakuForm : public QDialog {
    Q_OBJECT

  public:
    explicit TMarukakuForm(QWidget* parent);

  signals:
    void colours_wanted(); // 赤青表示
    void solids_wanted();  // 角丸表示
};
