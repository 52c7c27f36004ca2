// Lattice noise after Ken Perlin's reference noise (1985) and improved noise (2002); simplex
// noise, gradients and scale factors after Stefan Gustavson's reference code (2003-2005).
#include "noise/Perlin.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdTargets.h"
#include "noise/FractalSum.h"
#include "noise/PerlinLattice.h"
#include "noise/PerlinPermutation.h"
#include "noise/PerlinPoint.h"
#include "noise/Ramps.h"

namespace gritwell {

namespace {

// ---- Constant tables --------------------------------------------------------

// Stefan Gustavson's 4-D simplex traversal table: for each ordering of the
// four offsets, the rank 0..3 of every axis. Orderings that cannot occur are
// all zero.
constexpr std::uint8_t kSimplex[64][4] = {
    {0,1,2,3}, {0,1,3,2}, {0,0,0,0}, {0,2,3,1}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {1,2,3,0},
    {0,2,1,3}, {0,0,0,0}, {0,3,1,2}, {0,3,2,1}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {1,3,2,0},
    {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0},
    {1,2,0,3}, {0,0,0,0}, {1,3,0,2}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {2,3,0,1}, {2,3,1,0},
    {1,0,2,3}, {1,0,3,2}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {2,0,3,1}, {0,0,0,0}, {2,1,3,0},
    {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0},
    {2,0,1,3}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {3,0,1,2}, {3,0,2,1}, {0,0,0,0}, {3,1,2,0},
    {2,1,0,3}, {0,0,0,0}, {0,0,0,0}, {0,0,0,0}, {3,1,0,2}, {0,0,0,0}, {3,2,0,1}, {3,2,1,0},
};

// The traversal table directly followed by the permutation stored twice, as
// one block. Simplex noise reduces negative cells to indices down to -255 and
// so reads the last bytes of the traversal table; stored records depend on
// those values, so the block keeps this layout.
constexpr std::array<std::uint8_t, 256 + 512> makeTableBlock() {
    std::array<std::uint8_t, 256 + 512> block{};
    for (int r = 0; r < 64; ++r)
        for (int c = 0; c < 4; ++c) block[4 * r + c] = kSimplex[r][c];
    for (int k = 0; k < 512; ++k) block[256 + k] = kPerlinPermutation[k & 255];
    return block;
}
constexpr std::array<std::uint8_t, 256 + 512> kTableBlock = makeTableBlock();

// The doubled permutation as simplex noise reads it; valid indices run from
// -256 to 511.
constexpr const std::uint8_t* perm = kTableBlock.data() + 256;

// ---- Constants --------------------------------------------------------------

// Skew and unskew factors of Stefan Gustavson's simplex noise, as his
// decimal literals rounded to float: (sqrt(n + 1) - 1) / n and
// (n + 1 - sqrt(n + 1)) / (n (n + 1)).
constexpr float kF2 = 0.366025403f;
constexpr float kG2 = 0.211324865f;
constexpr float kF3 = 0.333333333f;
constexpr float kG3 = 0.166666667f;
constexpr float kF4 = 0.309016994f;
constexpr float kG4 = 0.138196601f;

// Simplex corner radii squared and output scales (1-D: 1 / 2.53125, the
// reciprocal of its peak 8 (3/4)^4).
constexpr float kRadius2 = 0.5f;
constexpr float kRadius3 = 0.6f;
constexpr float kRadius4 = 0.6f;
constexpr float kSimplexScale1 = 0.39506173f;
constexpr float kSimplexScale2 = 40.0f;
constexpr float kSimplexScale3 = 32.0f;
constexpr float kSimplexScale4 = 27.0f;

// Band-limiting: the filter width is divided by kFilterScale and faded out
// between kFadeStart and kFadeEnd; beyond kFadedOut the value is dropped.
constexpr float kFilterScale = 1.2f;
constexpr float kFadeStart = 1.2f;
constexpr float kFadeEnd = 2.2f;
constexpr float kFadedOut = 0.9999f;

// ---- Shared helpers ---------------------------------------------------------

using lattice::interp;

float fadeOut(float n, float fw) {
    const float k = smooth(fw / kFilterScale, kFadeStart, kFadeEnd);
    if (k >= kFadedOut) return 0.0f;
    return n + (0.0f - n) * k;
}

// Simplex corners with indices already reduced: the sums inside stay within
// the table block.
float corner(float x, float y, int i, int j) {
    float t = kRadius2 - x * x - y * y;
    if (t < 0.0f) return 0.0f;
    t *= t;
    return t * t * Perlin::grad(perm[i + perm[j]], x, y);
}

float corner(float x, float y, float z, int i, int j, int k) {
    float t = kRadius3 - x * x - y * y - z * z;
    if (t < 0.0f) return 0.0f;
    t *= t;
    return t * t * Perlin::grad(perm[i + perm[j + perm[k]]], x, y, z);
}

float corner(float x, float y, float z, float w, int i, int j, int k, int l) {
    float t = kRadius4 - x * x - y * y - z * z - w * w;
    if (t < 0.0f) return 0.0f;
    t *= t;
    return t * t * Perlin::grad(perm[i + perm[j + perm[k + perm[l]]]], x, y, z, w);
}

// Reduction of simplex lattice indices: the remainder truncates toward zero,
// so negative cells give negative indices that read into the traversal table.
// Stored records depend on this, unlike the 1-D form's low byte.
int simplexIndex(int cell) { return cell % 256; }

float unitOf(float n, bool unit) {
    return unit ? static_cast<float>((static_cast<double>(n) + 1.0) / 2.0) : n;
}

// ---- Instance-layer helpers -------------------------------------------------

// A table value in [-1, 1): one rand() call.
float randomValue() {
    return static_cast<float>(std::rand() % (Perlin::B + Perlin::B) - Perlin::B) / Perlin::B;
}

float sCurve(float t) { return t * t * (3.0f - 2.0f * t); }

// One axis of the instance noise: offset by N so truncation acts as a floor
// for coordinates above -N, then masked to the table.
struct TableAxis {
    int b0, b1;
    float r0, r1;
    explicit TableAxis(float c) {
        const float t = c + static_cast<float>(Perlin::N);
        const int it = truncToInt(t);
        b0 = it & Perlin::BM;
        b1 = (b0 + 1) & Perlin::BM;
        r0 = t - static_cast<float>(it);
        r1 = r0 - 1.0f;
    }
};

float at2(const float* q, float rx, float ry) { return rx * q[0] + ry * q[1]; }
float at3(const float* q, float rx, float ry, float rz) {
    return rx * q[0] + ry * q[1] + rz * q[2];
}

}  // namespace

// ---- Instance layer ---------------------------------------------------------

Perlin::Perlin(int octaveCount, float freq, float amp, int seedValue)
    : octaves(octaveCount),
      frequency(freq),
      amplitude(amp),
      seed(seedValue),
      p{},
      g3{},
      g2{},
      g1{},
      start(true) {}

void Perlin::init() {
    for (int i = 0; i < B; ++i) {
        p[i] = i;
        g1[i] = randomValue();
        for (int j = 0; j < 2; ++j) g2[i][j] = randomValue();
        normalize2(g2[i]);
        for (int j = 0; j < 3; ++j) g3[i][j] = randomValue();
        normalize3(g3[i]);
    }
    for (int i = B - 1; i > 0; --i) {
        const int j = std::rand() % B;
        std::swap(p[i], p[j]);
    }
    // Duplicate the first B + 2 entries so that p[i + b] and g[b + 1] need no wrap.
    for (int i = 0; i < B + 2; ++i) {
        p[B + i] = p[i];
        g1[B + i] = g1[i];
        for (int j = 0; j < 2; ++j) g2[B + i][j] = g2[i][j];
        for (int j = 0; j < 3; ++j) g3[B + i][j] = g3[i][j];
    }
}

void Perlin::normalize2(float* v) {
    const double sum = static_cast<double>(v[0] * v[0]) + static_cast<double>(v[1] * v[1]);
    const float s = static_cast<float>(1.0 / std::sqrt(sum));
    v[0] = v[0] * s;
    v[1] = v[1] * s;
}

void Perlin::normalize3(float* v) {
    const double sum = static_cast<double>(v[0] * v[0]) + static_cast<double>(v[1] * v[1]) +
                       static_cast<double>(v[2] * v[2]);
    const float s = static_cast<float>(1.0 / std::sqrt(sum));
    v[0] = v[0] * s;
    v[1] = v[1] * s;
    v[2] = v[2] * s;
}

// The tables depend on the process-wide rand() sequence from this moment on.
void Perlin::startIfNeeded() {
    if (!start) return;
    std::srand(static_cast<unsigned>(seed));
    start = false;
    init();
}

float Perlin::noise1(float x, bool unit) {
    startIfNeeded();
    const TableAxis ax(x);
    const float sx = sCurve(ax.r0);
    const float u = ax.r0 * g1[p[ax.b0]];
    const float v = ax.r1 * g1[p[ax.b1]];
    return unitOf(interp(sx, u, v), unit);
}

float Perlin::noise2(float* v, bool unit) {
    startIfNeeded();
    const TableAxis ax(v[0]), ay(v[1]);
    const int i = p[ax.b0];
    const int j = p[ax.b1];
    const int b00 = p[i + ay.b0];
    const int b10 = p[j + ay.b0];
    const int b01 = p[i + ay.b1];
    const int b11 = p[j + ay.b1];
    const float sx = sCurve(ax.r0);
    const float sy = sCurve(ay.r0);
    const float a = interp(sx, at2(g2[b00], ax.r0, ay.r0), at2(g2[b10], ax.r1, ay.r0));
    const float b = interp(sx, at2(g2[b01], ax.r0, ay.r1), at2(g2[b11], ax.r1, ay.r1));
    return unitOf(interp(sy, a, b), unit);
}

float Perlin::noise3(float* v, bool unit) {
    startIfNeeded();
    const TableAxis ax(v[0]), ay(v[1]), az(v[2]);
    const int i = p[ax.b0];
    const int j = p[ax.b1];
    const int b00 = p[i + ay.b0];
    const int b10 = p[j + ay.b0];
    const int b01 = p[i + ay.b1];
    const int b11 = p[j + ay.b1];
    const float sx = sCurve(ax.r0);
    const float sy = sCurve(ay.r0);
    const float sz = sCurve(az.r0);
    // The z index is added to the hash without a further permutation.
    float a = interp(sx, at3(g3[b00 + az.b0], ax.r0, ay.r0, az.r0),
                   at3(g3[b10 + az.b0], ax.r1, ay.r0, az.r0));
    float b = interp(sx, at3(g3[b01 + az.b0], ax.r0, ay.r1, az.r0),
                   at3(g3[b11 + az.b0], ax.r1, ay.r1, az.r0));
    const float c = interp(sy, a, b);
    a = interp(sx, at3(g3[b00 + az.b1], ax.r0, ay.r0, az.r1),
             at3(g3[b10 + az.b1], ax.r1, ay.r0, az.r1));
    b = interp(sx, at3(g3[b01 + az.b1], ax.r0, ay.r1, az.r1),
             at3(g3[b11 + az.b1], ax.r1, ay.r1, az.r1));
    const float d = interp(sy, a, b);
    return unitOf(interp(sz, c, d), unit);
}

float Perlin::perlin_noise_1D(float x, int octaveCount, float freq, float amp, bool unit) {
    x = x * freq;
    float sum = 0.0f;
    for (int o = 0; o < octaveCount; ++o) {
        sum = sum + noise1(x, unit) * amp;
        x = x * 2.0f;
        amp = amp * 0.5f;
    }
    return sum;
}

// The caller's vector is scaled in place and left at freq * 2^octaves times
// its input; callers have always seen it so.
float Perlin::perlin_noise_2D(float* v, int octaveCount, float freq, float amp, bool unit) {
    v[0] = v[0] * freq;
    v[1] = v[1] * freq;
    float sum = 0.0f;
    for (int o = 0; o < octaveCount; ++o) {
        sum = sum + noise2(v, unit) * amp;
        v[0] = v[0] * 2.0f;
        v[1] = v[1] * 2.0f;
        amp = amp * 0.5f;
    }
    return sum;
}

float Perlin::perlin_noise_3D(float* v, int octaveCount, float freq, float amp, bool unit) {
    v[0] = v[0] * freq;
    v[1] = v[1] * freq;
    v[2] = v[2] * freq;
    float sum = 0.0f;
    for (int o = 0; o < octaveCount; ++o) {
        sum = sum + noise3(v, unit) * amp;
        v[0] = v[0] * 2.0f;
        v[1] = v[1] * 2.0f;
        v[2] = v[2] * 2.0f;
        amp = amp * 0.5f;
    }
    return sum;
}

float Perlin::perlin_noise_1D(float x, bool unit) {
    return perlin_noise_1D(x, octaves, frequency, amplitude, unit);
}

float Perlin::perlin_noise_2D(float* v, bool unit) {
    return perlin_noise_2D(v, octaves, frequency, amplitude, unit);
}

// ---- Gradients --------------------------------------------------------------
// The hashes are random, so the published selections and sign choices are
// done without branches (which would mispredict half the time): components
// are picked by index and negated by flipping the sign bit, which gives the
// same bits as negation.

namespace {

float negateIf(float v, int bit) {
    const std::uint32_t sign = static_cast<std::uint32_t>(bit != 0) << 31;
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(v) ^ sign);
}

// 3-D: v is y for h < 4, x for h = 12 or 14, else z.
constexpr std::uint8_t kGrad3V[16] = {1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 0, 2, 0, 2};

}  // namespace

