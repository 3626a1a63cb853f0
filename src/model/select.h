// Choosing from the model: nodes by words, as the command line does, and members by section.
#pragma once

#include "model/model.h"

#include <string_view>
#include <vector>

namespace kigumi {

// Positions of the nodes that a selector names: "bottom" or "top" (all nodes of the lowest or
// highest level), or a node-name pattern with * and ? over the whole name. Empty when none.
std::vector<int> select_nodes(const Model& model, std::string_view selector);

// True when the pattern with * (any characters) and ? (one character) covers the whole text.
bool matches_pattern(std::string_view pattern, std::string_view text);

// A cross-section, whatever the member's length, cm.
struct CrossSection {
    float haba, atumi;
    bool operator==(const CrossSection& other) const;
    bool operator<(const CrossSection& other) const; // by width, then thickness
};

// The different cross-sections of the model's members, ascending.
std::vector<CrossSection> cross_sections(const Model& model);

} // namespace kigumi
