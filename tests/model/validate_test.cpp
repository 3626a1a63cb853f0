// One store after the other, each broken in one place.
#include "model/members.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/validate.h"
#include "project/project_fault.h"
#include "support.h"

#include <cstring>
#include <functional>
#include <limits>

namespace kigumi {
namespace {

constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();
constexpr float too_large = std::numeric_limits<float>::infinity();

struct Breaking {
    const char* fault;
    void (*change)(Project& p);
};

const Breaking breakings[] = {
    {"表の件数が範囲外です", [](Project& p) { p.model.N_Beam = beam_capacity + 1; }},
    {"表の件数が範囲外です", [](Project& p) { p.model.N_Fix = -1; }},
    {"節点番号が表の順番と合いません", [](Project& p) { p.model.node[1].no = 1; }},
    {"節点の名前に終わりがありません",
     [](Project& p) { std::memset(p.model.node[0].id, 'a', name_bytes); }},
    {"節点の座標が数値ではありません", [](Project& p) { p.model.node[3].z = not_a_number; }},
    {"節点の座標が数値ではありません", [](Project& p) { p.model.node[0].X = too_large; }},
    {"節点の状態に意味がありません", [](Project& p) { p.model.node[2].flag = 3; }},
    {"部材番号が表の順番と合いません", [](Project& p) { p.model.beam[0].no = 2; }},
    {"部材の端の節点がありません", [](Project& p) { p.model.beam[2].noj = 5; }},
    {"部材の端の節点がありません", [](Project& p) { p.model.beam[0].noi = 0; }},
    {"部材の端が節点の位置と合いません", [](Project& p) { p.model.beam[1].yl = 7.0f; }},
    {"部材の端の名前が節点の名前と合いません",
     [](Project& p) { set_name(p.model.beam[2].idj, "A"); }},
    {"部材の巾か厚みが数値ではありません", [](Project& p) { p.model.beam[1].haba = not_a_number; }},
    {"部材の巾か厚みが数値ではありません", [](Project& p) { p.model.beam[1].atumi = too_large; }},
    {"部材の断面番号が範囲外です", [](Project& p) { p.model.beam[0].size = 4; }},
    {"部材の断面番号が範囲外です", [](Project& p) { p.model.beam[0].size = -1; }},
    {"部材の材料番号が範囲外です", [](Project& p) { p.model.beam[2].mat = -2; }},
    {"部材の材料番号が範囲外です", [](Project& p) { p.model.N_Mat = 2; }},
    {"部材の区分に意味がありません", [](Project& p) { p.model.beam[0].kind = kind_count; }},
    {"部材の区分に意味がありません", [](Project& p) { p.model.beam[0].kind = -1; }},
    {"部材の状態が作業の段階と合いません", [](Project& p) { p.model.beam[1].flag = 1; }},
    {"部材の状態が作業の段階と合いません", [](Project& p) { p.model.beam[1].flag = 3; }},
    {"部材ごとの変更に意味がありません", [](Project& p) { p.model.edit[1].material = 2; }},
    {"部材ごとの変更に意味がありません",
     [](Project& p) { std::memset(p.model.edit[0].species, 's', species_bytes); }},
    {"部材ごとに変更した断面の値に誤りがあります", [](Project& p) { p.model.edit[2].section = 1; }},
    {"部材ごとに変更した材料の値に誤りがあります",
     [](Project& p) { p.model.edit[2] = {0, 1, "", 0, 0, 0, 7e4f, not_a_number, 1e-3f}; }},
    {"断面の値が数値ではありません", [](Project& p) { p.model.size.angle[2] = not_a_number; }},
    {"材料の値が数値ではありません", [](Project& p) { p.model.mat.E[0] = too_large; }},
    {"支点の節点番号が範囲外です", [](Project& p) { p.model.fix[0].no = 0; }},
    {"支点の名前が節点の名前と合いません", [](Project& p) { set_name(p.model.fix[1].id, "B"); }},
    {"支点の拘束に意味がありません", [](Project& p) { p.model.fix[1].iy = 2; }},
    {"荷重の節点番号が範囲外です", [](Project& p) { p.model.load[0].no = 9; }},
    {"荷重の名前が節点の名前と合いません", [](Project& p) { p.model.load[0].id[0] = 'C'; }},
    {"荷重が数値ではありません", [](Project& p) { p.model.load[0].fx = not_a_number; }},
    {"支点や荷重が同じ節点に重なっています",
     [](Project& p) { p.model.fix[1] = p.model.fix[0]; }}, // fixed twice
    {"支点や荷重が同じ節点に重なっています",
     [](Project& p) { append_load(p.model, 2, 0, 0, -5); }}, // fixed and loaded
    {"節点の指定が支点・荷重の表と合いません", [](Project& p) { p.model.node[3].flag = 0; }},
    {"節点の指定が支点・荷重の表と合いません", [](Project& p) { p.model.node[2].flag = 1; }},
    {"支点・荷重の入力の印に意味がありません", [](Project& p) { p.model.fix_load_edited = 7; }},
    {"レベルが節点の座標と合いません", [](Project& p) { p.model.Xval[1] = 99.0f; }},
    {"レベルが節点の座標と合いません", [](Project& p) { --p.model.N_Y; }},
    {"レベルが節点の座標と合いません", [](Project& p) { p.model.Zval[p.model.N_Z++] = 999.0f; }},
    {"作業の段階に意味がありません", [](Project& p) { p.stage = static_cast<Stage>(4); }},
    {"基本データに誤りがあります", [](Project& p) { p.param.MoyaHaba = not_a_number; }},
    {"基本データに誤りがあります", [](Project& p) { p.param.SumiType = 3; }},
    {"座標移動が数値ではありません", [](Project& p) { p.shift.dz = too_large; }},
    {"手書の位置に誤りがあります", [](Project& p) { p.sketch_places.N_OldNode = -1; }},
};

class Validate : public test::CoreTest {
  protected:
    // Three members on four nodes: two supports, a plain node and a load, entered by hand.
    void make_sound() {
        project.stage = Stage::empty;
        reset_model(model);
        append_beam(model, {0, 0, 0}, {90, 0, 0}, 12, 15, kind_frame, 2);
        append_beam(model, {90, 0, 0}, {90, 45, 0}, 12, 18, kind_chord, 2);
        append_beam(model, {90, 45, 0}, {0, 0, 240}, 9, 9, kind_brace, 2);
        rebuild_tables(model);
        put_fix(model, 0, 1, 1, 1);
        put_fix(model, 1, 0, 1, 1);
        put_load(model, 3, 10, -20, -300);
        model.fix_load_edited = 1;
        project.stage = Stage::loaded;
        project.param = Param{};
        project.shift = Shift{};
        project.sketch_places = SketchPlaces{};
        ASSERT_EQ(find_project_fault(project), nullptr) << find_project_fault(project);
    }
};

TEST_F(Validate, EveryFaultIsSeenAndNamed) {
    for (const Breaking& breaking : breakings) {
        make_sound();
        breaking.change(project);
        EXPECT_STREQ(find_project_fault(project), breaking.fault) << &breaking - breakings;
    }
}

// What is no fault: an unfinished sketch, levels of results, hits of a search, roles that were
// picked after the tables were made of them.
TEST_F(Validate, WhatTheStageAllowsIsNoFault) {
    const std::pair<const char*, void (*)(Project&)> allowed[] = {
        {"a sketch",
         [](Project& p) {
             p.stage = Stage::reading;
             p.model.beam[1].flag = 1;
             p.model.beam[1].size = -1;
             set_name(p.model.node[2].id, "new");
         }},
        {"levels of results",
         [](Project& p) {
             p.model.Zval[1] = 240.1f;
             p.result.N_Stress = 3;
         }},
        {"a search", [](Project& p) { find_nodes(p.model, all_levels(p.model)); }},
        {"picked roles",
         [](Project& p) {
             p.stage = Stage::made;
             p.model.fix_load_edited = 0;
             pick_role(p.model, 2, role_fixed);
         }},
    };
    for (const auto& [what, change] : allowed) {
        make_sound();
        change(project);
        EXPECT_EQ(find_project_fault(project), nullptr) << what << find_project_fault(project);
    }
}

class MemberEdits : public test::CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        for (int i = 0; i < 4; ++i) {
            const float y = static_cast<float>(100 * i);
            const int at = append_beam(model, {0, y, 0}, {300, y, 0}, 12, 18, kind_chord, 2);
            Beam& beam = model.beam[at];
            beam.XL = 300.0f; // on the sheet as in space
            beam.YS = beam.YL = y;
            for (const int no : {beam.noi, beam.noj}) {
                model.node[position_of(no)].X = model.node[position_of(no)].x;
                model.node[position_of(no)].Y = y;
            }
        }
        ASSERT_EQ(rebuild_tables(model), 0);
        ASSERT_EQ(model.N_Size, 1);
    }
};