// g = 1 + (h AND 7), negative when h AND 8.
float Perlin::grad(int hash, float x) {
    const int h = hash & 15;
    return negateIf(1.0f + static_cast<float>(h & 7), h & 8) * x;
}

// (u, v) = (x, y) for h < 4, else (y, x); result +-u +-2v.
float Perlin::grad(int hash, float x, float y) {
    const int h = hash & 7;
    const float c[2] = {x, y};
    const float u = c[h >> 2];
    const float v = c[1 - (h >> 2)];
    return negateIf(u, h & 1) + negateIf(2.0f * v, h & 2);
}

// u = x for h < 8, else y; v as kGrad3V; result +-u +-v.
float Perlin::grad(int hash, float x, float y, float z) {
    const int h = hash & 15;
    const float c[3] = {x, y, z};
    const float u = c[h >> 3];
    const float v = c[kGrad3V[h]];
    return negateIf(u, h & 1) + negateIf(v, h & 2);
}

// u = x for h < 24, else y; v = y for h < 16, else z; s = z for h < 8,
// else w; result +-u +-v +-s.
float Perlin::grad(int hash, float x, float y, float z, float w) {
    const int h = hash & 31;
    const float c[4] = {x, y, z, w};
    const float u = c[(h + 8) >> 5];   // 1 from h = 24
    const float v = c[1 + (h >> 4)];   // 2 from h = 16
    const float s = c[2 + ((h + 24) >> 5)];  // 3 from h = 8
    return negateIf(u, h & 1) + negateIf(v, h & 2) + negateIf(s, h & 4);
}

