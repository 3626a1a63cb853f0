#include "model/members.h"
#include "model/names.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/validate.h"

#include "support.h"

#include <cmath>
#include <cstring>
#include <random>

namespace kigumi {
namespace {

class Lookup : public test::CoreTest {
  protected:
    void add(float xs, float ys, float zs, float xl, float yl, float zl, float haba = 10.0f,
             float atumi = 10.0f) {
        ASSERT_GE(append_beam(model, {xs, ys, zs}, {xl, yl, zl}, haba, atumi, kind_none, 0), 0);
    }
};

TEST_F(Lookup, IndexFollowsTheTableAndTellsTheLastBit) {
    const float x = 90.9f;
    EXPECT_EQ(find_or_add_node(model, x, 0.0f, 50.0f), 1);
    EXPECT_EQ(find_or_add_node(model, std::nextafter(x, 100.0f), 0.0f, 50.0f), 2);
    EXPECT_EQ(find_or_add_node(model, x, -0.0f, 50.0f), 1); // the zeros are equal
    reset_model(model);
    find_or_add_node(model, 1.0f, 0.0f, 0.0f);
    find_or_add_node(model, 2.0f, 0.0f, 0.0f);
    model.N_Node = 1;
    EXPECT_EQ(find_or_add_node(model, 2.0f, 0.0f, 0.0f), 2);
    reset_model(model);
    EXPECT_EQ(find_or_add_node(model, 2.0f, 0.0f, 0.0f), 1);
}

// The index answers as a scan from the first node would.
TEST_F(Lookup, IndexAgreesWithAScan) {
    std::mt19937 random(20240607);
    std::uniform_int_distribution<int> cell(-3, 3);
    for (int i = 0; i < 2000; ++i) {
        const float at[3] = {cell(random) * 45.45f, cell(random) * 0.1f, cell(random) * 1e-8f};
        int scanned = 0;
        for (int k = 0; k < model.N_Node && scanned == 0; ++k) {
            const Node& node = model.node[k];
            scanned = node.x <= at[0] && node.x >= at[0] && node.y <= at[1] && node.y >= at[1] &&
                              node.z <= at[2] && node.z >= at[2]
                          ? node.no
                          : 0;
        }
        const int expected = scanned != 0 ? scanned : model.N_Node + 1;
        ASSERT_EQ(find_or_add_node(model, at[0], at[1], at[2]), expected);
    }
    EXPECT_GT(model.N_Node, 300);
}

TEST_F(Lookup, FullTablesRefuseAndStayAsTheyWere) {
    add(0, 0, 0, 1, 0, 0);
    for (int i = 2; i < node_capacity - 1; ++i) {
        find_or_add_node(model, static_cast<float>(i), 0.0f, 0.0f);
    }
    ASSERT_EQ(model.N_Node, node_capacity - 1);
    // Room for one end only: neither is added.
    EXPECT_EQ(append_beam(model, {0, 1, 0}, {0, 2, 0}, 1, 1, kind_none, 0), -1);
    EXPECT_EQ(model.N_Node, node_capacity - 1);
    EXPECT_EQ(model.N_Beam, 1);
    add(0, 0, 0, 0, 1, 0);
    EXPECT_EQ(find_or_add_node(model, 0, 2, 0), -1);
    EXPECT_EQ(find_or_add_node(model, 5, 0, 0), 6); // what is there is still found
    const std::string full = "節点が多すぎます（最大 10000 個）";
    expect_messages({full, full});
    while (model.N_Beam < beam_capacity) {
        add(0, 0, 0, 1, 0, 0);
    }
    EXPECT_EQ(append_beam(model, {0, 0, 0}, {1, 0, 0}, 1, 1, kind_none, 0), -1);
    expect_message("部材が多すぎます（最大 10000 本）");
    EXPECT_EQ(find_model_fault(model, true), nullptr);
}

TEST_F(Lookup, LevelsNameNodesAndMembers) {
    EXPECT_EQ(save_level_name(model), 0);
    EXPECT_EQ(model.N_X + model.N_Y + model.N_Z, 0);
    const float high = std::nextafter(240.0f, 300.0f);
    add(180, -45, high, 0, 0, 50);
    add(90, 0, 240, 0, 0, 50);
    ASSERT_EQ(save_level_name(model), 0);
    EXPECT_EQ(model.N_X, 3);
    EXPECT_EQ(model.N_Y, 2);
    EXPECT_EQ(model.N_Z, 3);
    EXPECT_FLOAT_EQ(model.Xval[1], 90.0f);
    EXPECT_FLOAT_EQ(model.Yval[0], -45.0f);
    EXPECT_STREQ(model.node[0].id, "X02Y00Z02");
    EXPECT_STREQ(model.node[2].id, "X01Y01Z01");
    EXPECT_STREQ(model.beam[1].idi, "X01Y01Z01");
    EXPECT_STREQ(model.beam[1].idj, "X00Y01Z00");
    EXPECT_EQ(find_model_fault(model, true), nullptr);
}

TEST_F(Lookup, SectionsAreKeyedByWidthThicknessAndLength) {
    EXPECT_EQ(check_size(model), 0);
    EXPECT_EQ(model.N_Size, 0);
    add(0, 0, 0, 300, 0, 0);
    add(0, 0, 0, 0, 0, 300);                            // same section and length
    add(0, 0, 0, 0, std::nextafter(300.0f, 400.0f), 0); // longer by one bit
    add(0, 0, 0, 300, 0, 0, 10, 18);
    add(0, 0, 0, 300, 0, 0, 18, 10);
    ASSERT_EQ(check_size(model), 0);
    const int expected[] = {1, 1, 2, 3, 4};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(model.beam[i].size, expected[i]);
        EXPECT_EQ(model.beam[i].mat, expected[i]);
        EXPECT_EQ(model.beam[i].flag, 2);
    }
    EXPECT_FLOAT_EQ(model.size.A[2], 180.0f);
    EXPECT_FLOAT_EQ(model.size.Iy[2], 10.0f * 18.0f * 18.0f * 18.0f / 12.0f);
    EXPECT_FLOAT_EQ(model.size.Iz[2], 18.0f * 10.0f * 10.0f * 10.0f / 12.0f);
    EXPECT_FLOAT_EQ(model.size.J[2], 0.229f * 18.0f * 1000.0f);
    // Wider than thick: the first coefficient, and the width cubed all the same.
    EXPECT_FLOAT_EQ(model.size.J[3], 0.1406f * 10.0f * 18.0f * 18.0f * 18.0f);
    EXPECT_FLOAT_EQ(model.size.angle[3], 0.0f);
    model.default_E = 70000.0f;
    assign_materials(model);
    model.default_E = 100000.0f;
    EXPECT_EQ(model.N_Mat, 4);
    EXPECT_FLOAT_EQ(model.mat.E[3], 70000.0f);
    EXPECT_FLOAT_EQ(model.mat.poisson[3], 0.3f);
    EXPECT_FLOAT_EQ(model.mat.density[0], 0.0005f);
}

TEST(Torsion, CoefficientChangesAboveTheBound) {
    const std::pair<float, float> coefficients[] = {
        {1.0f, 0.1406f}, {1.0001f, 0.166f}, {1.2f, 0.166f},  {1.5f, 0.196f},
        {2.0f, 0.229f},  {2.5f, 0.249f},    {3.0f, 0.263f},  {4.0f, 0.281f},
        {5.0f, 0.291f},  {10.0f, 0.312f},   {10.01f, 0.333f}};
    for (const auto& [ratio, beta] : coefficients) {
        EXPECT_FLOAT_EQ(torsion_coefficient(ratio), beta) << ratio;
    }
}

TEST_F(Lookup, SupportsAndLoadsComeFromTheNodeFlags) {
    for (int i = 0; i < 4; ++i) {
        find_or_add_node(model, static_cast<float>(i), 0.0f, 0.0f);
        model.node[i].flag = i;
    }
    save_level_name(model);
    append_load(model, 1, 1.0f, 2.0f, 3.0f); // an old one goes
    ASSERT_EQ(make_fix_and_load(model), 0);
    ASSERT_EQ(model.N_Fix, 1);
    ASSERT_EQ(model.N_Load, 1);
    EXPECT_EQ(model.fix[0].no, 2);
    EXPECT_STREQ(model.fix[0].id, "X01Y00Z00");
    EXPECT_EQ(model.fix[0].ix + model.fix[0].iy + model.fix[0].iz, 3);
    EXPECT_EQ(model.load[0].no, 3);
    EXPECT_FLOAT_EQ(model.load[0].fz, -200.0f);
    for (int i = 4; i < 4 + fix_capacity; ++i) {
        find_or_add_node(model, static_cast<float>(i), 0.0f, 0.0f);
        model.node[i].flag = role_fixed;
    }
    EXPECT_EQ(make_fix_and_load(model), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(model.N_Fix, 1);
}

TEST_F(Lookup, SortingOrdersByHeightThenYThenX) {
    add(10, 0, 0, 0, 5, 0);
    add(0, 0, 9, 0, 0, 0);
    add(10, 0, 0, 0, 0, 9);
    const Beam before = model.beam[2];
    EXPECT_EQ(sort_node(model), 1);
    const float places[][3] = {{0, 0, 0}, {10, 0, 0}, {0, 5, 0}, {0, 0, 9}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(find_or_add_node(model, places[i][0], places[i][1], places[i][2]), i + 1);
    }
    EXPECT_EQ(model.beam[2].noi, 2);
    EXPECT_EQ(model.beam[2].noj, 4);
    EXPECT_FLOAT_EQ(model.beam[2].zl, before.zl);
    EXPECT_EQ(find_model_fault(model, false), nullptr);
    model.beam[0].noj = 9;
    EXPECT_EQ(sort_node(model), -1);
    expect_message("ソートができません");
}

TEST_F(Lookup, GridNamesMeasureYFromTheSmallestX) {
    EXPECT_EQ(check_all_node(model), 1);
    add(100, 40, 0, 199, 139, 0);
    add(100, 139, 0, 149.6f, 40, 0);
    EXPECT_EQ(check_all_node(model), -1); // no node has flag 2
    EXPECT_STREQ(model.node[0].id, "");
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].flag = 2;
    }
    EXPECT_EQ(check_all_node(model), 1);
    EXPECT_STREQ(model.node[0].id, "X00Y-60Z00"); // all heights are one: index 0
    EXPECT_STREQ(model.node[1].id, "X99Y39Z00");
    EXPECT_STREQ(model.node[3].id, "X49Y-60Z00");
    EXPECT_STREQ(model.beam[1].idj, "X49Y-60Z00");
}

