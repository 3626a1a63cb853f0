// Size of the roof that make_yane2 would build, and why it builds none. docs/roof.md draws both
// roofs and names their parts.
#pragma once

#include "generate/param.h"

namespace kigumi {

// Number of members of the roof for the parameters in `param`; 0 when they make no roof. Exact: it
// counts what make_yane2 would append over the outer columns of make_gaichu.
long long predict_roof_beams(const Param& param);

// Why no roof can be made from `param`, in Japanese, or null when one can.
const char* find_roof_fault(const Param& param);

} // namespace kigumi
