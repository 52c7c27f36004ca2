// The gradient noises beside lattice noise: improved Perlin noise, simplex
// noise, the stb library's noise and wavelet noise, each held to its
// reference's values.

#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <stb_perlin.h>

#include "noise/ImprovedPerlin.h"
#include "noise/Simplex.h"
#include "noise/StbPerlin.h"
#include "noise/WaveletNoise.h"

using namespace gritwell;

// ---- Improved Perlin noise --------------------------------------------------

namespace {
struct Case {
    double x, y, z, expected;
};
}  // namespace

TEST(ImprovedPerlin, ReproducesTheReferenceCodeToTheLastBit) {
    // The first two are the values the reference publishes; the others are
    // the reference code's output for negative and near-lattice coordinates.
    const Case cases[] = {{3.14, 42, 7, 0.13691995878400012},
                          {-4.2, 10, 6, 0.14208000000000043},
                          {0.5, -1.25, 100.75, -0.21482372283935547},
                          {-7.3, 0.001, -0.5, -1.6267264479896681e-09}};
    const ImprovedPerlin perlin;
    for (const Case& c : cases)
        EXPECT_EQ(perlin.noise3(c.x, c.y, c.z), c.expected) << "at (" << c.x << ", " << c.y << ", " << c.z << ")";
}

TEST(ImprovedPerlin, MatchesTheReferenceCodeOverAGrid) {
    // The reference code's sum over 4000 points, which between them reach
    // every gradient, added in this order.
    const ImprovedPerlin perlin;
    double sum = 0.0;
    for (int i = 0; i < 20; ++i)
        for (int j = 0; j < 20; ++j)
            for (int k = 0; k < 10; ++k) sum += perlin.noise3(-9.7 + 0.93 * i, -4.1 + 0.61 * j, -3.3 + 0.77 * k);
    EXPECT_EQ(sum, -8.693227039634213);
}

TEST(ImprovedPerlin, ZeroOnLatticePoints) {
    const ImprovedPerlin perlin;
    for (int i = -300; i <= 300; i += 7) {
        EXPECT_EQ(perlin.noise3(i, -i / 3, 2 * i), 0.0) << "at lattice " << i;
        EXPECT_EQ(perlin.noise1(i), 0.0) << "at " << i;
    }
}

TEST(ImprovedPerlin, OneDimensionalSlopesFollowPermutationParity) {
    // Permutation entries 151, 160, 137, 91 at cells 0..3: odd gives slope -1,
    // even +1. Between opposite slopes the midpoint reaches the -0.5..0.5 bounds.
    const ImprovedPerlin perlin;
    EXPECT_EQ(perlin.noise1(0.5), -0.5);
    EXPECT_EQ(perlin.noise1(1.5), 0.5);
    // Slopes -1 and -1 at 2 and 3: fade(0.25) = 0.103515625.
    EXPECT_EQ(perlin.noise1(2.25), -0.25 + 0.103515625 * (0.75 - -0.25));
}

TEST(ImprovedPerlin, NonFiniteAndHugeCoordinatesGiveAValue) {
    const ImprovedPerlin perlin;
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(perlin.noise3(nan, 0.5, 0.5)));
    EXPECT_TRUE(std::isnan(perlin.noise3(0.5, inf, 0.5)));
    EXPECT_TRUE(std::isnan(perlin.noise1(-inf)));
    // Beyond the int range a coordinate is a whole number: it lies on a
    // lattice plane, so the noise is finite and bounded.
    for (double v : {3e9, -3e9, 1e300, -1e300}) {
        EXPECT_LE(std::fabs(perlin.noise3(v, 0.5, 0.25)), 1.1) << v;
        EXPECT_EQ(perlin.noise1(v), 0.0) << v;
    }
}

// ---- Simplex noise ----------------------------------------------------------

TEST(Simplex, ReproducesTheReferenceCode) {
    // The reference Java code's output at these points, to the last bit.
    EXPECT_EQ(Simplex::noise(0.3, 0.7), 0.2552206334201348);
    EXPECT_EQ(Simplex::noise(-3.6, 12.25), 0.7007707536381684);
    EXPECT_EQ(Simplex::noise(0.3, 0.7, 1.9), -0.3494855614156376);
    EXPECT_EQ(Simplex::noise(-3.6, 12.25, -0.4), 0.3907998289166676);
    EXPECT_EQ(Simplex::noise(0.3, 0.7, 1.9, 2.2), -0.01120466266463831);
    EXPECT_EQ(Simplex::noise(-3.6, 12.25, -0.4, -7.7), 0.16365720748063917);
}

