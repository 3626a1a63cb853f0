#define KERNEL_LANES 4
#define KERNEL_NAME kernels_avx2
#include "solver/sparse/kernel_body.h"
