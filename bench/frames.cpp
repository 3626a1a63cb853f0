#include "frames.h"

#include "base/format.h"
#include "generate/generate.h"
#include "model/lookup.h"

namespace kigumi::bench {

void set_floor(int cells) {
    set_default_param();
    param.NX = param.NY = cells;
    param.TukaHaba = 90.9f;
    check_param({0, 0, 0});
}

void generate_floor() {
    reset_model();
    make_hashira();
    make_waku();
    make_genzai();
    make_shazai();
    make_sujikai();
    sort_node();
}

void make_floor(int cells) {
    set_floor(cells);
    generate_floor();
    rebuild_tables();
}

ResultFiles make_result_files() {
    constexpr int cells_of_3000 = 17; // 2856 members
    make_floor(cells_of_3000);
    ResultFiles files;
    files.listing = text_format("%5d\n", model.N_Node);
    files.displacements = files.listing;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& n = model.node[i];
        files.listing +=
            text_format(" %5d %5d %13.6g %13.6g %13.6g %s\n", n.no, n.no, n.x, n.y, n.z, n.id);
        files.displacements +=
            text_format(" %5d %5d %s %15.8e %15.8e %15.8e %15.8e %15.8e %15.8e\n", n.no, n.no, n.id,
                        n.x * 1e-5, n.y * 1e-5, -n.z * 1e-4, 1e-6, 2e-6, 3e-6);
    }
    files.listing += text_format("%5d\n", model.N_Beam);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& b = model.beam[i];
        const double force = (b.no * 7919 % 2001 - 1000) * 1.234567;
        files.listing += text_format(" %5d %5d %5d %s %5d %5d %s %15.8e\n", b.no, b.noi, b.noi,
                                     b.idi, b.noj, b.noj, b.idj, force);
        files.listing += text_format(" %15.8e %15.8e %15.8e %15.8e %15.8e %15.8e\n", force, force,
                                     force * 0.1, force * 0.1, force * 0.2, force * 0.2);
        files.listing += text_format(" %15.8e %15.8e %15.8e %15.8e %15.8e\n", force, -force,
                                     force * 3, -force * 3, 1e-9);
    }
    return files;
}

} // namespace kigumi::bench
