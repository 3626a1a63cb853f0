#include "solver/sparse/kernels.h"

namespace frameslv {

extern const Kernels kernels_plain;
#if defined(FRAMESLV_WIDE_KERNELS)
extern const Kernels kernels_avx2;
extern const Kernels kernels_avx512;
#endif

const Kernels* const* usable_kernels() {
    static const Kernels* const all[] = {
#if defined(FRAMESLV_WIDE_KERNELS)
        &kernels_avx512,
        &kernels_avx2,
#endif
        &kernels_plain,
        nullptr
    };
    const Kernels* const* first = all;
#if defined(FRAMESLV_WIDE_KERNELS)
    if (!__builtin_cpu_supports("avx512f"))
        first++;
    if (first == all + 1 && !(__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")))
        first++;
#endif
    return first;
}

const Kernels& kernels() {
    static const Kernels& widest = **usable_kernels();
    return widest;
}

} // namespace frameslv