TEST_F(MemberEdits, ChangesSurviveTheRebuildingOfTheTables) {
    ASSERT_EQ(change_section(model, 0, 15, 30, 45), Change::stored);
    ASSERT_EQ(change_material(model, 0, 7e4f, 0.4f, 6e-4f), Change::stored);
    ASSERT_EQ(change_species(model, 0, "sugi"), Change::stored);
    EXPECT_EQ(change_species(model, 0, "sugi"), Change::none);
    EXPECT_EQ(change_species(model, 0, std::string(species_bytes, 'x')), Change::refused);
    expect_message("樹種の名前が長すぎます");
    ASSERT_EQ(rebuild_tables(model), 0);
    EXPECT_EQ(model.N_Size, 1);
    EXPECT_FLOAT_EQ(model.beam[2].haba, 12); // the member's own stays
    const MemberSection s = section_of(model, 2);
    EXPECT_FLOAT_EQ(s.haba, 15);
    EXPECT_FLOAT_EQ(s.atumi, 30);
    EXPECT_FLOAT_EQ(s.angle, 45);
    EXPECT_FLOAT_EQ(s.A, 450);
    EXPECT_FLOAT_EQ(s.Iy, 33750);          // 15·30³/12
    EXPECT_FLOAT_EQ(s.Iz, 8437.5f);        // 30·15³/12
    EXPECT_FLOAT_EQ(s.J, 0.229f * 101250); // β(2)·30·15³
    EXPECT_FLOAT_EQ(s.E, 7e4f);
    EXPECT_FLOAT_EQ(s.poisson, 0.4f);
    EXPECT_FLOAT_EQ(s.density, 6e-4f);
    EXPECT_EQ(s.species, "sugi");
    EXPECT_EQ(count_differing(model), 4);
    // Back to the members' own: nothing is changed any more.
    change_section(model, 0, 12, 18, 0);
    EXPECT_EQ(count_differing(model), 0);
    EXPECT_EQ(model.edit[0].section, 0);
}

