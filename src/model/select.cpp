#include "model/select.h"

#include "base/float.h"
#include "model/model.h"

#include <algorithm>
#include <set>

namespace kigumi {

bool matches_pattern(std::string_view pattern, std::string_view text) {
    size_t p = 0;
    size_t t = 0;
    size_t star = std::string_view::npos; // last * seen, and where its text would start again
    size_t restart = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            restart = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++restart;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

std::vector<int> select_nodes(const Model& model, std::string_view selector) {
    std::vector<int> found;
    if (model.N_Node == 0) {
        return found;
    }
    const auto end = model.node.begin() + model.N_Node;
    const auto [lowest, highest] = std::minmax_element(
        model.node.begin(), end, [](const Node& a, const Node& b) { return a.z < b.z; });
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        const bool chosen = selector == "bottom" ? same_float(node.z, lowest->z)
                            : selector == "top"  ? same_float(node.z, highest->z)
                                                 : matches_pattern(selector, node.id);
        if (chosen) {
            found.push_back(i);
        }
    }
    return found;
}

bool CrossSection::operator==(const CrossSection& other) const {
    return same_float(haba, other.haba) && same_float(atumi, other.atumi);
}

bool CrossSection::operator<(const CrossSection& other) const {
    return haba < other.haba || (same_float(haba, other.haba) && atumi < other.atumi);
}

std::vector<CrossSection> cross_sections(const Model& model) {
    std::set<CrossSection> sections;
    for (int i = 0; i < model.N_Beam; ++i) {
        sections.insert({model.beam[i].haba, model.beam[i].atumi});
    }
    return {sections.begin(), sections.end()};
}

} // namespace kigumi
