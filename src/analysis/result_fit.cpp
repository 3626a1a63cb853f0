#include "analysis/result_fit.h"

#include "analysis/result.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace kigumi {

namespace {

// The input holds tenths of a cm; a solver prints six digits at least.
bool is_near(double a, double b) {
    constexpr double tenth = 0.1;
    constexpr double digits = 1.0e-5;
    return std::fabs(a - b) <= tenth + digits * std::fabs(b);
}

bool is_at_its_node(const Setuten& found, const NumberedFrame& frame) {
    const auto node = frame.nodes.find(found.OldNo);
    return node != frame.nodes.end() && is_near(found.x, node->second[0]) &&
           is_near(found.y, node->second[1]) && is_near(found.z, node->second[2]);
}

bool nodes_fit(const NumberedFrame& frame) {
    const auto end = result.setuten.begin() + result.N_Setuten;
    std::set<int> listed;
    std::set<int> moved;
    for (auto node = result.setuten.begin(); node != end; ++node) {
        listed.insert(node->OldNo);
    }
    for (int i = 0; i < result.N_Setuten; ++i) {
        moved.insert(result.disp[i].old_no);
    }
    return static_cast<int>(listed.size()) == result.N_Setuten && listed == moved &&
           std::all_of(result.setuten.begin(), end,
                       [&frame](const Setuten& node) { return is_at_its_node(node, frame); });
}

using Ends = std::pair<int, int>;

Ends ends_of(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

bool members_fit(const NumberedFrame& frame) {
    std::vector<Ends> found;
    std::vector<Ends> expected;
    for (int i = 0; i < result.N_Stress; ++i) {
        found.push_back(ends_of(result.stress[i].old_noi, result.stress[i].old_noj));
    }
    for (const auto& [start, end] : frame.ends) {
        expected.push_back(ends_of(start, end));
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    return found == expected;
}

} // namespace

bool results_fit(const NumberedFrame& frame) {
    return nodes_fit(frame) && members_fit(frame);
}

bool results_fit_model() {
    NumberedFrame frame;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        frame.nodes[number_at(i)] = {node.x, node.y, node.z};
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        frame.ends.emplace_back(model.beam[i].noi, model.beam[i].noj);
    }
    return results_fit(frame);
}

} // namespace kigumi
