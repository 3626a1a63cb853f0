// The search among the result members (計算結果検索).
#pragma once

#include "analysis/result.h"
#include "model/select.h"

#include <array>

#include <limits>
#include <optional>
#include <vector>

namespace kigumi {

// Sign of the axial force, as the pictures colour it: a force of 0 is compression.
enum class ForceSign { any, tension, compression };

// What a member has to satisfy: all of it.
struct ResultQuery {
    struct Range {
        float low, high; // cm
    };
    float lower = 0.0f, upper = 100.0f; // percent of the largest force, inclusive
    ForceSign sign = ForceSign::any;
    std::optional<CrossSection> section;    // of the model's member of the same number
    std::array<std::optional<Range>, 3> at; // levels in x, y and z between which both ends lie
    int first_no = 1;                       // member numbers, inclusive
    int last_no = std::numeric_limits<int>::max();
};

// Node coordinates reach the result files rounded to 0.1 cm, the levels do not: an end that much
// beyond a level still lies at it, cm.
constexpr float level_rounding = 0.051f;

// True when the member satisfies the query. A section is satisfied by members of the model only.
bool matches_query(const Model& model, const Stress& member, const ResultQuery& query);

// Rows of `result.stress` that satisfy the query, ascending.
std::vector<int> find_members(const Model& model, const Result& result, const ResultQuery& query);

// True when the results are those of the model in the tables: as many members, the same numbers at
// their ends, and ends at the same places but for the rounding of the files.
bool results_are_of_model(const Model& model, const Result& result);

} // namespace kigumi
