#include "results/selection.h"

#include "analysis/result.h"

#include <algorithm>

namespace kigumi {

namespace {

std::span<const std::int32_t> rows_in_use(const Result& result) {
    return {result.kensaku_row.data(), static_cast<std::size_t>(result.Nken_Stress)};
}

} // namespace

void select_results(Result& result, std::span<const int> rows) {
    std::vector<int> wanted(rows.begin(), rows.end());
    std::sort(wanted.begin(), wanted.end());
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    result.Nken_Stress = 0;
    for (const int row : wanted) {
        if (row >= 0 && row < result.N_Stress) {
            result.kensaku[result.Nken_Stress] = result.stress[row];
            result.kensaku_row[result.Nken_Stress++] = row;
        }
    }
    ++result.kensaku_edition;
}

void toggle_result(Result& result, int row) {
    std::vector<int> rows = selected_rows(result);
    const auto found = std::find(rows.begin(), rows.end(), row);
    if (found == rows.end()) {
        rows.push_back(row);
    } else {
        rows.erase(found);
    }
    select_results(result, rows);
}

void clear_selection(Result& result) {
    select_results(result, {});
}

bool is_selected(const Result& result, int row) {
    const auto rows = rows_in_use(result);
    return std::binary_search(rows.begin(), rows.end(), row);
}

std::vector<int> selected_rows(const Result& result) {
    const auto rows = rows_in_use(result);
    return {rows.begin(), rows.end()};
}

std::uint64_t selection_edition(const Result& result) {
    return result.kensaku_edition;
}

} // namespace kigumi
