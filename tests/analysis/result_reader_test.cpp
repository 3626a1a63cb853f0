#include "analysis/result_reader.h"

#include "results_support.h"

namespace kigumi::test {

namespace {

using ReaderTest = CoreTest;

// Three nodes out of order, three members with a tie.
constexpr const char* listing = R"(3
1 30 400.0 0.0 300.0 X01Y00Z01-long
2 10 0.0 0.0 0.0 X00Y00Z00
3 20 0.0 0.0 3.0e2 X00Y00Z01
3
7 2 10 X00Y00Z00 3 20 X00Y00Z01 50.0
1 2 3 4 5 6
7 8 9 10 11
8 3 20 X00Y00Z01 1 30 X01Y00Z01-other -50
1 2 3 4 5 6
7 8 -9 10 11
9 2 10 X00Y00Z00 1 30 X01Y00Z01 -2.0E+02
1 2 3 4 5 6 7 8 0 10 11
)";

TEST_F(ReaderTest, ReadsAListing) {
    ASSERT_EQ(read_frameslv(result, listing), 3);
    EXPECT_EQ(result.setuten[0].OldNo, 10);
    EXPECT_EQ(result.setuten[2].OldNo, 30);
    EXPECT_STREQ(result.setuten[2].pname, "X01Y00Z01-long");
    EXPECT_FLOAT_EQ(result.force_max, 200.0f);

    const int order[] = {9, 7, 8};
    const float percents[] = {100.0f, 25.0f, 25.0f};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(result.stress[i].no, order[i]);
        EXPECT_FLOAT_EQ(result.stress[i].percent, percents[i]);
    }
    const Stress& s = result.stress[2];
    EXPECT_EQ(s.old_noi, 20);
    EXPECT_STREQ(s.jname, "X01Y00Z01-other");
    EXPECT_FLOAT_EQ(s.zi, 300.0f);
    EXPECT_FLOAT_EQ(s.xj, 400.0f);
    EXPECT_FLOAT_EQ(s.p1, 1.0f);
    EXPECT_FLOAT_EQ(s.yv2, 6.0f);
    EXPECT_FLOAT_EQ(s.ym1, 9.0f);
    EXPECT_FLOAT_EQ(s.ym2, 10.0f);
    EXPECT_FLOAT_EQ(s.zm, 11.0f);
}

TEST_F(ReaderTest, FindsTheFirstOfEqualNamesByOldNo) {
    EXPECT_EQ(read_frameslv(result,
                            "2 1 9 1 0 0 NODE00001b 2 4 2 0 0 NODE00001a\n"
                            "1 1 1 4 NODE00001x 1 9 NODE00001b 1.0 1 2 3 4 5 6 7 8 9 10 11"),
              -1);
    expect_message("節点Jが見つかりません");
    ASSERT_EQ(read_frameslv(result, "2 1 9 1 0 0 NODE00001b 2 4 2 0 0 NODE00001a 0"), 0);
    EXPECT_EQ(find_setuten(result, "NODE00001zzz")->OldNo, 4);
    EXPECT_EQ(find_setuten(result, "NODE0000"), nullptr);
    EXPECT_EQ(find_setuten(result, 9)->OldNo, 9);
    EXPECT_EQ(find_setuten(result, 5), nullptr);
    EXPECT_EQ(matched_name("一二三四五六七八九十"), "一二三四五六七八九");
    ASSERT_EQ(read_frameslv(result, "1 1 1 0 0 0 \x92\x8c\x93\xaa 0"), 0);
    EXPECT_STREQ(result.setuten[0].pname, "柱頭");
}

TEST_F(ReaderTest, RefusesAMemberWhoseNameAndNumberDisagree) {
    const std::string nodes = "2 1 1 0 0 0 A 2 2 1 0 0 B 1 1 ";
    const std::string rest = " 1.0 1 2 3 4 5 6 7 8 9 10 11";
    EXPECT_EQ(read_frameslv(result, nodes + "1 2 A 2 2 B" + rest), -1);
    EXPECT_EQ(read_frameslv(result, nodes + "1 1 A 2 2 C" + rest), -1);
    EXPECT_EQ(read_frameslv(result, nodes + "1 1 A 2 2 B" + rest), 1);
    expect_messages({"節点Iが見つかりません", "節点Jが見つかりません"});
}

