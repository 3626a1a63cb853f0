#include "process.h"

#include "analysis/result_input.h"
#include "analysis/solver_run.h"
#include "base/message.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "model/roles.h"
#include "model/sections.h"
#include "model/sketch.h"
#include "project/project.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <map>
#include <memory>
#include <set>

namespace kigumi {
namespace {

using test::Outcome;
using Arguments = std::vector<std::string>;

class Command : public ::testing::Test {
  protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(info->test_suite_name()) + "." + info->name();
        std::replace(name.begin(), name.end(), '/', '_');
        folder_ = fs::temp_directory_path() / ("kigumi-command-" + name);
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    Outcome run(const Arguments& arguments) const { return test::run_kigumi(folder_, arguments); }
    // Runs a command that has to succeed without a word on standard error.
    std::string succeed(const Arguments& arguments) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
    void generate(const Arguments& settings = {"NX=2", "NY=2"}) const {
        Arguments arguments = {"generate", "-o", "frame.jik"};
        arguments.insert(arguments.end(), settings.begin(), settings.end());
        succeed(arguments);
    }
    std::string bytes(const char* name) const { return read_file(folder_ / name).value_or(""); }
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
            found.insert(utf8_of(fs::relative(entry.path(), folder_)));
        }
        return found;
    }

    fs::path folder_;
};

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// The lines of `info` that do not depend on categories.
std::string quantities(const std::string& info) {
    std::string kept;
    size_t start = 0;
    while (start < info.size()) {
        const size_t end = info.find('\n', start) + 1;
        if (info[start] != ' ') {
            kept += info.substr(start, end - start);
        }
        start = end;
    }
    return kept;
}

TEST_F(Command, HelpNamesEveryCommand) {
    const std::string help = succeed({"--help"});
    const std::set<std::string> commands{"generate", "info",    "convert", "solve",
                                         "draw",     "listing", "report",  "demo"};
    for (const std::string& command : commands) {
        EXPECT_TRUE(contains(help, "\n  " + command + " ")) << command;
        const std::string own = succeed({command, "--help"});
        EXPECT_TRUE(contains(own, "使い方: ") && contains(own, "\nオプション:\n")) << own;
    }
    EXPECT_EQ(succeed({"--version"}).substr(0, 7), "kigumi ");
    EXPECT_TRUE(names().empty());
}

TEST_F(Command, GenerateAndInfo) {
    const std::string told =
        succeed({"generate", "NX=3", "NY=2", "TukaHaba=90.9", "SumiType=1", "N_Sou=2", "YaneMode=0",
                 "--move", "10,-20.5,0", "-o", "軸.jik"});
    EXPECT_TRUE(contains(told, "部材 448")) << told;
    const std::string info = succeed({"info", "軸.jik"});
    EXPECT_TRUE(contains(info, "部材 448\n"));
    EXPECT_TRUE(contains(info, "Z レベル 11: 50 110 170 230 290 335 395 455 515 575 620\n"));
    EXPECT_TRUE(contains(info, "範囲 x 10 .. 282.7  y -20.5 .. 161.3  z 50 .. 620 cm\n"));
    EXPECT_TRUE(contains(info, "    192 本"));
    EXPECT_EQ(names(), (std::set<std::string>{"軸.jik", "Youseki.dat"}));
    const Outcome roofed =
        run({"generate", "NX=1", "NY=1", "SumiType=2", "N_Sou=3", "YaneMode=1", "-o", "frame.jik"});
    EXPECT_EQ(roofed.status, 0);
    EXPECT_EQ(roofed.err, "３層屋根付は含まれません\n");
    EXPECT_TRUE(contains(roofed.out, "部材 336")) << roofed.out;
}

