// The search among the result members (計算結果検索).
#pragma once

#include "results/result_search.h"
#include "ui/kit/session.h"

#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace kigumi {
class LevelRangeBox;
}

// Finds members by percent, sign, section, levels and number, counting as the conditions change,
// and makes what it finds the selection of results, adds it, or keeps only what is in both.
class TKekkaKensakuForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    TKekkaKensakuForm(kigumi::Session& session, QWidget* parent);

  public slots:
    // Counts anew: another window has changed the selection, or the model.
    void show_selection();

  signals:
    // This window has changed the selection of results.
    void selection_changed();

  private:
    using Desk::result; // and not that of QDialog

    void add_force(QVBoxLayout* column);
    void add_member(QVBoxLayout* column);
    void add_buttons(QVBoxLayout* column);
    // Reads the conditions; false while a box holds no number.
    bool read(kigumi::ResultQuery& query) const;
    void count();
    void select(std::vector<int> rows);
    void take(), add(), narrow();

    QLineEdit *lower_ = nullptr, *upper_ = nullptr;
    QGroupBox* sign_ = nullptr;
    QComboBox* section_ = nullptr;
    QLabel* section_hint_ = nullptr;
    QLineEdit *first_ = nullptr, *last_ = nullptr;
    kigumi::LevelRangeBox* levels_ = nullptr;
    QLabel* count_ = nullptr;
    std::vector<QPushButton*> searches_;
    std::vector<int> found_;
};
