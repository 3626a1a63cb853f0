// The list of result members (計算結果一覧).
#pragma once

#include "ui/result/result_list_form.h"

// Every member with its ends, force, percent and values at the ends. The highlighted rows are the
// selection of results; those that the filter hides stay selected until rows are chosen afresh.
class TKekkaIchiranForm : public kigumi::ResultListForm {
    Q_OBJECT

  public:
    TKekkaIchiranForm(kigumi::Session& session, QWidget* parent);

  public slots:
    void show_selection() override;

  protected:
    void filtered() override;
    void delete_pressed() override { remove_current(); }

  private:
    // Takes the highlighted rows over as the selection; `added`: beside the hidden ones.
    void take_highlighted(bool added);
    void select_rows(const std::vector<int>& rows);
    // Takes the row with the focus out of the selection and goes on to the next selected one.
    void remove_current();
    void highlight_selection();
    void show_state();

    QPushButton* remove_;
    QPushButton* clear_;
};