TEST_F(Command, SolveSaysWhenTheFoldersOwnSolverRuns) {
    generate();
    const Arguments solve = {"solve", "frame.jik", "--fix", "bottom", "--load", "top:0,0,-200"};
    const std::string told = "計算プログラム: 作業フォルダの FRAMESLV.EXE\n";
    EXPECT_FALSE(contains(succeed(solve), told));
    std::ofstream(folder_ / "FRAMESLV.EXE") << "#!/bin/sh\nexit 9\n";
    fs::permissions(folder_ / "FRAMESLV.EXE", fs::perms::owner_exec, fs::perm_options::add);
    const Outcome outcome = run(solve);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, told);
    EXPECT_EQ(outcome.err, "解析に失敗しました（終了コード 9）\n");
}

TEST_F(Command, ConvertToEveryFormat) {
    generate();
    const std::string info = quantities(succeed({"info", "frame.jik"}));
    for (const char* ending : {"jik", "bon", "ydu", "tgk", "dxf", "dat", "w3d", "DXF", "kigumi"}) {
        const std::string name = std::string("out.") + ending;
        succeed({"convert", "frame.jik", "-o", name, "--fix", "bottom", "--load", "top:0,0,-200"});
        EXPECT_GT(bytes(name.c_str()).size(), 1000u) << name;
    }
    EXPECT_EQ(quantities(succeed({"info", "out.jik"})), info);
    EXPECT_EQ(quantities(succeed({"info", "out.tgk"})), info);
    EXPECT_EQ(bytes("out.DXF"), bytes("out.dxf"));
    EXPECT_EQ(bytes("out.dat"), bytes("out.w3d"));
    const auto sketch = std::make_unique<Project>();
    ASSERT_EQ(load_tegaki_data(sketch->model, sketch->sketch_places, folder_ / "out.tgk"), 0);
    EXPECT_TRUE(all_nodes_known(sketch->model))
        << "a sketch that is complete, with supports and loads or not";
    succeed({"convert", "out.tgk", "-o", "again.jik"});
    succeed({"convert", "out.jik", "-o", "again.tgk"});
    EXPECT_EQ(quantities(succeed({"info", "again.jik"})), info); // a sketch has no categories
    EXPECT_EQ(quantities(succeed({"info", "again.tgk"})), info);
}

// Members by category, as info prints them.
std::string kinds(const std::string& info) {
    std::string kept;
    for (size_t start = 0; start < info.size();) {
        const size_t end = info.find('\n', start) + 1;
        kept += info[start] == ' ' ? info.substr(start, end - start) : "";
        start = end;
    }
    return kept;
}

TEST_F(Command, ProjectIsTakenByEveryCommand) {
    succeed({"generate", "NX=2", "NY=1", "--move", "10,0,0", "-o", "a.kigumi"});
    succeed({"generate", "NX=2", "NY=1", "--move", "10,0,0", "-o", "direct.jik"});
    succeed({"convert", "a.kigumi", "-o", "through.jik"});
    EXPECT_EQ(bytes("through.jik"), bytes("direct.jik")) << "with the shift of the project";
    succeed({"convert", "direct.jik", "-o", "again.jik"});
    EXPECT_EQ(kinds(succeed({"info", "again.jik"})), kinds(succeed({"info", "a.kigumi"})));
    EXPECT_EQ(bytes("again.jik"), bytes("direct.jik")) << "with its groups";

    const Arguments roles = {"--fix", "bottom", "--load", "top:1.5,0,-200"};
    const auto with_roles = [&roles](Arguments arguments) {
        arguments.insert(arguments.end(), roles.begin(), roles.end());
        return arguments;
    };
    succeed(with_roles({"convert", "a.kigumi", "-o", "b.kigumi"}));
    succeed({"convert", "b.kigumi", "-o", "c.kigumi"});
    EXPECT_EQ(bytes("c.kigumi"), bytes("b.kigumi"));
    const std::string told = succeed({"solve", "b.kigumi", "--dir", "own"});
    EXPECT_TRUE(contains(told, "固定節点 12、荷重節点 14")) << "those of the project: " << told;
    succeed(with_roles({"solve", "a.kigumi", "--dir", "given"}));
    EXPECT_EQ(bytes("own/FRAMESLV.IN"), bytes("given/FRAMESLV.IN"));
    const std::string other =
        succeed({"solve", "b.kigumi", "--dir", "other", "--load", "X00Y00Z01:0,0,-5"});
    EXPECT_TRUE(contains(other, "固定節点 12、荷重節点 1")) << other;
    succeed({"draw", "b.kigumi", "-o", "a.svg"});
    succeed({"draw", "b.kigumi", "--dir", "own", "--mode", "force", "-o", "b.svg"});
    succeed({"report", "b.kigumi", "--dir", "own", "-o", "a.pdf"});
}