// ---- Lattice noise ----------------------------------------------------------
// Made of the steps in PerlinLattice.h; corners are numbered as its cell
// hash numbers them, x varying fastest.

float Perlin::noise(float x) {
    using namespace lattice;
    const Axis ax = axis(x);
    const std::array<int, 2> h = cornerHashes(ax.i);
    return kScale1 * interp(fade(ax.f0), grad(h[0], ax.f0), grad(h[1], ax.f1));
}

float Perlin::noise(float x, float y) {
    using namespace lattice;
    const Axis ax = axis(x), ay = axis(y);
    const std::array<int, 4> h = cornerHashes(ax.i, ay.i);
    const float u = fade(ax.f0), v = fade(ay.f0);
    return kScale2 * interp(v, interp(u, grad(h[0], ax.f0, ay.f0), grad(h[1], ax.f1, ay.f0)),
                            interp(u, grad(h[2], ax.f0, ay.f1), grad(h[3], ax.f1, ay.f1)));
}

// Its definition and its kernels for each instruction set live in PerlinPoint.
float Perlin::noise(float x, float y, float z) { return PerlinPoint::noise(x, y, z); }

float Perlin::noise(float x, float y, float z, float w) {
    using namespace lattice;
    const Axis ax = axis(x), ay = axis(y), az = axis(z), aw = axis(w);
    const std::array<int, 16> h = cornerHashes(ax.i, ay.i, az.i, aw.i);
    const float u = fade(ax.f0), v = fade(ay.f0), s = fade(az.f0), t = fade(aw.f0);
    // One w layer: interpolate along x, then y, then z.
    const auto layer = [&](int far, float wo) {
        float g[8];
        // Unrolled, each corner reads its hash where it was computed, not
        // through memory: 85 to 64 ns a call.
#pragma GCC unroll 8
        for (int c = 0; c < 8; ++c)
            g[c] = grad(h[c + 8 * far], (c & 1) ? ax.f1 : ax.f0, (c & 2) ? ay.f1 : ay.f0, (c & 4) ? az.f1 : az.f0,
                        wo);
        return interp(s, interp(v, interp(u, g[0], g[1]), interp(u, g[2], g[3])),
                      interp(v, interp(u, g[4], g[5]), interp(u, g[6], g[7])));
    };
    return kScale4 * interp(t, layer(0, aw.f0), layer(1, aw.f1));
}

