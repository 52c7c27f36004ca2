#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

using namespace gritwell;

// Expected values below were worked out independently from the formulas in
// single precision, not by running this code.

// ---- Lattice noise ------------------------------------------------------------

TEST(PerlinNoise, ZeroAtEveryLatticePointIncludingNegativeOnes) {
    for (int i = -4; i <= 4; ++i) {
        EXPECT_EQ(Perlin::noise(float(i)), 0.0f) << i;
        for (int j = -4; j <= 4; ++j) {
            EXPECT_EQ(Perlin::noise(float(i), float(j)), 0.0f) << i << ", " << j;
            for (int k = -3; k <= 3; k += 2) {
                EXPECT_EQ(Perlin::noise(float(i), float(j), float(k)), 0.0f);
                EXPECT_EQ(Perlin::noise(float(i), float(j), float(k), float(-i)), 0.0f);
            }
        }
    }
    // Far out, but still integers within int range.
    EXPECT_EQ(Perlin::noise(1e9f, -1e9f), 0.0f);
    EXPECT_EQ(Perlin::noise(-16777216.0f, 3.0f, -70000.0f), 0.0f);
}

TEST(PerlinNoise, HalfWayInTheFirstCellUsesTheFirstTwoPermutationEntries) {
    // perm[0] = 151, perm[1] = 160.
    const float g0 = Perlin::grad(151, 0.5f);
    const float g1 = Perlin::grad(160, -0.5f);
    EXPECT_EQ(Perlin::noise(0.5f), 0.188f * (g0 + 0.5f * (g1 - g0)));
    EXPECT_EQ(Perlin::noise(0.5f), 0.329f);
}

struct Case1 { float x, expected; };
struct Case2 { float x, y, expected; };
struct Case3 { float x, y, z, expected; };
struct Case4 { float x, y, z, w, expected; };

TEST(PerlinNoise, GoldenValues) {
    for (const Case1& c : {Case1{-0.3f, -0.270311654f}, Case1{2.75f, 0.139347658f},
                           Case1{-7.6f, -0.0919004604f}, Case1{123.456f, 0.605753422f}})
        EXPECT_EQ(Perlin::noise(c.x), c.expected) << c.x;
    for (const Case2& c : {Case2{0.5f, 0.5f, -0.253500015f}, Case2{-1.3f, 2.7f, 0.2216537f},
                           Case2{3.1f, -0.4f, -0.304833591f},
                           Case2{-12.25f, -7.75f, -0.223565727f}})
        EXPECT_EQ(Perlin::noise(c.x, c.y), c.expected) << c.x << ", " << c.y;
    for (const Case3& c :
         {Case3{0.5f, 0.5f, 0.5f, -0.233999997f}, Case3{-1.3f, 2.7f, 0.6f, -0.109847113f},
          Case3{3.1f, -0.4f, -5.9f, -0.445202529f}, Case3{100.2f, -50.7f, 3.3f, -0.103808232f}})
        EXPECT_EQ(Perlin::noise(c.x, c.y, c.z), c.expected) << c.x << ", " << c.y << ", " << c.z;
    for (const Case4& c : {Case4{0.5f, 0.5f, 0.5f, 0.5f, 0.163125008f},
                           Case4{-1.3f, 2.7f, 0.6f, -0.2f, -0.217992589f},
                           Case4{3.1f, -0.4f, -5.9f, 9.8f, -0.191966131f}})
        EXPECT_EQ(Perlin::noise(c.x, c.y, c.z, c.w), c.expected)
            << c.x << ", " << c.y << ", " << c.z << ", " << c.w;
}

TEST(PerlinNoise, ContinuousAcrossIntegerBoundaries) {
    // Both sides of every seam approach the lattice value 0, including at
    // negative integers, whose cell is the one below.
    const float eps = 1e-4f;
    for (int n = -3; n <= 3; ++n) {
        const float lo = float(n) - eps, hi = float(n) + eps, m = 0.37f;
        EXPECT_NEAR(Perlin::noise(lo), Perlin::noise(hi), 1e-2f) << n;
        EXPECT_NEAR(Perlin::noise(lo, m), Perlin::noise(hi, m), 2e-3f) << n;
        EXPECT_NEAR(Perlin::noise(m, lo), Perlin::noise(m, hi), 2e-3f) << n;
        EXPECT_NEAR(Perlin::noise(m, m, lo), Perlin::noise(m, m, hi), 2e-3f) << n;
        EXPECT_NEAR(Perlin::noise(lo, m, m, m), Perlin::noise(hi, m, m, m), 2e-3f) << n;
        EXPECT_NEAR(Perlin::noise(m, m, m, lo), Perlin::noise(m, m, m, hi), 2e-3f) << n;
        // And the value exactly on the seam sits between its neighbours.
        EXPECT_NEAR(Perlin::noise(float(n), m), Perlin::noise(hi, m), 2e-3f) << n;
    }
}

