// Space floors, columns, storeys and terrace.
#include "base/codepage.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "geometry/solid.h"
#include "model/lookup.h"
#include "support.h"
#include "trace/spy.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace kigumi {
namespace {

struct Frame {
    int nx, ny, type, storeys, top;
    float pitch;
};

void PrintTo(const Frame& f, std::ostream* out) {
    *out << text_format("%d x %d, type %d, %d storeys, top %d, T %g", f.nx, f.ny, f.type, f.storeys,
                        f.top, f.pitch);
}

int set_frame(const Frame& f) {
    set_default_param();
    param.NX = f.nx;
    param.NY = f.ny;
    param.TukaHaba = f.pitch;
    param.N_Sou = f.storeys;
    param.SumiType = f.type;
    param.YaneMode = f.top;
    return check_param({f.type, f.storeys - 1, yane_choice(f.top)});
}

class Generate : public test::CoreTest {
  protected:
    void TearDown() override {
        EXPECT_EQ(find_model_fault(true), nullptr);
        set_default_param();
        CoreTest::TearDown();
    }
    // The axis data of the model as text.
    static std::string axis_data() {
        const fs::path path = work_file("frame.jik");
        EXPECT_EQ(save_jiku_data(path, {}), 0);
        return from_cp932(read_file(path).value_or("")).value_or("(no text)");
    }
    static void make(const Frame& frame) {
        ASSERT_EQ(set_frame(frame), 0);
        ASSERT_EQ(make_unit(), 0);
    }
};

TEST_F(Generate, OneCell) {
    make({1, 1, 0, 1, 0, 90.0f});
    test::expect_golden("generate/floor_1x1.txt", axis_data());
}

TEST_F(Generate, TwoStoreysTypeI) {
    make({3, 2, 1, 2, 0, 90.9f});
    test::expect_golden("generate/two_storeys_type1_3x2.txt", axis_data());
}

TEST_F(Generate, OneCellTypeIIWithTerrace) {
    make({1, 1, 2, 1, -1, 90.0f});
    test::expect_golden("generate/terrace_type2_1x1.txt", axis_data());
}

TEST_F(Generate, DefaultFloor) {
    make({8, 8, 0, 1, 0, 90.0f});
    EXPECT_EQ(model.N_Beam, 768);
    // 4 corners and 62 half pitches on each of both edges, 64 cell centres, 49 inner crossings.
    EXPECT_EQ(model.N_Node, 241);
    EXPECT_FLOAT_EQ(param.Takasa, 95.0f);
    const Node& last = model.node[model.N_Node - 1];
    EXPECT_FLOAT_EQ(last.x, 720.0f);
    EXPECT_FLOAT_EQ(last.y, 720.0f);
    EXPECT_FLOAT_EQ(last.z, 95.0f);
    EXPECT_EQ(solids.n_trio, 9216);
    const int counts[kind_count] = {0, 4, 128, 256, 256, 124};
    const float diagonal = std::sqrt(3 * 45.0f * 45.0f);
    const double volumes[] = {0, 4 * 45 * 1.44e-4, 128 * 45 * 1.44e-4,
                              // a line of nine top pieces or eight bottom pieces: 720 cm
                              (16 + 14) * 720 * 1.0e-4, 256 * diagonal * 0.81e-4,
                              (60 * 45 + 64 * std::sqrt(2.0) * 45) * 0.81e-4};
    std::map<int, int> count;
    std::map<int, double> volume;
    for (int i = 0; i < model.N_Beam; ++i) {
        ++count[model.beam[i].kind];
        volume[model.beam[i].kind] += beam_volume(model.beam[i]);
    }
    for (int kind = 1; kind <= kind_brace; ++kind) {
        EXPECT_EQ(count[kind], counts[kind]) << kind_name(kind);
        EXPECT_NEAR(volume[kind], volumes[kind], 1e-5) << kind_name(kind);
    }
    EXPECT_NEAR(solids.Volume, volumes[1] + volumes[2] + volumes[3] + volumes[4] + volumes[5],
                1e-3);
    EXPECT_EQ(build_trio_file(), 0);
    EXPECT_EQ(solids.n_trio, 9216);
}

TEST_F(Generate, FirstNodesAreTheCornersFromBelow) {
    ASSERT_EQ(set_frame({2, 3, 0, 1, 0, 90.0f}), 0);
    ASSERT_EQ(make_hashira(), 0);
    const float expected[8][3] = {{0, 0, 50},     {0, 0, 95},     {180, 0, 50}, {180, 0, 95},
                                  {180, 270, 50}, {180, 270, 95}, {0, 270, 50}, {0, 270, 95}};
    ASSERT_EQ(model.N_Node, 8);
    for (int i = 0; i < 8; ++i) {
        EXPECT_FLOAT_EQ(model.node[i].x, expected[i][0]);
        EXPECT_FLOAT_EQ(model.node[i].y, expected[i][1]);
        EXPECT_FLOAT_EQ(model.node[i].z, expected[i][2]);
    }
    const int nodes = model.N_Node;
    ASSERT_EQ(make_hashira(), 0); // restarts the members and finds the old nodes
    EXPECT_EQ(model.N_Beam, 4);
    EXPECT_EQ(model.N_Node, nodes);
}

class Frames : public Generate, public ::testing::WithParamInterface<Frame> {};

TEST_P(Frames, CountsAreThoseForeseen) {
    const Frame& f = GetParam();
    make(f);
    const int floor = 4 + 8 * (f.nx + f.ny) + f.nx * (f.ny + 1) + f.ny * (f.nx + 1) +
                      (f.nx - 1) * f.ny + (f.ny - 1) * f.nx + 4 * f.nx * f.ny + 8 * (f.nx + f.ny) -
                      4;
    const int columns = f.type == 0 ? 0 : f.type == 1 ? 24 + 8 + 64 : 24 + 16 + 32;
    const int terrace = f.top != -1 || f.type == 0 ? 0
                                                   : 2 * (f.nx + f.ny) + 4 * (f.nx + 1) + 4 * f.ny +
                                                         2 * (f.nx + 1) + 2 * (f.ny + 1);
    const bool roofed = f.top == 1 && f.storeys < 3;
    const FrameSize size = predict_frame_size();
    EXPECT_EQ(model.N_Beam, size.beams);
    if (!roofed) {
        EXPECT_EQ(model.N_Beam, (floor + columns) * f.storeys + terrace);
    }
    EXPECT_LE(model.N_Node, size.nodes);
    ASSERT_EQ(rebuild_tables(), 0);
    EXPECT_EQ(model.N_X, size.levels_x);
    EXPECT_EQ(model.N_Y, size.levels_y);
    EXPECT_EQ(solids.n_trio, 12 * model.N_Beam);
}

// Storeys, columns, floors and eaves meet to the bit: no two nodes lie close together, and all hang
// together.
TEST_P(Frames, NodesAreSharedToTheBit) {
    make(GetParam());
    for (int i = 0; i < model.N_Node; ++i) {
        for (int k = i + 1; k < model.N_Node && model.node[k].z - model.node[i].z < 0.01f; ++k) {
            const Node& a = model.node[i];
            const Node& b = model.node[k];
            ASSERT_FALSE(std::fabs(a.x - b.x) < 0.01f && std::fabs(a.y - b.y) < 0.01f)
                << "nodes " << a.no << " and " << b.no;
        }
    }
    std::vector<std::vector<int>> next(model.N_Node + 1);
    for (int i = 0; i < model.N_Beam; ++i) {
        next[model.beam[i].noi].push_back(model.beam[i].noj);
        next[model.beam[i].noj].push_back(model.beam[i].noi);
    }
    std::vector<int> reached = {1};
    std::vector<bool> seen(model.N_Node + 1);
    seen[1] = true;
    for (size_t at = 0; at < reached.size(); ++at) {
        for (const int no : next[reached[at]]) {
            if (!seen[no]) {
                seen[no] = true;
                reached.push_back(no);
            }
        }
    }
    EXPECT_EQ(static_cast<int>(reached.size()), model.N_Node);
}

// Written and read back, the frame has the same nodes: no level or place is lost in six decimals.
TEST_P(Frames, FileGivesTheSameFrame) {
    make(GetParam());
    const int nodes = model.N_Node;
    const int beams = model.N_Beam;
    double timber = 0.0;
    for (int i = 0; i < beams; ++i) {
        timber += beam_volume(model.beam[i]);
    }
    ASSERT_EQ(save_jiku_data(work_file("a.jik"), {}), 0);
    reset_model();
    ASSERT_EQ(load_jiku_data(work_file("a.jik")), beams);
    EXPECT_EQ(model.N_Node, nodes);
    for (int i = 0; i < beams; ++i) {
        timber -= beam_volume(model.beam[i]);
    }
    EXPECT_NEAR(timber, 0.0, 1e-6);
    EXPECT_EQ(rebuild_tables(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Plans, Frames,
    ::testing::Values(Frame{1, 1, 0, 1, 0, 90.0f}, Frame{1, 1, 1, 1, -1, 90.9f},
                      Frame{1, 1, 2, 3, -1, 33.3f}, Frame{1, 4, 2, 2, 0, 90.9f},
                      Frame{2, 1, 1, 3, 0, 33.3f}, Frame{3, 2, 1, 2, -1, 90.9f},
                      Frame{5, 3, 2, 3, -1, 91.0f}, Frame{4, 4, 1, 1, 1, 90.9f},
                      Frame{4, 3, 2, 2, 1, 33.3f}, Frame{3, 3, 2, 3, 1, 90.0f},
                      Frame{8, 8, 2, 2, -1, 90.0f}, Frame{20, 7, 0, 1, 0, 33.3f},
                      Frame{24, 4, 1, 2, -1, 30.3f}));

// Levels whose sums are no exact floats.
TEST_F(Generate, OddHeightsShareEveryLevel) {
    for (const int storeys : {1, 2, 3}) {
        set_default_param();
        param.NX = 3;
        param.NY = 2;
        param.TukaHaba = 33.3f;
        param.Lowest = 50.3f;
        param.TukaAtumi = 45.9f;
        param.HashiraHeight1 = param.HashiraHeight2 = param.HashiraHeight3 = 240.7f;
        param.N_Sou = storeys;
        param.YaneMode = 0;
        ASSERT_EQ(check_param({1, storeys - 1, 0}), 0);
        ASSERT_EQ(make_unit(), 0);
        ASSERT_EQ(rebuild_tables(), 0);
        EXPECT_EQ(model.N_Z, 5 * storeys + 1);
        // A floor: 20 half pitches around at both levels, 6 cell centres, 2 inner crossings. The
        // columns stand at 10 places, with a foot and a middle each; their braces start at 8 points
        // on two levels. The feet of a storey above are perimeter nodes of the floor below it.
        const int floor = 2 * 20 + 6 + 2;
        const int columns = 2 * 10 + 2 * 8;
        EXPECT_EQ(model.N_Node, storeys * (floor + columns) - (storeys - 1) * 10);
    }
}

TEST_F(Generate, TerraceStandsOnTheHighestFloor) {
    for (const int storeys : {1, 2, 3}) {
        make({2, 2, 1, storeys, -1, 90.0f});
        const float top = storey_level(storeys, 5);
        const float bottom = storey_level(storeys, 4);
        int outside = 0;
        for (int i = 0; i < model.N_Node; ++i) {
            const Node& node = model.node[i];
            if (node.x < 0 || node.y < 0 || node.x > 180 || node.y > 180) {
                ++outside;
                EXPECT_FLOAT_EQ(node.z, top);
            }
        }
        EXPECT_EQ(outside, 4 * 2 + 4); // a tip a cell and side, and the corners
        EXPECT_FLOAT_EQ(top, 50.0f + 285.0f * static_cast<float>(storeys));
        EXPECT_FLOAT_EQ(bottom, top - 45.0f);
    }
}

// The sides along x strut the corner tips, the sides along y do not.
TEST_F(Generate, CornerTipsHaveOneStrutEach) {
    make({3, 2, 2, 1, -1, 90.0f});
    const auto ends_at = [](float x, float y) {
        int struts = 0;
        for (int i = 0; i < model.N_Beam; ++i) {
            const Beam& beam = model.beam[i];
            struts += beam.xl <= x && beam.xl >= x && beam.yl <= y && beam.yl >= y &&
                              beam.zs < beam.zl && beam.kind == kind_chord
                          ? 1
                          : 0;
        }
        return struts;
    };
    for (const float x : {-45.0f, 315.0f}) {
        for (const float y : {-45.0f, 225.0f}) {
            EXPECT_EQ(ends_at(x, y), 1);
        }
        EXPECT_EQ(ends_at(x, 45.0f), 2);
    }
}

TEST_F(Generate, StoreysWithoutALevelAreRefused) {
    ASSERT_EQ(set_frame({1, 1, 1, 2, 0, 90.0f}), 0);
    for (const int end : {0, 1}) {
        for (const bool three : {false, true}) {
            reset_model();
            ASSERT_EQ(make_hashira(), 0);
            const float off = storey_level(1, 2) + 0.2f;
            const float on = storey_level(1, 2) + 0.05f; // within the tolerance
            append_beam({0, 0, end == 0 ? off : on}, {1, 1, end == 0 ? on : off}, 9, 9, kind_none,
                        2);
            const int before = model.N_Beam;
            EXPECT_EQ(three ? make_3kai() : make_2kai(), -1);
            EXPECT_EQ(take_messages(), std::vector<std::string>{"レベル検索に失敗した"});
            EXPECT_EQ(model.N_Beam, before + before - 1); // those before the foreign one stay
        }
    }
}

TEST_F(Generate, CopiesTakeOverEverythingButTheHeight) {
    ASSERT_EQ(set_frame({1, 1, 1, 3, 0, 90.0f}), 0);
    param.HashiraHeight2 = 250.0f;
    reset_model();
    ASSERT_EQ(make_hashira(), 0);
    Beam& first = model.beam[0];
    first.haba = 15.0f;
    first.mat = 7;
    first.flag = 1;
    ASSERT_EQ(make_3kai(), 0);
    ASSERT_EQ(model.N_Beam, 12);
    const Beam& copy = model.beam[8]; // all copies of storey 2 come first
    EXPECT_FLOAT_EQ(copy.zs, storey_level(3, 4));
    EXPECT_FLOAT_EQ(model.beam[4].zl, storey_level(2, 5));
    EXPECT_FLOAT_EQ(storey_level(2, 5), 50.0f + 240.0f + 45.0f + 250.0f + 45.0f);
    EXPECT_FLOAT_EQ(copy.haba, 15.0f);
    EXPECT_EQ(copy.mat, 7);
    EXPECT_EQ(copy.flag, 1);
    EXPECT_EQ(copy.kind, kind_post);
    model.beam[0].mat = model.beam[4].mat = model.beam[8].mat = -1;
}

TEST_F(Generate, FailedStoreyEndsTheUnit) {
    ASSERT_EQ(set_frame({1, 1, 1, 2, -1, 90.0f}), 0);
    param.NX = 0; // no frame, and columns on one another
    param.NY = 40000;
    EXPECT_EQ(make_unit(), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(model.N_Beam, beam_capacity);
}

TEST_F(Generate, RoofOnThreeStoreysIsLeftOut) {
    make({2, 2, 1, 3, 1, 90.0f});
    for (int i = 0; i < model.N_Beam; ++i) {
        EXPECT_LE(model.beam[i].kind, kind_column);
    }
    EXPECT_FLOAT_EQ(param.Takasa, 95.0f); // left as it was
}

TEST_F(Generate, UnitLineGivesTheBlock) {
    ASSERT_EQ(bunkai_shazai("2 1 2 90.9 45 12 13 10 9 8 100 -50 20.5"), 0);
    test::expect_golden("generate/unit_line_1x2.txt", axis_data());
    EXPECT_FLOAT_EQ(model.X_MIN, 100.0f);
    EXPECT_FLOAT_EQ(model.Y_MIN, -50.0f);
    EXPECT_FLOAT_EQ(model.Z_MAX, 65.5f);
    EXPECT_EQ(model.beam[0].flag, 0);
    EXPECT_EQ(solids.n_trio, 12 * model.N_Beam);
}

TEST_F(Generate, UnitLineIsTraced) {
    ASSERT_TRUE(spy_open(work_dir()));
    ASSERT_EQ(bunkai_shazai("2 1 1 90 45 12 12 10 9 9 0 0 50"), 0);
    spy_close();
    EXPECT_EQ(read_file(work_file("SPY.TXT")),
              "Spy Start\r\n"
              "ntask     2 nx     1 ny     1 tuka_haba     90.0 tuka_takasa     45.0\r\n"
              "hashira_haba     12.0 waku_haba     12.0 gen_haba     10.0\r\n"
              "shazai_haba      9.0 sujikai_haba_haba      9.0\r\n"
              "x_kaishi      0.0 y_kaishi      0.0 z_kaishi     50.0\r\n");
}

TEST_F(Generate, UnitLinesThatAreRefused) {
    for (const char* line :
         {"2 1 1 90 45 12 12 10 9 9 0 0", "2 1.5 1 90 45 12 12 10 9 9 0 0 50",
          "2 0 1 90 45 12 12 10 9 9 0 0 50", "2 1 -1 90 45 12 12 10 9 9 0 0 50",
          "2 100 100 90 45 12 12 10 9 9 0 0 50", "2 2147483647 1 90 45 12 12 10 9 9 0 0 50",
          "2 1 1 nan 45 12 12 10 9 9 0 0 50"}) {
        EXPECT_EQ(bunkai_shazai(line), -1) << line;
        EXPECT_EQ(take_messages().size(), 1u) << line;
        EXPECT_EQ(model.N_Beam + model.N_Node, 0) << line;
    }
}

} // namespace
} // namespace kigumi
