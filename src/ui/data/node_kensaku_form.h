// The node search window (節点検索): whole levels of nodes at once.
#pragma once

#include "model/roles.h"
#include "ui/kit/session.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace kigumi {
class LevelRangeBox;
}

// A tool window that stays above its parent while nodes are picked and never takes the keyboard
// from it. Ranges of levels choose nodes, which are found (role_found, blue circles in the picture)
// until they are turned into supports or loads or the window is hidden; hiding gives them their
// roles back.
class TNodeKensakuForm : public QWidget, protected kigumi::Desk {
    Q_OBJECT

  public:
    TNodeKensakuForm(kigumi::Session& session, QWidget* parent);

    // Shows the window for role_fixed or role_loaded, at the right edge of `beside` when it was
    // hidden, with all levels chosen and nothing found.
    void open(int role, const QWidget& beside);

  signals:
    // The found nodes or the roles are others now.
    void marked();
    // Closed by the user.
    void closed();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void add_buttons(QVBoxLayout* column);
    // Shows the levels and commands of the model as it now is; nothing is found.
    void follow();
    void show_all_levels();
    void search();
    void show_count(int count);
    void select_all();

    kigumi::LevelRangeBox* ranges_ = nullptr;
    QLabel* count_ = nullptr;
    QPushButton* all_ = nullptr;
    int role_ = kigumi::role_fixed;
    int found_ = 0;
};
