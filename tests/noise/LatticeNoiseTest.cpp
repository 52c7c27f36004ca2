// Lattice noise: the one-point forms in one to four dimensions, the
// instance layer, the batch kernels at every instruction-set level against
// the definition, and the octave sums built on it.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/FloatToInt.h"
#include "core/SimdLevel.h"
#include "noise/FBM.h"
#include "noise/FractalSum.h"
#include "noise/ImprovedPerlin.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"
#include "noise/PerlinPoint.h"
#include "noise/Turbulence.h"

using namespace gritwell;

namespace {

// Every NaN counts as one value: which of two NaNs an addition keeps depends
// on the operand order the compiler picks, in either path.
std::uint32_t bits(float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); }

}  // namespace

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

TEST(PerlinInstance, NonFiniteAndHugeInputsGiveTheBitsOfAnotherObjectOfTheSameSeed) {
    // The tables come from the seed alone, whatever was asked first; an octave
    // sum leaves the point multiplied by freq * 2^octaves.
    Perlin p(2, 1.0f, 1.0f, 3), q(2, 1.0f, 1.0f, 3);
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
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

// ---- Arrays at every instruction-set level ----------------------------------

namespace {

// A million points: ordinary ones, then exact integers (negative ones
// included, where the cell index steps down), halves, points far beyond the
// int range and every bit pattern at random (NaN, infinities, denormals).
struct Cloud {
    std::vector<float> x, y, z;
};

const Cloud& cloud() {
    static const Cloud c = [] {
        constexpr int kPoints = 1 << 20;
        Cloud out;
        std::mt19937 rng(2024);
        auto next = [&rng](int kind) -> float {
            const std::uint32_t r = rng();
            switch (kind) {
            case 0: return static_cast<float>(static_cast<std::int32_t>(r % 2000001u) - 1000000) / 1000.0f;
            case 1: return static_cast<float>(static_cast<std::int32_t>(r % 601u) - 300);
            case 2: return static_cast<float>(static_cast<std::int32_t>(r % 601u) - 300) + 0.5f;
            case 3: return std::bit_cast<float>((r & 0x80000000u) | 0x4f000000u | (r & 0x00ffffffu));
            default: return std::bit_cast<float>(r);
            }
        };
        for (int i = 0; i < kPoints; ++i) {
            const int kind = static_cast<int>(rng() % 8) < 4 ? 0 : static_cast<int>(rng() % 5);
            out.x.push_back(next(kind));
            out.y.push_back(next(kind == 0 ? 0 : static_cast<int>(rng() % 5)));
            out.z.push_back(next(kind));
        }
        return out;
    }();
    return c;
}


}  // namespace

class PerlinBatchLevel : public ::testing::TestWithParam<SimdLevel> {};

// The one-point and the batch kernels of a level against the definitions:
// PerlinPoint::reference in space, the scalar Perlin::noise in the plane.
TEST_P(PerlinBatchLevel, EveryKernelHasTheBitsOfTheDefinitionInSpaceAndThePlane) {
    if (supportedSimdLevel(GetParam()) != GetParam()) GTEST_SKIP() << "this processor lacks the instruction set";
    const Cloud& c = cloud();
    const int n = static_cast<int>(c.x.size());
    std::vector<float> out(c.x.size()), plane(c.x.size());
    PerlinBatch::noise(GetParam(), c.x.data(), c.y.data(), c.z.data(), n, out.data());
    PerlinBatch::noise(GetParam(), c.x.data(), c.y.data(), n, plane.data());
    std::vector<float> simplex(c.x.size()), simplexPlane(c.x.size());
    Perlin::snoise(GetParam(), c.x.data(), c.y.data(), c.z.data(), n, simplex.data());
    Perlin::snoise(GetParam(), c.x.data(), c.y.data(), n, simplexPlane.data());
    int wrong = 0;
    for (int i = 0; i < n && wrong < 5; ++i) {
        const float s = Perlin::snoise(c.x[i], c.y[i], c.z[i]), sPlane = Perlin::snoise(c.x[i], c.y[i]);
        if (bits(simplex[i]) != bits(s) || bits(simplexPlane[i]) != bits(sPlane)) {
            ++wrong;
            ADD_FAILURE() << "point (" << c.x[i] << ", " << c.y[i] << ", " << c.z[i] << "): simplex " << simplex[i]
                          << ", " << simplexPlane[i] << " in the plane, instead of " << s << ", " << sPlane;
        }
        const float expected = PerlinPoint::reference(c.x[i], c.y[i], c.z[i]);
        const float point = PerlinPoint::noise(GetParam(), c.x[i], c.y[i], c.z[i]);
        const float expectedPlane = Perlin::noise(c.x[i], c.y[i]);
        if (bits(out[i]) != bits(expected) || bits(point) != bits(expected) ||
            bits(plane[i]) != bits(expectedPlane)) {
            ++wrong;
            ADD_FAILURE() << "point (" << c.x[i] << ", " << c.y[i] << ", " << c.z[i] << "): " << point
                          << " one point, " << out[i] << " batch, " << plane[i] << " in the plane, instead of "
                          << expected << ", " << expectedPlane;
        }
    }
}

TEST_P(PerlinBatchLevel, ShortAndOddLengthsFinishTheTailAndWriteNoFurther) {
    const Cloud& c = cloud();
    for (int n : {0, 1, 7, 8, 9, 15, 16, 17, 33}) {
        std::vector<float> out(40, -7.0f);
        PerlinBatch::noise(GetParam(), c.x.data() + 3, c.y.data() + 3, c.z.data() + 3, n, out.data());
        std::vector<float> plane(40, -7.0f);
        PerlinBatch::noise(GetParam(), c.x.data() + 3, c.y.data() + 3, n, plane.data());
        std::vector<float> simplex(40, -7.0f), simplexPlane(40, -7.0f);
        Perlin::snoise(GetParam(), c.x.data() + 3, c.y.data() + 3, c.z.data() + 3, n, simplex.data());
        Perlin::snoise(GetParam(), c.x.data() + 3, c.y.data() + 3, n, simplexPlane.data());
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(bits(out[i]), bits(Perlin::noise(c.x[3 + i], c.y[3 + i], c.z[3 + i]))) << n << ' ' << i;
            EXPECT_EQ(bits(plane[i]), bits(Perlin::noise(c.x[3 + i], c.y[3 + i]))) << n << ' ' << i;
            EXPECT_EQ(bits(simplex[i]), bits(Perlin::snoise(c.x[3 + i], c.y[3 + i], c.z[3 + i]))) << n << ' ' << i;
            EXPECT_EQ(bits(simplexPlane[i]), bits(Perlin::snoise(c.x[3 + i], c.y[3 + i]))) << n << ' ' << i;
        }
        for (int i = n; i < 40; ++i)
            for (const auto* v : {&out, &plane, &simplex, &simplexPlane}) EXPECT_EQ((*v)[i], -7.0f) << n << ' ' << i;
    }
}