TEST(PerlinNoise, StaysWithinUnitRange) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> coord(-50.0f, 50.0f);
    for (int n = 0; n < 20000; ++n) {
        const float x = coord(rng), y = coord(rng), z = coord(rng), w = coord(rng);
        EXPECT_LE(std::fabs(Perlin::noise(x)), 1.0f);
        EXPECT_LE(std::fabs(Perlin::noise(x, y)), 1.0f);
        EXPECT_LE(std::fabs(Perlin::noise(x, y, z)), 1.0f);
        EXPECT_LE(std::fabs(Perlin::noise(x, y, z, w)), 1.0f);
    }
}

// ---- Gradients and kernels ----------------------------------------------------

TEST(PerlinGrad, EachHashPicksItsSignedComponents) {
    const float g1[16] = {0.5f,  1,  1.5f,  2,  2.5f,  3,  3.5f,  4,
                          -0.5f, -1, -1.5f, -2, -2.5f, -3, -3.5f, -4};
    for (int h = 0; h < 16; ++h) EXPECT_EQ(Perlin::grad(h + 32, 0.5f), g1[h]) << h;

    const float g2[8] = {21, 19, -19, -21, 12, -8, 8, -12};
    for (int h = 0; h < 8; ++h) EXPECT_EQ(Perlin::grad(h + 8, 1.0f, 10.0f), g2[h]) << h;

    // Hashes 12 to 15 repeat four of the first twelve directions.
    const float g3[16] = {11,  9,  -9,  -11,  101, 99, -99, -101,
                          110, 90, -90, -110, 11,  90, 9,   -110};
    for (int h = 0; h < 16; ++h) EXPECT_EQ(Perlin::grad(h + 16, 1.0f, 10.0f, 100.0f), g3[h]) << h;

    const float g4[32] = {111,   109,   91,   89,   -89,  -91,  -109,  -111,  1011,  1009, 991,
                          989,   -989,  -991, -1009, -1011, 1101, 1099, 901,   899,   -899, -901,
                          -1099, -1101, 1110, 1090, 910,   890,  -890, -910,  -1090, -1110};
    for (int h = 0; h < 32; ++h)
        EXPECT_EQ(Perlin::grad(h + 64, 1.0f, 10.0f, 100.0f, 1000.0f), g4[h]) << h;
}

TEST(PerlinPoint, OneDimensionalKernelHasNoCutOff) {
    // (1 - 2.25)^4 * grad(perm[0] = 151, 1.5) = 0.5 * ... * 7 * 1.5
    EXPECT_EQ(Perlin::point(1.5f, 0), 29.296875f);
    EXPECT_EQ(Perlin::point(1.5f, 256), 29.296875f);
}

TEST(PerlinPoint, CornersOutsideTheirRadiusAddNothing) {
    // Radius squared 0.5 in 2-D, 0.6 in 3-D and 4-D.
    EXPECT_EQ(Perlin::point(0.6f, 0.4f, 3, 4), 0.0f);
    EXPECT_EQ(Perlin::point(0.4f, 0.4f, 3, 4), -0.000419903634f);
    EXPECT_EQ(Perlin::point(0.5f, 0.5f, 0.4f, 3, 4, 5), 0.0f);
    EXPECT_EQ(Perlin::point(0.5f, 0.5f, 0.1f, 3, 4, 5), 3.93660521e-05f);
    EXPECT_EQ(Perlin::point(0.5f, 0.5f, 0.5f, 0.1f, 3, 4, 5, 6), 0.0f);
    EXPECT_EQ(Perlin::point(0.3f, 0.3f, 0.3f, 0.3f, 3, 4, 5, 6), 0.000995327835f);
}

TEST(PerlinPoint, NegativeIndicesReadTheTraversalTableInFrontOfThePermutation) {
    // perm[-5] is the last byte of row 62 {3, 2, 0, 1}, so 1; perm[-3 + 1]
    // the third byte of row 63 {3, 2, 1, 0}, so 1: hash 1 gives -x + 2y.
    EXPECT_EQ(Perlin::point(0.1f, 0.2f, -3, -5), 0.0123018771f);
}

