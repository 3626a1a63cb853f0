// A grid of text cells that is filled in one go.
#pragma once

#include <QTableWidget>

#include <functional>

namespace kigumi {

// Whole rows are selected, one at a time; nothing is edited in place. Enter or a double click opens
// a row and Delete asks for its removal; Enter never reaches the default button behind it.
class StringGrid : public QTableWidget {
    Q_OBJECT

  public:
    // Columns with these headings, each as wide as its sample text. The first is left-aligned.
    StringGrid(const char* name, const QStringList& headings, const QStringList& samples,
               QWidget* parent = nullptr);

    // Replaces all rows; the row that was current stays so where there is one.
    void fill(int rows, const std::function<QString(int row, int column)>& text);
    // Makes a row current and scrolls to it.
    void show_row(int row, ScrollHint hint = EnsureVisible);

  signals:
    void opened(int row);
    void remove_asked(int row);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace kigumi