TEST_F(Lookup, GridNamesFarOutsideTheGridAreStillNames) {
    add(0, 9000, 0, 9000, std::nextafter(9000.0f, 9999.0f), 0);
    model.node[0].flag = model.node[1].flag = 2;
    EXPECT_EQ(check_all_node(model), 1);
    EXPECT_EQ(std::strncmp(model.node[0].id, "X00Y", 4), 0);
}

TEST_F(Lookup, NameAndPlaceGoIntoTheMembers) {
    add(0, 0, 0, 10, 0, 0);
    add(10, 0, 0, 10, 0, 0); // both ends at one node
    add(5, 5, 5, 0, 0, 0);
    Node& node = model.node[1];
    set_name(node.id, "moved");
    node.x = 20.0f;
    copy_node_to_beams(model, 1);
    EXPECT_FLOAT_EQ(model.beam[0].xl, 20.0f);
    EXPECT_STREQ(model.beam[0].idj, "moved");
    EXPECT_FLOAT_EQ(model.beam[0].xs, 0.0f);
    EXPECT_FLOAT_EQ(model.beam[1].xs, 20.0f);
    EXPECT_FLOAT_EQ(model.beam[1].xl, 10.0f); // only the start of such a member
    EXPECT_STREQ(model.beam[2].idi, "");
    EXPECT_EQ(find_or_add_node(model, 20, 0, 0), 2);
}

TEST_F(Lookup, LongNamesAreCutBetweenCharacters) {
    const std::string ten = "あいうえおかきくけこ"; // 30 bytes
    for (const auto& [name, kept] : {std::pair{ten, ten},
                                     {ten + "さ", ten},
                                     {ten + "abc", ten + "a"},
                                     {ten.substr(0, 27) + "abcdさ", ten.substr(0, 27) + "abcd"}}) {
        char field[name_bytes];
        set_name(field, name.c_str());
        EXPECT_EQ(field, kept) << name;
    }
}

} // namespace
} // namespace kigumi
