// Arguments of the command line: parameters, roles of nodes, and single options; one a line.
#include "target.h"

#include "app/argument_text.h"
#include "app/frame_input.h"
#include "base/scan.h"
#include "generate/generate.h"
#include "model/sections.h"
#include "model/select.h"

namespace kigumi::fuzz {

namespace {

std::vector<std::string> lines_of(std::string_view input) {
    std::vector<std::string> lines;
    LineReader reader(input);
    for (std::string_view line; reader.next(line);) {
        lines.emplace_back(line);
    }
    return lines;
}

void make_small_frame(Project& project) {
    project.param.NX = 2;
    project.param.NY = 1;
    check_param(project.param, {0, 0, 0});
    make_unit(project.model, project.param, project.solids);
    rebuild_tables(project.model);
}

} // namespace

// NAME=VALUE lines; a small frame is generated from what passes the check.
void read_settings(Project& project, std::string_view input) {
    start_fresh(project);
    const int status = set_parameters(project, lines_of(input));
    require_told(status);
    constexpr int small = 600; // members
    if (status < 0 || predict_frame_size(project.param).beams > small) {
        return;
    }
    const FrameSize foreseen = predict_frame_size(project.param);
    const int made = make_unit(project.model, project.param, project.solids);
    require_told(made);
    require_sound(project.model, false);
    KIGUMI_CHECK(project.model.N_Beam <= foreseen.beams && project.model.N_Node <= foreseen.nodes,
                 "%d members, %lld foreseen; %d nodes, %lld", project.model.N_Beam, foreseen.beams,
                 project.model.N_Node, foreseen.nodes);
    if (made >= 0) {
        require_told(rebuild_tables(project.model));
        require_sound(project.model, false);
    }
}

// Selectors, or loads where the line holds a colon.
void read_marks(Project& project, std::string_view input) {
    start_fresh(project);
    make_small_frame(project);
    std::vector<RoleOption> roles;
    for (const std::string& line : lines_of(input)) {
        RoleOption role;
        role.selector = line;
        if (line.find(':') == std::string::npos || parse_load(line, role)) {
            roles.push_back(role);
        }
    }
    const int status = mark_roles(project, roles);
    require_told(status);
    require_sound(project.model, true);
    KIGUMI_CHECK(status < 0 || roles.empty() || project.model.N_Fix + project.model.N_Load > 0,
                 "no role");
}

void read_arguments(Project& project, std::string_view input) {
    start_fresh(project);
    for (const std::string& line : lines_of(input)) {
        RoleOption role;
        GenerateOptions made;
        DrawOptions drawn;
        std::string unknown;
        KIGUMI_CHECK(!parse_load(line, role) || !role.selector.empty(), "%s", line.c_str());
        parse_shift(line, made);
        KIGUMI_CHECK(!parse_band(line, drawn) || drawn.low <= drawn.high, "%s", line.c_str());
        KIGUMI_CHECK(!parse_size(line, drawn) || drawn.width > 0, "%s", line.c_str());
        KIGUMI_CHECK(parse_labels(line, drawn, unknown) != !unknown.empty(), "%s", line.c_str());
        const size_t cut = line.find(' ');
        if (cut != std::string::npos) {
            matches_pattern(line.substr(0, cut), line.substr(cut + 1));
        }
    }
}

} // namespace kigumi::fuzz
