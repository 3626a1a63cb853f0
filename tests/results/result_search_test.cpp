#include "results/result_search.h"

#include "analysis/result_fit.h"
#include "model/members.h"
#include "results_support.h"

#include <functional>

namespace kigumi::test {

namespace {

using Change = std::function<void(ResultQuery&)>;

struct SearchCase {
    const char* name;
    Change change;
    std::vector<int> numbers; // of the members found
};

Change between_percents(float lower, float upper) {
    return [=](ResultQuery& query) {
        query.lower = lower;
        query.upper = upper;
    };
}
Change between_levels(int axis, float low, float high) {
    return [=](ResultQuery& query) {
        query.at[static_cast<size_t>(axis)] = ResultQuery::Range{low, high};
    };
}
Change of_sign(ForceSign sign) {
    return [=](ResultQuery& query) { query.sign = sign; };
}
Change of_section(float haba, float atumi) {
    return [=](ResultQuery& query) { query.section = CrossSection{haba, atumi}; };
}
Change of_numbers(int first, int last) {
    return [=](ResultQuery& query) {
        query.first_no = first;
        query.last_no = last;
    };
}

// The portal: member 1 is pressed (100 %), 2 pulled (10 %), 3 without force.
class ResultSearch : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        make_portal_result(result);
        append_beam(model, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 300.0f}, 12.0f, 12.0f, kind_post, 2);
        append_beam(model, {0.0f, 0.0f, 300.0f}, {400.0f, 0.0f, 300.0f}, 9.0f, 12.0f, kind_chord,
                    2);
    }
};

const SearchCase searches[] = {
    {"everything", [](ResultQuery&) {}, {1, 2, 3}},
    {"both_percents_inclusive", between_percents(10.0f, 100.0f), {1, 2}},
    {"just_above", between_percents(10.0001f, 100.0f), {1}},
    {"just_below", between_percents(0.0f, 9.9999f), {3}},
    {"one_percent", between_percents(10.0f, 10.0f), {2}},
    {"bounds_exchanged", between_percents(60.0f, 40.0f), {}},
    {"tension", of_sign(ForceSign::tension), {2}},
    {"no_force_is_compression", of_sign(ForceSign::compression), {1, 3}},
    {"section", of_section(12.0f, 12.0f), {1}},
    {"section_turned", of_section(12.0f, 9.0f), {}},
    {"section_only_of_the_model's_members", of_section(9.0f, 12.0f), {2}},
    {"level_of_both_ends", between_levels(2, 300.0f, 300.0f), {2}},
    {"level_rounded_in_the_file", between_levels(2, 300.049f, 310.0f), {2}},
    {"level_beyond_rounding", between_levels(2, 300.06f, 310.0f), {}},
    {"one_end_outside", between_levels(0, 0.0f, 399.0f), {1}},
    {"numbers_inclusive", of_numbers(2, 3), {2, 3}},
};

TEST_F(ResultSearch, FindsTheMembers) {
    for (const auto& [name, change, expected] : searches) {
        ResultQuery query;
        change(query);
        std::vector<int> numbers;
        for (const int row : find_members(model, result, query)) {
            numbers.push_back(result.stress[row].no);
        }
        EXPECT_EQ(numbers, expected) << name;
    }
}

// Sections may be asked for only when the results are those of the model.
TEST_F(ResultSearch, KnowsTheModelOfTheResults) {
    EXPECT_FALSE(results_fit(model, result)) << "a member is missing";
    append_beam(model, {400.0f, 0.0f, 0.0f}, {400.0f, 0.0f, 300.0f}, 12.0f, 12.0f, kind_post, 2);
    EXPECT_TRUE(results_fit(model, result));
    result.stress[2].zj += 0.04f;
    EXPECT_TRUE(results_fit(model, result)) << "files round to 0.1 cm";
    result.stress[2].zj += 0.1f;
    EXPECT_FALSE(results_fit(model, result));
    result.stress[2].zj = 300.0f;
    result.stress[1].xi = 400.0f;
    EXPECT_FALSE(results_fit(model, result)) << "between other places";
}

} // namespace

} // namespace kigumi::test
