#include "draw/model_picture.h"
#include "solid/axis_picture.h"

#include "draw/segment_file.h"
#include "solid/solid.h"
#include "solid/solid_support.h"
#include "support.h"

namespace kigumi::test {

namespace {

class AxisPictureTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        area.xScreen = 640;
        area.yScreen = 480;
        add_member(model, {0, 0, 0}, {0, 0, 300}, 12, 12);
        add_member(model, {0, 0, 300}, {0, 200, 300});
    }
    DrawArea area;
    RecorderCanvas canvas;
};

TEST_F(AxisPictureTest, WireWithNodeMarks) {
    draw_wire(project_model(model, view), canvas, area, true);
    expect_golden("solid/wire_marks.txt", canvas.text);
    RecorderCanvas plain;
    draw_wire(project_model(model, view), plain, area, false);
    EXPECT_EQ(plain.text, canvas.text.substr(0, canvas.text.find("circle")));
}

TEST_F(AxisPictureTest, AxisModelDrawsEveryEdgeOnceAndWidensTheBounds) {
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    ASSERT_EQ(draw_axis_model(view, solids, canvas, area), 0);
    expect_golden("solid/axis_model.txt", canvas.text);
    EXPECT_NEAR(solids.Z_MAX, 310, 1e-3);
    EXPECT_NEAR(solids.Z_MIN, 0, 1e-3);
    EXPECT_NEAR(solids.X_MIN, -6, 1e-3);
    EXPECT_NEAR(solids.Y_MAX, 200, 1e-3);
}

TEST_F(AxisPictureTest, SolidsThatWereNotBuiltAreReportedAtEachPaintAndChangeNothing) {
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    ASSERT_EQ(draw_axis_model(view, solids, canvas, area), 0);
    reset_solids(solids);
    area.world = {1, 2, 3, 4};
    const float Z_MAX = solids.Z_MAX;
    canvas.text.clear();
    EXPECT_EQ(get_jiku_world(view, solids, area), -1);
    EXPECT_EQ(draw_axis_model(view, solids, canvas, area), -1);
    expect_messages({"Error: Unable to open TRIO_FILE jikuire 01",
                     "Error: Unable to open TRIO_FILE jikuire 02"});
    EXPECT_EQ(canvas.text, "");
    EXPECT_EQ(area.world.ymax, 4);
    EXPECT_EQ(solids.Z_MAX, Z_MAX);
}

TEST_F(AxisPictureTest, AStoredPictureIsDrawnAsItWas) {
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    ASSERT_EQ(draw_axis_model(view, solids, canvas, area), 0);
    SegmentCanvas lines;
    ASSERT_EQ(draw_axis_model(view, solids, lines, area), 0);
    EXPECT_EQ(lines.segments().size(), 24u);
    ASSERT_EQ(save_segment_file(work_dir, lines.area(), lines.segments()), 0);
    DrawArea other;
    RecorderCanvas again;
    ASSERT_EQ(draw_segment_file(view, work_dir, again, other), 0);
    EXPECT_EQ(again.text, canvas.text);
}

} // namespace

} // namespace kigumi::test
