// Ken Perlin's lattice noise (1985) with his improved gradients and fade (2002), one point
// per call. A single call is bound by its chain of dependent steps (cell index, three
// permutation reads, gradients, three interpolations), so the kernels keep that chain
// short and issue few instructions, letting the processor overlap successive calls.
#include "noise/PerlinPoint.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "core/FloatToIntLanes.h"
#include "core/SimdTargets.h"
#include "noise/PerlinGradientLanes.h"
#include "noise/PerlinPermutation.h"

namespace gritwell {

namespace {

// The scale that brings the 3-D lattice noise to about [-1, 1].
constexpr float kNoiseScale3 = 0.936f;

// The doubled permutation, and beside it the same with each entry reduced to
// the low four bits the gradient reads. Two neighbouring entries are read as
// one 16-bit word: the hash chain always wants perm[i] and perm[i + 1]. The
// largest index it forms is 510.
struct PointTables {
    std::uint8_t perm[512];
    std::uint8_t gradient[512];
};

constexpr PointTables makePointTables() {
    PointTables t{};
    const auto doubled = doubledPerlinPermutation<std::uint8_t>();
    for (int i = 0; i < 512; ++i) {
        t.perm[i] = doubled[i];
        t.gradient[i] = static_cast<std::uint8_t>(doubled[i] & 15);
    }
    return t;
}

alignas(64) constexpr PointTables kTables = makePointTables();

// Entries i and i + 1 of a table: the first in bits 0-7, the second in 8-15.
// Unsigned indices need no sign extension on the chain.
inline unsigned pairAt(const std::uint8_t* table, unsigned i) {
    std::uint16_t word;
    std::memcpy(&word, table + i, sizeof word);
    return word;
}

// The eight corners' gradient indices, corner c = x + 2y + 4z, packed as
// 16-bit words: bits 0-3 the near (z0) corner, bits 8-11 the far (z1) one,
// in the order (x0 y0, x1 y0, x0 y1, x1 y1). Ken Perlin's order: the x index
// is looked up first.
inline std::uint64_t cornerHashes(float x, float y, float z) {
    const unsigned ix = static_cast<unsigned>(cellIndexSse(x)) & 255;
    const unsigned iy = static_cast<unsigned>(cellIndexSse(y)) & 255;
    const unsigned iz = static_cast<unsigned>(cellIndexSse(z)) & 255;
    const unsigned px = pairAt(kTables.perm, ix);
    const unsigned pa = pairAt(kTables.perm, (px & 255) + iy);
    const unsigned pb = pairAt(kTables.perm, (px >> 8) + iy);
    const std::uint64_t aa = pairAt(kTables.gradient, (pa & 255) + iz);
    const std::uint64_t ab = pairAt(kTables.gradient, (pa >> 8) + iz);
    const std::uint64_t ba = pairAt(kTables.gradient, (pb & 255) + iz);
    const std::uint64_t bb = pairAt(kTables.gradient, (pb >> 8) + iz);
    // Joined as a tree, so the packing adds two steps to the chain, not four.
    return (aa | (ba << 16)) | ((ab | (bb << 16)) << 32);
}

// (x, y, z, 0) minus its cell: the offsets x0, y0, z0 into the cell.
inline __m128 cellOffsets(__m128 p) { return _mm_sub_ps(p, _mm_cvtepi32_ps(cellIndex(p))); }

// fade(t) = t t t (t (6 t - 15) + 10), lane by lane.
inline __m128 fade4(__m128 t) {
    const __m128 t3 = _mm_mul_ps(_mm_mul_ps(t, t), t);
    const __m128 inner = _mm_sub_ps(_mm_mul_ps(t, _mm_set1_ps(6.0f)), _mm_set1_ps(15.0f));
    return _mm_mul_ps(t3, _mm_add_ps(_mm_mul_ps(t, inner), _mm_set1_ps(10.0f)));
}

// a + t (b - a), lane by lane.
inline __m128 interp4(__m128 t, __m128 a, __m128 b) { return _mm_add_ps(a, _mm_mul_ps(t, _mm_sub_ps(b, a))); }

// The last two interpolations: along y over the four x results
// (y0 z0, y1 z0, y0 z1, y1 z1), then along z, then the scale.
inline float finish(__m128 faded, __m128 alongX) {
    const __m128 alongY = interp4(_mm_shuffle_ps(faded, faded, _MM_SHUFFLE(1, 1, 1, 1)),
                                  _mm_shuffle_ps(alongX, alongX, _MM_SHUFFLE(2, 0, 2, 0)),
                                  _mm_shuffle_ps(alongX, alongX, _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128 nearZ = alongY;
    const __m128 farZ = _mm_shuffle_ps(alongY, alongY, _MM_SHUFFLE(1, 1, 1, 1));
    const __m128 w = _mm_shuffle_ps(faded, faded, _MM_SHUFFLE(2, 2, 2, 2));
    const __m128 alongZ = _mm_add_ss(nearZ, _mm_mul_ss(w, _mm_sub_ss(farZ, nearZ)));
    return _mm_cvtss_f32(_mm_mul_ss(_mm_set_ss(kNoiseScale3), alongZ));
}

// ---- SSE2: four corners per register ----------------------------------------

// Perlin::grad(h, x, y, z) lane by lane for h in 0..15: u = x for h & 8
// clear, else y; v = y for h < 4, x for h 12 and 14, else z; each negated by
// bits 0 and 1.
__m128 grad4(__m128i h, __m128 x, __m128 y, __m128 z) {
    auto select = [](__m128i mask, __m128 a, __m128 b) {
        const __m128 m = _mm_castsi128_ps(mask);
        return _mm_or_ps(_mm_and_ps(m, a), _mm_andnot_ps(m, b));
    };
    const __m128i useY = _mm_srai_epi32(_mm_slli_epi32(h, 28), 31);
    const __m128i below4 = _mm_cmplt_epi32(h, _mm_set1_epi32(4));
    const __m128i is12or14 = _mm_cmpeq_epi32(_mm_and_si128(h, _mm_set1_epi32(13)), _mm_set1_epi32(12));
    const __m128 u = select(useY, y, x);
    const __m128 v = select(below4, y, select(is12or14, x, z));
    const __m128i signU = _mm_slli_epi32(h, 31);
    const __m128i signV = _mm_slli_epi32(_mm_and_si128(h, _mm_set1_epi32(2)), 30);
    return _mm_add_ps(_mm_xor_ps(u, _mm_castsi128_ps(signU)), _mm_xor_ps(v, _mm_castsi128_ps(signV)));
}

float noiseSse2(float x, float y, float z) {
    const std::uint64_t hashes = cornerHashes(x, y, z);
    const __m128i words = _mm_unpacklo_epi16(_mm_cvtsi64_si128(static_cast<long long>(hashes)), _mm_setzero_si128());
    const __m128i hNear = _mm_and_si128(words, _mm_set1_epi32(15));
    const __m128i hFar = _mm_srli_epi32(words, 8);

    const __m128 f0 = cellOffsets(_mm_setr_ps(x, y, z, 0.0f));
    const __m128 f1 = _mm_sub_ps(f0, _mm_set1_ps(1.0f));
    const __m128 xy = _mm_unpacklo_ps(f0, f1);                                 // x0 x1 y0 y1
    const __m128 cx = _mm_movelh_ps(xy, xy);                                   // x0 x1 x0 x1
    const __m128 cy = _mm_shuffle_ps(xy, xy, _MM_SHUFFLE(3, 3, 2, 2));         // y0 y0 y1 y1
    const __m128 gNear = grad4(hNear, cx, cy, _mm_shuffle_ps(f0, f0, _MM_SHUFFLE(2, 2, 2, 2)));
    const __m128 gFar = grad4(hFar, cx, cy, _mm_shuffle_ps(f1, f1, _MM_SHUFFLE(2, 2, 2, 2)));

    const __m128 faded = fade4(f0);
    const __m128 alongX = interp4(_mm_shuffle_ps(faded, faded, _MM_SHUFFLE(0, 0, 0, 0)),
                                  _mm_shuffle_ps(gNear, gFar, _MM_SHUFFLE(2, 0, 2, 0)),
                                  _mm_shuffle_ps(gNear, gFar, _MM_SHUFFLE(3, 1, 3, 1)));
    return finish(faded, alongX);
}

// ---- AVX2: all eight corners in one register --------------------------------

GRITWELL_AVX2 float noiseAvx2(float x, float y, float z) {
    // One byte per corner, widened straight to lanes: lane 2k holds word k's
    // near corner and lane 2k + 1 its far one, so lane L is the corner
    // x = L >> 1 & 1, y = L >> 2, z = L & 1.
    const __m256i h = _mm256_cvtepu8_epi32(_mm_cvtsi64_si128(static_cast<long long>(cornerHashes(x, y, z))));

    const __m128 f0 = cellOffsets(_mm_setr_ps(x, y, z, 0.0f));
    const __m128 f1 = _mm_sub_ps(f0, _mm_set1_ps(1.0f));
    const __m256 offsets = _mm256_insertf128_ps(_mm256_castps128_ps256(f0), f1, 1);  // x0 y0 z0 . x1 y1 z1 .
    const __m256 cx = _mm256_permutevar8x32_ps(offsets, _mm256_setr_epi32(0, 0, 4, 4, 0, 0, 4, 4));
    const __m256 cy = _mm256_permutevar8x32_ps(offsets, _mm256_setr_epi32(1, 1, 1, 1, 5, 5, 5, 5));
    const __m256 cz = _mm256_permutevar8x32_ps(offsets, _mm256_setr_epi32(2, 6, 2, 6, 2, 6, 2, 6));
    const __m256 g = gradientLanes(h, cx, cy, cz);
    // The x0 corners to the low half, the x1 ones to the high half, each in
    // the order (y0 z0, y1 z0, y0 z1, y1 z1).
    const __m256 byX = _mm256_permutevar8x32_ps(g, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));

    const __m128 faded = fade4(f0);
    const __m128 alongX = interp4(_mm_shuffle_ps(faded, faded, _MM_SHUFFLE(0, 0, 0, 0)),
                                  _mm256_castps256_ps128(byX), _mm256_extractf128_ps(byX, 1));
    return finish(faded, alongX);
}

}  // namespace

float PerlinPoint::noise(float x, float y, float z) {
    if (simdLevel() >= SimdLevel::kAvx2) return noiseAvx2(x, y, z);
    return noiseSse2(x, y, z);
}

float PerlinPoint::noise(SimdLevel level, float x, float y, float z) {
    if (supportedSimdLevel(level) >= SimdLevel::kAvx2) return noiseAvx2(x, y, z);
    return noiseSse2(x, y, z);
}

}  // namespace gritwell
