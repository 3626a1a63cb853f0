#include "model/lookup.h"

#include "base/check.h"
#include "base/float.h"
#include "base/float_index.h"
#include "base/format.h"
#include "base/message.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace kigumi {

float snap_radius = 10.0f;

namespace {

// First position of every place among the first `count` nodes.
struct NodeIndex {
    FloatIndex first;
    int count = 0;

    void clear() {
        first.clear();
        count = 0;
    }
    void follow() {
        if (model.N_Node < count) {
            clear();
        }
        for (; count < model.N_Node; ++count) {
            const Node& node = model.node[count];
            first.add(node.x, node.y, node.z, count);
        }
    }
};

NodeIndex& node_index() {
    static NodeIndex index;
    return index;
}

// The distinct values of `get` over all nodes, ascending.
template <class Get> std::vector<float> distinct_levels(Get get) {
    std::vector<float> values;
    values.reserve(model.N_Node);
    for (int i = 0; i < model.N_Node; ++i) {
        values.push_back(get(model.node[i]));
    }
    std::stable_sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end(), same_float), values.end());
    return values;
}

void store_levels(const std::vector<float>& values, std::array<float, level_capacity>& table,
                  std::int32_t& count) {
    count = static_cast<std::int32_t>(values.size());
    std::copy(values.begin(), values.end(), table.begin());
}

int level_of(const std::array<float, level_capacity>& table, int count, float value) {
    const auto end = table.begin() + count;
    return static_cast<int>(std::lower_bound(table.begin(), end, value) - table.begin());
}

bool names_a_node(int no) {
    return no >= 1 && no <= model.N_Node;
}

// Copies the node names into the members; an end without a node keeps its name.
void name_beams() {
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        if (names_a_node(beam.noi)) {
            std::memcpy(beam.idi, model.node[position_of(beam.noi)].id, name_bytes);
        }
        if (names_a_node(beam.noj)) {
            std::memcpy(beam.idj, model.node[position_of(beam.noj)].id, name_bytes);
        }
    }
}

void set_grid_name(Node& node, int i, int j, int k) {
    set_name(node.id, text_format("X%02dY%02dZ%02d", i, j, k).c_str());
}

} // namespace

float beam_length(const Beam& beam) {
    const long double dx = static_cast<long double>(beam.xl) - beam.xs;
    const long double dy = static_cast<long double>(beam.yl) - beam.ys;
    const long double dz = static_cast<long double>(beam.zl) - beam.zs;
    return static_cast<float>(std::sqrt(dx * dx + dy * dy + dz * dz));
}

void forget_node_index() {
    node_index().clear();
}

int find_or_add_node(float x, float y, float z) {
    NodeIndex& index = node_index();
    index.follow();
    const int found = index.first.find(x, y, z);
    if (found >= 0) {
        return number_at(found);
    }
    if (model.N_Node >= node_capacity) {
        show_message(text_format("節点が多すぎます（最大 %d 個）", node_capacity));
        return -1;
    }
    Node& node = model.node[model.N_Node];
    node = Node{};
    node.no = number_at(model.N_Node);
    node.x = x;
    node.y = y;
    node.z = z;
    ++model.N_Node;
    index.follow();
    return node.no;
}

int append_beam(const float (&start)[3], const float (&end)[3], float haba, float atumi, int kind,
                int flag) {
    if (model.N_Beam >= beam_capacity) {
        show_message(text_format("部材が多すぎます（最大 %d 本）", beam_capacity));
        return -1;
    }
    const int nodes = model.N_Node;
    const int noi = find_or_add_node(start[0], start[1], start[2]);
    const int noj = noi < 0 ? -1 : find_or_add_node(end[0], end[1], end[2]);
    if (noj < 0) {
        model.N_Node = nodes; // no node without a member
        return -1;
    }
    Beam& beam = model.beam[model.N_Beam];
    beam = Beam{};
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

int append_fix(int no, int ix, int iy, int iz) {
    if (model.N_Fix >= fix_capacity) {
        show_message(text_format("固定節点が多すぎます（最大 %d 個）", fix_capacity));
        return -1;
    }
    Fix& fix = model.fix[model.N_Fix++];
    std::memcpy(fix.id, model.node[position_of(no)].id, name_bytes);
    fix.no = no;
    fix.ix = ix;
    fix.iy = iy;
    fix.iz = iz;
    return 0;
}

int append_load(int no, float fx, float fy, float fz) {
    if (model.N_Load >= load_capacity) {
        show_message(text_format("荷重節点が多すぎます（最大 %d 個）", load_capacity));
        return -1;
    }
    Load& load = model.load[model.N_Load++];
    std::memcpy(load.id, model.node[position_of(no)].id, name_bytes);
    load.no = no;
    load.fx = fx;
    load.fy = fy;
    load.fz = fz;
    return 0;
}

int make_fix_and_load() {
    int fixes = 0;
    int loads = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        fixes += model.node[i].flag == role_fixed ? 1 : 0;
        loads += model.node[i].flag == role_loaded ? 1 : 0;
    }
    if (fixes > fix_capacity || loads > load_capacity) {
        show_message(text_format("固定節点 %d 個・荷重節点 %d 個は多すぎます（それぞれ最大 %d 個）",
                                 fixes, loads, fix_capacity));
        return -1;
    }
    constexpr float first_load = -200.0f; // kgf, downwards
    model.N_Fix = model.N_Load = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        if (node.flag == role_fixed) {
            append_fix(node.no, 1, 1, 1);
        } else if (node.flag == role_loaded) {
            append_load(node.no, 0.0f, 0.0f, first_load);
        }
    }
    return 0;
}

