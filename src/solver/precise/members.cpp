#include "solver/precise/members.h"

namespace frameslv {

extern const PreciseForces precise_forces_plain;
#if defined(FRAMESLV_WIDE_KERNELS)
extern const PreciseForces precise_forces_avx2;
extern const PreciseForces precise_forces_avx512;
#endif

const PreciseForces* usable_precise_forces() {
    static const PreciseForces all[] = {
#if defined(FRAMESLV_WIDE_KERNELS)
        precise_forces_avx512,
        precise_forces_avx2,
#endif
        precise_forces_plain,
        nullptr
    };
    const PreciseForces* first = all;
#if defined(FRAMESLV_WIDE_KERNELS)
    if (!__builtin_cpu_supports("avx512f"))
        first++;
    if (first == all + 1 && !(__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")))
        first++;
#endif
    return first;
}

PreciseForces precise_forces() {
    return *usable_precise_forces();
}

} // namespace frameslv
