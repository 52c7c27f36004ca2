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
    return fractalSum<2>({x * freq, y * freq}, static_cast<float>(octaveCount), kGetLacunarity, kGetGain,
                         latticeNoise<2>, addWeighted, amp);
}

float Perlin::Get(float x, float y, float z, int octaveCount, float freq, float amp) {
    return fractalSum<3>({x * freq, y * freq, z * freq}, static_cast<float>(octaveCount), kGetLacunarity, kGetGain,
                         latticeNoise<3>, addWeighted, amp);
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
