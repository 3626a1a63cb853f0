#include "files/jiku.h"

#include "base/codepage.h"
#include "model/members.h"
#include "model/validate.h"
#include "solid/solid.h"
#include "support.h"

namespace kigumi {
namespace {

class Jiku : public test::CoreTest {
  protected:
    void add(float xs, float ys, float zs, float xl, float yl, float zl, float haba, float atumi,
             int kind) {
        append_beam(model, {xs, ys, zs}, {xl, yl, zl}, haba, atumi, kind, 2);
    }
    std::string written() {
        const fs::path path = work_file(work_dir, "frame.jik");
        EXPECT_EQ(save_jiku_data(model, path, {}), 0);
        return from_cp932(read_file(path).value_or("")).value_or("(no text)");
    }
    int load(std::string_view bytes) {
        EXPECT_EQ(save_file(work_file(work_dir, "read.jik"), bytes), 0);
        return load_jiku_data(model, solids, work_dir, work_file(work_dir, "read.jik"));
    }
    std::string heights() {
        return from_cp932(read_file(work_file(work_dir, "Youseki.dat")).value_or("(none)"))
            .value_or("");
    }
};

constexpr const char* member = "1 0 0 50 90 0 50 10 10\r\n";

TEST_F(Jiku, GroupsVolumesAndHeaders) {
    add(0, 0, 0, 100, 0, 0, 10, 10, kind_none);     // the first group has no header
    add(0, 0, 0, 0, 300, 0, 10, 20, kind_post);     // 0.06
    add(0, 0, 0, 0, 0, -100, 12.5f, 8, kind_post);  // 0.01
    add(0, 0, 0, 300, 400, 0, 10, 10, kind_purlin); // 0.05
    add(0, 0, 0, 0, 0.5f, 0, 10, 10, kind_post);    // the header recurs
    add(0, 0, 0, 100, 0, 0, 10, 10, 13);            // no such category
    add(0, 0, 0, 100, 0, 0, 10, 10, -1);
    test::expect_golden("files/groups.jik.txt", written());
}

TEST_F(Jiku, EmptyModelAndSelection) {
    EXPECT_EQ(written(), "// 以上の積算容量 小計 volume   0.000 Total Volume   0.000\r\n999\r\n");
    add(0, 0, 0, 1, 0, 0, 10, 10, kind_post);
    add(0, 0, 0, 2, 0, 0, 10, 10, kind_frame);
    const fs::path path = work_file(work_dir, "selection.jik");
    ASSERT_EQ(save_jiku_selection(model, path, {1}, {0, 0, 5}), 0);
    EXPECT_EQ(read_file(path), "1 0.000000 0.000000 5.000000 2.000000 0.000000 5.000000 10.000000 "
                               "10.000000\r\n999\r\n");
}

TEST_F(Jiku, CommentsBlanksAndLineEnds) {
    const std::string long_comment = "// " + std::string(1000, 'x');
    EXPECT_EQ(load("\xEF\xBB\xBF"
                   "// heading\r\n"
                   "\r\n   \t \r\n"
                   "  // indented\n"
                   "1 0 0 50 90 0 50 10 10\n"
                   "\t 1\t90 0\t50  90 90.5 +50 1e1 10.0 behind\r\n" +
                   long_comment +
                   "\r\n//\r\n"
                   "1 0 0 50 0 0 -0.5 9 9"),
              3);
    EXPECT_EQ(model.N_Node, 4);
    EXPECT_EQ(model.beam[1].noi, 2);
    EXPECT_FLOAT_EQ(model.beam[1].yl, 90.5f);
    const Beam& last = model.beam[2];
    EXPECT_EQ(last.no, 3);
    EXPECT_EQ(last.size, -1);
    EXPECT_EQ(last.mat, -1);
    EXPECT_EQ(last.kind, kind_none);
    EXPECT_EQ(last.flag, 0);
    EXPECT_STREQ(last.idi, "");
    EXPECT_FLOAT_EQ(last.haba, 9.0f);
    EXPECT_FLOAT_EQ(solids.X_MAX, 90.0f);
    EXPECT_FLOAT_EQ(solids.Y_MAX, 90.5f);
    EXPECT_FLOAT_EQ(solids.Z_MIN, -0.5f);
    EXPECT_EQ(find_model_fault(model, false), nullptr);
}

TEST_F(Jiku, NothingIsReadAfterTheEndAndLinesMayBeLong) {
    EXPECT_EQ(load(std::string(member) + "999 end\r\n4 noise"), 1);
    reset_model(model);
    EXPECT_EQ(load(std::string(member) + "  999\r\n4 noise"), 1);
    reset_model(model);
    EXPECT_EQ(load(member), 1); // the end may be missing
    reset_model(model);
    std::string longest = "1 0 0 50 90 0 50 10 10";
    longest.insert(1, 255 - longest.size(), ' ');
    EXPECT_EQ(load(longest), 1);
}

TEST_F(Jiku, RoundMembersAndUnits) {
    EXPECT_EQ(load("3 0 0 0 0 0 100 20 20\r\n"
                   "// 屋根柱 is no label here\r\n"
                   "2 1 1 90 45 12 12 10 9 9 0 0 100\r\n" +
                   to_cp932("// 母屋\r\n") + "1 0 0 100 9 0 100 12 12\r\n"),
              1 + 36 + 1);
    EXPECT_EQ(model.beam[0].kind, kind_none);
    EXPECT_EQ(model.beam[1].kind, kind_diagonal);
    // A prism of radius 10 for the round one, boxes for the unit, none for the straight one.
    EXPECT_EQ(solids.n_trio, 24 + 12 * 36);
    EXPECT_NEAR(solids.trio[0].vertex[0][0] * solids.trio[0].vertex[0][0] +
                    solids.trio[0].vertex[0][1] * solids.trio[0].vertex[0][1],
                100.0, 1e-2);
    EXPECT_EQ(model.beam[37].kind, kind_purlin);
    // Only the straight line stands in the height table; all members are counted.
    EXPECT_EQ(heights(), "   部材総数    38 高さ区分数 1\n"
                         "    No    高さ   部材数 容積　積算値\n"
                         "     1    100.0     1   0.001   0.001\n");
}

TEST_F(Jiku, HeightsAreGatheredAndSorted) {
    EXPECT_EQ(load("1 0 0 240 100 0 240 10 10\n"       // 0.010
                   "1 0 0 100 200 0 100 10 10\n"       // 0.020
                   "1 0 0 100.05 300 0 100.05 10 10\n" // joins 100.0: 0.030
                   "1 0 0 100.1 400 0 100.1 10 10\n"   // an entry of its own
                   "1 0 0 0 0 0 200 10 10\n"           // its mean is 100: 0.020
                   "1 0 0 -5 100 0 -5 10 10\n"
                   "1 0 0 500000 100 0 500000 10 10\n" // equal however high they lie
                   "1 0 0 500000 0 100 500000 10 10\n"
                   "1 0 0 1e30 100 0 1e30 10 10\n"),
              9);
    EXPECT_EQ(heights(), "   部材総数     9 高さ区分数 6\n"
                         "    No    高さ   部材数 容積　積算値\n"
                         "     1     -5.0     1   0.010   0.010\n"
                         "     2    100.0     3   0.070   0.080\n"
                         "     3    100.1     1   0.040   0.120\n"
                         "     4    240.0     1   0.010   0.130\n"
                         "     5  500000.0     2   0.020   0.150\n"
                         "     6  1000000015047466219876688855040.0     1   0.010   0.160\n");
}

TEST_F(Jiku, FirstOfTwoNearHeightsIsTaken) {
    EXPECT_EQ(load("1 0 0 10.16 1 0 10.16 1 1\n1 0 0 10 1 0 10 1 1\n1 0 0 10.08 1 0 10.08 1 1\n"),
              3);
    EXPECT_NE(heights().find("     2     10.2     2 "), std::string::npos) << heights();
}

TEST_F(Jiku, SummaryThatCannotBeWrittenIsToldAndTheModelStays) {
    fs::create_directories(work_file(work_dir, "Youseki.dat"));
    EXPECT_EQ(load(member), 1);
    expect_message("Error: Unable to open YOUSEKI_FILE");
}

TEST_F(Jiku, BrokenFileIsRefusedWithItsReason) {
    const char* const bad_member = " 行目: 座標 6 個と巾・厚みの数値が必要です";
    const std::pair<const char*, const char*> files[] = {
        {"type-4", "最初の文字は '1' or '2' or '3' or '999'"},
        {"token-too-long", "最初の文字は '1' or '2'  or '3' or '999'"},
        {"number-missing", "2 行目: 座標 6 個"},
        {"coordinate-nan", bad_member},
        {"unit-cut-off", "単位行には 13 個の数値が必要です"},
        {"unit-too-large", "部材が多すぎます"},
        {"round-without-section", bad_member},
        {"line-too-long", "1 行目: 行が長すぎます"},
        {"no-members", "部材の行がありません"}};
    for (const auto& [file, message] : files) {
        SCOPED_TRACE(file);
        reset_model(model);
        EXPECT_EQ(load_jiku_data(model, solids, work_dir,
                                 test::broken_file(text_format("jik-%s.jik", file))),
                  -1);
        const auto messages = take_messages();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_NE(messages[0].find(message), std::string::npos) << messages[0];
        EXPECT_EQ(model.N_Beam, file == std::string("number-missing") ? 1 : 0);
        EXPECT_EQ(find_model_fault(model, false), nullptr);
        EXPECT_EQ(heights(), "(none)");
    }
}

} // namespace
} // namespace kigumi
