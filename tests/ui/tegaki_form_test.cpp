// The hand-drawn editor, driven with the mouse on its sheet.
#include "ui/sketch/tegaki_form.h"

#include "files/tegaki.h"
#include "model/model.h"
#include "player.h"
#include "ui/picture/isome_form.h"
#include "ui/sketch/beam_form.h"
#include "ui/sketch/node_form.h"
#include "ui/sketch/node_table_form.h"

#include <QClipboard>
#include <QMessageBox>
#include <QTableWidget>

namespace kigumi::test {

namespace {

class Editor : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        open();
    }
    void TearDown() override {
        form_.reset();
        UiTest::TearDown();
    }
    void open() {
        form_ = std::make_unique<TTegakiForm>(session, nullptr);
        form_->resize(1000, 740);
        form_->show();
        look();
    }
    // Has everything painted; what the sheet shows.
    QImage look() {
        QApplication::processEvents();
        return form_->sheet().grab().toImage();
    }
    void send(QEvent::Type type, QPoint at) { send_mouse(form_->sheet(), type, at); }
    void drag(QPoint from, QPoint to) {
        look();
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, to);
        send(QEvent::MouseButtonRelease, to);
    }
    void click(QPoint at) { drag(at, at); }
    void draw(QPoint from, QPoint to) {
        click(from);
        click(to);
    }
    QAction* action(const char* name) { return form_->findChild<QAction*>(name); }
    void menu(const char* name) {
        ASSERT_TRUE(action(name)->isEnabled()) << name;
        action(name)->trigger();
    }
    std::string label(const char* name) { return label_text(*form_, name); }
    // Answers the next modal dialog of this class, whenever it opens.
    template <class Dialog> static void answer(std::function<void(Dialog&)> how) {
        QTimer::singleShot(1, qApp, [how = std::move(how)] {
            if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
                how(*dialog);
            } else {
                answer<Dialog>(how);
            }
        });
    }
    // Enters a place in the node dialog that a click there opens.
    void enter_node(QPoint at, const char* x, const char* y, const char* z) {
        answer<TNodeForm>([=](TNodeForm& dialog) {
            type(dialog, "XEdit", x);
            type(dialog, "YEdit", y);
            type(dialog, "ZEdit", z);
            press(dialog, "OKButton");
        });
        click(at);
    }
    static void answer_file(const fs::path& path) {
        answer<QFileDialog>([path](QFileDialog& dialog) { choose_file(dialog, path); });
    }
    static void answer_box(const char* text) {
        answer<QMessageBox>([=](QMessageBox& box) { press_word(box, text); });
    }
    bool is_marked() { return label("FileLabel").ends_with('*'); }
    std::string saved_as(const char* name) {
        answer_file(work_file(work_dir, name));
        menu("TegakiSaveMenu");
        return read_file(work_file(work_dir, name)).value_or("(none)");
    }
    std::string open_items() {
        std::string open;
        for (const char* name :
             {"TegakiSaveMenu", "DxfMenu", "Win3DMenu", "WireMenu", "JikuMenu", "ShitenMenu"}) {
            open += action(name)->isEnabled() ? std::string(name) + " " : "";
        }
        return open;
    }
    // Three members in a row, all finished: nodes at (100,600) (300,600) (300,400) (500,400).
    void draw_finished() {
        draw({100, 600}, {300, 600});
        draw({300, 600}, {300, 400});
        draw({300, 400}, {500, 400});
        menu("SetutenDataMenu");
        enter_node({100, 600}, "0", "0", "0");
        enter_node({300, 600}, "200", "0", "0");
        enter_node({300, 400}, "200", "0", "150");
        enter_node({500, 400}, "400", "0", "150");
        menu("BuzaiDataMenu");
        answer<TBeamForm>([](TBeamForm& dialog) { press(dialog, "AllButton"); });
        drag({200, 590}, {200, 610});
    }

    std::unique_ptr<TTegakiForm> form_;
};

