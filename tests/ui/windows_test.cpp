// The main window and the windows that it opens, played to saved files.
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/validate.h"
#include "player.h"
#include "ui/kit/document.h"
#include "ui/main/main_form.h"

#include <QStatusBar>
#include <QStatusTipEvent>

namespace kigumi::test {

namespace {

class Windows : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        window_ = std::make_unique<TMainForm>(session);
        window_->show();
    }
    void TearDown() override {
        window_.reset();
        UiTest::TearDown();
    }
    bool is_open(const char* item) { return window_->findChild<QAction*>(item)->isEnabled(); }
    // 基本データ選択 with two storeys on type I columns, up to the shown frame.
    void generate_frame() {
        player_.menu("TMainForm", "KihonMenu")
            .choose("TKihonForm", "HashiraGroup", 1)
            .choose("TKihonForm", "KaisouGroup", 1)
            .choose("TKihonForm", "YaneGroup", 2)
            .click("TKihonForm", "OKButton")
            .gone("TKihonForm");
    }
    std::unique_ptr<TMainForm> window_;
    Player player_;
};

TEST_F(Windows, GeneratedFrameIsSavedAsFromTheCommandLine) {
    generate_frame();
    player_.menu("TKihonUnitForm", "ZenDataMenu")
        .click("TZahyouIdouForm", "OKButton")
        .file(work_file(work_dir, "window.jik"))
        .step("summary beside an open menu",
              [] {
                  auto* unit = qobject_cast<QMainWindow*>(Player::shown("TKihonUnitForm"));
                  QStatusTipEvent no_tip("");
                  QApplication::sendEvent(unit, &no_tip);
                  return unit->statusBar()->currentMessage().startsWith("節点 ");
              })
        .menu("TKihonUnitForm", "DxfSaveMenu")
        .file(work_file(work_dir, "window.dxf"))
        .click("TDxfWidthForm", "OKButton")
        .menu("TKihonUnitForm", "Win3dSaveMenu")
        .file(work_file(work_dir, "window.dat"))
        .menu("TKihonUnitForm", "ModoruMenu")
        .gone("TKihonUnitForm");
    player_.play();
    expect_messages(
        {"軸ファイルを作製しました", "ＤＸＦファイルを作製しました", "Win3Dデータを保存しました"});
    EXPECT_FALSE(is_open("KihonMenu"));
    EXPECT_TRUE(is_open("SetutenMeishouMenu"));
    EXPECT_FALSE(is_open("KaisekiMenu"));
    EXPECT_TRUE(window_->windowTitle().startsWith("window.jik - ")) << "saved work has no mark";
    EXPECT_EQ(find_model_fault(model, true), nullptr);

    set_default_param(param);
    param.N_Sou = 2;
    apply_yane_choice(param, 2);
    ASSERT_EQ(check_param(param, {1, 1, 2}), 0);
    ASSERT_EQ(make_unit(model, param, solids), 0);
    ASSERT_EQ(save_jiku_data(model, work_file(work_dir, "core.jik"), {}), 0);
    EXPECT_EQ(read_file(work_file(work_dir, "window.jik")),
              read_file(work_file(work_dir, "core.jik")));
}

TEST_F(Windows, ThreeModelsInARow) {
    generate_frame();
    player_.menu("TKihonUnitForm", "JikuSaveMenu").file(work_file(work_dir, "a.jik"));
    player_.menu("TKihonUnitForm", "ModoruMenu").menu("TMainForm", "SinkiMenu");
    player_.menu("TMainForm", "JikuDataReadMenu")
        .file(work_file(work_dir, "a.jik"))
        .close("TJikuForm");
    player_.gone("TJikuForm").menu("TMainForm", "SinkiMenu");
    player_.step("empty again", [&] { return model.N_Beam == 0 && is_open("KihonMenu"); });
    generate_frame();
    player_.menu("TKihonUnitForm", "ModoruMenu").gone("TKihonUnitForm");
    player_.play();
    expect_message("軸ファイルを作製しました");
    EXPECT_EQ(model.N_Beam, 2 * (768 + 96) + 136);
    EXPECT_EQ(find_model_fault(model, true), nullptr);
    EXPECT_TRUE(is_unsaved(session.work));
}

