#include "analysis/solver_roles.h"
#include "analysis/solver_run.h"
#include "app/commands.h"
#include "app/frame_input.h"
#include "base/files.h"
#include "base/message.h"
#include "geometry/axis_picture.h"
#include "geometry/perspective.h"
#include "results/displacement.h"
#include "results/force_picture.h"
#include "results/marukaku.h"
#include "results/model_picture.h"
#include "ui/picture_file.h"

#include <algorithm>

namespace kigumi {

namespace {

int refuse(const std::string& message) {
    show_message(message);
    return -1;
}

bool has_label(const DrawOptions& options, const char* label) {
    return std::find(options.labels.begin(), options.labels.end(), label) != options.labels.end();
}

// Display mode of the results window for a mode's name; -1 for a picture of a frame.
int result_mode(const std::string& mode) {
    constexpr std::pair<const char*, int> modes[] = {
        {"wire", 2}, {"force", 3}, {"band", 4}, {"width", 5}, {"heni", 9}};
    for (const auto& [name, number] : modes) {
        if (mode == name) {
            return number;
        }
    }
    return -1;
}

DrawArea client_area(const DrawOptions& options) {
    DrawArea area;
    area.xScreen = options.width;
    area.yScreen = options.height;
    return area;
}

int draw_results(const DrawOptions& options, const fs::path& path) {
    ResultView picture;
    picture.mode = result_mode(options.mode);
    picture.low = options.low;
    picture.high = options.high;
    picture.TAU = options.tau;
    picture.FAI = options.fai;
    picture.width = options.width;
    picture.height = options.height;
    picture.label[0] = has_label(options, "nodes");
    picture.label[1] = has_label(options, "members");
    picture.label[2] = has_label(options, "fix");
    picture.label[3] = has_label(options, "load");
    if (picture.mode == 9 && get_new_beam(static_cast<float>(options.scale)) < 0) {
        return -1;
    }
    if ((picture.label[2] || picture.label[3]) && model.N_Fix == 0) {
        load_solver_roles();
    }
    return save_picture(path, options.width, options.height,
                        [&picture](Canvas& canvas) { draw_result_picture(canvas, picture); });
}

int draw_solid_results(const DrawOptions& options, const fs::path& path) {
    select_all_results();
    if (make_marukaku() < 0) {
        return -1;
    }
    view.Rho = options.rho;
    view.Theta = options.theta;
    view.Phi = options.phi;
    DrawArea area = client_area(options);
    return save_picture(path, options.width, options.height,
                        [&area](Canvas& canvas) { draw_perspective(canvas, area); });
}

int draw_frame(const DrawOptions& options, const fs::path& path) {
    DrawArea area = client_area(options);
    if (options.mode == "wire") {
        ModelLabels labels;
        labels.node_names = has_label(options, "nodes");
        labels.member_numbers = has_label(options, "members");
        return save_picture(path, options.width, options.height,
                            [&](Canvas& canvas) { draw_model_picture(canvas, area, labels); });
    }
    if (build_trio_file() < 0) {
        return -1;
    }
    if (options.mode == "axis") {
        return save_picture(path, options.width, options.height,
                            [&area](Canvas& canvas) { draw_axis_model(canvas, area); });
    }
    view.Rho = options.rho;
    view.Theta = options.theta;
    view.Phi = options.phi;
    return save_picture(path, options.width, options.height,
                        [&area](Canvas& canvas) { draw_perspective(canvas, area); });
}

} // namespace

int run_draw(const DrawOptions& options) {
    std::error_code code;
    const fs::path path = fs::absolute(path_of(options.output), code);
    const fs::path input = fs::absolute(path_of(options.input), code);
    const bool of_frame = options.mode == "axis" || options.mode == "perspective" ||
                          (options.mode == "wire" && options.dir.empty());
    if (of_frame && options.input.empty()) {
        return refuse("この図には軸データのファイルが必要です");
    }
    if (!of_frame && options.dir.empty()) {
        return refuse("この図には計算結果のフォルダ（--dir）が必要です");
    }
    if (!options.dir.empty() && !fs::is_directory(path_of(options.dir), code)) {
        return refuse(text_format("%s: フォルダがありません", options.dir.c_str()));
    }
    if (enter_dir(options.dir) < 0) {
        return -1;
    }
    if (!options.input.empty() && read_frame(utf8_of(input)) < 0) {
        return -1;
    }
    view.TAU = options.tau;
    view.FAI = options.fai;
    if (of_frame) {
        return draw_frame(options, path);
    }
    if (FrameSlv() < 0) {
        return -1;
    }
    return options.mode == "solid" ? draw_solid_results(options, path)
                                   : draw_results(options, path);
}

} // namespace kigumi
