#pragma once
// Cell noise: one pseudo-random value per integer cell, the source of
// per-cell randomness (a tone per brick, tile, scale or stripe).
//
// The cell of a coordinate follows the shared cell-index rule, so an exactly
// negative integer -m falls in cell -m - 1.
//
// Inline: the cellular searches call it three times for each of 27 cells a
// point, and inlined the cells of a search's rows and columns are taken once.

#include <cstdint>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdTargets.h"
#include "noise/DoubleLanes.h"

namespace gritwell::CellNoise {

namespace detail {
// The hash's and the cell number's constants, shared by every lane width.
constexpr std::uint32_t kHashShift = 13, kHashSquare = 15731u, kHashLinear = 789221u, kHashOffset = 1376312589u;
constexpr std::uint32_t kRowStride = 1301u, kLayerStride = 314159u;  // cell number = x + 1301 y + 314159 z

// The integer hash of a cell number, on 32-bit words with wrap-around.
inline std::uint32_t hash(std::uint32_t n) {
    n ^= n << kHashShift;
    return n * (n * n * kHashSquare + kHashLinear) + kHashOffset;
}
// The 1-D and the 2-/3-D scalings differ on purpose; records depend on both.
inline float unitFromSigned(std::uint32_t h) { return static_cast<float>((h & 0x7fffffffu) / 2147483647.0); }
inline float unitFromUnsigned(std::uint32_t h) { return static_cast<float>(h) / 4294967296.0f; }
inline std::uint32_t cell(float v) { return static_cast<std::uint32_t>(cellIndex(v)); }
}  // namespace detail

// In [0, 1]: (h AND 0x7fffffff) / 2147483647, in double, rounded to float.
inline float cellNoise(float x) { return detail::unitFromSigned(detail::hash(detail::cell(x))); }
// In [0, 1]: h as unsigned / 2^32 in float; 1.0 where h rounds up to 2^32.
inline float cellNoise(float x, float y) {
    return detail::unitFromUnsigned(detail::hash(detail::cell(y) * detail::kRowStride + detail::cell(x)));
}
inline float cellNoise(float x, float y, float z) {
    return detail::unitFromUnsigned(
        detail::hash(detail::cell(y) * detail::kRowStride + detail::cell(z) * detail::kLayerStride + detail::cell(x)));
}

// ---- Four lanes (SSE2, any x86-64): the same steps, lane by lane -------------

namespace detail {
// The low 32 bits of each lane's product, as pmulld gives them: SSE2
// multiplies only the even lanes to 64 bits, so the odd ones are shifted
// down, multiplied alike, and the low halves interleaved back.
inline __m128i mulLow(__m128i a, __m128i b) {
    const __m128i even = _mm_mul_epu32(a, b);
    const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a, 32), _mm_srli_epi64(b, 32));
    return _mm_unpacklo_epi32(_mm_shuffle_epi32(even, _MM_SHUFFLE(0, 0, 2, 0)),
                              _mm_shuffle_epi32(odd, _MM_SHUFFLE(0, 0, 2, 0)));
}
// The even and the odd lanes apart, each word in the low half of a 64-bit
// lane, where pmuludq reads it; the high halves hold what no low half
// reads, so the three products need no interleaving between them.
inline __m128i hash(__m128i n) {
    n = _mm_xor_si128(n, _mm_slli_epi32(n, kHashShift));
    const auto inLowHalves = [](__m128i m) {
        const __m128i inner = _mm_add_epi32(_mm_mul_epu32(_mm_mul_epu32(m, m), _mm_set1_epi32(kHashSquare)),
                                            _mm_set1_epi32(kHashLinear));
        return _mm_add_epi32(_mm_mul_epu32(m, inner), _mm_set1_epi32(kHashOffset));
    };
    const __m128i even = inLowHalves(n), odd = inLowHalves(_mm_srli_epi64(n, 32));
    return _mm_unpacklo_epi32(_mm_shuffle_epi32(even, _MM_SHUFFLE(0, 0, 2, 0)),
                              _mm_shuffle_epi32(odd, _MM_SHUFFLE(0, 0, 2, 0)));
}
// As the eight-lane form: SSE2 converts only signed words, so the 16-bit
// halves convert exactly and their sum rounds once.
inline __m128 unitFromUnsigned(__m128i h) {
    const __m128 high = _mm_cvtepi32_ps(_mm_srli_epi32(h, 16));
    const __m128 low = _mm_cvtepi32_ps(_mm_and_si128(h, _mm_set1_epi32(0xffff)));
    return _mm_div_ps(_mm_add_ps(_mm_mul_ps(high, _mm_set1_ps(65536.0f)), low), _mm_set1_ps(4294967296.0f));
}
}  // namespace detail