TEST_F(MemberEdits, DifferentChangesKeepSectionsApartAndGoWithTheMember) {
    change_section(model, 0, 15, 18, 0);
    for (const int member : {0, 2}) {
        forget_section_edit(model, member);
    }
    model.edit[3].haba = 16;
    ASSERT_EQ(rebuild_tables(model), 0);
    ASSERT_EQ(model.N_Size, 3);
    EXPECT_EQ(model.beam[0].size, model.beam[2].size);
    EXPECT_FLOAT_EQ(section_of(model, 0).haba, 12);
    EXPECT_FLOAT_EQ(section_of(model, 1).haba, 15);
    EXPECT_FLOAT_EQ(section_of(model, 3).haba, 16);
    del_beam(model, 0);
    ASSERT_EQ(model.N_Beam, 3);
    ASSERT_EQ(rebuild_tables(model), 0);
    EXPECT_FLOAT_EQ(section_of(model, 0).haba, 15);
    EXPECT_FLOAT_EQ(section_of(model, 1).haba, 12);
    EXPECT_FLOAT_EQ(section_of(model, 2).haba, 16);
    EXPECT_EQ(model.edit[3].section, 0);
    set_all_beam_section(model, 9, 9);
    ASSERT_EQ(rebuild_tables(model), 0);
    EXPECT_EQ(model.N_Size, 1);
    EXPECT_EQ(count_differing(model), 0);
}

TEST_F(MemberEdits, ANewModelHasNone) {
    change_section(model, 0, 15, 18, 0);
    reset_model(model);
    append_beam(model, {0, 0, 0}, {300, 0, 0}, 12, 18, kind_chord, 2);
    EXPECT_EQ(model.edit[0].section, 0);
    EXPECT_FLOAT_EQ(section_of(model, 0).haba, 12); // without a number: the member's own
    EXPECT_FLOAT_EQ(section_of(model, 0).E, model.default_E);
}

} // namespace
} // namespace kigumi
