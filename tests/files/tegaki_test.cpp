#include "files/tegaki.h"

#include "model/nodes.h"
#include "model/roles.h"
#include "model/sections.h"
#include "support.h"

#include <algorithm>
#include <cstring>

namespace kigumi {
namespace {

class Tegaki : public test::CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        forget_old_node(sketch_places);
        file_ = work_file(work_dir, "sketch.tgk");
    }

    fs::path file_;

    std::string saved() {
        EXPECT_EQ(save_tegaki_data(model, sketch_places, file_), 0);
        return read_file(file_).value_or("(unreadable)");
    }
    int load(const std::string& bytes) {
        EXPECT_EQ(save_file(file_, bytes), 0);
        return load_tegaki_data(model, sketch_places, file_);
    }
};

// A node of unknown place.
void draw_node(Model& model, float X, float Y) {
    Node& node = model.node[model.N_Node];
    node = Node{};
    node.no = ++model.N_Node;
    node.x = node.y = node.z = -1.0f;
    node.X = X;
    node.Y = Y;
}

// What a view from another side does to the plane points.
void project_elsewhere(Model& model) {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].X = model.node[i].Y = -7.0f;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        beam.XS = beam.YS = beam.XL = beam.YL = -7.0f;
    }
}

constexpr const char* sketch_bytes =
    "     2\r\n"
    " 1 \"\x92\x8c"
    "A\" 0.000000 90.900002 240.000000 100.000000 200.500000 2\r\n"
    " 2 \"\" -1.000000 -1.000000 -1.000000 300.000000 40.250000 0\r\n"
    "     1\r\n"
    " 1 \"\x92\x8c"
    "A\" \"\" 1 2 0.000000 90.900002 240.000000 0.000000 0.000000 0.000000 -1 -1"
    " 12.000000 12.000000 100.000000 200.500000 300.000000 40.250000 1\r\n";

TEST_F(Tegaki, ReadsAndWritesEveryFieldInPlace) {
    ASSERT_EQ(load(std::string(sketch_bytes) + "\x1a"), 0); // the end mark of old editors
    EXPECT_STREQ(model.node[0].id, "柱A");
    EXPECT_STREQ(model.node[1].id, "");
    EXPECT_FLOAT_EQ(model.node[1].X, 300.0f);
    EXPECT_EQ(model.node[0].flag, 2);
    const Beam& beam = model.beam[0];
    EXPECT_STREQ(beam.idi, "柱A");
    EXPECT_EQ(beam.noj, 2);
    EXPECT_FLOAT_EQ(beam.zs, 240.0f);
    EXPECT_FLOAT_EQ(beam.YS, 200.5f);
    EXPECT_FLOAT_EQ(beam.XL, 300.0f);
    EXPECT_EQ(beam.size, -1);
    EXPECT_EQ(beam.flag, 1);
    EXPECT_EQ(find_or_add_node(model, 0.0f, 90.9f, 240.0f), 1);
    EXPECT_EQ(saved(), sketch_bytes);
    append_fix(model, 1, 1, 1, 1);
    append_load(model, 2, 0.0f, 0.0f, -200.0f);
    check_size(model);
    ASSERT_EQ(load(sketch_bytes), 0);
    EXPECT_EQ(model.N_Fix + model.N_Load + model.N_Size + model.N_Mat, 0);
}

TEST_F(Tegaki, KeptPositionsAreWrittenAfterAView) {
    ASSERT_EQ(load(sketch_bytes), 0);
    save_old_node(model, sketch_places);
    project_elsewhere(model);
    EXPECT_EQ(saved(), sketch_bytes);
    load_old_node(model, sketch_places);
    forget_old_node(sketch_places);
    EXPECT_EQ(saved(), sketch_bytes);
    project_elsewhere(model);
    load_old_node(model, sketch_places); // nothing is kept
    EXPECT_FLOAT_EQ(model.node[0].X, -7.0f);
}