// ---- Simplex noise ----------------------------------------------------------

float Perlin::point(float x, int i) {
    // No cut-off: in 1-D the offsets never leave the kernel's support.
    float t = 1.0f - x * x;
    t *= t;
    return t * t * grad(perm[i & 255], x);
}

float Perlin::point(float x, float y, int i, int j) {
    return corner(x, y, simplexIndex(i), simplexIndex(j));
}

float Perlin::point(float x, float y, float z, int i, int j, int k) {
    return corner(x, y, z, simplexIndex(i), simplexIndex(j), simplexIndex(k));
}

float Perlin::point(float x, float y, float z, float w, int i, int j, int k, int l) {
    return corner(x, y, z, w, simplexIndex(i), simplexIndex(j), simplexIndex(k), simplexIndex(l));
}

float Perlin::snoise(float x) {
    const int i0 = cellIndex(x);
    const int i1 = wrapAdd(i0, 1);
    const float x0 = x - static_cast<float>(i0);
    const float x1 = x0 - 1.0f;
    return kSimplexScale1 * (point(x0, i0) + point(x1, i1));
}

float Perlin::snoise(float x, float y) {
    const float s = (x + y) * kF2;
    const int i = cellIndex(x + s);
    const int j = cellIndex(y + s);
    const float t = static_cast<float>(wrapAdd(i, j)) * kG2;
    const float x0 = x - (static_cast<float>(i) - t);
    const float y0 = y - (static_cast<float>(j) - t);

    // Lower triangle steps x first; a tie takes the upper one.
    const int i1 = x0 > y0 ? 1 : 0;
    const int j1 = 1 - i1;

    const float x1 = x0 - static_cast<float>(i1) + kG2;
    const float y1 = y0 - static_cast<float>(j1) + kG2;
    const float x2 = x0 - 1.0f + 2.0f * kG2;
    const float y2 = y0 - 1.0f + 2.0f * kG2;

    const int ii = simplexIndex(i);
    const int jj = simplexIndex(j);
    return kSimplexScale2 * (corner(x0, y0, ii, jj) + corner(x1, y1, ii + i1, jj + j1) +
                             corner(x2, y2, ii + 1, jj + 1));
}

