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
#include "model/model.h"
#include "model/sections.h"
#include "project/project_file.h"
#include "results/listing.h"
#include "results/result_csv.h"
#include "sight/perspective.h"
#include "solid/solid.h"

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

int write_win3d(Project& project, const fs::path& path) {
    return build_trio_file(project.model, project.solids, project.work_dir) < 0
               ? -1
               : save_win3d(project.solids, path);
}

// The viewpoint picture as a drawing.
int write_dxf(Project& project, const fs::path& path, int colour) {
    SegmentCanvas canvas;
    DrawArea area;
    area.xScreen = 1280;
    area.yScreen = 800;
    if (build_trio_file(project.model, project.solids, project.work_dir) < 0 ||
        draw_perspective(project.view, project.solids, project.perspective, project.work_dir,
                         canvas, area) < 0) {
        return -1;
    }
    return make_dxf_file(path, canvas.area().world, canvas.segments(), colour);
}

// Saves a frame that was just generated. 0, or -1 after a message.
int save_generated(Project& project, const fs::path& path) {
    if (ending_of(path) != project_ending) {
        return save_jiku_data(project.model, path, project.shift);
    }
    if (rebuild_tables(project.model) < 0) {
        return -1;
    }
    project.generated = true;
    project.stage = Stage::made;
    return save_project(project, path);
}

// Saves a frame that was read, with its supports and loads.
int save_as_project(Project& project, const fs::path& path) {
    const Model& model = project.model;
    project.stage = model.N_Fix > 0 && model.N_Load > 0 ? Stage::loaded : Stage::made;
    return save_project(project, path);
}

// A sketch of the frame as it is seen, all places known.
int save_as_sketch(Project& project, const fs::path& path) {
    place_on_sheet(project.model, project_model(project.model, project.view));
    for (int i = 0; i < project.model.N_Node; ++i) {
        project.model.node[i].flag = 2;
    }
    forget_old_node(project.sketch_places);
    return save_tegaki_data(project.model, project.sketch_places, path);
}

// Analyses the model in the working directory and reads the results.
int solve_model(Project& project, double& seconds) {
    if (is_own_solver(project.work_dir,
                      find_solver(project.work_dir))) { // a program that did not come with this one
        std::printf("計算プログラム: 作業フォルダの FRAMESLV.EXE\n");
    }
    std::fflush(stdout);
    SolverOutcome outcome;
    Stopwatch watch;
    if (run_solver(project.model, project.solver_seams, project.work_dir, outcome) < 0) {
        return -1;
    }
    seconds = watch.lap();
    if (outcome.status != 0) {
        std::error_code code;
        const bool told = fs::exists(work_file(project.work_dir, "frameslv.err"), code);
        return refuse(told ? already_told
                           : text_format("解析に失敗しました（終了コード %d）", outcome.status));
    }
    return FrameSlv(project.model, project.result, project.work_dir, ResultsOf::this_model);
}

} // namespace

int run_generate(const GenerateOptions& options) {
    Project project;
    if (set_parameters(project, options.settings) < 0 ||
        make_unit(project.model, project.param, project.solids) < 0) {
        return -1;
    }
    project.shift = {options.dx, options.dy, options.dz};
    const fs::path path = path_of(options.output);
    if (save_generated(project, path) < 0) {
        return -1;
    }
    std::printf("%sを作製しました %s（節点 %d、部材 %d）\n",
                ending_of(path) == project_ending ? "プロジェクト" : "軸ファイル",
                options.output.c_str(), project.model.N_Node, project.model.N_Beam);
    return 0;
}

int run_info(const std::string& input) {
    Project project;
    if (read_frame(project, input) < 0) {
        return -1;
    }
    print_frame_info(project);
    return 0;
}

int run_convert(const std::string& input, const std::string& output,
                const std::vector<RoleOption>& roles, int colour) {
    Project project;
    const fs::path path = path_of(output);
    const std::string ending = ending_of(path);
    const auto write = [&]() {
        if (ending == project_ending) {
            return save_as_project(project, path);
        }
        if (ending == ".jik") {
            return save_jiku_data(project.model, path, project.shift);
        }
        if (ending == ".bon") {
            return save_honegumi(project.model, path);
        }
        if (ending == ".ydu") {
            return save_honegra(project.model, path);
        }
        if (ending == ".tgk") {
            return save_as_sketch(project, path);
        }
        return ending == ".dxf" ? write_dxf(project, path, colour) : write_win3d(project, path);
    };
    constexpr const char* endings[] = {".kigumi", ".jik", ".bon", ".ydu",
                                       ".tgk",    ".dxf", ".dat", ".w3d"};
    bool known = false;
    for (const char* each : endings) {
        known = known || ending == each;
    }
    if (!known) {
        show_message(text_format("%s: 出力の形式は .kigumi .jik .bon .ydu .tgk .dxf .dat .w3d です",
                                 output.c_str()));
        return wrong_usage;
    }
    if (read_frame(project, input) < 0 || mark_roles(project, roles) < 0) {
        return -1;
    }
    return write() < 0 ? -1 : 0;
}

