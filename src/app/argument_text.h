// The texts of single arguments. Each returns false, and leaves the option in an unknown state,
// when the text cannot be read.
#pragma once

#include "app/commands.h"

namespace kigumi {

// "SEL:FX,FY,FZ", kgf. The selector is what stands before the last colon.
bool parse_load(const std::string& text, RoleOption& role);

// "DX,DY,DZ", cm.
bool parse_shift(const std::string& text, GenerateOptions& options);

// "LO,HI", percent, not descending.
bool parse_band(const std::string& text, DrawOptions& options);

// "WxH", pixels, 1 to 20000 each.
bool parse_size(std::string text, DrawOptions& options);

// "nodes,members,fix,load", any of them in any order; `unknown` takes what is none of them.
bool parse_labels(std::string text, DrawOptions& options, std::string& unknown);

} // namespace kigumi
