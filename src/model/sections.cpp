#include "model/sections.h"

#include "base/float.h"
#include "base/float_index.h"
#include "base/format.h"
#include "base/message.h"
#include "model/members.h"
#include "model/names.h"
#include "trace/spy.h"

#include <vector>

namespace kigumi {

float torsion_coefficient(float r) {
    struct Step {
        float up_to;
        float beta;
    };
    constexpr Step steps[] = {
        {1.0f, 0.1406f}, {1.2f, 0.166f}, {1.5f, 0.196f}, {2.0f, 0.229f},  {2.5f, 0.249f},
        {3.0f, 0.263f},  {4.0f, 0.281f}, {5.0f, 0.291f}, {10.0f, 0.312f},
    };
    for (const Step& step : steps) {
        if (r <= step.up_to) {
            return step.beta;
        }
    }
    return 0.333f;
}

void compute_section(Model& model, int k) {
    const double haba = model.size.haba[k];
    const double atumi = model.size.atumi[k];
    const double beta = torsion_coefficient(model.size.atumi[k] / model.size.haba[k]);
    model.size.A[k] = round_once(haba * atumi);
    model.size.Iy[k] = round_once(haba * atumi * atumi * atumi / 12.0);
    model.size.Iz[k] = round_once(atumi * haba * haba * haba / 12.0);
    model.size.J[k] = round_once(beta * atumi * haba * haba * haba);
}

int check_size(Model& model) {
    struct Entry {
        float haba, atumi, length;
    };
    std::vector<Entry> entries;
    std::vector<int> number_of(model.N_Beam);
    FloatIndex first;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const float length = beam_length(beam);
        const int next = static_cast<int>(entries.size());
        const int at = first.add(beam.haba, beam.atumi, length, next);
        if (at == next) {
            entries.push_back({beam.haba, beam.atumi, length});
        }
        number_of[i] = number_at(at);
    }
    if (entries.size() > size_capacity) {
        show_message(
            text_format("断面の種類が多すぎます（%zu、最大 %d）", entries.size(), size_capacity));
        return -1;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].size = model.beam[i].mat = number_of[i];
        model.beam[i].flag = 2;
    }
    model.N_Size = static_cast<std::int32_t>(entries.size());
    for (int k = 0; k < model.N_Size; ++k) {
        model.size.haba[k] = entries[k].haba;
        model.size.atumi[k] = entries[k].atumi;
        model.size.length[k] = entries[k].length;
        model.size.angle[k] = 0.0f;
        compute_section(model, k);
    }
    return 0;
}

void assign_materials(Model& model) {
    model.N_Mat = model.N_Size;
    for (int i = 0; i < model.N_Beam; ++i) {
        model.beam[i].mat = model.beam[i].size;
    }
    for (int k = 0; k < model.N_Mat; ++k) {
        model.mat.E[k] = model.default_E;
        model.mat.poisson[k] = model.default_poisson;
        model.mat.density[k] = model.default_density;
    }
}

int rebuild_tables(Model& model) {
    if (check_size(model) < 0) {
        return -1;
    }
    assign_materials(model);
    return save_level_name(model);
}

namespace {

// Widths beyond it would overflow the properties, which grow with its fourth power, cm.
constexpr float largest_width = 1.0e6f;

Change refuse_value(const char* text) {
    show_message(text);
    return Change::refused;
}

bool is_width(float value) {
    return value > 0.0f && value <= largest_width;
}

} // namespace

Change change_section(Model& model, int k, float haba, float atumi, float angle) {
    if (!is_width(haba)) {
        return refuse_value("巾の値に誤りがあります");
    }
    if (!is_width(atumi)) {
        return refuse_value("厚みの値に誤りがあります");
    }
    SizeTable& size = model.size;
    if (same_float(haba, size.haba[k]) && same_float(atumi, size.atumi[k]) &&
        same_float(angle, size.angle[k])) {
        return Change::none;
    }
    size.haba[k] = haba;
    size.atumi[k] = atumi;
    size.angle[k] = angle;
    compute_section(model, k);
    spy_now("再計算した");
    return Change::stored;
}

Change change_material(Model& model, int k, float E, float poisson, float density) {
    if (!(E > 0.0f)) {
        return refuse_value("ヤング率の値に誤りがあります");
    }
    if (!(poisson > 0.0f)) {
        return refuse_value("ポワソン比の値に誤りがあります");
    }
    if (!(density > 0.0f)) {
        return refuse_value("質量密度の値に誤りがあります");
    }
    model.mat.E[k] = E;
    model.mat.poisson[k] = poisson;
    model.mat.density[k] = density;
    return Change::stored;
}

} // namespace kigumi
