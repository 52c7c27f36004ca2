#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "textures/CheckerboardTexture3D.h"

using namespace gritwell;

TEST(Checkerboard, DepthOneCubesWithTheNegativeSeamShift) {
    CheckerboardTexture3D t;
    expectValues(t, {
        {0.5f, 0.5f, 0.5f, 0.25f},   // the origin cube is dark
        {1.5f, 0.5f, 0.5f, 0.75f},
        {-0.5f, 0.5f, 0.5f, 0.75f},
        {-1.0f, 0.5f, 0.5f, 0.25f},  // -1.0 lies in cell -2
        {0.5f, 0.5f, 1.5f, 0.75f},
        {1.5f, 1.5f, 1.5f, 0.75f},
        {-0.5f, -0.5f, -0.5f, 0.75f},
    });
}

TEST(Checkerboard, DeeperLevelsShadeAroundTheParentTone) {
    CheckerboardTexture3D t;
    t.setDepth(2);
    expectValues(t, {
        {0.25f, 0.25f, 0.25f, 0.125f},  // dark parent: tones 0.125 / 0.375
        {0.75f, 0.25f, 0.25f, 0.375f},
        {1.25f, 0.25f, 0.25f, 0.75f},   // light parent: tones 0.75 / 0.875
        {1.75f, 0.25f, 0.25f, 0.875f},
    });
    t.setDepth(3);
    // Dark, dark, then delta 1/16 around 0.125.
    expectValues(t, {{0.125f, 0.125f, 0.125f, 0.0625f}, {0.375f, 0.125f, 0.125f, 0.1875f}});
}

TEST(Checkerboard, DepthZeroOrNegativeIsBlack) {
    CheckerboardTexture3D t;
    for (int depth : {0, -1, -2147483647 - 1}) {
        t.setDepth(depth);
        expectValues(t, {{0.5f, 0.5f, 0.5f, 0.0f}, {1.5f, 0.5f, 0.5f, 0.0f}});
    }
}

TEST(Checkerboard, HugeDepthEndsWithTheValueOfTheFullLoop) {
    // Past ~150 levels the tone step underflows and the value is fixed, so a
    // damaged record's depth costs no more than that.
    CheckerboardTexture3D deep, deeper;
    deep.setDepth(400);
    deeper.setDepth(2147483647);
    for (float x : {0.3f, 1.7f, -2.2f, 1e-3f})
        for (float y : {0.1f, -0.6f}) {
            const float p[3] = {x, y, 0.45f};
            EXPECT_EQ(deep(p), deeper(p));
        }
}

TEST(Checkerboard, RandomizedTonesMoveEachCubeByAtMostAQuarterOfTheVariability) {
    CheckerboardTexture3D t;
    t.setRandomizeColors(true);
    t.setVariability(0.8f);
    const float p[3] = {2.5f, -3.5f, 0.5f};
    const float c = CellNoise::cellNoise(p[0], p[1], p[2]);
    const float base = 0.25f;  // cell (2, -4, 0): even, even, even: dark
    EXPECT_EQ(t(p), base + 0.8f * (2.0f * c - 1.0f) / 4.0f);

    // The same tone across one cube; randomising is ignored beyond depth 1.
    const float q[3] = {2.9f, -3.01f, 0.99f};
    EXPECT_EQ(t(p), t(q));
    t.setDepth(2);
    CheckerboardTexture3D plain;
    plain.setDepth(2);
    EXPECT_EQ(t(p), plain(p));
}

TEST(Checkerboard, RecordLayoutAndVersionRule) {
    CheckerboardTexture3D t;
    char record[48];
    t.getDescription(record);
    EXPECT_EQ(record[0], 48);
    EXPECT_EQ(record[33], 3);
    EXPECT_EQ(record[34], 0);

    // A 2.x record is ignored.
    CheckerboardTexture3D other;
    other.setDepth(5);
    other.getDescription(record);
    record[33] = 2;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getDepth(), 1);
    record[33] = 3;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getDepth(), 5);
}
