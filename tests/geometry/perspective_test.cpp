#include "geometry/perspective.h"

#include "geometry/segment_file.h"
#include "geometry/solid_support.h"
#include "support.h"

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
    add_member({0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(), 0);
    DrawArea area = area_of(400, 300);
    RecorderCanvas canvas;
    ASSERT_EQ(draw_perspective(canvas, area), 0);
    expect_golden("geometry/perspective.txt", canvas.text);
    expect_golden("geometry/temp_box.txt", hex_dump(read_file(work_file("TEMP.DAT")).value_or("")));
    const auto file = read_segment_file();
    ASSERT_TRUE(file);
    EXPECT_EQ(file->segments.size(), 9u);
    EXPECT_EQ(file->world.xmax, area.world.xmax);
    EXPECT_EQ(file->crt.right, 400);
}

TEST_F(PerspectiveTest, NothingBeforeTheEyeLeavesAnEmptyPicture) {
    add_member({9000, 0, 0}, {9100, 0, 0});
    ASSERT_EQ(build_trio_file(), 0);
    view.Theta = 0;
    view.Phi = 90;
    DrawArea area = area_of(400, 300);
    RecorderCanvas canvas;
    ASSERT_EQ(draw_perspective(canvas, area), 0);
    EXPECT_EQ(canvas.text, "pen 0 1 0\n");
    ASSERT_TRUE(read_segment_file());
    EXPECT_TRUE(read_segment_file()->segments.empty());
}

TEST_F(PerspectiveTest, PreviewBox) {
    DrawArea area = area_of(500, 400);
    RecorderCanvas canvas;
    make_cuve(canvas, area);
    EXPECT_EQ(canvas.text, "") << "no bounds yet";
    widen_bounds(0, 0, 0);
    widen_bounds(600, 400, 300);
    make_cuve(canvas, area);
    expect_golden("geometry/preview.txt", canvas.text);
    EXPECT_EQ(area.crt.left, 100);
    EXPECT_EQ(area.crt.bottom, 300);
}

TEST_F(PerspectiveTest, RefusesBrokenSegmentFiles) {
    const DrawArea area{{-10, -10, 10, 10}, {0, 0, 100, 100}, 100, 100};
    const Segment segment{1, 2, 3, 4};
    ASSERT_EQ(save_segment_file(area, {&segment, 1}), 0);
    const std::string good = *read_file(work_file("TEMP.DAT"));
    ASSERT_EQ(good.size(), 48u);
    std::string not_finite = good;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    not_finite.replace(32, 4, reinterpret_cast<const char*>(&nan), 4);
    std::string huge_viewport = good;
    huge_viewport[19] = 0x7F;
    const std::string broken[] = {"",         good.substr(0, 31), good.substr(0, 47),
                                  good + "x", not_finite,         huge_viewport};
    for (const std::string& bytes : broken) {
        ASSERT_EQ(save_file(work_file("TEMP.DAT"), bytes), 0);
        EXPECT_FALSE(read_segment_file()) << &bytes - broken;
    }
    DrawArea window = area;
    RecorderCanvas canvas;
    EXPECT_EQ(draw_perspective(canvas, window), -1);
    EXPECT_EQ(take_messages(),
              std::vector<std::string>{"Error: Unable to open TRIO_FILE jikuire 03"});
    view.TAU = view.FAI = 0;
    EXPECT_EQ(draw_segment_file(canvas, window), -1);
    EXPECT_EQ(take_messages(), std::vector<std::string>{"Error: Unable to open TEMP_FILE01"});
    EXPECT_EQ(view.TAU, 30);
    EXPECT_EQ(view.FAI, 30);
}

} // namespace

} // namespace kigumi::test
