#include "results/marukaku.h"

#include "results/force_picture.h"
#include "results/selection.h"
#include "results_support.h"
#include "solid/solid.h"

#include <cmath>

namespace kigumi::test {

namespace {

constexpr size_t box_triangles = 12;
constexpr size_t prism_triangles = 24;

class MarukakuTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        shown.area.xScreen = 800;
        shown.area.yScreen = 600;
        make_portal_result(result);
    }

    // Builds the view of one selected member standing on the origin.
    size_t triangles(float force, float percent) {
        result.kensaku[0] = result.stress[0];
        result.kensaku[0].force = force;
        result.kensaku[0].percent = percent;
        result.Nken_Stress = 1;
        EXPECT_EQ(make_marukaku(view, result, solids, work_dir, shown), 0);
        return solids.trio.size();
    }

    // Largest distance of a vertex from the member's axis, cm.
    float reach() const {
        float largest = 0.0f;
        for (const Trio& trio : solids.trio) {
            for (const auto& vertex : trio.vertex) {
                largest = std::max(largest, std::hypot(vertex[0], vertex[1]));
            }
        }
        return largest;
    }

    ResultView shown;
};

TEST_F(MarukakuTest, MakesSquareAndRoundBarsOfThePercentAsArea) {
    EXPECT_EQ(triangles(-1.0f, 100.0f), box_triangles);
    EXPECT_NEAR(reach(), std::sqrt(50.0f), 0.01f);
    EXPECT_EQ(triangles(0.0f, 25.0f), box_triangles);
    EXPECT_EQ(triangles(1.0f, 1.0f), box_triangles);
    EXPECT_EQ(triangles(1.0f, 100.0f), prism_triangles);
    EXPECT_NEAR(reach(), 5.642f, 0.01f);
    EXPECT_EQ(triangles(1.0f, 1.01f), prism_triangles);
}

TEST_F(MarukakuTest, ColoursEachTriangleByTheSignOfItsBar) {
    select_results(result, std::vector<int>{0, 1});
    ASSERT_EQ(make_marukaku(view, result, solids, work_dir, shown), 0);
    constexpr int last = box_triangles + prism_triangles - 1;
    for (const auto& [record, colour] : {std::pair{0, colour_blue},
                                         {static_cast<int>(box_triangles) - 1, colour_blue},
                                         {static_cast<int>(box_triangles), colour_red},
                                         {last, colour_red},
                                         {last + 1, colour_black},
                                         {-1, colour_black}}) {
        EXPECT_EQ(marukaku_colour(result, record), colour) << record;
    }
}

TEST_F(MarukakuTest, WritesTheFileAndSetsTheEye) {
    triangles(1.0f, 100.0f);
    EXPECT_EQ(fs::file_size(work_file(work_dir, "TRIO.DAT")), prism_triangles * sizeof(Trio));
    view.Rho = 1.0;
    view.Phi = 1.0;
    result.Nken_Stress = 0;
    EXPECT_EQ(make_marukaku(view, result, solids, work_dir, shown), 0);
    EXPECT_EQ(fs::file_size(work_file(work_dir, "TRIO.DAT")), 0u);
    EXPECT_DOUBLE_EQ(view.Rho, 4000.0);
    EXPECT_DOUBLE_EQ(view.Phi, 70.0);
    EXPECT_TRUE(shown.area.crt.left == 100 && shown.area.crt.right == 700);
}

TEST_F(MarukakuTest, LabelsStandWhereTheEyeSeesTheirPoints) {
    shown.mode = mode_solids;
    select_results(result, std::vector<int>{0, 1, 2});
    ASSERT_EQ(make_marukaku(view, result, solids, work_dir, shown), 0);
    const auto lines = [this](int label) {
        shown.area = DrawArea();
        shown.area.xScreen = 800;
        shown.area.yScreen = 600;
        shown.label[label_node_names] = label;
        SegmentCanvas canvas;
        EXPECT_EQ(
            draw_marukaku(view, result, solids, perspective, lettering, work_dir, canvas, shown),
            0);
        return canvas.segments();
    };
    const auto bars = lines(0).size();
    const std::vector<Segment> named = lines(1);
    ASSERT_GT(named.size(), bars);
    const float margin = 0.25f * (shown.area.world.xmax - shown.area.world.xmin);
    for (const Segment& s : named) {
        EXPECT_TRUE(s.X1 > shown.area.world.xmin - margin && s.X1 < shown.area.world.xmax + margin);
    }
    view.Rho = 200.0; // before the farther post: its names are behind the eye
    const auto near_bars = lines(0).size();
    const auto near_names = lines(1).size() - near_bars;
    EXPECT_GT(near_names, 0u);
    EXPECT_LT(near_names, named.size() - bars);
}

} // namespace

} // namespace kigumi::test
