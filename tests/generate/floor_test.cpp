// Space floors, columns, storeys and terrace.
#include "base/codepage.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/members.h"
#include "model/sections.h"
#include "model/validate.h"
#include "solid/solid.h"
#include "support.h"

#include <algorithm>
#include <cmath>
#include <set>

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

int set_frame(Param& param, const Frame& f) {
    set_default_param(param);
    param.NX = f.nx;
    param.NY = f.ny;
    param.TukaHaba = f.pitch;
    param.N_Sou = f.storeys;
    param.SumiType = f.type;
    param.YaneMode = f.top;
    return check_param(param, {f.type, f.storeys - 1, yane_choice(f.top)});
}

class Generate : public test::CoreTest {
  protected:
    void TearDown() override {
        EXPECT_EQ(find_model_fault(model, true), nullptr);
        CoreTest::TearDown();
    }
    // The axis data of the model as text.
    std::string axis_data() {
        const fs::path path = work_file(work_dir, "frame.jik");
        EXPECT_EQ(save_jiku_data(model, path, {}), 0);
        return from_cp932(read_file(path).value_or("")).value_or("(no text)");
    }
    void make(const Frame& frame) {
        ASSERT_EQ(set_frame(param, frame), 0);
        ASSERT_EQ(make_unit(model, param, solids), 0);
    }
};

TEST_F(Generate, FramesAsWritten) {
    make({1, 1, 0, 1, 0, 90.0f});
    test::expect_golden("generate/floor_1x1.txt", axis_data());
    make({3, 2, 1, 2, 0, 90.9f});
    test::expect_golden("generate/two_storeys_type1_3x2.txt", axis_data());
    make({1, 1, 2, 1, -1, 90.0f});
    test::expect_golden("generate/terrace_type2_1x1.txt", axis_data());
}

