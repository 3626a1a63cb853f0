// Picking supports and loads in the main window, and the node search window beside it.
#include "ui/data/node_picking.h"

#include "model/model.h"
#include "model/roles.h"
#include "player.h"
#include "ui/data/node_kensaku_form.h"
#include "ui/main/main_form.h"

#include <QComboBox>
#include <QMessageBox>
#include <QProcess>

namespace kigumi::test {

namespace {

// A portal: feet 1 and 3, heads 2 and 4.
constexpr const char* portal = "1 0 0 0 0 0 240 12 12\r\n"
                               "1 300 0 0 300 0 240 12 12\r\n"
                               "1 0 0 240 300 0 240 12 12\r\n"
                               "999\r\n";

class Picking : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        ASSERT_EQ(save_file(work_file(work_dir, "portal.jik"), portal), 0);
        window_.show();
        Player player;
        player.menu("TMainForm", "JikuDataReadMenu").file(work_file(work_dir, "portal.jik"));
        player.close("TJikuForm").gone("TJikuForm");
        player.play();
        paint();
    }
    void paint() { window_.picture().grab(); }
    void trigger(const char* item) { window_.findChild<QAction*>(item)->trigger(); }
    void send(QEvent::Type type, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        send_mouse(window_.picture(), type, at, button);
    }
    void click(QPoint at) {
        send(QEvent::MouseButtonPress, at);
        send(QEvent::MouseButtonRelease, at);
    }
    QPoint pixel_of(int node) {
        int px = 0;
        int py = 0;
        to_screen(window_.picture().area(), model.node[node].X, model.node[node].Y, px, py);
        return {px, py};
    }
    std::string flags() {
        std::string text;
        for (int i = 0; i < model.N_Node; ++i) {
            text += std::to_string(model.node[i].flag) + (i + 1 < model.N_Node ? " " : "");
        }
        return text;
    }
    QString status() { return window_.findChild<QLabel*>("PickLabel")->text(); }
    TNodeKensakuForm& search() { return *window_.findChild<TNodeKensakuForm*>(); }
    void level(const char* box, int at) { control<QComboBox>(search(), box)->setCurrentIndex(at); }
    // Presses the select-all button and answers its question.
    void select_all(const char* question, const char* answer) {
        answer_next([=](QDialog& dialog) {
            EXPECT_EQ(static_cast<QMessageBox&>(dialog).text(), question);
            press_word(dialog, answer);
        });
        press(search(), "ZenSentakuButton");
    }
    // 節点データ入力, closed again as it is.
    void enter_data() {
        Player player;
        player.menu("TMainForm", "SetutenDataMenu").click("TSelNodeForm", "OKButton");
        player.gone("TSelNodeForm").play();
    }

    TMainForm window_{session};
};

TEST_F(Picking, SavesTheInputOfTheCommandLine) {
    trigger("KousokuSetutenMenu");
    EXPECT_TRUE(search().isVisible());
    click(pixel_of(0));
    click(pixel_of(2));
    enter_data();
    EXPECT_FALSE(search().isVisible());
    EXPECT_FALSE(window_.findChild<QAction*>("FrameSlvSaveMenu")->isEnabled()) << "no load yet";
    trigger("KajyuSetutenMenu");
    click(pixel_of(1));
    click(pixel_of(3));
    enter_data();
    Player player;
    player.menu("TMainForm", "FrameSlvSaveMenu").file(work_file(work_dir, "window.bon"));
    player.menu("TMainForm", "HoneSaveMenu").file(work_file(work_dir, "window.ydu"));
    player.step("saved", [this] { return fs::exists(work_file(work_dir, "window.ydu")); });
    player.play();
    EXPECT_TRUE(is_unsaved(session.work)) << "solver input cannot be read back";
    for (const char* ending : {".bon", ".ydu"}) {
        const QString output = QString("core") + ending;
        QProcess convert;
        convert.setWorkingDirectory(QString::fromStdString(work_dir.string()));
        convert.start(KIGUMI_PROGRAM, {"convert", "portal.jik", "-o", output, "--fix", "bottom",
                                       "--load", "top:0,0,-200"});
        ASSERT_TRUE(convert.waitForFinished());
        ASSERT_EQ(convert.exitCode(), 0);
        EXPECT_EQ(read_file(work_file(work_dir, std::string("window") + ending)),
                  read_file(work_file(work_dir, std::string("core") + ending)));
    }
}

TEST_F(Picking, EditedTablesAreOutOfReach) {
    model.node[0].flag = role_fixed;
    model.node[1].flag = role_loaded;
    enter_data();
    put_fix(model, 0, 0, 0, 1);
    for (const char* mode : {"KousokuSetutenMenu", "KajyuSetutenMenu"}) {
        trigger(mode);
        click(pixel_of(0));
        click(pixel_of(2));
        EXPECT_TRUE(status().contains("節点データ入力")) << status().toStdString();
        EXPECT_FALSE(is_enabled(search(), "ZenSentakuButton"));
    }
    EXPECT_EQ(flags(), "1 2 0 0");
    enter_data();
    EXPECT_EQ(model.fix[0].ix, 0) << "kept, not made anew";
}

