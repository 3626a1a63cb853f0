#include "sight/perspective.h"
#include "sight/viewpoint.h"

#include "draw/segment_file.h"
#include "solid/solid_support.h"
#include "support.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kigumi::test {

namespace {

using PerspectiveTest = CoreTest;

DrawArea area_of(int width, int height) {
    DrawArea area;
    area.xScreen = width;
    area.yScreen = height;
    return area;
}

TEST_F(PerspectiveTest, DistanceShrinksAndTheNearPlaneCuts) {
    const ViewCoefficients v = view_coefficients(1000, 0, 90);
    const auto whole = perspective_edge(v, {50, 20, 500}, {50, 20, 2000});
    ASSERT_TRUE(whole);
    EXPECT_FLOAT_EQ(whole->X1, 100);
    EXPECT_FLOAT_EQ(whole->Y1, 40);
    EXPECT_FLOAT_EQ(whole->X2, 25);
    EXPECT_FLOAT_EQ(whole->Y2, 10);

    // Cut at ze = 100, three quarters of the way from the far to the near end.
    const auto cut = perspective_edge(v, {40, 8, 700}, {0, 0, -100});
    ASSERT_TRUE(cut);
    EXPECT_FLOAT_EQ(cut->X2, 10 * 10);
    EXPECT_FLOAT_EQ(cut->Y2, 2 * 10);
    const auto turned = perspective_edge(v, {0, 0, -100}, {40, 8, 700});
    ASSERT_TRUE(turned);
    EXPECT_FLOAT_EQ(turned->X1, cut->X2);
    EXPECT_FLOAT_EQ(turned->X2, cut->X1);
    EXPECT_FALSE(perspective_edge(v, {0, 0, 99}, {5, 5, -3000}));
    EXPECT_TRUE(perspective_edge(v, {0, 0, 100}, {5, 5, -3000})) << "a point on the plane is kept";
}

TEST_F(PerspectiveTest, PictureGoesToTheSegmentFile) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    DrawArea area = area_of(400, 300);
    RecorderCanvas canvas;
    ASSERT_EQ(draw_perspective(view, solids, perspective, work_dir, canvas, area), 0);
    expect_golden("sight/perspective.txt", canvas.text);
    expect_golden("sight/temp_box.txt",
                  hex_dump(read_file(work_file(work_dir, "TEMP.DAT")).value_or("")));
    const auto file = read_segment_file(work_dir);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->segments.size(), 9u);
    EXPECT_EQ(file->world.xmax, area.world.xmax);
    EXPECT_EQ(file->crt.right, 400);
}

TEST_F(PerspectiveTest, ComputesOnceForSolidsAndViewpoint) {
    int told = 0;
    const Progress count = [&told](double) { return ++told > 0; };
    const auto prepares_anew = [&] {
        told = 0;
        EXPECT_EQ(prepare_perspective(view, solids, perspective, work_dir, count),
                  perspective_ready);
        return told > 0;
    };
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_TRUE(prepares_anew());
    EXPECT_FALSE(prepares_anew());
    view.Theta = 40;
    EXPECT_TRUE(prepares_anew());
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_TRUE(prepares_anew());
    // The file changed by another program is not looked at.
    ASSERT_EQ(save_file(work_file(work_dir, "TRIO.DAT"), "another's"), 0);
    EXPECT_FALSE(prepares_anew());
}

TEST_F(PerspectiveTest, StoppedPictureShowsAllEdgesUntilItIsPreparedAgain) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    DrawArea area = area_of(400, 300);
    const auto lines_drawn = [this, &area] {
        RecorderCanvas canvas;
        EXPECT_EQ(draw_perspective(view, solids, perspective, work_dir, canvas, area), 0);
        return std::count(canvas.text.begin(), canvas.text.end(), '\n') - 1;
    };
    EXPECT_EQ(
        prepare_perspective(view, solids, perspective, work_dir, [](double) { return false; }),
        perspective_stopped);
    EXPECT_EQ(lines_drawn(), 12);
    // A paint in the midst of the work shows what was there before.
    int drawn = -1;
    const auto paint = [&](double) {
        drawn = static_cast<int>(lines_drawn());
        return true;
    };
    EXPECT_EQ(prepare_perspective(view, solids, perspective, work_dir, paint), perspective_ready);
    EXPECT_EQ(drawn, 12);
    EXPECT_EQ(lines_drawn(), 9);
}

