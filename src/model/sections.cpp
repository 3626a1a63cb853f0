#include "model/sections.h"

#include "base/float.h"
#include "base/float_index.h"
#include "base/format.h"
#include "base/message.h"
#include "model/members.h"
#include "model/names.h"
#include "trace/spy.h"

#include <cstring>
#include <map>
#include <string>
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

namespace {

struct Properties {
    float A, Iy, Iz, J;
};

Properties properties_of(float width, float thickness) {
    const double haba = width;
    const double atumi = thickness;
    const double beta = torsion_coefficient(thickness / width);
    return {round_once(haba * atumi), round_once(haba * atumi * atumi * atumi / 12.0),
            round_once(atumi * haba * haba * haba / 12.0),
            round_once(beta * atumi * haba * haba * haba)};
}

// Tells sections of the same measures apart by what was changed of their members.
class EditedSections {
  public:
    // The number of the section for members that were changed like this one, or `next`, from now
    // on, when there is none yet; `plain` is the section of the same measures without changes.
    int find_or_add(int plain, const MemberEdit& edit, int next) {
        std::string key(reinterpret_cast<const char*>(&plain), sizeof plain);
        key.append(reinterpret_cast<const char*>(&edit), sizeof edit);
        return sections_.try_emplace(std::move(key), next).first->second;
    }

  private:
    std::map<std::string, int> sections_;
};

bool is_edited(const MemberEdit& edit) {
    return edit.section != 0 || edit.material != 0 || edit.species[0] != '\0';
}

struct Entry {
    float haba, atumi, length;
    const MemberEdit* edit; // null when nothing was changed
};

void store_section(Model& model, int k, const Entry& entry) {
    const bool edited = entry.edit != nullptr && entry.edit->section != 0;
    model.size.haba[k] = edited ? entry.edit->haba : entry.haba;
    model.size.atumi[k] = edited ? entry.edit->atumi : entry.atumi;
    model.size.length[k] = entry.length;
    model.size.angle[k] = edited ? entry.edit->angle : 0.0f;
    compute_section(model, k);
}

} // namespace

void compute_section(Model& model, int k) {
    const Properties p = properties_of(model.size.haba[k], model.size.atumi[k]);
    model.size.A[k] = p.A;
    model.size.Iy[k] = p.Iy;
    model.size.Iz[k] = p.Iz;
    model.size.J[k] = p.J;
}

int check_size(Model& model) {
    std::vector<Entry> entries;
    std::vector<int> number_of(model.N_Beam);
    FloatIndex measures; // sections by their measures, each with a number of its own
    int n_measures = 0;
    std::vector<int> plain; // section without changes of these measures, or -1
    EditedSections edited;
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const float length = beam_length(beam);
        const int measure = measures.add(beam.haba, beam.atumi, length, n_measures);
        if (measure == n_measures) {
            ++n_measures;
            plain.push_back(-1);
        }
        const MemberEdit* edit = is_edited(model.edit[i]) ? &model.edit[i] : nullptr;
        const int next = static_cast<int>(entries.size());
        int at = 0;
        if (edit != nullptr) {
            at = edited.find_or_add(measure, *edit, next);
        } else {
            plain[measure] = plain[measure] < 0 ? next : plain[measure];
            at = plain[measure];
        }
        if (at == next) {
            entries.push_back({beam.haba, beam.atumi, length, edit});
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
        store_section(model, k, entries[k]);
    }
    return 0;
}

