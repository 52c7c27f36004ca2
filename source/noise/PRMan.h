#pragma once
// Shading-language helpers: steps, pulses, blends, luminance, periodic noise
// and small distances, with the precision each has always had.

#include "core/SimdTargets.h"
#include "core/Vec3.h"
#include "noise/DoubleLanes.h"

namespace gritwell::PRMan {

// 0 below a, 1 from b up, t^2 (3 - 2t) between, t = (x - a) / (b - a).
float smoothstep(float a, float b, float x);
// 0 if x < a, else 1 (so x == a gives 1).
inline float step(float a, float x) { return x < a ? 0.0f : 1.0f; }
// step(a, x) - step(b, x): 1 on [a, b) for a <= b, -1 on [b, a) otherwise.
inline float squarepulse(float a, float b, float x) { return step(a, x) - step(b, x); }
// lo below lo, else hi above hi, else x: the low bound is tested first.
float clamp(float x, float lo, float hi);
// a (1 - t) + b t, with a (1 - t) and the sum in double, b t in float.
// Inline, with step and squarepulse: the pattern generators call them
// several times a point.
inline float mix(float a, float b, float t) {
    const double left = a * (1.0 - t);
    const float right = b * t;
    return static_cast<float>(left + right);
}
float mmix(float a, float b, float t);
// mix, lane by lane (AVX2).
GRITWELL_AVX2 inline __m256 mix(__m256 a, __m256 b, __m256 t) {
    const DoubleLanes8 ad = widen(a), td = widen(t), right = widen(_mm256_mul_ps(b, t));
    const __m256d one = _mm256_set1_pd(1.0);
    return narrow({_mm256_add_pd(_mm256_mul_pd(ad.low, _mm256_sub_pd(one, td.low)), right.low),
                   _mm256_add_pd(_mm256_mul_pd(ad.high, _mm256_sub_pd(one, td.high)), right.high)});
}
// Rec. 709 luma, 0.2126 r + 0.7152 g + 0.0722 b, in double, rounded to float.
float luminance(float r, float g, float b);
// 1-D gradient noise that repeats with `period` (0 is not guarded).
float pnoise(float x, float period);
// Distance from q to the line through a and b (a == b divides by zero).
float ptlined(const Vec3& a, const Vec3& b, const Vec3& q);
float distance2(const float* a, const float* b);
float distance3(const float* a, const float* b);

}  // namespace gritwell::PRMan
