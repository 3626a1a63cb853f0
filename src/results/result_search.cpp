#include "results/result_search.h"

#include "trace/spy.h"

#include <cmath>

namespace kigumi {

namespace {

// The model's member of this number, or null.
const Beam* find_beam(const Model& model, int no) {
    return no >= 1 && no <= model.N_Beam ? &model.beam[position_of(no)] : nullptr;
}

bool of_sign(float force, ForceSign sign) {
    return sign == ForceSign::any || (force > 0.0f) == (sign == ForceSign::tension);
}

bool of_section(const Model& model, const Stress& member, const CrossSection& section) {
    const Beam* beam = find_beam(model, member.no);
    return beam != nullptr && section == CrossSection{beam->haba, beam->atumi};
}

bool within(float end, const ResultQuery::Range& range) {
    return end >= range.low - level_rounding && end <= range.high + level_rounding;
}

bool near(const float (&a)[3], const float (&b)[3]) {
    for (int axis = 0; axis < 3; ++axis) {
        if (!(std::fabs(a[axis] - b[axis]) <= level_rounding)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool matches_query(const Model& model, const Stress& member, const ResultQuery& query) {
    if (!(member.percent >= query.lower && member.percent <= query.upper) ||
        !of_sign(member.force, query.sign) || member.no < query.first_no ||
        member.no > query.last_no) {
        return false;
    }
    if (query.section && !of_section(model, member, *query.section)) {
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
    std::vector<int> rows;
    for (int row = 0; row < result.N_Stress; ++row) {
        if (matches_query(model, result.stress[row], query)) {
            rows.push_back(row);
        }
    }
    spy("Pass find_members %5d of %5d", static_cast<int>(rows.size()), result.N_Stress);
    return rows;
}

bool results_are_of_model(const Model& model, const Result& result) {
    if (model.N_Beam == 0 || model.N_Beam != result.N_Stress) {
        return false;
    }
    for (int row = 0; row < result.N_Stress; ++row) {
        const Stress& member = result.stress[row];
        const Beam* beam = find_beam(model, member.no);
        if (beam == nullptr || beam->noi != member.old_noi || beam->noj != member.old_noj ||
            !near({beam->xs, beam->ys, beam->zs}, {member.xi, member.yi, member.zi}) ||
            !near({beam->xl, beam->yl, beam->zl}, {member.xj, member.yj, member.zj})) {
            return false;
        }
    }
    return true;
}

} // namespace kigumi