float Perlin::snoise(float x, float y, float z) {
    const float s = (x + y + z) * kF3;
    const int i = cellIndex(x + s);
    const int j = cellIndex(y + s);
    const int k = cellIndex(z + s);
    const float t = static_cast<float>(wrapAdd(wrapAdd(i, j), k)) * kG3;
    const float x0 = x - (static_cast<float>(i) - t);
    const float y0 = y - (static_cast<float>(j) - t);
    const float z0 = z - (static_cast<float>(k) - t);

    int i1, j1, k1, i2, j2, k2;
    if (x0 >= y0) {
        if (y0 >= z0) {
            i1 = 1, j1 = 0, k1 = 0, i2 = 1, j2 = 1, k2 = 0;  // X Y Z
        } else if (x0 >= z0) {
            i1 = 1, j1 = 0, k1 = 0, i2 = 1, j2 = 0, k2 = 1;  // X Z Y
        } else {
            i1 = 0, j1 = 0, k1 = 1, i2 = 1, j2 = 0, k2 = 1;  // Z X Y
        }
    } else {
        if (y0 < z0) {
            i1 = 0, j1 = 0, k1 = 1, i2 = 0, j2 = 1, k2 = 1;  // Z Y X
        } else if (x0 < z0) {
            i1 = 0, j1 = 1, k1 = 0, i2 = 0, j2 = 1, k2 = 1;  // Y Z X
        } else {
            i1 = 0, j1 = 1, k1 = 0, i2 = 1, j2 = 1, k2 = 0;  // Y X Z
        }
    }

    const float x1 = x0 - static_cast<float>(i1) + kG3;
    const float y1 = y0 - static_cast<float>(j1) + kG3;
    const float z1 = z0 - static_cast<float>(k1) + kG3;
    const float x2 = x0 - static_cast<float>(i2) + 2.0f * kG3;
    const float y2 = y0 - static_cast<float>(j2) + 2.0f * kG3;
    const float z2 = z0 - static_cast<float>(k2) + 2.0f * kG3;
    // The last corner's offset is x0 - 0.5 in one rounding, not the two of
    // (x0 - 1) + 3G: stored records were made with this one.
    const float x3 = x0 - 0.5f;
    const float y3 = y0 - 0.5f;
    const float z3 = z0 - 0.5f;

    const int ii = simplexIndex(i);
    const int jj = simplexIndex(j);
    const int kk = simplexIndex(k);
    return kSimplexScale3 * (corner(x0, y0, z0, ii, jj, kk) +
                             corner(x1, y1, z1, ii + i1, jj + j1, kk + k1) +
                             corner(x2, y2, z2, ii + i2, jj + j2, kk + k2) +
                             corner(x3, y3, z3, ii + 1, jj + 1, kk + 1));
}

// ---- Simplex noise, eight points at a time ---------------------------------
//
// snoise(x, y) and snoise(x, y, z) with one lane per point: the same
// operations in the same order, the corner ordering by comparison masks,
// the hash chain through gathers. AVX-512 processors run this kernel too:
// the gathers, not the lane count, set its pace.

