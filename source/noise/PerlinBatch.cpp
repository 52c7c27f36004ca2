// Ken Perlin's lattice noise (1985) with his improved gradients and fade (2002), evaluated
// across points: the same operations in the same order as Perlin::noise, one lane per point.
#include "noise/PerlinBatch.h"

// GCC 12's AVX-512 intrinsics start some results from a deliberately
// undefined register and then warn that it may be used uninitialised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "core/FloatToIntLanes.h"
#include "core/SimdTargets.h"
#include "noise/ByteTableLanes.h"
#include "noise/Perlin.h"
#include "noise/PerlinGradientLanes.h"
#include "noise/PerlinPermutation.h"

namespace gritwell {

namespace {

// The scales that bring the 2-D and 3-D lattice noise to about [-1, 1].
constexpr float kNoiseScale2 = 0.507f;
constexpr float kNoiseScale3 = 0.936f;
// Points per pass of the octave sum: its scratch lives on the stack.
constexpr int kBlock = 256;

void noiseScalar(const float* x, const float* y, const float* z, float* out, int n) {
    for (int i = 0; i < n; ++i) out[i] = Perlin::noise(x[i], y[i], z[i]);
}

void noiseScalar(const float* x, const float* y, float* out, int n) {
    for (int i = 0; i < n; ++i) out[i] = Perlin::noise(x[i], y[i]);
}

// ---- AVX2: eight points per step, the hash chain through gathers ----------

// The permutation twice over, as bytes, with spare bytes after it so that a
// 32-bit read at any index the hash chain forms (at most 510) stays inside.
// One gathered word then holds both perm[i] and perm[i + 1], and every pair
// of lookups the noise needs costs one gather.
struct PermBytes {
    alignas(64) std::uint8_t bytes[512 + 4];
};

constexpr PermBytes makePermBytes() {
    PermBytes p{};
    const auto doubled = doubledPerlinPermutation<std::uint8_t>();
    for (int i = 0; i < 512; ++i) p.bytes[i] = doubled[i];
    return p;
}

constexpr PermBytes kPermBytes = makePermBytes();

GRITWELL_AVX2 inline __m256 fade(__m256 t) {
    const __m256 t3 = _mm256_mul_ps(_mm256_mul_ps(t, t), t);
    const __m256 inner = _mm256_sub_ps(_mm256_mul_ps(t, _mm256_set1_ps(6.0f)), _mm256_set1_ps(15.0f));
    return _mm256_mul_ps(t3, _mm256_add_ps(_mm256_mul_ps(t, inner), _mm256_set1_ps(10.0f)));
}

GRITWELL_AVX2 inline __m256 interp(__m256 t, __m256 a, __m256 b) {
    return _mm256_add_ps(a, _mm256_mul_ps(t, _mm256_sub_ps(b, a)));
}

// Perlin::grad(h, x, y, z) on the low four bits of each hash.
GRITWELL_AVX2 inline __m256 grad(__m256i hash, __m256 x, __m256 y, __m256 z) {
    return gradientLanes(_mm256_and_si256(hash, _mm256_set1_epi32(15)), x, y, z);
}

// perm[index] and perm[index + 1], lane by lane.
struct PermPair {
    __m256i at, next;
};

GRITWELL_AVX2 inline PermPair permPair(__m256i index) {
    const __m256i word = _mm256_i32gather_epi32(reinterpret_cast<const int*>(kPermBytes.bytes), index, 1);
    const __m256i low8 = _mm256_set1_epi32(255);
    return {_mm256_and_si256(word, low8), _mm256_and_si256(_mm256_srli_epi32(word, 8), low8)};
}

GRITWELL_AVX2 void noiseAvx2(const float* xs, const float* ys, const float* zs, float* out, int n) {
    const __m256i low8 = _mm256_set1_epi32(255);
    const __m256 onef = _mm256_set1_ps(1.0f);
    int k = 0;
    for (; k + 8 <= n; k += 8) {
        const __m256 x = _mm256_loadu_ps(xs + k), y = _mm256_loadu_ps(ys + k), z = _mm256_loadu_ps(zs + k);
        const __m256i cx = cellIndex(x), cy = cellIndex(y), cz = cellIndex(z);
        const __m256i ix = _mm256_and_si256(cx, low8), iy = _mm256_and_si256(cy, low8), iz = _mm256_and_si256(cz, low8);
        const __m256 x0 = _mm256_sub_ps(x, _mm256_cvtepi32_ps(cx));
        const __m256 y0 = _mm256_sub_ps(y, _mm256_cvtepi32_ps(cy));
        const __m256 z0 = _mm256_sub_ps(z, _mm256_cvtepi32_ps(cz));
        const __m256 x1 = _mm256_sub_ps(x0, onef), y1 = _mm256_sub_ps(y0, onef), z1 = _mm256_sub_ps(z0, onef);
        const PermPair px = permPair(ix);
        const __m256i a = _mm256_add_epi32(px.at, iy), b = _mm256_add_epi32(px.next, iy);
        const PermPair pa = permPair(a), pb = permPair(b);
        const __m256i aa = _mm256_add_epi32(pa.at, iz), ab = _mm256_add_epi32(pa.next, iz);
        const __m256i ba = _mm256_add_epi32(pb.at, iz), bb = _mm256_add_epi32(pb.next, iz);
        // Each pair: the corner's hash at z0 and at z1.
        const PermPair haa = permPair(aa), hab = permPair(ab), hba = permPair(ba), hbb = permPair(bb);
        const __m256 u = fade(x0), v = fade(y0), w = fade(z0);
        const __m256 near = interp(v, interp(u, grad(haa.at, x0, y0, z0), grad(hba.at, x1, y0, z0)),
                                   interp(u, grad(hab.at, x0, y1, z0), grad(hbb.at, x1, y1, z0)));
        const __m256 far = interp(v, interp(u, grad(haa.next, x0, y0, z1), grad(hba.next, x1, y0, z1)),
                                  interp(u, grad(hab.next, x0, y1, z1), grad(hbb.next, x1, y1, z1)));
        _mm256_storeu_ps(out + k, _mm256_mul_ps(_mm256_set1_ps(kNoiseScale3), interp(w, near, far)));
    }
    noiseScalar(xs + k, ys + k, zs + k, out + k, n - k);
}

// Perlin::grad(h, x, y): u = x for h & 4 clear, else y; v the other one,
// doubled; each negated by bits 0 and 1. Only those three bits are read.
GRITWELL_AVX2 inline __m256 grad(__m256i hash, __m256 x, __m256 y) {
    const __m256 swap = _mm256_castsi256_ps(_mm256_slli_epi32(hash, 29));
    const __m256 u = _mm256_blendv_ps(x, y, swap);
    const __m256 v = _mm256_mul_ps(_mm256_set1_ps(2.0f), _mm256_blendv_ps(y, x, swap));
    const __m256 signU = _mm256_castsi256_ps(_mm256_slli_epi32(hash, 31));
    const __m256 signV = _mm256_castsi256_ps(_mm256_slli_epi32(_mm256_srli_epi32(hash, 1), 31));
    return _mm256_add_ps(_mm256_xor_ps(u, signU), _mm256_xor_ps(v, signV));
}

GRITWELL_AVX2 void noiseAvx2(const float* xs, const float* ys, float* out, int n) {
    const __m256i low8 = _mm256_set1_epi32(255);
    const __m256 onef = _mm256_set1_ps(1.0f);
    int k = 0;
    for (; k + 8 <= n; k += 8) {
        const __m256 x = _mm256_loadu_ps(xs + k), y = _mm256_loadu_ps(ys + k);
        const __m256i cx = cellIndex(x), cy = cellIndex(y);
        const __m256i ix = _mm256_and_si256(cx, low8), iy = _mm256_and_si256(cy, low8);
        const __m256 x0 = _mm256_sub_ps(x, _mm256_cvtepi32_ps(cx));
        const __m256 y0 = _mm256_sub_ps(y, _mm256_cvtepi32_ps(cy));
        const __m256 x1 = _mm256_sub_ps(x0, onef), y1 = _mm256_sub_ps(y0, onef);
        const PermPair px = permPair(ix);
        // Each pair: the hash at y0 and at y1.
        const PermPair ha = permPair(_mm256_add_epi32(px.at, iy)), hb = permPair(_mm256_add_epi32(px.next, iy));
        const __m256 u = fade(x0), v = fade(y0);
        const __m256 value = interp(v, interp(u, grad(ha.at, x0, y0), grad(hb.at, x1, y0)),
                                    interp(u, grad(ha.next, x0, y1), grad(hb.next, x1, y1)));
        _mm256_storeu_ps(out + k, _mm256_mul_ps(_mm256_set1_ps(kNoiseScale2), value));
    }
    noiseScalar(xs + k, ys + k, out + k, n - k);
}

// ---- AVX-512: sixteen points per step, the hash chain through byte permutes

GRITWELL_AVX512 inline __m512 fade(__m512 t) {
    const __m512 t3 = _mm512_mul_ps(_mm512_mul_ps(t, t), t);
    const __m512 inner = _mm512_sub_ps(_mm512_mul_ps(t, _mm512_set1_ps(6.0f)), _mm512_set1_ps(15.0f));
    return _mm512_mul_ps(t3, _mm512_add_ps(_mm512_mul_ps(t, inner), _mm512_set1_ps(10.0f)));
}

GRITWELL_AVX512 inline __m512 interp(__m512 t, __m512 a, __m512 b) {
    return _mm512_add_ps(a, _mm512_mul_ps(t, _mm512_sub_ps(b, a)));
}

GRITWELL_AVX512 inline __m512 grad(__m512i hash, __m512 x, __m512 y, __m512 z) {
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

GRITWELL_AVX512 void noiseAvx512(const float* xs, const float* ys, const float* zs, float* out, int n) {
    // perm[i] = P[i & 255]: the doubled table repeats, so the low byte of an
    // index is all it needs.
    const ByteTableLanes perm(kPerlinPermutation.data());
    const __m512i one = _mm512_set1_epi32(1), low8 = _mm512_set1_epi32(255);
    const __m512 onef = _mm512_set1_ps(1.0f);
    int k = 0;
    for (; k + 16 <= n; k += 16) {
        const __m512 x = _mm512_loadu_ps(xs + k), y = _mm512_loadu_ps(ys + k), z = _mm512_loadu_ps(zs + k);
        const __m512i cx = cellIndex(x), cy = cellIndex(y), cz = cellIndex(z);
        const __m512i ix = _mm512_and_si512(cx, low8), iy = _mm512_and_si512(cy, low8), iz = _mm512_and_si512(cz, low8);
        const __m512 x0 = _mm512_sub_ps(x, _mm512_cvtepi32_ps(cx));
        const __m512 y0 = _mm512_sub_ps(y, _mm512_cvtepi32_ps(cy));
        const __m512 z0 = _mm512_sub_ps(z, _mm512_cvtepi32_ps(cz));
        const __m512 x1 = _mm512_sub_ps(x0, onef), y1 = _mm512_sub_ps(y0, onef), z1 = _mm512_sub_ps(z0, onef);
        const __m512i a = _mm512_add_epi32(perm(ix), iy);
        const __m512i b = _mm512_add_epi32(perm(_mm512_add_epi32(ix, one)), iy);
        const __m512i aa = _mm512_add_epi32(perm(a), iz);
        const __m512i ab = _mm512_add_epi32(perm(_mm512_add_epi32(a, one)), iz);
        const __m512i ba = _mm512_add_epi32(perm(b), iz);
        const __m512i bb = _mm512_add_epi32(perm(_mm512_add_epi32(b, one)), iz);
        const __m512 u = fade(x0), v = fade(y0), w = fade(z0);
        const __m512 near = interp(v, interp(u, grad(perm(aa), x0, y0, z0), grad(perm(ba), x1, y0, z0)),
                                   interp(u, grad(perm(ab), x0, y1, z0), grad(perm(bb), x1, y1, z0)));
        const __m512 far = interp(v,
                                  interp(u, grad(perm(_mm512_add_epi32(aa, one)), x0, y0, z1),
                                         grad(perm(_mm512_add_epi32(ba, one)), x1, y0, z1)),
                                  interp(u, grad(perm(_mm512_add_epi32(ab, one)), x0, y1, z1),
                                         grad(perm(_mm512_add_epi32(bb, one)), x1, y1, z1)));
        _mm512_storeu_ps(out + k, _mm512_mul_ps(_mm512_set1_ps(kNoiseScale3), interp(w, near, far)));
    }
    noiseScalar(xs + k, ys + k, zs + k, out + k, n - k);
}

GRITWELL_AVX512 inline __m512 grad(__m512i hash, __m512 x, __m512 y) {
    const __mmask16 swap = _mm512_test_epi32_mask(hash, _mm512_set1_epi32(4));
    const __m512 u = _mm512_mask_blend_ps(swap, x, y);
    const __m512 v = _mm512_mul_ps(_mm512_set1_ps(2.0f), _mm512_mask_blend_ps(swap, y, x));
    const __m512i signU = _mm512_slli_epi32(hash, 31);
    const __m512i signV = _mm512_slli_epi32(_mm512_srli_epi32(hash, 1), 31);
    return _mm512_add_ps(_mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(u), signU)),
                         _mm512_castsi512_ps(_mm512_xor_si512(_mm512_castps_si512(v), signV)));
}

GRITWELL_AVX512 void noiseAvx512(const float* xs, const float* ys, float* out, int n) {
    const ByteTableLanes perm(kPerlinPermutation.data());
    const __m512i one = _mm512_set1_epi32(1), low8 = _mm512_set1_epi32(255);
    const __m512 onef = _mm512_set1_ps(1.0f);
    int k = 0;
    for (; k + 16 <= n; k += 16) {
        const __m512 x = _mm512_loadu_ps(xs + k), y = _mm512_loadu_ps(ys + k);
        const __m512i cx = cellIndex(x), cy = cellIndex(y);
        const __m512i ix = _mm512_and_si512(cx, low8), iy = _mm512_and_si512(cy, low8);
        const __m512 x0 = _mm512_sub_ps(x, _mm512_cvtepi32_ps(cx));
        const __m512 y0 = _mm512_sub_ps(y, _mm512_cvtepi32_ps(cy));
        const __m512 x1 = _mm512_sub_ps(x0, onef), y1 = _mm512_sub_ps(y0, onef);
        const __m512i a = _mm512_add_epi32(perm(ix), iy);
        const __m512i b = _mm512_add_epi32(perm(_mm512_add_epi32(ix, one)), iy);
        const __m512 u = fade(x0), v = fade(y0);
        const __m512 value = interp(v, interp(u, grad(perm(a), x0, y0), grad(perm(b), x1, y0)),
                                    interp(u, grad(perm(_mm512_add_epi32(a, one)), x0, y1),
                                           grad(perm(_mm512_add_epi32(b, one)), x1, y1)));
        _mm512_storeu_ps(out + k, _mm512_mul_ps(_mm512_set1_ps(kNoiseScale2), value));
    }
    noiseScalar(xs + k, ys + k, out + k, n - k);
}

bool sameBits(float a, float b) { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); }

}  // namespace