inline __m128 cellNoise(__m128 x, __m128 y, __m128 z) {
    const __m128i yz = _mm_add_epi32(detail::mulLow(cellIndex(y), _mm_set1_epi32(detail::kRowStride)),
                                     detail::mulLow(cellIndex(z), _mm_set1_epi32(detail::kLayerStride)));
    return detail::unitFromUnsigned(detail::hash(_mm_add_epi32(yz, cellIndex(x))));
}

// ---- Eight lanes (AVX2): the same steps, lane by lane ------------------------

namespace detail {
GRITWELL_AVX2 inline __m256i hash(__m256i n) {
    n = _mm256_xor_si256(n, _mm256_slli_epi32(n, kHashShift));
    const __m256i inner = _mm256_add_epi32(_mm256_mullo_epi32(_mm256_mullo_epi32(n, n), _mm256_set1_epi32(kHashSquare)),
                                           _mm256_set1_epi32(kHashLinear));
    return _mm256_add_epi32(_mm256_mullo_epi32(n, inner), _mm256_set1_epi32(kHashOffset));
}
// AVX2 has no unsigned-to-float conversion: both 16-bit halves convert
// exactly and their sum rounds once, to the float the scalar cast gives.
GRITWELL_AVX2 inline __m256 unitFromUnsigned(__m256i h) {
    const __m256 high = _mm256_cvtepi32_ps(_mm256_srli_epi32(h, 16));
    const __m256 low = _mm256_cvtepi32_ps(_mm256_and_si256(h, _mm256_set1_epi32(0xffff)));
    return _mm256_div_ps(_mm256_add_ps(_mm256_mul_ps(high, _mm256_set1_ps(65536.0f)), low),
                         _mm256_set1_ps(4294967296.0f));
}
GRITWELL_AVX2 inline __m256 unitFromSigned(__m256i h) {
    const DoubleLanes8 d = widen(_mm256_and_si256(h, _mm256_set1_epi32(0x7fffffff)));
    const __m256d scale = _mm256_set1_pd(2147483647.0);
    return narrow({_mm256_div_pd(d.low, scale), _mm256_div_pd(d.high, scale)});
}
}  // namespace detail

GRITWELL_AVX2 inline __m256 cellNoise(__m256 x) { return detail::unitFromSigned(detail::hash(cellIndex(x))); }
GRITWELL_AVX2 inline __m256 cellNoise(__m256 x, __m256 y) {
    return detail::unitFromUnsigned(
        detail::hash(_mm256_add_epi32(_mm256_mullo_epi32(cellIndex(y), _mm256_set1_epi32(detail::kRowStride)), cellIndex(x))));
}
GRITWELL_AVX2 inline __m256 cellNoise(__m256 x, __m256 y, __m256 z) {
    const __m256i yz = _mm256_add_epi32(_mm256_mullo_epi32(cellIndex(y), _mm256_set1_epi32(detail::kRowStride)),
                                        _mm256_mullo_epi32(cellIndex(z), _mm256_set1_epi32(detail::kLayerStride)));
    return detail::unitFromUnsigned(detail::hash(_mm256_add_epi32(yz, cellIndex(x))));
}

// ---- Sixteen lanes (AVX-512): the same steps, lane by lane -------------------

namespace detail {
GRITWELL_AVX512 inline __m512i hash(__m512i n) {
    n = _mm512_xor_si512(n, _mm512_slli_epi32(n, kHashShift));
    const __m512i inner = _mm512_add_epi32(_mm512_mullo_epi32(_mm512_mullo_epi32(n, n), _mm512_set1_epi32(kHashSquare)),
                                           _mm512_set1_epi32(kHashLinear));
    return _mm512_add_epi32(_mm512_mullo_epi32(n, inner), _mm512_set1_epi32(kHashOffset));
}
GRITWELL_AVX512 inline __m512 unitFromUnsigned(__m512i h) {
    return _mm512_div_ps(_mm512_cvtepu32_ps(h), _mm512_set1_ps(4294967296.0f));
}
}  // namespace detail

GRITWELL_AVX512 inline __m512 cellNoise(__m512 x, __m512 y, __m512 z) {
    const __m512i yz = _mm512_add_epi32(_mm512_mullo_epi32(cellIndex(y), _mm512_set1_epi32(detail::kRowStride)),
                                        _mm512_mullo_epi32(cellIndex(z), _mm512_set1_epi32(detail::kLayerStride)));
    return detail::unitFromUnsigned(detail::hash(_mm512_add_epi32(yz, cellIndex(x))));
}

}  // namespace gritwell::CellNoise
