// The main window and the windows that it opens, played to saved files.
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/lookup.h"
#include "player.h"
#include "ui/document.h"
#include "ui/main_form.h"

#include <QStatusBar>
#include <QStatusTipEvent>

namespace kigumi::test {

namespace {

class Windows : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        document = Document{};
    }
    bool is_open(const TMainForm& window, const char* item) {
        return window.findChild<QAction*>(item)->isEnabled();
    }
    // 基本データ選択 with two storeys on type I columns, up to the shown frame.
    static void generate_frame(Player& player) {
        player.menu("TMainForm", "KihonMenu")
            .choose("TKihonForm", "HashiraGroup", 1)
            .choose("TKihonForm", "KaisouGroup", 1)
            .choose("TKihonForm", "YaneGroup", 2)
            .click("TKihonForm", "OKButton")
            .gone("TKihonForm");
    }
};

TEST_F(Windows, GeneratedFrameIsSavedAsFromTheCommandLine) {
    TMainForm window;
    window.show();
    Player player;
    generate_frame(player);
    player.menu("TKihonUnitForm", "ZenDataMenu")
        .click("TZahyouIdouForm", "OKButton")
        .file(work_file("window.jik"))
        .step("summary beside an open menu",
              [] {
                  auto* unit = qobject_cast<QMainWindow*>(Player::shown("TKihonUnitForm"));
                  QStatusTipEvent no_tip("");
                  QApplication::sendEvent(unit, &no_tip);
                  return unit->statusBar()->currentMessage().startsWith("節点 ");
              })
        .menu("TKihonUnitForm", "DxfSaveMenu")
        .file(work_file("window.dxf"))
        .click("TDxfWidthForm", "OKButton")
        .menu("TKihonUnitForm", "Win3dSaveMenu")
        .file(work_file("window.dat"))
        .menu("TKihonUnitForm", "ModoruMenu")
        .gone("TKihonUnitForm");
    player.play();
    EXPECT_EQ(take_messages(),
              (std::vector<std::string>{"軸ファイルを作製しました", "ＤＸＦファイルを作製しました",
                                        "Win3Dデータを保存しました"}));
    EXPECT_FALSE(is_open(window, "KihonMenu"));
    EXPECT_TRUE(is_open(window, "SetutenMeishouMenu"));
    EXPECT_FALSE(is_open(window, "KaisekiMenu"));
    EXPECT_TRUE(window.windowTitle().startsWith("window.jik - ")) << "saved work has no mark";
    EXPECT_EQ(find_model_fault(true), nullptr);

    set_default_param();
    param.N_Sou = 2;
    apply_yane_choice(2);
    ASSERT_EQ(check_param({1, 1, 2}), 0);
    ASSERT_EQ(make_unit(), 0);
    ASSERT_EQ(save_jiku_data(work_file("core.jik"), {}), 0);
    EXPECT_EQ(read_file(work_file("window.jik")), read_file(work_file("core.jik")));
}

TEST_F(Windows, ThreeModelsInARow) {
    TMainForm window;
    window.show();
    Player player;
    generate_frame(player);
    player.menu("TKihonUnitForm", "JikuSaveMenu").file(work_file("a.jik"));
    player.menu("TKihonUnitForm", "ModoruMenu").menu("TMainForm", "SinkiMenu");
    player.menu("TMainForm", "JikuDataReadMenu").file(work_file("a.jik")).close("TJikuForm");
    player.gone("TJikuForm").menu("TMainForm", "SinkiMenu");
    player.step("empty again", [&] { return model.N_Beam == 0 && is_open(window, "KihonMenu"); });
    generate_frame(player);
    player.menu("TKihonUnitForm", "ModoruMenu").gone("TKihonUnitForm");
    player.play();
    EXPECT_EQ(take_messages(), std::vector<std::string>{"軸ファイルを作製しました"});
    EXPECT_EQ(model.N_Beam, 2 * (768 + 96) + 136);
    EXPECT_EQ(find_model_fault(true), nullptr);
    EXPECT_TRUE(document.changed);
    document.changed = false;
}

TEST_F(Windows, CancelledBasicDataLeavesTheStart) {
    TMainForm window;
    window.show();
    Player player;
    player.menu("TMainForm", "KihonMenu")
        .click("TKihonForm", "CancelButton")
        .gone("TKihonUnitForm");
    player.menu("TMainForm", "JikuDataReadMenu").step("cancel", [] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog != nullptr) {
            dialog->reject();
        }
        return dialog != nullptr;
    });
    player.play();
    for (const char* item :
         {"KihonMenu", "TegakiMenu", "JikuDataReadMenu", "SaigoKaisekiMenu", "ExitMenu"}) {
        EXPECT_TRUE(is_open(window, item)) << item;
    }
    EXPECT_EQ(model.N_Beam, 0);
}

