// A run of the solver that goes wrong shows no results, and those of another model are told.
#include "analysis/solver_run.h"
#include "model/members.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "model/sections.h"
#include "results_support.h"

#include <functional>
#include <thread>

namespace kigumi::test {

namespace {

// Nodes and members as a user's own solver may list them: in other order, ends turned, names cut.
struct Row {
    std::string zlv = "1 0 1 0 1 0";
    std::string lst = "3 1 3 200.04 0 0 C 2 1 0 0 0 A 3 2 100 0 0 B "
                      "2 5 3 2 B 2 1 A -7.5 1 2 3 4 5 6 7 8 9 10 11 "
                      "9 3 2 B 1 3 C 2.5 1 2 3 4 5 6 7 8 9 10 11";
    std::string dsp = "3 1 3 C 0 0 1 0 0 0 2 1 A 0 0 0 0 0 0 3 2 B 0 0 -2 0 0 0";
};

void replace(std::string& text, const std::string& what, const std::string& by) {
    const size_t at = text.find(what);
    ASSERT_NE(at, std::string::npos) << what;
    text.replace(at, what.size(), by);
}

class SolverFaultsTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        append_beam(model, {0.0f, 0.0f, 0.0f}, {100.0f, 0.0f, 0.0f}, 10.0f, 10.0f, kind_none, 2);
        append_beam(model, {100.0f, 0.0f, 0.0f}, {200.0f, 0.0f, 0.0f}, 10.0f, 10.0f, kind_none, 2);
        ASSERT_EQ(rebuild_tables(model), 0);
        append_fix(model, 1, 1, 1, 1);
        append_load(model, 3, 0.0f, 0.0f, -1.0f);
    }
    void put(const char* name, const std::string& text) {
        ASSERT_EQ(save_file(work_file(work_dir, name), text), 0);
    }
    bool fits(const Row& row) {
        put("frameslv.zlv", row.zlv);
        put("frameslv.lst", row.lst);
        put("frameslv.dsp", row.dsp);
        EXPECT_EQ(FrameSlv(model, result, work_dir), 0);
        const bool fit = FrameSlv(model, result, work_dir, ResultsOf::this_model) == 0;
        EXPECT_EQ(take_messages(),
                  fit ? std::vector<std::string>{}
                      : std::vector<std::string>{"計算結果がこの骨組のものではありません"});
        return fit;
    }
};

TEST_F(SolverFaultsTest, ResultsOfAnotherModelAreTold) {
    EXPECT_TRUE(fits({}));
    const std::function<void(Row&)> others[] = {
        [](Row& row) { replace(row.lst, "100 0 0", "101 0 0"); },           // another pitch
        [](Row& row) { replace(row.lst, "C 2 1 0 0 0", "C 2 1 0 0 300"); }, // another height
        [](Row& row) { replace(row.lst, "2 5 3 2", "1 5 3 2"); },           // a member fewer
        [](Row& row) { replace(row.lst, "2 B 1 3 C", "2 B 2 1 A"); },       // another pair of ends
        [](Row& row) { replace(row.dsp, "3 C", "4 C"); },                   // other displacements
        [](Row& row) {
            row.lst = listing_of_row(4);
            row.dsp = displacements_of_row(4);
        },
    };
    for (const auto& change : others) {
        Row row;
        change(row);
        EXPECT_FALSE(fits(row)) << row.lst << "\n" << row.dsp;
    }
    model.N_Beam = 1; // changed since
    EXPECT_FALSE(fits({}));
}

TEST_F(SolverFaultsTest, NodesThatCarryNothingMayBeLeftOut) {
    find_or_add_node(model, 0.0f, 500.0f, 0.0f);
    EXPECT_TRUE(fits({}));
}

#ifndef _WIN32
struct BadRun {
    const char* name;
    const char* script; // the user's own solver; empty for a file that is no program
    int run;            // of run_solver
    std::string messages;
};

class BadRunTest : public SolverFaultsTest, public ::testing::WithParamInterface<BadRun> {};

// The three files are there from a run before, and are read again only when no new one began.
TEST_P(BadRunTest, ShowsNoResults) {
    ASSERT_TRUE(fits({}));
    const fs::path solver = work_file(work_dir, "FRAMESLV.EXE");
    const std::string script = GetParam().script;
    ASSERT_EQ(save_file(solver, script.empty() ? "\x01" : "#!/bin/sh\n" + script), 0);
    fs::permissions(solver, fs::perms::owner_exec, fs::perm_options::add);
    const Result before = result;
    SolverOutcome outcome;
    const KeepWaiting until_it_hangs = [this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return !fs::exists(work_file(work_dir, "hung"));
    };
    EXPECT_EQ(run_solver(model, solver_seams, work_dir, outcome, until_it_hangs), GetParam().run);
    EXPECT_EQ(FrameSlv(model, result, work_dir, ResultsOf::this_model),
              outcome.status < 0 ? 0 : -1);
    std::string said;
    for (const std::string& message : take_messages()) {
        said += message + "|";
    }
    EXPECT_EQ(said, GetParam().messages);
    EXPECT_EQ(result.N_Stress, before.N_Stress);
    EXPECT_STREQ(result.stress[0].iname, before.stress[0].iname);
}

const std::string no_zlv = "ファイルframeslv.zlvをオ－プンできません|";
const std::string no_start = "Could not create process|";

INSTANTIATE_TEST_SUITE_P(
    Solvers, BadRunTest,
    ::testing::Values(
        BadRun{"no_program", "", -1, no_start}, BadRun{"no_results", "exit 0\n", 0, no_zlv},
        BadRun{"fails", "exit 9\n", 0, no_zlv}, BadRun{"crashes", "kill -SEGV $$\n", 0, no_zlv},
        BadRun{"killed", "echo 1 > frameslv.zlv; kill -9 $$\n", 0,
               "ファイルframeslv.zlvの読み込みに失敗しました|"},
        BadRun{"half_a_listing", "echo 0 0 0 > frameslv.zlv; echo 3 1 3 200 > frameslv.lst\n", 0,
               "ファイルframeslv.lstの読み込みに失敗しました|"},
        BadRun{"no_displacements", "echo 0 0 0 > frameslv.zlv; echo 0 0 > frameslv.lst\n", 0,
               "ファイルframeslv.dspをオ－プンできません|"},
        BadRun{"another_frame",
               "echo 0 0 0 > frameslv.zlv; echo 0 0 > frameslv.lst; echo 0 > frameslv.dsp\n", 0,
               "計算結果がこの骨組のものではありません|"},
        BadRun{"hangs", "echo 0 0 0 > frameslv.zlv; echo > hung; sleep 60\n", 0, no_zlv}),
    [](const auto& played) { return std::string(played.param.name); });

TEST_F(SolverFaultsTest, EarlierResultsThatCannotBeRemovedStopTheRun) {
    put("frameslv.zlv", "earlier");
    fs::create_directories(work_file(work_dir, "frameslv.lst") / "in the way");
    solver_seams.start = [](const fs::path&, const fs::path&, const KeepWaiting&) {
        ADD_FAILURE() << "started";
        return 0;
    };
    SolverOutcome outcome;
    EXPECT_EQ(run_solver(model, solver_seams, work_dir, outcome), -1);
    EXPECT_EQ(take_messages(), std::vector<std::string>{"前の解析結果frameslv.lstを消せません"});
    EXPECT_EQ(read_file(work_file(work_dir, "frameslv.zlv")), "earlier");
}
#endif

} // namespace

} // namespace kigumi::test
