// Whether the tables keep the promises of model.h.
#pragma once

#include "model/model.h"

namespace kigumi {

// Describes the first fault of the tables (counts, numbers, ends, names, coordinates), or null when
// they are sound. Names are compared only when `names` is true.
const char* find_model_fault(const Model& model, bool names);

} // namespace kigumi
