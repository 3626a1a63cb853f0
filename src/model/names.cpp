#include "model/names.h"

#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "model/nodes.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace kigumi {

namespace {

// The distinct values of `get` over all nodes, ascending.
template <class Get> std::vector<float> distinct_levels(const Model& model, Get get) {
    std::vector<float> values;
    values.reserve(model.N_Node);
    for (int i = 0; i < model.N_Node; ++i) {
        values.push_back(get(model.node[i]));
    }
    std::stable_sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end(), same_float), values.end());
    return values;
}

void store_levels(const std::vector<float>& values, Table<float, level_capacity>& table,
                  std::int32_t& count) {
    count = static_cast<std::int32_t>(values.size());
    std::copy(values.begin(), values.end(), table.begin());
}

int level_of(const Table<float, level_capacity>& table, int count, float value) {
    const auto end = table.begin() + count;
    return static_cast<int>(std::lower_bound(table.begin(), end, value) - table.begin());
}

template <class Table> void name_records(const Model& model, Table& table, int count) {
    for (int i = 0; i < count; ++i) {
        if (names_a_node(model, table[i].no)) {
            std::memcpy(table[i].id, model.node[position_of(table[i].no)].id, name_bytes);
        }
    }
}

// Copies the node names into the members, supports and loads; who has no node keeps its name.
void pass_names_on(Model& model) {
    name_records(model, model.fix, model.N_Fix);
    name_records(model, model.load, model.N_Load);
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        if (names_a_node(model, beam.noi)) {
            std::memcpy(beam.idi, model.node[position_of(beam.noi)].id, name_bytes);
        }
        if (names_a_node(model, beam.noj)) {
            std::memcpy(beam.idj, model.node[position_of(beam.noj)].id, name_bytes);
        }
    }
}

void set_grid_name(Node& node, int i, int j, int k) {
    set_name(node.id, text_format("X%02dY%02dZ%02d", i, j, k).c_str());
}

} // namespace

int save_level_name(Model& model) {
    const auto xs = distinct_levels(model, [](const Node& node) { return node.x; });
    const auto ys = distinct_levels(model, [](const Node& node) { return node.y; });
    const auto zs = distinct_levels(model, [](const Node& node) { return node.z; });
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
    pass_names_on(model);
    return 0;
}

int check_all_node(Model& model) {
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
    pass_names_on(model);
    return 1;
}

} // namespace kigumi
