#include <immintrin.h>

#define PRECISE_LANES 8
#define PRECISE_NAME precise_forces_avx512
#define PAIR_FUSED(a, b, p) (V) _mm512_fmsub_pd((__m512d)(a), (__m512d)(b), (__m512d)(p))
#include "solver/precise/members_body.h"