void assign_materials(Model& model) {
    model.N_Mat = model.N_Size;
    for (int k = 0; k < model.N_Mat; ++k) {
        model.mat.E[k] = model.default_E;
        model.mat.poisson[k] = model.default_poisson;
        model.mat.density[k] = model.default_density;
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        Beam& beam = model.beam[i];
        beam.mat = beam.size;
        const MemberEdit& edit = model.edit[i];
        if (edit.material != 0 && beam.mat >= 1 && beam.mat <= model.N_Mat) {
            const int k = position_of(beam.mat);
            model.mat.E[k] = edit.E;
            model.mat.poisson[k] = edit.poisson;
            model.mat.density[k] = edit.density;
        }
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
    for (int i = 0; i < model.N_Beam; ++i) {
        if (model.beam[i].size == number_at(k)) {
            MemberEdit& edit = model.edit[i];
            edit.section = 1;
            edit.haba = haba;
            edit.atumi = atumi;
            edit.angle = angle;
            if (same_float(haba, model.beam[i].haba) && same_float(atumi, model.beam[i].atumi) &&
                same_float(angle, 0.0f)) {
                forget_section_edit(model, i);
            }
        }
    }
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
    if (same_float(E, model.mat.E[k]) && same_float(poisson, model.mat.poisson[k]) &&
        same_float(density, model.mat.density[k])) {
        return Change::stored;
    }
    model.mat.E[k] = E;
    model.mat.poisson[k] = poisson;
    model.mat.density[k] = density;
    for (int i = 0; i < model.N_Beam; ++i) {
        if (model.beam[i].mat == number_at(k)) {
            MemberEdit& edit = model.edit[i];
            edit.material = 1;
            edit.E = E;
            edit.poisson = poisson;
            edit.density = density;
        }
    }
    return Change::stored;
}

Change change_species(Model& model, int k, std::string_view id) {
    if (id.size() >= species_bytes || id.find('\0') != std::string_view::npos) {
        return refuse_value("樹種の名前が長すぎます");
    }
    Change outcome = Change::none;
    for (int i = 0; i < model.N_Beam; ++i) {
        char(&species)[species_bytes] = model.edit[i].species;
        if (model.beam[i].mat == number_at(k) && id != species) {
            std::memset(species, 0, sizeof species);
            std::memcpy(species, id.data(), id.size());
            outcome = Change::stored;
        }
    }
    return outcome;
}

void forget_section_edit(Model& model, int member) {
    MemberEdit& edit = model.edit[member];
    edit.section = 0;
    edit.haba = edit.atumi = edit.angle = 0.0f;
}

MemberSection section_of(const Model& model, int member) {
    const Beam& beam = model.beam[member];
    const MemberEdit& edit = model.edit[member];
    MemberSection section{};
    section.species = edit.species;
    if (beam.size >= 1 && beam.size <= model.N_Size) {
        const int k = position_of(beam.size);
        const SizeTable& size = model.size;
        section.haba = size.haba[k];
        section.atumi = size.atumi[k];
        section.angle = size.angle[k];
        section.A = size.A[k];
        section.Iy = size.Iy[k];
        section.Iz = size.Iz[k];
        section.J = size.J[k];
    } else {
        const bool edited = edit.section != 0;
        section.haba = edited ? edit.haba : beam.haba;
        section.atumi = edited ? edit.atumi : beam.atumi;
        section.angle = edited ? edit.angle : 0.0f;
        const Properties p = properties_of(section.haba, section.atumi);
        section.A = p.A;
        section.Iy = p.Iy;
        section.Iz = p.Iz;
        section.J = p.J;
    }
    if (beam.mat >= 1 && beam.mat <= model.N_Mat) {
        const int k = position_of(beam.mat);
        section.E = model.mat.E[k];
        section.poisson = model.mat.poisson[k];
        section.density = model.mat.density[k];
    } else {
        const bool edited = edit.material != 0;
        section.E = edited ? edit.E : model.default_E;
        section.poisson = edited ? edit.poisson : model.default_poisson;
        section.density = edited ? edit.density : model.default_density;
    }
    return section;
}

bool differs_from_table(const Model& model, int member) {
    const Beam& beam = model.beam[member];
    if (beam.size < 1 || beam.size > model.N_Size) {
        return false;
    }
    const int k = position_of(beam.size);
    return !same_float(beam.haba, model.size.haba[k]) ||
           !same_float(beam.atumi, model.size.atumi[k]);
}

int count_differing(const Model& model) {
    int count = 0;
    for (int i = 0; i < model.N_Beam; ++i) {
        count += differs_from_table(model, i) ? 1 : 0;
    }
    return count;
}

} // namespace kigumi
