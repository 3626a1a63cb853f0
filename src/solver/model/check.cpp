#include "solver/model/check.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <string_view>

namespace frameslv {

namespace {

// Half of the last place of "%9.1f", with a hair for the rounding of the decimal text itself.
constexpr double snap_distance = 0.05 + 1e-6;

// A member shorter than this part of the frame has no direction that its coordinates could tell:
// coordinates of single precision carry seven digits.
constexpr double least_length_ratio = 1e-9;

// Takes `letter` and a position in `levels` off the front of `name`; null when they are not there.
const double* take_level(std::string_view& name, char letter, const std::vector<double>& levels) {
    if (name.empty() || name[0] != letter)
        return nullptr;
    size_t position = 0;
    const char* end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data() + 1, end, position);
    if (error != std::errc{} || position >= levels.size())
        return nullptr;
    name.remove_prefix(static_cast<size_t>(stop - name.data()));
    return &levels[position];
}

Fault model_fault(const std::string& text) {
    return {Exit::bad_model, text};
}

bool is_positive(double value) {
    return std::isfinite(value) && value > 0.0;
}

Fault check_member_numbers(const Model& model, int no) {
    const Member& member = model.member[index_of(no)];
    const auto exists = [](int number, size_t count) {
        return number >= 1 && static_cast<size_t>(number) <= count;
    };
    for (const int end : {member.noi, member.noj})
        if (!exists(end, model.node.size()))
            return model_fault(text_of("部材 %d: 節点番号 %d の節点はありません", no, end));
    if (!exists(member.size, model.section.size()))
        return model_fault(text_of("部材 %d: 断面番号 %d の断面はありません", no, member.size));
    if (!exists(member.mat, model.material.size()))
        return model_fault(text_of("部材 %d: 材料番号 %d の材料はありません", no, member.mat));
    return {};
}

Fault check_member_values(const Model& model, int no) {
    const Member& member = model.member[index_of(no)];
    const Section& section = model.section[index_of(member.size)];
    const Material& material = model.material[index_of(member.mat)];
    struct Named {
        const char* name;
        double value;
    };
    for (const auto& [name, value] : {Named{"A", section.A}, Named{"Iy", section.Iy},
                                      Named{"Iz", section.Iz}, Named{"J", section.J}})
        if (!is_positive(value))
            return model_fault(text_of("断面 %d の %s = %g は正の値ではありません (%s)",
                                       member.size, name, value, member_label(model, no).c_str()));
    if (!is_positive(material.E))
        return model_fault(text_of("材料 %d の E = %g は正の値ではありません (%s)", member.mat,
                                   material.E, member_label(model, no).c_str()));
    if (!(material.poisson > -1.0 && material.poisson <= 0.5))
        return model_fault(
            text_of("材料 %d のポアソン比 %g は -1 より大きく 0.5 以下の値ではありません (%s)",
                    member.mat, material.poisson, member_label(model, no).c_str()));
    if (!(material.density >= 0.0))
        return model_fault(text_of("材料 %d の密度 %g が負です (%s)", member.mat, material.density,
                                   member_label(model, no).c_str()));
    return {};
}

// The diagonal of the box around all nodes.
double frame_extent(const Model& model) {
    Point low = model.node.front().at;
    Point high = low;
    for (const Node& node : model.node) {
        low = {std::min(low.x, node.at.x), std::min(low.y, node.at.y), std::min(low.z, node.at.z)};
        high = {std::max(high.x, node.at.x), std::max(high.y, node.at.y),
                std::max(high.z, node.at.z)};
    }
    return distance(low, high);
}

// Readers hold coordinates and levels in single precision.
Fault check_magnitudes(const Model& model) {
    const auto is_single = [](double value) { return std::fabs(value) <= FLT_MAX; };
    const auto at_single = [&](const Node& node) {
        return is_single(node.at.x) && is_single(node.at.y) && is_single(node.at.z);
    };
    if (!std::all_of(model.node.begin(), model.node.end(), at_single) ||
        !is_single(frame_extent(model)))
        return model_fault("節点の座標が大きすぎます");
    for (const auto* levels : {&model.Xval, &model.Yval, &model.Zval})
        if (!std::all_of(levels->begin(), levels->end(), is_single))
            return model_fault("レベルの値が大きすぎます");
    return {};
}

Fault check_members(const Model& model) {
    const double extent = frame_extent(model);
    for (int no = 1; no <= static_cast<int>(model.member.size()); no++) {
        if (Fault fault = check_member_numbers(model, no))
            return fault;
        if (Fault fault = check_member_values(model, no))
            return fault;
        const Member& member = model.member[index_of(no)];
        const double length =
            distance(model.node[index_of(member.noi)].at, model.node[index_of(member.noj)].at);
        if (!(length > least_length_ratio * extent))
            return model_fault(text_of("%s の長さが 0 です", member_label(model, no).c_str()));
    }
    return {};
}

Fault check_nodes(const Model& model) {
    std::vector<bool> used(model.node.size());
    for (const Member& member : model.member) {
        used[index_of(member.noi)] = true;
        used[index_of(member.noj)] = true;
    }
    for (size_t i = 0; i < model.node.size(); i++) {
        const Node& node = model.node[i];
        const std::string label = node_label(model, number_of(i));
        if (!used[i] && !node.wholly_held())
            return {Exit::mechanism, text_of("%s に部材がありません", label.c_str())};
        for (const double value : node.load)
            if (!std::isfinite(value))
                return model_fault(text_of("%s の荷重の和が大きすぎます", label.c_str()));
    }
    return {};
}

} // namespace

std::string node_label(const Model& model, int no) {
    const std::string& name = model.node[index_of(no)].name;
    if (name.empty())
        return text_of("節点 %d", no);
    return "節点 " + printable(name);
}

std::string member_label(const Model& model, int no) {
    const Member& member = model.member[index_of(no)];
    return text_of("部材 %d (節点 %d - 節点 %d)", no, member.noi, member.noj);
}

void snap_to_levels(Model& model) {
    const auto agree = [](double level, double value) {
        return std::abs(level - value) <= snap_distance;
    };
    for (Node& node : model.node) {
        std::string_view name = node.name;
        const double* x = take_level(name, 'X', model.Xval);
        const double* y = x == nullptr ? nullptr : take_level(name, 'Y', model.Yval);
        const double* z = y == nullptr ? nullptr : take_level(name, 'Z', model.Zval);
        if (z != nullptr && name.empty() && agree(*x, node.at.x) && agree(*y, node.at.y) &&
            agree(*z, node.at.z))
            node.at = {*x, *y, *z};
    }
}

Fault check_model(const Model& model) {
    if (model.node.empty())
        return model_fault("節点がありません");
    if (model.member.empty())
        return model_fault("部材がありません");
    if (Fault fault = check_magnitudes(model))
        return fault;
    if (Fault fault = check_members(model))
        return fault;
    return check_nodes(model);
}

const char* motion_label(size_t dof) {
    static constexpr const char* labels[dof_count] = {
        "x 方向に動きます",       "y 方向に動きます",       "z 方向に動きます",
        "x 軸まわりに回転します", "y 軸まわりに回転します", "z 軸まわりに回転します"};
    return labels[dof];
}

} // namespace frameslv
