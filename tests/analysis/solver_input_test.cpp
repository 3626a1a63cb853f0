#include "analysis/solver_input.h"
#include "analysis/solver_roles.h"

#include "model/roles.h"
#include "model/sections.h"
#include "results_support.h"

namespace kigumi::test {

namespace {

class SolverInputTest : public CoreTest {
  protected:
    std::string written(int (*save)(const Model&, const fs::path&)) {
        EXPECT_EQ(save(model, work_file(work_dir, "out.txt")), 0);
        return read_file(work_file(work_dir, "out.txt")).value_or("(no file)");
    }
};

TEST_F(SolverInputTest, WritesBothFilesByteForByte) {
    make_post(model);
    append_fix(model, 2, 1, 0, 1);
    model.beam[0].atumi = 20.0f;
    check_size(model);
    expect_golden("post.ydu", written(save_honegra));
    set_name(model.node[1].id, "A1");
    set_name(model.beam[0].idj, "LongerThanNine");
    expect_golden("post.bon", written(save_honegumi));
    // A Japanese name is padded by its bytes in the file.
    set_name(model.node[1].id, "柱頭");
    const std::string text = written(save_honegumi);
    EXPECT_NE(text.find("     300.0      \x92\x8c\x93\xaa\r\n"), std::string::npos) << text;
}

TEST_F(SolverInputTest, ReadsSupportsAndLoadsBackFromAnyForm) {
    make_post(model);
    append_fix(model, 2, 1, 0, 1);
    const std::string own = written(save_honegumi);
    const std::string by_hand = "2 0 300\n0\n\n1\n0\n2,1\n1,1,2,1,1,0\n1\n1 1 1 1 1\n1\n1 1 0 0\n"
                                "2\n1 0 0 0\n2 0 0 300\n\n2\n1 111111\n2,101000\n"
                                "2\n,2,0,0,-200,0,0,0\nA1 1 5 0 0 0 0 0";
    for (const std::string& text : {own, by_hand}) {
        ASSERT_EQ(save_file(work_file(work_dir, "FRAMESLV.IN"), text), 0);
        ASSERT_EQ(load_solver_roles(model, work_dir), 0) << text;
        ASSERT_EQ(model.N_Fix, 2);
        EXPECT_EQ(model.fix[1].no, 2);
        EXPECT_EQ(model.fix[1].iy, 0);
        EXPECT_EQ(model.fix[1].iz, 1);
        ASSERT_GE(model.N_Load, 1);
        EXPECT_EQ(model.load[0].no, 2);
        EXPECT_FLOAT_EQ(model.load[0].fz, -200.0f);
    }
    EXPECT_EQ(model.load[1].no, 1);
    for (size_t length = 0; length + 1 < by_hand.size(); ++length) {
        ASSERT_EQ(save_file(work_file(work_dir, "FRAMESLV.IN"), by_hand.substr(0, length)), 0);
        EXPECT_EQ(load_solver_roles(model, work_dir), -1) << length;
        EXPECT_EQ(model.N_Fix + model.N_Load, 0);
    }
}

TEST_F(SolverInputTest, ReadsTheFrameBackWhenItIsComplete) {
    const auto read = [this](const std::string& text) {
        EXPECT_EQ(save_file(work_file(work_dir, "FRAMESLV.IN"), text), 0);
        return read_solver_frame(work_dir);
    };
    EXPECT_FALSE(read_solver_frame(work_dir));
    make_post(model);
    const std::string own = written(save_honegumi);
    const auto frame = read(own);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->shape.nodes.size(), 2u);
    ASSERT_EQ(frame->members.size(), 1u);
    EXPECT_DOUBLE_EQ(frame->members[0].area, 100.0);
    EXPECT_DOUBLE_EQ(frame->members[0].length, 300.0);
    const auto changed = [&own](const char* from, const char* to) {
        std::string text = own;
        return text.replace(text.find(from), std::string_view(from).size(), to);
    };
    EXPECT_FALSE(read(changed("1     1     2     1     1", "1     1     3     1     1")));
    EXPECT_FALSE(read(changed("1     1     2     1     1", "1     1     2     2     1")));
    EXPECT_FALSE(read(changed("1.000e+02", "1.000x+02"))) << "an area that is no number";
}

TEST_F(SolverInputTest, LeavesTheOldFileWholeWhenItCannotWrite) {
    make_post(model);
    EXPECT_EQ(save_honegumi(model, work_file(work_dir, "missing/out.bon")), -1);
    EXPECT_EQ(save_honegra(model, work_file(work_dir, "missing/out.ydu")), -1);
    expect_messages({"Error: Unable to open BonFile", "Error: Unable to open GraFile"});
}

} // namespace

} // namespace kigumi::test
