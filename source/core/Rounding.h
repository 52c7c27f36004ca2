#pragma once
// Rounding and small 2-D helpers of the math kit.

#include <cmath>
#include <cstdint>

#include "core/FloatToInt.h"
#include "core/SimdTargets.h"

namespace gritwell {

// std::fmod(v, 1) and std::fmod(v, 2), the same values to the sign of a
// zero, by arithmetic that is exact rather than through the library's
// general remainder. Below 2^23 (2^52 in double; 2^53 for the halves of
// fmodTwo) a value's truncation is exact in an integer and v less it is the
// remainder with no rounding; above, every value is a whole (even) number
// and the remainder is zero.
// A NaN or an infinity gives a NaN, as the library does.
inline float fmodOne(float v) {
    const float rest = std::fabs(v) < 0x1p23f ? v - static_cast<float>(truncToInt(v)) : v - v;
    return std::copysign(rest, v);
}
inline double fmodOne(double v) {
    const double rest = std::fabs(v) < 0x1p52 ? v - static_cast<double>(static_cast<std::int64_t>(v)) : v - v;
    return std::copysign(rest, v);
}
inline double fmodTwo(double v) {
    const double rest =
        std::fabs(v) < 0x1p53 ? v - 2.0 * static_cast<double>(static_cast<std::int64_t>(0.5 * v)) : v - v;
    return std::copysign(rest, v);
}

// fmodTwo, four lanes at a time (AVX2): the same steps, the truncation
// exact in the lanes' own rounding.
GRITWELL_AVX2 inline __m256d fmodTwo(__m256d v) {
    const __m256d sign = _mm256_set1_pd(-0.0);
    const __m256d halves = _mm256_round_pd(_mm256_mul_pd(_mm256_set1_pd(0.5), v), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    const __m256d below = _mm256_cmp_pd(_mm256_andnot_pd(sign, v), _mm256_set1_pd(0x1p53), _CMP_LT_OQ);
    const __m256d rest = _mm256_blendv_pd(_mm256_sub_pd(v, v),
                                          _mm256_sub_pd(v, _mm256_mul_pd(_mm256_set1_pd(2.0), halves)), below);
    return _mm256_or_pd(_mm256_andnot_pd(sign, rest), _mm256_and_pd(sign, v));
}

// The floor through the processor's round-to-nearest: round(2x - 0.5) >> 1.
// Exact for every x in int range, integers included; INT_MIN >> 1 beyond it.
int Floor(double x);
int TheFloor(double x);  // the twin the cellular noise calls
// The ceiling by the same trick: -(round(-0.5 - 2x) >> 1).
int ceilf_ASM(float x);

// Bilinear blend of four 2-component corners at t = (u, v).
void bilinearInterp(const float* p00, const float* p01, const float* p10, const float* p11,
                    const float* t, float* out);

void polarToCartesian(float r, float theta, float& x, float& y);
void cartesianToPolar(float x, float y, float& r, float& theta);

}  // namespace gritwell
