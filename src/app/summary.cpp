#include "app/summary.h"

#include "analysis/result_input.h"
#include "base/message.h"
#include "files/jiku.h"
#include "model/members.h"
#include "model/nodes.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace kigumi {

namespace {

constexpr double cm_a_metre = 100.0;

void print_kinds(const Project& project) {
    double total = 0.0;
    for (const KindTotal& each : kind_totals(project)) {
        std::printf("  %5d 本 %9.3f m3  %s\n", each.count, each.volume, kind_name(each.kind));
        total += each.volume;
    }
    std::printf("材積 %.3f m3\n", total);
}

template <int Size>
void print_levels(const char* name, const Table<float, Size>& levels, int count) {
    std::printf("%s %d:", name, count);
    for (int i = 0; i < count; ++i) {
        std::printf(" %g", levels[i]);
    }
    std::printf("\n");
}

void print_bounds(const Project& project) {
    const auto& [low, high] = node_extent(project.model);
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

std::vector<KindTotal> kind_totals(const Project& project) {
    std::vector<KindTotal> totals(kind_count);
    for (int i = 0; i < project.model.N_Beam; ++i) {
        const Beam& beam = project.model.beam[i];
        KindTotal& total = totals[static_cast<size_t>(beam.kind)];
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

void print_frame_info(const Project& project) {
    std::printf("節点 %d\n部材 %d\n断面 %d\n", project.model.N_Node, project.model.N_Beam,
                project.model.N_Size);
    print_kinds(project);
    print_levels("X レベル", project.model.Xval, project.model.N_X);
    print_levels("Y レベル", project.model.Yval, project.model.N_Y);
    print_levels("Z レベル", project.model.Zval, project.model.N_Z);
    print_bounds(project);
}

void print_frame_summary(const Project& project) {
    std::printf("節点 %d、部材 %d、断面 %d、固定節点 %d、荷重節点 %d\n", project.model.N_Node,
                project.model.N_Beam, project.model.N_Size, project.model.N_Fix,
                project.model.N_Load);
    print_kinds(project);
}

void tell_result_age(const Project& project) {
    const ResultAge age = result_age_of_frame(project.model, project.result);
    if (age != ResultAge::current) {
        show_message(age_sentence(age));
    }
}

void print_result_summary(const Project& project) {
    const Stress* tension = nullptr;
    const Stress* compression = nullptr;
    for (int i = 0; i < project.result.N_Stress; ++i) {
        const Stress& member = project.result.stress[i];
        if (member.force > 0.0f && (tension == nullptr || member.force > tension->force)) {
            tension = &member;
        }
        if (member.force < 0.0f && (compression == nullptr || member.force < compression->force)) {
            compression = &member;
        }
    }
    print_member("最大引張", tension);
    print_member("最大圧縮", compression);
    if (project.result.N_Setuten > 0) {
        const Disp& disp = project.result.disp[0];
        std::printf("最大変位 %.4f cm  節点 %d（%.9s） x %.4f y %.4f z %.4f\n", disp.mag,
                    disp.old_no, disp.name, disp.disp_x, disp.disp_y, disp.disp_z);
    }
}

} // namespace kigumi
