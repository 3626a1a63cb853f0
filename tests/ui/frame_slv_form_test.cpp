// The results window, driven on result files of its own.
#include "ui/result/frame_slv_form.h"

#include "analysis/result_input.h"
#include "analysis/solver_input.h"
#include "model/members.h"
#include "model/roles.h"
#include "model/sections.h"
#include "player.h"
#include "results/selection.h"
#include "results_support.h"
#include "solid/solid.h"
#include "ui/kit/command_flags.h"
#include "ui/kit/folder_lock.h"
#include "ui/main/main_form.h"
#include "ui/result/kekka_ichiran_form.h"

#include <QMessageBox>
#include <QStatusBar>

namespace kigumi::test {

namespace {

// A row of four nodes along x, 100 cm apart; the member of the largest force (3) is row 0.
class ResultsWindow : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        view = View{};
        ASSERT_EQ(save_file(work_file(work_dir, "frameslv.zlv"), "1 0.0 1 0.0 1 0.0"), 0);
        ASSERT_EQ(save_file(work_file(work_dir, "frameslv.lst"), listing_of_row(4)), 0);
        ASSERT_EQ(save_file(work_file(work_dir, "frameslv.dsp"), displacements_of_row(4)), 0);
    }
    static QAction* item(const TFrameSlvForm& window, const char* name) {
        return window.findChild<QAction*>(name);
    }
    // The mode, and the items of the modes that bear a check mark.
    static std::string modes(const TFrameSlvForm& window) {
        std::string text = std::to_string(window.shown().mode);
        for (const char* name : {"JikuryokuMenu", "FutosaMenu", "LevelMenu", "WireMenu",
                                 "MarukakuMenu", "Heni1Menu", "Heni5Menu", "Heni10Menu"}) {
            text += item(window, name)->isChecked() ? std::string(" ") + name : "";
        }
        return text;
    }
    // Where the middle of a member is painted.
    QPoint middle(TFrameSlvForm& window, int row) {
        window.picture().grab();
        const Stress& s = result.stress[row];
        const PlanePoint at = Projector(30.0f, 30.0f)(0.5f * (s.xi + s.xj), s.yi, s.zi);
        int px = 0;
        int py = 0;
        to_screen(window.picture().area(), at.X, at.Y, px, py);
        return {px, py};
    }
    static void click(TFrameSlvForm& window, QPoint at, Qt::KeyboardModifiers keys = {}) {
        window.picture().grab();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            send_mouse(window.picture(), type, at, Qt::LeftButton, keys);
        }
    }
};

TEST_F(ResultsWindow, EachItemSelectsItsMode) {
    TFrameSlvForm window(session);
    ASSERT_TRUE(window.valid());
    EXPECT_EQ(modes(window), "3 JikuryokuMenu");
    for (const auto& [name, mode] : {std::pair{"FutosaMenu", "5 FutosaMenu"},
                                     {"WireMenu", "2 WireMenu"},
                                     {"Heni10Menu", "9 Heni10Menu"},
                                     {"Heni1Menu", "9 Heni1Menu"},
                                     {"JikuryokuMenu", "3 JikuryokuMenu"},
                                     {"JikuryokuMenu", "3 JikuryokuMenu"}}) {
        item(window, name)->trigger();
        EXPECT_EQ(modes(window), mode);
    }
    EXPECT_TRUE(item(window, "HanreiMenu")->isChecked());
    item(window, "BuzaiBangouMenu")->trigger();
    EXPECT_EQ(window.shown().label[label_member_numbers], 1);
    EXPECT_FALSE(item(window, "SetutenMeishouMenu")->isChecked());
}

TEST_F(ResultsWindow, ABrokenDisplacementLeavesThePictureAsItWas) {
    TFrameSlvForm window(session);
    item(window, "Heni5Menu")->trigger();
    result.disp[0].old_no = 99;
    item(window, "Heni10Menu")->trigger();
    expect_message("部材の検索に失敗しました");
    EXPECT_EQ(modes(window), "9 Heni5Menu");
}

TEST_F(ResultsWindow, BandIsTakenOnlyOfNumbers) {
    TFrameSlvForm window(session);
    const auto answer = [&](const char* high, const char* low) {
        answer_next([=](QDialog& dialog) {
            type(dialog, "HighPercentEdit", high);
            type(dialog, "LowPercentEdit", low);
            press(dialog, "OKButton");
            press(dialog, "CancelButton");
        });
        item(window, "LevelMenu")->trigger();
    };
    answer("八十", "20");
    expect_message("上限値: 「八十」は数値ではありません");
    answer("80", "");
    expect_message("下限値: 「」は数値ではありません");
    EXPECT_EQ(modes(window), "3 JikuryokuMenu");
    answer("20", "20.5");
    EXPECT_EQ(modes(window), "4 LevelMenu");
    EXPECT_FLOAT_EQ(window.shown().upper, 20.0f);
    answer("８０", "20.5");
    EXPECT_EQ(modes(window), "4 LevelMenu");
    EXPECT_FLOAT_EQ(window.shown().upper, 80.0f);
    EXPECT_FLOAT_EQ(window.shown().lower, 20.5f);
}

