#include "results/result_search.h"

#include "analysis/result_fit.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

bool of_sign(float force, ForceSign sign) {
    return sign == ForceSign::any || (force > 0.0f) == (sign == ForceSign::tension);
}

bool of_section(const Beam* beam, const CrossSection& section) {
    return beam != nullptr && section == CrossSection{beam->haba, beam->atumi};
}

bool within(float end, const ResultQuery::Range& range) {
    return end >= range.low - level_rounding && end <= range.high + level_rounding;
}

} // namespace

bool matches_query(const Stress& member, const Beam* beam, const ResultQuery& query) {
    if (!(member.percent >= query.lower && member.percent <= query.upper) ||
        !of_sign(member.force, query.sign) || member.no < query.first_no ||
        member.no > query.last_no) {
        return false;
    }
    if (query.section && !of_section(beam, *query.section)) {
        return false;
    }
    const float start[3] = {member.xi, member.yi, member.zi};
    const float end[3] = {member.xj, member.yj, member.zj};
    for (int axis = 0; axis < 3; ++axis) {
        if (query.at[axis] &&
            !(within(start[axis], *query.at[axis]) && within(end[axis], *query.at[axis]))) {
            return false;
        }
    }
    return true;
}

std::vector<int> find_members(const Model& model, const Result& result, const ResultQuery& query) {
    const std::vector<int> of_model =
        query.section ? match_results(model_shape(model), stored_results(result)).member
                      : std::vector<int>(static_cast<size_t>(result.N_Stress), -1);
    std::vector<int> rows;
    for (int row = 0; row < result.N_Stress; ++row) {
        const int at = of_model[static_cast<size_t>(row)];
        if (matches_query(result.stress[row], at < 0 ? nullptr : &model.beam[at], query)) {
            rows.push_back(row);
        }
    }
    spy("Pass find_members %5d of %5d", static_cast<int>(rows.size()), result.N_Stress);
    return rows;
}

} // namespace kigumi
