#pragma once
// static_cast<float>(std::sin(a)), the same bits, mostly without the call.
//
// A short reduction and the classic fdlibm kernel polynomials estimate
// sin(a) in double to within a few parts in 2^50 of the true value, and the
// C library is within an ulp of it. Where every double within 2^-40 of the
// estimate (relative) rounds to the same float, the library's result rounds
// to it as well, and that float is the answer; only the rare estimate that
// close to the midpoint between two floats, and any angle beyond the short
// reduction's range, asks the library.

#include <cmath>

#include "core/FloatToInt.h"
#include "core/SimdTargets.h"

namespace gritwell {

namespace sine_detail {

// pi/2 in four parts, the first three of 33 bits: k times each is exact
// for small k, and the angle's distance to the nearest multiple of pi/2
// keeps its leading bits however small it is.
inline constexpr double kHalfPi1 = 1.57079632673412561417e+00;
inline constexpr double kHalfPi2 = 6.07710050630396597660e-11;
inline constexpr double kHalfPi3 = 2.02226624871116645580e-21;
inline constexpr double kHalfPi4 = 8.47842766036889956997e-32;
inline constexpr double kTwoOverPi = 6.36619772367581382433e-01;

// The kernels' minimax coefficients on [-pi/4, pi/4] (fdlibm, Sun Microsystems 1993).
inline constexpr double S1 = -1.66666666666666324348e-01, S2 = 8.33333333332248946124e-03,
                        S3 = -1.98412698298579493134e-04, S4 = 2.75573137070700676789e-06,
                        S5 = -2.50507602534068634195e-08, S6 = 1.58969099521155010221e-10;
inline constexpr double C1 = 4.16666666666666019037e-02, C2 = -1.38888888888741095749e-03,
                        C3 = 2.48015872894767294178e-05, C4 = -2.75573143513906633035e-07,
                        C5 = 2.08757232129817482790e-09, C6 = -1.13596475577881948265e-11;

inline double sinKernel(double r) {
    const double z = r * r;
    return r + r * z * (S1 + z * (S2 + z * (S3 + z * (S4 + z * (S5 + z * S6)))));
}

inline double cosKernel(double r) {
    const double z = r * r;
    return 1.0 - 0.5 * z + z * z * (C1 + z * (C2 + z * (C3 + z * (C4 + z * (C5 + z * C6)))));
}

// Angles up to this size take the short reduction (quadrant at most 6).
inline constexpr double kLargestAngle = 8.0;

}  // namespace sine_detail

inline float sineToFloat(double a) {
    using namespace sine_detail;
    // The kernel would lose a zero's sign; the sine of a zero is that zero.
    if (a == 0.0) return static_cast<float>(a);
    if (std::fabs(a) <= kLargestAngle) {
        const int k = roundToInt(a * kTwoOverPi);
        const double kd = static_cast<double>(k);
        const double r = (((a - kd * kHalfPi1) - kd * kHalfPi2) - kd * kHalfPi3) - kd * kHalfPi4;
        double s;
        switch (k & 3) {
            case 0: s = sinKernel(r); break;
            case 1: s = cosKernel(r); break;
            case 2: s = -sinKernel(r); break;
            default: s = -cosKernel(r); break;
        }
        const double margin = std::fabs(s) * 0x1p-40;
        const float low = static_cast<float>(s - margin);
        if (low == static_cast<float>(s + margin)) return low;
    }
    return static_cast<float>(std::sin(a));
}

// ---- Four angles at a time (AVX2) -------------------------------------------
//
// sineToFloat's short road lane by lane: the same reduction and kernels in
// the same order, the quadrant's choice of kernel and sign as selects, the
// same test. The lanes it settles are set in the result and their floats
// written to `out`; a zero, an angle beyond the short reduction and an
// estimate near a midpoint are left for sineToFloat.

namespace sine_detail {

GRITWELL_AVX2 inline __m256d polynomial(__m256d z, const double (&c)[6]) {
    __m256d p = _mm256_set1_pd(c[5]);
    for (int i = 4; i >= 0; --i) p = _mm256_add_pd(_mm256_set1_pd(c[i]), _mm256_mul_pd(z, p));
    return p;
}

}  // namespace sine_detail

GRITWELL_AVX2 inline int sineToFloatSettled(__m256d a, __m128& out) {
    using namespace sine_detail;
    const __m256d magnitude = _mm256_andnot_pd(_mm256_set1_pd(-0.0), a);
    const __m256d shortRoad = _mm256_and_pd(_mm256_cmp_pd(magnitude, _mm256_set1_pd(kLargestAngle), _CMP_LE_OQ),
                                            _mm256_cmp_pd(a, _mm256_setzero_pd(), _CMP_NEQ_OQ));
    // roundToInt's rounding: to nearest, ties to even.
    const __m256d kd = _mm256_round_pd(_mm256_mul_pd(a, _mm256_set1_pd(kTwoOverPi)), _MM_FROUND_TO_NEAREST_INT |
                                                                                          _MM_FROUND_NO_EXC);
    __m256d r = _mm256_sub_pd(a, _mm256_mul_pd(kd, _mm256_set1_pd(kHalfPi1)));
    r = _mm256_sub_pd(r, _mm256_mul_pd(kd, _mm256_set1_pd(kHalfPi2)));
    r = _mm256_sub_pd(r, _mm256_mul_pd(kd, _mm256_set1_pd(kHalfPi3)));
    r = _mm256_sub_pd(r, _mm256_mul_pd(kd, _mm256_set1_pd(kHalfPi4)));
    const __m256d z = _mm256_mul_pd(r, r);
    const __m256d sine = _mm256_add_pd(r, _mm256_mul_pd(_mm256_mul_pd(r, z), polynomial(z, {S1, S2, S3, S4, S5, S6})));
    const __m256d cosine = _mm256_add_pd(_mm256_sub_pd(_mm256_set1_pd(1.0), _mm256_mul_pd(_mm256_set1_pd(0.5), z)),
                                         _mm256_mul_pd(_mm256_mul_pd(z, z), polynomial(z, {C1, C2, C3, C4, C5, C6})));
    // Quadrant k: bit 0 takes the cosine, bit 1 the negative. The lanes off
    // the short road hold no quadrant worth converting; theirs is 0.
    const __m256i k = _mm256_cvtepi32_epi64(_mm256_cvtpd_epi32(_mm256_and_pd(kd, shortRoad)));
    const __m256d odd = _mm256_castsi256_pd(_mm256_slli_epi64(k, 63));
    const __m256d negative = _mm256_castsi256_pd(_mm256_slli_epi64(_mm256_srli_epi64(k, 1), 63));
    const __m256d s = _mm256_xor_pd(_mm256_blendv_pd(sine, cosine, odd), negative);
    const __m256d margin = _mm256_mul_pd(_mm256_andnot_pd(_mm256_set1_pd(-0.0), s), _mm256_set1_pd(0x1p-40));
    const __m128 low = _mm256_cvtpd_ps(_mm256_sub_pd(s, margin));
    const __m128 high = _mm256_cvtpd_ps(_mm256_add_pd(s, margin));
    out = low;
    return _mm_movemask_ps(_mm_cmpeq_ps(low, high)) & _mm256_movemask_pd(shortRoad);
}

}  // namespace gritwell
