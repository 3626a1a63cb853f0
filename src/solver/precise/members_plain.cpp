// For any processor: 16-byte vectors where the compiler has them.
#if defined(__GNUC__)
#define PRECISE_LANES 2
#else
#include <cmath>
#define PRECISE_LANES 1
#define __builtin_sqrt std::sqrt
#endif
#define PRECISE_NAME precise_forces_plain
#include "solver/precise/members_body.h"