// The last role given to a node holds, in the order of the command line.
TEST_F(Command, LaterRolesReplaceEarlierOnes) {
    generate({"NX=1", "NY=1"}); // 8 nodes around below, 9 above
    const std::pair<Arguments, const char*> roles[] = {
        {{"--fix", "bottom", "--load", "top:0,0,-1"}, "固定節点 8、荷重節点 9"},
        {{"--fix", "bottom", "--load", "top:0,0,-1", "--fix", "X00Y00Z01"},
         "固定節点 9、荷重節点 8"},
        {{"--fix", "X00Y00Z01", "--fix", "bottom", "--load", "top:0,0,-1"},
         "固定節点 8、荷重節点 9"},
        {{"--load", "*:0,0,-1", "--fix", "*Z00"}, "固定節点 8、荷重節点 9"},
        {{"--fix", "bottom", "--load", "X01Y01*:1,2,3"}, "固定節点 8、荷重節点 1"}};
    for (const auto& [given, told] : roles) {
        Arguments arguments = {"solve", "frame.jik", "--dir", "s"};
        arguments.insert(arguments.end(), given.begin(), given.end());
        EXPECT_TRUE(contains(succeed(arguments), told)) << told;
    }
}

TEST_F(Command, SolveIsInEquilibriumAndListsItsResults) {
    generate({"NX=3", "NY=2", "SumiType=2", "YaneMode=-1", "TukaHaba=90.9"});
    const std::string told =
        succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:10,5,-200"});
    const char* difference = "荷重と反力の差 ";
    const size_t at = told.find(difference);
    ASSERT_NE(at, std::string::npos) << told;
    EXPECT_LT(std::stod(told.substr(at + std::string(difference).size())), 1e-9);
    EXPECT_TRUE(contains(told, "最大引張 ") && contains(told, "最大変位 "));
    for (const char* name :
         {"s/FRAMESLV.IN", "s/frameslv.lst", "s/frameslv.dsp", "s/frameslv.zlv"}) {
        EXPECT_FALSE(bytes(name).empty()) << name;
    }
    succeed({"listing", "--dir", "s", "-o", "list.txt"});
    EXPECT_FALSE(bytes("list.txt").empty());
    const auto lines = [this](const char* kind) {
        succeed({"listing", "--dir", "s", "--csv", kind, "-o", "list.csv"});
        const std::string csv = bytes("list.csv");
        return std::count(csv.begin(), csv.end(), '\n');
    };
    const auto members = std::stol(told.substr(told.find("部材 ") + std::string("部材 ").size()));
    EXPECT_EQ(lines("members"), members + 1);
    EXPECT_EQ(lines("stress"), members + 1);
    EXPECT_TRUE(contains(bytes("list.csv"), "曲げ xm1 (kgf·cm)"));
    EXPECT_EQ(lines("heni"), std::stol(told.substr(std::string("節点 ").size())) + 1);
}

// Pages of a PDF file.
size_t pages_of(const std::string& pdf) {
    size_t pages = 0;
    for (size_t at = 0; (at = pdf.find("/Type /Page\n", at)) != std::string::npos; ++at) {
        ++pages;
    }
    return pages;
}