TEST_P(PerlinBatchLevel, OutputMayOverwriteAnInput) {
    std::vector<float> x(cloud().x.begin(), cloud().x.begin() + 100);
    std::vector<float> expected;
    for (int i = 0; i < 100; ++i) expected.push_back(Perlin::noise(x[i], cloud().y[i], cloud().z[i]));
    PerlinBatch::noise(GetParam(), x.data(), cloud().y.data(), cloud().z.data(), 100, x.data());
    for (int i = 0; i < 100; ++i) EXPECT_EQ(bits(x[i]), bits(expected[i])) << i;
}

INSTANTIATE_TEST_SUITE_P(Levels, PerlinBatchLevel,
                         ::testing::Values(SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512),
                         [](const auto& info) { return std::string(simdLevelName(info.param)); });

TEST(PerlinBatchGet, OctaveSumsMatchPointByPointWhereverEachPointStopsInSpaceAndThePlane) {
    const Cloud& c = cloud();
    constexpr int kPoints = 5000;
    struct Case {
        int octaves;
        float freq, amp;
    };
    // Ordinary sums; one far past the point where every lane settles (a
    // damaged count); a zero and a negative count; amplitudes that vanish or
    // stay put at once.
    for (const Case k : {Case{4, 0.37f, 1.0f}, Case{1, 1.0f, 0.5f}, Case{100000, 3.0f, 1.0f}, Case{0, 1.0f, 1.0f},
                         Case{-3, 1.0f, 1.0f}, Case{6, 1e-30f, 0.0f}, Case{5, 2.0f, std::numeric_limits<float>::infinity()}}) {
        std::vector<float> x(c.x.begin(), c.x.begin() + kPoints), y(c.y.begin(), c.y.begin() + kPoints),
            z(c.z.begin(), c.z.begin() + kPoints), out(kPoints);
        PerlinBatch::Get(x.data(), y.data(), z.data(), kPoints, k.octaves, k.freq, k.amp, out.data());
        std::vector<float> px(c.x.begin(), c.x.begin() + kPoints), py(c.y.begin(), c.y.begin() + kPoints),
            plane(kPoints);
        PerlinBatch::Get(px.data(), py.data(), kPoints, k.octaves, k.freq, k.amp, plane.data());
        int wrong = 0;
        for (int i = 0; i < kPoints && wrong < 3; ++i) {
            const float expected = Perlin::Get(c.x[i], c.y[i], c.z[i], k.octaves, k.freq, k.amp);
            const float expectedPlane = Perlin::Get(c.x[i], c.y[i], k.octaves, k.freq, k.amp);
            if (bits(out[i]) != bits(expected) || bits(plane[i]) != bits(expectedPlane)) {
                ++wrong;
                ADD_FAILURE() << k.octaves << " octaves, point " << i << ": " << out[i] << ", " << plane[i]
                              << " in the plane, instead of " << expected << ", " << expectedPlane;
            }
        }
    }
}