TEST(Simplex, MatchesTheReferenceCodeOverAGrid) {
    // The reference code's sums over 4000 points, added in this order.
    double sum2 = 0.0, sum3 = 0.0, sum4 = 0.0;
    for (int i = 0; i < 20; ++i)
        for (int j = 0; j < 20; ++j)
            for (int k = 0; k < 10; ++k) {
                const double x = -9.7 + 0.93 * i, y = -4.1 + 0.61 * j, z = -3.3 + 0.77 * k, w = 0.3 * k - 1.1;
                sum2 += Simplex::noise(x, y + z);
                sum3 += Simplex::noise(x, y, z);
                sum4 += Simplex::noise(x, y, z, w);
            }
    EXPECT_EQ(sum2, -1.7918253338345582);
    EXPECT_EQ(sum3, 53.57559099241277);
    EXPECT_EQ(sum4, 3.202229735118383);
}

TEST(Simplex, NonFiniteAndHugeCoordinatesGiveAValue) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(Simplex::noise(nan, 0.5)));
    EXPECT_TRUE(std::isnan(Simplex::noise(0.5, nan, 0.5)));
    EXPECT_TRUE(std::isnan(Simplex::noise(0.5, 0.5, 0.5, nan)));
    // Infinities may give NaN (inf - inf); nothing undefined happens on the way.
    for (double v : {inf, -inf, 3e9, -3e9, 1e300}) {
        for (double r : {Simplex::noise(v, 0.5), Simplex::noise(0.5, v, -v), Simplex::noise(v, 0.5, v, 0.25)})
            EXPECT_TRUE(std::isnan(r) || std::fabs(r) <= 1.0) << v;
    }
}

// ---- The stb library's noise ------------------------------------------------

namespace {
struct Point {
    float x, y, z;
};
const Point kPoints[] = {{0.3f, 0.7f, 1.9f}, {-3.6f, 12.25f, -0.4f}, {100.1f, -57.5f, 3.3f}, {0.5f, 0.5f, 0.5f}};
const float kInf = std::numeric_limits<float>::infinity();
const float kNaN = std::numeric_limits<float>::quiet_NaN();
}  // namespace

TEST(StbPerlin, ForwardsToTheLibrary) {
    for (const Point& p : kPoints) {
        EXPECT_EQ(StbPerlin::noise3(p.x, p.y, p.z), stb_perlin_noise3(p.x, p.y, p.z, 0, 0, 0)) << p.x;
        EXPECT_EQ(StbPerlin::noise3(p.x, p.y, p.z, 4, 8, 16), stb_perlin_noise3(p.x, p.y, p.z, 4, 8, 16)) << p.x;
        EXPECT_EQ(StbPerlin::fbm(p.x, p.y, p.z, 2.0f, 0.5f, 6), stb_perlin_fbm_noise3(p.x, p.y, p.z, 2.0f, 0.5f, 6));
        EXPECT_EQ(StbPerlin::turbulence(p.x, p.y, p.z, 2.1f, 0.6f, 5),
                  stb_perlin_turbulence_noise3(p.x, p.y, p.z, 2.1f, 0.6f, 5));
        EXPECT_EQ(StbPerlin::ridge(p.x, p.y, p.z, 2.0f, 0.5f, 1.0f, 6),
                  stb_perlin_ridge_noise3(p.x, p.y, p.z, 2.0f, 0.5f, 1.0f, 6));
    }
    EXPECT_EQ(StbPerlin::fbm(0.3f, 0.7f, 1.9f, 2.0f, 0.5f, 0), 0.0f);
}

TEST(StbPerlin, ZeroOnLatticeAndWrapsWithTheGivenPeriod) {
    EXPECT_EQ(StbPerlin::noise3(3.0f, -7.0f, 12.0f), 0.0f);
    // Binary fractions, so that shifted coordinates keep their exact fraction.
    EXPECT_EQ(StbPerlin::noise3(4.375f, 0.75f, 1.875f, 4), StbPerlin::noise3(0.375f, 0.75f, 1.875f, 4));
    EXPECT_NE(StbPerlin::noise3(4.375f, 0.75f, 1.875f), StbPerlin::noise3(0.375f, 0.75f, 1.875f));
    EXPECT_EQ(StbPerlin::noise3(256.375f, 0.75f, -254.125f), StbPerlin::noise3(0.375f, 0.75f, 1.875f));
    // Only the wrap modulo 256 matters, so 256 and INT_MIN mean "no wrap".
    EXPECT_EQ(StbPerlin::noise3(0.3f, 0.7f, 1.9f, 256, INT_MIN, 0), StbPerlin::noise3(0.3f, 0.7f, 1.9f));
}

