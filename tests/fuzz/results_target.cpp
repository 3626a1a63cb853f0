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

void read_zlv(std::string_view input) {
    start_fresh();
    Levels levels;
    if (parse_levels(input, levels) == 0) {
        store_levels(levels);
        KIGUMI_CHECK(model.N_X <= level_capacity && model.N_Z <= level_capacity, "levels");
    }
}

void read_lst(std::string_view input) {
    start_fresh();
    const int members = read_frameslv(input);
    for (int i = 0; i < members; ++i) {
        const Stress& s = result.stress[i];
        KIGUMI_CHECK(s.percent >= 0.0f && s.percent <= 100.0f, "%g %%", double{s.percent});
        KIGUMI_CHECK(find_setuten(s.iname) != nullptr, "end %s", s.iname);
    }
}

void read_dsp(std::string_view input) {
    start_fresh();
    if (kigumi::read_dsp(input) == 0) {
        KIGUMI_CHECK(std::all_of(result.disp.begin(), result.disp.begin() + result.N_Setuten,
                                 [](const Disp& d) { return std::isfinite(d.mag); }),
                     "a movement that is no number");
    }
}

namespace {

void show_results() {
    BlankCanvas canvas;
    ResultView shown;
    shown.area = usual_window();
    for (int& label : shown.label) {
        label = 1;
    }
    const bool displaced = get_new_beam(10.0f) == 0;
    for (const int mode : {mode_wire, mode_sign, mode_band, mode_width, mode_displaced}) {
        shown.mode = mode;
        if (mode != mode_displaced || displaced) {
            draw_result_picture(canvas, shown);
        }
    }
    result.Nken_Stress = result.N_Stress;
    std::copy(result.stress.begin(), result.stress.begin() + result.N_Stress,
              result.kensaku.begin());
    require_told(make_marukaku(shown));
    require_told(save_listing(work_file("list.txt")));
}

} // namespace

// The input is the three files, each after the other behind a line end and a form feed.
void read_results(std::string_view input) {
    start_fresh();
    for (const char* name : {"frameslv.zlv", "frameslv.lst", "frameslv.dsp"}) {
        const size_t end = std::min(input.find('\f'), input.size());
        put(name, input.substr(0, end));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    const int status = FrameSlv();
    require_told(status);
    if (status < 0) {
        KIGUMI_CHECK(result.N_Stress == 0 && result.N_Setuten == 0, "a part of the results stays");
    } else {
        show_results();
    }
}

void read_roles(std::string_view input) {
    start_fresh();
    put("FRAMESLV.IN", input);
    if (load_solver_roles() < 0) {
        KIGUMI_CHECK(model.N_Fix == 0 && model.N_Load == 0, "a part of the roles stays");
    }
    KIGUMI_CHECK(model.N_Fix <= fix_capacity && model.N_Load <= load_capacity, "roles");
}

} // namespace kigumi::fuzz