int run_solve(const std::string& input, const std::string& dir,
              const std::vector<RoleOption>& roles) {
    Project project;
    if (enter_dir(project, dir) < 0) {
        return -1;
    }
    Stopwatch watch;
    if (read_frame(project, input) < 0 || mark_roles(project, roles) < 0) {
        return -1;
    }
    const double reading = watch.lap();
    double solving = 0.0;
    if (solve_model(project, solving) < 0) {
        return -1;
    }
    const double all = watch.lap();
    print_frame_summary(project);
    print_result_summary(project);
    std::printf("時間 読込 %.3f 秒、解析 %.3f 秒、結果読込 %.3f 秒\n", reading, solving,
                all - solving);
    return 0;
}

int run_listing(const std::string& dir, const std::string& csv, const std::string& output) {
    Project project;
    if (use_result_dir(project, dir) < 0 ||
        FrameSlv(project.model, project.result, project.work_dir) < 0) {
        return -1;
    }
    tell_result_age(project);
    if (csv.empty()) {
        return save_listing(project.result, path_of(output));
    }
    const std::map<std::string, const ResultTable*> tables = {
        {"members", &member_table()}, {"stress", &stress_table()}, {"heni", &displacement_table()}};
    return save_result_csv(project.result, path_of(output), *tables.at(csv));
}

namespace {

// One picture of the demonstration, from the results in the working directory.
int draw_demo(Project& project, const char* mode, const char* name,
              std::vector<std::string> labels) {
    DrawOptions options;
    options.dir = utf8_of(project.work_dir);
    options.mode = mode;
    options.output = utf8_of(work_file(project.work_dir, name));
    options.labels = std::move(labels);
    options.width = 1600;
    options.height = 1200;
    return run_draw(options);
}

int draw_demo_pictures(Project& project) {
    for (const char* ending : {".png", ".svg"}) {
        const std::string force = std::string("axial-force") + ending;
        const std::string width = std::string("axial-force-width") + ending;
        if (draw_demo(project, "force", force.c_str(), {"fix"}) < 0 ||
            draw_demo(project, "width", width.c_str(), {}) < 0) {
            return -1;
        }
    }
    return 0;
}

} // namespace

int run_demo(const std::string& dir) {
    Project project;
    if (enter_dir(project, dir.empty() ? "kigumi-demo" : dir) < 0) {
        return -1;
    }
    std::printf("8 × 8 のスペース床、２層、タイプⅡの柱、庇付\n");
    Stopwatch watch;
    GenerateOptions options;
    options.settings = {"NX=8", "NY=8", "SumiType=2", "N_Sou=2", "YaneMode=-1"};
    options.output = utf8_of(work_file(project.work_dir, "demo.jik"));
    if (run_generate(options) < 0) {
        return -1;
    }
    const double generating = watch.lap();
    const std::string frame = options.output;
    constexpr float load = -200.0f; // kgf on every node of the top level
    if (read_frame(project, frame) < 0 ||
        mark_roles(project, {{false, "bottom"}, {true, "top", 0.0f, 0.0f, load}}) < 0) {
        return -1;
    }
    const double reading = watch.lap();
    double solving = 0.0;
    if (solve_model(project, solving) < 0) {
        return -1;
    }
    const double results = watch.lap() - solving;
    print_frame_summary(project);
    print_result_summary(project);
    if (save_listing(project.result, work_file(project.work_dir, "results.txt")) < 0 ||
        draw_demo_pictures(project) < 0) {
        return -1;
    }
    std::printf("時間 生成 %.3f 秒、読込 %.3f 秒、解析 %.3f 秒、結果読込 %.3f 秒、図 %.3f 秒\n",
                generating, reading, solving, results, watch.lap());
    std::printf("ファイルは %s にあります\n", utf8_of(project.work_dir).c_str());
    return 0;
}

} // namespace kigumi
