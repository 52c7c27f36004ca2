// Ken Perlin's lattice noise (1985) with his improved gradients and fade (2002), evaluated
// across points: the same operations in the same order as Perlin::noise, one lane per point.
#include "noise/PerlinBatch.h"

// GCC 12's AVX-512 intrinsics start some results from a deliberately
// undefined register and then warn that it may be used uninitialised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

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

// ---- The hash chain in general registers -----------------------------------
//
// SSE2 has no gather, and AVX2's gathers cost more than they save (eight
// lanes ran no faster than SSE2's four), so both levels run each point's
// chain as the one-point kernel's does (pairs of entries per read, the last
// from kPermLow4), the points' chains independent of each other, and insert
// each last read, a pair of corners along the last axis, as a 16-bit word
// straight from the table. The rest is each level's own arithmetic.

// The cell bytes of N points' lanes, for the chains in general registers.
template <int N>
struct CellBytes {
    alignas(4 * N) unsigned lane[N];
};

inline CellBytes<4> cellBytes(__m128i i) {
    CellBytes<4> c;
    _mm_store_si128(reinterpret_cast<__m128i*>(c.lane), i);
    return c;
}

GRITWELL_AVX2 inline CellBytes<8> cellBytes(__m256i i) {
    CellBytes<8> c;
    _mm256_store_si256(reinterpret_cast<__m256i*>(c.lane), i);
    return c;
}

// Point P's chain in space, its last four reads (each the near-z and far-z
// corner of one x, y column) as 16-bit words: word P of the x0 columns'
// registers and word P + X1 of the x1 columns', y0 in the first two, y1 in
// the last two. Four points share a register between x0 and x1 (X1 = 4),
// eight points fill one each (X1 = 0).
template <int P, int X1, int N>
[[gnu::always_inline]] inline void columnPairs(const CellBytes<N>& cx, const CellBytes<N>& cy,
                                               const CellBytes<N>& cz, __m128i& y0x0, __m128i& y0x1,
                                               __m128i& y1x0, __m128i& y1x1) {
    const unsigned px = pairAt(kPerm, cx.lane[P]);
    const unsigned pa = pairAt(kPerm, (px & 255) + cy.lane[P]), pb = pairAt(kPerm, (px >> 8) + cy.lane[P]);
    const unsigned iz = cz.lane[P];
    y0x0 = _mm_insert_epi16(y0x0, static_cast<int>(pairAt(kPermLow4, (pa & 255) + iz)), P);
    y0x1 = _mm_insert_epi16(y0x1, static_cast<int>(pairAt(kPermLow4, (pb & 255) + iz)), P + X1);
    y1x0 = _mm_insert_epi16(y1x0, static_cast<int>(pairAt(kPermLow4, (pa >> 8) + iz)), P);
    y1x1 = _mm_insert_epi16(y1x1, static_cast<int>(pairAt(kPermLow4, (pb >> 8) + iz)), P + X1);
}

// Point P's chain in the plane: its two reads of the last axis, each the
// y0 and y1 corner of one x column, as word P (x0) and P + X1 (x1).
template <int P, int X1, int N>
[[gnu::always_inline]] inline void columnPairs(const CellBytes<N>& cx, const CellBytes<N>& cy, __m128i& x0,
                                               __m128i& x1) {
    const unsigned px = pairAt(kPerm, cx.lane[P]);
    x0 = _mm_insert_epi16(x0, static_cast<int>(pairAt(kPermLow4, (px & 255) + cy.lane[P])), P);
    x1 = _mm_insert_epi16(x1, static_cast<int>(pairAt(kPermLow4, (px >> 8) + cy.lane[P])), P + X1);
}

// ---- SSE2: four points per step --------------------------------------------

// Words of entry pairs to 32-bit lanes: words 0-3 hold four points' pairs
// on the near side of x, words 4-7 on the far side; each word's low byte is
// the nearer corner along the last axis, its high byte the farther. The
// lanes come out as (x0 near, x1 near, x0 far, x1 far).
inline void pairLanes(__m128i pairs, __m128i (&lanes)[4]) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i nearer = _mm_and_si128(pairs, _mm_set1_epi16(255)), farther = _mm_srli_epi16(pairs, 8);
    lanes[0] = _mm_unpacklo_epi16(nearer, zero);
    lanes[1] = _mm_unpackhi_epi16(nearer, zero);
    lanes[2] = _mm_unpacklo_epi16(farther, zero);
    lanes[3] = _mm_unpackhi_epi16(farther, zero);
}

