#include "model/members.h"

#include "base/format.h"
#include "base/message.h"
#include "model/nodes.h"
#include "model/sections.h"
#include "trace/spy.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace kigumi {

namespace {

// Finds or makes the node of one end of a kept member, while the nodes are rebuilt. `beam_flag` is
// what the member's flag field reads at that moment. Returns the node's position.
int rebuild_end_node(Model& model, float X, float Y, const float (&place)[3], const char* id,
                     int beam_flag) {
    int k = search_2dim_node(model, X, Y);
    if (k >= 0) {
        model.node[k].flag = beam_flag == 1 ? 1 : 2;
        return k;
    }
    if (model.N_Node >= node_capacity) {
        show_message(text_format("節点が多すぎます（最大 %d 個）", node_capacity));
        return node_capacity - 1;
    }
    k = model.N_Node++;
    Node& node = model.node[k];
    node = Node{};
    node.no = number_at(k);
    set_name(node.id, id);
    node.x = place[0];
    node.y = place[1];
    node.z = place[2];
    node.X = X;
    node.Y = Y;
    node.flag = beam_flag == 1 ? 0 : 2;
    return k;
}

} // namespace

float beam_length(const Beam& beam) {
    const long double dx = static_cast<long double>(beam.xl) - beam.xs;
    const long double dy = static_cast<long double>(beam.yl) - beam.ys;
    const long double dz = static_cast<long double>(beam.zl) - beam.zs;
    return static_cast<float>(std::sqrt(dx * dx + dy * dy + dz * dz));
}

int append_beam(Model& model, const float (&start)[3], const float (&end)[3], float haba,
                float atumi, int kind, int flag) {
    if (model.N_Beam >= beam_capacity) {
        show_message(text_format("部材が多すぎます（最大 %d 本）", beam_capacity));
        return -1;
    }
    const int nodes = model.N_Node;
    const int noi = find_or_add_node(model, start[0], start[1], start[2]);
    const int noj = noi < 0 ? -1 : find_or_add_node(model, end[0], end[1], end[2]);
    if (noj < 0) {
        model.N_Node = nodes; // no node without a member
        return -1;
    }
    Beam& beam = model.beam[model.N_Beam];
    beam = Beam{};
    model.edit[model.N_Beam] = MemberEdit{};
    beam.no = number_at(model.N_Beam);
    beam.noi = noi;
    beam.noj = noj;
    beam.xs = start[0];
    beam.ys = start[1];
    beam.zs = start[2];
    beam.xl = end[0];
    beam.yl = end[1];
    beam.zl = end[2];
    beam.size = beam.mat = -1;
    beam.haba = haba;
    beam.atumi = atumi;
    beam.kind = kind;
    beam.flag = flag;
    return model.N_Beam++;
}

void del_beam(Model& model, int n) {
    if (n < 0 || n >= model.N_Beam) {
        return;
    }
    std::copy(model.edit.begin() + n + 1, model.edit.begin() + model.N_Beam,
              model.edit.begin() + n);
    model.edit[model.N_Beam - 1] = MemberEdit{};
    std::vector<Beam> kept;
    kept.reserve(model.N_Beam);
    for (int i = 0; i < model.N_Beam; ++i) {
        if (i != n) {
            kept.push_back(model.beam[i]);
            kept.back().no = static_cast<std::int32_t>(kept.size());
        }
    }
    model.N_Beam = static_cast<std::int32_t>(kept.size());
    model.N_Node = 0;
    model.N_Fix = model.N_Load = 0;
    model.fix_load_edited = 0;
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        // Deliberate: the category stays with the position, and the node flags are decided by the
        // flag that the position held before.
        const int old_kind = beam.kind;
        const int old_flag = beam.flag;
        beam = kept[i];
        beam.kind = old_kind;
        const int start = rebuild_end_node(model, beam.XS, beam.YS, {beam.xs, beam.ys, beam.zs},
                                           beam.idi, old_flag);
        beam.noi = model.node[start].no;
        std::memcpy(beam.idi, model.node[start].id, name_bytes);
        // Deliberate: a new end node takes the start's name.
        const int end = rebuild_end_node(model, beam.XL, beam.YL, {beam.xl, beam.yl, beam.zl},
                                         beam.idi, old_flag);
        beam.noj = model.node[end].no;
        std::memcpy(beam.idj, model.node[end].id, name_bytes);
    }
    forget_node_index(model);
}

int check_all_beam(const Model& model) {
    for (int i = 0; i < model.N_Beam; ++i) {
        if (model.beam[i].flag != 2) {
            return -1;
        }
    }
    return model.N_Beam > 0 ? 1 : -1;
}

void copy_node_to_beams(Model& model, int node) {
    const Node& from = model.node[node];
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        if (beam.noi == from.no) {
            std::memcpy(beam.idi, from.id, name_bytes);
            beam.xs = from.x;
            beam.ys = from.y;
            beam.zs = from.z;
        } else if (beam.noj == from.no) {
            std::memcpy(beam.idj, from.id, name_bytes);
            beam.xl = from.x;
            beam.yl = from.y;
            beam.zl = from.z;
        }
    }
    forget_node_index(model);
}

void set_all_beam_section(Model& model, float haba, float atumi) {
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].haba = haba;
        model.beam[i].atumi = atumi;
        forget_section_edit(model, i);
        model.beam[i].flag = 2;
    }
}

namespace {

const char* shown_name(const char* id) {
    return id[0] != '\0' ? id : "         ";
}

} // namespace

void check_all_node_beam(const Model& model) {
    if (!spy_is_open()) {
        return;
    }
    spy_now(" No   id           no     x        y        z       X       Y      flag");
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        spy_now("%5d %s %5d %8.1f %8.1f %8.1f %7.1f %7.1f %5d", number_at(i), shown_name(node.id),
                node.no, node.x, node.y, node.z, node.X, node.Y, node.flag);
    }
    spy_now("No   idi       idj       noi   noj   xs       ys        zs");
    spy_now("             size  mat   XS       YS       XL       YL       flag");
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        spy_now("%5d %s %s %5d %5d %8.1f %8.1f %8.1f %8.1f %8.1f %8.1f", beam.no,
                shown_name(beam.idi), shown_name(beam.idj), beam.noi, beam.noj, beam.xs, beam.ys,
                beam.zs, beam.xl, beam.yl, beam.zl);
        spy_now("             %5d %5d %8.1f %8.1f %8.1f %8.1f %5d", beam.size, beam.mat, beam.XS,
                beam.YS, beam.XL, beam.YL, beam.flag);
    }
}

} // namespace kigumi
