#pragma once
// Float lanes as two registers of doubles and back, for the vector kernels
// whose scalar forms compute in double and round to float: sixteen lanes for
// code compiled for the AVX-512 level, eight for code compiled for AVX2, four
// for any x86-64 (SSE2).

#include "core/SimdTargets.h"

namespace gritwell {

struct DoubleLanes {
    __m512d low, high;  // lanes 0..7 and 8..15
};

GRITWELL_AVX512 inline DoubleLanes widen(__m512 v) {
    return {_mm512_cvtps_pd(_mm512_castps512_ps256(v)),
            _mm512_cvtps_pd(_mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(v), 1)))};
}

// Each double rounded to the nearest float, as a static_cast<float> does.
GRITWELL_AVX512 inline __m512 narrow(const DoubleLanes& d) {
    return _mm512_castpd_ps(_mm512_insertf64x4(_mm512_castps_pd(_mm512_castps256_ps512(_mm512_cvtpd_ps(d.low))),
                                               _mm256_castps_pd(_mm512_cvtpd_ps(d.high)), 1));
}

struct DoubleLanes8 {
    __m256d low, high;  // lanes 0..3 and 4..7
};

GRITWELL_AVX2 inline DoubleLanes8 widen(__m256 v) {
    return {_mm256_cvtps_pd(_mm256_castps256_ps128(v)), _mm256_cvtps_pd(_mm256_extractf128_ps(v, 1))};
}

// Eight int lanes, each exactly as a double.
GRITWELL_AVX2 inline DoubleLanes8 widen(__m256i v) {
    return {_mm256_cvtepi32_pd(_mm256_castsi256_si128(v)), _mm256_cvtepi32_pd(_mm256_extracti128_si256(v, 1))};
}

GRITWELL_AVX2 inline __m256 narrow(const DoubleLanes8& d) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm256_cvtpd_ps(d.low)), _mm256_cvtpd_ps(d.high), 1);
}

// Eight tests made on two sets of four doubles (all bits set or clear per
// double), as the masks of eight float lanes.
GRITWELL_AVX2 inline __m256 narrowMask(__m256d low, __m256d high) {
    const __m256i upperHalves = _mm256_setr_epi32(1, 3, 5, 7, 1, 3, 5, 7);
    return _mm256_set_m128(_mm256_castps256_ps128(_mm256_permutevar8x32_ps(_mm256_castpd_ps(high), upperHalves)),
                           _mm256_castps256_ps128(_mm256_permutevar8x32_ps(_mm256_castpd_ps(low), upperHalves)));
}

struct DoubleLanes4 {
    __m128d low, high;  // lanes 0..1 and 2..3
};

inline DoubleLanes4 widen(__m128 v) { return {_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))}; }

// Four int lanes, each exactly as a double.
inline DoubleLanes4 widen(__m128i v) { return {_mm_cvtepi32_pd(v), _mm_cvtepi32_pd(_mm_unpackhi_epi64(v, v))}; }

inline __m128 narrow(const DoubleLanes4& d) { return _mm_movelh_ps(_mm_cvtpd_ps(d.low), _mm_cvtpd_ps(d.high)); }

}  // namespace gritwell