namespace {

// The table block with four spare bytes after it: a gather reads a 32-bit
// word at the largest index, 511, and keeps its low byte.
struct PaddedTableBlock {
    std::uint8_t bytes[256 + 512 + 4];
};

constexpr PaddedTableBlock makePaddedTableBlock() {
    PaddedTableBlock b{};
    for (std::size_t k = 0; k < kTableBlock.size(); ++k) b.bytes[k] = kTableBlock[k];
    return b;
}

constexpr PaddedTableBlock kPaddedTableBlock = makePaddedTableBlock();

// perm[i] lane by lane, i from -256 to 511.
GRITWELL_AVX2 inline __m256i permLanes(__m256i i) {
    const __m256i word =
        _mm256_i32gather_epi32(reinterpret_cast<const int*>(kPaddedTableBlock.bytes + 256), i, 1);
    return _mm256_and_si256(word, _mm256_set1_epi32(255));
}

// simplexIndex lane by lane: the remainder of a division by 256 that
// truncates toward zero, so it keeps the cell's sign.
GRITWELL_AVX2 inline __m256i simplexIndexLanes(__m256i cell) {
    const __m256i bias = _mm256_srli_epi32(_mm256_srai_epi32(cell, 31), 24);  // 255 for negative cells
    const __m256i quotient = _mm256_srai_epi32(_mm256_add_epi32(cell, bias), 8);
    return _mm256_sub_epi32(cell, _mm256_slli_epi32(quotient, 8));
}

// 0 where t < 0, else (t^2)^2 g: the corner's weight, t its radius term.
GRITWELL_AVX2 inline __m256 cornerWeight(__m256 t, __m256 g) {
    const __m256 t2 = _mm256_mul_ps(t, t);
    const __m256 w = _mm256_mul_ps(_mm256_mul_ps(t2, t2), g);
    return _mm256_andnot_ps(_mm256_cmp_ps(t, _mm256_setzero_ps(), _CMP_LT_OQ), w);
}

GRITWELL_AVX2 inline __m256 cornerLanes(__m256 x, __m256 y, __m256i i, __m256i j) {
    const __m256 t = _mm256_sub_ps(_mm256_sub_ps(_mm256_set1_ps(kRadius2), _mm256_mul_ps(x, x)), _mm256_mul_ps(y, y));
    const __m256i h = permLanes(_mm256_add_epi32(i, permLanes(j)));
    return cornerWeight(t, lattice::gradient(h, x, y));
}

GRITWELL_AVX2 inline __m256 cornerLanes(__m256 x, __m256 y, __m256 z, __m256i i, __m256i j, __m256i k) {
    const __m256 t = _mm256_sub_ps(
        _mm256_sub_ps(_mm256_sub_ps(_mm256_set1_ps(kRadius3), _mm256_mul_ps(x, x)), _mm256_mul_ps(y, y)),
        _mm256_mul_ps(z, z));
    const __m256i h = permLanes(_mm256_add_epi32(i, permLanes(_mm256_add_epi32(j, permLanes(k)))));
    return cornerWeight(t, lattice::gradient(h, x, y, z));
}

// 1 in the lanes of a mask, 0 elsewhere, as floats and as integers.
GRITWELL_AVX2 inline __m256 oneWhere(__m256 mask) { return _mm256_and_ps(mask, _mm256_set1_ps(1.0f)); }
GRITWELL_AVX2 inline __m256i oneWhereInt(__m256 mask) { return _mm256_srli_epi32(_mm256_castps_si256(mask), 31); }

GRITWELL_AVX2 __m256 snoiseLanes(__m256 x, __m256 y) {
    const __m256 s = _mm256_mul_ps(_mm256_add_ps(x, y), _mm256_set1_ps(kF2));
    const __m256i i = cellIndex(_mm256_add_ps(x, s)), j = cellIndex(_mm256_add_ps(y, s));
    const __m256 t = _mm256_mul_ps(_mm256_cvtepi32_ps(_mm256_add_epi32(i, j)), _mm256_set1_ps(kG2));
    const __m256 x0 = _mm256_sub_ps(x, _mm256_sub_ps(_mm256_cvtepi32_ps(i), t));
    const __m256 y0 = _mm256_sub_ps(y, _mm256_sub_ps(_mm256_cvtepi32_ps(j), t));

    const __m256 xFirst = _mm256_cmp_ps(x0, y0, _CMP_GT_OQ);
    const __m256 i1 = oneWhere(xFirst), j1 = _mm256_sub_ps(_mm256_set1_ps(1.0f), i1);
    const __m256i i1n = oneWhereInt(xFirst), j1n = _mm256_sub_epi32(_mm256_set1_epi32(1), i1n);

    const __m256 g2 = _mm256_set1_ps(kG2), twoG2 = _mm256_set1_ps(2.0f * kG2), one = _mm256_set1_ps(1.0f);
    const __m256 x1 = _mm256_add_ps(_mm256_sub_ps(x0, i1), g2), y1 = _mm256_add_ps(_mm256_sub_ps(y0, j1), g2);
    const __m256 x2 = _mm256_add_ps(_mm256_sub_ps(x0, one), twoG2), y2 = _mm256_add_ps(_mm256_sub_ps(y0, one), twoG2);

    const __m256i ii = simplexIndexLanes(i), jj = simplexIndexLanes(j), step = _mm256_set1_epi32(1);
    const __m256 sum = _mm256_add_ps(
        _mm256_add_ps(cornerLanes(x0, y0, ii, jj),
                      cornerLanes(x1, y1, _mm256_add_epi32(ii, i1n), _mm256_add_epi32(jj, j1n))),
        cornerLanes(x2, y2, _mm256_add_epi32(ii, step), _mm256_add_epi32(jj, step)));
    return _mm256_mul_ps(_mm256_set1_ps(kSimplexScale2), sum);
}

GRITWELL_AVX2 __m256 snoiseLanes(__m256 x, __m256 y, __m256 z) {
    const __m256 s = _mm256_mul_ps(_mm256_add_ps(_mm256_add_ps(x, y), z), _mm256_set1_ps(kF3));
    const __m256i i = cellIndex(_mm256_add_ps(x, s)), j = cellIndex(_mm256_add_ps(y, s)),
                  k = cellIndex(_mm256_add_ps(z, s));
    const __m256 t =
        _mm256_mul_ps(_mm256_cvtepi32_ps(_mm256_add_epi32(_mm256_add_epi32(i, j), k)), _mm256_set1_ps(kG3));
    const __m256 x0 = _mm256_sub_ps(x, _mm256_sub_ps(_mm256_cvtepi32_ps(i), t));
    const __m256 y0 = _mm256_sub_ps(y, _mm256_sub_ps(_mm256_cvtepi32_ps(j), t));
    const __m256 z0 = _mm256_sub_ps(z, _mm256_sub_ps(_mm256_cvtepi32_ps(k), t));

    // The one-point branches as masks: with xy = x0 >= y0, yz = y0 >= z0 and
    // xz = x0 >= z0, the first step goes along x where xy and xz hold, along
    // y where neither xy nor yz, and along z otherwise; the second step
    // leaves out the axis of the last, x where neither xy nor xz, y where
    // xy and yz, and z otherwise. NaN offsets take the one-point path's
    // branches too: every comparison fails, which reads as Z Y X there and
    // here alike.
    const __m256 xy = _mm256_cmp_ps(x0, y0, _CMP_GE_OQ);
    const __m256 yz = _mm256_cmp_ps(y0, z0, _CMP_GE_OQ);
    const __m256 xz = _mm256_cmp_ps(x0, z0, _CMP_GE_OQ);
    const __m256 yLtZ = _mm256_cmp_ps(y0, z0, _CMP_LT_OQ), xLtZ = _mm256_cmp_ps(x0, z0, _CMP_LT_OQ);
    // Below: the one-point tests spelt out, "else" branches included.
    const __m256 whenXY = xy;
    const __m256 whenNotXY = _mm256_andnot_ps(xy, _mm256_castsi256_ps(_mm256_set1_epi32(-1)));
    // x0 >= y0: XYZ (yz), XZY (!yz && xz), ZXY (!yz && !xz).
    const __m256 xyz = _mm256_and_ps(whenXY, yz);
    const __m256 xzy = _mm256_and_ps(whenXY, _mm256_andnot_ps(yz, xz));
    const __m256 zxy = _mm256_and_ps(whenXY, _mm256_andnot_ps(yz, _mm256_andnot_ps(xz, whenXY)));
    // otherwise: ZYX (y0 < z0), YZX (!(y0 < z0) && x0 < z0), YXZ (neither).
    const __m256 zyx = _mm256_and_ps(whenNotXY, yLtZ);
    const __m256 yzx = _mm256_and_ps(whenNotXY, _mm256_andnot_ps(yLtZ, xLtZ));
    const __m256 yxz = _mm256_and_ps(whenNotXY, _mm256_andnot_ps(yLtZ, _mm256_andnot_ps(xLtZ, whenNotXY)));

    const __m256 i1m = _mm256_or_ps(xyz, xzy), j1m = _mm256_or_ps(yzx, yxz), k1m = _mm256_or_ps(zxy, zyx);
    const __m256 i2m = _mm256_or_ps(_mm256_or_ps(xyz, xzy), _mm256_or_ps(zxy, yxz));
    const __m256 j2m = _mm256_or_ps(_mm256_or_ps(xyz, zyx), _mm256_or_ps(yzx, yxz));
    const __m256 k2m = _mm256_or_ps(_mm256_or_ps(xzy, zxy), _mm256_or_ps(zyx, yzx));

    const __m256 g3 = _mm256_set1_ps(kG3), twoG3 = _mm256_set1_ps(2.0f * kG3), half = _mm256_set1_ps(0.5f);
    const __m256 x1 = _mm256_add_ps(_mm256_sub_ps(x0, oneWhere(i1m)), g3);
    const __m256 y1 = _mm256_add_ps(_mm256_sub_ps(y0, oneWhere(j1m)), g3);
    const __m256 z1 = _mm256_add_ps(_mm256_sub_ps(z0, oneWhere(k1m)), g3);
    const __m256 x2 = _mm256_add_ps(_mm256_sub_ps(x0, oneWhere(i2m)), twoG3);
    const __m256 y2 = _mm256_add_ps(_mm256_sub_ps(y0, oneWhere(j2m)), twoG3);
    const __m256 z2 = _mm256_add_ps(_mm256_sub_ps(z0, oneWhere(k2m)), twoG3);
    const __m256 x3 = _mm256_sub_ps(x0, half), y3 = _mm256_sub_ps(y0, half), z3 = _mm256_sub_ps(z0, half);

    const __m256i ii = simplexIndexLanes(i), jj = simplexIndexLanes(j), kk = simplexIndexLanes(k);
    const __m256i step = _mm256_set1_epi32(1);
    const __m256 c0 = cornerLanes(x0, y0, z0, ii, jj, kk);
    const __m256 c1 = cornerLanes(x1, y1, z1, _mm256_add_epi32(ii, oneWhereInt(i1m)),
                                  _mm256_add_epi32(jj, oneWhereInt(j1m)), _mm256_add_epi32(kk, oneWhereInt(k1m)));
    const __m256 c2 = cornerLanes(x2, y2, z2, _mm256_add_epi32(ii, oneWhereInt(i2m)),
                                  _mm256_add_epi32(jj, oneWhereInt(j2m)), _mm256_add_epi32(kk, oneWhereInt(k2m)));
    const __m256 c3 = cornerLanes(x3, y3, z3, _mm256_add_epi32(ii, step), _mm256_add_epi32(jj, step),
                                  _mm256_add_epi32(kk, step));
    return _mm256_mul_ps(_mm256_set1_ps(kSimplexScale3), _mm256_add_ps(_mm256_add_ps(_mm256_add_ps(c0, c1), c2), c3));
}

GRITWELL_AVX2 void snoiseAvx2(const float* x, const float* y, const float* z, int n, float* out) {
    int k = 0;
    for (; k + 8 <= n; k += 8)
        _mm256_storeu_ps(out + k, snoiseLanes(_mm256_loadu_ps(x + k), _mm256_loadu_ps(y + k), _mm256_loadu_ps(z + k)));
    for (; k < n; ++k) out[k] = Perlin::snoise(x[k], y[k], z[k]);
}

GRITWELL_AVX2 void snoiseAvx2(const float* x, const float* y, int n, float* out) {
    int k = 0;
    for (; k + 8 <= n; k += 8) _mm256_storeu_ps(out + k, snoiseLanes(_mm256_loadu_ps(x + k), _mm256_loadu_ps(y + k)));
    for (; k < n; ++k) out[k] = Perlin::snoise(x[k], y[k]);
}

}  // namespace

