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
    std::optional<CrossSection> section;    // of the model's member at the same place
    std::array<std::optional<Range>, 3> at; // levels in x, y and z between which both ends lie
    int first_no = 1;                       // member numbers, inclusive
    int last_no = std::numeric_limits<int>::max();
};

// Node coordinates reach the result files rounded to 0.1 cm, the levels do not: an end that much
// beyond a level still lies at it, cm.
constexpr float level_rounding = 0.051f;

// True when the member satisfies the query; `beam` is the model's member of it, or null, which has
// no section.
bool matches_query(const Stress& member, const Beam* beam, const ResultQuery& query);

// Rows of `result.stress` that satisfy the query, ascending. A row's member of the model is that of
// match_results (analysis/result_fit.h).
std::vector<int> find_members(const Model& model, const Result& result, const ResultQuery& query);

} // namespace kigumi
