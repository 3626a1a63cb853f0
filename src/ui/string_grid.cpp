#include "ui/string_grid.h"

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace kigumi {

StringGrid::StringGrid(const char* name, const QStringList& headings, const QStringList& samples,
                       QWidget* parent)
    : QTableWidget(0, static_cast<int>(headings.size()), parent) {
    setObjectName(name);
    setHorizontalHeaderLabels(headings);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    for (int column = 0; column < columnCount(); ++column) {
        const int text = std::max(fontMetrics().horizontalAdvance(samples.value(column)),
                                  fontMetrics().horizontalAdvance(headings[column]));
        setColumnWidth(column, text + 2 * fontMetrics().horizontalAdvance("0"));
    }
    connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row) { emit opened(row); });
}

void StringGrid::fill(int rows, const std::function<QString(int row, int column)>& text) {
    const int current = std::min(currentRow(), rows - 1);
    setUpdatesEnabled(false);
    setRowCount(0);
    setRowCount(rows);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            auto* cell = new QTableWidgetItem(text(row, column));
            cell->setTextAlignment(Qt::AlignVCenter |
                                   (column == 0 ? Qt::AlignLeft : Qt::AlignRight));
            setItem(row, column, cell);
        }
    }
    setUpdatesEnabled(true);
    if (rows > 0) {
        show_row(std::max(current, 0));
    }
}

void StringGrid::show_row(int row, ScrollHint hint) {
    setCurrentCell(row, 0);
    scrollToItem(item(row, 0), hint);
}

void StringGrid::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter && event->key() != Qt::Key_Delete) {
        QTableWidget::keyPressEvent(event);
        return;
    }
    if (currentRow() < 0) {
        return;
    }
    if (enter) {
        emit opened(currentRow());
    } else {
        emit remove_asked(currentRow());
    }
}

} // namespace kigumi
