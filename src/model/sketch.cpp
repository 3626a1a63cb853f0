#include "model/sketch.h"

#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "model/members.h"
#include "model/nodes.h"
#include "model/sections.h"

#include <algorithm>
#include <cmath>

namespace kigumi {

bool is_missing(const Node& node) {
    return node.flag != 2 ||
           (same_float(node.x, unknown_place) && same_float(node.y, unknown_place) &&
            same_float(node.z, unknown_place));
}

bool is_missing(const Beam& beam) {
    return beam.flag != 2;
}

SketchCount count_sketch(const Model& model) {
    SketchCount count{model.N_Node, 0, model.N_Beam, 0};
    for (int i = 0; i < model.N_Node; ++i) {
        count.missing_nodes += is_missing(model.node[i]) ? 1 : 0;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        count.missing_beams += is_missing(model.beam[i]) ? 1 : 0;
    }
    return count;
}

bool all_nodes_known(const Model& model) {
    const auto begin = model.node.begin();
    return model.N_Node > 0 && std::all_of(begin, begin + model.N_Node,
                                           [](const Node& node) { return node.flag == 2; });
}

int search_cross_beam(const Model& model, float x1, float y1, float x2, float y2, SheetPoint& at) {
    constexpr double parallel = 0.0001; // smallest |d| that counts as a crossing
    const double dx = static_cast<double>(x2) - x1;
    const double dy = static_cast<double>(y2) - y1;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const double bx = static_cast<double>(beam.XL) - beam.XS;
        const double by = static_cast<double>(beam.YL) - beam.YS;
        const double d = dx * by - bx * dy;
        if (std::fabs(d) < parallel) {
            continue;
        }
        const double sx = static_cast<double>(x1) - beam.XS;
        const double sy = static_cast<double>(y1) - beam.YS;
        const double t = (dx * sy - dy * sx) / d;
        const double u = (bx * sy - by * sx) / d;
        if (t >= 0.0 && t <= 1.0 && u >= 0.0 && u <= 1.0) {
            at = {round_once(beam.XS + bx * t), round_once(beam.YS + by * t)};
            return i;
        }
    }
    return -1;
}

int search_point_beam(const Model& model, SheetPoint from, SheetPoint to) {
    const double dx = static_cast<double>(to.X) - from.X;
    const double dy = static_cast<double>(to.Y) - from.Y;
    const double square = dx * dx + dy * dy;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        if (!same_float(beam.XS, beam.XL) || !same_float(beam.YS, beam.YL)) {
            continue;
        }
        const double px = static_cast<double>(beam.XS) - from.X;
        const double py = static_cast<double>(beam.YS) - from.Y;
        const double along = square > 0.0 ? std::clamp((px * dx + py * dy) / square, 0.0, 1.0) : 0;
        if (std::hypot(px - along * dx, py - along * dy) < static_cast<double>(model.snap_radius)) {
            return i;
        }
    }
    return -1;
}