void noiseSse2(const float* xs, const float* ys, const float* zs, int n, float* out) {
    int k = 0;
    for (; k + 4 <= n; k += 4) {
        const AxisLanes4 ax = axis(_mm_loadu_ps(xs + k)), ay = axis(_mm_loadu_ps(ys + k)),
                         az = axis(_mm_loadu_ps(zs + k));
        const CellBytes<4> cx = cellBytes(ax.i), cy = cellBytes(ay.i), cz = cellBytes(az.i);
        __m128i nearY = _mm_setzero_si128(), farY = _mm_setzero_si128();
        columnPairs<0, 4>(cx, cy, cz, nearY, nearY, farY, farY);
        columnPairs<1, 4>(cx, cy, cz, nearY, nearY, farY, farY);
        columnPairs<2, 4>(cx, cy, cz, nearY, nearY, farY, farY);
        columnPairs<3, 4>(cx, cy, cz, nearY, nearY, farY, farY);
        __m128i y0[4], y1[4];
        pairLanes(nearY, y0);
        pairLanes(farY, y1);
        const __m128i h[8] = {y0[0], y0[1], y1[0], y1[1], y0[2], y0[3], y1[2], y1[3]};
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
        const CellBytes<4> cx = cellBytes(ax.i), cy = cellBytes(ay.i);
        __m128i pairs = _mm_setzero_si128();
        columnPairs<0, 4>(cx, cy, pairs, pairs);
        columnPairs<1, 4>(cx, cy, pairs, pairs);
        columnPairs<2, 4>(cx, cy, pairs, pairs);
        columnPairs<3, 4>(cx, cy, pairs, pairs);
        __m128i h[4];
        pairLanes(pairs, h);
        const __m128 u = fade(ax.f0), v = fade(ay.f0);
        const __m128 value = interp(v, interp(u, gradient(h[0], ax.f0, ay.f0), gradient(h[1], ax.f1, ay.f0)),
                                    interp(u, gradient(h[2], ax.f0, ay.f1), gradient(h[3], ax.f1, ay.f1)));
        _mm_storeu_ps(out + k, _mm_mul_ps(_mm_set1_ps(kScale2), value));
    }
    noiseScalar(xs + k, ys + k, n - k, out + k);
}

// ---- AVX2: eight points per step -------------------------------------------

// Eight points' words of entry pairs, one column each, to the lanes of its
// two corners: the low byte is the nearer along the last axis, the high byte
// the farther. The gradients read only the low bits of a hash, so the
// nearer corner's lane keeps the farther above them unmasked.
[[gnu::always_inline]] GRITWELL_AVX2 inline void pairLanes(__m128i pairs, __m256i& nearer, __m256i& farther) {
    nearer = _mm256_cvtepu16_epi32(pairs);
    farther = _mm256_srli_epi32(nearer, 8);
}

GRITWELL_AVX2 void noiseAvx2(const float* xs, const float* ys, const float* zs, int n, float* out) {
    int k = 0;
    for (; k + 8 <= n; k += 8) {
        const AxisLanes8 ax = axis(_mm256_loadu_ps(xs + k)), ay = axis(_mm256_loadu_ps(ys + k)),
                         az = axis(_mm256_loadu_ps(zs + k));
        const CellBytes<8> cx = cellBytes(ax.i), cy = cellBytes(ay.i), cz = cellBytes(az.i);
        __m128i y0x0 = _mm_setzero_si128(), y0x1 = y0x0, y1x0 = y0x0, y1x1 = y0x0;
        columnPairs<0, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<1, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<2, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<3, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<4, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<5, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<6, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        columnPairs<7, 0>(cx, cy, cz, y0x0, y0x1, y1x0, y1x1);
        __m256i h[8];
        pairLanes(y0x0, h[0], h[4]);
        pairLanes(y0x1, h[1], h[5]);
        pairLanes(y1x0, h[2], h[6]);
        pairLanes(y1x1, h[3], h[7]);
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
        const CellBytes<8> cx = cellBytes(ax.i), cy = cellBytes(ay.i);
        __m128i x0 = _mm_setzero_si128(), x1 = x0;
        columnPairs<0, 0>(cx, cy, x0, x1);
        columnPairs<1, 0>(cx, cy, x0, x1);
        columnPairs<2, 0>(cx, cy, x0, x1);
        columnPairs<3, 0>(cx, cy, x0, x1);
        columnPairs<4, 0>(cx, cy, x0, x1);
        columnPairs<5, 0>(cx, cy, x0, x1);
        columnPairs<6, 0>(cx, cy, x0, x1);
        columnPairs<7, 0>(cx, cy, x0, x1);
        __m256i h[4];
        pairLanes(x0, h[0], h[2]);
        pairLanes(x1, h[1], h[3]);
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
