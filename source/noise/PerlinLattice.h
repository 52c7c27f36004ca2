#pragma once
// The steps Ken Perlin's lattice noise is made of (1985, with the fade and the
// gradients of his improved noise, 2002): a coordinate's cell and offsets, the
// cell hash, the gradients, the fade curve, the interpolation and the scales
// that bring each dimension to about [-1, 1]. Perlin.cpp (1, 2 and 4
// dimensions), PerlinPoint (3 dimensions, one point), PerlinBatch (arrays)
// and ImprovedPerlin (double precision) are made of these.
//
// Each step is plain scalar code first, its definition. Where a kernel needs
// it across lanes, the lane form follows, with the same operations in the
// same order, so that every lane rounds as the scalar code does: four lanes
// for the one-point kernels and the batch kernels of any x86-64 (SSE2),
// eight on AVX2, sixteen on AVX-512.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdTargets.h"
#include "noise/ByteTableLanes.h"
#include "noise/PerlinPermutation.h"

namespace gritwell::lattice {

// ---- Constants --------------------------------------------------------------

// Output scales of Stefan Gustavson's classic noise (noise1234), per
// dimension.
inline constexpr float kScale1 = 0.188f;
inline constexpr float kScale2 = 0.507f;
inline constexpr float kScale3 = 0.936f;
inline constexpr float kScale4 = 0.87f;

// Ken Perlin's quintic fade, 6t^5 - 15t^4 + 10t^3.
inline constexpr float kFade5 = 6.0f;
inline constexpr float kFade4 = 15.0f;
inline constexpr float kFade3 = 10.0f;

// The permutation twice over, so that the hash chain's sums (at most
// 255 + 255 + 1) need no wrap, and four spare bytes after it: the kernels
// read perm[i] and perm[i + 1] together as one 16-bit word (one point) or
// one gathered 32-bit word (AVX2), which at the largest pair index, 510,
// ends inside.
struct PermTable {
    std::uint8_t entry[512 + 4];
};

constexpr PermTable makePermTable() {
    PermTable t{};
    const auto doubled = doubledPerlinPermutation<std::uint8_t>();
    for (int i = 0; i < 512; ++i) t.entry[i] = doubled[i];
    return t;
}

alignas(64) inline constexpr PermTable kPerm = makePermTable();

// ---- The cell and the offsets into it ---------------------------------------

// A coordinate's cell (cellIndex, so an exactly negative integer lies at
// offset 1 of the cell below, which keeps the noise continuous there), the
// cell's low byte, which is all the hash reads, and the offsets from the
// cell's near and far sides.
struct Axis {
    int i;
    float f0, f1;
};

inline Axis axis(float c) {
    const int cell = cellIndex(c);
    const float f0 = c - static_cast<float>(cell);
    return {cell & 255, f0, f0 - 1.0f};
}

// Four lanes, for the one-point kernels: (x, y, z, 0) in one register, the
// offsets f0 of all three axes at once.
inline __m128 nearOffsets(__m128 p) { return _mm_sub_ps(p, _mm_cvtepi32_ps(cellIndex(p))); }

// Four points, for the SSE2 batch kernels: the same cell, low byte and
// offsets per lane as axis.
struct AxisLanes4 {
    __m128i i;
    __m128 f0, f1;
};

inline AxisLanes4 axis(__m128 c) {
    const __m128i cell = cellIndex(c);
    const __m128 f0 = _mm_sub_ps(c, _mm_cvtepi32_ps(cell));
    return {_mm_and_si128(cell, _mm_set1_epi32(255)), f0, _mm_sub_ps(f0, _mm_set1_ps(1.0f))};
}

struct AxisLanes8 {
    __m256i i;
    __m256 f0, f1;
};

GRITWELL_AVX2 inline AxisLanes8 axis(__m256 c) {
    const __m256i cell = cellIndex(c);
    const __m256 f0 = _mm256_sub_ps(c, _mm256_cvtepi32_ps(cell));
    return {_mm256_and_si256(cell, _mm256_set1_epi32(255)), f0, _mm256_sub_ps(f0, _mm256_set1_ps(1.0f))};
}

struct AxisLanes16 {
    __m512i i;
    __m512 f0, f1;
};

GRITWELL_AVX512 inline AxisLanes16 axis(__m512 c) {
    const __m512i cell = cellIndex(c);
    const __m512 f0 = _mm512_sub_ps(c, _mm512_cvtepi32_ps(cell));
    return {_mm512_and_si512(cell, _mm512_set1_epi32(255)), f0, _mm512_sub_ps(f0, _mm512_set1_ps(1.0f))};
}

// ---- The cell hash ----------------------------------------------------------
//
// Ken Perlin's order: the x index is looked up first and every further index
// is added to the entry reached, perm[perm[perm[ix] + iy] + iz], a corner one
// cell further along an axis adding 1 to that axis's index. Corners are
// numbered dx + 2 dy + 4 dz + 8 dw.

// One more axis: each corner hash h so far becomes perm[h + i] on the
// axis's near side and perm[h + i + 1] on its far side, the far corners
// numbered after the near ones. The chain starts from the single hash 0.
template <std::size_t M>
[[gnu::always_inline]] constexpr std::array<int, 2 * M> nextAxis(const std::array<int, M>& h, int i) {
    std::array<int, 2 * M> next{};
    // Unrolled, with the index in pointer width so that the far entry is an
    // address offset from the near one: the 2-D noise as fast as its own
    // chain written out.
#pragma GCC unroll 16
    for (std::size_t c = 0; c < M; ++c) {
        const std::ptrdiff_t at = std::ptrdiff_t{h[c]} + i;
        next[c] = kPerm.entry[at];
        next[c + M] = kPerm.entry[at + 1];
    }
    return next;
}

// Always inlined, so the hashes stay in registers rather than coming back
// through memory on the chain each lookup waits for.
[[gnu::always_inline]] inline std::array<int, 2> cornerHashes(int ix) { return nextAxis<1>({0}, ix); }
[[gnu::always_inline]] inline std::array<int, 4> cornerHashes(int ix, int iy) {
    return nextAxis(cornerHashes(ix), iy);
}
[[gnu::always_inline]] inline std::array<int, 8> cornerHashes(int ix, int iy, int iz) {
    return nextAxis(cornerHashes(ix, iy), iz);
}
[[gnu::always_inline]] inline std::array<int, 16> cornerHashes(int ix, int iy, int iz, int iw) {
    return nextAxis(cornerHashes(ix, iy, iz), iw);
}

// The one-point kernels' form: the eight corners' hashes reduced to the four
// bits the gradient reads, one byte each; byte 2c holds corner c (near z)
// and byte 2c + 1 corner c + 4 (far z). A single call is bound by the
// chain's dependent loads, so each pair perm[i], perm[i + 1] is one 16-bit
// read, and the last reads come from kPermLow4, which needs no mask after.
constexpr PermTable makePermLow4() {
    PermTable t{};
    for (int i = 0; i < 512; ++i) t.entry[i] = static_cast<std::uint8_t>(kPerm.entry[i] & 15);
    return t;
}

alignas(64) inline constexpr PermTable kPermLow4 = makePermLow4();

// Entries i and i + 1 of a table: the first in bits 0-7, the second in 8-15.
// Unsigned indices need no sign extension on the chain.
inline unsigned pairAt(const PermTable& table, unsigned i) {
    std::uint16_t word;
    std::memcpy(&word, table.entry + i, sizeof word);
    return word;
}

inline std::uint64_t packedCornerHashes(unsigned ix, unsigned iy, unsigned iz) {
    const unsigned px = pairAt(kPerm, ix);
    const unsigned pa = pairAt(kPerm, (px & 255) + iy);
    const unsigned pb = pairAt(kPerm, (px >> 8) + iy);
    const std::uint64_t aa = pairAt(kPermLow4, (pa & 255) + iz);
    const std::uint64_t ab = pairAt(kPermLow4, (pa >> 8) + iz);
    const std::uint64_t ba = pairAt(kPermLow4, (pb & 255) + iz);
    const std::uint64_t bb = pairAt(kPermLow4, (pb >> 8) + iz);
    // Joined as a tree, so the packing adds two steps to the chain, not four.
    return (aa | (ba << 16)) | ((ab | (bb << 16)) << 32);
}

// Eight lanes: perm[i] and perm[i + 1] from one gathered word.
struct PermPair8 {
    __m256i near, far;
};

GRITWELL_AVX2 inline PermPair8 permPair(__m256i i) {
    const __m256i word = _mm256_i32gather_epi32(reinterpret_cast<const int*>(kPerm.entry), i, 1);
    const __m256i low8 = _mm256_set1_epi32(255);
    return {_mm256_and_si256(word, low8), _mm256_and_si256(_mm256_srli_epi32(word, 8), low8)};
}

// Sixteen lanes: the 256 entries held in registers and read with byte
// permutes (ByteTableLanes). The doubled table repeats, so an index's low
// byte is all a lookup needs.
GRITWELL_AVX512 inline ByteTableLanes permLanes() { return ByteTableLanes(kPerlinPermutation.data()); }

struct PermPair16 {
    __m512i near, far;
};

GRITWELL_AVX512 inline PermPair16 permPair(const ByteTableLanes& perm, __m512i i) {
    return {perm(i), perm(_mm512_add_epi32(i, _mm512_set1_epi32(1)))};
}

GRITWELL_AVX512 inline PermPair16 nextAxis(const ByteTableLanes& perm, __m512i h, __m512i i) {
    return permPair(perm, _mm512_add_epi32(h, i));
}

GRITWELL_AVX512 inline void cornerHashes(const ByteTableLanes& perm, __m512i ix, __m512i iy, __m512i (&h)[4]) {
    const PermPair16 x = permPair(perm, ix);
    const PermPair16 a = nextAxis(perm, x.near, iy), b = nextAxis(perm, x.far, iy);
    h[0] = a.near, h[1] = b.near, h[2] = a.far, h[3] = b.far;
}

GRITWELL_AVX512 inline void cornerHashes(const ByteTableLanes& perm, __m512i ix, __m512i iy, __m512i iz,
                                         __m512i (&h)[8]) {
    __m512i s[4];
    cornerHashes(perm, ix, iy, s);
    const PermPair16 c0 = nextAxis(perm, s[0], iz), c1 = nextAxis(perm, s[1], iz), c2 = nextAxis(perm, s[2], iz),
                     c3 = nextAxis(perm, s[3], iz);
    h[0] = c0.near, h[1] = c1.near, h[2] = c2.near, h[3] = c3.near;
    h[4] = c0.far, h[5] = c1.far, h[6] = c2.far, h[7] = c3.far;
}

// ---- Gradients --------------------------------------------------------------
//
// The lane forms of Perlin::grad, whose scalar definitions (all four
// dimensions) are in Perlin.cpp. In 3-D: u = x for bit 3 clear, else y;
// v = y for h < 4, x for h 12 and 14, else z; each negated by bits 0 and 1.
// In 2-D: u = x for bit 2 clear, else y; v the other, doubled. In 1-D:
// (1 + (h & 7)) x, negated where bit 3 of h is set.

// Four lanes, h in 0..15. Each choice is a bit-exact a ^ ((a ^ b) & mask),
// b where the mask is set; the masks for v are disjoint, so both fold into
// z. The differences depend only on the offsets, so a kernel that inlines
// several corners side by side computes each one once.
inline __m128 gradient(__m128i h, __m128 x, __m128 y, __m128 z) {
    const __m128 useY = _mm_castsi128_ps(_mm_srai_epi32(_mm_slli_epi32(h, 28), 31));
    const __m128 below4 = _mm_castsi128_ps(_mm_cmplt_epi32(h, _mm_set1_epi32(4)));
    const __m128 is12or14 =
        _mm_castsi128_ps(_mm_cmpeq_epi32(_mm_and_si128(h, _mm_set1_epi32(13)), _mm_set1_epi32(12)));
    const __m128 u = _mm_xor_ps(x, _mm_and_ps(useY, _mm_xor_ps(x, y)));
    const __m128 v =
        _mm_xor_ps(_mm_xor_ps(z, _mm_and_ps(below4, _mm_xor_ps(y, z))), _mm_and_ps(is12or14, _mm_xor_ps(x, z)));
    const __m128i signU = _mm_slli_epi32(h, 31);
    const __m128i signV = _mm_slli_epi32(_mm_and_si128(h, _mm_set1_epi32(2)), 30);
    return _mm_add_ps(_mm_xor_ps(u, _mm_castsi128_ps(signU)), _mm_xor_ps(v, _mm_castsi128_ps(signV)));
}

// Four lanes in 2-D; only the low three bits of h are read: u and v swap
// where bit 2 is set.
inline __m128 gradient(__m128i h, __m128 x, __m128 y) {
    const __m128 swap = _mm_castsi128_ps(_mm_srai_epi32(_mm_slli_epi32(h, 29), 31));
    const __m128 exchanged = _mm_and_ps(swap, _mm_xor_ps(x, y));
    const __m128 u = _mm_xor_ps(x, exchanged);
    const __m128 v = _mm_mul_ps(_mm_set1_ps(2.0f), _mm_xor_ps(y, exchanged));
    const __m128 signU = _mm_castsi128_ps(_mm_slli_epi32(h, 31));
    const __m128 signV = _mm_castsi128_ps(_mm_slli_epi32(_mm_srli_epi32(h, 1), 31));
    return _mm_add_ps(_mm_xor_ps(u, signU), _mm_xor_ps(v, signV));
}

// Eight lanes; only the low four bits of h are read. Every test is made on a
// sign bit: shifting h left by 31 - k brings bit k there, blendv reads it,
// and xor with it negates. So no constant is built.
GRITWELL_AVX2 inline __m256 gradient(__m256i h, __m256 x, __m256 y, __m256 z) {
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

// Eight lanes in 2-D; only the low three bits of h are read.
GRITWELL_AVX2 inline __m256 gradient(__m256i h, __m256 x, __m256 y) {
    const __m256 swap = _mm256_castsi256_ps(_mm256_slli_epi32(h, 29));
    const __m256 u = _mm256_blendv_ps(x, y, swap);
    const __m256 v = _mm256_mul_ps(_mm256_set1_ps(2.0f), _mm256_blendv_ps(y, x, swap));
    const __m256 signU = _mm256_castsi256_ps(_mm256_slli_epi32(h, 31));
    const __m256 signV = _mm256_castsi256_ps(_mm256_slli_epi32(_mm256_srli_epi32(h, 1), 31));
    return _mm256_add_ps(_mm256_xor_ps(u, signU), _mm256_xor_ps(v, signV));
}

// Eight lanes in 1-D; only the low four bits of h are read.
GRITWELL_AVX2 inline __m256 gradient(__m256i h, __m256 x) {
    const __m256 g = _mm256_add_ps(_mm256_set1_ps(1.0f), _mm256_cvtepi32_ps(_mm256_and_si256(h, _mm256_set1_epi32(7))));
    const __m256 sign = _mm256_castsi256_ps(_mm256_slli_epi32(_mm256_srli_epi32(h, 3), 31));
    return _mm256_mul_ps(_mm256_xor_ps(g, sign), x);
}

// Sixteen lanes; only the low four bits of h are read.
GRITWELL_AVX512 inline __m512 gradient(__m512i hash, __m512 x, __m512 y, __m512 z) {
    const __m512i h = _mm512_and_si512(hash, _mm512_set1_epi32(15));
    const __mmask16 useY = _mm512_test_epi32_mask(h, _mm512_set1_epi32(8));
    const __mmask16 below4 = _mm512_cmplt_epi32_mask(h, _mm512_set1_epi32(4));
    const __mmask16 is12or14 =
        _mm512_cmpeq_epi32_mask(_mm512_and_si512(h, _mm512_set1_epi32(13)), _mm512_set1_epi32(12));
    const __m512 u = _mm512_mask_blend_ps(useY, x, y);
    const __m512 v = _mm512_mask_blend_ps(below4, _mm512_mask_blend_ps(is12or14, z, x), y);
    const __m512i signU = _mm512_slli_epi32(h, 31);
    const __m512i signV = _mm512_slli_epi32(_mm512_and_si512(h, _mm512_set1_epi32(2)), 30);
    return _mm512_add_ps(_mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(u), signU)),
                         _mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(v), signV)));
}

