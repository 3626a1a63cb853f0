// The list of displacements (変位一覧).
#pragma once

#include "ui/result/result_list_form.h"

// Every node with its translations, their length and its rotations, the largest movement first.
class THeniIchiranForm : public kigumi::ResultListForm {
    Q_OBJECT

  public:
    THeniIchiranForm(kigumi::Session& session, QWidget* parent);

  public slots:
    // The list shows all nodes, whatever is selected.
    void show_selection() override;
};
