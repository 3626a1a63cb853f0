#include "model/roles.h"

#include "model/names.h"
#include "model/nodes.h"
#include "support.h"

namespace kigumi {
namespace {

// The nodes of a 3 × 2 × 2 grid: node 1 is X00Y00Z00, then x, y, z run in turn.
class Roles : public test::CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        for (int z = 0; z < 2; ++z) {
            for (int y = 0; y < 2; ++y) {
                for (int x = 0; x < 3; ++x) {
                    find_or_add_node(model, 90.0f * x, 90.0f * y, 240.0f * z);
                }
            }
        }
        save_level_name(model);
        clear_roles(model);
    }
    std::string flags() {
        std::string text;
        for (int i = 0; i < model.N_Node; ++i) {
            text += model.node[i].flag == role_found ? "*" : std::to_string(model.node[i].flag);
        }
        return text;
    }
};

TEST_F(Roles, PickingTogglesAndTakesOver) {
    const struct {
        int before, picked, after;
    } cases[] = {{0, 1, 1}, {1, 1, 0}, {2, 1, 1}, {0, 2, 2}, {1, 2, 2}, {2, 2, 0}};
    for (const auto& [before, picked, after] : cases) {
        model.node[3].flag = before;
        pick_role(model, 3, picked);
        EXPECT_EQ(model.node[3].flag, after) << before << " picked as " << picked;
    }
}

TEST_F(Roles, AFullTableRefusesAndKeepsTheOtherRecord) {
    for (int i = 0; i < fix_capacity; ++i) {
        append_fix(model, 1, 1, 1, 1);
    }
    ASSERT_EQ(put_load(model, 6, 0.0f, 0.0f, -5.0f), 0);
    EXPECT_EQ(put_fix(model, 6, 1, 1, 1), -1);
    expect_message("固定節点が多すぎます（最大 1000 個）");
    EXPECT_EQ(model.N_Load, 1);
    EXPECT_EQ(model.node[6].flag, role_loaded);
    EXPECT_EQ(put_fix(model, 0, 0, 0, 1), 0) << "a record of its own is still replaced";
    while (model.N_Load < load_capacity) {
        append_load(model, 2, 0.0f, 0.0f, -1.0f);
    }
    EXPECT_EQ(append_load(model, 2, 0.0f, 0.0f, -1.0f), -1);
    expect_message("荷重節点が多すぎます（最大 1000 個）");
    EXPECT_EQ(model.N_Load, load_capacity);
}

TEST_F(Roles, SearchKeepsTheRolesAndBoundsAreInclusive) {
    model.node[0].flag = role_fixed;
    model.node[1].flag = role_loaded;
    EXPECT_EQ(find_nodes(model, {{{0, 1}, {0, 0}, {0, 0}}}), 2);
    EXPECT_EQ(role_of(model, 1), role_loaded);
    EXPECT_EQ(find_nodes(model, {{{1, 2}, {0, 1}, {0, 0}}}), 4);
    EXPECT_EQ(flags(), "1**0**000000");
    pick_role(model, 1, role_fixed);
    EXPECT_EQ(flags(), "1**0**000000") << "a picked node stays found";
    forget_found(model);
    EXPECT_EQ(flags(), "110000000000");
    set_name(model.node[0].id, "A0");
    EXPECT_EQ(find_nodes(model, all_levels(model)), 11) << "a name without levels is not found";
}

TEST_F(Roles, IdSearchTakesNineCharacters) {
    set_name(model.node[7].id, "X01Y00Z01-A");
    const std::pair<const char*, int> cases[] = {
        {"X02Y01Z00", 5},         {"X02Y01Z00zzz", 5},
        {"X01Y00Z01", 7},         {"X09Y00Z00", -1},
        {"X02Y01Z", -1},          {"X02Y01", bad_node_id},
        {"", bad_node_id},        {"x02y01z00", bad_node_id},
        {"X2Y01Z00", bad_node_id}};
    for (const auto& [text, found] : cases) {
        EXPECT_EQ(find_node_id(model, text), found) << text;
    }
}

} // namespace
} // namespace kigumi
