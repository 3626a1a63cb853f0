// Axis data, and the unit lines in it.
#include "target.h"

#include "draw/model_picture.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/sections.h"
#include "solid/solid.h"

namespace kigumi::fuzz {

namespace {

constexpr int few_members = 200;

// What follows a reading; the frame survives a way through the file.
void use_frame(Project& project) {
    if (rebuild_tables(project.model) < 0) {
        require_told(-1);
        return;
    }
    require_sound(project.model, true);
    if (project.model.N_Beam > few_members) {
        return;
    }
    BlankCanvas canvas;
    DrawArea area = usual_window();
    draw_wire(project_model(project.model, project.view), canvas, area, true);
    const int members = project.model.N_Beam;
    require_told(save_jiku_data(project.model, work_file(project.work_dir, "again.jik"), {}));
    start_fresh(project);
    std::string reason;
    const int again = load_jiku_data(project.model, project.solids, project.work_dir,
                                     work_file(project.work_dir, "again.jik"), &reason);
    KIGUMI_CHECK(again == members || again < 0, "%d members became %d", members, again);
    require_told(again, reason);
}

} // namespace

void read_jik(Project& project, std::string_view input) {
    start_fresh(project);
    std::string reason;
    const int status = load_jiku_data(project.model, project.solids, project.work_dir,
                                      put(project.work_dir, "a.jik", input), &reason);
    require_sound(project.model, false);
    require_told(status, reason);
    if (status >= 0) {
        KIGUMI_CHECK(status == project.model.N_Beam, "%d told, %d there", status,
                     project.model.N_Beam);
        use_frame(project);
    }
}

void read_unit(Project& project, std::string_view input) {
    start_fresh(project);
    const int status = bunkai_shazai(project.model, project.solids, input);
    require_sound(project.model, false);
    require_told(status);
}

} // namespace kigumi::fuzz
