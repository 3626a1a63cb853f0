// Whether a frame and its loads can be computed at all.
#pragma once

#include "solver/frame_analysis.h"

namespace frame_analysis {

// "節点 X01Y02", or "節点 12" of a node without a name.
std::string node_label(const Frame& frame, size_t node);
std::string member_label(const Frame& frame, size_t member);

// The first fault, as a sentence; empty when there is none.
std::string check(const Frame& frame);
std::string check(const Frame& frame, const LoadVector& load);

} // namespace frame_analysis