TEST_F(Editor, ASketchIsDrawnFilledInSavedAndReadBack) {
    EXPECT_EQ(open_items(), "");
    click({100, 600});
    EXPECT_NE(label("ModeLabel").find("Esc"), std::string::npos);
    click({300, 600});
    EXPECT_EQ(open_items(), "TegakiSaveMenu DxfMenu Win3DMenu ");
    draw({303, 603}, {300, 400});
    draw({300, 400}, {500, 400});
    EXPECT_EQ(label("MissingLabel"), "節点 4/4 未入力　部材 3/3 未入力");
    menu("Win3DMenu");
    EXPECT_EQ(take_messages().size(), 1u) << "tells what is missing";
    menu("SetutenDataMenu");
    click({600, 600});
    expect_message("節点が見つかりません");
    enter_node({100, 600}, "0", "-5.25", "0");
    answer<TNodeForm>([](TNodeForm& dialog) {
        EXPECT_EQ(text_in(dialog, "YEdit"), "     -5.2") << "the place entered last, rounded";
        type(dialog, "XEdit", "２００");
        press(dialog, "OKButton");
    });
    click({300, 600});
    EXPECT_FLOAT_EQ(model.node[1].y, -5.25f) << "what the box does not show is kept";
    EXPECT_FLOAT_EQ(model.beam[1].xs, 200.0f);
    enter_node({300, 400}, "200", "0", "150");
    answer<TNodeForm>([](TNodeForm& dialog) { press(dialog, "CancelButton"); });
    click({500, 400});
    EXPECT_EQ(label("MissingLabel"), "節点 1/4 未入力　部材 3/3 未入力");
    enter_node({500, 400}, "400", "0", "150");
    EXPECT_EQ(open_items(), "TegakiSaveMenu DxfMenu Win3DMenu WireMenu ");
    EXPECT_STREQ(model.node[3].id, "X99Y00Z99") << "named once all are known";
    menu("BuzaiDataMenu");
    drag({200, 500}, {250, 500});
    expect_message("該当する部材が見つからない");
    answer<TBeamForm>([this](TBeamForm& dialog) {
        type(dialog, "HabaEdit", "0");
        press(dialog, "OKButton");
        expect_message("巾の値に誤りがあります");
        type(dialog, "HabaEdit", "9");
        press(dialog, "OKButton");
    });
    drag({200, 590}, {200, 610});
    EXPECT_EQ(model.beam[0].flag, 2);
    EXPECT_EQ(model.beam[1].flag, 1);
    answer<TBeamForm>([](TBeamForm& dialog) {
        type(dialog, "AtumiEdit", "15");
        press(dialog, "AllButton");
    });
    drag({290, 500}, {310, 500});
    EXPECT_FLOAT_EQ(model.beam[0].haba, 12.0f);
    EXPECT_FLOAT_EQ(model.beam[0].atumi, 15.0f);
    EXPECT_EQ(label("MissingLabel"), "節点 4 入力済み　部材 3 入力済み");
    EXPECT_EQ(open_items(), "TegakiSaveMenu DxfMenu Win3DMenu WireMenu JikuMenu ShitenMenu ");

    const std::string bytes = saved_as("a.tgk");
    answer<TIsomeForm>([](TIsomeForm& dialog) { dialog.close(); });
    menu("WireMenu");
    look();
    EXPECT_FLOAT_EQ(model.node[0].X, 100.0f) << "a view keeps plane points of its own";
    EXPECT_EQ(saved_as("b.tgk"), bytes) << "saved during a view";
    menu("TegakiModosuMenu");
    EXPECT_FLOAT_EQ(model.node[0].X, 100.0f);
    EXPECT_EQ(saved_as("c.tgk"), bytes);
    answer_file(work_file(work_dir, "a.tgk"));
    menu("TegakiReadMenu");
    EXPECT_EQ(saved_as("d.tgk"), bytes) << "read back";
    EXPECT_EQ(label_text(*form_, "FileLabel"), "d.tgk");
}

