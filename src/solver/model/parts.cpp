#include "solver/model/check.h"

#include <Eigen/Dense>

#include <cmath>
#include <numeric>

namespace frameslv {

namespace {

// Supports whose lever arms are below 1e-6 of the part's size hold no rotation; the eigenvalues are
// squares of such arms.
constexpr double least_eigenvalue = 1e-12;
// A translation below this part of a rigid motion is rounding.
constexpr double least_translation = 1e-6;

// The connected parts of a frame as a forest: every node points towards its part's first node.
class Parts {
  public:
    explicit Parts(const Skeleton& frame) : parent_(frame.at.size()) {
        std::iota(parent_.begin(), parent_.end(), size_t{0});
        for (const auto& [i, j] : frame.members)
            join(root(static_cast<size_t>(i)), root(static_cast<size_t>(j)));
    }
    size_t root(size_t i) {
        while (parent_[i] != i) {
            parent_[i] = parent_[parent_[i]];
            i = parent_[i];
        }
        return i;
    }

  private:
    void join(size_t a, size_t b) { parent_[std::max(a, b)] = std::min(a, b); }

    std::vector<size_t> parent_;
};

// One part: its nodes, its middle and the longest arm from there.
struct Part {
    std::vector<size_t> nodes;
    Eigen::Vector3d middle = Eigen::Vector3d::Zero();
    double extent = 0.0;
};

Eigen::Vector3d place_of(const Point& at) {
    return {at.x, at.y, at.z};
}

std::vector<Part> parts_of(const Skeleton& frame) {
    Parts forest(frame);
    std::vector<size_t> part_of_root(frame.at.size());
    std::vector<Part> parts;
    for (size_t i = 0; i < frame.at.size(); i++) {
        const size_t root = forest.root(i);
        if (root == i) {
            part_of_root[i] = parts.size();
            parts.emplace_back();
        }
        Part& part = parts[part_of_root[root]];
        part.nodes.push_back(i);
        part.middle += place_of(frame.at[i]);
    }
    for (Part& part : parts) {
        part.middle /= static_cast<double>(part.nodes.size());
        for (const size_t i : part.nodes)
            part.extent = std::max(part.extent, (place_of(frame.at[i]) - part.middle).stableNorm());
    }
    return parts;
}

// How a rigid motion moves unknown `dof` at `arm` from the middle, arm in units of the extent. The
// motion is three translations and three rotations times the extent: u = t + w x r.
Vector6 rigid_row(const Eigen::Vector3d& arm, size_t dof) {
    Vector6 row = Vector6::Zero();
    const Eigen::Index axis = static_cast<Eigen::Index>(dof % 3);
    const Eigen::Vector3d unit = Eigen::Vector3d::Unit(axis);
    if (dof < 3)
        row << unit, arm.cross(unit);
    else
        row.tail<3>() = unit;
    return row;
}

// The node and direction that a rigid motion moves most; a rotation only if nothing is displaced.
Fault loosest(const Skeleton& frame, const Part& part, const Vector6& motion) {
    size_t node = part.nodes.front();
    size_t dof = 0;
    double most = 0.0;
    const auto look = [&](size_t i, size_t first) {
        const Eigen::Vector3d arm = (place_of(frame.at[i]) - part.middle) / part.extent;
        for (size_t k = first; k < first + 3; k++) {
            const double moved = std::abs(rigid_row(arm, k).dot(motion));
            // The margin keeps the first of several nodes that move alike.
            if (!frame.held[i][k] && moved > most * (1.0 + least_translation)) {
                most = moved;
                node = i;
                dof = k;
            }
        }
    };
    for (const size_t i : part.nodes)
        look(i, 0);
    if (most < least_translation) {
        most = 0.0;
        for (const size_t i : part.nodes)
            look(i, 3);
    }
    return {Exit::mechanism,
            text_of("構造が不安定です: %s が %s", frame.label(node).c_str(), motion_label(dof))};
}

std::string part_label(const Skeleton& frame, const Part& part) {
    return text_of("%s を含む部分 (節点 %zu 個)", frame.label(part.nodes.front()).c_str(),
                   part.nodes.size());
}

Fault check_part(const Skeleton& frame, const Part& part) {
    Matrix6 conditions = Matrix6::Zero();
    bool held = false;
    for (const size_t i : part.nodes) {
        const Eigen::Vector3d arm = (place_of(frame.at[i]) - part.middle) / part.extent;
        for (size_t k = 0; k < dof_count; k++) {
            if (!frame.held[i][k])
                continue;
            held = true;
            const Vector6 row = rigid_row(arm, k);
            conditions += row * row.transpose();
        }
    }
    if (!held)
        return {Exit::mechanism, text_of("構造が不安定です: %s に支点がありません",
                                         part_label(frame, part).c_str())};
    const Eigen::SelfAdjointEigenSolver<Matrix6> modes(conditions);
    if (modes.eigenvalues()(0) > least_eigenvalue)
        return {};
    return loosest(frame, part, modes.eigenvectors().col(0));
}

Skeleton skeleton_of(const Model& model) {
    Skeleton frame;
    for (const Node& node : model.node) {
        frame.at.push_back(node.at);
        frame.held.push_back(node.held);
    }
    for (const Member& member : model.member)
        frame.members.emplace_back(static_cast<int>(index_of(member.noi)),
                                   static_cast<int>(index_of(member.noj)));
    frame.label = [&model](size_t node) { return node_label(model, number_of(node)); };
    return frame;
}

} // namespace

Fault check_held(const Skeleton& frame) {
    bool any = false;
    for (const auto& node : frame.held)
        for (const bool held : node)
            any = any || held;
    if (!any)
        return {Exit::mechanism, "支点がありません"};
    for (const Part& part : parts_of(frame)) {
        if (part.nodes.size() == 1)
            continue; // no member
        if (Fault fault = check_part(frame, part))
            return fault;
    }
    return {};
}

Fault check_held(const Model& model) {
    return check_held(skeleton_of(model));
}

std::vector<std::string> part_labels(const Model& model) {
    const Skeleton frame = skeleton_of(model);
    std::vector<std::string> labels;
    for (const Part& part : parts_of(frame))
        if (part.nodes.size() > 1)
            labels.push_back(part_label(frame, part));
    return labels;
}

} // namespace frameslv
