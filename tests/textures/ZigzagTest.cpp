#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "textures/ZigzagTexture3D.h"

using namespace gritwell;

TEST(Zigzag, RowsOfTwoUnitCellsShiftedByOneUnit) {
    ZigzagTexture3D t;
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.25f},
        {1.5f, 0.5f, 9.0f, 0.25f},  // z plays no part
        {2.5f, 0.5f, 0.0f, 0.75f},
        {1.5f, 1.5f, 0.0f, 0.75f},  // the row above is shifted by one unit
        {0.5f, 1.5f, 0.0f, 0.25f},
        {3.5f, 1.5f, 0.0f, 0.25f},
        {1.5f, 2.5f, 0.0f, 0.75f},
    });
}

TEST(Zigzag, NegativeCoordinatesUseTheTrueFloor) {
    ZigzagTexture3D t;
    expectValues(t, {
        {-0.5f, 0.5f, 0.0f, 0.75f},  // s = floor(-0.5) = -1
        {-2.0f, 0.5f, 0.0f, 0.75f},  // column -2, not -3
        {-2.5f, 0.5f, 0.0f, 0.25f},
        {0.5f, -2.0f, 0.0f, 0.75f},  // row -2, not -3
        {0.5f, -2.5f, 0.0f, 0.25f},
        {-3.5f, -0.5f, 0.0f, 0.75f},  // s = floor(-2.5) = -3: |fmod(-3, 2)| = 1
    });
}

TEST(Zigzag, JitterIsOneValuePerTwoUnitCellFollowingTheRowShift) {
    ZigzagTexture3D t;
    t.setRandomizeColors(true);
    t.setVariability(0.8f);
    const auto jittered = [](float base, float c) { return base + 0.8f * (2.0f * c - 1.0f) / 4.0f; };
    // Even row 0: cells [0, 2), [2, 4) sampled at x / 2.
    const float c00 = CellNoise::cellNoise(0.0f, 0.5f);
    const float c10 = CellNoise::cellNoise(1.0f, 0.5f);
    // Odd row 1: cells [-1, 1), [1, 3) sampled at x / 2 + 1 / 2.
    const float c01 = CellNoise::cellNoise(0.0f, 1.5f);
    const float c11 = CellNoise::cellNoise(1.0f, 1.5f);
    // Odd row -1, the true floor of -0.5.
    const float cm = CellNoise::cellNoise(1.0f, -0.5f);
    expectValues(t, {
        {0.1f, 0.5f, 0.0f, jittered(0.25f, c00)},
        {1.9f, 0.5f, 0.0f, jittered(0.25f, c00)},
        {2.1f, 0.5f, 0.0f, jittered(0.75f, c10)},
        {-0.9f, 1.5f, 0.0f, jittered(0.25f, c01)},
        {0.9f, 1.5f, 0.0f, jittered(0.25f, c01)},
        {1.1f, 1.5f, 0.0f, jittered(0.75f, c11)},
        {2.9f, 1.5f, 0.0f, jittered(0.75f, c11)},
        {1.5f, -0.5f, 0.0f, jittered(0.25f, cm)},
    });
}

TEST(Zigzag, LargeVariabilityIsClampedToTheUnitRange) {
    ZigzagTexture3D t;
    t.setRandomizeColors(true);
    t.setVariability(5.0f);
    int low = 0, high = 0;
    for (int row = -8; row < 8; ++row)
        for (int cell = -8; cell < 8; ++cell) {
            const float x = 2.0f * static_cast<float>(cell) + 0.5f;
            const float y = static_cast<float>(row) + 0.5f;
            const float p[3] = {x, y, 0.0f};
            const float v = t(p);
            EXPECT_GE(v, 0.0f);
            EXPECT_LE(v, 1.0f);
            low += v == 0.0f;
            high += v == 1.0f;
        }
    EXPECT_GT(low, 0);
    EXPECT_GT(high, 0);

    // Points no mesh should hold still land in range.
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (float x : {nan, inf, -inf, 3e38f, -3e38f, -2147483648.0f})
        for (float y : {nan, inf, -inf, 3e38f, -3e38f, -2147483648.0f}) {
            const float p[3] = {x, y, 0.0f};
            const float v = t(p);
            EXPECT_TRUE(v >= 0.0f && v <= 1.0f) << x << ", " << y;
        }
}
