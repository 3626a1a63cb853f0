// For any processor: 16-byte vectors where the compiler has them.
#if defined(__GNUC__)
#define KERNEL_LANES 2
#else
#include <cmath>
#define KERNEL_LANES 1
#define __builtin_sqrt std::sqrt
#endif
#define KERNEL_NAME kernels_plain
#include "solver/sparse/kernel_body.h"
