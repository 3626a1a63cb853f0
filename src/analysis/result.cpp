#include "analysis/result.h"

namespace kigumi {

Result result;

} // namespace kigumi
