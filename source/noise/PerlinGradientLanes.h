#pragma once
// Perlin::grad(h, x, y, z) over eight lanes, shared by the one-point and the
// batch lattice-noise kernels.

#include "core/SimdTargets.h"

namespace gritwell {

// h already reduced to 0..15: u = x for h & 8 clear, else y; v = y for h < 4,
// x for h 12 and 14, else z; each negated by bits 0 and 1.
// Every test is made on a sign bit: shifting h left by 31 - k brings bit k
// there, blendv reads it, and xor with it negates. So no constant is built.
GRITWELL_AVX2 inline __m256 gradientLanes(__m256i h, __m256 x, __m256 y, __m256 z) {
    const __m256i bit3 = _mm256_slli_epi32(h, 28);
    const __m256i bit2 = _mm256_slli_epi32(h, 29);
    const __m256i bit0 = _mm256_slli_epi32(h, 31);
    const __m256i bit1 = _mm256_slli_epi32(_mm256_srli_epi32(h, 1), 31);
    const __m256i atLeast4 = _mm256_or_si256(bit3, bit2);
    const __m256i is12or14 = _mm256_andnot_si256(bit0, _mm256_and_si256(bit3, bit2));
    const __m256 u = _mm256_blendv_ps(x, y, _mm256_castsi256_ps(bit3));
    const __m256 v = _mm256_blendv_ps(y, _mm256_blendv_ps(z, x, _mm256_castsi256_ps(is12or14)),
                                      _mm256_castsi256_ps(atLeast4));
    return _mm256_add_ps(_mm256_xor_ps(u, _mm256_castsi256_ps(bit0)), _mm256_xor_ps(v, _mm256_castsi256_ps(bit1)));
}

}  // namespace gritwell
