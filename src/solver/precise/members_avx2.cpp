#include <immintrin.h>

#define PRECISE_LANES 4
#define PRECISE_NAME precise_forces_avx2
#define PAIR_FUSED(a, b, p) (V) _mm256_fmsub_pd((__m256d)(a), (__m256d)(b), (__m256d)(p))
#include "solver/precise/members_body.h"
