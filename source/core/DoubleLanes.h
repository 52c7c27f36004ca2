#pragma once
// Sixteen float lanes as two registers of eight doubles and back, for the
// AVX-512 kernels whose scalar forms compute in double and round to float.
// Only code compiled for avx512f may use these.

#if defined(__x86_64__)
#include <immintrin.h>

namespace gritwell {

struct DoubleLanes {
    __m512d low, high;  // lanes 0..7 and 8..15
};

__attribute__((target("avx512f"))) inline DoubleLanes widen(__m512 v) {
    return {_mm512_cvtps_pd(_mm512_castps512_ps256(v)),
            _mm512_cvtps_pd(_mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(v), 1)))};
}

// Each double rounded to the nearest float, as a static_cast<float> does.
__attribute__((target("avx512f"))) inline __m512 narrow(const DoubleLanes& d) {
    return _mm512_castpd_ps(_mm512_insertf64x4(_mm512_castps_pd(_mm512_castps256_ps512(_mm512_cvtpd_ps(d.low))),
                                               _mm256_castps_pd(_mm512_cvtpd_ps(d.high)), 1));
}

}  // namespace gritwell
#endif
