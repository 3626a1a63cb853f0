#define KERNEL_LANES 8
#define KERNEL_NAME kernels_avx512
#include "solver/sparse/kernel_body.h"
