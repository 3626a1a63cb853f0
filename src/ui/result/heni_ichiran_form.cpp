#include "ui/result/heni_ichiran_form.h"

using namespace kigumi;

THeniIchiranForm::THeniIchiranForm(Session& session, QWidget* parent)
    : ResultListForm(session, displacement_table(), "HeniGrid", parent) {
    setObjectName("HeniIchiranForm");
    set_note("変位の大きい順です。見出しを押すと、その列の順に並べ替わります。", false);
    connect(&chosen(), &RowSelection::selectionChanged, this, [this] { show_counts(); });
    show_rows(all_rows(result, displacement_table()), true);
}

void THeniIchiranForm::show_selection() {
    if (listed().rowCount() != displacement_table().rows(result)) {
        show_rows(all_rows(result, displacement_table()), true);
    }
}
