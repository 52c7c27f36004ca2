#include <cmath>
#include <climits>
#include <limits>

#include <gtest/gtest.h>
#include <stb_perlin.h>

#include "noise/StbPerlin.h"

using namespace gritwell;

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
