#include "analysis/result_fit.h"

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

bool nodes_fit(const Listing& listing, const std::vector<Disp>& disp) {
    std::set<int> listed;
    std::set<int> moved;
    for (const Setuten& node : listing.setuten) {
        listed.insert(node.OldNo);
    }
    for (const Disp& node : disp) {
        moved.insert(node.old_no);
    }
    return listed.size() == listing.setuten.size() && listed == moved &&
           std::all_of(listing.setuten.begin(), listing.setuten.end(), is_at_its_node);
}

using Ends = std::pair<int, int>;

Ends ends_of(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

bool members_fit(const Listing& listing) {
    std::vector<Ends> found;
    std::vector<Ends> expected;
    for (const Stress& member : listing.stress) {
        found.push_back(ends_of(member.old_noi, member.old_noj));
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        expected.push_back(ends_of(model.beam[i].noi, model.beam[i].noj));
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    return found == expected;
}

} // namespace

bool results_fit_model(const Listing& listing, const std::vector<Disp>& disp) {
    return nodes_fit(listing, disp) && members_fit(listing);
}

} // namespace kigumi