TEST_F(Windows, BrokenAxisDataGivesTheStartBack) {
    ASSERT_EQ(save_file(work_file(work_dir, "bad.jik"), "1 0 0 0 90 0 0 9 9\r\n7 1 2 3\r\n"), 0);
    player_.menu("TMainForm", "JikuDataReadMenu").file(work_file(work_dir, "bad.jik"));
    player_.step("open again", [&] { return is_open("JikuDataReadMenu"); });
    player_.play();
    expect_messages({"最初の文字は '1' or '2' or '3' or '999'", "軸データ読みこみに失敗しました"});
    EXPECT_EQ(model.N_Beam, 0);
}

TEST_F(Windows, UnsavedWorkIsAskedAbout) {
    generate_frame();
    player_.menu("TKihonUnitForm", "ModoruMenu").gone("TKihonUnitForm");
    player_.menu("TMainForm", "SinkiMenu").answer("キャンセル");
    player_.step("still there", [this] { return model.N_Beam > 0; });
    player_.close("TMainForm").answer("キャンセル").menu("TMainForm", "ExitMenu");
    player_.answer("保存する").file(work_file(work_dir, "kept.kigumi")).gone("TMainForm");
    player_.play();
    EXPECT_FALSE(is_unsaved(session.work));
    EXPECT_TRUE(fs::exists(work_file(work_dir, "kept.kigumi")));
    EXPECT_EQ(read_file(work_file(work_dir, "SPY.TXT"))->substr(0, 11), "Spy Start\r\n");
}

TEST_F(Windows, SearchWritesTheChosenMembersOnly) {
    generate_frame();
    player_.menu("TKihonUnitForm", "KensakuDataMenu").with("TKensakuForm", [](QWidget& search) {
        for (auto* box : search.findChildren<QAbstractButton*>()) {
            if (box->isCheckable()) {
                box->setChecked(box->objectName() == "Kind4CheckBox");
            }
        }
    });
    player_.click("TKensakuForm", "OKButton")
        .file(work_file(work_dir, "some.jik"))
        .gone("TKensakuForm");
    player_.menu("TKihonUnitForm", "ModoruMenu").gone("TKihonUnitForm");
    player_.play();
    take_messages();
    const std::string text = read_file(work_file(work_dir, "some.jik")).value_or("");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 * 256 + 1);
    EXPECT_EQ(text.substr(0, 2), "1 ");
    EXPECT_EQ(text.substr(text.size() - 5), "999\r\n");
}

// Names of the commands that are open in this state.
std::string open_commands(Stage stage, bool results, bool generated = false) {
    const auto project = std::make_unique<Project>();
    project->stage = stage;
    project->generated = generated;
    project->model.N_Node = project->model.N_Beam = stage == Stage::empty ? 0 : 1;
    const CommandFlags f = command_flags(*project, results);
    const std::pair<const char*, bool> all[] = {
        {"SaveProjectMenu", f.SaveProjectMenu},
        {"KihonMenu", f.KihonMenu},
        {"KihonHenkouMenu", f.KihonHenkouMenu},
        {"TegakiMenu", f.TegakiMenu},
        {"JikuDataReadMenu", f.JikuDataReadMenu},
        {"SaveFileMenu", f.SaveFileMenu},
        {"HoneSaveMenu", f.HoneSaveMenu},
        {"FrameSlvSaveMenu", f.FrameSlvSaveMenu},
        {"KaisekiMenu", f.KaisekiMenu},
        {"KekkaHozonMenu", f.KekkaHozonMenu},
        {"SaigoKaisekiMenu", f.SaigoKaisekiMenu},
        {"KekkaHyoujiMenu", f.KekkaHyoujiMenu},
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
    return open;
}

TEST(Flags, FollowTheState) {
    EXPECT_EQ(open_commands(Stage::empty, false),
              "KihonMenu TegakiMenu JikuDataReadMenu SaigoKaisekiMenu ExitMenu");
    EXPECT_EQ(open_commands(Stage::reading, false), "SaveProjectMenu ExitMenu");
    EXPECT_EQ(
        open_commands(Stage::made, false),
        "SaveProjectMenu SaveFileMenu ExitMenu SetutenShiteiMenu HyoujiMenu SetutenMeishouMenu "
        "BuzaiBangouMenu");
    EXPECT_EQ(open_commands(Stage::loaded, true, true),
              "SaveProjectMenu KihonHenkouMenu SaveFileMenu HoneSaveMenu FrameSlvSaveMenu "
              "KaisekiMenu KekkaHozonMenu ExitMenu "
              "SetutenShiteiMenu HyoujiMenu SetutenMeishouMenu BuzaiBangouMenu KoteiStutenMenu "
              "KajyuryouMenu");
}

} // namespace

} // namespace kigumi::test