// ---- Simplex noise ------------------------------------------------------------

TEST(PerlinSimplex, GoldenValues) {
    for (const Case1& c : {Case1{0.5f, 0.4375f}, Case1{-0.3f, -0.556648672f},
                           Case1{2.75f, 0.283465356f}, Case1{-7.6f, -0.0803969949f},
                           Case1{123.456f, 0.813185632f}})
        EXPECT_EQ(Perlin::snoise(c.x), c.expected) << c.x;
    for (const Case2& c : {Case2{0.3f, 0.7f, -0.141488224f}, Case2{-1.3f, 2.7f, 0.238203436f},
                           Case2{3.1f, -0.4f, -0.321467072f}})
        EXPECT_EQ(Perlin::snoise(c.x, c.y), c.expected) << c.x << ", " << c.y;
    EXPECT_EQ(Perlin::snoise(0.3f, 0.7f, 0.2f), 0.0600827634f);
    // The last 3-D corner is offset by x0 - 0.5 in one rounding; the two
    // roundings of (x0 - 1) + 3G would give -0.584684134 and -0.220841527.
    EXPECT_EQ(Perlin::snoise(2.9111722f, -0.8979027f, 0.14559144f), -0.584684193f);
    EXPECT_EQ(Perlin::snoise(-0.5349528f, -2.1460762f, -3.9880562f), -0.220841706f);
    EXPECT_EQ(Perlin::snoise(0.3f, 0.7f, 0.2f, 0.9f), -0.0974441096f);
    EXPECT_EQ(Perlin::snoise(3.1f, -0.4f, -5.9f, 9.8f), 0.205133826f);
}

TEST(PerlinSimplex, NegativeCellsReadThroughTheTraversalTable) {
    // Each of these differs from what wrapping the cells to their low byte
    // would give (noted on the right).
    EXPECT_EQ(Perlin::snoise(-0.3f, -0.7f), 0.141097248f);                // 0.788490295
    EXPECT_EQ(Perlin::snoise(-12.25f, -7.75f), -0.0685329437f);           // -0.019120872
    EXPECT_EQ(Perlin::snoise(-1.3f, -2.2f, -0.4f), 0.918699682f);         // -0.31686309
    EXPECT_EQ(Perlin::snoise(3.1f, -0.4f, -5.9f), -0.722148716f);         // -0.187360197
    EXPECT_EQ(Perlin::snoise(-100.2f, -50.7f, -3.3f), -0.490285933f);     // -0.545159042
    EXPECT_EQ(Perlin::snoise(-1.3f, -2.2f, -0.4f, -3.1f), 0.509236693f);  // 0.263794392
}

TEST(PerlinSimplex, StaysNearUnitRangeAndIsContinuous) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<float> coord(-50.0f, 50.0f);
    for (int n = 0; n < 20000; ++n) {
        const float x = coord(rng), y = coord(rng), z = coord(rng), w = coord(rng);
        EXPECT_LE(std::fabs(Perlin::snoise(x)), 1.0f);
        EXPECT_LE(std::fabs(Perlin::snoise(x, y)), 1.0f);
        EXPECT_LE(std::fabs(Perlin::snoise(x, y, z)), 1.0f);
        EXPECT_LE(std::fabs(Perlin::snoise(x, y, z, w)), 1.0f);
        const float d = 1e-4f;
        EXPECT_NEAR(Perlin::snoise(x, y), Perlin::snoise(x + d, y), 1e-2f);
        EXPECT_NEAR(Perlin::snoise(x, y, z), Perlin::snoise(x, y, z + d), 1e-2f);
        EXPECT_NEAR(Perlin::snoise(x, y, z, w), Perlin::snoise(x, y + d, z, w), 1e-2f);
    }
}

// ---- Octave sums and band-limited forms ---------------------------------------

TEST(PerlinGet, SumsOctavesOfLatticeNoise) {
    EXPECT_EQ(Perlin::Get(-1.3f, 2.7f, 0, 1.0f, 1.0f), 0.0f);
    EXPECT_EQ(Perlin::Get(-1.3f, 2.7f, 1, 0.5f, 3.0f), Perlin::noise(-0.65f, 1.35f) * 3.0f);
    EXPECT_EQ(Perlin::Get(-1.3f, 2.7f, 3, 0.7f, 1.5f), 0.0088231042f);
    EXPECT_EQ(Perlin::Get(3.1f, -0.4f, -5.9f, 4, 0.35f, 2.0f), -0.296446264f);
}

