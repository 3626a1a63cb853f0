#include "analysis/solver_run.h"

#include "analysis/process.h"
#include "base/files_platform.h"
#include "results_support.h"

namespace kigumi::test {

namespace {

class SolverRunTest : public CoreTest {
  protected:
    fs::path program(const std::string& name, const std::string& text, bool executable = true) {
        const fs::path path = work_file(work_dir, name);
        EXPECT_EQ(save_file(path, text), 0);
        if (executable) {
            fs::permissions(path, fs::perms::owner_exec, fs::perm_options::add);
        }
        return path;
    }

    void put(const std::string& name, const std::string& text) {
        ASSERT_EQ(save_file(work_file(work_dir, name), text), 0);
    }

    void put_row_results(int nodes) {
        put("frameslv.zlv", " 1 0.0 2 0.0 50.0 1 0.0");
        put("frameslv.lst", listing_of_row(nodes));
        put("frameslv.dsp", displacements_of_row(nodes));
    }
};

#ifndef _WIN32
TEST_F(SolverRunTest, RunsInTheFolderAndTellsTheExitStatus) {
    const fs::path path = program("solver", "#!/bin/sh\nread line < FRAMESLV.IN\n"
                                            "echo \"$line $#\" > seen\nexit 3\n");
    put("FRAMESLV.IN", "input\n");
    EXPECT_EQ(run_program(path, work_dir), 3);
    EXPECT_EQ(read_file(work_file(work_dir, "seen")), "input 0\n");
    EXPECT_EQ(run_program(program("killed", "#!/bin/sh\nkill -9 $$\n"), work_dir), 128 + 9);
}

TEST_F(SolverRunTest, TellsWhenNothingStarted) {
    const fs::path good = program("good", "#!/bin/sh\nexit 0\n");
    EXPECT_EQ(run_program(work_file(work_dir, "missing"), work_dir), -1);
    EXPECT_EQ(run_program(program("closed", "#!/bin/sh\nexit 0\n", false), work_dir), -1);
    EXPECT_EQ(run_program(program("broken", "\x01\x02 no program"), work_dir), -1);
    EXPECT_EQ(run_program(work_dir, work_dir), -1);
    EXPECT_EQ(run_program(good, work_file(work_dir, "missing")), -1);
    EXPECT_EQ(run_program(good, work_dir), 0);
}

TEST_F(SolverRunTest, PrefersTheSolverOfTheWorkingDirectory) {
    EXPECT_NE(find_solver(work_dir), work_file(work_dir, "FRAMESLV.EXE"));
    program("FRAMESLV.EXE", "#!/bin/sh\n", false);
    EXPECT_NE(find_solver(work_dir), work_file(work_dir, "FRAMESLV.EXE"));
    program("FRAMESLV.EXE", "#!/bin/sh\n");
    EXPECT_EQ(find_solver(work_dir), work_file(work_dir, "FRAMESLV.EXE"));
}
#else
TEST_F(SolverRunTest, RunsInTheFolderAndTellsTheExitStatus) {
    const fs::path folder = work_file(work_dir, "骨組 1");
    fs::create_directory(folder);
    fs::copy_file(program_dir() / "frameslv.exe", folder / "FRAMESLV.EXE");
    const fs::path no_program = program("broken.exe", "\x01\x02 no program");
    EXPECT_EQ(run_program(folder / "FRAMESLV.EXE", folder), 2); // there is no input
    EXPECT_TRUE(fs::exists(folder / "frameslv.err"));
    EXPECT_EQ(run_program(folder / "missing.exe", folder), -1);
    EXPECT_EQ(run_program(no_program, folder), -1);
    EXPECT_EQ(run_program(folder / "FRAMESLV.EXE", work_file(work_dir, "missing")), -1);
}
#endif

TEST_F(SolverRunTest, WritesTheInputAndTimesTheRun) {
    make_post(model);
    program("FRAMESLV.EXE", "#!/bin/sh\nexit 0\n");
    int calls = 0;
    solver_seams.hundredths = [&calls] { return calls++ == 0 ? 8639990 : 150; };
    solver_seams.start = [this](const fs::path& path, const fs::path& folder, const KeepWaiting&) {
        EXPECT_EQ(path, work_file(work_dir, "FRAMESLV.EXE"));
        EXPECT_EQ(folder, work_dir);
        EXPECT_TRUE(fs::exists(work_file(work_dir, "FRAMESLV.IN")));
        return 7;
    };
    SolverOutcome outcome;
    EXPECT_EQ(run_solver(model, solver_seams, work_dir, outcome), 0);
    EXPECT_EQ(outcome.status, 7);
    EXPECT_NEAR(outcome.seconds, -86398.40, 1e-6);
    show_solver_time({12.345, 0});
    expect_message("解析計算を終了しまし   12.35 sec");
}

TEST_F(SolverRunTest, DoesNotRunOnAnInputThatCouldNotBeWritten) {
    fs::create_directory(work_file(work_dir, "FRAMESLV.IN"));
    solver_seams.start = [](const fs::path&, const fs::path&, const KeepWaiting&) {
        ADD_FAILURE() << "started";
        return 0;
    };
    SolverOutcome outcome;
    EXPECT_EQ(run_solver(model, solver_seams, work_dir, outcome), -1);
    expect_message("Error: Unable to open BonFile");
}

TEST_F(SolverRunTest, KeepsEveryTableWhenTheLastFileIsBroken) {
    put_row_results(3);
    result.Nken_Stress = 5;
    ASSERT_EQ(FrameSlv(model, result, work_dir), 0);
    EXPECT_FLOAT_EQ(model.Yval[1], 50.0f);
    EXPECT_EQ(result.Nken_Stress, 0);
    EXPECT_EQ(result.disp[0].old_no, 3);
    put("frameslv.zlv", "1 9.0 1 9.0 1 9.0");
    put("frameslv.lst", listing_of_row(5));
    put("frameslv.dsp", displacements_of_row(4));
    EXPECT_EQ(FrameSlv(model, result, work_dir), -1);
    expect_message("ファイルframeslv.dspの読み込みに失敗しました");
    EXPECT_EQ(reason(), "節点の数が frameslv.lst では 5、frameslv.dsp では 4 です");
    EXPECT_EQ(model.N_Y, 2);
    EXPECT_EQ(result.N_Setuten, 3);
    EXPECT_EQ(result.N_Stress, 2);
}

TEST_F(SolverRunTest, SavesBothFilesBehindEachOther) {
    put("frameslv.lst", "listing\r\n");
    EXPECT_EQ(save_results(work_dir, work_file(work_dir, "kept.out")), -1);
    put("frameslv.dsp", std::string("\0disp", 5));
    EXPECT_EQ(save_results(work_dir, work_file(work_dir, "missing/kept.out")), -1);
    EXPECT_EQ(save_results(work_dir, work_file(work_dir, "kept.out")), 0);
    EXPECT_EQ(read_file(work_file(work_dir, "kept.out")), "listing\r\n" + std::string("\0disp", 5));
    fs::remove(work_file(work_dir, "frameslv.lst"));
    EXPECT_EQ(save_results(work_dir, work_file(work_dir, "kept.out")), -1);
    expect_messages({"Error: Unable to open DSP_FILE", "Error: Unable to open OutFile",
                     "解析結果を保存しました", "Error: Unable to open LST_FILE"});
}

} // namespace

} // namespace kigumi::test
