// The selection of results: the members that the lists and the search have chosen, which the
// pictures show in colour and the square/round view draws. It is `kensaku` of `result`, which only
// these functions and store_listing (which empties it) write.
//
// A row is a 0-based position in result.stress. Rows that are no member's are left out.
#pragma once

#include "analysis/result.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kigumi {

// Makes these rows the selection, in the order of the table; a row named twice counts once.
void select_results(Result& result, std::span<const int> rows);

// Takes the row into the selection, or out of it when it is in.
void toggle_result(Result& result, int row);

void clear_selection(Result& result);

bool is_selected(const Result& result, int row);

// The selected rows, ascending; as many as Nken_Stress.
std::vector<int> selected_rows(const Result& result);

// Grows with every change of the selection, also when results are read anew.
std::uint64_t selection_edition(const Result& result);

} // namespace kigumi