TEST_F(ReaderTest, GivesNoPercentWithoutAnyForce) {
    ASSERT_EQ(read_frameslv(result, "2 1 1 0 0 0 A 2 2 1 0 0 B 1 1 1 1 A 2 2 B -0.0 "
                                    "1 2 3 4 5 6 7 8 9 10 11"),
              1);
    EXPECT_FLOAT_EQ(result.force_max, 0.0f);
    EXPECT_FLOAT_EQ(result.stress[0].percent, 0.0f);
}

TEST_F(ReaderTest, OrdersDisplacementsByLength) {
    ASSERT_EQ(read_dsp(result, "3 1 1 A 1 0 0 .1 .2 .3 2 2 B 0 -3 4 0 0 0 3 3 C 0 0 -1 0 0 0"), 0);
    EXPECT_EQ(result.N_Setuten, 3);
    EXPECT_STREQ(result.disp[0].name, "B");
    EXPECT_FLOAT_EQ(result.disp[0].mag, 5.0f);
    EXPECT_STREQ(result.disp[1].name, "A");
    EXPECT_FLOAT_EQ(result.disp[1].rad_z, 0.3f);
    EXPECT_STREQ(result.disp[2].name, "C");
}

TEST_F(ReaderTest, TakesFullTablesAndNoMore) {
    ASSERT_EQ(read_frameslv(result, listing_of_row(3000)), 2999);
    ASSERT_EQ(read_dsp(result, displacements_of_row(3000)), 0);
    EXPECT_EQ(result.stress[0].no, 2999);
    EXPECT_EQ(read_frameslv(result, listing_of_row(3001)), -1);
    EXPECT_EQ(read_dsp(result, displacements_of_row(3001)), -1);
    EXPECT_EQ(result.N_Stress, 2999);
    EXPECT_EQ(result.N_Setuten, 3000);
    expect_messages({"結果の節点の数 3001 が上限 3000 を超えているため読み込めません",
                     "変位の節点の数 3001 が上限 3000 を超えているため読み込めません"});
}

TEST_F(ReaderTest, BoundsTheLevels) {
    std::string levels = "100";
    for (int i = 0; i < 100; ++i) {
        levels += text_format(" %d", i);
    }
    Levels parsed;
    ASSERT_EQ(parse_levels(levels + " 0 1 5.0", parsed), 0);
    store_levels(model, parsed);
    EXPECT_EQ(model.N_X, 100);
    EXPECT_EQ(model.N_Y, 0);
    EXPECT_FLOAT_EQ(model.Zval[0], 5.0f);
    EXPECT_EQ(parse_levels("0 101 1 2 3", parsed), -1);
    expect_message("Ｙ座標の数 101 が上限 100 を超えているため読み込めません");
    EXPECT_EQ(parse_levels("0 0 -1", parsed), -1);
    EXPECT_EQ(parse_levels("0 0 1", parsed), -1);
    EXPECT_EQ(parse_levels("", parsed), -1);
}

TEST_F(ReaderTest, RefusesBrokenFilesAndLeavesTheTablesAsTheyWere) {
    ASSERT_EQ(read_frameslv(result, listing), 3);
    for (const char* name :
         {"lst-cut-off", "lst-force-nan", "lst-name-not-cp932", "lst-count-overflow"}) {
        std::string reason;
        const auto text = read_file(broken_file(std::string(name) + ".lst"), &reason);
        ASSERT_TRUE(text.has_value()) << reason;
        EXPECT_EQ(read_frameslv(result, *text), -1) << name;
        EXPECT_EQ(result.N_Stress, 3);
        EXPECT_EQ(result.N_Setuten, 3);
        EXPECT_EQ(result.stress[0].no, 9);
        EXPECT_EQ(result.setuten[0].OldNo, 10);
    }
    ASSERT_EQ(read_dsp(result, "1 1 1 A 1 0 0 0 0 0"), 0);
    for (const char* text :
         {"", "1 1 1 A 1 0 0 0 0", "1 1 1 A 1 0 inf 0 0 0", "-1", "1 x 1 A 1 0 0 0 0 0",
          "1 1 1 A 3e38 3e38 3e38 0 0 0", "1.5 1 1 A 1 0 0 0 0 0"}) {
        EXPECT_EQ(read_dsp(result, text), -1) << text;
    }
    EXPECT_EQ(result.N_Setuten, 1);
    EXPECT_FLOAT_EQ(result.disp[0].mag, 1.0f);
}

} // namespace

} // namespace kigumi::test
