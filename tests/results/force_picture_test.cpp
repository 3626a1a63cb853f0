#include "results/force_picture.h"

#include "results/displacement.h"
#include "results/selection.h"
#include "results_support.h"

#include <limits>

namespace kigumi::test {

namespace {

class ForcePictureTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        shown.area.xScreen = 800;
        shown.area.yScreen = 600;
    }

    std::string picture(int mode) {
        RecorderCanvas canvas;
        shown.mode = mode;
        EXPECT_EQ(draw_result_picture(view, result, lettering, canvas, shown), 0);
        return canvas.text;
    }

    ResultView shown;
};

TEST_F(ForcePictureTest, DrawsThePortalInEveryMode) {
    make_portal_result(result);
    result.disp[1].disp_x = 3.0f;
    result.disp[2].disp_x = 3.0f;
    ASSERT_EQ(get_new_beam(result, 10.0f), 0);
    std::string text;
    for (const int mode : {2, 3, 4, 5, 9}) {
        text += text_format("mode %d\n", mode) + picture(mode);
    }
    expect_golden("portal-pictures.txt", text);
    EXPECT_EQ(picture(6), "");
}

// Row 0 is blue and 100 %, row 1 red and 10 %, row 2 has no force.
TEST_F(ForcePictureTest, DrawsWhatIsNotSelectedFirstAndInSilver) {
    make_portal_result(result);
    const std::string post = "line 492 340 492 100\n";
    const std::string beam = "line 492 100 307 259\n";
    const std::string other = "line 307 500 307 259\n";
    const std::string silver = "pen 0 1 15\n";
    select_results(result, std::vector<int>{0});
    EXPECT_EQ(picture(3), silver + beam + other + "pen 0 1 1\n" + post + "pen 0 1 0\n");
    EXPECT_EQ(picture(5), silver + beam + other + "pen 0 10 1\n" + post + "pen 0 1 0\n");
    EXPECT_TRUE(picture(2).starts_with(silver + beam + other + "pen 0 1 0\n" + post));
    shown.upper = 50.0f;
    select_results(result, std::vector<int>{0, 1});
    EXPECT_EQ(picture(4),
              silver + other + "pen 0 1 0\n" + post + "pen 0 1 4\n" + beam + "pen 0 1 0\n");
}

TEST_F(ForcePictureTest, PenFollowsSignAndPercent) {
    make_portal_result(result);
    shown.upper = 80.0f;
    shown.lower = 20.0f;
    const std::tuple<int, float, float, const char*> cases[] = {
        {3, 0.0f, 0.0f, "pen 0 1 1"},    {3, 0.1f, 1.0f, "pen 0 1 4"},
        {4, 5.0f, 80.0f, "pen 0 1 4"},   {4, -5.0f, 20.0f, "pen 0 1 1"},
        {4, 5.0f, 80.001f, "pen 0 1 0"}, {4, -5.0f, 19.999f, "pen 0 1 0"},
        {5, 5.0f, 9.9f, "pen 0 1 0"},    {5, 5.0f, 10.0f, "pen 0 1 4"},
        {5, -5.0f, 30.0f, "pen 0 3 1"},  {5, 5.0f, 100.0f, "pen 0 10 4"}};
    for (const auto& [mode, force, percent, pen] : cases) {
        result.stress[0].force = force;
        result.stress[0].percent = percent;
        EXPECT_TRUE(picture(mode).starts_with(pen + std::string("\n"))) << mode << " " << percent;
    }
}

TEST_F(ForcePictureTest, FitsAFarFrameFromTheStartValue) {
    add_setuten(result, 1, "A", -2000.0f, 0.0f, 0.0f);
    add_setuten(result, 2, "B", -3000.0f, 0.0f, 500.0f);
    add_stress(result, 0, 1, 1.0f, 100.0f);
    shown.TAU = 90.0f;
    shown.FAI = 0.0f;
    ASSERT_TRUE(fit_result(result, shown));
    EXPECT_FLOAT_EQ(shown.area.world.xmin, 999.9f);
    EXPECT_NEAR(shown.area.world.xmax, 3000.0f, 0.01f);
}

TEST_F(ForcePictureTest, DrawsNothingThatCannotBeMapped) {
    RecorderCanvas canvas;
    EXPECT_EQ(picture(2), "");
    make_portal_result(result);
    shown.area.xScreen = 200;
    EXPECT_EQ(picture(2), "");
    shown.area.xScreen = 800;
    shown.area.yScreen = 0;
    EXPECT_EQ(picture(3), "");
    shown.area.yScreen = 600;
    for (int i = 0; i < result.N_Stress; ++i) {
        result.stress[i].xi = std::numeric_limits<float>::infinity();
    }
    EXPECT_EQ(picture(3), "");
    result.N_Stress = 0;
    result.N_Setuten = 0;
    add_setuten(result, 1, "A", 5.0f, 5.0f, 5.0f);
    add_stress(result, 0, 0, 1.0f, 100.0f);
    shown.label[label_node_names] = 1;
    EXPECT_EQ(picture(5), "");
}

TEST_F(ForcePictureTest, DrawsAFrameWithoutHeight) {
    add_setuten(result, 1, "A", 0.0f, 0.0f, 0.0f);
    add_setuten(result, 2, "B", 0.0f, 600.0f, 0.0f);
    add_stress(result, 0, 1, 1.0f, 100.0f);
    shown.TAU = 0.0f;
    shown.FAI = 0.0f;
    EXPECT_EQ(picture(3), "pen 0 1 4\nline 100 300 700 300\npen 0 1 0\n");
}

// Supports and loads stand where the results say; a node without members is none of the results'.
TEST_F(ForcePictureTest, DrawsEveryKindOfLabelOnTop) {
    make_portal_result(result);
    result.roles.fix = {{{{}, 1, 1, 1, 1}, 0.0f, 0.0f, 0.0f},
                        {{{}, 5, 1, 0, 1}, 200.0f, 0.0f, 150.0f}};
    result.roles.load = {{{{}, 2, 0.0f, 0.0f, -200.0f}, 0.0f, 0.0f, 300.0f}};
    const std::string bare = picture(2);
    std::string text;
    for (int kind = 0; kind < result_label_count; ++kind) {
        std::fill(std::begin(shown.label), std::end(shown.label), 0);
        shown.label[kind] = 1;
        const std::string with = picture(2);
        ASSERT_EQ(with.substr(0, bare.size()), bare);
        text += with.substr(bare.size());
    }
    expect_golden("portal-labels.txt", text);
    std::fill(std::begin(shown.label), std::end(shown.label), 1);
    EXPECT_EQ(picture(2), bare + text);
}

} // namespace

} // namespace kigumi::test
