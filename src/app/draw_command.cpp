#include "analysis/result_input.h"
#include "analysis/solver_run.h"
#include "app/commands.h"
#include "app/frame_input.h"
#include "app/summary.h"
#include "base/files.h"
#include "base/message.h"
#include "draw/model_picture.h"
#include "draw/stroke_font.h"
#include "results/displacement.h"
#include "results/force_picture.h"
#include "results/legend.h"
#include "results/marukaku.h"
#include "results/selection.h"
#include "sight/perspective.h"
#include "solid/axis_picture.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/picture_file.h"
#include "ui/result/legend_box.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace kigumi {

namespace {

bool has_label(const DrawOptions& options, const char* label) {
    return std::find(options.labels.begin(), options.labels.end(), label) != options.labels.end();
}

// Display mode of the results window for a mode's name; -1 for a picture of a frame.
int result_mode(const std::string& mode) {
    constexpr std::pair<const char*, int> modes[] = {{"wire", mode_wire},
                                                     {"force", mode_sign},
                                                     {"band", mode_band},
                                                     {"width", mode_width},
                                                     {"heni", mode_displaced}};
    for (const auto& [name, number] : modes) {
        if (mode == name) {
            return number;
        }
    }
    return -1;
}

// A paper has its legend in any case.
bool wants_legend(const DrawOptions& options) {
    return options.legend || ending_of(path_of(options.output)) == ".pdf";
}

// The title of a page: what is shown, and of which frame or folder.
QString title_of(const DrawOptions& options, const std::string& what) {
    return qt_text(what + "　" + (options.dir.empty() ? options.input : options.dir));
}

int draw_with_legend(const Project& project, const DrawOptions& options, const fs::path& path,
                     const ResultView& shown, const PictureFunction& draw) {
    constexpr QSizeF usual(1280, 800); // pixels, for which the legend's letters are made
    const auto scale = static_cast<float>(options.scale);
    const ResultAge age = result_age_of_frame(project.model, project.result);
    const auto draw_both = [&](PainterCanvas& canvas) {
        const int status = draw(canvas);
        if (status == 0 && wants_legend(options)) {
            const double enlarged = std::max(
                1.0, std::min(options.width / usual.width(), options.height / usual.height()));
            paint_legend(canvas, options.width, result_legend(project.result, shown, scale, age),
                         enlarged);
        }
        return status;
    };
    return save_picture(path, options.width, options.height, draw_both,
                        title_of(options, "計算結果　" + result_title(shown, scale, age)));
}

DrawArea client_area(const DrawOptions& options) {
    DrawArea area;
    area.xScreen = options.width;
    area.yScreen = options.height;
    return area;
}

void set_view(Project& project, const DrawOptions& options) {
    View& view = project.view;
    view.TAU = options.tau.value_or(view.TAU);
    view.FAI = options.fai.value_or(view.FAI);
    view.Rho = options.rho.value_or(view.Rho);
    view.Theta = options.theta.value_or(view.Theta);
    view.Phi = options.phi.value_or(view.Phi);
    view.joints = options.joints ? 1 : view.joints;
}

void set_labels(const DrawOptions& options, ResultView& shown) {
    shown.label[label_node_names] = has_label(options, "nodes") ? 1 : 0;
    shown.label[label_member_numbers] = has_label(options, "members") ? 1 : 0;
    shown.label[label_fixed_nodes] = has_label(options, "fix") ? 1 : 0;
    shown.label[label_loaded_nodes] = has_label(options, "load") ? 1 : 0;
}

int draw_results(Project& project, const DrawOptions& options, const fs::path& path) {
    ResultView picture;
    picture.mode = result_mode(options.mode);
    picture.lower = options.low;
    picture.upper = options.high;
    picture.TAU = project.view.TAU;
    picture.FAI = project.view.FAI;
    picture.area = client_area(options);
    set_labels(options, picture);
    if (picture.mode == mode_displaced &&
        get_new_beam(project.result, static_cast<float>(options.scale)) < 0) {
        return -1;
    }
    if (!fit_result(project.result, picture)) {
        return refuse("計算結果の部材がこの大きさの図に収まりません");
    }
    return draw_with_legend(project, options, path, picture, [&picture, &project](Canvas& canvas) {
        return draw_result_picture(project.view, project.result, project.lettering, canvas,
                                   picture);
    });
}

// Square and round bars by percent: all members, largest force first.
int draw_solid_results(Project& project, const DrawOptions& options, const fs::path& path) {
    ResultView shown;
    shown.mode = mode_solids;
    shown.area = client_area(options);
    set_labels(options, shown);
    std::vector<int> all(project.result.N_Stress);
    std::iota(all.begin(), all.end(), 0);
    select_results(project.result, all);
    const View eye = project.view;
    const int status =
        make_marukaku(project.view, project.result, project.solids, project.work_dir, shown);
    clear_selection(project.result);
    if (status < 0) {
        return -1;
    }
    project.view = eye;
    shown.area = client_area(options);
    return draw_with_legend(project, options, path, shown, [&shown, &project](Canvas& canvas) {
        return draw_marukaku(project.view, project.result, project.solids, project.perspective,
                             project.lettering, project.work_dir, canvas, shown);
    });
}

int draw_frame(Project& project, const DrawOptions& options, const fs::path& path) {
    DrawArea area = client_area(options);
    const auto save = [&](const char* what, const PictureFunction& draw) {
        return save_picture(path, options.width, options.height, draw, title_of(options, what));
    };
    if (options.mode == "wire") {
        ModelLabels labels;
        labels.node_names = has_label(options, "nodes");
        labels.member_numbers = has_label(options, "members");
        return save("ワイヤモデル", [&](Canvas& canvas) {
            return draw_model_picture(project.model, project_model(project.model, project.view),
                                      project.lettering, canvas, area, labels);
        });
    }
    if (build_trio_file(project.model, project.solids, project.work_dir) < 0) {
        return -1;
    }
    if (options.mode == "axis") {
        return save("軸モデル", [&area, &project](Canvas& canvas) {
            return draw_axis_model(project.view, project.solids, canvas, area);
        });
    }
    return save("視点座標モデル", [&area, &project](Canvas& canvas) {
        return draw_perspective(project.view, project.solids, project.perspective, project.work_dir,
                                canvas, area);
    });
}

int refuse_usage(std::string_view text) {
    show_message(text);
    return wrong_usage;
}

} // namespace

