#include "solver/model/system.h"

#include "solver/model/check.h"

namespace frameslv {

namespace {

FreeDofs free_of(const Node& node) {
    FreeDofs free;
    for (size_t k = 0; k < dof_count; k++)
        if (!node.held[k])
            free.dof[static_cast<size_t>(free.count++)] = static_cast<unsigned char>(k);
    return free;
}

std::vector<Edge> edges_of(const Model& model) {
    std::vector<Edge> edges;
    edges.reserve(model.member.size());
    for (const Member& member : model.member)
        edges.emplace_back(static_cast<int>(index_of(member.noi)),
                           static_cast<int>(index_of(member.noj)));
    return edges;
}

Equations equations_of(const Model& model, int most_threads) {
    std::vector<FreeDofs> free;
    std::vector<Point> at;
    for (const Node& node : model.node) {
        free.push_back(free_of(node));
        at.push_back(node.at);
    }
    return {free, at, edges_of(model), {}, most_threads};
}

} // namespace

System::System(const Model& model, int most_threads)
    : model_(model), equations_(equations_of(model, most_threads)) {
    elements.reserve(model.member.size());
    double lengths = 0.0;
    for (int no = 1; no <= static_cast<int>(model.member.size()); no++) {
        elements.push_back(make_element(model, no));
        lengths += elements.back().length;
    }
    arm_ = lengths / static_cast<double>(elements.size());
    const Graph nodes = make_graph(static_cast<int>(model.node.size()), edges_of(model));
    repeated_ = elements.size() - nodes.next.size() / 2;
}

Equations::Blocks System::blocks() const {
    return [this](size_t member, StiffnessBlocks& blocks) {
        blocks = stiffness_blocks(elements[member]);
    };
}

Fault System::factorise() {
    if (size() == 0)
        return {};
    if (Fault fault = equations_.fits_memory())
        return fault;
    NodeVectors diagonal(model_.node.size(), Vector6::Zero());
    for (size_t i = 0; i < elements.size(); i++) {
        const Vector6 own = stiffness_diagonal(elements[i]);
        diagonal[index_of(model_.member[i].noi)] += own;
        diagonal[index_of(model_.member[i].noj)] += own;
    }
    if (const auto bad = equations_.set_scale(diagonal))
        return {Exit::inexact, text_of("%s の剛性 %g が計算できる範囲を越えています",
                                       node_label(model_, bad->node + 1).c_str(),
                                       diagonal[static_cast<size_t>(bad->node)](bad->dof))};
    if (try_factorise())
        return {};
    const auto [node, dof] = loosest_motion();
    return {Exit::inexact,
            text_of("部材の剛性の差が大きすぎて計算できません: %s がほとんど抵抗なく %s",
                    node_label(model_, node + 1).c_str(), motion_label(static_cast<size_t>(dof)))};
}

NodeVectors System::member_forces(const std::vector<Element>& members,
                                  const NodeVectors& moved) const {
    NodeVectors forces(moved.size(), Vector6::Zero());
    for (size_t i = 0; i < members.size(); i++) {
        const size_t a = index_of(model_.member[i].noi);
        const size_t b = index_of(model_.member[i].noj);
        add_to_nodes(members[i], end_forces(members[i], moved[a], moved[b]), forces[a], forces[b]);
    }
    return forces;
}

} // namespace frameslv