TEST_F(PerspectiveTest, PlacesOfTheVerticesGoIntoTheRecords) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    add_member(model, {3000, 0, 0}, {9000, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    view.Theta = 0;
    view.Phi = 90;
    ASSERT_EQ(prepare_perspective(view, solids, perspective, work_dir), perspective_ready);
    const std::string bytes = *read_file(work_file(work_dir, "TRIO.DAT"));
    ASSERT_EQ(bytes.size(), 24 * sizeof(Trio));
    const auto place = [&bytes](int record, int value) {
        double number = 0;
        std::memcpy(&number, bytes.data() + record * 272 + 160 + value * 8, sizeof number);
        return number;
    };
    // Record 1: (100, 5, 10), (0, -5, 10), (100, -5, 10); the eye at (4000, 0, 0).
    EXPECT_NEAR(place(0, 0), 5 * 4000 / 3900.0, 1e-4);
    EXPECT_NEAR(place(0, 1), 10 * 4000 / 3900.0, 1e-4);
    EXPECT_NEAR(place(0, 2), -5, 1e-4);
    EXPECT_NEAR(place(0, 3), 10, 1e-4);
    EXPECT_EQ(place(12, 0), 0) << "behind the eye";
    EXPECT_NEAR(place(12, 2), -5 * 4.0, 1e-3);
}

TEST_F(PerspectiveTest, CrumbsAreLeftOutAsTheScaleShowsThem) {
    const VisibleSegment lines[] = {
        {{0, 0, 3, 4}, 0, false}, {{0, 0, 0.3f, 0.4f}, 1, false}, {{0, 0, 0.3f, 0.4f}, 2, true}};
    EXPECT_EQ(without_crumbs(lines, 0.4).size(), 3u);
    const auto left = without_crumbs(lines, 0.6);
    ASSERT_EQ(left.size(), 2u);
    EXPECT_EQ(left[1].record, 2) << "a whole edge is no crumb";
}

TEST_F(PerspectiveTest, NothingBeforeTheEyeIsTold) {
    add_member(model, {9000, 0, 0}, {9100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    view.Theta = 0;
    view.Phi = 90;
    DrawArea area = area_of(400, 300);
    RecorderCanvas canvas;
    ASSERT_EQ(draw_perspective(view, solids, perspective, work_dir, canvas, area), -1);
    expect_message("視点から見える部材がありません");
    EXPECT_EQ(canvas.text, "");
}

TEST_F(PerspectiveTest, PreviewBox) {
    DrawArea area = area_of(500, 400);
    RecorderCanvas canvas;
    make_cuve(solids, view, canvas, area);
    EXPECT_EQ(canvas.text, "") << "no bounds yet";
    widen_bounds(solids, 0, 0, 0);
    widen_bounds(solids, 600, 400, 300);
    make_cuve(solids, view, canvas, area);
    expect_golden("sight/preview.txt", canvas.text);
    EXPECT_EQ(area.crt.left, 100);
    EXPECT_EQ(area.crt.bottom, 300);
}

TEST_F(PerspectiveTest, RefusesBrokenSegmentFiles) {
    const DrawArea area{{-10, -10, 10, 10}, {0, 0, 100, 100}, 100, 100};
    const Segment segment{1, 2, 3, 4};
    ASSERT_EQ(save_segment_file(work_dir, area, {&segment, 1}), 0);
    const std::string good = *read_file(work_file(work_dir, "TEMP.DAT"));
    ASSERT_EQ(good.size(), 48u);
    std::string not_finite = good;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    not_finite.replace(32, 4, reinterpret_cast<const char*>(&nan), 4);
    std::string huge_viewport = good;
    huge_viewport[19] = 0x7F;
    const std::string broken[] = {"",         good.substr(0, 31), good.substr(0, 47),
                                  good + "x", not_finite,         huge_viewport};
    for (const std::string& bytes : broken) {
        ASSERT_EQ(save_file(work_file(work_dir, "TEMP.DAT"), bytes), 0);
        EXPECT_FALSE(read_segment_file(work_dir)) << &bytes - broken;
    }
    DrawArea window = area;
    RecorderCanvas canvas;
    EXPECT_EQ(draw_perspective(view, solids, perspective, work_dir, canvas, window), -1);
    expect_message("Error: Unable to open TRIO_FILE jikuire 03");
    view.TAU = view.FAI = 0;
    EXPECT_EQ(draw_segment_file(view, work_dir, canvas, window), -1);
    expect_message("Error: Unable to open TEMP_FILE01");
    EXPECT_EQ(view.TAU, 30);
    EXPECT_EQ(view.FAI, 30);
}

} // namespace

} // namespace kigumi::test
