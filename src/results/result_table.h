// The lists of results as tables: columns with heading and unit, a row for each record of `result`.
// The list windows, their printed pages and the CSV files all show these.
#pragma once

#include "analysis/result.h"

#include <span>
#include <string>
#include <vector>

namespace kigumi {

// One column. Either `number` or `text` is set; rows are positions in the table of `result`.
struct ResultColumn {
    const char* heading; // "せん断力 xv1"
    const char* unit;    // "kgf"; empty where there is none
    int decimals;        // shown after the point; 0 for whole numbers, -1: see ResultSheet
    double (*number)(const Result& result, int row);
    const char* (*text)(const Result& result, int row);
    bool names_row; // numbers and names that tell which record it is; the text filter reads them
};

struct ResultTable {
    const char* title; // "計算結果一覧"
    std::span<const ResultColumn> columns;
    int (*rows)(const Result& result);
};

// Every member of `stress`: numbers and names of its ends, force, percent, all values at the ends.
const ResultTable& member_table();
// The members of `stress` with the values at their ends alone (応力).
const ResultTable& stress_table();
// Every node of `disp`: translations, their length, rotations.
const ResultTable& displacement_table();

// All rows of a table, in its order.
std::vector<int> all_rows(const Result& result, const ResultTable& table);

// Heading and unit in one line: "軸力 (kgf)".
std::string heading_text(const ResultColumn& column);

// A table as it is shown. Columns without decimals of their own get as many as show five digits of
// the largest value of all columns with their unit, at least one; they are measured when the sheet
// is made.
class ResultSheet {
  public:
    ResultSheet(const Result& result, const ResultTable& table);

    const ResultTable& table() const { return *table_; }
    int rows() const { return table_->rows(*result_); }
    int columns() const { return static_cast<int>(table_->columns.size()); }
    const ResultColumn& column(int at) const { return table_->columns[static_cast<size_t>(at)]; }
    // A cell as shown; a value that rounds to zero has no sign.
    std::string text(int row, int column) const;

  private:
    const Result* result_;
    const ResultTable* table_;
    std::vector<int> decimals_;
};

// Largest magnitude of each column within these rows; 0 in columns of texts and of the numbers that
// name a row, and where all values are 0.
std::vector<double> largest_magnitudes(const Result& result, const ResultTable& table,
                                       std::span<const int> rows);

// True when every word of `filter` (separated by blanks, small letters as capitals, * and ? as in
// node names) is part of one of the texts and numbers that name this row. An empty filter matches.
bool row_matches(const Result& result, const ResultTable& table, int row,
                 const std::string& filter);

} // namespace kigumi