TEST_F(Generate, DefaultFloor) {
    make({8, 8, 0, 1, 0, 90.0f});
    EXPECT_EQ(model.N_Beam, 768);
    // 4 corners and 62 half pitches on each of both edges, 64 cell centres, 49 inner crossings.
    EXPECT_EQ(model.N_Node, 241);
    EXPECT_EQ(solids.n_trio, 9216);
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
    const FrameSize size = predict_frame_size(param);
    EXPECT_EQ(model.N_Beam, size.beams);
    if (!roofed) {
        EXPECT_EQ(model.N_Beam, (floor + columns) * f.storeys + terrace);
    }
    EXPECT_LE(model.N_Node, size.nodes);
    ASSERT_EQ(rebuild_tables(model), 0);
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
    std::set<int> reached = {1};
    for (size_t before = 0; before < reached.size();) {
        before = reached.size();
        for (int i = 0; i < model.N_Beam; ++i) {
            const Beam& beam = model.beam[i];
            if (reached.contains(beam.noi) || reached.contains(beam.noj)) {
                reached.insert({beam.noi, beam.noj});
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
    const std::string written = axis_data();
    reset_model(model);
    ASSERT_EQ(load_jiku_data(model, solids, work_dir, work_file(work_dir, "frame.jik")), beams);
    EXPECT_EQ(model.N_Node, nodes);
    EXPECT_EQ(rebuild_tables(model), 0);
    EXPECT_EQ(axis_data(), written);
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
        set_default_param(param);
        param.NX = 3;
        param.NY = 2;
        param.TukaHaba = 33.3f;
        param.Lowest = 50.3f;
        param.TukaAtumi = 45.9f;
        param.HashiraHeight1 = param.HashiraHeight2 = param.HashiraHeight3 = 240.7f;
        param.N_Sou = storeys;
        param.YaneMode = 0;
        ASSERT_EQ(check_param(param, {1, storeys - 1, 0}), 0);
        ASSERT_EQ(make_unit(model, param, solids), 0);
        ASSERT_EQ(rebuild_tables(model), 0);
        EXPECT_EQ(model.N_Z, 5 * storeys + 1);
        // A floor: 20 half pitches around at both levels, 6 cell centres, 2 inner crossings. The
        // columns stand at 10 places, with a foot and a middle each; their braces start at 8 points
        // on two levels. The feet of a storey above are perimeter nodes of the floor below it.
        const int floor = 2 * 20 + 6 + 2;
        const int columns = 2 * 10 + 2 * 8;
        EXPECT_EQ(model.N_Node, storeys * (floor + columns) - (storeys - 1) * 10);
    }
}

TEST_F(Generate, StoreysWithoutALevelAreRefused) {
    ASSERT_EQ(set_frame(param, {1, 1, 1, 2, 0, 90.0f}), 0);
    for (const int end : {0, 1}) {
        for (const bool three : {false, true}) {
            reset_model(model);
            ASSERT_EQ(make_hashira(model, param), 0);
            const float off = storey_level(param, 1, 2) + 0.2f;
            const float on = storey_level(param, 1, 2) + 0.05f; // within the tolerance
            append_beam(model, {0, 0, end == 0 ? off : on}, {1, 1, end == 0 ? on : off}, 9, 9,
                        kind_none, 2);
            const int before = model.N_Beam;
            EXPECT_EQ(three ? make_3kai(model, param) : make_2kai(model, param), -1);
            expect_message("レベル検索に失敗した");
            EXPECT_EQ(model.N_Beam, before + before - 1); // those before the foreign one stay
        }
    }
}

TEST_F(Generate, CopiesTakeOverEverythingButTheHeight) {
    ASSERT_EQ(set_frame(param, {1, 1, 1, 3, 0, 90.0f}), 0);
    param.HashiraHeight2 = 250.0f;
    reset_model(model);
    ASSERT_EQ(make_hashira(model, param), 0);
    Beam& first = model.beam[0];
    first.haba = 15.0f;
    first.mat = 7;
    first.flag = 1;
    ASSERT_EQ(make_3kai(model, param), 0);
    ASSERT_EQ(model.N_Beam, 12);
    const Beam& copy = model.beam[8]; // all copies of storey 2 come first
    EXPECT_FLOAT_EQ(copy.zs, storey_level(param, 3, 4));
    EXPECT_FLOAT_EQ(model.beam[4].zl, storey_level(param, 2, 5));
    EXPECT_FLOAT_EQ(storey_level(param, 2, 5), 50.0f + 240.0f + 45.0f + 250.0f + 45.0f);
    EXPECT_FLOAT_EQ(copy.haba, 15.0f);
    EXPECT_EQ(copy.mat, 7);
    EXPECT_EQ(copy.flag, 1);
    EXPECT_EQ(copy.kind, kind_post);
    model.beam[0].mat = model.beam[4].mat = model.beam[8].mat = -1;
}

TEST_F(Generate, FailedStoreyEndsTheUnit) {
    ASSERT_EQ(set_frame(param, {1, 1, 1, 2, -1, 90.0f}), 0);
    param.NX = 0; // no frame, and columns on one another
    param.NY = 40000;
    EXPECT_EQ(make_unit(model, param, solids), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(model.N_Beam, beam_capacity);
}

TEST_F(Generate, UnitLineGivesTheBlock) {
    ASSERT_EQ(bunkai_shazai(model, solids, "2 1 2 90.9 45 12 13 10 9 8 100 -50 20.5"), 0);
    test::expect_golden("generate/unit_line_1x2.txt", axis_data());
    EXPECT_FLOAT_EQ(solids.X_MIN, 100.0f);
    EXPECT_FLOAT_EQ(solids.Y_MIN, -50.0f);
    EXPECT_FLOAT_EQ(solids.Z_MAX, 65.5f);
    EXPECT_EQ(model.beam[0].flag, 0);
    EXPECT_EQ(solids.n_trio, 12 * model.N_Beam);
}

TEST_F(Generate, UnitLinesThatAreRefused) {
    for (const char* line :
         {"2 1 1 90 45 12 12 10 9 9 0 0", "2 1.5 1 90 45 12 12 10 9 9 0 0 50",
          "2 1 -1 90 45 12 12 10 9 9 0 0 50", "2 100 100 90 45 12 12 10 9 9 0 0 50",
          "2 2147483647 1 90 45 12 12 10 9 9 0 0 50", "2 1 1 nan 45 12 12 10 9 9 0 0 50"}) {
        EXPECT_EQ(bunkai_shazai(model, solids, line), -1) << line;
        EXPECT_EQ(take_messages().size(), 1u) << line;
        EXPECT_EQ(model.N_Beam + model.N_Node, 0) << line;
    }
}

} // namespace
} // namespace kigumi
