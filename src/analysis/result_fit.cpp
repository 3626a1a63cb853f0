#include "analysis/result_fit.h"

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

bool nodes_fit(const NumberedFrame& frame, const ResultRecords& results) {
    std::set<int> listed;
    std::set<int> moved;
    for (const Setuten& node : results.nodes) {
        listed.insert(node.OldNo);
    }
    for (const Disp& node : results.displacements) {
        moved.insert(node.old_no);
    }
    return listed.size() == results.nodes.size() && listed == moved &&
           std::all_of(results.nodes.begin(), results.nodes.end(),
                       [&frame](const Setuten& node) { return is_at_its_node(node, frame); });
}

using Ends = std::pair<int, int>;

Ends ends_of(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

bool members_fit(const NumberedFrame& frame, const ResultRecords& results) {
    std::vector<Ends> found;
    std::vector<Ends> expected;
    for (const Stress& member : results.members) {
        found.push_back(ends_of(member.old_noi, member.old_noj));
    }
    for (const auto& [start, end] : frame.ends) {
        expected.push_back(ends_of(start, end));
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    return found == expected;
}

// The first `count` records of a table.
template <class Table> auto first_of(const Table& table, int count) {
    return std::span(table).first(static_cast<size_t>(count));
}

} // namespace

NumberedFrame model_frame(const Model& model) {
    NumberedFrame frame;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        frame.nodes[number_at(i)] = {node.x, node.y, node.z};
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        frame.ends.emplace_back(model.beam[i].noi, model.beam[i].noj);
    }
    return frame;
}

ResultRecords stored_results(const Result& result) {
    return {first_of(result.setuten, result.N_Setuten), first_of(result.stress, result.N_Stress),
            first_of(result.disp, result.N_Setuten)};
}

bool results_fit(const NumberedFrame& frame, const ResultRecords& results) {
    return nodes_fit(frame, results) && members_fit(frame, results);
}

} // namespace kigumi
