#include "app/summary.h"

#include "analysis/result.h"
#include "files/jiku.h"
#include "model/lookup.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace kigumi {

namespace {

constexpr double cm_a_metre = 100.0;

// Category of the member at position i: its own, or that of the label before it in the file read.
int known_kind(int i) {
    const int kind = model.beam[i].kind;
    const std::vector<int>& labels = jiku_label_kinds();
    if (kind == kind_none && static_cast<int>(labels.size()) == model.N_Beam) {
        return labels[i];
    }
    return kind >= 0 && kind < kind_count ? kind : static_cast<int>(kind_none);
}

void print_kinds() {
    double total = 0.0;
    for (const KindTotal& each : kind_totals()) {
        std::printf("  %5d 本 %9.3f m3  %s\n", each.count, each.volume, kind_name(each.kind));
        total += each.volume;
    }
    std::printf("材積 %.3f m3\n", total);
}

template <size_t Size>
void print_levels(const char* name, const std::array<float, Size>& levels, int count) {
    std::printf("%s %d:", name, count);
    for (int i = 0; i < count; ++i) {
        std::printf(" %g", levels[i]);
    }
    std::printf("\n");
}

void print_bounds() {
    const auto& [low, high] = node_extent();
    std::printf("範囲 x %g .. %g  y %g .. %g  z %g .. %g cm\n", low[0], high[0], low[1], high[1],
                low[2], high[2]);
}

void print_member(const char* what, const Stress* member) {
    if (member == nullptr) {
        std::printf("%s なし\n", what);
        return;
    }
    std::printf("%s %.1f kgf  部材 %d（%.9s - %.9s）\n", what, member->force, member->no,
                member->iname, member->jname);
}

} // namespace

std::vector<KindTotal> kind_totals() {
    std::vector<KindTotal> totals(kind_count);
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        KindTotal& total = totals[static_cast<size_t>(known_kind(i))];
        ++total.count;
        total.length += beam_length(beam) / cm_a_metre;
        total.volume += beam_volume(beam);
    }
    for (int kind = 0; kind < kind_count; ++kind) {
        totals[static_cast<size_t>(kind)].kind = kind;
    }
    std::erase_if(totals, [](const KindTotal& total) { return total.count == 0; });
    return totals;
}

void print_frame_info() {
    std::printf("節点 %d\n部材 %d\n断面 %d\n", model.N_Node, model.N_Beam, model.N_Size);
    print_kinds();
    print_levels("X レベル", model.Xval, model.N_X);
    print_levels("Y レベル", model.Yval, model.N_Y);
    print_levels("Z レベル", model.Zval, model.N_Z);
    print_bounds();
}

void print_frame_summary() {
    std::printf("節点 %d、部材 %d、断面 %d、固定節点 %d、荷重節点 %d\n", model.N_Node, model.N_Beam,
                model.N_Size, model.N_Fix, model.N_Load);
    print_kinds();
}

void print_result_summary() {
    const Stress* tension = nullptr;
    const Stress* compression = nullptr;
    for (int i = 0; i < result.N_Stress; ++i) {
        const Stress& member = result.stress[i];
        if (member.force > 0.0f && (tension == nullptr || member.force > tension->force)) {
            tension = &member;
        }
        if (member.force < 0.0f && (compression == nullptr || member.force < compression->force)) {
            compression = &member;
        }
    }
    print_member("最大引張", tension);
    print_member("最大圧縮", compression);
    if (result.N_Setuten > 0) {
        const Disp& disp = result.disp[0];
        std::printf("最大変位 %.4f cm  節点 %d（%.9s） x %.4f y %.4f z %.4f\n", disp.mag,
                    disp.old_no, disp.name, disp.disp_x, disp.disp_y, disp.disp_z);
    }
}

} // namespace kigumi