TEST(PerlinFilteredNoise, FadesOutBetweenFilterWidths) {
    const float x = -1.3f, y = 2.7f, z = 0.6f, w = -0.2f;
    for (float fw : {-1.0f, 0.0f, 1.0f, 1.44f}) {
        EXPECT_EQ(Perlin::fnoise2D(x, y, fw), Perlin::noise(x, y)) << fw;
        EXPECT_EQ(Perlin::fnoise3D(x, y, z, fw), Perlin::noise(x, y, z)) << fw;
        EXPECT_EQ(Perlin::fnoise4D(x, y, z, w, fw), Perlin::noise(x, y, z, w)) << fw;
        EXPECT_EQ(Perlin::fsnoise2D(x, y, fw), Perlin::snoise(x, y)) << fw;
        EXPECT_EQ(Perlin::fsnoise3D(x, y, z, fw), Perlin::snoise(x, y, z)) << fw;
        EXPECT_EQ(Perlin::fsnoise4D(x, y, z, w, fw), Perlin::snoise(x, y, z, w)) << fw;
    }
    // Part way: n (1 - k) with k = smooth(2 / 1.2, 1.2, 2.2).
    EXPECT_EQ(Perlin::fnoise2D(x, y, 2.0f), 0.121893145f);
    EXPECT_EQ(Perlin::fnoise2D(x, y, 2.000411f), 0.121779777f);  // fw / 1.2 in float
    EXPECT_EQ(Perlin::fsnoise3D(-1.3f, -2.2f, -0.4f, 2.0f), 0.505216837f);
    // The fade drops to 0 once it passes 0.9999, a little before 2.64.
    EXPECT_NE(Perlin::fnoise2D(x, y, 2.633056f), 0.0f);
    const float inf = std::numeric_limits<float>::infinity();
    for (float fw : {2.6330564f, 2.64f, 10.0f, inf}) {
        EXPECT_EQ(Perlin::fnoise2D(x, y, fw), 0.0f) << fw;
        EXPECT_EQ(Perlin::fnoise3D(x, y, z, fw), 0.0f) << fw;
        EXPECT_EQ(Perlin::fnoise4D(x, y, z, w, fw), 0.0f) << fw;
        EXPECT_EQ(Perlin::fsnoise2D(x, y, fw), 0.0f) << fw;
        EXPECT_EQ(Perlin::fsnoise3D(x, y, z, fw), 0.0f) << fw;
        EXPECT_EQ(Perlin::fsnoise4D(x, y, z, w, fw), 0.0f) << fw;
    }
}

// ---- Bad input ----------------------------------------------------------------

// The one-point noise and the batch kernels give the same bits here too
// (every NaN counted as one), and what is finite stays in the noise's range.
TEST(PerlinStatic, NonFiniteAndHugeInputsGiveTheBatchBitsAndNoFiniteValueOutOfRange) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float odd[] = {inf, -inf, nan, 3e9f, -3e9f, 1e30f, -1e30f, 2147483520.0f, -2147483648.0f};
    const auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    const auto inRangeIfFinite = [](float v) { return !std::isfinite(v) || std::fabs(v) <= 1.1f; };
    for (float v : odd) {
        float x[2] = {v, 0.5f}, y[2] = {0.5f, v}, z[2] = {-v, v}, out[2];
        PerlinBatch::noise(x, y, z, 2, out);
        EXPECT_EQ(bits(out[0]), bits(Perlin::noise(v, 0.5f, -v))) << v;
        EXPECT_EQ(bits(out[1]), bits(Perlin::noise(0.5f, v, v))) << v;
        PerlinBatch::noise(x, y, 2, out);
        EXPECT_EQ(bits(out[0]), bits(Perlin::noise(v, 0.5f))) << v;
        EXPECT_EQ(bits(out[1]), bits(Perlin::noise(0.5f, v))) << v;
        PerlinBatch::Get(x, y, z, 2, 3, 1.0f, 1.0f, out);
        EXPECT_EQ(bits(out[0]), bits(Perlin::Get(v, 0.5f, -v, 3, 1.0f, 1.0f))) << v;
        for (float n : {Perlin::noise(v), Perlin::noise(v, v, v, v), Perlin::snoise(v), Perlin::snoise(v, -v),
                        Perlin::snoise(0.5f, v, -0.5f), Perlin::snoise(v, 1.0f, -v, 2.0f), Perlin::fnoise3D(v, v, v, v),
                        Perlin::fsnoise4D(v, v, v, v, 0.5f)})
            EXPECT_TRUE(inRangeIfFinite(n)) << v << ": " << n;
        // A corner this far off lies outside its radius, whatever its indices.
        for (float n : {Perlin::point(v, v, 1 << 30, -(1 << 30)), Perlin::point(v, v, v, 2147483647, -2147483647 - 1, 77),
                        Perlin::point(v, v, v, v, -1000, 1000, -2147483647 - 1, 2147483647)})
            EXPECT_TRUE(n == 0.0f || std::isnan(n)) << v << ": " << n;
    }
}

