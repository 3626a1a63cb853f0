#include "results/pick_member.h"

#include "results/displacement.h"
#include "results/force_picture.h"
#include "results/marukaku.h"
#include "results/selection.h"
#include "results_support.h"
#include "sight/perspective.h"

namespace kigumi::test {

namespace {

// The portal seen from the front: X = -x, Y = z.
class PickMemberTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        make_portal_result(result);
        shown.TAU = 90.0f;
        shown.FAI = 0.0f;
    }
    ResultView shown;
};

TEST_F(PickMemberTest, FindsTheNearestWithinReach) {
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {3.0f, 150.0f}, 5.0f), 0);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {-200.0f, 296.0f}, 5.0f), 1);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {-398.0f, 299.0f}, 5.0f), 1);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {-399.0f, 298.0f}, 5.0f), 2);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {-200.0f, 150.0f}, 5.0f), -1);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {0.0f, -6.0f}, 5.0f), -1)
        << "beyond the foot";
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {0.0f, -5.0f}, 5.0f), 0)
        << "the reach itself counts";
}

TEST_F(PickMemberTest, FollowsTheShapesOfTheMode) {
    result.disp[1].disp_x = result.disp[2].disp_x = 10.0f;
    ASSERT_EQ(get_new_beam(result, 10.0f), 0);
    const PlanePoint on_moved{-50.0f, 150.0f};
    EXPECT_EQ(pick_member(result, solids, perspective, shown, on_moved, 5.0f), -1);
    shown.mode = mode_displaced;
    EXPECT_EQ(pick_member(result, solids, perspective, shown, on_moved, 5.0f), 0);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {0.0f, 150.0f}, 5.0f), 0);
    shown.mode = mode_solids;
    select_results(result, std::vector<int>{1});
    ASSERT_EQ(make_marukaku(view, result, solids, work_dir, shown), 0);
    ASSERT_EQ(prepare_perspective(view, solids, perspective, work_dir), perspective_ready);
    const Segment seen = perspective_lines(solids, perspective).front().line;
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {seen.X1, seen.Y1}, 1.0f), 1);
    EXPECT_EQ(pick_member(result, solids, perspective, shown, {9e6f, 0.0f}, 1.0f), -1);
}

} // namespace

} // namespace kigumi::test
