#include "project/project_fault.h"

#include "model/validate.h"
#include "project/project_fields.h"

#include <cmath>

namespace kigumi {

namespace {

bool is_sound(const Param& param) {
    struct IsNumber {
        bool operator()(const char*, float value) const { return std::isfinite(value); }
        bool operator()(const char*, std::int32_t value, std::int32_t lowest,
                        std::int32_t highest) const {
            return value >= lowest && value <= highest;
        }
    };
    return visit_param(param, IsNumber{});
}

bool is_sound(const SketchPlaces& places) {
    if (places.N_OldNode < 0 || places.N_OldNode > node_capacity || places.OnSaveOld < 0 ||
        places.OnSaveOld > 1) {
        return false;
    }
    for (int i = 0; i < places.N_OldNode; ++i) {
        if (!std::isfinite(places.old_node[i].X) || !std::isfinite(places.old_node[i].Y)) {
            return false;
        }
    }
    return true;
}

} // namespace

const char* find_project_fault(const Project& project) {
    const Model& model = project.model;
    const bool made = project.stage == Stage::made || project.stage == Stage::loaded;
    if (const char* fault = find_model_fault(model, made ? Promise::made : Promise::drawn)) {
        return fault;
    }
    const bool has_results = project.result.N_Stress > 0 || project.result.N_Setuten > 0;
    if (const char* fault = made && !has_results ? find_level_fault(model) : nullptr) {
        return fault;
    }
    if (project.stage < Stage::empty || project.stage > Stage::loaded) {
        return "作業の段階に意味がありません";
    }
    if (!is_sound(project.param)) {
        return "基本データに誤りがあります";
    }
    const Shift& shift = project.shift;
    if (!std::isfinite(shift.dx) || !std::isfinite(shift.dy) || !std::isfinite(shift.dz)) {
        return "座標移動が数値ではありません";
    }
    return is_sound(project.sketch_places) ? nullptr : "手書の位置に誤りがあります";
}

} // namespace kigumi