int search_near_beam(const Model& model, float X, float Y, float radius) {
    int nearest = -1;
    double least = radius;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const double bx = static_cast<double>(beam.XL) - beam.XS;
        const double by = static_cast<double>(beam.YL) - beam.YS;
        const double px = static_cast<double>(X) - beam.XS;
        const double py = static_cast<double>(Y) - beam.YS;
        const double square = bx * bx + by * by;
        const double along = square > 0.0 ? std::clamp((px * bx + py * by) / square, 0.0, 1.0) : 0;
        const double distance = std::hypot(px - along * bx, py - along * by);
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

void set_node_place(Model& model, int node, float x, float y, float z) {
    model.node[node].x = x;
    model.node[node].y = y;
    model.node[node].z = z;
    model.node[node].flag = 2;
    copy_node_to_beams(model, node);
}

void set_beam_section(Model& model, int beam, float haba, float atumi) {
    forget_section_edit(model, beam);
    model.beam[beam].haba = haba;
    model.beam[beam].atumi = atumi;
    model.beam[beam].flag = 2;
}

void TegakiSheet::set_mode(SheetMode mode) {
    give_up();
    marks_.clear();
    OnBuzaiShitei = mode == SheetMode::draw ? 1 : 0;
    OnBuzaiSakujyo = mode == SheetMode::remove ? 1 : 0;
    OnSetutenData = mode == SheetMode::node_data ? 1 : 0;
    OnBuzaiData = mode == SheetMode::beam_data ? 1 : 0;
}

SheetMode TegakiSheet::mode() const {
    return OnBuzaiSakujyo == 1  ? SheetMode::remove
           : OnSetutenData == 1 ? SheetMode::node_data
           : OnBuzaiData == 1   ? SheetMode::beam_data
                                : SheetMode::draw;
}

void TegakiSheet::press(int button, SheetPoint at) {
    iMouse += button;
    if (iMouse == 1) {
        press_ = at;
        if (!is_half_drawn()) {
            band_ = at;
            marks_.clear();
        }
    }
}

SheetOutcome TegakiSheet::release(SheetPoint at) {
    const bool acts = iMouse == 1;
    iMouse = 0;
    SheetOutcome outcome;
    if (acts) {
        switch (mode()) {
        case SheetMode::remove:
        case SheetMode::beam_data:
            outcome = cross(press_, at);
            break;
        case SheetMode::draw:
            outcome = is_half_drawn() ? place_second_end() : place_first_end();
            break;
        case SheetMode::node_data:
            outcome = pick_node(press_);
            break;
        }
    }
    check_all_node_beam(model_);
    return outcome;
}

std::optional<SheetPoint> TegakiSheet::band() const {
    return is_half_drawn() || is_crossing() ? std::optional(band_) : std::nullopt;
}

bool TegakiSheet::drop_press() {
    const bool was_pressed = iMouse == left_button;
    iMouse = 0;
    return was_pressed;
}

bool TegakiSheet::give_up() {
    const bool was_pressed = drop_press();
    if (!is_half_drawn()) {
        return was_pressed;
    }
    if (first_.made) {
        --model_.N_Node;
        forget_node_index(model_);
    } else {
        model_.node[first_.node].flag = first_.old_flag;
    }
    OnBuzaiShitei = 1;
    marks_.clear();
    return true;
}

TegakiSheet::End TegakiSheet::place_end(SheetPoint at) {
    End end;
    end.node = search_2dim_node(model_, at.X, at.Y);
    if (end.node >= 0) {
        Node& node = model_.node[end.node];
        end.old_flag = node.flag;
        const bool known = node.flag == 2;
        marks_.push_back({known ? MarkKind::snapped_known : MarkKind::snapped, {node.X, node.Y}});
        node.flag = node.flag == 0 ? 1 : node.flag;
        return end;
    }
    if (model_.N_Node >= node_capacity) {
        refuse(text_format("節点が多すぎます（最大 %d 個）", node_capacity));
        return end;
    }
    end.node = model_.N_Node++;
    end.made = true;
    Node& node = model_.node[end.node];
    node = Node{};
    node.no = number_at(end.node);
    node.x = node.y = node.z = unknown_place;
    node.X = at.X;
    node.Y = at.Y;
    marks_.push_back({MarkKind::new_node, at});
    return end;
}

SheetOutcome TegakiSheet::place_first_end() {
    if (model_.N_Beam >= beam_capacity) {
        refuse(text_format("部材が多すぎます（最大 %d 本）", beam_capacity));
        return {};
    }
    first_ = place_end(press_);
    if (first_.node < 0) {
        return {};
    }
    const Node& node = model_.node[first_.node];
    Beam& beam = model_.beam[model_.N_Beam];
    beam = Beam{};
    beam.noi = node.no;
    beam.XS = node.X;
    beam.YS = node.Y;
    OnBuzaiShitei = 2;
    return {SheetEvent::first_end, first_.node};
}

SheetOutcome TegakiSheet::place_second_end() {
    marks_.push_back({MarkKind::second_end, press_});
    const End second = place_end(press_);
    if (second.node < 0) {
        marks_.pop_back();
        return {};
    }
    Beam& beam = model_.beam[model_.N_Beam];
    const Node& start = model_.node[first_.node];
    const Node& end = model_.node[second.node];
    beam.no = number_at(model_.N_Beam);
    beam.noj = end.no;
    beam.XL = end.X;
    beam.YL = end.Y;
    // Unknown places too, so that a deletion, which rebuilds the nodes from the members, keeps them
    // unknown.
    beam.xs = start.x;
    beam.ys = start.y;
    beam.zs = start.z;
    beam.xl = end.x;
    beam.yl = end.y;
    beam.zl = end.z;
    beam.size = beam.mat = -1;
    beam.haba = new_beam_haba;
    beam.atumi = new_beam_atumi;
    beam.flag = 1;
    OnBuzaiShitei = 1;
    return {SheetEvent::drawn, model_.N_Beam++};
}

SheetOutcome TegakiSheet::cross(SheetPoint from, SheetPoint to) {
    SheetPoint at{};
    int beam = search_cross_beam(model_, from.X, from.Y, to.X, to.Y, at);
    beam = beam < 0 ? search_point_beam(model_, from, to) : beam;
    if (beam < 0) {
        refuse("該当する部材が見つからない");
        return {};
    }
    if (OnBuzaiData == 1) {
        return {SheetEvent::ask_beam, beam};
    }
    del_beam(model_, beam);
    return {SheetEvent::removed, beam};
}

SheetOutcome TegakiSheet::pick_node(SheetPoint at) {
    const int node = search_2dim_node(model_, at.X, at.Y);
    if (node < 0) {
        refuse("節点が見つかりません");
        return {};
    }
    marks_.push_back({MarkKind::picked, {model_.node[node].X, model_.node[node].Y}});
    return {SheetEvent::ask_node, node};
}

} // namespace kigumi
