// A grid of records: headings above, one row a record, chosen by mouse or keyboard.
#pragma once

#include <QTableWidget>

namespace kigumi {

// Rows are filled in one go and cannot be typed into; one row is chosen at a time.
class RecordGrid : public QTableWidget {
    Q_OBJECT

  public:
    // `name` becomes the object name.
    RecordGrid(const char* name, const QStringList& headings, QWidget* parent = nullptr);

    // Makes `count` rows, asking for the texts of each; the chosen row stays chosen while it
    // exists, else the last one is; the first one at first.
    template <class RowTexts> void fill(int count, RowTexts row_texts) {
        const int chosen = currentRow();
        setUpdatesEnabled(false);
        setRowCount(count);
        for (int row = 0; row < count; ++row) {
            set_row(row, row_texts(row));
        }
        setUpdatesEnabled(true);
        choose(chosen < 0 || count == 0 ? 0 : chosen < count ? chosen : count - 1);
    }
    void set_row(int row, const QStringList& texts);
    // Chooses a row and scrolls so that it can be seen.
    void choose(int row);
    // Chooses a row and makes it the topmost one that is seen.
    void show_at_top(int row);

    QSize sizeHint() const override;

  signals:
    // Enter or a double click on the row.
    void opened(int row);
    // Del on the row.
    void removed(int row);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace kigumi
