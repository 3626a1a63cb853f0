// Undo and redo by the keys of every window: the bytes of the project before, and those after.
#include "draw/projection.h"
#include "generate/generate.h"
#include "model/roles.h"
#include "player.h"
#include "project/accept.h"
#include "ui/data/node_kensaku_form.h"
#include "ui/data/record_grid.h"
#include "ui/data/sel_beam_form.h"
#include "ui/data/sel_node_form.h"
#include "ui/frame/zahyou_idou_form.h"
#include "ui/kit/undo_menu.h"
#include "ui/main/main_form.h"
#include "ui/sketch/tegaki_form.h"

#include <QMessageBox>

namespace kigumi::test {

namespace {

class Undo : public UiTest {
  protected:
    // The frame of 2 x 1 cells.
    void make_frame() {
        param.NX = 2;
        param.NY = 1;
        ASSERT_EQ(check_param(param, {0, 0, 0}), 0);
        ASSERT_EQ(make_unit(model, param, solids), 0);
        ASSERT_EQ(accept_model(project), 0);
        session.work.history.start(project);
    }
    // What the project is now, to be compared by its bytes.
    History present() const {
        History now;
        now.start(project);
        return now;
    }
    // Has the key run its action in this window; the text that the action had.
    static std::string press_key(QWidget& window, const char* key) {
        for (QAction* action : window.actions()) {
            if (action->shortcuts().contains(QKeySequence(key))) {
                const std::string text = action->text().toStdString();
                EXPECT_TRUE(action->isEnabled()) << text;
                action->trigger();
                return text;
            }
        }
        return "(no such key)";
    }
    static bool is_open(const QWidget& window, const char* item) {
        return window.findChild<QAction*>(item)->isEnabled();
    }
    // Runs a command in a window; undo and redo give the bytes before and after.
    void expect_step(QWidget& window, const std::string& name,
                     const std::function<void()>& command) {
        SCOPED_TRACE(name);
        const History before = present();
        command();
        const History after = present();
        ASSERT_TRUE(before.differs(project));
        EXPECT_EQ(press_key(window, "Ctrl+Z"), "元に戻す: " + name + "(&U)");
        EXPECT_FALSE(before.differs(project));
        EXPECT_EQ(press_key(window, "Ctrl+Y"), "やり直し: " + name + "(&R)");
        EXPECT_FALSE(after.differs(project));
        press_key(window, "Ctrl+Z");
        press_key(window, "Ctrl+Shift+Z");
        EXPECT_FALSE(after.differs(project));
    }
    static void answer_ok() {
        answer_next([](QDialog& dialog) { press(dialog, "OKButton"); });
    }
};

TEST_F(Undo, SupportsAndLoads) {
    make_frame();
    ASSERT_EQ(put_fix(model, 0, 1, 1, 1), 0);
    session.work.history.start(project);
    TSelNodeForm form(session, nullptr);
    EXPECT_FALSE(is_open(form, "UndoMenu"));
    const auto rows = [&](const char* name) { return control<RecordGrid>(form, name)->rowCount(); };
    control<RecordGrid>(form, "ZenStringGrid")->choose(3);
    expect_step(form, "固定節点の追加", [&] {
        answer_ok();
        press(form, "AddFixSpeedButton");
    });
    EXPECT_EQ(rows("FixStringGrid"), 2);
    control<RecordGrid>(form, "ZenStringGrid")->choose(5);
    expect_step(form, "荷重の追加", [&] {
        answer_ok();
        press(form, "AddLoadSpeedButton");
    });
    EXPECT_EQ(project.stage, Stage::loaded);
    expect_step(form, "荷重の変更", [&] {
        answer_next([](QDialog& dialog) {
            type(dialog, "ZloadEdit", "-321.5");
            press(dialog, "DouButton");
            press(dialog, "OKButton");
        });
        press(form, "ModLoadSpeedButton");
    });
    expect_step(form, "荷重の削除", [&] {
        answer_ok();
        press(form, "DelLoadSpeedButton");
    });
    EXPECT_EQ(rows("LoadStringGrid"), 0);
    press_key(form, "Ctrl+Z");
    EXPECT_EQ(rows("LoadStringGrid"), 1) << "the grids follow";
    EXPECT_EQ(text_in(form, "LoadEdit"), "1");
    const History now = present();
    answer_next([](QDialog& dialog) {
        type(dialog, "ZloadEdit", "-9");
        press(dialog, "DouButton");
        press(dialog, "CancelButton");
    });
    press(form, "ModLoadSpeedButton");
    EXPECT_FALSE(now.differs(project)) << "cancelled";
    EXPECT_TRUE(is_open(form, "RedoMenu")) << "nothing was done since";
}

TEST_F(Undo, SectionsMaterialsAndShift) {
    make_frame();
    TSelBeamForm form(session, nullptr);
    const auto cell = [&](const char* grid, int column) {
        return control<RecordGrid>(form, grid)->item(0, column)->text().toStdString();
    };
    const std::string width = cell("SizeStringGrid", 1);
    expect_step(form, "断面の変更", [&] {
        answer_next([](QDialog& dialog) {
            type(dialog, "HabaEdit", "13.5");
            press(dialog, "OKButton");
        });
        press(form, "HabahenSpeedButton");
    });
    expect_step(form, "材料の変更", [&] {
        answer_next([](QDialog& dialog) {
            type(dialog, "YoungEdit", "70000");
            press(dialog, "OKButton");
        });
        press(form, "MathenSpeedButton");
    });
    press_key(form, "Ctrl+Z");
    press_key(form, "Ctrl+Z");
    EXPECT_EQ(cell("SizeStringGrid", 1), width);
    EXPECT_FALSE(is_open(form, "UndoMenu"));
    expect_step(form, "座標移動", [&] {
        TZahyouIdouForm shift(session);
        type(shift, "DxEdit", "12.5");
        press(shift, "OKButton");
    });
}

TEST_F(Undo, PickedAndSearchedNodes) {
    make_frame();
    QMainWindow window;
    auto* picture = new PictureWidget;
    window.setCentralWidget(picture);
    NodePicking picking(session, &window, picture);
    picking.start(PickMode::load);
    auto& search = *window.findChild<TNodeKensakuForm*>();
    const History before = present();
    press(search, "KensakuButton");
    EXPECT_FALSE(before.differs(project)) << "a search is no change";
    expect_step(search, "荷重節点の指定", [&] {
        answer_next([](QDialog& dialog) { press_word(dialog, "はい"); });
        press(search, "ZenSentakuButton");
    });
    press(search, "KensakuButton");
    press_key(search, "Ctrl+Z");
    EXPECT_FALSE(before.differs(project));
    EXPECT_NE(label_text(search, "CountLabel").find("青丸 0 個"), std::string::npos);
    for (int i = 0; i < model.N_Node; ++i) {
        ASSERT_EQ(model.node[i].flag, role_plain) << "no hit is left";
    }
    picking.stop();
}

// The steps of a sketch, and none behind its window.
TEST_F(Undo, TheSketchStopsAtItsOpening) {
    change(session, "座標移動", [](Project& p) {
        p.shift.dx = 1.0f;
        return 0;
    });
    TTegakiForm form(session, nullptr);
    form.resize(1000, 740);
    form.show();
    QApplication::processEvents();
    EXPECT_FALSE(is_open(form, "UndoMenu"));
    const auto click = [&](QPoint at) {
        send_mouse(form.sheet(), QEvent::MouseButtonPress, at);
        send_mouse(form.sheet(), QEvent::MouseButtonRelease, at);
    };
    const History before = present();
    click({100, 300});
    EXPECT_TRUE(before.differs(project)) << "the first end";
    EXPECT_EQ(press_key(form, "Ctrl+Z"), "元に戻す(&U)");
    EXPECT_FALSE(before.differs(project)) << "given up, not taken back";
    expect_step(form, "部材の作図", [&] {
        click({100, 300});
        click({300, 300});
    });
    const auto type_cell = [&](const char* text) {
        answer_next([text](QDialog& dialog) {
            control<QTableWidget>(dialog, "SetutenStringGrid")->item(1, 3)->setText(text);
            EXPECT_EQ(press_key(dialog, "Ctrl+Z"), "元に戻す: 節点の座標(&U)");
            EXPECT_EQ(control<QTableWidget>(dialog, "SetutenStringGrid")->item(1, 3)->text(), "");
            press_key(dialog, "Ctrl+Y");
            press(dialog, "OKButton");
        });
        form.findChild<QAction*>("SetutenHyouMenu")->trigger();
    };
    expect_step(form, "節点の座標", [&] { type_cell("250.25"); });
    expect_step(form, "部材の削除", [&] {
        form.findChild<QAction*>("BuzaiSakujyoMenu")->trigger();
        send_mouse(form.sheet(), QEvent::MouseButtonPress, {200, 280});
        send_mouse(form.sheet(), QEvent::MouseMove, {200, 320});
        send_mouse(form.sheet(), QEvent::MouseButtonRelease, {200, 320});
    });
    while (is_open(form, "UndoMenu")) {
        press_key(form, "Ctrl+Z");
    }
    EXPECT_FALSE(before.differs(project));
    EXPECT_TRUE(session.work.history.can_undo()) << "the step before the window is still there";
    EXPECT_EQ(session.work.history.undo_name(), "座標移動");
}

TEST_F(Undo, GenerationGivesTheModelBeforeAndCancelChangesNothing) {
    TMainForm window(session);
    window.show();
    const History before = present();
    Player cancelled;
    cancelled.menu("TMainForm", "KihonMenu").choose("TKihonForm", "KaisouGroup", 1);
    cancelled.click("TKihonForm", "CancelButton").gone("TKihonUnitForm").play();
    EXPECT_FALSE(before.differs(project)) << "cancelled";
    expect_step(window, "骨組の生成", [] {
        Player player;
        player.menu("TMainForm", "KihonMenu").choose("TKihonForm", "HashiraGroup", 1);
        player.choose("TKihonForm", "KaisouGroup", 0).choose("TKihonForm", "YaneGroup", 0);
        player.click("TKihonForm", "OKButton").close("TKihonUnitForm").gone("TKihonUnitForm");
        player.play();
    });
    EXPECT_TRUE(is_open(window, "SetutenDataMenu"));
    press_key(window, "Ctrl+Z");
    EXPECT_FALSE(is_open(window, "SetutenDataMenu")) << "the commands follow";
    EXPECT_TRUE(is_open(window, "KihonMenu"));
}

} // namespace

} // namespace kigumi::test
