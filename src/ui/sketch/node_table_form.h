// All nodes of a sketch in one table, to type or paste their places.
#pragma once

#include "ui/kit/session.h"

#include <QDialog>
#include <QTableWidget>

#include <array>
#include <vector>

namespace kigumi {

// A table to be typed into like a spreadsheet: Enter goes on downwards, Ctrl+C and Ctrl+V copy and
// paste cells.
class PlaceGrid : public QTableWidget {
    Q_OBJECT

  public:
    explicit PlaceGrid(QWidget* parent);
    QSize sizeHint() const override;

  signals:
    void copy_wanted();
    void paste_wanted();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
};

} // namespace kigumi

// A row for each node: number, name, x, y and z, cm, and whether its place is known. A node takes
// its place, and its members follow it, once all three of its numbers are there. Every edit and
// every paste is one step.
class TNodeTableForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    // Takes back and repeats the steps above the number `since` (UndoActions).
    TNodeTableForm(kigumi::Session& session, QWidget* parent, std::uint64_t since);

    // Shows the nodes as they now are.
    void refill();

  signals:
    void chosen(int node);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    // The numbers of a node that were entered.
    struct Place {
        std::array<float, 3> value;
        std::array<bool, 3> given;
        bool is_whole() const { return given[0] && given[1] && given[2]; }
    };
    Place place_of(int node) const;
    void show_row(int row);
    void take_cell(int row, int column);
    void copy();
    void paste();
    // Puts the cells into `places`, the first at this row and axis; what is wrong, or nothing.
    QString place_cells(const std::vector<QStringList>& cells, int row, int axis,
                        std::vector<Place>& places) const;
    void store(const std::vector<Place>& places);

    kigumi::PlaceGrid* grid_;
    std::vector<Place> places_;
};
