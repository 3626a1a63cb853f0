#include "export/win3d.h"

#include "solid/solid.h"
#include "solid/solid_support.h"
#include "support.h"

namespace kigumi::test {

namespace {

class Win3dTest : public CoreTest {
  protected:
    fs::path out() const { return work_file(work_dir, "out.dat"); }
};

TEST_F(Win3dTest, BoxOfOneMember) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    ASSERT_EQ(save_win3d(solids, out()), 0);
    expect_golden("export/box.win3d", read_file(out()).value_or(""));
}

TEST_F(Win3dTest, FailuresLeaveNoFile) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    EXPECT_EQ(save_win3d(solids, work_file(work_dir, "no_folder") / "out.dat"), -1);
    expect_message("Error: Unable to open OUT_FILE");
    solids.saved = false; // changed since they were built
    EXPECT_EQ(save_win3d(solids, out()), -1);
    expect_message("Error: Unable to open TRIO_FILE 04");
    EXPECT_FALSE(fs::exists(out()));
}

TEST_F(Win3dTest, AnothersFileIsNotExported) {
    add_member(model, {0, 0, 0}, {100, 0, 0});
    ASSERT_EQ(build_trio_file(model, solids, work_dir), 0);
    ASSERT_EQ(save_file(work_file(work_dir, "TRIO.DAT"), std::string(272 * 12, '\1')), 0);
    ASSERT_EQ(save_win3d(solids, out()), 0);
    expect_golden("export/box.win3d", read_file(out()).value_or(""));
}

} // namespace

} // namespace kigumi::test