TEST_F(ResultsWindow, AFailedReadingShowsNothingOfTheRunBefore) {
    {
        TFrameSlvForm good(session);
        select_results(result, std::vector<int>{0});
    }
    ASSERT_EQ(save_file(work_file(work_dir, "frameslv.lst"), "4 1 1"), 0);
    TFrameSlvForm window(session);
    expect_message("ファイルframeslv.lstの読み込みに失敗しました");
    EXPECT_EQ(label_text(window, "StatusLabel"), "ファイルframeslv.lstの読み込みに失敗しました");
    EXPECT_EQ(label_text(window, "FactsLabel"), "");
    EXPECT_TRUE(window.picture().segments()->segments().empty());
    EXPECT_EQ(result.Nken_Stress, 0);
    for (const QAction* each : window.findChildren<QAction*>()) {
        const QString name = each->objectName();
        if (name.endsWith("Menu") && each->menu() == nullptr) {
            EXPECT_EQ(each->isEnabled(), name == "ModoruMenu") << name.toStdString();
        }
    }
    click(window, {10, 10});
}

TEST_F(ResultsWindow, AClickSelectsAndSpreadsToTheLists) {
    TFrameSlvForm window(session);
    window.resize(900, 700);
    int changes = 0;
    QObject::connect(&window, &TFrameSlvForm::selection_changed, &window, [&] { ++changes; });
    click(window, middle(window, 0));
    EXPECT_EQ(selected_rows(result), std::vector<int>{0});
    EXPECT_EQ(label_text(window, "StatusLabel"),
              "部材 3　N00003 － N00004　軸力 4.5 kgf（引張）　100.0 ％");
    click(window, middle(window, 2), Qt::ControlModifier);
    click(window, {5, 5}, Qt::ControlModifier);
    EXPECT_EQ(selected_rows(result), (std::vector<int>{0, 2}));
    item(window, "KekkaIchiranMenu")->trigger();
    auto* list = window.findChild<TKekkaIchiranForm*>();
    ASSERT_NE(list, nullptr);
    press(*list, "ZenSentakuButton");
    EXPECT_EQ(result.Nken_Stress, 3);
    EXPECT_TRUE(label_text(window, "FactsLabel").ends_with("選択 3"));
    list->close();
    item(window, "Heni10Menu")->trigger();
    click(window, middle(window, 1), Qt::ControlModifier);
    EXPECT_EQ(selected_rows(result), (std::vector<int>{0, 2}));
    click(window, {5, 5});
    EXPECT_TRUE(selected_rows(result).empty());
    EXPECT_FALSE(item(window, "SentakuKaijoMenu")->isEnabled());
    EXPECT_EQ(changes, 6);
}

TEST_F(ResultsWindow, BarsShowTheSelectionOrAllMembers) {
    TFrameSlvForm window(session);
    const auto confirm = [&](int item_no, const char* button) {
        answer_next([=](QDialog& dialog) {
            click_item(dialog, "BuzaiGroup", item_no);
            press(dialog, button);
        });
        item(window, "MarukakuMenu")->trigger();
    };
    confirm(0, "CancelButton");
    EXPECT_EQ(modes(window), "3 JikuryokuMenu");
    view.Theta = 80.0;
    confirm(0, "OKButton");
    EXPECT_EQ(modes(window), "6 MarukakuMenu");
    EXPECT_EQ(label_text(window, "StatusLabel"), "選択した部材がないので、角丸表示は空です");
    EXPECT_EQ(window.picture().segments()->segments().size(), 0u);
    EXPECT_DOUBLE_EQ(view.Theta, 20.0);
    select_results(result, std::vector<int>{1});
    window.show_selection();
    EXPECT_EQ(solids.n_trio, 24) << "the bars follow the selection";
    confirm(1, "OKButton");
    EXPECT_EQ(solids.n_trio, 3 * 24);
    EXPECT_EQ(selected_rows(result), std::vector<int>{1}) << "the selection is kept";
    press(*window.findChild<QDialog*>("MarukakuForm"), "AkaAoButton");
    EXPECT_EQ(modes(window), "3 JikuryokuMenu");
}

