#include "frames.h"

#include "base/format.h"
#include "generate/generate.h"
#include "model/nodes.h"
#include "model/sections.h"

namespace kigumi::bench {

WorkFolder::WorkFolder() {
    for (int k = 0; k == 0 || !fs::create_directory(path); ++k) {
        path = fs::temp_directory_path() / text_format("kigumi-bench-%d", k);
    }
}

WorkFolder::~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

void set_floor(Param& param, int cells) {
    set_default_param(param);
    param.NX = param.NY = cells;
    param.TukaHaba = 90.9f;
    check_param(param, {0, 0, 0});
}

void generate_floor(Model& model, const Param& param) {
    reset_model(model);
    make_hashira(model, param);
    make_waku(model, param);
    make_genzai(model, param);
    make_shazai(model, param);
    make_sujikai(model, param);
    sort_node(model);
}

void make_floor(Model& model, Param& param, int cells) {
    set_floor(param, cells);
    generate_floor(model, param);
    rebuild_tables(model);
}

ResultFiles make_result_files(Model& model, Param& param) {
    constexpr int cells_of_3000 = 17; // 2856 members
    make_floor(model, param, cells_of_3000);
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
