// Choosing nodes by words, as the command line does.
#pragma once

#include <string_view>
#include <vector>

namespace kigumi {

// Positions of the nodes that a selector names: "bottom" or "top" (all nodes of the lowest or
// highest level), or a node-name pattern with * and ? over the whole name. Empty when none.
std::vector<int> select_nodes(std::string_view selector);

// True when the pattern with * (any characters) and ? (one character) covers the whole text.
bool matches_pattern(std::string_view pattern, std::string_view text);

} // namespace kigumi