TEST_F(ResultsWindow, LeavingTheBarsAndAFailedBuildLeaveThePictureThatIsShown) {
    TFrameSlvForm window(session);
    const std::string at_first = label_text(window, "StatusLabel");
    const auto show_all = [&] {
        answer_next([](QDialog& dialog) {
            click_item(dialog, "BuzaiGroup", 1);
            press(dialog, "OKButton");
        });
        item(window, "MarukakuMenu")->trigger();
    };
    for (const char* mode : {"FutosaMenu", "WireMenu", "JikuryokuMenu", "Heni5Menu"}) {
        show_all();
        EXPECT_EQ(label_text(window, "StatusLabel"), "角丸表示　引張は丸、圧縮は角");
        item(window, mode)->trigger();
        EXPECT_EQ(label_text(window, "StatusLabel"), at_first) << mode;
    }
    show_all();
    fs::remove(work_file(work_dir, "TRIO.DAT"));
    fs::create_directory(work_file(work_dir, "TRIO.DAT"));
    show_all();
    EXPECT_EQ(take_messages().back(), "視点座標表示に失敗しました");
    EXPECT_EQ(modes(window), "3 JikuryokuMenu") << "no picture of bars that have gone";
    EXPECT_EQ(label_text(window, "StatusLabel"), at_first);
    fs::remove(work_file(work_dir, "TRIO.DAT"));
    press(*window.findChild<QDialog*>("MarukakuForm"), "MarukakuButton");
    EXPECT_EQ(modes(window), "6 MarukakuMenu");
    EXPECT_EQ(solids.n_trio, 3 * 24) << "built anew";
    EXPECT_GT(window.picture().segments()->segments().size(), 0u);
}

TEST_F(ResultsWindow, NamesThatDifferAreToldOnce) {
    TFrameSlvForm window(session);
    for (int i = 0; i < 4; ++i) {
        set_name(result.disp[i].name, "OTHER");
    }
    item(window, "Heni5Menu")->trigger();
    const auto messages = take_messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(std::count(messages[0].begin(), messages[0].end(), '\n'), 3);
    item(window, "Heni10Menu")->trigger();
    item(window, "Heni5Menu")->trigger();
    EXPECT_EQ(modes(window), "9 Heni5Menu");
}

TEST_F(ResultsWindow, LabelsComeFromTheInputOfTheseResultsOnly) {
    const auto put_input = [this](float pitch) {
        for (int i = 0; i < 3; ++i) {
            const float x = static_cast<float>(i + 1) * 100.0f;
            append_beam(model, {x, 0.0f, 0.0f}, {x + (i == 2 ? pitch : 100.0f), 0.0f, 0.0f}, 10.0f,
                        10.0f, kind_none, 2);
        }
        ASSERT_EQ(rebuild_tables(model), 0);
        append_fix(model, 1, 1, 1, 1);
        append_load(model, 4, 0.0f, 0.0f, -1.0f);
        ASSERT_EQ(save_honegumi(model, work_file(work_dir, "FRAMESLV.IN")), 0);
        reset_model(model);
    };
    put_input(100.0f);
    {
        TFrameSlvForm window(session);
        EXPECT_EQ(result.roles.fix.size(), 1u);
        ASSERT_EQ(result.roles.load.size(), 1u);
        EXPECT_EQ(result.roles.load[0].x, 400.0f);
        EXPECT_EQ(model.N_Fix + model.N_Load, 0) << "the model keeps its own";
        EXPECT_TRUE(label_text(window, "StatusLabel").starts_with("計算結果のフォルダ"));
    }
    put_input(101.0f); // as many nodes and members
    TFrameSlvForm window(session);
    EXPECT_EQ(result.roles.fix.size() + result.roles.load.size(), 0u);
    EXPECT_EQ(label_text(window, "StatusLabel"), roles_of_other_frame);
    item(window, "WireMenu")->trigger();
    EXPECT_TRUE(label_text(window, "StatusLabel").starts_with("計算結果のフォルダ"));
}