TEST(SimdLevel, NamesAndTheChosenLevel) {
    for (SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512})
        EXPECT_EQ(simdLevelFromName(simdLevelName(level)), level) << simdLevelName(level);
    EXPECT_EQ(simdLevelFromName("AVX2"), std::nullopt);
    EXPECT_EQ(simdLevelFromName(""), std::nullopt);
    EXPECT_EQ(supportedSimdLevel(SimdLevel::kScalar), SimdLevel::kScalar);

    // A choice holds from the next call on, lowered to what the processor runs.
    const SimdLevel before = simdLevel();
    EXPECT_LE(before, supportedSimdLevel(SimdLevel::kAvx512));
    for (SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx512, SimdLevel::kAvx2}) {
        setSimdLevel(level);
        EXPECT_EQ(simdLevel(), supportedSimdLevel(level)) << simdLevelName(level);
    }
    setSimdLevel(before);
}

// ---- FBM and turbulence -----------------------------------------------------

TEST(FractalSum, OctaveCountRoundsUpAndNonPositiveIsZero) {
    const float p[3] = {0.3f, 1.7f, -2.2f};
    for (float octaves : {0.0f, -1.0f, -1e30f}) {
        EXPECT_EQ(FBM::fBM(p, octaves, 2.0f, 0.5f), 0.0f);
        EXPECT_EQ(Turbulence::turbulence(p, octaves, 2.0f, 0.5f), 0.0f);
        EXPECT_EQ(vFBM(p, octaves, 2.0f, 0.5f), 0.0f);
    }
    EXPECT_EQ(FBM::fBM(p, 0.1f, 2.0f, 0.5f), Perlin::noise(p[0], p[1], p[2]));
    EXPECT_EQ(FBM::fBM(p[0], p[1], 1.0f, 2.0f, 0.5f), Perlin::noise(p[0], p[1]));
    EXPECT_EQ(FBM::fBM(p[0], 1.0f, 2.0f, 0.5f), Perlin::noise(p[0]));
    // 2.5 octaves are three full octaves.
    EXPECT_EQ(FBM::fBM(p, 2.5f, 2.0f, 0.5f), FBM::fBM(p, 3.0f, 2.0f, 0.5f));
    EXPECT_NE(FBM::fBM(p, 2.0f, 2.0f, 0.5f), FBM::fBM(p, 3.0f, 2.0f, 0.5f));
}

TEST(FractalSum, WorkedTwoOctaveSums) {
    const float x = 0.3f, y = 1.7f, z = -2.2f;
    const float n0 = Perlin::noise(x, y, z);
    const float n1 = Perlin::noise(x * 3.0f, y * 3.0f, z * 3.0f);
    EXPECT_EQ(FBM::fBM(Vec3(x, y, z), 2.0f, 3.0f, 0.25f), n0 * 1.0f + n1 * 0.25f);

    const float t = static_cast<float>(static_cast<double>(std::fabs(n0)) * 1.0);
    EXPECT_EQ(Turbulence::turbulence(Vec3(x, y, z), 2.0f, 3.0f, 0.25f),
              static_cast<float>(t + static_cast<double>(std::fabs(n1)) * 0.25f));

    const ImprovedPerlin improved;
    const float v0 = static_cast<float>(improved.noise3(x, y, z));
    const float v1 = static_cast<float>(improved.noise3(x * 3.0f, y * 3.0f, z * 3.0f));
    EXPECT_EQ(vFBM(Vec3(x, y, z), 2.0f, 3.0f, 0.25f), v0 + v1 * 0.25f);
    EXPECT_EQ(vFBM(x, 1.0f, 3.0f, 0.25f), static_cast<float>(improved.noise1(x)));
}

TEST(FractalSum, HugeOctaveCountsEndWithTheBitsOfTheFullLoop) {
    // Past a few hundred octaves the weight is zero and the position fixed;
    // 2^31 octaves must end there, with the value of any longer sum.
    const float p[3] = {0.37f, -1.25f, 2.5f};
    const float inf = std::numeric_limits<float>::infinity();
    const float at400 = FBM::fBM(p, 400.0f, 2.0f, 0.5f);
    const float atMax = FBM::fBM(p, 2147483648.0f, 2.0f, 0.5f);
    EXPECT_EQ(std::isnan(atMax), std::isnan(at400));
    if (!std::isnan(at400)) {
        EXPECT_EQ(atMax, at400);
    }
    (void)FBM::fBM(p, inf, 0.5f, 0.5f);  // shrinking positions reach zero and stop
    (void)Turbulence::turbulence(p, inf, 1.0f, 0.0f);
    (void)vFBM(p, 1e9f, 2.0f, 0.5f);
}