void Perlin::snoise(SimdLevel level, const float* x, const float* y, const float* z, int n, float* out) {
    if (supportedSimdLevel(level) != SimdLevel::kScalar) {
        snoiseAvx2(x, y, z, n, out);
        return;
    }
    for (int k = 0; k < n; ++k) out[k] = snoise(x[k], y[k], z[k]);
}

void Perlin::snoise(SimdLevel level, const float* x, const float* y, int n, float* out) {
    if (supportedSimdLevel(level) != SimdLevel::kScalar) {
        snoiseAvx2(x, y, n, out);
        return;
    }
    for (int k = 0; k < n; ++k) out[k] = snoise(x[k], y[k]);
}

void Perlin::snoise(const float* x, const float* y, const float* z, int n, float* out) {
    snoise(simdLevel(), x, y, z, n, out);
}

void Perlin::snoise(const float* x, const float* y, int n, float* out) { snoise(simdLevel(), x, y, n, out); }

float Perlin::snoise(float x, float y, float z, float w) {
    const float s = (x + y + z + w) * kF4;
    const int i = cellIndex(x + s);
    const int j = cellIndex(y + s);
    const int k = cellIndex(z + s);
    const int l = cellIndex(w + s);
    const float t = static_cast<float>(wrapAdd(wrapAdd(wrapAdd(i, j), k), l)) * kG4;
    const float x0 = x - (static_cast<float>(i) - t);
    const float y0 = y - (static_cast<float>(j) - t);
    const float z0 = z - (static_cast<float>(k) - t);
    const float w0 = w - (static_cast<float>(l) - t);

    // The six pairwise comparisons select the traversal row; the corners
    // step, in turn, along the axes ranked 3, then >= 2, then >= 1.
    const int c = (x0 > y0 ? 32 : 0) + (x0 > z0 ? 16 : 0) + (y0 > z0 ? 8 : 0) + (x0 > w0 ? 4 : 0) +
                  (y0 > w0 ? 2 : 0) + (z0 > w0 ? 1 : 0);
    const std::uint8_t* rank = kSimplex[c];
    const int i1 = rank[0] >= 3, j1 = rank[1] >= 3, k1 = rank[2] >= 3, l1 = rank[3] >= 3;
    const int i2 = rank[0] >= 2, j2 = rank[1] >= 2, k2 = rank[2] >= 2, l2 = rank[3] >= 2;
    const int i3 = rank[0] >= 1, j3 = rank[1] >= 1, k3 = rank[2] >= 1, l3 = rank[3] >= 1;

    const float x1 = x0 - static_cast<float>(i1) + kG4;
    const float y1 = y0 - static_cast<float>(j1) + kG4;
    const float z1 = z0 - static_cast<float>(k1) + kG4;
    const float w1 = w0 - static_cast<float>(l1) + kG4;
    const float x2 = x0 - static_cast<float>(i2) + 2.0f * kG4;
    const float y2 = y0 - static_cast<float>(j2) + 2.0f * kG4;
    const float z2 = z0 - static_cast<float>(k2) + 2.0f * kG4;
    const float w2 = w0 - static_cast<float>(l2) + 2.0f * kG4;
    const float x3 = x0 - static_cast<float>(i3) + 3.0f * kG4;
    const float y3 = y0 - static_cast<float>(j3) + 3.0f * kG4;
    const float z3 = z0 - static_cast<float>(k3) + 3.0f * kG4;
    const float w3 = w0 - static_cast<float>(l3) + 3.0f * kG4;
    const float x4 = x0 - 1.0f + 4.0f * kG4;
    const float y4 = y0 - 1.0f + 4.0f * kG4;
    const float z4 = z0 - 1.0f + 4.0f * kG4;
    const float w4 = w0 - 1.0f + 4.0f * kG4;

    const int ii = simplexIndex(i);
    const int jj = simplexIndex(j);
    const int kk = simplexIndex(k);
    const int ll = simplexIndex(l);
    return kSimplexScale4 * (corner(x0, y0, z0, w0, ii, jj, kk, ll) +
                             corner(x1, y1, z1, w1, ii + i1, jj + j1, kk + k1, ll + l1) +
                             corner(x2, y2, z2, w2, ii + i2, jj + j2, kk + k2, ll + l2) +
                             corner(x3, y3, z3, w3, ii + i3, jj + j3, kk + k3, ll + l3) +
                             corner(x4, y4, z4, w4, ii + 1, jj + 1, kk + 1, ll + 1));
}