// ---- Instance layer -----------------------------------------------------------

TEST(PerlinInstance, BuildsItsTablesFromItsSeedOnFirstUse) {
    // The tables take 6 rand() calls per entry and 1023 for the shuffle, all
    // after srand(seed); the sequence then continues from there.
    std::srand(42);
    for (int n = 0; n < 1024 * 6 + 1023; ++n) std::rand();
    const int next = std::rand();

    Perlin a(3, 1.0f, 1.0f, 42);
    std::srand(1);  // construction built nothing, so this changes nothing
    const float va = a.noise1(0.3f, false);
    EXPECT_EQ(std::rand(), next);

    Perlin b(3, 1.0f, 1.0f, 42);
    float v[3] = {0.3f, 1.7f, -2.2f};
    float w[3] = {0.3f, 1.7f, -2.2f};
    EXPECT_EQ(b.noise1(0.3f, false), va);
    EXPECT_EQ(a.noise3(v, false), b.noise3(w, false));

    Perlin c(3, 1.0f, 1.0f, 43);
    EXPECT_NE(c.noise1(0.3f, false), va);
}

TEST(PerlinInstance, ZeroAtIntegersAndUnitMapsToHalf) {
    Perlin p(2, 1.0f, 1.0f, 5);
    for (int i = -6; i <= 6; ++i) {
        EXPECT_EQ(p.noise1(float(i), false), 0.0f) << i;
        EXPECT_EQ(p.noise1(float(i), true), 0.5f) << i;
        float v2[2] = {float(i), float(3 - i)};
        EXPECT_EQ(p.noise2(v2, false), 0.0f) << i;
        float v3[3] = {float(i), float(-i), 7.0f};
        EXPECT_EQ(p.noise3(v3, true), 0.5f) << i;
    }
}

TEST(PerlinInstance, RangesAndContinuity) {
    Perlin p(4, 1.0f, 1.0f, 9);
    std::mt19937 rng(3);
    std::uniform_real_distribution<float> coord(-40.0f, 40.0f);
    const float eps = 1e-4f;
    for (int n = 0; n < 5000; ++n) {
        const float x = coord(rng), y = coord(rng), z = coord(rng);
        const float u = p.noise1(x, true);
        EXPECT_GE(u, 0.0f);
        EXPECT_LE(u, 1.0f);
        float v2[2] = {x, y};
        EXPECT_LE(std::fabs(p.noise2(v2, false)), 1.0f);
        float v3[3] = {x, y, z};
        EXPECT_LE(std::fabs(p.noise3(v3, false)), 1.0f);
        // A unit sum of four octaves lies in [0, 2 - 2^-3].
        const float s = p.perlin_noise_1D(x, true);
        EXPECT_GE(s, 0.0f);
        EXPECT_LE(s, 1.875f);
    }
    for (int i = -3; i <= 3; ++i) {
        float lo[3] = {float(i) - eps, 0.4f, 0.6f}, hi[3] = {float(i) + eps, 0.4f, 0.6f};
        EXPECT_NEAR(p.noise3(lo, false), p.noise3(hi, false), 1e-3f) << i;
        EXPECT_NEAR(p.noise1(float(i) - eps, false), p.noise1(float(i) + eps, false), 1e-3f) << i;
    }
}

