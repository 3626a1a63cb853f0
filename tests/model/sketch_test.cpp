#include "model/sketch.h"

#include "base/float.h"
#include "model/validate.h"
#include "support.h"

namespace kigumi {
namespace {

class Sketch : public test::CoreTest {
  protected:
    SheetOutcome drag(float x1, float y1, float x2, float y2) {
        sheet_.press(TegakiSheet::left_button, {x1, y1});
        return sheet_.release({x2, y2});
    }
    SheetOutcome click(float X, float Y) { return drag(X, Y, X, Y); }
    void draw(float x1, float y1, float x2, float y2) {
        click(x1, y1);
        click(x2, y2);
    }
    std::string marks() {
        std::string text;
        for (const SheetMark& mark : sheet_.marks()) {
            text += "nskep"[static_cast<int>(mark.kind)];
        }
        return text;
    }
    TegakiSheet sheet_{model};
};

TEST_F(Sketch, MemberAndNodesLiveThroughTheirFlags) {
    EXPECT_EQ(click(100, 100).event, SheetEvent::first_end);
    EXPECT_EQ(model.N_Node, 1);
    EXPECT_EQ(model.node[0].flag, 0);
    EXPECT_FLOAT_EQ(model.node[0].z, -1.0f);
    EXPECT_EQ(model.N_Beam, 0);
    EXPECT_EQ(model.beam[0].flag, 0);
    // The place of the press counts, not that of the release.
    EXPECT_EQ(drag(200, 100, 250, 130).event, SheetEvent::drawn);
    EXPECT_EQ(marks(), "nen");
    EXPECT_FLOAT_EQ(model.beam[0].XL, 200.0f);
    EXPECT_EQ(model.beam[0].flag, 1);
    EXPECT_EQ(model.beam[0].size, -1);
    EXPECT_FLOAT_EQ(model.beam[0].haba, 12.0f);
    EXPECT_EQ(model.node[1].flag, 0);

    click(203, 104);
    EXPECT_EQ(model.node[1].flag, 1) << "a later end snapped to it";
    EXPECT_EQ(marks(), "s");
    click(300, 200);
    EXPECT_FLOAT_EQ(model.beam[1].XS, 200.0f);
    EXPECT_FLOAT_EQ(model.beam[1].YS, 100.0f);
    EXPECT_FLOAT_EQ(model.beam[1].xs, -1.0f);

    set_node_place(model, 1, 10, 20, 30);
    EXPECT_EQ(model.node[1].flag, 2);
    EXPECT_FLOAT_EQ(model.beam[0].yl, 20.0f);
    EXPECT_FLOAT_EQ(model.beam[1].zs, 30.0f);
    draw(200, 100, 400, 100);
    EXPECT_EQ(marks(), "ken");
    EXPECT_FLOAT_EQ(model.beam[2].xs, 10.0f);
    EXPECT_EQ(find_model_fault(model, true), nullptr);
    EXPECT_EQ(count_sketch(model).missing_nodes, 3);
}

TEST_F(Sketch, SnapsToTheFirstNodeWithinTheRadius) {
    const struct {
        const char* name;
        float X, Y;
        int noj;
    } ends[] = {{"below", 90.01f, 100, 1},
                {"at", 90, 100, 4},
                {"two near", 109, 100, 1},
                {"only the second", 110, 100, 2},
                {"slanting", 107.1f, 107.1f, 4}};
    for (const auto& [name, X, Y, noj] : ends) {
        reset_model(model);
        draw(100, 100, 115, 100);
        draw(300, 300, X, Y);
        EXPECT_EQ(model.beam[1].noj, noj) << name;
    }
}

TEST_F(Sketch, FindsTheFirstMemberOnALine) {
    draw(100, 100, 200, 100);
    draw(100, 200, 200, 300);
    draw(150, 50, 150, 250);
    const struct {
        const char* name;
        float x1, y1, x2, y2;
        int beam;
    } lines[] = {{"through", 120, 90, 120, 110, 0},
                 {"at its end", 200, 90, 200, 110, 0},
                 {"beyond its end", 200.1f, 90, 200.1f, 110, -1},
                 {"touching", 170, 110, 170, 100, 0},
                 {"short of it", 170, 110, 170, 100.1f, -1},
                 {"parallel upon it", 100, 100, 140, 100, -1},
                 {"second and third", 140, 250, 160, 250, 1}};
    for (const auto& line : lines) {
        SheetPoint at{};
        EXPECT_EQ(search_cross_beam(model, line.x1, line.y1, line.x2, line.y2, at), line.beam)
            << line.name;
        EXPECT_TRUE(line.beam != 0 || same_float(at.Y, 100.0f));
    }
}

TEST_F(Sketch, OnlyASingleLeftClickActs) {
    sheet_.press(TegakiSheet::right_button, {1, 1});
    EXPECT_EQ(sheet_.release({1, 1}).event, SheetEvent::none);
    sheet_.press(TegakiSheet::right_button, {1, 1});
    sheet_.press(TegakiSheet::left_button, {1, 1});
    sheet_.release({1, 1});
    sheet_.release({1, 1});
    EXPECT_EQ(model.N_Node, 0);
    click(100, 100);
    sheet_.press(TegakiSheet::right_button, {300, 300});
    sheet_.release({300, 300});
    EXPECT_FLOAT_EQ(sheet_.band()->X, 100.0f) << "the band still starts at the first end";
    click(200, 100);
    EXPECT_EQ(model.N_Beam, 1);
}

TEST_F(Sketch, SecondEndOnTheOwnFirstNode) {
    draw(100, 100, 105, 100);
    ASSERT_EQ(model.N_Beam, 1);
    EXPECT_EQ(model.N_Node, 1);
    EXPECT_EQ(model.beam[0].noi, 1);
    EXPECT_EQ(model.beam[0].noj, 1);
    EXPECT_EQ(model.node[0].flag, 1);
    set_node_place(model, 0, 5, 6, 7);
    EXPECT_FLOAT_EQ(model.beam[0].xs, 5.0f);
    EXPECT_FLOAT_EQ(model.beam[0].xl, -1.0f) << "only the start follows";
}

TEST_F(Sketch, GivingUpTakesBackWhatTheFirstEndDid) {
    EXPECT_FALSE(sheet_.give_up());
    click(100, 100);
    EXPECT_TRUE(sheet_.give_up());
    EXPECT_EQ(model.N_Node, 0);
    draw(100, 100, 200, 100);
    click(200, 100);
    EXPECT_EQ(model.node[1].flag, 1);
    sheet_.set_mode(SheetMode::remove); // gives up, too
    EXPECT_EQ(model.node[1].flag, 0);
    EXPECT_EQ(model.N_Node, 2);
    sheet_.press(TegakiSheet::left_button, {150, 50});
    ASSERT_TRUE(sheet_.band().has_value());
    EXPECT_TRUE(sheet_.give_up());
    EXPECT_EQ(sheet_.release({150, 150}).event, SheetEvent::none);
    EXPECT_EQ(model.N_Beam, 1);
}

TEST_F(Sketch, DeletionKeepsUnknownPlacesUnknown) {
    draw(100, 100, 200, 100);
    draw(200, 100, 300, 100);
    draw(300, 100, 400, 100);
    set_node_place(model, 2, 1, 2, 3);
    sheet_.set_mode(SheetMode::remove);
    EXPECT_EQ(drag(150, 50, 150, 60).event, SheetEvent::none);
    expect_message("該当する部材が見つからない");
    EXPECT_EQ(drag(150, 50, 150, 150).event, SheetEvent::removed);
    ASSERT_EQ(model.N_Beam, 2);
    ASSERT_EQ(model.N_Node, 3);
    EXPECT_FLOAT_EQ(model.node[0].x, -1.0f);
    EXPECT_FLOAT_EQ(model.node[1].y, 2.0f) << "a known place is kept";
    EXPECT_EQ(find_model_fault(model, false), nullptr);
    // The rebuilt nodes may read 2 though no place was entered: they count as missing all the same.
    model.node[0].flag = 2;
    EXPECT_TRUE(is_missing(model.node[0]));
}

TEST_F(Sketch, NothingIsWrittenPastATable) {
    model.N_Node = node_capacity;
    click(-500, -500);
    EXPECT_FALSE(sheet_.is_half_drawn());
    model.N_Node = 0;
    model.N_Beam = beam_capacity;
    click(100, 100);
    EXPECT_EQ(model.N_Node, 0);
    expect_messages({"節点が多すぎます（最大 10000 個）", "部材が多すぎます（最大 10000 本）"});
}

} // namespace
} // namespace kigumi
