// Hand-drawn data.
#include "target.h"

#include "files/tegaki.h"
#include "model/lookup.h"

namespace kigumi::fuzz {

namespace {

// The ends of a member whose nodes are still without a place stand where the file says.
void place_ends() {
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

void read_tgk(std::string_view input) {
    start_fresh();
    const int status = load_tegaki_data(put("a.tgk", input));
    require_told(status);
    if (status < 0) {
        KIGUMI_CHECK(model.N_Node == 0 && model.N_Beam == 0, "a part of the file stays");
        return;
    }
    const int nodes = model.N_Node;
    const int members = model.N_Beam;
    const int saved = save_tegaki_data(work_file("again.tgk"));
    require_told(saved);
    if (saved == 0) {
        require_told(load_tegaki_data(work_file("again.tgk")));
        KIGUMI_CHECK(model.N_Node == nodes && model.N_Beam == members, "%d nodes became %d", nodes,
                     model.N_Node);
    }
    load_old_node();
    if (rebuild_tables() == 0) {
        place_ends();
        require_sound(true);
    }
    for (int i = 0; i < 3 && model.N_Beam > 0 && model.N_Beam < 100; ++i) {
        del_beam(model.N_Beam / 2);
        save_old_node();
        require_told(save_tegaki_data(work_file("again.tgk")));
    }
}

} // namespace kigumi::fuzz
