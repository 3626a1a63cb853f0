#include "results/displacement.h"

#include "results_support.h"

namespace kigumi::test {

namespace {

class DisplacementTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        make_portal_result(result);
        result.disp[1].disp_x = 1.0f;
        result.disp[1].disp_z = -0.5f;
    }

    void expect_failed() {
        EXPECT_EQ(get_new_beam(result, 1.0f), -1);
        expect_message("部材の検索に失敗しました");
    }
};

TEST_F(DisplacementTest, NeverAccumulates) {
    ASSERT_EQ(get_new_beam(result, 10.0f), 0);
    EXPECT_FLOAT_EQ(result.heni_beam[0].xl, 10.0f);
    ASSERT_EQ(get_new_beam(result, 5.0f), 0);
    EXPECT_FLOAT_EQ(result.heni_beam[0].xl, 5.0f);
    EXPECT_FLOAT_EQ(result.heni_beam[0].zl, 297.5f);
    EXPECT_FLOAT_EQ(result.heni_beam[1].xs, 5.0f);
    EXPECT_FLOAT_EQ(result.heni_beam[0].zs, 0.0f);
    EXPECT_EQ(result.heni_node[1].no, 2);
}

TEST_F(DisplacementTest, FailsWhereAnEndHasNoDisplacement) {
    ASSERT_EQ(get_new_beam(result, 1.0f), 0);
    result.disp[3].old_no = 99;
    result.heni_beam[0].xs = -1.0f;
    expect_failed();
    EXPECT_EQ(result.heni_node[3].no, 0);
    EXPECT_FLOAT_EQ(result.heni_beam[0].xs, 0.0f);
    result.disp[3].old_no = 2; // an end is found twice
    set_name(result.disp[3].name, "X00Y00Z01");
    expect_failed();
    result.disp[0] = result.disp[3]; // and the other end not at all
    result.N_Stress = 1;
    expect_failed();
    result.stress[0].old_noj = result.stress[0].old_noi;
    expect_failed();
}

TEST_F(DisplacementTest, GoesOnAfterAnotherName) {
    set_name(result.disp[1].name, "X00Y00Z09tail");
    set_name(result.disp[2].name, "X01Y00Z01tail");
    EXPECT_EQ(get_new_beam(result, 1.0f), 0);
    expect_message("エラー  No     2 変位節点名  X00Y00Z09tail 原節点名 X00Y00Z01");
    EXPECT_STREQ(result.heni_node[1].name, "X00Y00Z01");
}

TEST_F(DisplacementTest, TakesTheLastOfSeveralNodesWithOneNumber) {
    add_setuten(result, 2, "X00Y00Z01", 0.0f, 0.0f, 500.0f);
    result.disp[4].old_no = 77;
    ASSERT_EQ(get_new_beam(result, 1.0f), 0);
    EXPECT_FLOAT_EQ(result.heni_beam[0].zl, 499.5f);
}

} // namespace

} // namespace kigumi::test
