#include "model/nodes.h"

#include "base/float.h"
#include "base/format.h"
#include "base/message.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kigumi {

namespace {

// Makes the index tell the places of all nodes.
void follow_nodes(Model& model) {
    NodeIndex& index = model.node_index;
    if (model.N_Node < index.count) {
        forget_node_index(model);
    }
    for (; index.count < model.N_Node; ++index.count) {
        const Node& node = model.node[index.count];
        index.first.add(node.x, node.y, node.z, index.count);
    }
}

} // namespace

void forget_node_index(Model& model) {
    model.node_index.first.clear();
    model.node_index.count = 0;
}

bool names_a_node(const Model& model, int no) {
    return no >= 1 && no <= model.N_Node;
}

int find_or_add_node(Model& model, float x, float y, float z) {
    follow_nodes(model);
    const int found = model.node_index.first.find(x, y, z);
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
    follow_nodes(model);
    return node.no;
}

int search_2dim_node(const Model& model, float X, float Y) {
    for (int i = 0; i < model.N_Node; ++i) {
        const double dx = static_cast<double>(model.node[i].X) - X;
        const double dy = static_cast<double>(model.node[i].Y) - Y;
        if (round_once(std::sqrt(dx * dx + dy * dy)) < model.snap_radius) {
            return i;
        }
    }
    return -1;
}

int sort_node(Model& model) {
    for (int i = 0; i < model.N_Beam; ++i) {
        if (!names_a_node(model, model.beam[i].noi) || !names_a_node(model, model.beam[i].noj)) {
            show_message("ソートができません");
            return -1;
        }
    }
    std::vector<int> order(model.N_Node);
    for (int i = 0; i < model.N_Node; ++i) {
        order[i] = i;
    }
    std::stable_sort(order.begin(), order.end(), [&model](int a, int b) {
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
    forget_node_index(model);
    return 1;
}

Extent node_extent(const Model& model) {
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

} // namespace kigumi
