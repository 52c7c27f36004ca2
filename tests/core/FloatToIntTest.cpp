#include <climits>
#include <cmath>
#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/FloatToInt.h"
#include "core/Rounding.h"
#include "core/SimdLevel.h"
#include "core/SineToFloat.h"

using namespace gritwell;

TEST(FloatToInt, TruncatesTowardZeroAndGivesIntMinOutsideRange) {
    EXPECT_EQ(truncToInt(2.9), 2);
    EXPECT_EQ(truncToInt(-2.9), -2);
    EXPECT_EQ(truncToInt(2147483647.9), INT_MAX);
    EXPECT_EQ(truncToInt(-2147483648.9), INT_MIN);
    EXPECT_EQ(truncToInt(2147483648.0), INT_MIN);
    EXPECT_EQ(truncToInt(1e30), INT_MIN);
    EXPECT_EQ(truncToInt(std::numeric_limits<double>::quiet_NaN()), INT_MIN);
    EXPECT_EQ(truncToInt(-std::numeric_limits<double>::infinity()), INT_MIN);
}

TEST(FloatToInt, RoundsHalfToEven) {
    EXPECT_EQ(roundToInt(2.5), 2);
    EXPECT_EQ(roundToInt(3.5), 4);
    EXPECT_EQ(roundToInt(-2.5), -2);
    EXPECT_EQ(roundToInt(std::numeric_limits<double>::quiet_NaN()), INT_MIN);
    EXPECT_EQ(roundToInt(3e9), INT_MIN);
}

TEST(FloatToInt, CellIndexPutsExactNegativeIntegersOneCellLower) {
    EXPECT_EQ(cellIndex(0.0), 0);
    EXPECT_EQ(cellIndex(0.99f), 0);
    EXPECT_EQ(cellIndex(-0.5), -1);
    EXPECT_EQ(cellIndex(-1.0), -2);
    EXPECT_EQ(cellIndex(-1.5), -2);
    EXPECT_EQ(cellIndex(-0.0), 0);  // negative zero is not below zero
    // NaN takes the x86 integer indefinite; huge negatives wrap instead of
    // overflowing, as the 32-bit arithmetic always did.
    EXPECT_EQ(cellIndex(std::nan("")), INT_MIN);
    EXPECT_EQ(cellIndex(-1e30), INT_MAX);
}

TEST(FloatToInt, ParityIsMathematical) {
    EXPECT_TRUE(isEven(0));
    EXPECT_TRUE(isEven(-2));
    EXPECT_FALSE(isEven(-1));
    EXPECT_FALSE(isEven(INT_MAX));
    EXPECT_TRUE(isEven(INT_MIN));
}

TEST(Rounding, FloorAndCeilingThroughRoundToNearest) {
    EXPECT_EQ(Floor(-1.0), -1);
    EXPECT_EQ(Floor(-0.5), -1);
    EXPECT_EQ(Floor(2.0), 2);
    EXPECT_EQ(Floor(2.5), 2);
    EXPECT_EQ(TheFloor(-0.0001), -1);
    EXPECT_EQ(ceilf_ASM(2.0f), 2);
    EXPECT_EQ(ceilf_ASM(2.1f), 3);
    EXPECT_EQ(ceilf_ASM(-2.5f), -2);
    // Out of range gives a value, not undefined behaviour.
    EXPECT_EQ(Floor(std::nan("")), INT_MIN >> 1);
}

// fmodTwo on four doubles.
GRITWELL_AVX2 void remaindersOfTwo(const double* v, double* out) { _mm256_storeu_pd(out, fmodTwo(_mm256_loadu_pd(v))); }