void PerlinBatch::noise(SimdLevel level, const float* x, const float* y, const float* z, float* out, int n) {
    switch (supportedSimdLevel(level)) {
    case SimdLevel::kAvx512: noiseAvx512(x, y, z, out, n); return;
    case SimdLevel::kAvx2: noiseAvx2(x, y, z, out, n); return;
    case SimdLevel::kScalar: break;
    }
    noiseScalar(x, y, z, out, n);
}

void PerlinBatch::noise(const float* x, const float* y, const float* z, float* out, int n) {
    noise(simdLevel(), x, y, z, out, n);
}

void PerlinBatch::noise(SimdLevel level, const float* x, const float* y, float* out, int n) {
    switch (supportedSimdLevel(level)) {
    case SimdLevel::kAvx512: noiseAvx512(x, y, out, n); return;
    case SimdLevel::kAvx2: noiseAvx2(x, y, out, n); return;
    case SimdLevel::kScalar: break;
    }
    noiseScalar(x, y, out, n);
}

void PerlinBatch::noise(const float* x, const float* y, float* out, int n) { noise(simdLevel(), x, y, out, n); }

namespace {

// Perlin::Get stops a point once an octave leaves its position, sum and
// amplitude unchanged; a further octave from that state would leave it
// unchanged again. So a pass runs every point until all have stopped, and
// the finished ones keep their bits. z is null in the plane.
void octaveSum(float* x, float* y, float* z, int n, int octaves, float freq, float amp, float* out) {
    for (int i = 0; i < n; ++i) {
        x[i] = x[i] * freq;
        y[i] = y[i] * freq;
        if (z) z[i] = z[i] * freq;
        out[i] = 0.0f;
    }
    for (int start = 0; start < n; start += kBlock) {
        const int m = n - start < kBlock ? n - start : kBlock;
        float* bx = x + start;
        float* by = y + start;
        float* bz = z ? z + start : nullptr;
        float* sum = out + start;
        float a = amp;
        float sample[kBlock];
        for (int o = 0; o < octaves; ++o) {
            if (bz)
                PerlinBatch::noise(bx, by, bz, sample, m);
            else
                PerlinBatch::noise(bx, by, sample, m);
            // Separate loops for space and the plane: a test on z per point
            // would cost more than the noise. These are the steps of
            // fractalOctave (FractalSum.h) with lacunarity 2, kept here:
            // calling it measured 21 to 28 ns a point for Perlin Noise.
            bool changed = false;
            if (bz) {
                for (int i = 0; i < m; ++i) {
                    const float s = sum[i] + sample[i] * a;
                    const float nx = bx[i] * 2.0f, ny = by[i] * 2.0f, nz = bz[i] * 2.0f;
                    changed |= !sameBits(s, sum[i]) || !sameBits(nx, bx[i]) || !sameBits(ny, by[i]) ||
                               !sameBits(nz, bz[i]);
                    sum[i] = s;
                    bx[i] = nx;
                    by[i] = ny;
                    bz[i] = nz;
                }
            } else {
                for (int i = 0; i < m; ++i) {
                    const float s = sum[i] + sample[i] * a;
                    const float nx = bx[i] * 2.0f, ny = by[i] * 2.0f;
                    changed |= !sameBits(s, sum[i]) || !sameBits(nx, bx[i]) || !sameBits(ny, by[i]);
                    sum[i] = s;
                    bx[i] = nx;
                    by[i] = ny;
                }
            }
            const float next = a * 0.5f;
            if (!changed && sameBits(next, a)) break;
            a = next;
        }
    }
}

}  // namespace

void PerlinBatch::Get(float* x, float* y, float* z, int n, int octaves, float freq, float amp, float* out) {
    octaveSum(x, y, z, n, octaves, freq, amp, out);
}

void PerlinBatch::Get(float* x, float* y, int n, int octaves, float freq, float amp, float* out) {
    octaveSum(x, y, nullptr, n, octaves, freq, amp, out);
}

}  // namespace gritwell
