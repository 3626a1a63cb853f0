#include "analysis/result_fit.h"

#include "analysis/result.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

namespace kigumi {

namespace {

// The input holds tenths of a cm; a solver prints six digits at least.
bool is_near(float a, float b) {
    constexpr double tenth = 0.1;
    constexpr double digits = 1.0e-5;
    return std::fabs(static_cast<double>(a) - b) <=
           tenth + digits * std::fabs(static_cast<double>(b));
}

bool is_at_its_node(const Setuten& found) {
    if (found.OldNo < 1 || found.OldNo > model.N_Node) {
        return false;
    }
    const Node& node = model.node[position_of(found.OldNo)];
    return is_near(found.x, node.x) && is_near(found.y, node.y) && is_near(found.z, node.z);
}

bool nodes_fit() {
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
           std::all_of(result.setuten.begin(), end, is_at_its_node);
}

using Ends = std::pair<int, int>;

Ends ends_of(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

bool members_fit() {
    std::vector<Ends> found;
    std::vector<Ends> expected;
    for (int i = 0; i < result.N_Stress; ++i) {
        found.push_back(ends_of(result.stress[i].old_noi, result.stress[i].old_noj));
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        expected.push_back(ends_of(model.beam[i].noi, model.beam[i].noj));
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    return found == expected;
}

} // namespace

bool results_fit_model() {
    return nodes_fit() && members_fit();
}

} // namespace kigumi
