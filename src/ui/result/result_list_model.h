// The list windows' view of a result table: its model, sorting and filtering, and the selection of
// rows.
#pragma once

#include "results/result_table.h"

#include <QAbstractTableModel>
#include <QItemSelectionModel>
#include <QSortFilterProxyModel>

namespace kigumi {

// Some rows of a result table. Sorting reads the values themselves (value_order), not their texts.
class ResultListModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    // `of` is what the table lists; it lives longer.
    ResultListModel(const Result& of, const ResultTable& table, QObject* parent = nullptr);

    // Shows these rows of the table; measures its numbers anew. With `mark`, the largest magnitude
    // of each column within the rows is shown in bold on a tint.
    void set_rows(std::vector<int> rows, bool mark);
    // The row of the result table that stands in this row of the model.
    int result_row(int row) const { return rows_[static_cast<size_t>(row)]; }
    const std::vector<int>& result_rows() const { return rows_; }
    const Result& result() const { return result_; }
    const ResultSheet& sheet() const { return sheet_; }
    // Largest magnitudes of the rows shown, by column.
    const std::vector<double>& largest() const { return largest_; }
    // True when cells are marked and this one, of a row of the result table, is the largest.
    bool is_largest(int result_row, int column) const;
    // The longest text that a column shows.
    QString longest_text(int column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation direction, int role) const override;

  private:
    const Result& result_;
    ResultSheet sheet_;
    std::vector<int> rows_;
    bool mark_ = false;
    std::vector<double> largest_;
};

// The rows of a model that match a text filter (row_matches), in the order of a column.
class ResultListProxy : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    explicit ResultListProxy(ResultListModel& source);
    void set_filter(const QString& words);
    // Rows of the result table as they are shown, from top to bottom.
    std::vector<int> shown_rows() const;
    // The row of the result table that stands in this row of the list.
    int result_row(int row) const;

  protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    ResultListModel& model_;
    std::string filter_;
};

// Tells when the person has chosen rows, and whether what was chosen before is to be kept, also
// where it is hidden by the filter.
class RowSelection : public QItemSelectionModel {
    Q_OBJECT

  public:
    using QItemSelectionModel::QItemSelectionModel;
    void select(const QItemSelection& selection, SelectionFlags command) override;
    // Shows these rows of the list as chosen; tells nobody.
    void show_rows(const std::vector<bool>& chosen);

    using QItemSelectionModel::select;

  signals:
    void chosen(bool added);

  private:
    bool quiet_ = false;
};

} // namespace kigumi
