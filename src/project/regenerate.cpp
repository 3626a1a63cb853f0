#include "project/regenerate.h"

#include "base/float_index.h"
#include "base/format.h"
#include "base/message.h"
#include "files/tegaki.h"
#include "generate/generate.h"
#include "model/names.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "project/accept.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace kigumi {

namespace {

bool is_edited(const MemberEdit& edit) {
    return edit.section != 0 || edit.material != 0 || edit.species[0] != '\0';
}

bool same_edit(const MemberEdit& a, const MemberEdit& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// What could not be kept.
struct Lost {
    int fixes = 0, loads = 0, edits = 0;
};

// Whether two frames have the same lattice, whatever its pitches, heights and widths: a level of
// one is then the same level of the other.
bool same_lattice(const Param& a, const Param& b) {
    const auto shape = [](const Param& p) {
        return std::array{p.NX, p.NY, p.N_Sou, p.SumiType, p.SouMode, p.YaneMode, p.YaneType};
    };
    return shape(a) == shape(b);
}

// The numbers, in a frame that was made again, of the nodes that a frame had; 0 where it has none:
// by level names in the same lattice, else by exact place. Never the same number twice.
std::vector<int> numbers_again(const Model& old, const Model& now, bool by_name) {
    by_name = by_name && old.N_X == now.N_X && old.N_Y == now.N_Y && old.N_Z == now.N_Z;
    FloatIndex places;
    std::map<std::string_view, int> names;
    for (int i = 0; i < now.N_Node; ++i) {
        const Node& node = now.node[i];
        places.add(node.x, node.y, node.z, i);
        names.try_emplace(node.id, i);
    }
    std::vector<int> numbers(static_cast<std::size_t>(old.N_Node) + 1);
    for (int i = 0; i < old.N_Node; ++i) {
        const Node& node = old.node[i];
        const auto named = names.find(node.id);
        const int at = !by_name               ? places.find(node.x, node.y, node.z)
                       : named != names.end() ? named->second
                                              : -1;
        numbers[static_cast<std::size_t>(number_at(i))] = at >= 0 ? number_at(at) : 0;
    }
    return numbers;
}

// Category and the numbers of the ends, the smaller first.
using MemberKey = std::array<int, 3>;

MemberKey key_of(int kind, int noi, int noj) {
    return {kind, std::min(noi, noj), std::max(noi, noj)};
}

// What was changed alike of all members of a category; null for the others.
std::array<const MemberEdit*, kind_count> edits_of_kinds(const Model& model) {
    std::array<const MemberEdit*, kind_count> edits{};
    std::array<bool, kind_count> met{};
    for (int i = 0; i < model.N_Beam; ++i) {
        const int kind = model.beam[i].kind;
        const MemberEdit& edit = model.edit[i];
        if (!std::exchange(met[kind], true)) {
            edits[kind] = is_edited(edit) ? &edit : nullptr;
        } else if (edits[kind] != nullptr && !same_edit(*edits[kind], edit)) {
            edits[kind] = nullptr;
        }
    }
    return edits;
}

void keep_edits(const Model& old, const std::vector<int>& numbers, Model& now, Lost& lost) {
    const auto of_kind = edits_of_kinds(old);
    std::map<MemberKey, int> members;
    std::array<bool, kind_count> made{};
    for (int i = 0; i < now.N_Beam; ++i) {
        const Beam& beam = now.beam[i];
        made[beam.kind] = true;
        members.try_emplace(key_of(beam.kind, beam.noi, beam.noj), i);
        if (const MemberEdit* edit = of_kind[beam.kind]) {
            now.edit[i] = *edit;
        }
    }
    for (int i = 0; i < old.N_Beam; ++i) {
        const Beam& beam = old.beam[i];
        if (!is_edited(old.edit[i]) || (of_kind[beam.kind] != nullptr && made[beam.kind])) {
            continue;
        }
        const auto found = members.find(key_of(beam.kind, numbers[beam.noi], numbers[beam.noj]));
        if (found != members.end()) {
            now.edit[found->second] = old.edit[i];
        } else {
            ++lost.edits;
        }
    }
}

int keep_roles(const Model& old, const std::vector<int>& numbers, Project& project, Lost& lost) {
    Model& model = project.model;
    for (int i = 0; i < old.N_Node; ++i) {
        const int role = role_of(old, i);
        const int no = numbers[static_cast<std::size_t>(number_at(i))];
        if (no != 0) {
            model.node[position_of(no)].flag = role;
        } else {
            lost.fixes += role == role_fixed ? 1 : 0;
            lost.loads += role == role_loaded ? 1 : 0;
        }
    }
    for (int i = 0; i < old.N_Fix; ++i) {
        const Fix& fix = old.fix[i];
        const int no = numbers[fix.no];
        if (no != 0 && append_fix(model, no, fix.ix, fix.iy, fix.iz) < 0) {
            return -1;
        }
    }
    for (int i = 0; i < old.N_Load; ++i) {
        const Load& load = old.load[i];
        const int no = numbers[load.no];
        if (no != 0 && append_load(model, no, load.fx, load.fy, load.fz) < 0) {
            return -1;
        }
    }
    model.fix_load_edited = old.fix_load_edited;
    if (old.fix_load_edited != 0) {
        note_roles_entered(project);
    }
    return 0;
}

void tell(const Lost& lost) {
    const std::pair<const char*, int> counts[] = {{"支点 %d 個", lost.fixes},
                                                  {"荷重 %d 個", lost.loads},
                                                  {"断面・材料の変更 %d 本", lost.edits}};
    std::string parts;
    for (const auto& [what, count] : counts) {
        if (count > 0) {
            parts += (parts.empty() ? "" : "、") + text_format(what, count);
        }
    }
    if (!parts.empty()) {
        show_message("新しい骨組に同じ位置がないため引き継げませんでした（" + parts + "）");
    }
}

int generate_again(Project& project, const Model& old, const Param& param, Lost& lost) {
    Model& model = project.model;
    if (make_unit(model, param, project.solids) < 0 || save_level_name(model) < 0) {
        return -1;
    }
    const std::vector<int> numbers = numbers_again(old, model, same_lattice(project.param, param));
    keep_edits(old, numbers, model, lost);
    return accept_model(project) < 0 ? -1 : keep_roles(old, numbers, project, lost);
}

} // namespace

int regenerate(Project& project, const Param& param) {
    const auto old = std::make_unique<Model>(project.model);
    const Stage stage = project.stage;
    Lost lost;
    if (generate_again(project, *old, param, lost) < 0) {
        project.model = *old;
        project.stage = stage;
        return -1;
    }
    project.param = param;
    project.generated = true;
    forget_old_node(project.sketch_places);
    tell(lost);
    return 0;
}

} // namespace kigumi