// Sixteen lanes in 2-D; only the low three bits of h are read.
GRITWELL_AVX512 inline __m512 gradient(__m512i h, __m512 x, __m512 y) {
    const __mmask16 swap = _mm512_test_epi32_mask(h, _mm512_set1_epi32(4));
    const __m512 u = _mm512_mask_blend_ps(swap, x, y);
    const __m512 v = _mm512_mul_ps(_mm512_set1_ps(2.0f), _mm512_mask_blend_ps(swap, y, x));
    const __m512i signU = _mm512_slli_epi32(h, 31);
    const __m512i signV = _mm512_slli_epi32(_mm512_srli_epi32(h, 1), 31);
    return _mm512_add_ps(_mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(u), signU)),
                         _mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(v), signV)));
}

// ---- The fade curve ---------------------------------------------------------

// 0 at 0 and 1 at 1, with slope and curvature 0 at both: t^3 (t (6t - 15) + 10),
// in the precision of t.
template <class T>
constexpr T fade(T t) {
    return t * t * t * (t * (t * T{kFade5} - T{kFade4}) + T{kFade3});
}

inline __m128 fade(__m128 t) {
    const __m128 t3 = _mm_mul_ps(_mm_mul_ps(t, t), t);
    const __m128 inner = _mm_sub_ps(_mm_mul_ps(t, _mm_set1_ps(kFade5)), _mm_set1_ps(kFade4));
    return _mm_mul_ps(t3, _mm_add_ps(_mm_mul_ps(t, inner), _mm_set1_ps(kFade3)));
}

