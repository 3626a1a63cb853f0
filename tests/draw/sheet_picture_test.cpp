#include "draw/sheet_picture.h"

#include "support.h"

namespace kigumi {
namespace {

class SheetPicture : public test::CoreTest {};

TEST_F(SheetPicture, OneUnitIsAPixelUntilTheSheetIsTooLarge) {
    DrawArea area;
    area.xScreen = 1000;
    area.yScreen = 700;
    fit_sheet(area, {0, 0, 1000, 700});
    EXPECT_FLOAT_EQ(to_sheet(area, 123, 456).X, 123.0f);
    EXPECT_FLOAT_EQ(to_sheet(area, 123, 456).Y, 700.0f - 456.0f);
    area.xScreen = 1200;
    fit_sheet(area, {0, 0, 1000, 700});
    EXPECT_FLOAT_EQ(area.world.xmax, 1200.0f) << "a larger window shows more paper";
    model.N_Node = 1;
    model.node[0] = Node{};
    model.node[0].X = -30.0f;
    area.xScreen = 525;
    fit_sheet(area, sheet_around_nodes(model, {0, 0, 1000, 700}));
    EXPECT_FLOAT_EQ(area.world.xmin, -50.0f);
    EXPECT_FLOAT_EQ(area.world.xmax, 1000.0f);
    EXPECT_FLOAT_EQ(area.world.ymax, 1400.0f);
}

TEST_F(SheetPicture, APointOfThePixelIsDrawnOnIt) {
    DrawArea area;
    area.xScreen = 977;
    area.yScreen = 613;
    area.crt = {0, 0, 977, 613};
    for (const float zoom : {1.0f, 1.25f, 3.0517578f, 0.1f, 397.0f}) {
        area.world = {31.7f, -12.9f, 31.7f + 977 / zoom, -12.9f + 613 / zoom};
        for (int i = 0; i < 600; ++i) {
            const SheetPoint at = to_sheet(area, i, 600 - i);
            int px = -1;
            int py = -1;
            ASSERT_TRUE(to_screen(area, at.X, at.Y, px, py));
            ASSERT_EQ(px, i) << zoom;
            ASSERT_EQ(py, 600 - i) << zoom;
        }
    }
}

TEST_F(SheetPicture, UnfinishedLooksDifferent) {
    TegakiSheet sheet(model);
    for (const SheetPoint at : {SheetPoint{10, 10}, {60, 10}, {60, 10}, {60, 60}}) {
        sheet.press(TegakiSheet::left_button, at);
        sheet.release(at);
    }
    set_node_place(model, 1, 0, 0, 0);
    set_beam_section(model, 1, 10, 10);
    DrawArea area;
    area.xScreen = area.yScreen = 100;
    fit_sheet(area, {0, 0, 100, 100});
    test::RecorderCanvas canvas;
    draw_sheet(model, canvas, area, {{MarkKind::picked, {10, 10}}});
    EXPECT_EQ(canvas.text, "pen 2 1 14\nline 10 90 60 90\n"
                           "pen 0 1 0\nline 60 90 60 40\n"
                           "pen 0 1 0\nsquare 10 90 3 0\nsquare 10 90 4 0\n"
                           "pen 0 1 0\ncircle 60 90 3 1\n"
                           "pen 0 1 0\nsquare 60 40 3 0\nsquare 60 40 4 0\n"
                           "pen 0 1 1\ncircle 10 90 5 1\n");
}

} // namespace
} // namespace kigumi
