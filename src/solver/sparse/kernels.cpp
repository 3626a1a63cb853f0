#include "solver/sparse/kernels.h"

namespace frameslv {

extern const Kernels kernels_plain;
#if defined(FRAMESLV_WIDE_KERNELS)
extern const Kernels kernels_avx2;
extern const Kernels kernels_avx512;
#endif

const Kernels& kernels() {
#if defined(FRAMESLV_WIDE_KERNELS)
    if (__builtin_cpu_supports("avx512f"))
        return kernels_avx512;
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        return kernels_avx2;
#endif
    return kernels_plain;
}

} // namespace frameslv
