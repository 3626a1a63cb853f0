// The project file: every field to the bit, refusals that change nothing, size and time.
#include "project/project_file.h"

#include "base/message.h"
#include "dice.h"
#include "generate/generate.h"
#include "model/roles.h"
#include "model/sections.h"
#include "project/history.h"
#include "support.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstring>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <tuple>

namespace kigumi {
namespace {

// A small generated frame with every other field set, too.
void make_sample(Project& project) {
    Model& model = project.model;
    Param& param = project.param;
    param.NX = 2;
    param.NY = 1;
    param.TukaHaba = 90.9f;
    ASSERT_EQ(check_param(param, {0, 0, 0}), 0);
    ASSERT_EQ(make_unit(model, param, project.solids), 0);
    ASSERT_EQ(rebuild_tables(model), 0);
    project.generated = true;
    project.stage = Stage::loaded;
    project.shift = {0.1f, -20.5f, 1e-3f};
    ASSERT_EQ(change_section(model, 0, 11.5f, 13.25f, 15.0f), Change::stored);
    ASSERT_EQ(change_material(model, 1, 70000.0f, 0.31f, 0.00042f), Change::stored);
    ASSERT_EQ(change_species(model, 1, "sugi-E70"), Change::stored);
    ASSERT_EQ(put_fix(model, 0, 1, 0, 1), 0);
    ASSERT_EQ(put_fix(model, 2, 1, 1, 1), 0);
    ASSERT_EQ(put_load(model, 7, 1.5f, -2.25f, -333.3f), 0);
    model.fix_load_edited = 1;
    model.GaichuStart = 3;
    model.GaichuEnd = 5;
    model.found_role[7] = role_loaded;
    model.node[7].flag = role_found;
    model.snap_radius = 7.5f;
    model.default_E = 90000.0f;
    model.default_poisson = 0.4f;
    model.default_density = 0.0006f;
    project.view = {31.0f, -12.5f, 1234.5678901234567, 21.0, 71.25, 1, 1};
    project.sketch_places.OnSaveOld = 1;
    project.sketch_places.N_OldNode = 2;
    project.sketch_places.old_node[0] = {100.5f, 200.25f};
    project.sketch_places.old_node[1] = {-3.0f, 1.0f / 3.0f};
}

class ProjectFile : public test::CoreTest {
  protected:
    // Everything that a person makes is in the other project, bit for bit.
    static void expect_same(const Project& a, const Project& b) {
        EXPECT_EQ(project_text(a), project_text(b));
        History history;
        history.start(a);
        EXPECT_FALSE(history.differs(b));
        EXPECT_EQ(std::memcmp(&a.view, &b.view, sizeof a.view), 0);
    }
    static std::unique_ptr<Project> parsed(const std::string& text) {
        auto project = std::make_unique<Project>();
        Fault fault;
        EXPECT_EQ(parse_project(text, *project, fault), 0) << fault.text();
        return project;
    }
    static std::string golden() {
        return read_file(fs::path(KIGUMI_GOLDEN_DIR) / "project/version-1.kigumi").value_or("");
    }
};

TEST_F(ProjectFile, SampleOfVersion1IsWrittenAndRead) {
    make_sample(project);
    test::expect_golden("project/version-1.kigumi", project_text(project));
    const auto read = parsed(golden());
    expect_same(project, *read);
    EXPECT_EQ(read->param.NX, 2);
    EXPECT_EQ(read->stage, Stage::loaded);
    EXPECT_STREQ(read->model.edit[position_of(read->model.N_Beam)].species,
                 model.edit[position_of(model.N_Beam)].species);
    EXPECT_EQ(read->solids.n_trio, 0);
}

TEST_F(ProjectFile, FileComesBackByteForByte) {
    make_sample(project);
    const fs::path path = work_file(work_dir, "軸 a.kigumi");
    ASSERT_EQ(save_project(project, path), 0);
    const std::string first = read_file(path).value_or("");
    const auto other = std::make_unique<Project>();
    other->result.N_Setuten = 3; // of another frame
    ASSERT_EQ(load_project(path, *other), 0);
    expect_same(project, *other);
    EXPECT_EQ(other->result.N_Setuten, 0);
    ASSERT_EQ(save_project(*other, path), 0);
    EXPECT_EQ(read_file(path).value_or(""), first);
}

// Any float that is finite, in a sketch, whose nodes may lie anywhere.
TEST_F(ProjectFile, FloatsComeBackToTheBit) {
    make_sample(project);
    project.stage = Stage::reading;
    test::Dice dice(test::seed_of_run());
    const float special[] = {-0.0f,
                             std::numeric_limits<float>::denorm_min(),
                             -std::numeric_limits<float>::max(),
                             std::numeric_limits<float>::min(),
                             16777217.0f,
                             1e9f,
                             1e-4f,
                             0.1f};
    int next = 0;
    const auto any_float = [&] {
        if (next < static_cast<int>(std::size(special))) {
            return special[next++];
        }
        for (;;) {
            const auto bits = static_cast<std::uint32_t>(dice.roll(65536)) << 16 |
                              static_cast<std::uint32_t>(dice.roll(65536));
            if (const auto value = std::bit_cast<float>(bits); std::isfinite(value)) {
                return value;
            }
        }
    };
    for (int i = 0; i < model.N_Node; ++i) {
        Node& node = model.node[i];
        for (float* value : {&node.x, &node.y, &node.z, &node.X, &node.Y}) {
            *value = any_float();
        }
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        const Node& start = model.node[position_of(beam.noi)];
        const Node& end = model.node[position_of(beam.noj)];
        std::tie(beam.xs, beam.ys, beam.zs) = std::tie(start.x, start.y, start.z);
        std::tie(beam.xl, beam.yl, beam.zl) = std::tie(end.x, end.y, end.z);
        for (float* value : {&beam.haba, &beam.atumi, &beam.XS, &beam.YS, &beam.XL, &beam.YL}) {
            *value = any_float();
        }
    }
    ASSERT_EQ(model.beam[0].noi, 1);
    model.node[0].x = 0.0f;
    for (int i = 0; i < model.N_Beam; ++i) { // the other zero, at the same place
        (model.beam[i].noi == 1   ? model.beam[i].xs
         : model.beam[i].noj == 1 ? model.beam[i].xl
                                  : model.node[0].x) = -0.0f;
    }
    model.node[0].x = 0.0f;
    const auto rename = [](char(&field)[name_bytes], const char* name) {
        std::memset(field, 0, name_bytes);
        set_name(field, name);
    };
    rename(model.node[3].id, "柱 \"A\\\t\x01");
    rename(model.beam[0].idi, "another");
    rename(model.fix[0].id, "third");
    model.beam[1].size = size_capacity; // of the hand-drawn file, before its table is made
    model.beam[1].mat = mat_capacity;
    project.view.Rho = 1e300;
    expect_same(project, *parsed(project_text(project)));
}

// Those of results that were shown when it was saved.
TEST_F(ProjectFile, LevelsOfOtherNodesAreMadeAnew) {
    make_sample(project);
    const std::string good = project_text(project);
    model.Xval[0] = -5.0f;
    EXPECT_EQ(project_text(*parsed(project_text(project))), good);
}

TEST_F(ProjectFile, NumbersThatAreNoneAreNotWritten) {
    make_sample(project);
    const fs::path path = work_file(work_dir, "a.kigumi");
    ASSERT_EQ(save_file(path, "old"), 0);
    model.size.J[0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(save_project(project, path), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(read_file(path).value_or(""), "old");
}

// One change of the sample's text and what is said of it.
struct Broken {
    const char* name;
    const char* from;
    const char* to;
    const char* told;
};

const Broken broken[] = {
    {"cut_off", "\"members\"", nullptr, "行目: 途中で終わっています"},
    {"newer", "\"version\": 1", "\"version\": 2",
     "この版の kigumi では読めない新しい形式です（形式の版 2、読めるのは 1 まで）"},
    {"newer_with_more", "\"version\": 1", "\"version\": 3, \"more\": {}", "形式の版 3"},
    {"version_0", "\"version\": 1", "\"version\": 0", "/version: 番号か値が範囲外です"},
    {"version_half", "\"version\": 1", "\"version\": 1.5", "/version: 整数ではありません"},
    {"another_format", "\"format\": \"kigumi\"", "\"format\": \"x\"",
     "kigumi のプロジェクトではありません"},
    {"no_json", "\"stage\":", "stage:", "4 行目: JSON として読めません"},
    {"nan", "\"shift\": [0.1", "\"shift\": [NaN", "行目: JSON として読めません"},
    {"null_for_a_number", "\"shift\": [0.1", "\"shift\": [null", "/shift/0: 数値ではありません"},
    {"beyond_single", "\"shift\": [0.1", "\"shift\": [1e39",
     "/shift/0: 数値が大きすぎるか小さすぎます"},
    {"beyond_double", "\"shift\": [0.1", "\"shift\": [1e999", "行目: JSON として読めません"},
    {"huge_whole_number", "\"NX\": 2", "\"NX\": 99999999999999999999", "/param/NX: 整数"},
    {"text_for_a_number", "\"NX\": 2", "\"NX\": \"2\"", "/param/NX: 整数ではありません"},
    {"unknown_stage", "\"loaded\"", "\"done\"", "/stage: 知らない段階です"},
    {"unknown_field", "\"generated\": true", "\"generated\": true, \"path\": \"/etc/passwd\"",
     "/: 知らない項目があります"},
    {"field_missing", "\"generated\": true,", "", "/: 項目「generated」がありません"},
    {"same_key_twice", "\"stage\": \"loaded\"", "\"stage\": \"loaded\", \"stage\": \"made\"",
     "/stage: 同じ名前の項目が二つあります"},
    {"same_key_twice_inside", "\"NX\": 2", "\"NX\": 2, \"NX\": 3", "/param/NX: 同じ名前"},
    {"row_too_short", "[\"X00Y00Z00\",0,0,50,1]", "[\"X00Y00Z00\",0,0]",
     "/nodes/0: 個数 3 が範囲外です"},
    {"row_of_a_size_between", "[\"X00Y00Z00\",0,0,50,1]", "[\"X00Y00Z00\",0,0,50,1,2]",
     "/nodes/0: 個数 6 が範囲外です"},
    {"name_too_long", "\"X00Y00Z00\"", "\"01234567890123456789012345678901\"",
     "/nodes/0/0: 名前が長すぎます"},
    {"name_with_zero", "\"X00Y00Z00\"", "\"X\\u0000Y\"", "/nodes/0/0: 名前に使えない文字"},
    {"name_not_utf8", "\"X00Y00Z00\"", "\"\x92\x8c\"", "行目: JSON として読めません"},
    {"half_a_pair", "\"X00Y00Z00\"", "\"\\ud800\"", "行目: JSON として読めません"},
    {"node_state", "[\"X00Y00Z00\",0,0,50,1]", "[\"X00Y00Z00\",0,0,50,3]",
     "/nodes/0: 節点の状態が範囲外です"},
    {"end_beyond_the_nodes", "\"members\": [\n  [1,", "\"members\": [\n  [99,",
     "/members/0/0: 番号か値が範囲外です"},
    {"end_0", "\"members\": [\n  [1,", "\"members\": [\n  [0,", "/members/0/0: 番号か値が"},
    {"support_of_no_node", "\"supports\": [\n  [1,", "\"supports\": [\n  [999,",
     "/supports/0/0: 番号か値が範囲外です"},
    {"table_is_no_array", "\"supports\": [", "\"supports\": 1, \"x\": [",
     "/supports: 並び [ ] ではありません"},
    {"param_is_no_object", "\"param\": {", "\"param\": 1, \"x\": {",
     "/param: 項目の集まり { } ではありません"},
    {"end_away_from_its_node", "  [5,17,12,12,1,1,1,2]",
     "  [5,17,12,12,1,1,1,2,\"X04Y00Z00\",\"X04Y00Z01\",181.8,0,51,181.8,0,95,0,0,0,0]",
     "内容が合いません: "},
    {"section_beyond_the_table", "  [5,17,12,12,1,1,1,2]", "  [5,17,12,12,1,99,1,2]",
     "内容が合いません: 部材の断面番号が範囲外です"},
    {"more_behind", "\n}\n", "\n}\n{}", "行目: JSON として読めません"},
};

TEST_F(ProjectFile, BrokenTextsAreToldAndChangeNothing) {
    make_sample(project);
    const std::string good = project_text(project);
    for (const Broken& each : broken) {
        SCOPED_TRACE(each.name);
        const std::size_t at = good.rfind(each.from);
        ASSERT_NE(at, std::string::npos);
        std::string text = good.substr(0, at);
        if (each.to != nullptr) {
            text += each.to + good.substr(at + std::strlen(each.from));
        }
        Fault fault;
        const int status = parse_project(text, project, fault);
        EXPECT_EQ(status, -1);
        EXPECT_NE(fault.text().find(each.told), std::string::npos) << fault.text();
        EXPECT_EQ(project_text(project), good);
    }
}

// What a stranger's file could blow up.
TEST_F(ProjectFile, DeepLargeAndManyAreRefused) {
    const auto refused = [this](const std::string& text) {
        Fault fault;
        EXPECT_EQ(parse_project(text, project, fault), -1);
        return fault.reason;
    };
    EXPECT_NE(refused(std::string(1000000, '[')).find("入れ子が深すぎます"), std::string::npos);
    std::string objects;
    for (int i = 0; i < 1000; ++i) {
        objects += "{\"a\":";
    }
    EXPECT_NE(refused(objects).find("入れ子が深すぎます"), std::string::npos);
    std::string zeros = "[0";
    for (int i = 0; i < 1000001; ++i) {
        zeros += ",0";
    }
    EXPECT_EQ(refused(zeros + "]"), "/999999: 値が多すぎます");
    std::string keys = "{\"k\":0";
    for (int i = 0; i < 100; ++i) {
        keys += ",\"k" + std::to_string(i) + "\":0";
    }
    EXPECT_NE(refused(keys + "}").find("項目が多すぎます"), std::string::npos);
    EXPECT_EQ(refused(std::string(largest_project + 1, ' ')), "ファイルが大きすぎます");
    EXPECT_NE(refused("").find("途中で終わっています"), std::string::npos);
    EXPECT_EQ(refused("[]"), "kigumi のプロジェクトではありません");
    EXPECT_EQ(refused("7"), "kigumi のプロジェクトではありません");

    make_sample(project);
    const std::string good = project_text(project);
    const std::size_t at = good.find("\"nodes\": [") + std::strlen("\"nodes\": [");
    std::string rows;
    for (int i = 0; i <= node_capacity; ++i) {
        rows += "[\"\",0,0,0,0],";
    }
    EXPECT_EQ(refused(good.substr(0, at) + rows + good.substr(at)),
              text_format("/nodes: 個数 %d が範囲外です", node_capacity + 1 + model.N_Node));
    EXPECT_EQ(project_text(project), good);
}

TEST_F(ProjectFile, FilesThatCannotBeReadAreTold) {
    CollectedMessages told;
    EXPECT_EQ(load_project(work_file(work_dir, "none.kigumi"), project), -1);
    ASSERT_EQ(save_file(work_file(work_dir, "a.kigumi"), "{\n\n"), 0);
    EXPECT_EQ(load_project(work_file(work_dir, "a.kigumi"), project), -1);
    ASSERT_EQ(told.faults.size(), 2u);
    EXPECT_NE(told.faults[0].reason.find("none.kigumi"), std::string::npos);
    EXPECT_EQ(told.faults[1].text(),
              "プロジェクトを読めません（a.kigumi: 3 行目: 途中で終わっています）");
}

// Every table full, every member with ends and an edit of its own: the largest file there is.
void fill_all_tables(Project& project, test::Dice& dice) {
    Model& m = project.model;
    const auto any = [&dice] { return static_cast<float>(dice.roll(1 << 24) + 1) / 777.0f; };
    const auto fill = [&any](auto& column, int count) {
        std::generate_n(column.begin(), count, any);
    };
    m.N_Node = node_capacity;
    for (int i = 0; i < m.N_Node; ++i) {
        m.node[i] = {{}, number_at(i), any(), any(), any(), any(), any(), role_plain};
        set_name(m.node[i].id, text_format("X%04dY00Z00", i).c_str());
    }
    m.N_Size = size_capacity;
    m.N_Mat = mat_capacity;
    for (auto* column :
         {&m.size.haba, &m.size.atumi, &m.size.length, &m.size.A, &m.size.Iy, &m.size.Iz, &m.size.J,
          &m.size.angle, &m.mat.E, &m.mat.poisson, &m.mat.density}) {
        fill(*column, size_capacity);
    }
    m.N_Beam = beam_capacity;
    for (int i = 0; i < m.N_Beam; ++i) {
        Beam& beam = m.beam[i];
        const Node& start = m.node[i];
        const Node& end = m.node[0];
        beam = {number_at(i), {},          {},    number_at(i), 1,     start.x, start.y,
                start.z,      end.x,       end.y, end.z,        1000,  1000,    any(),
                any(),        kind_purlin, any(), any(),        any(), any(),   2};
        set_name(beam.idi, m.node[i].id);
        set_name(beam.idj, m.node[0].id);
        m.edit[i] = {1, 1, "hinoki-E90", any(), any(), any(), any(), any(), any()};
    }
    m.N_Fix = fix_capacity;
    m.N_Load = load_capacity;
    for (int i = 0; i < m.N_Fix; ++i) {
        m.fix[i] = {{}, number_at(i), 1, 1, 1};
        m.load[i] = {{}, number_at(i + fix_capacity), any(), any(), any()};
    }
    m.N_X = m.N_Y = m.N_Z = level_capacity;
    for (auto* column : {&m.Xval, &m.Yval, &m.Zval}) {
        fill(*column, level_capacity);
        std::sort(column->begin(), column->end());
    }
    project.sketch_places.N_OldNode = node_capacity;
    for (SheetPoint& place : project.sketch_places.old_node) {
        place = {any(), any()};
    }
}

// Opened and saved; the times are those of the wall clock and of the process.
TEST_F(ProjectFile, TenThousandMembersAreFastAndSmall) {
    test::Dice dice(test::seed_of_run());
    fill_all_tables(project, dice);
    project.stage = Stage::reading;
    const fs::path path = work_file(work_dir, "large.kigumi");
    const auto measure = [](const char* what, const std::function<int()>& work) {
        double best = 1e9;
        double wall = 1e9;
        for (int i = 0; i < 5; ++i) {
            const std::clock_t cpu = std::clock();
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(work(), 0);
            const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
            wall = std::min(wall, passed.count());
            best = std::min(best, static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC);
        }
        std::printf("%s: %.1f ms wall, %.1f ms process, best of 5\n", what, wall * 1e3, best * 1e3);
        return best;
    };
    const auto other = std::make_unique<Project>();
    constexpr double limit = 0.2; // s, ten times that under the sanitizers
    EXPECT_LT(measure("save", [&] { return save_project(project, path); }), 10 * limit);
    EXPECT_LT(measure("open", [&] { return load_project(path, *other); }), 10 * limit);
    std::printf("%.2f MB\n", static_cast<double>(fs::file_size(path)) / 1e6);
    EXPECT_LT(fs::file_size(path), 5000000u);
    expect_same(project, *other);
}

} // namespace
} // namespace kigumi
