#include "results/result_csv.h"

#include "base/message.h"
#include "trace/spy.h"

#include <charconv>

namespace kigumi {

namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view line_end = "\r\n";

std::string csv_text(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        return std::string(text);
    }
    std::string field = "\"";
    for (const char c : text) {
        field += c == '"' ? "\"\"" : std::string(1, c);
    }
    return field + '"';
}

std::string field_of(const Result& result, const ResultColumn& column, int row) {
    if (column.text != nullptr) {
        return csv_text(column.text(result, row));
    }
    char digits[64];
    const float value = static_cast<float>(column.number(result, row)) + 0.0f; // no negative zero
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    return std::string(digits, written.ptr);
}

} // namespace

std::string result_csv(const Result& result, const ResultTable& table, std::span<const int> rows) {
    std::string csv(byte_order_mark);
    const auto add_line = [&](const auto& field) {
        for (const ResultColumn& column : table.columns) {
            csv += (&column == table.columns.data() ? "" : ",") + field(column);
        }
        csv += line_end;
    };
    add_line([](const ResultColumn& column) { return csv_text(heading_text(column)); });
    for (const int row : rows) {
        add_line(
            [&result, row](const ResultColumn& column) { return field_of(result, column, row); });
    }
    return csv;
}

int save_result_csv(const Result& result, const fs::path& path, const ResultTable& table,
                    std::span<const int> rows) {
    spy("Enter save_result_csv()");
    if (rows.empty()) {
        return refuse("保存するデータが存在しない");
    }
    std::string reason;
    return save_file(path, result_csv(result, table, rows), &reason) < 0
               ? refuse("書きこみに失敗しました", reason)
               : 0;
}

int save_result_csv(const Result& result, const fs::path& path, const ResultTable& table) {
    return save_result_csv(result, path, table, all_rows(result, table));
}

} // namespace kigumi
