#include "export/dxf.h"

#include "base/codepage.h"
#include "geometry/segment_file.h"
#include "support.h"

#include <map>

namespace kigumi::test {

namespace {

// What a reader of group codes finds in a drawing.
struct Drawing {
    std::vector<std::string> lines;
    std::vector<std::string> sections;
    std::map<std::string, int> records;               // entity and table records by name
    std::map<std::string, std::map<int, double>> ext; // $EXTMIN, $EXTMAX
    std::vector<std::map<int, std::string>> entities;
    bool ended = false;
};

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first);
}

Drawing read_drawing(const fs::path& path) {
    Drawing drawing;
    std::string text = from_cp932(read_file(path).value_or("")).value_or("");
    for (size_t at = 0, end = 0; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
        drawing.lines.push_back(text.substr(at, end - at));
    }
    EXPECT_EQ(drawing.lines.size() % 2, 0u);
    std::string section, variable;
    for (size_t i = 0; i + 1 < drawing.lines.size(); i += 2) {
        const int code = std::stoi(drawing.lines[i]);
        const std::string value = trimmed(drawing.lines[i + 1]);
        if (code == 0) {
            ++drawing.records[value];
            drawing.ended = value == "EOF";
            if (section == "ENTITIES" && value != "ENDSEC" && value != "EOF") {
                drawing.entities.emplace_back();
            }
        } else if (code == 2 && trimmed(drawing.lines[i - 1]) == "SECTION") {
            drawing.sections.push_back(section = value);
        } else if (code == 9) {
            variable = value;
        } else if (section == "HEADER") {
            drawing.ext[variable][code] = std::stod(value);
        } else if (section == "ENTITIES") {
            drawing.entities.back()[code] = value;
        }
    }
    return drawing;
}

class DxfTest : public CoreTest {
  protected:
    // A picture with this window; segments as given.
    void store(const World& world, const std::vector<Segment>& segments) {
        DrawArea area;
        area.world = world;
        area.crt = {0, 0, 400, 300};
        ASSERT_EQ(save_segment_file(area, segments), 0);
    }
    fs::path out() const { return work_file("out.dxf"); }
};

TEST_F(DxfTest, WritesTheTemplateAndALineASegment) {
    store({-120.5f, -80, 120.5f, 80}, {{-100, -50, 100, 50}, {0.1f, 1.0f / 3, 1e6f, -2.25f}});
    ASSERT_EQ(make_dxf_file(out(), 1), 0);
    expect_golden("export/two_lines.dxf", read_file(out()).value_or(""));
    const Drawing drawing = read_drawing(out());
    EXPECT_TRUE(drawing.ended);
    EXPECT_EQ(drawing.sections, (std::vector<std::string>{"HEADER", "TABLES", "ENTITIES"}));
    auto records = drawing.records;
    EXPECT_EQ(records["ENDSEC"], 3);
    EXPECT_EQ(records["TABLE"], records["ENDTAB"]);
    EXPECT_EQ(records["LTYPE"], 9);
    EXPECT_EQ(records["LAYER"], 2);
    EXPECT_EQ(records["LINE"], 2);
    ASSERT_GT(drawing.lines.size(), 274u);
    EXPECT_EQ(drawing.lines[273], "ENTITIES");
    EXPECT_EQ(drawing.lines[274], " 0");
    EXPECT_EQ(drawing.lines[35], "実線");
    for (int i = 0; i < 274; ++i) {
        EXPECT_LE(drawing.lines[i].size(), 31u) << i;
    }
    EXPECT_EQ(drawing.ext.at("$EXTMIN").at(10), -120.5);
    EXPECT_EQ(drawing.ext.at("$EXTMIN").at(20), -80);
    EXPECT_EQ(drawing.ext.at("$EXTMAX").at(10), 120.5);
    EXPECT_EQ(drawing.ext.at("$EXTMAX").at(20), 80);
    const std::map<int, std::string> second{
        {8, "0-0"},       {6, "CONTINUOUS"},      {62, "4"},        {10, "0.100000"},
        {20, "0.333333"}, {11, "1000000.000000"}, {21, "-2.250000"}};
    ASSERT_EQ(drawing.entities.size(), 2u);
    EXPECT_EQ(drawing.entities[1], second);
}

TEST_F(DxfTest, AnEmptyPictureIsAValidDrawing) {
    store({-10, -10, 10, 10}, {});
    ASSERT_EQ(make_dxf_file(out(), dxf_colour_default), 0);
    const Drawing drawing = read_drawing(out());
    EXPECT_EQ(drawing.lines.size(), 274u + 4);
    EXPECT_TRUE(drawing.entities.empty());
    EXPECT_TRUE(drawing.ended);
}

struct ScaleCase {
    World world;
    double scale;
};

class DxfScale : public DxfTest, public ::testing::WithParamInterface<ScaleCase> {};

TEST_P(DxfScale, EdgeNearZeroGivesThousandths) {
    const ScaleCase& c = GetParam();
    store(c.world, {{1.5f, 2, 3, 4}});
    ASSERT_EQ(make_dxf_file(out(), 2), 0);
    const Drawing drawing = read_drawing(out());
    EXPECT_NEAR(drawing.ext.at("$EXTMAX").at(20), c.world.ymax * c.scale, 1e-3);
    EXPECT_DOUBLE_EQ(std::stod(drawing.entities.at(0).at(10)), 1.5 * c.scale);
}

INSTANTIATE_TEST_SUITE_P(Worlds, DxfScale,
                         ::testing::Values(ScaleCase{{0, -5, 5, 5}, 1000},
                                           ScaleCase{{-5, -5, 5, 0.09f}, 1000},
                                           ScaleCase{{-5, -0.09f, 5, 5}, 1000},
                                           ScaleCase{{-5, -5, 0.1f, 5}, 1},
                                           ScaleCase{{-20000, -20000, 20000, 20000}, 1}));

TEST_F(DxfTest, ColoursByChoice) {
    store({-10, -10, 10, 10}, {{1, 2, 3, 4}});
    const std::map<int, std::string> numbers{{1, "    4"}, {2, "    7"}, {3, "    3"},
                                             {4, "    2"}, {5, "    6"}, {6, "    5"},
                                             {0, "    7"}, {7, "    7"}, {-1, "    7"}};
    for (const auto& [choice, number] : numbers) {
        ASSERT_EQ(make_dxf_file(out(), choice), 0);
        EXPECT_EQ(read_drawing(out()).lines.at(281), number) << choice;
    }
}

TEST_F(DxfTest, FailuresLeaveNoFile) {
    EXPECT_NE(make_dxf_file(out(), 2), 0);
    EXPECT_EQ(take_messages(), std::vector<std::string>{"Error: Unable to open TEMP_FILE"});
    EXPECT_FALSE(fs::exists(out()));
    ASSERT_EQ(save_file(work_file("TEMP.DAT"), std::string(33, '\0')), 0);
    EXPECT_NE(make_dxf_file(out(), 2), 0);
    EXPECT_EQ(take_messages(), std::vector<std::string>{"Error: Unable to open TEMP_FILE"});
    store({-10, -10, 10, 10}, {});
    EXPECT_NE(make_dxf_file(work_file("no_folder") / "out.dxf", 2), 0);
    EXPECT_EQ(take_messages(), std::vector<std::string>{"Error: Unable to open DXF_FILE"});
}

} // namespace

} // namespace kigumi::test
