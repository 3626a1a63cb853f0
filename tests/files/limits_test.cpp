// The last record that a table holds is taken, the next is refused with one message.
#include "analysis/result_reader.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "model/names.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/validate.h"
#include "results_support.h"

namespace kigumi::test {

namespace {

struct Limit {
    const char* name;
    int last;
    // Makes so many records; negative when they are refused.
    int (*fill)(Project& project, int count);
};

int read_jik(Project& project, const std::string& lines) {
    const fs::path path = work_file(project.work_dir, "a.jik");
    return save_file(path, lines, nullptr, Sync::no) < 0
               ? -99
               : load_jiku_data(project.model, project.solids, project.work_dir, path);
}

// `count` nodes in a row.
int nodes_of_jik(Project& project, int count) {
    std::string lines;
    for (int i = 1; i < count; ++i) {
        lines += text_format("1 %d 0 0 %d 0 0 10 10\n", i - 1, i);
    }
    return read_jik(project, lines);
}

int members_of_jik(Project& project, int count) {
    std::string lines;
    for (int i = 0; i < count; ++i) {
        lines += "1 0 0 0 0 0 300 10 10\n";
    }
    return read_jik(project, lines);
}

int read_tgk(Project& project, int nodes, int members) {
    std::string lines = text_format(" %d\n", nodes);
    for (int no = 1; no <= nodes; ++no) {
        lines += text_format(" %d \"\" %d 0 0 0 0 2\n", no, no);
    }
    lines += text_format(" %d\n", members);
    for (int no = 1; no <= members; ++no) {
        lines += text_format(" %d \"\" \"\" 1 2 1 0 0 2 0 0 -1 -1 10 10 0 0 0 0 2\n", no);
    }
    const fs::path path = work_file(project.work_dir, "a.tgk");
    return save_file(path, lines, nullptr, Sync::no) < 0
               ? -99
               : load_tegaki_data(project.model, project.sketch_places, path);
}

int levels(Project& project, int count) {
    return nodes_of_jik(project, count) < 0 ? -99 : save_level_name(project.model);
}

int sections(Project& project, int count) {
    std::string lines;
    for (int i = 0; i < count; ++i) {
        lines += text_format("1 0 0 0 0 0 300 10 %d\n", 10 + i);
    }
    return read_jik(project, lines) < 0 ? -99 : rebuild_tables(project.model);
}

int roles(Project& project, int count, int flag) {
    if (nodes_of_jik(project, count) < 0) {
        return -99;
    }
    for (int i = 0; i < count; ++i) {
        project.model.node[i].flag = flag;
    }
    return make_fix_and_load(project.model);
}

int members_of_results(Project& project, int count) {
    std::string text = text_format("2 1 1 0 0 0 A 2 2 1 0 0 B %d", count);
    for (int i = 0; i < count; ++i) {
        text += " 1 1 1 A 2 2 B 1 1 2 3 4 5 6 7 8 9 10 11";
    }
    return read_frameslv(project.result, text);
}

const Limit limits[] = {
    {"nodes_of_axis_data", node_capacity, nodes_of_jik},
    {"members_of_axis_data", beam_capacity, members_of_jik},
    {"nodes_of_a_sketch", node_capacity,
     [](Project& project, int count) { return read_tgk(project, count, 1); }},
    {"members_of_a_sketch", beam_capacity,
     [](Project& project, int count) { return read_tgk(project, 2, count); }},
    {"levels", level_capacity, levels},
    {"sections", size_capacity, sections},
    {"supports", fix_capacity,
     [](Project& project, int count) { return roles(project, count, role_fixed); }},
    {"loads", load_capacity,
     [](Project& project, int count) { return roles(project, count, role_loaded); }},
    {"members_of_results", result_capacity, members_of_results},
};

class LimitTest : public CoreTest, public ::testing::WithParamInterface<Limit> {};

TEST_P(LimitTest, LastFitsAndNextIsRefusedWithOneMessage) {
    EXPECT_GE(GetParam().fill(project, GetParam().last), 0);
    EXPECT_EQ(find_model_fault(model, true), nullptr);
    expect_messages({});
    reset_model(model);
    EXPECT_EQ(GetParam().fill(project, GetParam().last + 1), -1);
    EXPECT_EQ(take_messages().size(), 1u);
    EXPECT_EQ(find_model_fault(model, true), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Tables, LimitTest, ::testing::ValuesIn(limits),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace

} // namespace kigumi::test
