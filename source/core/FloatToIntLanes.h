#pragma once
// FloatToInt's cell index, lane by lane, for the batch kernels.
//
// cvttps2dq answers INT_MIN for a NaN or out-of-range lane, exactly what
// truncToInt answers for the same float, and adding the all-ones mask of a
// negative lane is wrapAdd(i, -1): every lane equals cellIndex(lane).
// roundToInt's lane form follows the same rule.
// The SSE2 form is for any x86-64; the wider ones only for code compiled
// for the instruction set they name.

#include "core/FloatToInt.h"
#include "core/SimdTargets.h"

namespace gritwell {

// One float through the scalar form of the same instruction (cvttss2si):
// cellIndex(v), without range tests, and without a branch on the sign,
// which is as random as the points.
inline int cellIndexSse(float v) {
    return wrapAdd(_mm_cvtt_ss2si(_mm_set_ss(v)), v < 0.0f ? -1 : 0);
}

inline __m128i cellIndex(__m128 v) {
    const __m128 negative = _mm_cmplt_ps(v, _mm_setzero_ps());
    return _mm_add_epi32(_mm_cvttps_epi32(v), _mm_castps_si128(negative));
}

GRITWELL_AVX2 inline __m256i cellIndex(__m256 v) {
    const __m256 negative = _mm256_cmp_ps(v, _mm256_setzero_ps(), _CMP_LT_OQ);
    return _mm256_add_epi32(_mm256_cvttps_epi32(v), _mm256_castps_si256(negative));
}

GRITWELL_AVX512 inline __m512i cellIndex(__m512 v) {
    const __mmask16 negative = _mm512_cmp_ps_mask(v, _mm512_setzero_ps(), _CMP_LT_OQ);
    const __m512i t = _mm512_cvttps_epi32(v);
    return _mm512_mask_sub_epi32(t, negative, t, _mm512_set1_epi32(1));
}

// roundToInt lane by lane: cvtpd2dq rounds to nearest even and answers
// INT_MIN for a NaN or a result outside the int range, as roundToInt does.
GRITWELL_AVX2 inline __m128i roundToInt(__m256d v) { return _mm256_cvtpd_epi32(v); }

}  // namespace gritwell
