#include "ui/result/result_list_model.h"

#include "ui/kit/dialogs.h"

#include <QColor>
#include <QFont>

#include <cmath>
#include <cstring>

namespace kigumi {

namespace {

const QColor mark_tint(0xFF, 0xE9, 0xA8);

} // namespace

ResultListModel::ResultListModel(const Result& of, const ResultTable& table, QObject* parent)
    : QAbstractTableModel(parent), result_(of), sheet_(of, table) {}

void ResultListModel::set_rows(std::vector<int> rows, bool mark) {
    beginResetModel();
    sheet_ = ResultSheet(result_, sheet_.table());
    rows_ = std::move(rows);
    mark_ = mark;
    largest_ = largest_magnitudes(result_, sheet_.table(), rows_);
    endResetModel();
}

bool ResultListModel::is_largest(int result_row, int column) const {
    const double largest = largest_[static_cast<size_t>(column)];
    return mark_ && largest > 0.0 &&
           std::fabs(sheet_.column(column).number(result_, result_row)) >= largest;
}

QString ResultListModel::longest_text(int column) const {
    std::string longest;
    for (const int row : rows_) {
        const std::string text = sheet_.text(row, column);
        longest = text.size() > longest.size() ? text : longest;
    }
    return qt_text(longest);
}

int ResultListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ResultListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : sheet_.columns();
}

QVariant ResultListModel::data(const QModelIndex& index, int role) const {
    const int row = result_row(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return qt_text(sheet_.text(row, column));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            (sheet_.column(column).number != nullptr ? Qt::AlignRight : Qt::AlignLeft) |
            Qt::AlignVCenter);
    case Qt::FontRole:
        if (is_largest(row, column)) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        break;
    case Qt::BackgroundRole:
        return is_largest(row, column) ? QVariant(mark_tint) : QVariant();
    case Qt::ForegroundRole:
        return is_largest(row, column) ? QVariant(QColor(Qt::black)) : QVariant();
    default:
        break;
    }
    return {};
}

QVariant ResultListModel::headerData(int section, Qt::Orientation direction, int role) const {
    if (direction != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const ResultColumn& column = sheet_.column(section);
    const QString unit = *column.unit == '\0' ? QString() : QString("\n(%1)").arg(column.unit);
    return column.heading + unit;
}

ResultListProxy::ResultListProxy(ResultListModel& source)
    : QSortFilterProxyModel(&source), model_(source) {
    setSourceModel(&source);
}

void ResultListProxy::set_filter(const QString& words) {
    filter_ = words.normalized(QString::NormalizationForm_KC).toStdString();
    invalidateFilter();
}

int ResultListProxy::result_row(int row) const {
    return model_.result_row(mapToSource(index(row, 0)).row());
}

std::vector<int> ResultListProxy::shown_rows() const {
    std::vector<int> rows;
    for (int row = 0; row < rowCount(); ++row) {
        rows.push_back(result_row(row));
    }
    return rows;
}

bool ResultListProxy::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const Result& result = model_.result();
    const ResultColumn& column = model_.sheet().column(left.column());
    const int a = model_.result_row(left.row());
    const int b = model_.result_row(right.row());
    return column.text != nullptr ? std::strcmp(column.text(result, a), column.text(result, b)) < 0
                                  : column.number(result, a) < column.number(result, b);
}

bool ResultListProxy::filterAcceptsRow(int row, const QModelIndex&) const {
    return row_matches(model_.result(), model_.sheet().table(), model_.result_row(row), filter_);
}

void RowSelection::select(const QItemSelection& selection, SelectionFlags command) {
    QItemSelectionModel::select(selection, command);
    if (!quiet_ && command != NoUpdate) {
        emit chosen(!command.testFlag(Clear));
    }
}

void RowSelection::show_rows(const std::vector<bool>& chosen) {
    QItemSelection ranges;
    const int rows = static_cast<int>(chosen.size());
    const auto at = [&chosen](int row) { return chosen[static_cast<size_t>(row)]; };
    for (int row = 0; row < rows; ++row) {
        const int first = row;
        while (row < rows && at(row)) {
            ++row;
        }
        if (row > first) {
            ranges.append(QItemSelectionRange(model()->index(first, 0),
                                              model()->index(row - 1, model()->columnCount() - 1)));
        }
    }
    quiet_ = true;
    select(ranges, ClearAndSelect);
    quiet_ = false;
}

} // namespace kigumi
