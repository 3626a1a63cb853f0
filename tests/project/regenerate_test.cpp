#include "project/regenerate.h"

#include "generate/generate.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "model/sections.h"
#include "project/accept.h"
#include "project/project_fault.h"
#include "project/project_file.h"
#include "support.h"

#include <cstring>

namespace kigumi {
namespace {

class Regenerate : public test::CoreTest {
  protected:
    // Cells of 90 cm on posts' feet at 50 cm, with a support, a load and changed members.
    void SetUp() override {
        CoreTest::SetUp();
        param.NX = 3;
        param.NY = 2;
        ASSERT_EQ(make_unit(model, param, solids), 0);
        ASSERT_EQ(accept_model(project), 0);
        project.generated = true;
        ASSERT_EQ(put_fix(model, node_named("X00Y00Z00"), 1, 0, 1), 0);
        ASSERT_EQ(put_load(model, node_named("X06Y04Z01"), 10, -20, -300), 0);
        note_roles_entered(project);
        for (int i = 0; i < model.N_Beam; ++i) {
            if (model.beam[i].kind == kind_chord) {
                ASSERT_NE(change_section(model, position_of(model.beam[i].size), 11, 22, 5),
                          Change::refused);
            }
        }
        one_ = member_at("X06Y04Z00", "X06Y04Z01"); // the post of the far corner
        model.edit[one_] = {0, 1, "hinoki", 0, 0, 0, 9e4f, 0.4f, 5e-4f};
        ASSERT_EQ(rebuild_tables(model), 0);
        ASSERT_EQ(find_project_fault(project), nullptr) << find_project_fault(project);
    }
    int node_named(const char* id) const {
        for (int i = 0; i < model.N_Node; ++i) {
            if (std::strcmp(model.node[i].id, id) == 0) {
                return i;
            }
        }
        ADD_FAILURE() << id;
        return 0;
    }
    int member_at(const char* idi, const char* idj) const {
        for (int i = 0; i < model.N_Beam; ++i) {
            if (std::strcmp(model.beam[i].idi, idi) == 0 &&
                std::strcmp(model.beam[i].idj, idj) == 0) {
                return i;
            }
        }
        ADD_FAILURE() << idi << idj;
        return 0;
    }
    void expect_chords_changed() const {
        int chords = 0;
        for (int i = 0; i < model.N_Beam; ++i) {
            const bool chord = model.beam[i].kind == kind_chord;
            chords += chord ? 1 : 0;
            EXPECT_EQ(section_of(model, i).angle > 4.0f, chord) << i;
        }
        EXPECT_GT(chords, 10);
    }
    int one_ = 0;
};

// Every place moves; the levels stay.
TEST_F(Regenerate, KeepsAllInAFrameOfTheSameLevels) {
    Param wanted = param;
    wanted.TukaHaba = 95.5f;
    wanted.GenHaba = 10.5f;
    ASSERT_EQ(regenerate(project, wanted), 0);
    expect_messages({});
    EXPECT_FLOAT_EQ(project.param.TukaHaba, 95.5f);
    EXPECT_EQ(find_project_fault(project), nullptr) << find_project_fault(project);
    EXPECT_EQ(project.stage, Stage::loaded);
    ASSERT_EQ(model.N_Fix, 1);
    EXPECT_STREQ(model.fix[0].id, "X00Y00Z00");
    EXPECT_EQ(model.fix[0].iy, 0);
    ASSERT_EQ(model.N_Load, 1);
    EXPECT_STREQ(model.load[0].id, "X06Y04Z01");
    EXPECT_FLOAT_EQ(model.node[position_of(model.load[0].no)].x, 286.5f);
    EXPECT_FLOAT_EQ(model.load[0].fy, -20);
    expect_chords_changed();
    const int post = member_at("X06Y04Z00", "X06Y04Z01");
    EXPECT_EQ(section_of(model, post).species, "hinoki");
    EXPECT_FLOAT_EQ(section_of(model, post).E, 9e4f);
}

// One cell more along x: what has its place keeps it, and changes of a whole category hold for the
// new members too. The corner post was no corner's any more.
TEST_F(Regenerate, TellsWhatHasNoPlace) {
    Param wanted = param;
    wanted.NX = 2;
    ASSERT_EQ(regenerate(project, wanted), 0);
    expect_message("新しい骨組に同じ位置がないため引き継げませんでした"
                   "（荷重 1 個、断面・材料の変更 1 本）");
    EXPECT_EQ(find_project_fault(project), nullptr) << find_project_fault(project);
    EXPECT_EQ(model.N_Fix, 1);
    EXPECT_EQ(model.N_Load, 0);
    EXPECT_EQ(project.stage, Stage::made);
    expect_chords_changed();
    wanted.NX = 5;
    ASSERT_EQ(regenerate(project, wanted), 0);
    expect_messages({});
    EXPECT_EQ(model.N_Fix, 1);
    expect_chords_changed();
}

TEST_F(Regenerate, AFailureChangesNothing) {
    const std::string before = project_text(project);
    Param wanted = param;
    wanted.NX = 40000;
    EXPECT_EQ(regenerate(project, wanted), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(project_text(project), before);
}

} // namespace
} // namespace kigumi
