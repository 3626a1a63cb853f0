#include "ui/result/ouryoku_ichiran_form.h"

#include "results/selection.h"
#include "ui/kit/dialogs.h"

#include <QPushButton>
#include <QTableView>

#include <algorithm>

using namespace kigumi;

TOuryokuIchiranForm::TOuryokuIchiranForm(Session& session, QWidget* parent)
    : ResultListForm(session, stress_table(), "OuryokuGrid", parent) {
    setObjectName("OuryokuIchiranForm");
    remove_ = add_button("SakujoButton", "選択から外す(&R)");
    remove_->setToolTip("この一覧で選んだ行の部材を、計算結果の選択から外す（Delete）");
    connect(remove_, &QPushButton::clicked, this, [this] { remove_highlighted(); });
    connect(&chosen(), &RowSelection::selectionChanged, this, [this] { show_state(); });
    show_selection();
}

void TOuryokuIchiranForm::show_selection() {
    const std::vector<int> rows = selected_rows(result);
    const bool some = !rows.empty();
    show_rows(some ? rows : all_rows(result, stress_table()), true);
    set_note(some ? QString("選択した %1 部材の応力").arg(rows.size())
                  : QString("すべての部材（%1 部材）の応力").arg(stress_table().rows(result)),
             true);
    set_summary(extremes());
    show_state();
}

QString TOuryokuIchiranForm::extremes() const {
    QStringList found;
    const ResultSheet& sheet = listed().sheet();
    for (int column = 0; column < sheet.columns(); ++column) {
        const std::vector<int>& rows = listed().result_rows();
        const auto largest = std::find_if(
            rows.begin(), rows.end(), [&](int row) { return listed().is_largest(row, column); });
        if (largest != rows.end()) {
            found << QString("%1 %2 %3（部材 %4）")
                         .arg(sheet.column(column).heading, qt_text(sheet.text(*largest, column)),
                              sheet.column(column).unit)
                         .arg(qt_text(sheet.text(*largest, 0)));
        }
    }
    return found.isEmpty() ? QString() : "絶対値の最大：　" + found.join("、　");
}

void TOuryokuIchiranForm::show_state() {
    show_counts();
    remove_->setEnabled(!selected_rows(result).empty() && chosen().hasSelection());
}

void TOuryokuIchiranForm::remove_highlighted() {
    std::vector<int> removed = highlighted_rows();
    if (selected_rows(result).empty() || removed.empty()) {
        return;
    }
    std::sort(removed.begin(), removed.end());
    std::vector<int> rows = selected_rows(result);
    std::erase_if(rows, [&removed](int row) {
        return std::binary_search(removed.begin(), removed.end(), row);
    });
    select_results(result, rows);
    show_selection();
    emit selection_changed();
}
