// Ken Perlin's lattice noise (1985) with his improved gradients and fade (2002), evaluated
// across points: the same operations in the same order as Perlin::noise, one lane per point.
#include "noise/PerlinBatch.h"

// GCC 12's AVX-512 intrinsics start some results from a deliberately
// undefined register and then warn that it may be used uninitialised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <cstdint>

#include "core/SimdTargets.h"
#include "noise/ByteTableLanes.h"
#include "noise/FractalSum.h"
#include "noise/Perlin.h"
#include "noise/PerlinLattice.h"

namespace gritwell {

namespace {

using namespace lattice;

void noiseScalar(const float* x, const float* y, const float* z, int n, float* out) {
    for (int i = 0; i < n; ++i) out[i] = Perlin::noise(x[i], y[i], z[i]);
}

void noiseScalar(const float* x, const float* y, int n, float* out) {
    for (int i = 0; i < n; ++i) out[i] = Perlin::noise(x[i], y[i]);
}

// ---- SSE2: four points per step, the hash chain in general registers -------
//
// SSE2 has no gather, so each point's chain runs as the one-point kernel's
// does (packedCornerHashes, pairs of entries per read), the four chains
// independent of each other; the corner bytes are then transposed into one
// register per corner and the rest is the wider kernels' arithmetic.

// The cell bytes of four points' lanes, for the chains in general registers.
struct CellBytes4 {
    alignas(16) unsigned lane[4];
};

inline CellBytes4 cellBytes(__m128i i) {
    CellBytes4 c;
    _mm_store_si128(reinterpret_cast<__m128i*>(c.lane), i);
    return c;
}

// Bytes 4j..4j+3 of grouped, widened to four 32-bit lanes, for j = 0..3.
inline void widenGroups(__m128i grouped, __m128i* lanes) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = _mm_unpacklo_epi8(grouped, zero), high = _mm_unpackhi_epi8(grouped, zero);
    lanes[0] = _mm_unpacklo_epi16(low, zero);
    lanes[1] = _mm_unpackhi_epi16(low, zero);
    lanes[2] = _mm_unpacklo_epi16(high, zero);
    lanes[3] = _mm_unpackhi_epi16(high, zero);
}

void noiseSse2(const float* xs, const float* ys, const float* zs, int n, float* out) {
    int k = 0;
    for (; k + 4 <= n; k += 4) {
        const AxisLanes4 ax = axis(_mm_loadu_ps(xs + k)), ay = axis(_mm_loadu_ps(ys + k)),
                         az = axis(_mm_loadu_ps(zs + k));
        const CellBytes4 cx = cellBytes(ax.i), cy = cellBytes(ay.i), cz = cellBytes(az.i);
        // Straight from general to vector registers: four words stored and
        // read back as one would wait for the stores to drain.
        const auto packed = [&](int p) {
            return _mm_cvtsi64_si128(static_cast<long long>(packedCornerHashes(cx.lane[p], cy.lane[p], cz.lane[p])));
        };
        const __m128i lo = _mm_unpacklo_epi64(packed(0), packed(1)), hi = _mm_unpacklo_epi64(packed(2), packed(3));
        // Byte j of the four points together, in two interleavings: points 0
        // and 2 (and 1 and 3), then all four. A word's byte 2c holds corner c
        // and byte 2c + 1 corner c + 4.
        const __m128i evenOdd0 = _mm_unpacklo_epi8(lo, hi), evenOdd1 = _mm_unpackhi_epi8(lo, hi);
        __m128i byByte[8];
        widenGroups(_mm_unpacklo_epi8(evenOdd0, evenOdd1), byByte);
        widenGroups(_mm_unpackhi_epi8(evenOdd0, evenOdd1), byByte + 4);
        const __m128i h[8] = {byByte[0], byByte[2], byByte[4], byByte[6],
                              byByte[1], byByte[3], byByte[5], byByte[7]};
        const __m128 u = fade(ax.f0), v = fade(ay.f0), w = fade(az.f0);
        const __m128 nearZ =
            interp(v, interp(u, gradient(h[0], ax.f0, ay.f0, az.f0), gradient(h[1], ax.f1, ay.f0, az.f0)),
                   interp(u, gradient(h[2], ax.f0, ay.f1, az.f0), gradient(h[3], ax.f1, ay.f1, az.f0)));
        const __m128 farZ =
            interp(v, interp(u, gradient(h[4], ax.f0, ay.f0, az.f1), gradient(h[5], ax.f1, ay.f0, az.f1)),
                   interp(u, gradient(h[6], ax.f0, ay.f1, az.f1), gradient(h[7], ax.f1, ay.f1, az.f1)));
        _mm_storeu_ps(out + k, _mm_mul_ps(_mm_set1_ps(kScale3), interp(w, nearZ, farZ)));
    }
    noiseScalar(xs + k, ys + k, zs + k, n - k, out + k);
}

void noiseSse2(const float* xs, const float* ys, int n, float* out) {
    int k = 0;
    for (; k + 4 <= n; k += 4) {
        const AxisLanes4 ax = axis(_mm_loadu_ps(xs + k)), ay = axis(_mm_loadu_ps(ys + k));
        const CellBytes4 cx = cellBytes(ax.i), cy = cellBytes(ay.i);
        const auto packed = [&](int p) {
            return _mm_cvtsi32_si128(static_cast<int>(packedCornerHashes(cx.lane[p], cy.lane[p])));
        };
        const __m128i words = _mm_unpacklo_epi64(_mm_unpacklo_epi32(packed(0), packed(1)),
                                                 _mm_unpacklo_epi32(packed(2), packed(3)));
        // Byte j of the four points together, in two interleavings: first
        // points 0 and 2 beside 1 and 3, then all four. A word's bytes are
        // corners 0, 2, 1, 3.
        const __m128i halves = _mm_unpacklo_epi8(words, _mm_unpackhi_epi64(words, words));
        __m128i byByte[4];
        widenGroups(_mm_unpacklo_epi8(halves, _mm_unpackhi_epi64(halves, halves)), byByte);
        const __m128i h[4] = {byByte[0], byByte[2], byByte[1], byByte[3]};
        const __m128 u = fade(ax.f0), v = fade(ay.f0);
        const __m128 value = interp(v, interp(u, gradient(h[0], ax.f0, ay.f0), gradient(h[1], ax.f1, ay.f0)),
                                    interp(u, gradient(h[2], ax.f0, ay.f1), gradient(h[3], ax.f1, ay.f1)));
        _mm_storeu_ps(out + k, _mm_mul_ps(_mm_set1_ps(kScale2), value));
    }
    noiseScalar(xs + k, ys + k, n - k, out + k);
}

// ---- AVX2: eight points per step, the hash chain through gathers ----------

GRITWELL_AVX2 void noiseAvx2(const float* xs, const float* ys, const float* zs, int n, float* out) {
    int k = 0;
    for (; k + 8 <= n; k += 8) {
        const AxisLanes8 ax = axis(_mm256_loadu_ps(xs + k)), ay = axis(_mm256_loadu_ps(ys + k)),
                         az = axis(_mm256_loadu_ps(zs + k));
        __m256i h[8];
        cornerHashes(ax.i, ay.i, az.i, h);
        const __m256 u = fade(ax.f0), v = fade(ay.f0), w = fade(az.f0);
        const __m256 nearZ =
            interp(v, interp(u, gradient(h[0], ax.f0, ay.f0, az.f0), gradient(h[1], ax.f1, ay.f0, az.f0)),
                   interp(u, gradient(h[2], ax.f0, ay.f1, az.f0), gradient(h[3], ax.f1, ay.f1, az.f0)));
        const __m256 farZ =
            interp(v, interp(u, gradient(h[4], ax.f0, ay.f0, az.f1), gradient(h[5], ax.f1, ay.f0, az.f1)),
                   interp(u, gradient(h[6], ax.f0, ay.f1, az.f1), gradient(h[7], ax.f1, ay.f1, az.f1)));
        _mm256_storeu_ps(out + k, _mm256_mul_ps(_mm256_set1_ps(kScale3), interp(w, nearZ, farZ)));
    }
    noiseScalar(xs + k, ys + k, zs + k, n - k, out + k);
}

GRITWELL_AVX2 void noiseAvx2(const float* xs, const float* ys, int n, float* out) {
    int k = 0;
    for (; k + 8 <= n; k += 8) {
        const AxisLanes8 ax = axis(_mm256_loadu_ps(xs + k)), ay = axis(_mm256_loadu_ps(ys + k));
        __m256i h[4];
        cornerHashes(ax.i, ay.i, h);
        const __m256 u = fade(ax.f0), v = fade(ay.f0);
        const __m256 value = interp(v, interp(u, gradient(h[0], ax.f0, ay.f0), gradient(h[1], ax.f1, ay.f0)),
                                    interp(u, gradient(h[2], ax.f0, ay.f1), gradient(h[3], ax.f1, ay.f1)));
        _mm256_storeu_ps(out + k, _mm256_mul_ps(_mm256_set1_ps(kScale2), value));
    }
    noiseScalar(xs + k, ys + k, n - k, out + k);
}

// ---- AVX-512: sixteen points per step, the hash chain through byte permutes

GRITWELL_AVX512 void noiseAvx512(const float* xs, const float* ys, const float* zs, int n, float* out) {
    const ByteTableLanes perm = permLanes();
    int k = 0;
    for (; k + 16 <= n; k += 16) {
        const AxisLanes16 ax = axis(_mm512_loadu_ps(xs + k)), ay = axis(_mm512_loadu_ps(ys + k)),
                          az = axis(_mm512_loadu_ps(zs + k));
        __m512i h[8];
        cornerHashes(perm, ax.i, ay.i, az.i, h);
        const __m512 u = fade(ax.f0), v = fade(ay.f0), w = fade(az.f0);
        const __m512 nearZ =
            interp(v, interp(u, gradient(h[0], ax.f0, ay.f0, az.f0), gradient(h[1], ax.f1, ay.f0, az.f0)),
                   interp(u, gradient(h[2], ax.f0, ay.f1, az.f0), gradient(h[3], ax.f1, ay.f1, az.f0)));
        const __m512 farZ =
            interp(v, interp(u, gradient(h[4], ax.f0, ay.f0, az.f1), gradient(h[5], ax.f1, ay.f0, az.f1)),
                   interp(u, gradient(h[6], ax.f0, ay.f1, az.f1), gradient(h[7], ax.f1, ay.f1, az.f1)));
        _mm512_storeu_ps(out + k, _mm512_mul_ps(_mm512_set1_ps(kScale3), interp(w, nearZ, farZ)));
    }
    noiseScalar(xs + k, ys + k, zs + k, n - k, out + k);
}

GRITWELL_AVX512 void noiseAvx512(const float* xs, const float* ys, int n, float* out) {
    const ByteTableLanes perm = permLanes();
    int k = 0;
    for (; k + 16 <= n; k += 16) {
        const AxisLanes16 ax = axis(_mm512_loadu_ps(xs + k)), ay = axis(_mm512_loadu_ps(ys + k));
        __m512i h[4];
        cornerHashes(perm, ax.i, ay.i, h);
        const __m512 u = fade(ax.f0), v = fade(ay.f0);
        const __m512 value = interp(v, interp(u, gradient(h[0], ax.f0, ay.f0), gradient(h[1], ax.f1, ay.f0)),
                                    interp(u, gradient(h[2], ax.f0, ay.f1), gradient(h[3], ax.f1, ay.f1)));
        _mm512_storeu_ps(out + k, _mm512_mul_ps(_mm512_set1_ps(kScale2), value));
    }
    noiseScalar(xs + k, ys + k, n - k, out + k);
}

}  // namespace