// The frame of the row, and the record that the results are of it.
TEST_F(ResultsWindow, ResultsOfAnEditedFrameAreMarkedAndAskedAbout) {
    for (int i = 0; i < 3; ++i) {
        const float x = static_cast<float>(i + 1) * 100.0f;
        append_beam(model, {x, 0.0f, 0.0f}, {x + 100.0f, 0.0f, 0.0f}, 10.0f, 10.0f, kind_none, 2);
    }
    ASSERT_EQ(rebuild_tables(model), 0);
    append_fix(model, 1, 1, 1, 1);
    append_load(model, 4, 0.0f, 0.0f, -1.0f);
    ASSERT_EQ(save_result_input(work_dir, {fingerprint(model), SelfWeight::no}), 0);
    project.stage = Stage::loaded;
    const auto facts = [](const TFrameSlvForm& window) { return label_text(window, "FactsLabel"); };
    {
        TFrameSlvForm window(session, nullptr, ResultsOf::this_model);
        EXPECT_TRUE(facts(window).starts_with("部材 3"));
        EXPECT_TRUE(command_flags(project, true).KekkaHyoujiMenu);
    }
    model.load[0].fz = -5000.0f;
    fs::remove(work_file(work_dir, "frameslv.dsp")); // the memory holds what is shown
    TFrameSlvForm window(session, nullptr, std::nullopt);
    ASSERT_TRUE(window.valid());
    EXPECT_TRUE(facts(window).starts_with("古い結果　部材 3"));
    EXPECT_TRUE(
        label_text(TKekkaIchiranForm(session, nullptr), "KekkaAgeLabel").starts_with("古い結果"));
    EXPECT_EQ(window.windowTitle(), "計算結果表示");
    window.show();
    const fs::path list = work_file(work_dir, "list.txt");
    for (const char* answer : {"いいえ", "はい"}) {
        bool asked = false;
        Player player;
        player.menu("TFrameSlvForm", "KekkaSaveMenu").file(list);
        player.step("question", [&asked, answer] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) {
                return false;
            }
            asked = box->text().startsWith("この結果は今の骨組");
            press_word(*box, answer);
            return true;
        });
        player.play();
        EXPECT_TRUE(asked) << answer;
        EXPECT_EQ(fs::exists(list), std::string_view(answer) == "はい");
    }
    model.load[0].fz = -1.0f; // taken back
    EXPECT_TRUE(facts(TFrameSlvForm(session, nullptr, std::nullopt)).starts_with("部材 3"));
}

// The last results, closed, and then another frame: they are not saved as its own.
TEST_F(ResultsWindow, TheMainWindowAsksBeforeItSavesResultsOfAnother) {
    ASSERT_EQ(save_result_input(work_dir, {{"0123456789abcdef", "fedcba9876543210"}}), 0);
    TMainForm main(session);
    main.show();
    const auto save = [&main] { return main.findChild<QAction*>("KekkaHozonMenu"); };
    Player last;
    last.menu("TMainForm", "SaigoKaisekiMenu").close("TFrameSlvForm").gone("TFrameSlvForm").play();
    EXPECT_TRUE(save()->isEnabled());
    make_post(model);
    for (const bool known : {true, false}) {
        QString asked;
        answer_next([&asked](QDialog& dialog) {
            asked = static_cast<QMessageBox&>(dialog).text();
            press_word(dialog, "いいえ");
        });
        save()->trigger(); // returns without the file dialog
        EXPECT_TRUE(asked.startsWith(known ? "この結果は今の骨組" : "どの骨組")) << known;
        fs::remove(work_file(work_dir, "frameslv.fgp"));
    }
}

TEST_F(ResultsWindow, ASecondProgramInTheFolderIsTold) {
    QStatusBar first;
    QStatusBar second;
    auto own = std::make_unique<FolderLock>(work_dir, first);
    EXPECT_FALSE(own->shared());
    EXPECT_TRUE(FolderLock(work_dir, second).shared());
    EXPECT_EQ(label_text(second, "FolderLabel"), "別の kigumi がこの作業フォルダを使っています");
    own.reset();
    EXPECT_FALSE(FolderLock(work_dir, first).shared());
}

TEST_F(ResultsWindow, SavesListDrawingAndPictures) {
    TFrameSlvForm window(session);
    window.show();
    Player player;
    player.menu("TFrameSlvForm", "KekkaSaveMenu").file(work_file(work_dir, "list.txt"));
    player.menu("TFrameSlvForm", "DxfSaveMenu").file(work_file(work_dir, "a.dxf"));
    player.click("TDxfWidthForm", "OKButton").gone("TDxfWidthForm");
    for (const char* name : {"a.png", "a.pdf"}) {
        player.menu("TFrameSlvForm", "GazouSaveMenu").file(work_file(work_dir, name));
        player.step(name, [this, name] { return fs::exists(work_file(work_dir, name)); });
    }
    player.play();
    expect_message("DXFファイルを作製しました");
    EXPECT_TRUE(read_file(work_file(work_dir, "list.txt"))
                    ->starts_with(work_file(work_dir, "list.txt").string()));
    EXPECT_TRUE(read_file(work_file(work_dir, "a.pdf"))->starts_with("%PDF"));
}

} // namespace

} // namespace kigumi::test
