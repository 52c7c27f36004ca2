#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "textures/GridTexture3D.h"

using namespace gritwell;

TEST(Grid, LinesIncludeTheirEdges) {
    GridTexture3D t;
    expectValues(t, {
        {0.5f, 0.5f, 0.5f, 1.0f},
        {0.1f, 0.5f, 0.5f, 0.0f},
        {0.125f, 0.5f, 0.5f, 0.0f},  // equality counts as on the line
        {0.126f, 0.5f, 0.5f, 1.0f},
        {0.5f, 0.875f, 0.5f, 0.0f},  // 0.125 below the upper plane
        {0.5f, 0.5f, 0.87f, 1.0f},
        {-0.875f, 0.5f, 0.5f, 0.0f},
        {-1.0f, -2.5f, 3.5f, 0.0f},
        {-1.5f, -2.5f, 3.5f, 1.0f},
    });
}

TEST(Grid, WidthExtremes) {
    GridTexture3D t;
    for (float w : {1.0f, 2.0f, 7.5f, -2.0f}) {
        t.setStripeWidth(w);
        for (float c : {0.5f, 0.37f, -0.5f, 12.49f})
            expectValues(t, {{c, 0.5f, 0.5f, 0.0f}, {0.5f, 0.5f, c, 0.0f}});
    }
    t.setStripeWidth(0.0f);  // only the planes themselves
    expectValues(t, {{0.0f, 0.5f, 0.5f, 0.0f}, {0.5f, -3.0f, 0.5f, 0.0f}, {0.001f, 0.5f, 0.5f, 1.0f},
                     {0.5f, 0.5f, 0.999f, 1.0f}});
}

TEST(Grid, PlanarModeLeavesZUntested) {
    GridTexture3D t;
    for (int flags : {4, 8, 12}) {
        t.setFlags(flags);
        expectValues(t, {{0.5f, 0.5f, 0.0f, 1.0f}, {0.5f, 0.5f, -7.0f, 1.0f}, {0.05f, 0.5f, 0.5f, 0.0f},
                         {0.5f, 0.95f, 0.5f, 0.0f}});
    }
    for (int flags : {2, 0, 1, 16}) {
        t.setFlags(flags);
        expectValues(t, {{0.5f, 0.5f, 0.0f, 0.0f}});
    }
}

TEST(Grid, RandomizedCellsToneUnclampedAndInvertible) {
    GridTexture3D t;
    t.setRandomizeColors(true);
    const float p[3] = {2.5f, -3.5f, 0.5f};
    const float q[3] = {2.8f, -3.2f, 0.3f};  // the same cell
    const float c = CellNoise::cellNoise(p[0], p[1], p[2]);
    EXPECT_EQ(t(p), 0.5f + (1.0f - 0.5f) * c);
    EXPECT_EQ(t(p), t(q));
    expectValues(t, {{2.5f, -3.0f, 0.5f, 0.0f}});  // lines stay black

    t.setMinColor(0.9f);
    t.setMaxColor(0.1f);
    EXPECT_EQ(t(p), 0.9f + (0.1f - 0.9f) * c);
    t.setMinColor(2.0f);
    t.setMaxColor(3.0f);
    EXPECT_GE(t(p), 2.0f);
}

TEST(Grid, DamagedFlagByteReadsAsOn) {
    GridTexture3D t;
    char record[52];
    t.getDescription(record);
    record[40] = static_cast<char>(0xff);  // a damaged bool byte reads as on
    record[41] = 0x77;                     // padding is not significant
    t.setStateFromDescription(record);
    EXPECT_TRUE(t.getRandomizeColors());
    const float p[3] = {0.5f, 0.5f, 0.5f};
    EXPECT_EQ(t(p), 0.5f + 0.5f * CellNoise::cellNoise(0.5f, 0.5f, 0.5f));
}
