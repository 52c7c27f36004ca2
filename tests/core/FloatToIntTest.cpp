#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "core/FloatToInt.h"
#include "core/Rounding.h"

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