TEST_F(Editor, BandIsExactUnderZoomAndResizeAndLeavesNoTrace) {
    draw({700, 100}, {800, 200});
    click({200, 500});
    // The band runs from the first end's pixel along a diagonal, and not one pixel further.
    const auto expect_band = [this](const char* when) {
        look();
        QPoint end;
        to_screen(form_->sheet().area(), model.node[2].X, model.node[2].Y, end.rx(), end.ry());
        for (int i = 0; i < 2; ++i) {
            end += QPoint(60, -60);
            send(QEvent::MouseMove, end);
            const QImage seen = look();
            EXPECT_EQ(seen.pixelColor(end), Qt::black) << when;
            EXPECT_EQ(seen.pixelColor(end - QPoint(30, -30)), Qt::black) << when;
            EXPECT_EQ(seen.pixelColor(end + QPoint(1, -1)), Qt::white) << when;
        }
    };
    expect_band("at first");
    turn_wheel(form_->sheet(), {200, 500}, 360);
    expect_band("zoomed");
    form_->resize(900, 640);
    expect_band("resized");
    const QPoint clicked(411, 307);
    click(clicked);
    QPoint drawn;
    to_screen(form_->sheet().area(), model.node[3].X, model.node[3].Y, drawn.rx(), drawn.ry());
    EXPECT_EQ(drawn, clicked);

    menu("UndoMenu");
    menu("ZentaiMenu");
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&form_->sheet(), &leave);
    const QImage before = look();
    click({200, 300});
    send(QEvent::MouseMove, {640, 20});
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&form_->sheet(), &escape);
    QApplication::sendEvent(&form_->sheet(), &leave);
    EXPECT_EQ(look(), before);
    EXPECT_EQ(model.N_Node, 2) << "the first node went, too";
}

TEST_F(Editor, UndoToTheEmptySheetAndRedoToTheSameBytes) {
    draw_finished();
    menu("BuzaiSakujyoMenu");
    drag({400, 390}, {400, 410});
    EXPECT_EQ(model.N_Beam, 2);
    EXPECT_EQ(model.N_Node, 3);
    const std::string bytes = saved_as("a.tgk");
    int steps = 0;
    for (; action("UndoMenu")->isEnabled(); ++steps) {
        menu("UndoMenu");
    }
    EXPECT_EQ(steps, 3 + 4 + 1 + 1);
    EXPECT_EQ(model.N_Node, 0);
    EXPECT_EQ(open_items(), "");
    while (action("RedoMenu")->isEnabled()) {
        menu("RedoMenu");
    }
    EXPECT_FALSE(is_marked()) << "the saved state is known again";
    EXPECT_EQ(saved_as("b.tgk"), bytes);
}

TEST_F(Editor, APressHeldWhileTheModeChangesDoesNothing) {
    draw({100, 600}, {300, 600});
    const auto change_in_drag = [this](const char* item, QPoint from, QPoint to) {
        look();
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, to);
        menu(item);
        send(QEvent::MouseButtonRelease, to);
        EXPECT_EQ(model.N_Beam, 1) << item;
        EXPECT_EQ(model.N_Node, 2) << item;
        EXPECT_FALSE(form_->sheet().sheet().band()) << item;
    };
    const QPoint above(200, 590);
    const QPoint below(200, 610);
    change_in_drag("BuzaiSakujyoMenu", above, below); // would delete
    change_in_drag("BuzaiDataMenu", above, below);    // would open a dialog
    change_in_drag("SetutenDataMenu", {100, 600}, {100, 600});
    change_in_drag("BuzaiShiteiMenu", {500, 500}, {500, 500}); // would begin a member
    click({500, 500});
    change_in_drag("BuzaiSakujyoMenu", {600, 500}, {600, 500}); // its first node goes, too
    QFocusEvent away(QEvent::FocusOut);
    send(QEvent::MouseButtonPress, above);
    QApplication::sendEvent(&form_->sheet(), &away);
    send(QEvent::MouseButtonRelease, below);
    EXPECT_EQ(model.N_Beam, 1);
    drag(above, below);
    EXPECT_EQ(model.N_Beam, 0) << "the next press acts again";
    menu("UndoMenu");
    EXPECT_EQ(model.N_Beam, 1);
    EXPECT_EQ(model.N_Node, 2);
}