TEST(Rounding, RemaindersOfOneAndTwoAreTheLibrarys) {
    // Signed zeros, fractions at every scale, the thresholds where a value
    // stops having a fraction (2^23 in float, 2^52 and 2^53 in double), odd
    // wholes just below 2^53, and non-finite values; then a sweep.
    std::vector<double> values = {0.0,        -0.0,       0.5,         -0.5,          1.0,        -1.0,
                                  2.0,        -3.0,       7.75,        -7.75,         1e-300,     -4.9e-324,
                                  0x1p23,     -0x1p23 + 0.5, 0x1p23 + 1.0, 0x1p52 - 0.5, 0x1p52 + 1.0, -0x1p53 + 1.0,
                                  0x1p53,     1e300,      -1e30,       std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> wide(-1e7, 1e7);
    for (int i = 0; i < 2000; ++i) values.push_back(i % 2 ? wide(rng) : std::floor(wide(rng)));
    auto bits = [](double v) { return std::isnan(v) ? 0x7ff8000000000000u : std::bit_cast<std::uint64_t>(v); };
    auto fbits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    for (const double v : values) {
        EXPECT_EQ(bits(fmodOne(v)), bits(std::fmod(v, 1.0))) << v;
        EXPECT_EQ(bits(fmodTwo(v)), bits(std::fmod(v, 2.0))) << v;
        const float f = static_cast<float>(v);
        EXPECT_EQ(fbits(fmodOne(f)), fbits(std::fmod(f, 1.0f))) << f;
    }
    if (supportedSimdLevel(SimdLevel::kAvx2) != SimdLevel::kAvx2) return;
    for (std::size_t i = 0; i + 4 <= values.size(); i += 4) {
        double lanes[4];
        remaindersOfTwo(&values[i], lanes);
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ(bits(lanes[k]), bits(std::fmod(values[i + k], 2.0))) << "four lanes, " << values[i + k];
    }
}

// sineToFloatSettled on four angles.
GRITWELL_AVX2 int settleSines(const double* angles, float* out) {
    __m128 lanes;
    const int settled = sineToFloatSettled(_mm256_loadu_pd(angles), lanes);
    _mm_storeu_ps(out, lanes);
    return settled;
}

TEST(SineToFloat, IsTheLibrarysSineRoundedToFloat) {
    // A dense sweep over the short reduction's range and past it, the
    // doubles nearest each multiple of pi/2 (where the reduced angle is
    // tiny), the angles the weave's shading takes (pi times a float
    // fraction, with and without pi added), zeros, tiny and huge angles,
    // and non-finite ones.
    std::vector<double> angles = {0.0, -0.0, 1e-300, -4.9e-324, 1e-9, 8.0, -8.0, 8.000000000000002, 1e6, -3e300,
                                  std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN()};
    for (int k = -5; k <= 5; ++k) {
        double a = k * 1.5707963267948966;
        for (int i = 0; i < 40; ++i) a = std::nextafter(a, -100.0);
        for (int i = 0; i < 80; ++i) angles.push_back(a = std::nextafter(a, 100.0));
    }
    std::mt19937 rng(9);
    std::uniform_real_distribution<double> sweep(-8.5, 8.5);
    std::uniform_real_distribution<float> fraction(0.0f, 1.0f);
    for (int i = 0; i < 400000; ++i) {
        angles.push_back(sweep(rng));
        const double f = fraction(rng);
        angles.push_back(3.141592653589793 * f);
        angles.push_back(3.141592653589793 + f * 3.141592653589793);
    }
    auto fbits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    int wrong = 0;
    for (const double a : angles)
        if (fbits(sineToFloat(a)) != fbits(static_cast<float>(std::sin(a))) && ++wrong <= 5)
            ADD_FAILURE() << "angle " << a << ": " << sineToFloat(a) << " instead of " << static_cast<float>(std::sin(a));

    // The four-lane short road: every lane it settles is sineToFloat's, and
    // it settles all but those past its range and the rare few near a midpoint.
    if (supportedSimdLevel(SimdLevel::kAvx2) != SimdLevel::kAvx2) return;
    std::size_t settledCount = 0;
    for (std::size_t i = 0; i + 4 <= angles.size(); i += 4) {
        float lanes[4];
        const int settled = settleSines(&angles[i], lanes);
        for (int k = 0; k < 4; ++k) {
            if (!(settled & (1 << k))) continue;
            ++settledCount;
            if (fbits(lanes[k]) != fbits(sineToFloat(angles[i + k])) && ++wrong <= 5)
                ADD_FAILURE() << "four lanes, angle " << angles[i + k] << ": " << lanes[k];
        }
    }
    EXPECT_GT(settledCount, angles.size() * 95 / 100);
}

TEST(Rounding, BilinearAndPolar) {
    const float p00[2] = {0, 0}, p01[2] = {0, 1}, p10[2] = {1, 0}, p11[2] = {1, 1};
    const float t[2] = {0.25f, 0.75f};
    float out[2];
    bilinearInterp(p00, p01, p10, p11, t, out);
    EXPECT_FLOAT_EQ(out[0], 0.25f);
    EXPECT_FLOAT_EQ(out[1], 0.75f);

    float r, theta, x, y;
    cartesianToPolar(0.0f, 2.0f, r, theta);
    EXPECT_FLOAT_EQ(r, 2.0f);
    EXPECT_FLOAT_EQ(theta, static_cast<float>(M_PI / 2));
    polarToCartesian(r, theta, x, y);
    EXPECT_NEAR(x, 0.0f, 1e-6f);
    EXPECT_FLOAT_EQ(y, 2.0f);
}