TEST_F(Command, ReportWithAndWithoutTheFrame) {
    generate({"NX=3", "NY=2", "SumiType=2", "YaneMode=-1"});
    succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:0,0,-200"});
    succeed({"report", "--dir", "s", "-o", "報告.pdf"});
    succeed({"report", "frame.jik", "--dir", "s", "-o", "full.pdf"});
    fs::remove(folder_ / "s" / "FRAMESLV.IN");
    succeed({"report", "--dir", "s", "-o", "bare.pdf"});
    for (const char* name : {"報告.pdf", "full.pdf", "bare.pdf"}) {
        EXPECT_EQ(bytes(name).substr(0, 5), "%PDF-") << name;
        EXPECT_TRUE(contains(bytes(name).substr(bytes(name).size() - 8), "%%EOF")) << name;
    }
    EXPECT_GE(pages_of(bytes("full.pdf")), 3u);
    EXPECT_GE(pages_of(bytes("bare.pdf")), 2u) << "without supports and loads";
}

// The frame as it lies in memory, saved as axis data and read again: other numbers, other order.
TEST_F(Command, ReportTakesTheFramesOwnFile) {
    const auto project = std::make_unique<Project>();
    project->work_dir = folder_;
    Model& model = project->model;
    ASSERT_EQ(make_unit(model, project->param, project->solids), 0);
    ASSERT_EQ(save_jiku_data(model, folder_ / "unit.jik", {}), 0);
    std::reverse(model.beam.begin(), model.beam.begin() + model.N_Beam);
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].no = number_at(i);
    }
    ASSERT_EQ(rebuild_tables(model), 0);
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        node.z <= model.Zval[0] ? append_fix(model, node.no, 1, 1, 1)
                                : append_load(model, node.no, 0.0f, 0.0f, -10.0f);
    }
    SolverOutcome outcome;
    ASSERT_EQ(run_solver(model, project->solver_seams, folder_, outcome), 0);
    ASSERT_EQ(outcome.status, 0);
    succeed({"report", "unit.jik", "--dir", ".", "-o", "a.pdf"});
}

TEST_F(Command, ResultsOfAnotherInputAreTold) {
    generate();
    succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:0,0,-200"});
    EXPECT_EQ(read_result_input(folder_ / "s").self_weight, SelfWeight::no);
    const auto told = [this](const Arguments& arguments) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.err;
    };
    succeed(
        {"convert", "frame.jik", "-o", "s/new.bon", "--fix", "bottom", "--load", "top:0,0,-5000"});
    fs::rename(folder_ / "s" / "FRAMESLV.IN", folder_ / "s" / "old.in");
    fs::rename(folder_ / "s" / "new.bon", folder_ / "s" / "FRAMESLV.IN");
    for (const Arguments& arguments :
         {Arguments{"listing", "--dir", "s", "-o", "a.txt"},
          Arguments{"report", "--dir", "s", "-o", "a.pdf"},
          Arguments{"report", "frame.jik", "--dir", "s", "-o", "a.pdf"},
          Arguments{"draw", "--dir", "s", "--mode", "force", "--labels", "load", "-o", "a.png"}}) {
        EXPECT_TRUE(contains(told(arguments), "古い結果")) << arguments[0];
    }
    fs::rename(folder_ / "s" / "old.in", folder_ / "s" / "FRAMESLV.IN");
    succeed({"listing", "--dir", "s", "-o", "a.txt"});
    // The solver by hand, with an option of its own.
    const std::string by_hand = "cd '" + (folder_ / "s").string() + "' && '" +
                                find_solver(folder_).string() + "' --self-weight >/dev/null 2>&1";
    ASSERT_EQ(std::system(by_hand.c_str()), 0);
    EXPECT_TRUE(contains(told({"report", "--dir", "s", "-o", "a.pdf"}), "入力不明"));
    EXPECT_NE(read_result_input(folder_ / "s").self_weight, SelfWeight::no);
}