TEST(PerlinInstance, OctaveSumsScaleTheCallersVectorInPlace) {
    Perlin p(3, 1.0f, 0.5f, 1);
    float v[2] = {0.3f, -1.25f};
    p.perlin_noise_2D(v, 3, 1.0f, 1.0f, false);
    EXPECT_EQ(v[0], 0.3f * 8.0f);
    EXPECT_EQ(v[1], -10.0f);

    float w[3] = {0.3f, -1.25f, 2.0f};
    p.perlin_noise_3D(w, 2, 1.5f, 1.0f, true);
    EXPECT_EQ(w[0], 0.3f * 1.5f * 4.0f);
    EXPECT_EQ(w[2], 12.0f);

    // The short form uses the object's octaves, frequency and amplitude.
    float a[2] = {0.3f, -1.25f}, b[2] = {0.3f, -1.25f};
    EXPECT_EQ(p.perlin_noise_2D(a, false), p.perlin_noise_2D(b, 3, 1.0f, 0.5f, false));
    EXPECT_EQ(a[0], b[0]);

    // One octave is the noise itself times the amplitude; the 1-D form keeps
    // the caller's value.
    float c[2] = {0.6f, 2.5f}, d[2] = {1.2f, 5.0f};
    EXPECT_EQ(p.perlin_noise_2D(c, 1, 2.0f, 0.25f, false), p.noise2(d, false) * 0.25f);
    EXPECT_EQ(p.perlin_noise_1D(0.7f, 1, 1.0f, 1.0f, false), p.noise1(0.7f, false));
}

TEST(PerlinInstance, NormalizeGivesUnitVectors) {
    float v2[2] = {3.0f, -4.0f};
    Perlin::normalize2(v2);
    EXPECT_FLOAT_EQ(v2[0], 0.6f);
    EXPECT_FLOAT_EQ(v2[1], -0.8f);
    float v3[3] = {2.0f, 0.0f, 0.0f};
    Perlin::normalize3(v3);
    EXPECT_EQ(v3[0], 1.0f);
    EXPECT_EQ(v3[1], 0.0f);
}

TEST(PerlinInstance, NonFiniteAndHugeInputsGiveTheBitsOfAnotherObjectOfTheSameSeed) {
    // The tables come from the seed alone, whatever was asked first; an octave
    // sum leaves the point multiplied by freq * 2^octaves.
    Perlin p(2, 1.0f, 1.0f, 3), q(2, 1.0f, 1.0f, 3);
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    float v3[3] = {0.5f, 0.0f, 0.0f};
    q.noise3(v3, true);  // q builds its tables first
    for (float x : {inf, -inf, nan, 3e9f, -3e9f, 1e30f, -1e30f, -5000.0f}) {
        float a2[2] = {x, 0.5f}, b2[2] = {x, 0.5f};
        float a3[3] = {0.5f, x, x}, b3[3] = {0.5f, x, x};
        EXPECT_EQ(bits(p.noise1(x, true)), bits(q.noise1(x, true))) << x;
        EXPECT_EQ(bits(p.noise2(a2, false)), bits(q.noise2(b2, false))) << x;
        EXPECT_EQ(bits(p.noise3(a3, true)), bits(q.noise3(b3, true))) << x;
        EXPECT_EQ(bits(p.perlin_noise_3D(a3, 40, 1.0f, 1.0f, false)), bits(q.perlin_noise_3D(b3, 40, 1.0f, 1.0f, false))) << x;
        EXPECT_EQ(a3[0], 0x1p39f) << x;
    }
}

TEST(PerlinOctaveSums, HugeOctaveCountsEndWithTheFullLoopsBits) {
    // The full loop, written out with no early exit, run far past the point
    // where coordinates and weight stop changing.
    auto fullLoop = [](float x, float y, float z, int octaves, float freq, float amp) {
        x *= freq;
        y *= freq;
        z *= freq;
        float sum = 0.0f;
        for (int o = 0; o < octaves; ++o) {
            sum = sum + Perlin::noise(x, y, z) * amp;
            x *= 2.0f;
            y *= 2.0f;
            z *= 2.0f;
            amp *= 0.5f;
        }
        return sum;
    };
    const float inf = std::numeric_limits<float>::infinity();
    for (float amp : {1.0f, 3e38f, inf})
        for (float x : {0.3f, -7.5f, 1e-30f, 0.0f}) {
            const float full = fullLoop(x, 0.41f, -x, 1000, 4.0f, amp);
            const float fast = Perlin::Get(x, 0.41f, -x, 2147483647, 4.0f, amp);
            EXPECT_EQ(std::memcmp(&full, &fast, sizeof full), 0) << amp << " at " << x;
            (void)Perlin::Get(x, 0.41f, 2147483647, 4.0f, amp);  // the 2-D sum ends too
        }
}
