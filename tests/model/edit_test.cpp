#include "model/members.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "model/select.h"
#include "model/validate.h"
#include "support.h"

namespace kigumi {
namespace {

class Edit : public test::CoreTest {
  protected:
    // A member between two sheet points, whose world place is ten times that.
    Beam& draw(float XS, float YS, float XL, float YL, int kind, int flag) {
        const int at =
            append_beam(model, {XS * 10, YS * 10, 0}, {XL * 10, YL * 10, 0}, 12, 12, kind, flag);
        Beam& beam = model.beam[at];
        beam.XS = XS;
        beam.YS = YS;
        beam.XL = XL;
        beam.YL = YL;
        Node& start = model.node[position_of(beam.noi)];
        Node& end = model.node[position_of(beam.noj)];
        start.X = XS;
        start.Y = YS;
        end.X = XL;
        end.Y = YL;
        return beam;
    }
};

TEST_F(Edit, DeletingTheOnlyMemberLeavesNothing) {
    draw(0, 0, 100, 0, kind_post, 2);
    del_beam(model, -1);
    del_beam(model, 1);
    EXPECT_EQ(model.N_Beam, 1);
    del_beam(model, 0);
    EXPECT_EQ(model.N_Beam, 0);
    EXPECT_EQ(model.N_Node, 0);
    EXPECT_EQ(find_or_add_node(model, 5, 5, 5), 1);
}

TEST_F(Edit, CategoryStaysWithThePosition) {
    draw(0, 0, 100, 0, kind_post, 2);
    draw(100, 0, 200, 0, kind_frame, 2);
    draw(200, 0, 300, 0, kind_chord, 2);
    model.beam[2].haba = 33.0f;
    append_fix(model, 1, 1, 1, 1);
    append_load(model, 4, 0.0f, 0.0f, -200.0f); // the number goes
    del_beam(model, 0);
    ASSERT_EQ(model.N_Beam, 2);
    EXPECT_EQ(model.beam[0].kind, kind_post);
    EXPECT_EQ(model.beam[1].kind, kind_frame);
    EXPECT_FLOAT_EQ(model.beam[1].haba, 33.0f);
    EXPECT_EQ(model.beam[1].no, 2);
    EXPECT_EQ(model.N_Node, 3);
    EXPECT_FLOAT_EQ(model.node[0].x, 1000.0f);
    EXPECT_EQ(find_model_fault(model, false), nullptr);
}

// The flag that decides is the one the position held before: that of the deleted member here.
TEST_F(Edit, NodeFlagsComeFromThePositionsOldFlag) {
    draw(0, 0, 100, 0, kind_none, 1);
    draw(200, 0, 300, 0, kind_none, 2);
    draw(300, 0, 400, 0, kind_none, 1);
    del_beam(model, 0);
    // Position 0 read 1: new nodes get 0. Position 1 read 2: found and new nodes get 2.
    ASSERT_EQ(model.N_Node, 3);
    EXPECT_EQ(model.node[0].flag, 0);
    EXPECT_EQ(model.node[1].flag, 2);
    EXPECT_EQ(model.node[2].flag, 2);
    EXPECT_EQ(model.beam[0].flag, 2);
    EXPECT_EQ(model.beam[1].flag, 1);
    draw(500, 0, 600, 0, kind_none, 2);
    del_beam(model, 2); // a found node of a member that read 1
    EXPECT_EQ(model.node[0].flag, 2);
    EXPECT_EQ(model.node[1].flag, 1);
    EXPECT_EQ(model.node[2].flag, 0);
}

TEST_F(Edit, NewEndNodeTakesTheStartsName) {
    draw(500, 0, 600, 0, kind_none, 2);
    Beam& beam = draw(0, 0, 100, 0, kind_none, 2);
    set_name(beam.idi, "start");
    set_name(beam.idj, "end");
    del_beam(model, 0);
    EXPECT_STREQ(model.node[0].id, "start");
    EXPECT_STREQ(model.node[1].id, "start");
    EXPECT_STREQ(model.beam[0].idj, "start");
}

TEST_F(Edit, EndsWithinTheSnapRadiusShareANode) {
    draw(500, 0, 600, 0, kind_none, 2);
    draw(0, 0, 100, 0, kind_none, 2);
    draw(100, 9.99f, 200, 0, kind_none, 2);
    draw(210, 0, 300, 0, kind_none, 2); // exactly the radius away: not the same
    EXPECT_EQ(model.N_Node, 8);
    del_beam(model, 0);
    EXPECT_EQ(model.N_Node, 5);
    EXPECT_EQ(model.beam[1].noi, model.beam[0].noj);
    EXPECT_FLOAT_EQ(model.beam[1].ys, 99.9f); // the world place stays
    EXPECT_EQ(model.beam[2].noi, 4);
    model.snap_radius = 11.0f;
    del_beam(model, 2);
    EXPECT_EQ(model.N_Node, 3);
}

TEST(Select, Patterns) {
    const std::tuple<const char*, const char*, bool> patterns[] = {
        {"", "X", false},
        {"X0?Y*", "X01Y02", true},
        {"*Z00", "X00Y00Z00", true},
        {"*Z00*", "X00Z00Z01", true},
        {"a*b*c", "axbxbxc", true},
        {"x00*", "X00Y00Z00", false},
    };
    for (const auto& [pattern, text, matches] : patterns) {
        EXPECT_EQ(matches_pattern(pattern, text), matches) << pattern << " on " << text;
    }
}

} // namespace
} // namespace kigumi
