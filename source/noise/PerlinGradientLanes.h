#pragma once
// Perlin::grad(h, x, y, z) over eight lanes, shared by the one-point and the
// batch lattice-noise kernels.

#if defined(__x86_64__)
#include <immintrin.h>

namespace gritwell {

// h already reduced to 0..15: u = x for h & 8 clear, else y (the blend reads
// the sign bit, so h << 28 chooses); v = y for h < 4, x for h 12 and 14,
// else z; each negated by bits 0 and 1.
__attribute__((target("avx2"))) inline __m256 gradientLanes(__m256i h, __m256 x, __m256 y, __m256 z) {
    const __m256 u = _mm256_blendv_ps(x, y, _mm256_castsi256_ps(_mm256_slli_epi32(h, 28)));
    const __m256i below4 = _mm256_cmpgt_epi32(_mm256_set1_epi32(4), h);
    const __m256i is12or14 = _mm256_cmpeq_epi32(_mm256_and_si256(h, _mm256_set1_epi32(13)), _mm256_set1_epi32(12));
    __m256 v = _mm256_blendv_ps(z, x, _mm256_castsi256_ps(is12or14));
    v = _mm256_blendv_ps(v, y, _mm256_castsi256_ps(below4));
    const __m256i signU = _mm256_slli_epi32(h, 31);
    const __m256i signV = _mm256_slli_epi32(_mm256_and_si256(h, _mm256_set1_epi32(2)), 30);
    return _mm256_add_ps(_mm256_xor_ps(u, _mm256_castsi256_ps(signU)), _mm256_xor_ps(v, _mm256_castsi256_ps(signV)));
}

}  // namespace gritwell
#endif
