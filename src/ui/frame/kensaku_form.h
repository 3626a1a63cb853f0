// The condition search window (条件検索): chooses members and writes them as axis data.
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace kigumi {
class LevelRangeBox;
class PictureWidget;
} // namespace kigumi

// Chooses members by category, by ranges of the x, y and z levels within which both ends lie, and
// by section; shows their count and draws them in colour among the others.
class TKensakuForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    TKensakuForm(kigumi::Session& session, QWidget* parent);

    // Positions of the members that the conditions choose.
    const std::vector<int>& chosen() const { return chosen_; }

  private:
    void add_kinds(QVBoxLayout* column);
    void add_sections(QVBoxLayout* column);
    void add_buttons(QVBoxLayout* column);
    void search();
    void save();

    std::vector<std::pair<int, QCheckBox*>> kinds_; // category and its box
    kigumi::LevelRangeBox* ranges_ = nullptr;
    QComboBox* section_ = nullptr;
    QLabel* count_ = nullptr;
    QPushButton* save_ = nullptr;
    kigumi::PictureWidget* picture_ = nullptr;
    std::vector<int> chosen_;
};
