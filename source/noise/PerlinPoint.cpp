// Ken Perlin's lattice noise (1985) with his improved gradients and fade (2002), one point
// per call. A single call is bound by its chain of dependent steps (cell index, three
// permutation reads, gradients, three interpolations), so the kernels keep that chain
// short and issue few instructions, letting the processor overlap successive calls.
#include "noise/PerlinPoint.h"

#include <array>
#include <cstdint>

#include "core/FloatToIntLanes.h"
#include "core/SimdTargets.h"
#include "noise/Perlin.h"
#include "noise/PerlinLattice.h"

namespace gritwell {

using namespace lattice;

// ---- The definition ---------------------------------------------------------

float PerlinPoint::reference(float x, float y, float z) {
    const Axis ax = axis(x), ay = axis(y), az = axis(z);
    const std::array<int, 8> h = cornerHashes(ax.i, ay.i, az.i);
    const float u = fade(ax.f0), v = fade(ay.f0), w = fade(az.f0);
    // Corner c's gradient dotted with the point's offset from that corner.
    const auto corner = [&](int c) {
        return Perlin::grad(h[c], (c & 1) ? ax.f1 : ax.f0, (c & 2) ? ay.f1 : ay.f0, (c & 4) ? az.f1 : az.f0);
    };
    const float nearZ = interp(v, interp(u, corner(0), corner(1)), interp(u, corner(2), corner(3)));
    const float farZ = interp(v, interp(u, corner(4), corner(5)), interp(u, corner(6), corner(7)));
    return kScale3 * interp(w, nearZ, farZ);
}

namespace {

// The eight corners' gradient bits (packedCornerHashes) of the point's cell.
inline std::uint64_t pointHashes(float x, float y, float z) {
    return packedCornerHashes(static_cast<unsigned>(cellIndexSse(x)) & 255,
                              static_cast<unsigned>(cellIndexSse(y)) & 255,
                              static_cast<unsigned>(cellIndexSse(z)) & 255);
}

// The last two interpolations: along y over the four x results
// (y0 z0, y1 z0, y0 z1, y1 z1), then along z, then the scale.
inline float finish(__m128 faded, __m128 alongX) {
    const __m128 alongY = interp(_mm_shuffle_ps(faded, faded, _MM_SHUFFLE(1, 1, 1, 1)),
                                 _mm_shuffle_ps(alongX, alongX, _MM_SHUFFLE(2, 0, 2, 0)),
                                 _mm_shuffle_ps(alongX, alongX, _MM_SHUFFLE(3, 1, 3, 1)));
    const __m128 nearZ = alongY;
    const __m128 farZ = _mm_shuffle_ps(alongY, alongY, _MM_SHUFFLE(1, 1, 1, 1));
    const __m128 w = _mm_shuffle_ps(faded, faded, _MM_SHUFFLE(2, 2, 2, 2));
    const __m128 alongZ = _mm_add_ss(nearZ, _mm_mul_ss(w, _mm_sub_ss(farZ, nearZ)));
    return _mm_cvtss_f32(_mm_mul_ss(_mm_set_ss(kScale3), alongZ));
}

// ---- SSE2: four corners per register ----------------------------------------

float noiseSse2(float x, float y, float z) {
    const std::uint64_t hashes = pointHashes(x, y, z);
    const __m128i words = _mm_unpacklo_epi16(_mm_cvtsi64_si128(static_cast<long long>(hashes)), _mm_setzero_si128());
    const __m128i hNear = _mm_and_si128(words, _mm_set1_epi32(15));
    const __m128i hFar = _mm_srli_epi32(words, 8);

    const __m128 f0 = nearOffsets(_mm_setr_ps(x, y, z, 0.0f));
    const __m128 f1 = _mm_sub_ps(f0, _mm_set1_ps(1.0f));
    const __m128 xy = _mm_unpacklo_ps(f0, f1);                                 // x0 x1 y0 y1
    const __m128 cx = _mm_movelh_ps(xy, xy);                                   // x0 x1 x0 x1
    const __m128 cy = _mm_shuffle_ps(xy, xy, _MM_SHUFFLE(3, 3, 2, 2));         // y0 y0 y1 y1
    const __m128 gNear = gradient(hNear, cx, cy, _mm_shuffle_ps(f0, f0, _MM_SHUFFLE(2, 2, 2, 2)));
    const __m128 gFar = gradient(hFar, cx, cy, _mm_shuffle_ps(f1, f1, _MM_SHUFFLE(2, 2, 2, 2)));

    const __m128 faded = fade(f0);
    const __m128 alongX = interp(_mm_shuffle_ps(faded, faded, _MM_SHUFFLE(0, 0, 0, 0)),
                                 _mm_shuffle_ps(gNear, gFar, _MM_SHUFFLE(2, 0, 2, 0)),
                                 _mm_shuffle_ps(gNear, gFar, _MM_SHUFFLE(3, 1, 3, 1)));
    return finish(faded, alongX);
}

// ---- AVX2: all eight corners in one register --------------------------------

GRITWELL_AVX2 float noiseAvx2(float x, float y, float z) {
    // One byte per corner, widened straight to lanes: lane 2k holds word k's
    // near corner and lane 2k + 1 its far one, so lane L is the corner
    // x = L >> 1 & 1, y = L >> 2, z = L & 1.
    const __m256i h = _mm256_cvtepu8_epi32(_mm_cvtsi64_si128(static_cast<long long>(pointHashes(x, y, z))));

    const __m128 f0 = nearOffsets(_mm_setr_ps(x, y, z, 0.0f));
    const __m128 f1 = _mm_sub_ps(f0, _mm_set1_ps(1.0f));
    const __m256 offsets = _mm256_insertf128_ps(_mm256_castps128_ps256(f0), f1, 1);  // x0 y0 z0 . x1 y1 z1 .
    const __m256 cx = _mm256_permutevar8x32_ps(offsets, _mm256_setr_epi32(0, 0, 4, 4, 0, 0, 4, 4));
    const __m256 cy = _mm256_permutevar8x32_ps(offsets, _mm256_setr_epi32(1, 1, 1, 1, 5, 5, 5, 5));
    const __m256 cz = _mm256_permutevar8x32_ps(offsets, _mm256_setr_epi32(2, 6, 2, 6, 2, 6, 2, 6));
    const __m256 g = gradient(h, cx, cy, cz);
    // The x0 corners to the low half, the x1 ones to the high half, each in
    // the order (y0 z0, y1 z0, y0 z1, y1 z1).
    const __m256 byX = _mm256_permutevar8x32_ps(g, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));

    const __m128 faded = fade(f0);
    const __m128 alongX = interp(_mm_shuffle_ps(faded, faded, _MM_SHUFFLE(0, 0, 0, 0)),
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