TEST_F(Command, DrawEveryModeAndFormat) {
    generate({"NX=1", "NY=1"});
    succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:0,0,-200"});
    std::set<std::string> pictures;
    for (const char* mode : {"wire", "force", "band", "width", "heni", "solid"}) {
        succeed({"draw", "--dir", "s", "--mode", mode, "--band", "50,100", "--scale", "10",
                 "--labels", "nodes,members,fix,load", "--size", "600x400", "-o", "a.png"});
        EXPECT_EQ(bytes("a.png").substr(0, 4), "\x89PNG") << mode;
        pictures.insert(bytes("a.png"));
    }
    EXPECT_EQ(pictures.size(), 6u) << "every mode is a picture of its own";
    succeed({"draw", "--dir", "s", "--mode", "force", "-o", "a.svg"});
    EXPECT_TRUE(contains(bytes("a.svg"), "<svg"));
    EXPECT_FALSE(contains(bytes("a.svg"), "最大引張"));
    succeed({"draw", "--dir", "s", "--mode", "force", "--legend", "-o", "a.svg"});
    EXPECT_TRUE(contains(bytes("a.svg"), "最大引張"));
    succeed({"draw", "--dir", "s", "--mode", "force", "-o", "a.pdf"});
    EXPECT_EQ(pages_of(bytes("a.pdf")), 1u);
    succeed({"draw", "--dir", "s", "--mode", "force", "-o", "A.PDF"});
    EXPECT_EQ(bytes("A.PDF").substr(0, 5), "%PDF-");
    succeed({"draw", "frame.jik", "--mode", "axis", "-o", "a.svg"});
    succeed({"draw", "frame.jik", "--mode", "perspective", "--rho", "900", "--theta", "45", "--phi",
             "60", "-o", "b.svg"});
    succeed({"draw", "frame.jik", "--mode", "perspective", "-o", "c.svg"});
    EXPECT_NE(bytes("b.svg"), bytes("c.svg"));
}

TEST_F(Command, Demo) {
    const std::string told = succeed({"demo", "見本"});
    EXPECT_TRUE(contains(told, "荷重と反力の差 "));
    for (const char* name : {"見本/demo.jik", "見本/results.txt", "見本/axial-force.png",
                             "見本/axial-force.svg", "見本/axial-force-width.png"}) {
        EXPECT_GT(bytes(name).size(), 1000u) << name;
    }
}

// Arguments, status, and a part of the one line that says why.
struct Refusal {
    const char* name;
    Arguments arguments;
    int status;
    const char* reason;
};

