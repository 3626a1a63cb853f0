// The analysis as the windows run it, with solvers that do well, fail, and never end.
#include "analysis/result.h"
#include "analysis/solver_run.h"
#include "player.h"
#include "results_support.h"
#include "ui/result/analysis_run.h"

namespace kigumi::test {

namespace {

class AnalysisTest : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        make_post(model);
        main_.showMaximized();
    }

    void own_solver(const std::string& script) {
        const fs::path path = work_file(work_dir, "FRAMESLV.EXE");
        ASSERT_EQ(save_file(path, "#!/bin/sh\n" + script), 0);
        fs::permissions(path, fs::perms::owner_exec, fs::perm_options::add);
    }
    void earlier_results() {
        for (const char* name : {"frameslv.zlv", "frameslv.lst", "frameslv.dsp", "frameslv.err"}) {
            ASSERT_EQ(save_file(work_file(work_dir, name), "1 2 3\n"), 0);
        }
    }
    bool run() { return run_analysis(model, solver_seams, work_dir, main_); }
    void expect_main_window_back() {
        EXPECT_TRUE(main_.isVisible());
        EXPECT_FALSE(main_.isMinimized());
        EXPECT_TRUE(main_.isMaximized());
    }

    QWidget main_;
};

TEST_F(AnalysisTest, TellsWhatIsMissingBeforeAnythingRuns) {
    own_solver("echo ran > ran\n");
    model.N_Load = 0;
    EXPECT_FALSE(run());
    model.N_Fix = 0;
    EXPECT_FALSE(run());
    model.N_Fix = model.N_Load = 1;
    model.N_Beam = result_capacity + 1;
    EXPECT_FALSE(run());
    EXPECT_FALSE(fs::exists(work_file(work_dir, "ran")));
    const auto messages = take_messages();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0], "荷重節点がないため解析できません");
    EXPECT_EQ(messages[1], "固定節点がないため解析できません");
    EXPECT_NE(messages[2].find("3001"), std::string::npos);
}

TEST_F(AnalysisTest, BundledSolverLeavesReadableResults) {
    EXPECT_TRUE(run());
    expect_main_window_back();
    const auto messages = take_messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].find("解析計算を終了しまし "), 0u);
    ASSERT_EQ(FrameSlv(model, result, work_dir), 0);
    EXPECT_NEAR(result.stress[0].force, -200.0f, 1e-3f);
}

#ifndef _WIN32
TEST_F(AnalysisTest, FailedRunShowsItsReasonAndNothingOfAnEarlierOne) {
    earlier_results();
    own_solver("echo '節点 X00Y00Z01 が動きます' > frameslv.err\nexit 3\n");
    EXPECT_TRUE(run());
    expect_main_window_back();
    take_messages();
    EXPECT_EQ(FrameSlv(model, result, work_dir), -1);
    expect_message("ファイルframeslv.zlvをオ－プンできません");
    EXPECT_EQ(reason(), "節点 X00Y00Z01 が動きます");
    own_solver("exit 1\n"); // no word of its own
    EXPECT_TRUE(run());
    EXPECT_EQ(solver_complaint(work_dir), "");
    take_messages();
}

TEST_F(AnalysisTest, SolverThatCannotStartLeavesTheEarlierResults) {
    earlier_results();
    ASSERT_EQ(save_file(work_file(work_dir, "FRAMESLV.EXE"), "\x01 no program"), 0);
    fs::permissions(work_file(work_dir, "FRAMESLV.EXE"), fs::perms::owner_exec,
                    fs::perm_options::add);
    EXPECT_FALSE(run());
    expect_main_window_back();
    expect_message("Could not create process");
    EXPECT_EQ(read_file(work_file(work_dir, "frameslv.lst")), "1 2 3\n");
}

TEST_F(AnalysisTest, StoppedRunEndsTheSolverAndItsChildren) {
    earlier_results();
    own_solver("sleep 60 & echo $! > child\necho half > frameslv.lst\necho > frameslv.ls~\nwait\n");
    bool shown = false;
    Player player;
    player
        .step("start",
              [this] {
                  QTimer::singleShot(0, &main_, [this] { EXPECT_FALSE(run()); });
                  return true;
              })
        .step("window of the run",
              [&] {
                  QWidget* window = Player::shown("TKaisekiForm");
                  if (window == nullptr || !fs::exists(work_file(work_dir, "frameslv.ls~"))) {
                      return false;
                  }
                  shown = label_text(*window, "ProgramLabel").find("作業フォルダの FRAMESLV.EXE") !=
                          std::string::npos;
                  EXPECT_EQ(QApplication::activeModalWidget(), window);
                  return true;
              })
        .click("TKaisekiForm", "CyuusiButton")
        .gone("TKaisekiForm")
        .step("main window", [this] { return !main_.isMinimized(); })
        .play();
    EXPECT_TRUE(shown);
    expect_main_window_back();
    expect_message("解析を中止しました");
    EXPECT_FALSE(fs::exists(work_file(work_dir, "frameslv.lst")));
    EXPECT_FALSE(fs::exists(work_file(work_dir, "frameslv.ls~")));
    const std::string child = *read_file(work_file(work_dir, "child"));
    const std::string alive =
        "grep -q '^State:.[^ZX]' /proc/" + child.substr(0, child.find('\n')) + "/status";
    EXPECT_NE(std::system((alive + " 2>/dev/null").c_str()), 0) << "the solver's child still runs";
}

TEST_F(AnalysisTest, ClosingEitherWindowAtOnceStopsTheRun) {
    own_solver("exec sleep 60\n");
    for (const bool main_window : {true, false}) {
        QTimer::singleShot(0, &main_, [&] {
            QWidget* wait = nullptr;
            for (QWidget* top : QApplication::topLevelWidgets()) {
                wait = top->objectName() == "KaisekiForm" ? top : wait;
            }
            ASSERT_NE(wait, nullptr);
            EXPECT_FALSE((main_window ? &main_ : wait)->close());
        });
        EXPECT_FALSE(run());
        expect_main_window_back();
        expect_message("解析を中止しました");
    }
    EXPECT_TRUE(main_.close()) << "as ever after the run";
}
#endif

} // namespace

} // namespace kigumi::test
