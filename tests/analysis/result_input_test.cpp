// Of which input results are: fingerprints, the file beside the results, edits and runs that fail.
#include "analysis/result_input.h"

#include "analysis/solver_input.h"
#include "analysis/solver_run.h"
#include "model/members.h"
#include "model/nodes.h"
#include "model/sections.h"
#include "project/gate.h"
#include "results_support.h"

#include <functional>

namespace kigumi::test {

namespace {

// A portal of two posts and a beam, each section its own; one support, one load.
void make_portal(Model& model, bool renumbered = false) {
    const auto post = [&model](float x, float haba) {
        append_beam(model, {x, 0.0f, 0.0f}, {x, 0.0f, 300.0f}, haba, 12.0f, kind_post, 2);
    };
    if (renumbered) {
        append_beam(model, {400.0f, 0.0f, 300.0f}, {0.0f, 0.0f, 300.0f}, 9.0f, 15.0f, kind_none, 2);
        post(400.0f, 11.0f);
        post(0.0f, 10.0f);
    } else {
        post(0.0f, 10.0f);
        append_beam(model, {0.0f, 0.0f, 300.0f}, {400.0f, 0.0f, 300.0f}, 9.0f, 15.0f, kind_none, 2);
        post(400.0f, 11.0f);
    }
    rebuild_tables(model);
    const auto number = [&model](float x, float z) { return find_or_add_node(model, x, 0.0f, z); };
    append_fix(model, number(0.0f, 0.0f), 1, 1, 1);
    append_fix(model, number(400.0f, 0.0f), 1, 0, 1);
    append_load(model, number(400.0f, 300.0f), 10.0f, 0.0f, -200.0f);
}

// Result records of the model as a solver lists them, with all forces different.
void make_results(const Model& model, Result& result) {
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        add_setuten(result, node.no, node.id, node.x, node.y, node.z);
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        add_stress(result, position_of(model.beam[i].noi), position_of(model.beam[i].noj),
                   -10.0f * static_cast<float>(i + 1), 100.0f);
    }
}

class ResultInputTest : public CoreTest {
  protected:
    void put(const char* name, const std::string& text) {
        ASSERT_EQ(save_file(work_file(work_dir, name), text), 0);
    }
    void put_results(float force = -200.0f) {
        put("frameslv.zlv", "2 0 400 1 0 2 0 300");
        std::string lst = text_format("%d\n", model.N_Node);
        std::string dsp = lst;
        for (int i = 0; i < model.N_Node; ++i) {
            const Node& node = model.node[i];
            lst +=
                text_format("%d %d %g %g %g %s\n", i + 1, node.no, node.x, node.y, node.z, node.id);
            dsp += text_format("%d %d %s 0 0 -0.5 0 0 0\n", i + 1, node.no, node.id);
        }
        lst += text_format("%d\n", model.N_Beam);
        for (int i = 0; i < model.N_Beam; ++i) {
            const Beam& beam = model.beam[i];
            lst += text_format("%d 1 %d %s 2 %d %s %g 0 0 0 0 0 0 0 0 0 0 0\n", i + 1, beam.noi,
                               beam.idi, beam.noj, beam.idj, force);
        }
        put("frameslv.lst", lst);
        put("frameslv.dsp", dsp);
    }
    // A run whose solver leaves these results.
    int run(float force = -200.0f, SelfWeight weight = SelfWeight::no) {
        const fs::path solver = work_file(work_dir, "FRAMESLV.EXE");
        EXPECT_EQ(save_file(solver, "#!/bin/sh\n"), 0);
        fs::permissions(solver, fs::perms::owner_exec, fs::perm_options::add);
        solver_seams.start = [this, force, weight](const fs::path&, const fs::path&,
                                                   const KeepWaiting&) {
            put_results(force);
            if (weight != SelfWeight::unknown) {
                put("frameslv.not", weight == SelfWeight::yes ? "self-weight 自重を加えました\r\n"
                                                              : "rounds 1\r\n");
            }
            return 0;
        };
        SolverOutcome outcome;
        return run_solver(model, solver_seams, work_dir, outcome);
    }
    void read() { ASSERT_EQ(FrameSlv(model, result, work_dir), 0); }
};

TEST_F(ResultInputTest, FingerprintIsThatOfTheFileAndOfEveryOrder) {
    make_portal(model);
    const Fingerprint own = fingerprint(model);
    // By hand: FNV-1a of "a" is published as af63dc4c8601ec8c.
    EXPECT_EQ(hash_text(std::string_view("a")), "af63dc4c8601ec8c");
    ASSERT_EQ(save_honegumi(model, work_file(work_dir, "FRAMESLV.IN")), 0);
    EXPECT_EQ(read_solver_frame(work_dir)->print, own);
    const auto other = std::make_unique<Model>();
    make_portal(*other, true);
    ASSERT_NE(other->node[0].x, model.node[0].x);
    EXPECT_EQ(fingerprint(*other), own) << "renumbered, and a member turned";
}

TEST_F(ResultInputTest, EveryEditMakesResultsOldAndUndoMakesThemCurrent) {
    const auto work = std::make_unique<Work>();
    Model& m = work->project.model;
    make_portal(m);
    model = m;
    ASSERT_EQ(run(), 0);
    read();
    ASSERT_EQ(result_age(m, result), ResultAge::current);
    work->history.start(work->project);
    struct Edit {
        const char* name;
        std::function<void(Model&)> change;
        ResultAge age;
    };
    const auto age_old = ResultAge::old;
    const Edit edits[] = {
        {"node", [](Model& of) { of.node[2].x += 1.0f; }, age_old},
        {"free node", [](Model& of) { find_or_add_node(of, 50.0f, 60.0f, 70.0f); }, age_old},
        {"member", [](Model& of) { --of.N_Beam; }, age_old},
        {"other ends", [](Model& of) { std::swap(of.beam[0].noj, of.beam[1].noj); }, age_old},
        {"section", [](Model& of) { of.size.Iy[1] *= 1.01f; }, age_old},
        {"section of a member", [](Model& of) { of.beam[0].size = of.beam[1].size; }, age_old},
        {"material", [](Model& of) { of.mat.E[0] = 90000.0f; }, age_old},
        {"load", [](Model& of) { of.load[0].fz = -5000.0f; }, age_old},
        {"load gone", [](Model& of) { of.N_Load = 0; }, age_old},
        {"support", [](Model& of) { of.fix[1].iy = 1; }, age_old},
        {"supports and loads gone", [](Model& of) { of.N_Fix = of.N_Load = 0; }, age_old},
        {"place on the sheet", [](Model& of) { of.node[0].X += 5.0f; }, ResultAge::current},
        {"levels", [](Model& of) { of.Xval[0] = 7.0f; }, ResultAge::current},
    };
    for (const Edit& edit : edits) {
        edit.change(m);
        EXPECT_EQ(result_age(m, result), edit.age) << edit.name;
        work->history.commit(edit.name, work->project);
        work->history.undo(work->project);
        EXPECT_EQ(result_age(m, result), ResultAge::current) << edit.name << ", taken back";
    }
    work->project.view.TAU = 77.0f;
    EXPECT_EQ(result_age(m, result), ResultAge::current) << "a view is no edit";
    EXPECT_EQ(stored_result_age(m, work_dir), ResultAge::current);
}

TEST_F(ResultInputTest, AMixOfFilesOrABrokenRecordIsUnknown) {
    make_portal(model);
    ASSERT_EQ(run(), 0);
    const std::string good = *read_file(work_file(work_dir, "frameslv.fgp"));
    const auto age = [this] { return stored_result_age(model, work_dir); };
    EXPECT_EQ(age(), ResultAge::current);
    const std::string lst = *read_file(work_file(work_dir, "frameslv.lst"));
    put("frameslv.lst", lst + " ");
    EXPECT_EQ(age(), ResultAge::unknown) << "of another run";
    put("frameslv.lst", lst);
    EXPECT_EQ(age(), ResultAge::current);
    for (const std::string& text :
         {std::string(), "kigumi-results 2" + good.substr(16), good.substr(0, 40),
          good.substr(0, good.size() - 5), std::string(1000, '\0')}) {
        put("frameslv.fgp", text);
        EXPECT_EQ(age(), ResultAge::unknown) << text.size();
    }
    fs::remove(work_file(work_dir, "frameslv.dsp"));
    EXPECT_EQ(age(), std::nullopt);
}

// The loads were changed, and the solver did not start: FRAMESLV.IN is the new one already.
TEST_F(ResultInputTest, ResultsThatArePutBackAreNotOfTheNewInput) {
    for (const bool recorded : {true, false}) {
        reset_model(model);
        make_portal(model);
        ASSERT_EQ(run(), 0);
        if (!recorded) {
            fs::remove(work_file(work_dir, "frameslv.fgp"));
        }
        read();
        EXPECT_EQ(result.roles.load.size(), 1u);
        model.load[0].fz = -5000.0f;
        solver_seams.start = [](const fs::path&, const fs::path&, const KeepWaiting&) {
            return -1;
        };
        SolverOutcome outcome;
        EXPECT_EQ(run_solver(model, solver_seams, work_dir, outcome), -1);
        expect_message("Could not create process");
        read();
        EXPECT_EQ(result.stress[0].force, -200.0f);
        EXPECT_EQ(result_age(model, result), recorded ? ResultAge::old : ResultAge::unknown);
        EXPECT_EQ(result.roles.state, ResultRoles::State::of_other_frame);
        EXPECT_TRUE(result.roles.load.empty()) << "no new loads at old forces";
        reset_model(model); // the last results, without a frame
        EXPECT_EQ(result_age(model, result), recorded ? ResultAge::old : ResultAge::unknown);
    }
}

TEST_F(ResultInputTest, SelfWeightIsWhatTheSolverDid) {
    make_portal(model);
    for (const SelfWeight weight : {SelfWeight::yes, SelfWeight::no, SelfWeight::unknown}) {
        ASSERT_EQ(run(-200.0f, weight), 0);
        EXPECT_EQ(read_result_input(work_dir).self_weight, weight) << "own solver";
    }
    // By hand over these results: no record of ours is of them.
    put_results(-250.0f);
    EXPECT_EQ(read_result_input(work_dir).self_weight, SelfWeight::unknown);
    put("frameslv.not", "self-weight 自重を加えました (--self-weight)\r\n");
    EXPECT_EQ(read_result_input(work_dir).self_weight, SelfWeight::yes);
}

// Axis data bring no supports and loads; those of the results are in FRAMESLV.IN.
TEST_F(ResultInputTest, AFrameReadFromAFileIsComparedWithoutRoles) {
    make_portal(model);
    ASSERT_EQ(run(), 0);
    read();
    reset_model(model);
    make_portal(model, true);
    model.N_Fix = model.N_Load = 0;
    EXPECT_EQ(result_age_of_frame(model, result), ResultAge::current);
    EXPECT_EQ(result_age(model, result), ResultAge::old);
    model.beam[0].size = model.beam[1].size;
    EXPECT_EQ(result_age_of_frame(model, result), ResultAge::old);
}

// One answer to what is of which member, for the frame itself, turned and renumbered.
TEST_F(ResultInputTest, ResultsAreMatchedByPlace) {
    make_portal(model);
    make_results(model, result);
    const auto own = match_results(model_shape(model), stored_results(result));
    EXPECT_TRUE(own.fits);
    EXPECT_EQ(own.member, (std::vector<int>{0, 1, 2}));
    Stress& turned = result.stress[1];
    std::swap(turned.xi, turned.xj);
    std::swap(turned.old_noi, turned.old_noj);
    EXPECT_TRUE(results_fit(model, result)) << "a solver may turn a member";
    const auto other = std::make_unique<Model>();
    make_portal(*other, true);
    const auto match = match_results(model_shape(*other), stored_results(result));
    EXPECT_TRUE(match.fits) << "renumbered";
    for (int row = 0; row < result.N_Stress; ++row) {
        EXPECT_FLOAT_EQ(other->beam[match.member[row]].haba, model.beam[row].haba) << row;
    }
    EXPECT_EQ(other->node[match.node[0]].x, model.node[0].x);
    append_beam(*other, {0.0f, 0.0f, 300.0f}, {400.0f, 0.0f, 300.0f}, 9.0f, 9.0f, kind_none, 2);
    EXPECT_FALSE(results_fit(*other, result)) << "a second member between the same places";
    add_stress(result, 1, 2, 1.0f, 1.0f);
    EXPECT_TRUE(results_fit(*other, result));
    EXPECT_EQ(match_results(model_shape(*other), stored_results(result)).member.back(), 3);
}

} // namespace

} // namespace kigumi::test
