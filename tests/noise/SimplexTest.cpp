#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "noise/Simplex.h"

using namespace gritwell;

namespace {
// Steps of 256 lattice cells along the first axis, unskewed into input space:
// (256, 0, ...) minus 256 * G on every axis.
constexpr double kG2 = 0.21132486540518713;  // (3 - sqrt(3)) / 6
constexpr double kG3 = 1.0 / 6.0;
constexpr double kG4 = 0.1381966011250105;  // (5 - sqrt(5)) / 20
}  // namespace

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

TEST(Simplex, ZeroAtTheOrigin) {
    EXPECT_EQ(Simplex::noise(0.0, 0.0), 0.0);
    EXPECT_EQ(Simplex::noise(0.0, 0.0, 0.0), 0.0);
    EXPECT_EQ(Simplex::noise(0.0, 0.0, 0.0, 0.0), 0.0);
}

TEST(Simplex, StaysWithinUnitRangeAndUsesIt) {
    std::mt19937 rng(2012);
    std::uniform_real_distribution<double> coord(-300.0, 300.0);
    double peak[3] = {0, 0, 0};
    for (int n = 0; n < 200000; ++n) {
        const double x = coord(rng), y = coord(rng), z = coord(rng), w = coord(rng);
        const double v[3] = {Simplex::noise(x, y), Simplex::noise(x, y, z), Simplex::noise(x, y, z, w)};
        for (int d = 0; d < 3; ++d) {
            ASSERT_LE(std::fabs(v[d]), 1.0) << "dimension " << d + 2 << " at " << x << ", " << y << ", " << z << ", " << w;
            peak[d] = std::max(peak[d], std::fabs(v[d]));
        }
    }
    for (double p : peak) EXPECT_GT(p, 0.8);
}

TEST(Simplex, ContinuousAcrossSimplexBoundaries) {
    // Gradients stay below 10, so a step of 1e-7 moves the value by < 1e-6,
    // wherever the step crosses a simplex or cell boundary.
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> coord(-20.0, 20.0);
    const double h = 1e-7;
    for (int n = 0; n < 20000; ++n) {
        const double x = coord(rng), y = coord(rng), z = coord(rng), w = coord(rng);
        ASSERT_NEAR(Simplex::noise(x, y), Simplex::noise(x + h, y - h), 1e-6) << x << ", " << y;
        ASSERT_NEAR(Simplex::noise(x, y, z), Simplex::noise(x + h, y, z - h), 1e-6) << x << ", " << y << ", " << z;
        ASSERT_NEAR(Simplex::noise(x, y, z, w), Simplex::noise(x, y + h, z, w - h), 1e-6) << x << ", " << y;
    }
}

TEST(Simplex, NegativeCellsIndexThePermutationLikeTheirPositiveRepeats) {
    // Lattice indices wrap to 0..255, so cells 256 apart agree: points in
    // negative cells match their repeats in positive ones.
    const double px[] = {0.3, 5.7, 100.2};
    for (double x : px) {
        const double y = 1.9 - x, z = 0.45 * x, w = 2.5;
        EXPECT_NEAR(Simplex::noise(x - 256 * (1 - kG2), y + 256 * kG2), Simplex::noise(x, y), 1e-9) << x;
        EXPECT_NEAR(Simplex::noise(x - 256 * (1 - kG3), y + 256 * kG3, z + 256 * kG3), Simplex::noise(x, y, z),
                    1e-9)
            << x;
        EXPECT_NEAR(Simplex::noise(x - 256 * (1 - kG4), y + 256 * kG4, z + 256 * kG4, w + 256 * kG4),
                    Simplex::noise(x, y, z, w), 1e-9)
            << x;
    }
}

TEST(Simplex, NegativeCellsDifferFromTheirMirrorImages) {
    int same = 0;
    for (int n = 1; n <= 400; ++n) {
        const double x = 0.37 * n, y = 0.11 * n + 0.5;
        if (Simplex::noise(-x, -y) == Simplex::noise(x, y)) ++same;
        if (Simplex::noise(-x, -y, -x) == Simplex::noise(x, y, x)) ++same;
        if (Simplex::noise(-x, -y, -x, -y) == Simplex::noise(x, y, x, y)) ++same;
    }
    EXPECT_LT(same, 12);
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
