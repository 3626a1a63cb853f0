// The solver's result files, one by one and together, and the supports and loads of its input.
#include "target.h"

#include "analysis/result_reader.h"
#include "analysis/solver_roles.h"
#include "analysis/solver_run.h"
#include "results/displacement.h"
#include "results/force_picture.h"
#include "results/listing.h"
#include "results/marukaku.h"

#include <algorithm>
#include <cmath>

namespace kigumi::fuzz {

void read_zlv(Project& project, std::string_view input) {
    start_fresh(project);
    Levels levels;
    if (parse_levels(input, levels) == 0) {
        store_levels(project.model, levels);
        KIGUMI_CHECK(project.model.N_X <= level_capacity && project.model.N_Z <= level_capacity,
                     "levels");
    }
}

void read_lst(Project& project, std::string_view input) {
    start_fresh(project);
    const int members = read_frameslv(project.result, input);
    for (int i = 0; i < members; ++i) {
        const Stress& s = project.result.stress[i];
        KIGUMI_CHECK(s.percent >= 0.0f && s.percent <= 100.0f, "%g %%", double{s.percent});
        KIGUMI_CHECK(find_setuten(project.result, s.iname) != nullptr, "end %s", s.iname);
    }
}

void read_dsp(Project& project, std::string_view input) {
    start_fresh(project);
    if (kigumi::read_dsp(project.result, input) == 0) {
        KIGUMI_CHECK(std::all_of(project.result.disp.begin(),
                                 project.result.disp.begin() + project.result.N_Setuten,
                                 [](const Disp& d) { return std::isfinite(d.mag); }),
                     "a movement that is no number");
    }
}

namespace {

void show_results(Project& project) {
    BlankCanvas canvas;
    ResultView shown;
    shown.area = usual_window();
    for (int& label : shown.label) {
        label = 1;
    }
    const bool displaced = get_new_beam(project.result, 10.0f) == 0;
    for (const int mode : {mode_wire, mode_sign, mode_band, mode_width, mode_displaced}) {
        shown.mode = mode;
        if (mode != mode_displaced || displaced) {
            draw_result_picture(project.view, project.result, project.lettering, canvas, shown);
        }
    }
    project.result.Nken_Stress = project.result.N_Stress;
    std::copy(project.result.stress.begin(),
              project.result.stress.begin() + project.result.N_Stress,
              project.result.kensaku.begin());
    require_told(
        make_marukaku(project.view, project.result, project.solids, project.work_dir, shown));
    require_told(save_listing(project.result, work_file(project.work_dir, "list.txt")));
}

} // namespace

// The input is the three files, each after the other behind a line end and a form feed.
void read_results(Project& project, std::string_view input) {
    start_fresh(project);
    for (const char* name : {"frameslv.zlv", "frameslv.lst", "frameslv.dsp"}) {
        const size_t end = std::min(input.find('\f'), input.size());
        put(project.work_dir, name, input.substr(0, end));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    const int status = FrameSlv(project.model, project.result, project.work_dir);
    require_told(status);
    if (status < 0) {
        KIGUMI_CHECK(project.result.N_Stress == 0 && project.result.N_Setuten == 0,
                     "a part of the results stays");
    } else {
        show_results(project);
    }
}

void read_roles(Project& project, std::string_view input) {
    start_fresh(project);
    put(project.work_dir, "FRAMESLV.IN", input);
    if (load_solver_roles(project.model, project.work_dir) < 0) {
        KIGUMI_CHECK(project.model.N_Fix == 0 && project.model.N_Load == 0,
                     "a part of the roles stays");
    }
    KIGUMI_CHECK(project.model.N_Fix <= fix_capacity && project.model.N_Load <= load_capacity,
                 "roles");
}

} // namespace kigumi::fuzz