TEST(StbPerlin, NonFiniteAndHugeCoordinatesReadAsZero) {
    const float atZero = StbPerlin::noise3(0.0f, 0.7f, 1.9f);
    for (float v : {kNaN, kInf, -kInf, 3e9f, -1e30f, 2147483648.0f})
        EXPECT_EQ(StbPerlin::noise3(v, 0.7f, 1.9f), atZero) << v;
    EXPECT_EQ(StbPerlin::noise3(kNaN, kNaN, kNaN), 0.0f);
}

TEST(StbPerlin, SumsWhoseOctavesLeaveTheIntRangeContinueThePeriod) {
    // x = 2^20 sits on a lattice plane with cell 0 mod 256 at every octave of
    // lacunarity 2, like x = 0; from octave 11 on it exceeds 2^31 and is
    // guarded, and the sums still match the library's at x = 0.
    const float x = 1048576.0f;
    EXPECT_EQ(StbPerlin::fbm(x, 0.3f, 0.7f, 2.0f, 0.5f, 16), stb_perlin_fbm_noise3(0.0f, 0.3f, 0.7f, 2.0f, 0.5f, 16));
    EXPECT_EQ(StbPerlin::turbulence(x, 0.3f, 0.7f, 2.0f, 0.5f, 16),
              stb_perlin_turbulence_noise3(0.0f, 0.3f, 0.7f, 2.0f, 0.5f, 16));
    EXPECT_EQ(StbPerlin::ridge(x, 0.3f, 0.7f, 2.0f, 0.5f, 1.0f, 16),
              stb_perlin_ridge_noise3(0.0f, 0.3f, 0.7f, 2.0f, 0.5f, 1.0f, 16));
}

TEST(StbPerlin, SumsWithNonFiniteInputsGiveAValue) {
    EXPECT_TRUE(std::isfinite(StbPerlin::fbm(kNaN, 0.3f, 0.7f, 2.0f, 0.5f, 6)));
    EXPECT_TRUE(std::isfinite(StbPerlin::fbm(0.2f, 0.3f, 0.7f, kInf, 0.5f, 6)));
    EXPECT_GE(StbPerlin::turbulence(0.2f, -kInf, 0.7f, 2.0f, 0.5f, 6), 0.0f);
    EXPECT_GE(StbPerlin::ridge(1e30f, 0.3f, 0.7f, 2.0f, 0.5f, 1.0f, 6), 0.0f);
}

// ---- Wavelet noise ----------------------------------------------------------

namespace {
constexpr float kTile = static_cast<float>(WaveletNoise::kTileSize);
}  // namespace

TEST(WaveletNoise, PinnedValues) {
    // The tile comes from integer arithmetic only; these hold on every platform.
    EXPECT_EQ(WaveletNoise::noise(0.0f, 0.0f, 0.0f), 0.131858766f);
    EXPECT_EQ(WaveletNoise::noise(0.25f, 0.5f, 0.75f), -0.177683502f);
    EXPECT_EQ(WaveletNoise::noise(-3.5f, 10.125f, 63.9f), 0.0669947118f);
    EXPECT_EQ(WaveletNoise::noise(1.0f, 2.0f, 3.0f), 0.651650786f);
    EXPECT_EQ(WaveletNoise::noise(17.3f, -0.2f, 5.5f), -0.0574147031f);
}

TEST(WaveletNoise, RepeatsWithTheTile) {
    for (float v : {0.125f, 3.5f, 31.75f, 63.0625f}) {
        const float base = WaveletNoise::noise(v, 2.25f, 7.5f);
        EXPECT_EQ(WaveletNoise::noise(v + kTile, 2.25f, 7.5f), base) << v;
        EXPECT_EQ(WaveletNoise::noise(v - kTile, 2.25f + kTile, 7.5f - 2 * kTile), base) << v;
    }
}

TEST(WaveletNoise, NonFiniteAndHugeCoordinatesGiveAValue) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float atZero = WaveletNoise::noise(0.0f, 2.25f, 7.5f);
    for (float v : {nan, inf, -inf}) EXPECT_EQ(WaveletNoise::noise(v, 2.25f, 7.5f), atZero) << v;
    // 2^30 and -3 * 2^40 are whole multiples of the tile.
    EXPECT_EQ(WaveletNoise::noise(1073741824.0f, 2.25f, 7.5f), atZero);
    EXPECT_EQ(WaveletNoise::noise(-3298534883328.0f, 2.25f, 7.5f), atZero);
    EXPECT_TRUE(std::isfinite(WaveletNoise::noise(1e38f, -1e38f, 3e9f)));
}
