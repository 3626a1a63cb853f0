#include "ui/data/record_grid.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace kigumi {

namespace {

constexpr int shown_characters = 11; // width of a column
constexpr int shown_rows = 12;

} // namespace

RecordGrid::RecordGrid(const char* name, const QStringList& headings, QWidget* parent)
    : QTableWidget(0, static_cast<int>(headings.size()), parent) {
    setObjectName(name);
    setHorizontalHeaderLabels(headings);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
    connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { opened(row); });
}

void RecordGrid::set_row(int row, const QStringList& texts) {
    for (int column = 0; column < texts.size(); ++column) {
        QTableWidgetItem* cell = item(row, column);
        if (cell == nullptr) {
            cell = new QTableWidgetItem;
            cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            setItem(row, column, cell);
        }
        cell->setText(texts[column]);
    }
}

void RecordGrid::choose(int row) {
    if (row < rowCount()) {
        setCurrentCell(row, 0);
        scrollToItem(item(row, 0));
    }
}

void RecordGrid::show_at_top(int row) {
    if (row < rowCount()) {
        setCurrentCell(row, 0);
        scrollToItem(item(row, 0), PositionAtTop);
    }
}

QSize RecordGrid::sizeHint() const {
    const int column_width = fontMetrics().horizontalAdvance('0') * shown_characters;
    return {columnCount() * column_width, verticalHeader()->defaultSectionSize() * shown_rows};
}

void RecordGrid::keyPressEvent(QKeyEvent* event) {
    const bool on_row = currentRow() >= 0;
    if (on_row && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        emit opened(currentRow());
    } else if (on_row && event->key() == Qt::Key_Delete) {
        emit removed(currentRow());
    } else {
        QTableWidget::keyPressEvent(event);
    }
}

} // namespace kigumi