TEST_F(Windows, BrokenAxisDataGivesTheStartBack) {
    ASSERT_EQ(save_file(work_file("bad.jik"), "1 0 0 0 90 0 0 9 9\r\n7 1 2 3\r\n"), 0);
    TMainForm window;
    window.show();
    Player player;
    player.menu("TMainForm", "JikuDataReadMenu").file(work_file("bad.jik"));
    player.step("open again", [&] { return is_open(window, "JikuDataReadMenu"); });
    player.play();
    EXPECT_EQ(take_messages(), (std::vector<std::string>{"最初の文字は '1' or '2' or '3' or '999'",
                                                         "軸データ読みこみに失敗しました"}));
    EXPECT_EQ(model.N_Beam, 0);
}

TEST_F(Windows, UnsavedWorkIsAskedAbout) {
    TMainForm window;
    window.show();
    Player player;
    generate_frame(player);
    player.menu("TKihonUnitForm", "ModoruMenu").gone("TKihonUnitForm");
    player.menu("TMainForm", "SinkiMenu").answer("キャンセル");
    player.step("still there", [] { return model.N_Beam > 0; });
    player.close("TMainForm").answer("キャンセル").menu("TMainForm", "ExitMenu");
    player.answer("保存する").file(work_file("kept.jik")).gone("TMainForm");
    player.play();
    EXPECT_FALSE(document.changed);
    EXPECT_TRUE(fs::exists(work_file("kept.jik")));
    EXPECT_EQ(read_file(work_file("SPY.TXT"))->substr(0, 11), "Spy Start\r\n");
}

TEST_F(Windows, SearchWritesTheChosenMembersOnly) {
    TMainForm window;
    window.show();
    Player player;
    generate_frame(player);
    player.menu("TKihonUnitForm", "KensakuDataMenu").step("conditions", [] {
        QWidget* search = Player::shown("TKensakuForm");
        if (search == nullptr) {
            return false;
        }
        for (auto* box : search->findChildren<QAbstractButton*>()) {
            if (box->isCheckable()) {
                box->setChecked(box->objectName() == "Kind4CheckBox");
            }
        }
        return true;
    });
    player.click("TKensakuForm", "OKButton").file(work_file("some.jik")).gone("TKensakuForm");
    player.menu("TKihonUnitForm", "ModoruMenu").gone("TKihonUnitForm");
    player.play();
    take_messages();
    document.changed = false;
    const std::string text = read_file(work_file("some.jik")).value_or("");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 * 256 + 1);
    EXPECT_EQ(text.substr(0, 2), "1 ");
    EXPECT_EQ(text.substr(text.size() - 5), "999\r\n");
}

struct FlagCase {
    const char* name;
    CommandState state;
    const char* open; // names of the open commands, blank-separated
};

class Flags : public ::testing::TestWithParam<FlagCase> {};

TEST_P(Flags, FollowTheState) {
    const CommandFlags f = command_flags(GetParam().state);
    const std::pair<const char*, bool> all[] = {
        {"KihonMenu", f.KihonMenu},
        {"TegakiMenu", f.TegakiMenu},
        {"JikuDataReadMenu", f.JikuDataReadMenu},
        {"SaveFileMenu", f.SaveFileMenu},
        {"HoneSaveMenu", f.HoneSaveMenu},
        {"FrameSlvSaveMenu", f.FrameSlvSaveMenu},
        {"KaisekiMenu", f.KaisekiMenu},
        {"KekkaHozonMenu", f.KekkaHozonMenu},
        {"SaigoKaisekiMenu", f.SaigoKaisekiMenu},
        {"ExitMenu", f.ExitMenu},
        {"SetutenShiteiMenu", f.SetutenShiteiMenu},
        {"HyoujiMenu", f.HyoujiMenu},
        {"SetutenMeishouMenu", f.SetutenMeishouMenu},
        {"BuzaiBangouMenu", f.BuzaiBangouMenu},
        {"KoteiStutenMenu", f.KoteiStutenMenu},
        {"KajyuryouMenu", f.KajyuryouMenu},
    };
    std::string open;
    for (const auto& [name, is_open] : all) {
        open += is_open ? std::string(open.empty() ? "" : " ") + name : "";
    }
    EXPECT_EQ(open, GetParam().open);
}

INSTANTIATE_TEST_SUITE_P(
    States, Flags,
    ::testing::Values(
        FlagCase{"Start", {}, "KihonMenu TegakiMenu JikuDataReadMenu SaigoKaisekiMenu ExitMenu"},
        FlagCase{"Reading", {Stage::reading, false}, "ExitMenu"},
        FlagCase{"Made",
                 {Stage::made, false},
                 "SaveFileMenu ExitMenu SetutenShiteiMenu HyoujiMenu SetutenMeishouMenu "
                 "BuzaiBangouMenu"},
        FlagCase{"Loaded",
                 {Stage::loaded, true},
                 "SaveFileMenu HoneSaveMenu FrameSlvSaveMenu KaisekiMenu KekkaHozonMenu ExitMenu "
                 "SetutenShiteiMenu HyoujiMenu SetutenMeishouMenu BuzaiBangouMenu KoteiStutenMenu "
                 "KajyuryouMenu"}),
    [](const auto& test) { return test.param.name; });

} // namespace

} // namespace kigumi::test