const Refusal refusals[] = {
    {"no_such_command", {"frob"}, 2, "コマンドがありません"},
    {"argument_missing", {"info"}, 2, "FILE が必要です"},
    {"unknown_option", {"info", "--nope", "frame.jik"}, 2, "余分な引数です: --nope"},
    {"output_missing", {"convert", "frame.jik"}, 2, "--output が必要です"},
    {"output_twice", {"generate", "-o", "old.jik", "-o", "b.jik"}, 2, "--output が二度以上指定"},
    {"colour", {"convert", "frame.jik", "-o", "old.dxf", "--colour", "9"}, 2, "--colour"},
    {"load_without_force", {"solve", "frame.jik", "--load", "top"}, 2, "「top」を読めません"},
    {"draw_mode", {"draw", "frame.jik", "--mode", "x", "-o", "old.png"}, 2, "--mode"},
    {"draw_band", {"draw", "--dir", "s", "--band", "9,1", "-o", "old.png"}, 2, "「9,1」"},
    {"draw_angle_nan", {"draw", "frame.jik", "--tau", "nan", "-o", "old.png"}, 2, "--tau"},
    {"draw_label", {"draw", "frame.jik", "--labels", "x", "-o", "old.png"}, 2, "「x」"},
    {"setting_without_value", {"generate", "NX", "-o", "old.jik"}, 1, "NX: 名前=値"},
    {"setting_unknown", {"generate", "nx=3", "-o", "old.jik"}, 1, "nx: 知らない"},
    {"setting_no_number", {"generate", "NX=3.5", "-o", "old.jik"}, 1, "NX: 「3.5」"},
    {"setting_range", {"generate", "SumiType=3", "-o", "old.jik"}, 1, "SumiType: "},
    {"no_columns", {"generate", "N_Sou=2", "-o", "old.jik"}, 1, "柱なしが指定されている"},
    {"generate_into_a_folder", {"generate", "-o", "folder"}, 1, "フォルダです"},
    {"generate_into_nowhere", {"generate", "-o", "none/a.jik"}, 1, "フォルダがありません"},
    {"generate_full_disk", {"generate", "-o", "/dev/full"}, 1, "ディスクの空きがありません"},
    {"missing", {"convert", "none.jik", "-o", "old.dxf"}, 1, "none.jik: ファイルまたは"},
    {"input_folder", {"convert", "folder", "-o", "old.dxf"}, 1, "folder: フォルダです"},
    {"input_noise", {"convert", "noise.jik", "-o", "old.dxf"}, 1, "最初の文字は"},
    {"sketch_missing", {"convert", "none.tgk", "-o", "old.dxf"}, 1, "Can't open TEGAKI_FILE"},
    {"project_newer", {"info", "newer.kigumi"}, 1, "読めない新しい形式です"},
    {"project_cut_off", {"solve", "cut.kigumi"}, 1, "cut.kigumi: 2 行目: 途中で終わっています"},
    {"sketch_without_members", {"info", "sketch.tgk"}, 1, "部材がありません"},
    {"output_format", {"convert", "frame.jik", "-o", "old.txt"}, 2, "出力の形式は"},
    {"picture_format", {"draw", "frame.jik", "-o", "old.txt"}, 2, "図の形式は"},
    {"no_such_node", {"convert", "frame.jik", "-o", "old.bon", "--fix", "X99*"}, 1, "X99*: 該当"},
    {"draw_without_results", {"draw", "--mode", "force", "-o", "old.png"}, 2, "（--dir）が必要"},
    {"draw_without_frame", {"draw", "--mode", "axis", "-o", "old.png"}, 2, "軸データのファイル"},
    {"picture_too_small",
     {"draw", "--dir", "s", "--mode", "force", "--size", "300x200", "-o", "old.png"},
     1,
     "収まりません"},
    {"csv_kind", {"listing", "--dir", "s", "--csv", "x", "-o", "old.txt"}, 2, "--csv"},
    {"report_format", {"report", "--dir", "s", "-o", "old.txt"}, 2, "報告書の形式は"},
    {"report_into_nowhere",
     {"report", "--dir", "s", "-o", "none/a.pdf"},
     1,
     "フォルダがありません"},
    {"report_of_another_frame",
     {"report", "other.jik", "--dir", "s", "-o", "old.pdf"},
     1,
     "other.jik: この計算結果の骨組ではありません"},
    {"report_cut_off", {"report", "--dir", "cut-off", "-o", "old.pdf"}, 1, "frameslv.lst"},
    {"results_cut_off", {"listing", "--dir", "cut-off", "-o", "old.txt"}, 1, "frameslv.lst"},
};

