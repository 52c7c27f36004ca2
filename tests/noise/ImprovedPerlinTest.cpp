#include <cmath>
#include <limits>
#include <type_traits>

#include <gtest/gtest.h>

#include "noise/ImprovedPerlin.h"

using namespace gritwell;

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

TEST(ImprovedPerlin, RepeatsEvery256CellsIncludingNegativeOnes) {
    const ImprovedPerlin perlin;
    for (double x : {0.375, 17.625, 200.125}) {
        EXPECT_EQ(perlin.noise3(x - 256, 3.5, -1.25), perlin.noise3(x, 3.5, -1.25)) << x;
        EXPECT_EQ(perlin.noise3(0.5, x, x - 512), perlin.noise3(0.5, x, x)) << x;
        EXPECT_EQ(perlin.noise1(x - 256), perlin.noise1(x)) << x;
    }
}

TEST(ImprovedPerlin, ContinuousAcrossCellFaces) {
    const ImprovedPerlin perlin;
    const double eps = 1e-9;
    for (int i = -5; i <= 5; ++i) {
        EXPECT_NEAR(perlin.noise3(i - eps, 0.3, 0.7), perlin.noise3(i + eps, 0.3, 0.7), 1e-8) << i;
        EXPECT_NEAR(perlin.noise3(0.3, i - eps, 0.7), perlin.noise3(0.3, i + eps, 0.7), 1e-8) << i;
        EXPECT_NEAR(perlin.noise1(i + 0.5 - eps), perlin.noise1(i + 0.5 + eps), 1e-8) << i;
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
    for (double x = -20; x < 20; x += 0.01) {
        EXPECT_LE(std::fabs(perlin.noise1(x)), 0.5) << x;
    }
}

TEST(ImprovedPerlin, StatelessAndCheapToMake) {
    static_assert(std::is_empty_v<ImprovedPerlin>);
    static_assert(std::is_trivially_copyable_v<ImprovedPerlin>);
    EXPECT_EQ(ImprovedPerlin().noise3(1.5, 2.5, 3.5), ImprovedPerlin().noise3(1.5, 2.5, 3.5));
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
