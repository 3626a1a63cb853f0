#include "solver/frame/input_check.h"

#include "solver/base/fault.h"
#include "solver/model/model.h"

#include <algorithm>
#include <cmath>

namespace frame_analysis {

namespace {

using frameslv::text_of;

bool is_positive(double value) {
    return std::isfinite(value) && value > 0.0;
}

template <class Values> bool all_finite(const Values& values) {
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

// Zero, positive or rigid.
template <class Values> bool all_springs(const Values& values) {
    return std::all_of(values.begin(), values.end(), [](double v) { return v >= 0.0; });
}

std::string check_member(const Frame& frame, size_t index) {
    const Member& m = frame.members[index];
    const std::string label = text_of("部材 %zu", index + 1);
    if (m.i >= frame.nodes.size() || m.j >= frame.nodes.size())
        return label + ": 端の節点がありません";
    const std::pair<const char*, double> values[] = {{"E", m.E},   {"G", m.G},   {"A", m.A},
                                                     {"Iy", m.Iy}, {"Iz", m.Iz}, {"J", m.J}};
    for (const auto& [name, value] : values)
        if (!is_positive(value))
            return text_of("%s の %s = %g は正の値ではありません",
                           member_label(frame, index).c_str(), name, value);
    const Vector3 others{m.turn, m.weight, m.shear_y + m.shear_z};
    if (!all_finite(others) || m.weight < 0.0 || m.shear_y < 0.0 || m.shear_z < 0.0)
        return member_label(frame, index) + " の重さ、回転角、せん断断面積が正しくありません";
    if (!all_springs(m.joint_i.spring) || !all_springs(m.joint_j.spring))
        return member_label(frame, index) + " の端のばねが負か数値ではありません";
    const Vector3& a = frame.nodes[m.i].at;
    const Vector3& b = frame.nodes[m.j].at;
    if (!(std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]) > 0.0))
        return member_label(frame, index) + " の長さが 0 です";
    return {};
}

double length_of(const Frame& frame, size_t member) {
    const Vector3& a = frame.nodes[frame.members[member].i].at;
    const Vector3& b = frame.nodes[frame.members[member].j].at;
    return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
}

} // namespace

std::string node_label(const Frame& frame, size_t node) {
    const std::string& name = frame.nodes[node].name;
    return name.empty() ? text_of("節点 %zu", node + 1) : "節点 " + frameslv::printable(name);
}

std::string member_label(const Frame& frame, size_t member) {
    const Member& m = frame.members[member];
    return text_of("部材 %zu (%s - %s)", member + 1, node_label(frame, m.i).c_str(),
                   node_label(frame, m.j).c_str());
}

std::string check(const Frame& frame) {
    if (frame.nodes.empty() || frame.members.empty())
        return "節点か部材がありません";
    for (size_t i = 0; i < frame.nodes.size(); i++) {
        if (!all_finite(frame.nodes[i].at))
            return node_label(frame, i) + " の座標が数値ではありません";
        if (!all_springs(frame.nodes[i].support))
            return node_label(frame, i) + " の支点のばねが負か数値ではありません";
    }
    for (size_t i = 0; i < frame.members.size(); i++)
        if (std::string fault = check_member(frame, i); !fault.empty())
            return fault;
    return {};
}

std::string check(const Frame& frame, const LoadVector& load) {
    const std::string where = "荷重「" + load.name + "」: ";
    for (const NodeLoad& one : load.nodes)
        if (one.node >= frame.nodes.size() || !all_finite(one.value))
            return where + "節点荷重の節点がないか、値が数値ではありません";
    for (const MemberLoad& one : load.members) {
        if (one.member >= frame.members.size())
            return where + text_of("部材 %zu はありません", one.member + 1);
        if (!all_finite(one.force) || !std::isfinite(one.distance) || one.distance < 0.0 ||
            (one.kind == MemberLoad::Kind::point && one.distance > length_of(frame, one.member)))
            return where + member_label(frame, one.member) + " の荷重の値か位置が正しくありません";
    }
    if (!all_finite(load.gravity))
        return where + "自重の向きが数値ではありません";
    return {};
}

} // namespace frame_analysis