TEST_F(Command, RefusalSaysWhyInOneLineAndLeavesAllFiles) {
    generate();
    succeed({"info", "frame.jik"}); // leaves the volume summary, as every reading does
    succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:0,0,-1"});
    succeed({"generate", "NX=1", "NY=1", "-o", "other.jik"});
    fs::create_directories(folder_ / "folder");
    fs::copy(folder_ / "s", folder_ / "cut-off");
    std::ofstream(folder_ / "cut-off" / "frameslv.lst") << "37\n1 1 0.0";
    std::ofstream(folder_ / "newer.kigumi") << "{\"format\": \"kigumi\", \"version\": 2}";
    std::ofstream(folder_ / "cut.kigumi") << "{\"format\":\n";
    std::ofstream(folder_ / "noise.jik") << "\x89PNG\r\n\x1a\n\x01\xff\xfe";
    std::ofstream(folder_ / "sketch.tgk") << "     0\r\n     0\r\n";
    const char* const kept[] = {"old.jik", "old.tgk", "old.bon", "old.dxf",
                                "old.png", "old.txt", "old.pdf"};
    for (const char* name : kept) {
        std::ofstream(folder_ / name) << "old";
    }
    const std::set<std::string> before = names();
    for (const auto& [name, arguments, status, reason] : refusals) {
        SCOPED_TRACE(name);
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_TRUE(contains(outcome.err, reason)) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(names(), before);
        for (const char* old : kept) {
            EXPECT_EQ(bytes(old), "old") << old;
        }
    }
}

// A failed analysis leaves no results that could be taken for its own.
TEST_F(Command, FailedSolveLeavesNoOldResults) {
    generate();
    succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:0,0,-1"});
    const Outcome outcome = run({"solve", "frame.jik", "--dir", "s", "--load", "top:0,0,-1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_FALSE(fs::exists(folder_ / "s" / "frameslv.lst"));
    EXPECT_EQ(run({"listing", "--dir", "s", "-o", "list.txt"}).status, 1);
    EXPECT_FALSE(fs::exists(folder_ / "list.txt"));
}

class Roofed : public Command,
               public ::testing::WithParamInterface<std::tuple<const char*, const char*>> {};

// A frame that a half turn maps onto itself moves so too, and its loaded ridge goes down.
TEST_P(Roofed, StandsAndMovesSymmetrically) {
    generate({"NX=4", "NY=3", "TukaHaba=90.9", "SumiType=2", "YaneMode=1",
              std::string("YaneType=") + std::get<0>(GetParam()),
              std::string("N_Sou=") + std::get<1>(GetParam())});
    succeed({"solve", "frame.jik", "--dir", "s", "--fix", "bottom", "--load", "top:0,0,-200"});
    const auto project = std::make_unique<Project>();
    const Result& result = project->result;
    ASSERT_EQ(FrameSlv(project->model, project->result, folder_ / "s"), 0);
    std::map<std::array<long, 3>, const Disp*> at_place;
    const auto place = [](const Setuten& node, double sign) {
        const double x = sign * (node.x - 2 * 90.9);
        const double y = sign * (node.y - 1.5 * 90.9);
        return std::array<long, 3>{std::lround(x), std::lround(y), std::lround(node.z * 10)};
    };
    std::map<int, const Disp*> of_number;
    for (int i = 0; i < result.N_Setuten; ++i) {
        of_number[result.disp[i].old_no] = &result.disp[i];
    }
    for (int i = 0; i < result.N_Setuten; ++i) {
        at_place[place(result.setuten[i], 1.0)] = of_number.at(result.setuten[i].OldNo);
    }
    const double near = 1e-4 * result.disp[0].mag;
    ASSERT_TRUE(result.disp[0].mag > 0.0f && result.disp[0].mag < 10.0f);
    EXPECT_LT(result.disp[0].disp_z, 0.0f);
    for (int i = 0; i < result.N_Setuten; ++i) {
        const Disp& own = *of_number.at(result.setuten[i].OldNo);
        const Disp& turned = *at_place.at(place(result.setuten[i], -1.0));
        EXPECT_NEAR(own.disp_x, -turned.disp_x, near) << own.name;
        EXPECT_NEAR(own.disp_y, -turned.disp_y, near) << own.name;
        EXPECT_NEAR(own.disp_z, turned.disp_z, near) << own.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Types, Roofed,
                         ::testing::Combine(::testing::Values("1", "2"),
                                            ::testing::Values("1", "2")));

} // namespace
} // namespace kigumi
