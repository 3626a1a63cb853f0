#include "ui/picture/picture_widget.h"

#include "base/message.h"
#include "player.h"
#include "ui/picture/picture_file.h"

#include <cmath>

namespace kigumi::test {

namespace {

class Picture : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        widget_.resize(640, 480);
        widget_.set_picture([](Canvas& canvas, DrawArea& area) {
            square_fit(area, {-100.0f, -50.0f, 300.0f, 250.0f});
            canvas.set_area(area);
            canvas.move(0, 0);
            canvas.line(10, 10);
        });
        widget_.grab();
    }
    void send(QEvent::Type type, QPoint at, Qt::MouseButton button) {
        send_mouse(widget_, type, at, button);
    }
    PlanePoint under(QPoint at) {
        widget_.grab();
        return to_plane(widget_.area(), at.x(), at.y());
    }
    PictureWidget widget_;
};

TEST_F(Picture, WheelKeepsThePointUnderThePointer) {
    const QPoint at(200, 330);
    const World fitted = widget_.area().world;
    const PlanePoint before = under(at);
    for (const int step : {120, 120, -120, 240}) {
        turn_wheel(widget_, at, step);
        const PlanePoint now = under(at);
        EXPECT_NEAR(now.X, before.X, 0.01);
        EXPECT_NEAR(now.Y, before.Y, 0.01);
    }
    EXPECT_LT(widget_.area().world.xmax - widget_.area().world.xmin,
              0.6f * (fitted.xmax - fitted.xmin));
    EXPECT_FLOAT_EQ(widget_.segments()->area().world.xmin, fitted.xmin) << "files keep the fit";
    widget_.fit();
    widget_.grab();
    EXPECT_FLOAT_EQ(widget_.area().world.xmin, fitted.xmin);
    EXPECT_FLOAT_EQ(widget_.area().world.ymax, fitted.ymax);
}

TEST_F(Picture, MessageOfAPaintComesOnceAndAfterIt) {
    int paints = 0;
    widget_.set_picture([&paints](Canvas&, DrawArea&) {
        ++paints;
        show_message("no file");
    });
    widget_.grab();
    EXPECT_TRUE(take_messages().empty()) << "no box while painting";
    widget_.grab();
    QApplication::processEvents();
    expect_message("no file");
    EXPECT_EQ(paints, 1);
    EXPECT_FALSE(widget_.segments().has_value()) << "no drawing of a picture that failed";
    expect_message("no file");
}

TEST_F(Picture, MiddleButtonDragsThePictureAlong) {
    const PlanePoint grasped = under({300, 200});
    send(QEvent::MouseButtonPress, {300, 200}, Qt::MiddleButton);
    send(QEvent::MouseMove, {350, 260}, Qt::MiddleButton);
    send(QEvent::MouseButtonRelease, {350, 260}, Qt::MiddleButton);
    const PlanePoint now = under({350, 260});
    EXPECT_NEAR(now.X, grasped.X, 0.01);
    EXPECT_NEAR(now.Y, grasped.Y, 0.01);
}

TEST_F(Picture, OnlyASingleLeftClickPicks) {
    std::vector<QPoint> picks;
    QObject::connect(&widget_, &PictureWidget::picked, &widget_,
                     [&](QPoint at) { picks.push_back(at); });
    send(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, {30, 40}, Qt::LeftButton);
    EXPECT_EQ(picks, std::vector<QPoint>{QPoint(10, 20)}) << "where it was pressed";
    send(QEvent::MouseButtonPress, {10, 20}, Qt::RightButton);
    send(QEvent::MouseButtonRelease, {10, 20}, Qt::RightButton);
    send(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton);
    send(QEvent::MouseButtonPress, {10, 20}, Qt::RightButton);
    send(QEvent::MouseButtonRelease, {10, 20}, Qt::LeftButton);
    EXPECT_EQ(picks.size(), 1u);
}

TEST_F(Picture, AFailedDrawingLeavesTheOldFileWhole) {
    for (const char* name : {"a.png", "a.svg", "a.pdf"}) {
        const fs::path path = work_file(work_dir, name);
        ASSERT_EQ(save_file(path, "old"), 0);
        EXPECT_EQ(save_picture(path, 300, 200, [](Canvas&) { return -1; }), -1);
        EXPECT_EQ(read_file(path), "old") << name;
        EXPECT_EQ(save_picture(path, 300, 200, [](Canvas&) { return 0; }), 0);
        EXPECT_NE(read_file(path), "old") << name;
    }
}

} // namespace

} // namespace kigumi::test
