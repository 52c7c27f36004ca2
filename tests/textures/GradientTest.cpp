#include <cstring>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/GradientTexture3D.h"

using namespace gritwell;

TEST(Gradient, XRampFoldsAsASawtoothOfPeriodTwo) {
    GradientTexture3D t;
    t.setYDir(false);
    t.setZDir(false);
    expectValues(t, {
        {-1.0f, 9.0f, 9.0f, 0.0f},
        {0.0f, 9.0f, 9.0f, 0.5f},
        {1.0f, 9.0f, 9.0f, 1.0f},   // exactly 1 is not folded: the top of the ramp
        {1.5f, 9.0f, 9.0f, 0.25f},  // folded to -0.5
        {2.5f, 9.0f, 9.0f, 0.75f},
        {3.0f, 9.0f, 9.0f, 0.0f},   // folded to -1
        // -3 lies in cell -4, an even shift up to +1; -2.9 shifts by 2.
        {-3.0f, 9.0f, 9.0f, 1.0f},
        {-2.9f, 9.0f, 9.0f, 0.04999995231628418f},
    });
}

TEST(Gradient, ChosenAxesMultiplyWithLaterFactorsInDouble) {
    GradientTexture3D t;
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.125f},
        {-3.0f, -2.9f, 2.5f, 0.037499964237213135f},
        // Forming (c + 1) / 2 in float would give 0.2746249735... and 0.4696250259...
        {0.3f, 0.3f, 0.3f, 0.2746250033378601f},
        {0.3f, 0.7f, 0.7f, 0.46962496638298035f},
    });
    t.setXDir(false);
    t.setZDir(false);
    expectValues(t, {{5.0f, 0.3f, 5.0f, 0.6499999761581421f}, {5.0f, -2.9f, 5.0f, 0.04999995231628418f}});
    t.setYDir(false);
    expectValues(t, {{0.3f, -7.1f, 1e30f, 1.0f}, {-2.9f, 0.0f, 0.7f, 1.0f}});
}

TEST(Gradient, RecordIsThirtyNineBytesOfUnalignedFlags) {
    GradientTexture3D t;
    char record[40];
    std::memset(record, 0x5a, sizeof record);
    t.getDescription(record);
    EXPECT_EQ(record[0], 39);
    EXPECT_EQ(record[36], 1);
    EXPECT_EQ(record[37], 1);
    EXPECT_EQ(record[38], 1);
    EXPECT_EQ(record[39], 0x5a);

    // Any non-zero byte from a damaged record reads as on.
    record[36] = 0;
    record[37] = 2;
    record[38] = static_cast<char>(0x80);
    t.setStateFromDescription(record);
    EXPECT_FALSE(t.getXDir());
    EXPECT_TRUE(t.getYDir());
    EXPECT_TRUE(t.getZDir());
    expectValues(t, {{0.7f, 0.0f, 0.0f, 0.25f}});
}