TEST_F(Picking, OnlyOneLeftPressPicks) {
    trigger("KousokuSetutenMenu");
    const QPoint at = pixel_of(0);
    const auto press_all = [&](std::vector<Qt::MouseButton> buttons) {
        for (const Qt::MouseButton button : buttons) {
            send(QEvent::MouseButtonPress, at, button);
        }
        send(QEvent::MouseButtonRelease, at, buttons.back());
    };
    press_all({Qt::RightButton});
    press_all({Qt::LeftButton, Qt::LeftButton});
    press_all({Qt::LeftButton, Qt::RightButton});
    EXPECT_EQ(flags(), "0 0 0 0");
    press_all({Qt::LeftButton});
    EXPECT_EQ(flags(), "1 0 0 0");
    send(QEvent::MouseMove, at, Qt::NoButton);
    EXPECT_TRUE(status().contains("X00Y00Z00 固定節点")) << status().toStdString();
    EXPECT_TRUE(is_unsaved(session.work));
    window_.findChild<NodePicking*>()->stop();
    press_all({Qt::LeftButton});
    EXPECT_EQ(flags(), "1 0 0 0") << "no mode, no picking";
}

TEST_F(Picking, EscEndsItFromEveryWindow) {
    QWidget* const places[] = {&window_, &window_.picture(), &search(),
                               control<QComboBox>(search(), "ZToComboBox")};
    for (QWidget* place : places) {
        trigger("KajyuSetutenMenu");
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(place, &escape);
        EXPECT_EQ(window_.findChild<NodePicking*>()->mode(), PickMode::none)
            << place->objectName().toStdString();
        EXPECT_FALSE(search().isVisible());
        EXPECT_TRUE(window_.isVisible());
    }
}

TEST_F(Picking, ReachIsStrictlyLessThanTheRadius) {
    trigger("KousokuSetutenMenu");
    const QPoint at = pixel_of(2);
    const PlanePoint point = to_plane(window_.picture().area(), at.x(), at.y());
    const struct {
        float distance;    // of node 3 from the pressed point, plane units
        float radius;      // 0: exactly the distance
        const char* flags; // after the press
    } cases[] = {{9.99f, 10.0f, "0 0 1 0"},
                 {10.0f, 0.0f, "0 0 0 0"},
                 {10.01f, 10.0f, "0 0 0 0"},
                 {0.0f, 1000.0f, "1 0 0 0"}};
    for (const auto& [distance, radius, after] : cases) {
        clear_roles(model);
        session.work.history.start(project);
        // Nothing is painted in between, so the projected point stays where it is put.
        PlanePoint& shown = window_.findChild<NodePicking*>()->shown.node[2];
        shown = {point.X, point.Y + distance};
        model.snap_radius = radius > 0.0f ? radius : shown.Y - point.Y;
        click(at);
        EXPECT_EQ(flags(), after) << distance;
        if (flags() == "0 0 0 0") {
            expect_message("節点が見つかりません");
        }
    }
}

TEST_F(Picking, ZoomedPictureIsPickedAsShown) {
    trigger("KousokuSetutenMenu");
    const QPoint before = pixel_of(1);
    turn_wheel(window_.picture(), pixel_of(3), 1200);
    paint();
    EXPECT_NE(pixel_of(1), before);
    click(before);
    expect_message("節点が見つかりません");
    click(pixel_of(3));
    EXPECT_EQ(flags(), "0 0 0 1");
}

TEST_F(Picking, WholeLevelsAreMarkedAfterTheQuestion) {
    const char* const fix_question = "青丸を固定節点にしますか?";
    const char* const load_question = "青丸を荷重節点にしますか?";
    model.node[2].flag = role_loaded;
    trigger("KousokuSetutenMenu");
    EXPECT_EQ(flags(), "0 0 2 0") << "nothing is found at first";
    level("ZToComboBox", 0);
    EXPECT_EQ(flags(), "99 0 99 0");
    EXPECT_EQ(label_text(search(), "CountLabel"), "青丸 2 個");
    select_all(fix_question, "キャンセル");
    EXPECT_EQ(flags(), "99 0 99 0");
    search().hide();
    EXPECT_EQ(flags(), "0 0 2 0") << "hiding loses nothing";
    trigger("KousokuSetutenMenu");
    EXPECT_EQ(control<QComboBox>(search(), "ZToComboBox")->currentIndex(), 1);
    level("ZToComboBox", 0);
    select_all(fix_question, "はい");
    EXPECT_EQ(flags(), "1 0 1 0");
    EXPECT_EQ(label_text(search(), "CountLabel").find("青丸 0 個"), 0u);
    trigger("KajyuSetutenMenu");
    level("XToComboBox", 0);
    level("XFromComboBox", 1); // drags the other end along
    level("ZFromComboBox", 1);
    select_all(load_question, "はい");
    EXPECT_EQ(flags(), "1 0 1 2");
    select_all(load_question, "いいえ");
    EXPECT_EQ(flags(), "0 0 0 0") << "no makes every found node plain";
    press(search(), "CloseButton");
    EXPECT_EQ(window_.findChild<NodePicking*>()->mode(), PickMode::none);
    EXPECT_FALSE(control<QTimer>(window_, "Timer1")->isActive());
}

TEST_F(Picking, LeavingAsksAboutRolesThatNoFileHolds) {
    trigger("KousokuSetutenMenu");
    click(pixel_of(0));
    Player player;
    player.menu("TMainForm", "SinkiMenu").answer("キャンセル");
    player.step("still there", [this] { return model.N_Beam > 0; });
    player.step("pick a load", [&] {
        trigger("KajyuSetutenMenu");
        click(pixel_of(1));
        return true;
    });
    player.menu("TMainForm", "SetutenDataMenu").click("TSelNodeForm", "OKButton");
    player.gone("TSelNodeForm").menu("TMainForm", "SinkiMenu").answer("保存する");
    player.file(work_file(work_dir, "kept.bon"));
    player.step("left", [this] { return model.N_Beam == 0; });
    player.play();
    EXPECT_TRUE(fs::exists(work_file(work_dir, "kept.bon")));
}

} // namespace

} // namespace kigumi::test
