#include "results/displacement.h"

#include "analysis/result_reader.h"
#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "trace/spy.h"

#include <unordered_map>
#include <vector>

namespace kigumi {

namespace {

float displaced(float displacement, float scale, float place) {
    return round_once(static_cast<double>(displacement) * scale + place);
}

void tell_other_name(const Disp& disp, const Setuten& node) {
    if (matched_name(disp.name) != matched_name(node.pname)) {
        show_message(text_format("エラー  No %5d 変位節点名  %s 原節点名 %s", disp.old_no,
                                 disp.name, node.pname));
    }
}

// Moves every result node by its displacement; of nodes with one number the last one counts.
void move_nodes(Result& result, float scale) {
    std::unordered_map<int, std::vector<int>> positions_by_no;
    for (int j = 0; j < result.N_Setuten; ++j) {
        positions_by_no[result.setuten[j].OldNo].push_back(j);
    }
    for (int i = 0; i < result.N_Setuten; ++i) {
        const Disp& disp = result.disp[i];
        HeniNode& moved = result.heni_node[i];
        moved = {};
        const auto found = positions_by_no.find(disp.old_no);
        if (found == positions_by_no.end()) {
            continue;
        }
        for (const int j : found->second) {
            const Setuten& node = result.setuten[j];
            tell_other_name(disp, node);
            moved.no = node.OldNo;
            set_name(moved.name, node.pname);
            moved.x = displaced(disp.disp_x, scale, node.x);
            moved.y = displaced(disp.disp_y, scale, node.y);
            moved.z = displaced(disp.disp_z, scale, node.z);
        }
    }
}

// The displaced nodes by number; null for a number that several of them have.
using HeniIndex = std::unordered_map<int, const HeniNode*>;

HeniIndex index_heni_nodes(const Result& result) {
    HeniIndex index;
    for (int i = 0; i < result.N_Setuten; ++i) {
        const HeniNode& node = result.heni_node[i];
        if (node.no == 0) {
            continue;
        }
        const auto [entry, added] = index.try_emplace(node.no, &node);
        if (!added) {
            entry->second = nullptr;
        }
    }
    return index;
}

const HeniNode* find_once(const HeniIndex& index, int no) {
    const auto found = index.find(no);
    return found == index.end() ? nullptr : found->second;
}

} // namespace

int get_new_beam(Result& result, float scale) {
    spy("Enter get_new_beam()");
    move_nodes(result, scale);
    const HeniIndex index = index_heni_nodes(result);
    for (int k = 0; k < result.N_Stress; ++k) {
        const Stress& s = result.stress[k];
        const HeniNode* start = find_once(index, s.old_noi);
        const HeniNode* end = find_once(index, s.old_noj);
        if (start == nullptr || end == nullptr || start == end) {
            show_message("部材の検索に失敗しました");
            return -1;
        }
        result.heni_beam[k] = {start->x, start->y, start->z, end->x, end->y, end->z};
    }
    return 0;
}

} // namespace kigumi
