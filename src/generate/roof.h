// Size of the roof that make_yane2 would build.
#pragma once

namespace kigumi {

// Number of members of the roof for the parameters in `param`; 0 when they make no roof.
long long predict_roof_beams();

} // namespace kigumi
