#include "results/selection.h"

#include "analysis/result.h"

#include <algorithm>

namespace kigumi {

namespace {

std::span<const std::int32_t> rows_in_use() {
    return {result.kensaku_row.data(), static_cast<std::size_t>(result.Nken_Stress)};
}

} // namespace

void select_results(std::span<const int> rows) {
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

void toggle_result(int row) {
    std::vector<int> rows = selected_rows();
    const auto found = std::find(rows.begin(), rows.end(), row);
    if (found == rows.end()) {
        rows.push_back(row);
    } else {
        rows.erase(found);
    }
    select_results(rows);
}

void clear_selection() {
    select_results({});
}

bool is_selected(int row) {
    const auto rows = rows_in_use();
    return std::binary_search(rows.begin(), rows.end(), row);
}

std::vector<int> selected_rows() {
    const auto rows = rows_in_use();
    return {rows.begin(), rows.end()};
}

std::uint64_t selection_edition() {
    return result.kensaku_edition;
}

} // namespace kigumi