TEST_F(Editor, AnUnsavedSketchIsOfferedForSavingOnEveryWayOut) {
    const fs::path kept = work_file(work_dir, "kept.tgk");
    for (const std::string item : {"ModoruMenu", "", "SinkiMenu", "TegakiReadMenu"}) {
        SCOPED_TRACE(item);
        const auto leave = [&] { item.empty() ? void(form_->close()) : menu(item.c_str()); };
        draw({100, 600}, {300, 600});
        answer_box("編集を続ける");
        leave();
        EXPECT_EQ(model.N_Beam, 1);
        EXPECT_TRUE(form_->isVisible());
        answer_box("このデータを保存する");
        answer_file(kept);
        if (item == "TegakiReadMenu") {
            QTimer::singleShot(1, qApp, [kept] { answer_file(kept); });
        }
        leave();
        EXPECT_TRUE(fs::remove(kept));
        EXPECT_FALSE(is_marked());
        form_.reset();
        reset_model(model);
        forget_old_node(sketch_places);
        document = Document{};
        open();
    }
}

TEST_F(Editor, AutosavedCopyIsOfferedAfterACrash) {
    draw({100, 600}, {300, 600});
    form_->autosave().tick();
    const fs::path copy = work_file(work_dir, "tegaki.autosave.tgk");
    ASSERT_TRUE(fs::exists(copy));
    const std::string bytes = read_file(copy).value_or("");
    click({400, 400}); // half-drawn: not part of the copy
    form_->autosave().note_change();
    form_->autosave().tick();
    EXPECT_EQ(read_file(copy), bytes);
    form_.reset(); // as if the program had ended here
    reset_model(model);
    forget_old_node(sketch_places);
    answer_box("あとで決める");
    open();
    draw({500, 500}, {600, 600});
    form_->autosave().tick();
    EXPECT_EQ(read_file(copy), bytes) << "a copy that was not decided on stays";
    EXPECT_TRUE(fs::exists(work_file(work_dir, "tegaki-2.autosave.tgk")));
    answer_box("このデータを保存しない");
    form_->close();
    EXPECT_FALSE(fs::exists(work_file(work_dir, "tegaki-2.autosave.tgk")));
    form_.reset();
    reset_model(model);
    answer_box("復元する");
    open();
    EXPECT_EQ(model.N_Beam, 1);
    EXPECT_TRUE(is_marked());
    EXPECT_EQ(saved_as("a.tgk"), bytes);
    EXPECT_FALSE(fs::exists(copy));
    // Beside a file, and offered when that is read.
    draw({300, 600}, {300, 400});
    form_->autosave().tick();
    form_.reset();
    reset_model(model);
    answer_box("あとで決める");
    open();
    answer_file(work_file(work_dir, "a.tgk"));
    answer_box("復元する");
    menu("TegakiReadMenu");
    EXPECT_EQ(model.N_Beam, 2);
    EXPECT_EQ(document.file, work_file(work_dir, "a.tgk"));
}

TEST_F(Editor, TheNewestFreeCopyOfAFileIsOffered) {
    const fs::path file = work_file(work_dir, "b.tgk");
    const fs::path first = work_file(work_dir, "b.autosave.tgk");
    const fs::path second = work_file(work_dir, "b-2.autosave.tgk");
    const fs::path lock = work_file(work_dir, "b-2.autosave.tgk.lock");
    const auto an_hour_ago = fs::file_time_type::clock::now() - std::chrono::hours(1);
    EXPECT_TRUE(find_autosave_of(work_dir, file).empty());
    ASSERT_EQ(save_file(first, "1"), 0);
    ASSERT_EQ(save_file(second, "2"), 0);
    fs::last_write_time(first, an_hour_ago);
    EXPECT_EQ(find_autosave_of(work_dir, file), second);
    const CopyLock kept = lock_copy(second);
    EXPECT_EQ(find_autosave_of(work_dir, file), first) << "another program draws on the newer";
    kept->unlock();
    ASSERT_EQ(save_file(lock, ""), 0);
    EXPECT_EQ(find_autosave_of(work_dir, file), first) << "perhaps just being locked";
    fs::last_write_time(lock, an_hour_ago);
    EXPECT_EQ(find_autosave_of(work_dir, file), second) << "a torn lock is nobody's";
}