TEST_F(Tegaki, NodesDrawnAfterReadingKeepTheirPlaces) {
    ASSERT_EQ(load(sketch_bytes), 0);
    draw_node(model, 55.0f, 66.0f);
    Beam& beam = model.beam[model.N_Beam++];
    beam = model.beam[0];
    beam.no = 2;
    beam.noi = 2;
    beam.noj = 3;
    beam.XS = 300.0f;
    beam.YS = 40.25f;
    beam.XL = 55.0f;
    beam.YL = 66.0f;
    const std::string before_keeping = saved();
    append_old_node(model, sketch_places);
    project_elsewhere(model);
    EXPECT_EQ(saved(), before_keeping);
    EXPECT_NE(before_keeping.find(" 3 \"\" -1.000000 -1.000000 -1.000000 55.000000 66.000000 0"),
              std::string::npos);
    EXPECT_NE(before_keeping.find(" 300.000000 40.250000 55.000000 66.000000 1\r\n"),
              std::string::npos);
    load_old_node(model, sketch_places);
    EXPECT_FLOAT_EQ(model.beam[1].XL, 55.0f);
}

TEST_F(Tegaki, NameThatCouldNotBeReadBackIsNotWritten) {
    ASSERT_EQ(load(sketch_bytes), 0);
    const std::string good = saved();
    for (const char* name : {"A 1", "A\"1", "A\t1"}) {
        set_name(model.beam[0].idj, name);
        EXPECT_EQ(save_tegaki_data(model, sketch_places, file_), -1);
        EXPECT_EQ(take_messages().size(), 1u);
        EXPECT_EQ(read_file(file_), good);
    }
}

// A part of sketch_bytes and what replaces it; without it the file is cut at the other.
struct Broken {
    const char* name;
    const char* from;
    const char* to;
    int line;
};

const Broken broken[] = {
    {"cut_in_member", nullptr, " 300.000000 40.250000 1\r", 5},
    {"node_count_above_the_table", "     2\r", " 10001\r", 1},
    {"node_numbers_repeat", " 2 \"\" -1", " 1 \"\" -1", 3},
    {"node_name_without_quotes", " 2 \"\" -1", " 2 AB -1", 3},
    {"node_name_too_long", "\"\" -1", "\"A234567890B234567890C234567890D2\" -1", 3},
    {"node_place_infinite", "240.000000", "inf", 2},
    {"node_state", "40.250000 0\r", "40.250000 3\r", 3},
    {"member_end_beyond", "\"\" 1 2 ", "\"\" 1 3 ", 5},
    {"member_section_zero", " -1 -1", " 0 -1", 5},
    {"member_state", "40.250000 1\r", "40.250000 -1\r", 5},
    {"more_members_than_counted", "     1\r", "     0\r", 5},
};

TEST_F(Tegaki, BrokenSketchIsRefusedAndLeavesTheModel) {
    ASSERT_EQ(load(sketch_bytes), 0);
    draw_node(model, 1.0f, 2.0f);
    save_old_node(model, sketch_places);
    append_fix(model, 3, 1, 1, 1);
    for (const auto& [name, from, to, line] : broken) {
        SCOPED_TRACE(name);
        std::string bytes = sketch_bytes;
        if (from == nullptr) {
            bytes.resize(bytes.find(to));
        } else {
            bytes.replace(bytes.find(from), std::strlen(from), to);
        }
        EXPECT_EQ(load(bytes), -1);
        const auto messages = take_messages();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_NE(messages[0].find(text_format(" %d 行目: ", line)), std::string::npos)
            << messages[0];
        EXPECT_EQ(model.N_Node, 3);
        EXPECT_EQ(model.N_Fix, 1);
        project_elsewhere(model);
        load_old_node(model, sketch_places);
        EXPECT_FLOAT_EQ(model.node[2].Y, 2.0f);
    }
}

} // namespace
} // namespace kigumi