GRITWELL_AVX2 inline __m256 fade(__m256 t) {
    const __m256 t3 = _mm256_mul_ps(_mm256_mul_ps(t, t), t);
    const __m256 inner = _mm256_sub_ps(_mm256_mul_ps(t, _mm256_set1_ps(kFade5)), _mm256_set1_ps(kFade4));
    return _mm256_mul_ps(t3, _mm256_add_ps(_mm256_mul_ps(t, inner), _mm256_set1_ps(kFade3)));
}

GRITWELL_AVX512 inline __m512 fade(__m512 t) {
    const __m512 t3 = _mm512_mul_ps(_mm512_mul_ps(t, t), t);
    const __m512 inner = _mm512_sub_ps(_mm512_mul_ps(t, _mm512_set1_ps(kFade5)), _mm512_set1_ps(kFade4));
    return _mm512_mul_ps(t3, _mm512_add_ps(_mm512_mul_ps(t, inner), _mm512_set1_ps(kFade3)));
}

// ---- Interpolation ----------------------------------------------------------

// a + t (b - a): a at t = 0. Not Ramps' lerp, whose operands run the other way.
template <class T>
constexpr T interp(T t, T a, T b) {
    return a + t * (b - a);
}

inline __m128 interp(__m128 t, __m128 a, __m128 b) { return _mm_add_ps(a, _mm_mul_ps(t, _mm_sub_ps(b, a))); }

GRITWELL_AVX2 inline __m256 interp(__m256 t, __m256 a, __m256 b) {
    return _mm256_add_ps(a, _mm256_mul_ps(t, _mm256_sub_ps(b, a)));
}

GRITWELL_AVX512 inline __m512 interp(__m512 t, __m512 a, __m512 b) {
    return _mm512_add_ps(a, _mm512_mul_ps(t, _mm512_sub_ps(b, a)));
}

}  // namespace gritwell::lattice