int save_level_name() {
    const auto xs = distinct_levels([](const Node& node) { return node.x; });
    const auto ys = distinct_levels([](const Node& node) { return node.y; });
    const auto zs = distinct_levels([](const Node& node) { return node.z; });
    if (std::max({xs.size(), ys.size(), zs.size()}) > level_capacity) {
        show_message(text_format("座標の種類が多すぎます（X %zu、Y %zu、Z %zu、それぞれ最大 %d）",
                                 xs.size(), ys.size(), zs.size(), level_capacity));
        return -1;
    }
    store_levels(xs, model.Xval, model.N_X);
    store_levels(ys, model.Yval, model.N_Y);
    store_levels(zs, model.Zval, model.N_Z);
    for (int i = 0; i < model.N_Node; ++i) {
        Node& node = model.node[i];
        set_grid_name(node, level_of(model.Xval, model.N_X, node.x),
                      level_of(model.Yval, model.N_Y, node.y),
                      level_of(model.Zval, model.N_Z, node.z));
    }
    name_beams();
    return 0;
}

float torsion_coefficient(float r) {
    struct Step {
        float up_to;
        float beta;
    };
    constexpr Step steps[] = {
        {1.0f, 0.1406f}, {1.2f, 0.166f}, {1.5f, 0.196f}, {2.0f, 0.229f},  {2.5f, 0.249f},
        {3.0f, 0.263f},  {4.0f, 0.281f}, {5.0f, 0.291f}, {10.0f, 0.312f},
    };
    for (const Step& step : steps) {
        if (r <= step.up_to) {
            return step.beta;
        }
    }
    return 0.333f;
}

void compute_section(int k) {
    const double haba = model.size.haba[k];
    const double atumi = model.size.atumi[k];
    const double beta = torsion_coefficient(model.size.atumi[k] / model.size.haba[k]);
    model.size.A[k] = round_once(haba * atumi);
    model.size.Iy[k] = round_once(haba * atumi * atumi * atumi / 12.0);
    model.size.Iz[k] = round_once(atumi * haba * haba * haba / 12.0);
    model.size.J[k] = round_once(beta * atumi * haba * haba * haba);
}

int check_size() {
    struct Entry {
        float haba, atumi, length;
    };
    std::vector<Entry> entries;
    std::vector<int> number_of(model.N_Beam);
    FloatIndex first;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const float length = beam_length(beam);
        const int next = static_cast<int>(entries.size());
        const int at = first.add(beam.haba, beam.atumi, length, next);
        if (at == next) {
            entries.push_back({beam.haba, beam.atumi, length});
        }
        number_of[i] = number_at(at);
    }
    if (entries.size() > size_capacity) {
        show_message(
            text_format("断面の種類が多すぎます（%zu、最大 %d）", entries.size(), size_capacity));
        return -1;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].size = model.beam[i].mat = number_of[i];
        model.beam[i].flag = 2;
    }
    model.N_Size = static_cast<std::int32_t>(entries.size());
    for (int k = 0; k < model.N_Size; ++k) {
        model.size.haba[k] = entries[k].haba;
        model.size.atumi[k] = entries[k].atumi;
        model.size.length[k] = entries[k].length;
        model.size.angle[k] = 0.0f;
        compute_section(k);
    }
    return 0;
}

void assign_materials() {
    model.N_Mat = model.N_Size;
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].mat = model.beam[i].size;
    }
    for (int k = 0; k < model.N_Mat; ++k) {
        model.mat.E[k] = model.default_E;
        model.mat.poisson[k] = model.default_poisson;
        model.mat.density[k] = model.default_density;
    }
}

int rebuild_tables() {
    if (check_size() < 0) {
        return -1;
    }
    assign_materials();
    return save_level_name();
}

int sort_node() {
    for (int i = 0; i < model.N_Beam; ++i) {
        if (!names_a_node(model.beam[i].noi) || !names_a_node(model.beam[i].noj)) {
            show_message("ソートができません");
            return -1;
        }
    }
    std::vector<int> order(model.N_Node);
    for (int i = 0; i < model.N_Node; ++i) {
        order[i] = i;
    }
    std::stable_sort(order.begin(), order.end(), [](int a, int b) {
        const Node& p = model.node[a];
        const Node& q = model.node[b];
        if (!same_float(p.z, q.z)) {
            return p.z < q.z;
        }
        return same_float(p.y, q.y) ? p.x < q.x : p.y < q.y;
    });
    std::vector<Node> sorted(model.N_Node);
    std::vector<int> new_number(model.N_Node + 1);
    for (int i = 0; i < model.N_Node; ++i) {
        sorted[i] = model.node[order[i]];
        sorted[i].no = number_at(i);
        new_number[number_at(order[i])] = number_at(i);
    }
    std::copy(sorted.begin(), sorted.end(), model.node.begin());
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].noi = new_number[model.beam[i].noi];
        model.beam[i].noj = new_number[model.beam[i].noj];
    }
    forget_node_index();
    return 1;
}

