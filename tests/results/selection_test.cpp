#include "results/selection.h"

#include "analysis/result_reader.h"
#include "results_support.h"

#include <gtest/gtest.h>

namespace kigumi::test {
namespace {

using SelectionTest = CoreTest;

TEST_F(SelectionTest, HoldsEachRowOnceInTheOrderOfTheTable) {
    make_portal_result(result);
    select_results(result, std::vector<int>{2, 0, 2, -1, 3, result_capacity});
    EXPECT_EQ(selected_rows(result), (std::vector<int>{0, 2}));
    EXPECT_EQ(result.Nken_Stress, 2);
    EXPECT_EQ(result.kensaku[1].no, 3);
    EXPECT_TRUE(is_selected(result, 0));
    EXPECT_FALSE(is_selected(result, 1));
    toggle_result(result, 1);
    toggle_result(result, 0);
    EXPECT_EQ(selected_rows(result), (std::vector<int>{1, 2}));
}

TEST_F(SelectionTest, IsEmptiedByNewResultsAndTellsEachChange) {
    make_portal_result(result);
    select_results(result, std::vector<int>{1});
    const auto chosen = selection_edition(result);
    ASSERT_GE(read_frameslv(result, listing_of_row(3)), 0);
    EXPECT_TRUE(selected_rows(result).empty());
    EXPECT_FALSE(is_selected(result, 1));
    EXPECT_GT(selection_edition(result), chosen);
}

} // namespace
} // namespace kigumi::test
