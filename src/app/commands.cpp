#include "app/commands.h"

#include "analysis/solver_input.h"
#include "analysis/solver_run.h"
#include "app/frame_input.h"
#include "app/summary.h"
#include "base/files.h"
#include "base/message.h"
#include "export/dxf.h"
#include "export/win3d.h"
#include "files/jiku.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "geometry/perspective.h"
#include "geometry/solid.h"
#include "model/lookup.h"
#include "results/listing.h"
#include "results/result_csv.h"

#include <chrono>
#include <cstdio>
#include <map>

namespace kigumi {

namespace {

// Seconds since it was made or asked last.
class Stopwatch {
  public:
    double lap() {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - since_).count();
        since_ = now;
        return seconds;
    }

  private:
    std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
};

int write_win3d(const fs::path& path) {
    return build_trio_file() < 0 ? -1 : save_win3d(path);
}

// The viewpoint picture as a drawing.
int write_dxf(const fs::path& path, int colour) {
    SegmentCanvas canvas;
    DrawArea area;
    area.xScreen = 1280;
    area.yScreen = 800;
    if (build_trio_file() < 0 || draw_perspective(canvas, area) < 0) {
        return -1;
    }
    return make_dxf_file(path, colour);
}

// Analyses the model in the working directory and reads the results.
int solve_model(double& seconds) {
    if (is_own_solver(find_solver())) { // a program that did not come with this one
        std::printf("計算プログラム: 作業フォルダの FRAMESLV.EXE\n");
    }
    std::fflush(stdout);
    SolverOutcome outcome;
    Stopwatch watch;
    if (run_solver(outcome) < 0) {
        return -1;
    }
    seconds = watch.lap();
    if (outcome.status != 0) {
        std::error_code code;
        const bool told = fs::exists(work_file("frameslv.err"), code);
        return refuse(told ? already_told
                           : text_format("解析に失敗しました（終了コード %d）", outcome.status));
    }
    return FrameSlv(ResultsOf::this_model);
}

} // namespace

int run_generate(const GenerateOptions& options) {
    if (set_parameters(options.settings) < 0 || make_unit() < 0) {
        return -1;
    }
    if (save_jiku_data(path_of(options.output), {options.dx, options.dy, options.dz}) < 0) {
        return -1;
    }
    std::printf("軸ファイルを作製しました %s（節点 %d、部材 %d）\n", options.output.c_str(),
                model.N_Node, model.N_Beam);
    return 0;
}

int run_info(const std::string& input) {
    if (read_frame(input) < 0) {
        return -1;
    }
    print_frame_info();
    return 0;
}

int run_convert(const std::string& input, const std::string& output,
                const std::vector<RoleOption>& roles, int colour) {
    const fs::path path = path_of(output);
    const std::string ending = ending_of(path);
    const auto write = [&]() {
        if (ending == ".jik") {
            return save_jiku_data(path, {});
        }
        if (ending == ".bon") {
            return save_honegumi(path);
        }
        if (ending == ".ydu") {
            return save_honegra(path);
        }
        if (ending == ".tgk") {
            project_model();
            for (int i = 0; i < model.N_Node; ++i) {
                model.node[i].flag = 2; // in a sketch: place known
            }
            return save_tegaki_data(path);
        }
        return ending == ".dxf" ? write_dxf(path, colour) : write_win3d(path);
    };
    constexpr const char* endings[] = {".jik", ".bon", ".ydu", ".tgk", ".dxf", ".dat", ".w3d"};
    bool known = false;
    for (const char* each : endings) {
        known = known || ending == each;
    }
    if (!known) {
        show_message(text_format("%s: 出力の形式は .jik .bon .ydu .tgk .dxf .dat .w3d です",
                                 output.c_str()));
        return wrong_usage;
    }
    if (read_frame(input) < 0 || mark_roles(roles) < 0) {
        return -1;
    }
    return write() < 0 ? -1 : 0;
}

int run_solve(const std::string& input, const std::string& dir,
              const std::vector<RoleOption>& roles) {
    if (enter_dir(dir) < 0) {
        return -1;
    }
    Stopwatch watch;
    if (read_frame(input) < 0 || mark_roles(roles) < 0) {
        return -1;
    }
    const double reading = watch.lap();
    double solving = 0.0;
    if (solve_model(solving) < 0) {
        return -1;
    }
    const double all = watch.lap();
    print_frame_summary();
    print_result_summary();
    std::printf("時間 読込 %.3f 秒、解析 %.3f 秒、結果読込 %.3f 秒\n", reading, solving,
                all - solving);
    return 0;
}

int run_listing(const std::string& dir, const std::string& csv, const std::string& output) {
    if (use_result_dir(dir) < 0 || FrameSlv() < 0) {
        return -1;
    }
    if (csv.empty()) {
        return save_listing(path_of(output));
    }
    const std::map<std::string, const ResultTable*> tables = {
        {"members", &member_table()}, {"stress", &stress_table()}, {"heni", &displacement_table()}};
    return save_result_csv(path_of(output), *tables.at(csv));
}

namespace {

// One picture of the demonstration, from the results in the working directory.
int draw_demo(const char* mode, const char* name, std::vector<std::string> labels) {
    DrawOptions options;
    options.dir = utf8_of(work_dir());
    options.mode = mode;
    options.output = utf8_of(work_file(name));
    options.labels = std::move(labels);
    options.width = 1600;
    options.height = 1200;
    return run_draw(options);
}

int draw_demo_pictures() {
    for (const char* ending : {".png", ".svg"}) {
        const std::string force = std::string("axial-force") + ending;
        const std::string width = std::string("axial-force-width") + ending;
        if (draw_demo("force", force.c_str(), {"fix"}) < 0 ||
            draw_demo("width", width.c_str(), {}) < 0) {
            return -1;
        }
    }
    return 0;
}

} // namespace

int run_demo(const std::string& dir) {
    if (enter_dir(dir.empty() ? "kigumi-demo" : dir) < 0) {
        return -1;
    }
    std::printf("8 × 8 のスペース床、２層、タイプⅡの柱、庇付\n");
    Stopwatch watch;
    GenerateOptions options;
    options.settings = {"NX=8", "NY=8", "SumiType=2", "N_Sou=2", "YaneMode=-1"};
    options.output = utf8_of(work_file("demo.jik"));
    if (run_generate(options) < 0) {
        return -1;
    }
    const double generating = watch.lap();
    const std::string frame = options.output;
    constexpr float load = -200.0f; // kgf on every node of the top level
    if (read_frame(frame) < 0 ||
        mark_roles({{false, "bottom"}, {true, "top", 0.0f, 0.0f, load}}) < 0) {
        return -1;
    }
    const double reading = watch.lap();
    double solving = 0.0;
    if (solve_model(solving) < 0) {
        return -1;
    }
    const double results = watch.lap() - solving;
    print_frame_summary();
    print_result_summary();
    if (save_listing(work_file("results.txt")) < 0 || draw_demo_pictures() < 0) {
        return -1;
    }
    std::printf("時間 生成 %.3f 秒、読込 %.3f 秒、解析 %.3f 秒、結果読込 %.3f 秒、図 %.3f 秒\n",
                generating, reading, solving, results, watch.lap());
    std::printf("ファイルは %s にあります\n", utf8_of(work_dir()).c_str());
    return 0;
}

} // namespace kigumi
