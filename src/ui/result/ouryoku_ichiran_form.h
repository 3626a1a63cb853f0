// The list of stresses (応力一覧).
#pragma once

#include "ui/result/result_list_form.h"

// The values at the ends of the selected members, or of all while none is selected, with the
// largest magnitude of each column marked.
class TOuryokuIchiranForm : public kigumi::ResultListForm {
    Q_OBJECT

  public:
    TOuryokuIchiranForm(kigumi::Session& session, QWidget* parent);

  public slots:
    void show_selection() override;

  protected:
    void delete_pressed() override { remove_highlighted(); }

  private:
    // Takes the highlighted members out of the selection.
    void remove_highlighted();
    void show_state();
    QString extremes() const;

    QPushButton* remove_;
};