TEST_F(Editor, ACopyIsNotOfferedWhileItsProgramRuns) {
    draw({100, 600}, {300, 600});
    const std::string bytes = saved_as("a.tgk");
    for (const char* name : {"tegaki.autosave.tgk", "a.autosave.tgk"}) {
        ASSERT_EQ(save_file(work_file(work_dir, name), bytes), 0);
    }
    {
        const CopyLock others[] = {lock_copy(work_file(work_dir, "tegaki.autosave.tgk")),
                                   lock_copy(work_file(work_dir, "a.autosave.tgk"))};
        ASSERT_EQ(find_autosave(work_dir), fs::path());
        answer_file(work_file(work_dir, "a.tgk"));
        menu("TegakiReadMenu"); // without a question
        draw({300, 600}, {300, 400});
        form_->autosave().tick();
        EXPECT_TRUE(fs::exists(work_file(work_dir, "a-2.autosave.tgk")));
        EXPECT_NE(find_autosave(work_dir), work_file(work_dir, "a-2.autosave.tgk"));
        EXPECT_EQ(read_file(work_file(work_dir, "a.autosave.tgk")), bytes);
    }
    EXPECT_NE(find_autosave(work_dir), fs::path()) << "now they are left over";
    form_->autosave().remove();
    EXPECT_FALSE(fs::exists(work_file(work_dir, "a-2.autosave.tgk.lock")));
}

TEST_F(Editor, PlacesArePastedIntoTheTableAsOneStep) {
    draw({100, 600}, {300, 600});
    draw({300, 600}, {300, 400});
    QApplication::clipboard()->setText("0\t0\t0\r\n200.5\t\t0\r\n200\t0\t1５0\r\n");
    answer<TNodeTableForm>([this](TNodeTableForm& dialog) {
        auto* grid = control<QTableWidget>(dialog, "SetutenStringGrid");
        grid->setCurrentCell(1, 2);
        press(dialog, "HaritukeButton");
        EXPECT_EQ(take_messages().size(), 1u) << "would go beyond the last node";
        EXPECT_EQ(model.node[1].flag, 1);
        grid->setCurrentCell(0, 2);
        press(dialog, "HaritukeButton");
        EXPECT_EQ(model.node[2].flag, 2);
        EXPECT_FLOAT_EQ(model.beam[1].zl, 150.0f);
        EXPECT_EQ(model.node[1].flag, 1) << "its y is not known yet";
        grid->item(1, 3)->setText("5");
        EXPECT_EQ(model.node[1].flag, 2);
        EXPECT_FLOAT_EQ(model.beam[1].xs, 200.5f);
        EXPECT_EQ(grid->item(1, 5)->text(), "入力済み");
        grid->item(0, 4)->setText("abc");
        expect_message("節点 1: 「abc」は数値ではありません");
        EXPECT_EQ(grid->item(0, 4)->text(), "0.0");
        dialog.accept();
    });
    menu("SetutenHyouMenu");
    EXPECT_STREQ(model.node[2].id, "X98Y00Z99");
    menu("UndoMenu");
    EXPECT_EQ(label("MissingLabel"), "節点 1/3 未入力　部材 2/2 未入力");
    menu("UndoMenu");
    EXPECT_EQ(label("MissingLabel"), "節点 3/3 未入力　部材 2/2 未入力");
}

} // namespace

} // namespace kigumi::test