TEST(FractalSum, SumsThatNeverSettleStopAtTheOctaveLimit) {
    // A lacunarity of -1 flips the position forever and a gain of 1 never
    // lets the weight fade: such a damaged record sums kMaxOctaves octaves,
    // exactly what asking for that many gives.
    const float p[3] = {0.37f, -1.25f, 2.5f};
    const float limit = static_cast<float>(kMaxOctaves);
    EXPECT_EQ(FBM::fBM(p, 2147483648.0f, -1.0f, 1.0f), FBM::fBM(p, limit, -1.0f, 1.0f));
    EXPECT_EQ(Turbulence::turbulence(p, 1e30f, 1.0f, 0.99999994f),
              Turbulence::turbulence(p, limit, 1.0f, 0.99999994f));
    EXPECT_NE(FBM::fBM(p, limit, -1.0f, 1.0f), FBM::fBM(p, limit - 1.0f, -1.0f, 1.0f));
}

// One point's sums take a run of octaves as lanes of the batch kernels where
// enough octaves run; the scalar level keeps the plain loop. Every level must
// give its bits, wherever the loop stops: at the count, across several steps
// of lanes, where the sum settles mid-step, at the octave limit (a
// lacunarity of -1 or a gain of 1 never settles), and on NaN, infinite and
// huge points.
TEST(FractalSum, OctaveLanesGiveTheScalarLoopsBitsAtEveryLevel) {
    struct Case {
        float x, y, z, octaves, lacunarity, gain;
    };
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    const Case cases[] = {
        {0.37f, -1.25f, 2.5f, 4.0f, 2.0f, 0.5f},      {0.37f, -1.25f, 2.5f, 7.0f, 2.0f, 0.5f},
        {-3.1f, 0.2f, 9.7f, 12.5f, 2.17f, 0.6f},     {5.5f, -2.0f, 0.0f, 17.0f, 1.9f, 0.5f},
        {0.37f, -1.25f, 2.5f, 1e9f, 2.0f, 0.5f},      {0.37f, -1.25f, 2.5f, 2147483648.0f, -1.0f, 1.0f},
        {0.37f, -1.25f, 2.5f, inf, 0.5f, 0.5f},       {1e-30f, 0.41f, -1e-30f, 40.0f, 3.0f, 1.0f},
        {nan, 0.5f, 1.5f, 9.0f, 2.0f, 0.5f},          {0.5f, inf, -inf, 9.0f, 2.0f, 0.5f},
        {3e9f, -1e30f, 16777216.0f, 30.0f, 2.0f, 0.5f}, {0.3f, 0.6f, 0.9f, 20.0f, nan, 0.5f},
        {0.3f, 0.6f, 0.9f, 20.0f, 2.0f, inf},          {0.3f, 0.6f, 0.9f, nan, 2.0f, 0.5f},
    };
    const auto sums = [](const Case& c) {
        const Vec3 p(c.x, c.y, c.z);
        return std::array<float, 6>{FBM::fBM(p, c.octaves, c.lacunarity, c.gain),
                                    FBM::fBM(c.x, c.y, c.octaves, c.lacunarity, c.gain),
                                    Turbulence::turbulence(p, c.octaves, c.lacunarity, c.gain),
                                    Turbulence::turbulence(c.x, c.y, c.octaves, c.lacunarity, c.gain),
                                    Perlin::Get(c.x, c.y, c.z, truncToInt(c.octaves), 0.7f, 1.5f),
                                    Perlin::Get(c.x, c.y, truncToInt(c.octaves), 0.7f, 1.5f)};
    };
    const SimdLevel before = simdLevel();
    for (const Case& c : cases) {
        setSimdLevel(SimdLevel::kScalar);
        const std::array<float, 6> expected = sums(c);
        for (SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
            if (supportedSimdLevel(level) != level) continue;
            setSimdLevel(level);
            const std::array<float, 6> got = sums(c);
            for (std::size_t k = 0; k < got.size(); ++k)
                EXPECT_EQ(bits(got[k]), bits(expected[k]))
                    << simdLevelName(level) << ", sum " << k
                    << " (fBM, fBM 2-D, turbulence, turbulence 2-D, Get, Get 2-D) at (" << c.x << ", " << c.y << ", "
                    << c.z << "), " << c.octaves << " octaves, lacunarity " << c.lacunarity << ", gain " << c.gain;
        }
    }
    setSimdLevel(before);
}
