// Arguments of the command line: parameters, roles of nodes, and single options; one a line.
#include "target.h"

#include "app/argument_text.h"
#include "app/frame_input.h"
#include "base/scan.h"
#include "generate/generate.h"
#include "model/lookup.h"
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

void make_small_frame() {
    param.NX = 2;
    param.NY = 1;
    check_param({0, 0, 0});
    make_unit();
    rebuild_tables();
}

} // namespace

// NAME=VALUE lines; a small frame is generated from what passes the check.
void read_settings(std::string_view input) {
    start_fresh();
    const int status = set_parameters(lines_of(input));
    require_told(status);
    constexpr int small = 600; // members
    if (status < 0 || predict_frame_size().beams > small) {
        return;
    }
    const FrameSize foreseen = predict_frame_size();
    const int made = make_unit();
    require_told(made);
    require_sound(false);
    KIGUMI_CHECK(model.N_Beam <= foreseen.beams && model.N_Node <= foreseen.nodes,
                 "%d members, %lld foreseen; %d nodes, %lld", model.N_Beam, foreseen.beams,
                 model.N_Node, foreseen.nodes);
    if (made >= 0) {
        require_told(rebuild_tables());
        require_sound(false);
    }
}

// Selectors, or loads where the line holds a colon.
void read_marks(std::string_view input) {
    start_fresh();
    make_small_frame();
    std::vector<RoleOption> roles;
    for (const std::string& line : lines_of(input)) {
        RoleOption role;
        role.selector = line;
        if (line.find(':') == std::string::npos || parse_load(line, role)) {
            roles.push_back(role);
        }
    }
    const int status = mark_roles(roles);
    require_told(status);
    require_sound(true);
    KIGUMI_CHECK(status < 0 || roles.empty() || model.N_Fix + model.N_Load > 0, "no role");
}

void read_arguments(std::string_view input) {
    start_fresh();
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
