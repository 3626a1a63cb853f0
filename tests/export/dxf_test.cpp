#include "export/dxf.h"

#include "base/format.h"
#include "draw/segment_file.h"
#include "support.h"

#include <map>

namespace kigumi::test {

namespace {

class DxfTest : public CoreTest {
  protected:
    // A picture with this window; segments as given.
    void store(const World& world, const std::vector<Segment>& segments) {
        DrawArea area;
        area.world = world;
        area.crt = {0, 0, 400, 300};
        ASSERT_EQ(save_segment_file(work_dir, area, segments), 0);
    }
    fs::path out() const { return work_file(work_dir, "out.dxf"); }
    bool has(const std::string& lines) const {
        return read_file(out()).value_or("").find(lines) != std::string::npos;
    }
};

TEST_F(DxfTest, WritesTheTemplateAndALineASegment) {
    store({-120.5f, -80, 120.5f, 80}, {{-100, -50, 100, 50}, {0.1f, 1.0f / 3, 1e6f, -2.25f}});
    ASSERT_EQ(make_dxf_file(work_dir, out(), 1), 0);
    expect_golden("export/two_lines.dxf", read_file(out()).value_or(""));
}

TEST_F(DxfTest, EdgeNearZeroGivesThousandths) {
    const std::pair<World, float> worlds[] = {{{0, -5, 5, 5}, 1000},
                                              {{-5, -5, 5, 0.09f}, 1000},
                                              {{-5, -0.09f, 5, 5}, 1000},
                                              {{-5, -5, 0.1f, 5}, 1},
                                              {{-20000, -20000, 20000, 20000}, 1}};
    for (const auto& [world, scale] : worlds) {
        store(world, {{1.5f, 2, 3, 4}});
        ASSERT_EQ(make_dxf_file(work_dir, out(), 2), 0);
        EXPECT_TRUE(has(text_format(" 20\r\n %f\r\n  0\r\n", world.ymax * scale)));
        EXPECT_TRUE(has(text_format(" 10\r\n %f\r\n", 1.5f * scale)));
    }
}

TEST_F(DxfTest, ColoursByChoice) {
    store({-10, -10, 10, 10}, {{1, 2, 3, 4}});
    const std::map<int, int> numbers{{1, 4}, {2, 7}, {3, 3}, {4, 2}, {5, 6},
                                     {6, 5}, {0, 7}, {7, 7}, {-1, 7}};
    for (const auto& [choice, number] : numbers) {
        ASSERT_EQ(make_dxf_file(work_dir, out(), choice), 0);
        EXPECT_TRUE(has(text_format(" 62\r\n    %d\r\n 10\r\n", number))) << choice;
    }
}

TEST_F(DxfTest, FailuresLeaveNoFile) {
    EXPECT_NE(make_dxf_file(work_dir, out(), 2), 0);
    expect_message("Error: Unable to open TEMP_FILE");
    EXPECT_FALSE(fs::exists(out()));
    ASSERT_EQ(save_file(work_file(work_dir, "TEMP.DAT"), std::string(33, '\0')), 0);
    EXPECT_NE(make_dxf_file(work_dir, out(), 2), 0);
    expect_message("Error: Unable to open TEMP_FILE");
    store({-10, -10, 10, 10}, {});
    EXPECT_NE(make_dxf_file(work_dir, work_file(work_dir, "no_folder") / "out.dxf", 2), 0);
    expect_message("Error: Unable to open DXF_FILE");
}

} // namespace

} // namespace kigumi::test
