#include "results/selection.h"

#include "analysis/result_reader.h"
#include "results_support.h"

#include <gtest/gtest.h>

namespace kigumi::test {
namespace {

using SelectionTest = ResultTest;

TEST_F(SelectionTest, HoldsEachRowOnceInTheOrderOfTheTable) {
    make_portal_result();
    select_results(std::vector<int>{2, 0, 2, -1, 3, result_capacity});
    EXPECT_EQ(selected_rows(), (std::vector<int>{0, 2}));
    EXPECT_EQ(result.Nken_Stress, 2);
    EXPECT_EQ(result.kensaku[1].no, 3);
    EXPECT_TRUE(is_selected(0));
    EXPECT_FALSE(is_selected(1));
    toggle_result(1);
    toggle_result(0);
    EXPECT_EQ(selected_rows(), (std::vector<int>{1, 2}));
}

TEST_F(SelectionTest, IsEmptiedByNewResultsAndTellsEachChange) {
    make_portal_result();
    select_results(std::vector<int>{1});
    const auto chosen = selection_edition();
    ASSERT_GE(read_frameslv(listing_of_row(3)), 0);
    EXPECT_TRUE(selected_rows().empty());
    EXPECT_FALSE(is_selected(1));
    EXPECT_GT(selection_edition(), chosen);
}

} // namespace
} // namespace kigumi::test
