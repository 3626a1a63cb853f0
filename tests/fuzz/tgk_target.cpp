// Hand-drawn data.
#include "target.h"

#include "files/tegaki.h"
#include "model/members.h"
#include "model/sections.h"

namespace kigumi::fuzz {

namespace {

// The ends of a member whose nodes are still without a place stand where the file says.
void place_ends(Model& model) {
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        const Node& start = model.node[position_of(beam.noi)];
        const Node& end = model.node[position_of(beam.noj)];
        beam.xs = start.x;
        beam.ys = start.y;
        beam.zs = start.z;
        beam.xl = end.x;
        beam.yl = end.y;
        beam.zl = end.z;
    }
}

} // namespace

void read_tgk(Project& project, std::string_view input) {
    start_fresh(project);
    const int status = load_tegaki_data(project.model, project.sketch_places,
                                        put(project.work_dir, "a.tgk", input));
    require_told(status);
    if (status < 0) {
        KIGUMI_CHECK(project.model.N_Node == 0 && project.model.N_Beam == 0,
                     "a part of the file stays");
        return;
    }
    const int nodes = project.model.N_Node;
    const int members = project.model.N_Beam;
    const int saved = save_tegaki_data(project.model, project.sketch_places,
                                       work_file(project.work_dir, "again.tgk"));
    require_told(saved);
    if (saved == 0) {
        require_told(load_tegaki_data(project.model, project.sketch_places,
                                      work_file(project.work_dir, "again.tgk")));
        KIGUMI_CHECK(project.model.N_Node == nodes && project.model.N_Beam == members,
                     "%d nodes became %d", nodes, project.model.N_Node);
    }
    load_old_node(project.model, project.sketch_places);
    if (rebuild_tables(project.model) == 0) {
        place_ends(project.model);
        require_sound(project.model, true);
    }
    for (int i = 0; i < 3 && project.model.N_Beam > 0 && project.model.N_Beam < 100; ++i) {
        del_beam(project.model, project.model.N_Beam / 2);
        save_old_node(project.model, project.sketch_places);
        require_told(save_tegaki_data(project.model, project.sketch_places,
                                      work_file(project.work_dir, "again.tgk")));
    }
}

} // namespace kigumi::fuzz