int run_draw(const DrawOptions& options) {
    Project project;
    const fs::path path = path_of(options.output);
    const bool of_frame = options.mode == "axis" || options.mode == "perspective" ||
                          (options.mode == "wire" && options.dir.empty());
    if (of_frame && options.input.empty()) {
        return refuse_usage("この図には軸データのファイルが必要です");
    }
    if (!of_frame && options.dir.empty()) {
        return refuse_usage("この図には計算結果のフォルダ（--dir）が必要です");
    }
    if (!is_picture_file(path)) {
        return refuse_usage(other_picture_format(path));
    }
    if (!options.dir.empty() && use_result_dir(project, options.dir) < 0) {
        return -1;
    }
    if (!options.input.empty() && read_frame(project, options.input) < 0) {
        return -1;
    }
    if (!options.labels.empty() && load_stroke_font(project.lettering) < 0) {
        return -1;
    }
    set_view(project, options);
    if (of_frame) {
        return draw_frame(project, options, path);
    }
    if (FrameSlv(project.model, project.result, project.work_dir) < 0) {
        return -1;
    }
    const bool wants_roles = has_label(options, "fix") || has_label(options, "load");
    if (wants_roles && project.result.roles.state == ResultRoles::State::of_other_frame) {
        show_message(roles_of_other_frame);
    }
    tell_result_age(project);
    return options.mode == "solid" ? draw_solid_results(project, options, path)
                                   : draw_results(project, options, path);
}

} // namespace kigumi