// ---- Octave sums and band-limited forms -------------------------------------

// The fractal sum of the lattice noise. Within a few hundred
// octaves every coordinate has doubled to 0 or an infinity and the amplitude
// halved to 0 (or sits at an infinity or NaN), after which the sum stops
// changing too, so the loop ends long before its cap of kMaxOctaves: a
// damaged record's huge octave count ends with the bits the full loop gives.
float Perlin::Get(float x, float y, int octaveCount, float freq, float amp) {
    return latticeFractalSum<2>({x * freq, y * freq}, static_cast<float>(octaveCount), kGetLacunarity, kGetGain,
                                addWeighted, amp);
}

float Perlin::Get(float x, float y, float z, int octaveCount, float freq, float amp) {
    return latticeFractalSum<3>({x * freq, y * freq, z * freq}, static_cast<float>(octaveCount), kGetLacunarity,
                                kGetGain, addWeighted, amp);
}

float Perlin::fnoise2D(float x, float y, float fw) { return fadeOut(noise(x, y), fw); }
float Perlin::fnoise3D(float x, float y, float z, float fw) {
    return fadeOut(noise(x, y, z), fw);
}
float Perlin::fnoise4D(float x, float y, float z, float w, float fw) {
    return fadeOut(noise(x, y, z, w), fw);
}
float Perlin::fsnoise2D(float x, float y, float fw) { return fadeOut(snoise(x, y), fw); }
float Perlin::fsnoise3D(float x, float y, float z, float fw) {
    return fadeOut(snoise(x, y, z), fw);
}
float Perlin::fsnoise4D(float x, float y, float z, float w, float fw) {
    return fadeOut(snoise(x, y, z, w), fw);
}

}  // namespace gritwell