int check_all_node() {
    for (int i = 0; i < model.N_Node; ++i) {
        if (model.node[i].flag != 2) {
            return -1;
        }
    }
    float low[3] = {9999.9f, 9999.9f, 9999.9f};
    float high[3] = {-9999.9f, -9999.9f, -9999.9f};
    for (int i = 0; i < model.N_Node; ++i) {
        const float at[3] = {model.node[i].x, model.node[i].y, model.node[i].z};
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], at[axis]);
            high[axis] = std::max(high[axis], at[axis]);
        }
    }
    const auto index = [&](float value, float from, int axis) {
        const double extent = static_cast<double>(high[axis]) - low[axis];
        const float step = round_once(extent * (1.0 / 99.0));
        if (same_float(step, 0.0f)) {
            return 0;
        }
        // Measured from the smallest x, an index along y can lie anywhere.
        constexpr double most = std::numeric_limits<int>::max();
        return static_cast<int>(
            std::clamp((static_cast<double>(value) - from) / step, -most, most));
    };
    for (int i = 0; i < model.N_Node; ++i) {
        Node& node = model.node[i];
        // Deliberate: y is measured from the smallest x.
        set_grid_name(node, index(node.x, low[0], 0), index(node.y, low[0], 1),
                      index(node.z, low[2], 2));
    }
    name_beams();
    return 1;
}

Extent node_extent() {
    Extent extent{};
    for (int i = 0; i < model.N_Node; ++i) {
        const float at[3] = {model.node[i].x, model.node[i].y, model.node[i].z};
        for (int axis = 0; axis < 3; ++axis) {
            extent.low[axis] = i == 0 ? at[axis] : std::min(extent.low[axis], at[axis]);
            extent.high[axis] = i == 0 ? at[axis] : std::max(extent.high[axis], at[axis]);
        }
    }
    return extent;
}

namespace {

bool counts_fit() {
    const auto fits = [](int count, int capacity) { return count >= 0 && count <= capacity; };
    return fits(model.N_Node, node_capacity) && fits(model.N_Beam, beam_capacity) &&
           fits(model.N_Size, size_capacity) && fits(model.N_Mat, mat_capacity) &&
           fits(model.N_Fix, fix_capacity) && fits(model.N_Load, load_capacity) &&
           fits(model.N_X, level_capacity) && fits(model.N_Y, level_capacity) &&
           fits(model.N_Z, level_capacity);
}

bool ends_lie_at(const Beam& beam, const Node& start, const Node& end) {
    return same_float(beam.xs, start.x) && same_float(beam.ys, start.y) &&
           same_float(beam.zs, start.z) && same_float(beam.xl, end.x) &&
           same_float(beam.yl, end.y) && same_float(beam.zl, end.z);
}

const char* find_beam_fault(const Beam& beam, bool names) {
    if (!names_a_node(beam.noi) || !names_a_node(beam.noj)) {
        return "a member's end names no node";
    }
    const Node& start = model.node[position_of(beam.noi)];
    const Node& end = model.node[position_of(beam.noj)];
    if (!ends_lie_at(beam, start, end)) {
        return "a member's end lies elsewhere than its node";
    }
    if (names && (std::strcmp(beam.idi, start.id) != 0 || std::strcmp(beam.idj, end.id) != 0)) {
        return "a member's end has another name than its node";
    }
    if (beam.size > model.N_Size || beam.mat > model.N_Mat) {
        return "a member names no section or material";
    }
    return nullptr;
}

// True when the first `count` records of a table all satisfy the condition.
template <class Table, class Condition>
bool all_of(const Table& table, int count, Condition condition) {
    return std::all_of(table.begin(), table.begin() + count, condition);
}

template <class Table> bool numbered(const Table& table, int count) {
    for (int i = 0; i < count; ++i) {
        if (table[i].no != number_at(i)) {
            return false;
        }
    }
    return true;
}

} // namespace

const char* find_model_fault(bool names) {
    if (!counts_fit()) {
        return "a count lies outside its table";
    }
    if (!numbered(model.node, model.N_Node)) {
        return "a node's number is not its position + 1";
    }
    if (!numbered(model.beam, model.N_Beam)) {
        return "a member's number is not its position + 1";
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        if (const char* fault = find_beam_fault(model.beam[i], names)) {
            return fault;
        }
    }
    if (!all_of(model.fix, model.N_Fix, [](const Fix& fix) { return names_a_node(fix.no); })) {
        return "a support names no node";
    }
    if (!all_of(model.load, model.N_Load, [](const Load& load) { return names_a_node(load.no); })) {
        return "a load names no node";
    }
    return nullptr;
}

} // namespace kigumi
