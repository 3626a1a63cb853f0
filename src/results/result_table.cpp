#include "results/result_table.h"

#include "base/format.h"
#include "base/scan.h"
#include "model/select.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace kigumi {

namespace {

template <auto Field> double stress_number(const Result& result, int row) {
    return static_cast<double>(result.stress[row].*Field);
}
template <auto Field> const char* stress_text(const Result& result, int row) {
    return result.stress[row].*Field;
}
template <auto Field> double disp_number(const Result& result, int row) {
    return static_cast<double>(result.disp[row].*Field);
}
template <auto Field> const char* disp_text(const Result& result, int row) {
    return result.disp[row].*Field;
}
int stress_rows(const Result& result) {
    return result.N_Stress;
}
int disp_rows(const Result& result) {
    return result.N_Setuten;
}

constexpr int measured = -1; // decimals

template <auto Field> constexpr ResultColumn stress_value(const char* heading, const char* unit) {
    return {heading, unit, measured, stress_number<Field>, nullptr, false};
}
template <auto Field> constexpr ResultColumn disp_value(const char* heading, const char* unit) {
    return {heading, unit, measured, disp_number<Field>, nullptr, false};
}

constexpr const char* moment = "kgf·cm";

constexpr ResultColumn member_no{"部材番号", "", 0, stress_number<&Stress::no>, nullptr, true};
constexpr ResultColumn start_no{"I 節点", "", 0, stress_number<&Stress::old_noi>, nullptr, true};
constexpr ResultColumn start_name{"I 節点名", "", 0, nullptr, stress_text<&Stress::iname>, true};
constexpr ResultColumn end_no{"J 節点", "", 0, stress_number<&Stress::old_noj>, nullptr, true};
constexpr ResultColumn end_name{"J 節点名", "", 0, nullptr, stress_text<&Stress::jname>, true};

constexpr ResultColumn p1 = stress_value<&Stress::p1>("軸力 p1", "kgf");
constexpr ResultColumn p2 = stress_value<&Stress::p2>("軸力 p2", "kgf");
constexpr ResultColumn xv1 = stress_value<&Stress::xv1>("せん断 xv1", "kgf");
constexpr ResultColumn xv2 = stress_value<&Stress::xv2>("せん断 xv2", "kgf");
constexpr ResultColumn yv1 = stress_value<&Stress::yv1>("せん断 yv1", "kgf");
constexpr ResultColumn yv2 = stress_value<&Stress::yv2>("せん断 yv2", "kgf");
constexpr ResultColumn xm1 = stress_value<&Stress::xm1>("曲げ xm1", moment);
constexpr ResultColumn xm2 = stress_value<&Stress::xm2>("曲げ xm2", moment);
constexpr ResultColumn ym1 = stress_value<&Stress::ym1>("曲げ ym1", moment);
constexpr ResultColumn ym2 = stress_value<&Stress::ym2>("曲げ ym2", moment);
constexpr ResultColumn zm = stress_value<&Stress::zm>("ねじり zm", moment);

constexpr ResultColumn member_columns[] = {
    member_no,
    start_no,
    start_name,
    end_no,
    end_name,
    stress_value<&Stress::force>("軸力", "kgf"),
    {"最大値比", "%", 1, stress_number<&Stress::percent>, nullptr, false},
    p1,
    p2,
    xv1,
    xv2,
    yv1,
    yv2,
    xm1,
    xm2,
    ym1,
    ym2,
    zm,
};

constexpr ResultColumn stress_columns[] = {
    member_no, start_name, end_name, p1, p2, xv1, xv2, yv1, yv2, xm1, xm2, ym1, ym2, zm,
};

constexpr ResultColumn disp_columns[] = {
    {"節点番号", "", 0, disp_number<&Disp::old_no>, nullptr, true},
    {"節点名", "", 0, nullptr, disp_text<&Disp::name>, true},
    disp_value<&Disp::mag>("変位の大きさ", "cm"),
    disp_value<&Disp::disp_x>("変位 x", "cm"),
    disp_value<&Disp::disp_y>("変位 y", "cm"),
    disp_value<&Disp::disp_z>("変位 z", "cm"),
    disp_value<&Disp::rad_x>("回転 x", "rad"),
    disp_value<&Disp::rad_y>("回転 y", "rad"),
    disp_value<&Disp::rad_z>("回転 z", "rad"),
};

constexpr ResultTable tables[] = {
    {"計算結果一覧", member_columns, stress_rows},
    {"応力一覧", stress_columns, stress_rows},
    {"変位一覧", disp_columns, disp_rows},
};

// Decimals that show five digits of this value.
int decimals_for(double largest) {
    constexpr int digits = 5;
    constexpr int most = 9;
    if (!(largest > 0.0)) {
        return 1;
    }
    const int before_point = static_cast<int>(std::floor(std::log10(largest))) + 1;
    return std::clamp(digits - before_point, 1, most);
}

bool is_value(const ResultColumn& column) {
    return column.number != nullptr && !column.names_row;
}

std::string capitals(std::string_view text) {
    std::string large(text);
    std::transform(large.begin(), large.end(), large.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return large;
}

} // namespace

const ResultTable& member_table() {
    return tables[0];
}
const ResultTable& stress_table() {
    return tables[1];
}
const ResultTable& displacement_table() {
    return tables[2];
}

std::vector<int> all_rows(const Result& result, const ResultTable& table) {
    std::vector<int> rows(static_cast<size_t>(table.rows(result)));
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

std::string heading_text(const ResultColumn& column) {
    return *column.unit == '\0' ? column.heading
                                : text_format("%s (%s)", column.heading, column.unit);
}

ResultSheet::ResultSheet(const Result& result, const ResultTable& table)
    : result_(&result), table_(&table) {
    const std::vector<double> largest = largest_magnitudes(result, table, all_rows(result, table));
    std::map<std::string_view, double> of_unit;
    for (size_t i = 0; i < largest.size(); ++i) {
        double& most = of_unit[table.columns[i].unit];
        most = std::max(most, largest[i]);
    }
    for (const ResultColumn& column : table.columns) {
        decimals_.push_back(column.decimals == measured ? decimals_for(of_unit[column.unit])
                                                        : column.decimals);
    }
}

std::string ResultSheet::text(int row, int at) const {
    const ResultColumn& cell = column(at);
    if (cell.text != nullptr) {
        return cell.text(*result_, row);
    }
    const std::string shown =
        text_format("%.*f", decimals_[static_cast<size_t>(at)], cell.number(*result_, row));
    return shown.find_first_not_of("-0.") == std::string::npos && shown[0] == '-' ? shown.substr(1)
                                                                                  : shown;
}

std::vector<double> largest_magnitudes(const Result& result, const ResultTable& table,
                                       std::span<const int> rows) {
    std::vector<double> largest(table.columns.size(), 0.0);
    for (size_t i = 0; i < largest.size(); ++i) {
        if (is_value(table.columns[i])) {
            for (const int row : rows) {
                largest[i] = std::max(largest[i], std::fabs(table.columns[i].number(result, row)));
            }
        }
    }
    return largest;
}

bool row_matches(const Result& result, const ResultTable& table, int row,
                 const std::string& filter) {
    const std::string capital_filter = capitals(filter);
    Scanner words(capital_filter);
    for (std::string_view word; words.next(word);) {
        const std::string pattern = "*" + std::string(word) + "*";
        const auto matches = [&](const ResultColumn& column) {
            return column.names_row &&
                   matches_pattern(pattern,
                                   capitals(column.text != nullptr
                                                ? std::string(column.text(result, row))
                                                : text_format("%.0f", column.number(result, row))));
        };
        if (std::none_of(table.columns.begin(), table.columns.end(), matches)) {
            return false;
        }
    }
    return true;
}

} // namespace kigumi