void PerlinBatch::noise(SimdLevel level, const float* x, const float* y, const float* z, int n, float* out) {
    switch (supportedSimdLevel(level)) {
    case SimdLevel::kAvx512: noiseAvx512(x, y, z, n, out); return;
    case SimdLevel::kAvx2: noiseAvx2(x, y, z, n, out); return;
    case SimdLevel::kScalar: break;
    }
    noiseSse2(x, y, z, n, out);
}

void PerlinBatch::noise(const float* x, const float* y, const float* z, int n, float* out) {
    noise(simdLevel(), x, y, z, n, out);
}

void PerlinBatch::noise(SimdLevel level, const float* x, const float* y, int n, float* out) {
    switch (supportedSimdLevel(level)) {
    case SimdLevel::kAvx512: noiseAvx512(x, y, n, out); return;
    case SimdLevel::kAvx2: noiseAvx2(x, y, n, out); return;
    case SimdLevel::kScalar: break;
    }
    noiseSse2(x, y, n, out);
}

void PerlinBatch::noise(const float* x, const float* y, int n, float* out) { noise(simdLevel(), x, y, n, out); }

// Perlin::Get's fractal sum, over blocks of points.
void PerlinBatch::Get(float* x, float* y, float* z, int n, int octaves, float freq, float amp, float* out) {
    for (int i = 0; i < n; ++i) {
        x[i] = x[i] * freq;
        y[i] = y[i] * freq;
        z[i] = z[i] * freq;
    }
    fractalSumBlock(x, y, z, n, static_cast<float>(octaves), Perlin::kGetLacunarity, Perlin::kGetGain, amp,
                    addWeighted, out);
}

void PerlinBatch::Get(float* x, float* y, int n, int octaves, float freq, float amp, float* out) {
    for (int i = 0; i < n; ++i) {
        x[i] = x[i] * freq;
        y[i] = y[i] * freq;
    }
    fractalSumBlock(x, y, nullptr, n, static_cast<float>(octaves), Perlin::kGetLacunarity, Perlin::kGetGain, amp,
                    addWeighted, out);
}

}  // namespace gritwell
