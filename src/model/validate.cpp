#include "model/validate.h"

#include "base/float.h"
#include "model/nodes.h"

#include <algorithm>
#include <cstring>

namespace kigumi {

namespace {

bool counts_fit(const Model& model) {
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

const char* find_beam_fault(const Model& model, const Beam& beam, bool names) {
    if (!names_a_node(model, beam.noi) || !names_a_node(model, beam.noj)) {
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

const char* find_model_fault(const Model& model, bool names) {
    if (!counts_fit(model)) {
        return "a count lies outside its table";
    }
    if (!numbered(model.node, model.N_Node)) {
        return "a node's number is not its position + 1";
    }
    if (!numbered(model.beam, model.N_Beam)) {
        return "a member's number is not its position + 1";
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        if (const char* fault = find_beam_fault(model, model.beam[i], names)) {
            return fault;
        }
    }
    if (!all_of(model.fix, model.N_Fix,
                [&model](const Fix& fix) { return names_a_node(model, fix.no); })) {
        return "a support names no node";
    }
    if (!all_of(model.load, model.N_Load,
                [&model](const Load& load) { return names_a_node(model, load.no); })) {
        return "a load names no node";
    }
    return nullptr;
}

} // namespace kigumi
