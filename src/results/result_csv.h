// Lists of results as CSV files for spreadsheets.
#pragma once

#include "base/files.h"
#include "results/result_table.h"

namespace kigumi {

// The rows of a table in this order, below a line of headings with units: UTF-8 with byte order
// mark, commas, line ends CR LF. Numbers have all digits of their single-precision value; a text
// with a comma or a quotation mark stands in quotation marks (docs/formats/result-csv.md).
std::string result_csv(const Result& result, const ResultTable& table, std::span<const int> rows);

// Writes them to `path`. 0, or -1 after a message: "保存するデータが存在しない" without rows,
// "書きこみに失敗しました" when the file cannot be written (an old one is then whole).
int save_result_csv(const Result& result, const fs::path& path, const ResultTable& table,
                    std::span<const int> rows);

// The same with all rows of the table.
int save_result_csv(const Result& result, const fs::path& path, const ResultTable& table);

} // namespace kigumi
