#include "ui/result/kekka_ichiran_form.h"

#include "results/selection.h"
#include "ui/kit/dialogs.h"

#include <QPushButton>
#include <QTableView>

#include <algorithm>

using namespace kigumi;

TKekkaIchiranForm::TKekkaIchiranForm(Session& session, QWidget* parent)
    : ResultListForm(session, member_table(), "KekkaGrid", parent) {
    setObjectName("KekkaIchiranForm");
    auto* all = add_button("ZenSentakuButton", "全選択(&A)");
    all->setToolTip("表示している行を全部選ぶ");
    clear_ = add_button("SentakuKaijoButton", "選択解除(&U)");
    clear_->setToolTip("選択をすべて外す");
    remove_ = add_button("SakujoButton", "選択から外す(&R)");
    remove_->setToolTip("枠のある行の部材を選択から外す（Delete）");
    connect(all, &QPushButton::clicked, this, [this] {
        chosen().show_rows(std::vector<bool>(static_cast<size_t>(proxy().rowCount()), true));
        take_highlighted(true);
    });
    connect(clear_, &QPushButton::clicked, this, [this] { select_rows({}); });
    connect(remove_, &QPushButton::clicked, this, [this] { remove_current(); });
    connect(&chosen(), &RowSelection::chosen, this,
            [this](bool added) { take_highlighted(added); });
    connect(&chosen(), &RowSelection::currentChanged, this, [this] { show_state(); });
    set_note("行を選ぶと、その部材が計算結果の図で色付きになります（Ctrl・Shift で複数）。", false);
    show_rows(all_rows(result, member_table()), false);
    show_selection();
}

void TKekkaIchiranForm::show_selection() {
    if (listed().rowCount() != member_table().rows(result)) {
        show_rows(all_rows(result, member_table()), false);
    }
    highlight_selection();
    const std::vector<int> shown = proxy().shown_rows();
    const auto first = std::find_if(shown.begin(), shown.end(),
                                    [this](int row) { return is_selected(result, row); });
    if (first != shown.end()) {
        const QModelIndex place = proxy().index(static_cast<int>(first - shown.begin()), 0);
        chosen().setCurrentIndex(place, QItemSelectionModel::NoUpdate);
        list().scrollTo(place);
    }
}

void TKekkaIchiranForm::filtered() {
    highlight_selection();
}

void TKekkaIchiranForm::highlight_selection() {
    std::vector<bool> highlighted;
    for (const int row : proxy().shown_rows()) {
        highlighted.push_back(is_selected(result, row));
    }
    chosen().show_rows(highlighted);
    show_state();
}

void TKekkaIchiranForm::show_state() {
    show_counts();
    const QModelIndex current = chosen().currentIndex();
    remove_->setEnabled(current.isValid() &&
                        is_selected(result, proxy().result_row(current.row())));
    clear_->setEnabled(!selected_rows(result).empty());
}

void TKekkaIchiranForm::select_rows(const std::vector<int>& rows) {
    select_results(result, rows);
    highlight_selection();
    emit selection_changed();
}

void TKekkaIchiranForm::take_highlighted(bool added) {
    std::vector<int> rows = highlighted_rows();
    if (added) {
        std::vector<int> shown = proxy().shown_rows();
        std::sort(shown.begin(), shown.end());
        const std::vector<int> before = selected_rows(result);
        std::set_difference(before.begin(), before.end(), shown.begin(), shown.end(),
                            std::back_inserter(rows));
    }
    std::sort(rows.begin(), rows.end());
    if (rows != selected_rows(result)) {
        select_results(result, rows);
        emit selection_changed();
    }
    show_state();
}

void TKekkaIchiranForm::remove_current() {
    const QModelIndex current = chosen().currentIndex();
    if (!current.isValid() || !is_selected(result, proxy().result_row(current.row()))) {
        return;
    }
    std::vector<int> rows = selected_rows(result);
    std::erase(rows, proxy().result_row(current.row()));
    select_rows(rows);
    const int count = proxy().rowCount();
    for (int step = 1; step < count; ++step) {
        const int row = (current.row() + step) % count;
        if (chosen().isRowSelected(row)) {
            chosen().setCurrentIndex(proxy().index(row, current.column()),
                                     QItemSelectionModel::NoUpdate);
            return;
        }
    }
}
