// The solver's input; what the solver makes of it must be readable by the modeller.
#include "target.h"

#include "analysis/result_reader.h"
#include "solver/model/check.h"
#include "solver/statics/solve.h"
#include "solver/text/input.h"
#include "solver/text/output.h"

#include <algorithm>

namespace kigumi::fuzz {

namespace {

constexpr size_t few_nodes = 60;

void require_line(const frameslv::Fault& fault) {
    KIGUMI_CHECK(!fault.text.empty() && fault.text.find('\n') == std::string::npos, "%s",
                 fault.text.c_str());
}

// Names in other letters may come back as bytes that are none.
bool is_plain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<signed char>(c) > 0; });
}

void require_readable(const frameslv::ResultTexts& texts, const frameslv::Model& frame) {
    Levels levels;
    Listing listing;
    std::vector<Disp> moved;
    const bool fits = frame.Xval.size() <= level_capacity && frame.Yval.size() <= level_capacity &&
                      frame.Zval.size() <= level_capacity;
    KIGUMI_CHECK(!fits || parse_levels(texts.zlv, levels) == 0, "%s", texts.zlv.c_str());
    KIGUMI_CHECK(parse_listing(texts.lst, listing) == 0, "%s", texts.lst.c_str());
    KIGUMI_CHECK(parse_displacements(texts.dsp, moved) == 0, "%s", texts.dsp.c_str());
}

} // namespace

void read_solver(Project& project, std::string_view input) {
    start_fresh(project);
    frameslv::Model frame;
    frameslv::Fault fault = frameslv::read_input(input, frame);
    if (!fault) {
        frameslv::snap_to_levels(frame);
        fault = frameslv::check_model(frame);
    }
    if (!fault) {
        fault = frameslv::check_held(frame);
    }
    if (fault) {
        require_line(fault);
        return;
    }
    if (frame.node.size() > few_nodes || frame.member.size() > few_nodes) {
        return;
    }
    frameslv::System system(frame, 1);
    frameslv::Solution solution;
    fault = frameslv::solve(frame, {}, system, solution);
    if (fault) {
        require_line(fault);
    } else if (is_plain(input)) {
        frameslv::ResultTexts texts;
        frameslv::add_result_texts(frame, solution, texts);
        require_readable(texts, frame);
    }
}

} // namespace kigumi::fuzz
