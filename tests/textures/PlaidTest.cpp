#include <climits>
#include <limits>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/PlaidTexture3D.h"

using namespace gritwell;

namespace {

float at(PlaidTexture3D& t, float x, float y, float z = 0.0f) {
    const float p[3] = {x, y, z};
    return t(p);
}

// Only the hard bands: the stripe layers mix 0 with 0.
PlaidTexture3D bandsOnly() {
    PlaidTexture3D t;
    t.setColor1(0.0f);
    t.setColor2(0.0f);
    t.setPrimaryBackground(0.0f);
    return t;
}

// Only the soft stripes: the band layers mix 0 with 0.
PlaidTexture3D stripesOnly() {
    PlaidTexture3D t;
    t.setColor3(0.0f);
    t.setBackground2(0.0f);
    t.setColor4(0.0f);
    t.setBackground3(0.0f);
    return t;
}

}  // namespace

TEST(Plaid, DefaultsWorkedValues) {
    // From a float32 model of the four layers written independently of this code.
    PlaidTexture3D t;
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.604668498f},
        {0.33f, 1.7f, 0.0f, 0.708210468f},
        {-0.7f, 0.2f, 0.0f, 0.678474963f},
        {1.3f, -2.1f, 0.0f, 0.704761147f},
        {-3.05f, 4.2f, 0.0f, 0.793144226f},
        {2.6f, -0.45f, 0.0f, 0.52206099f},
        {-1.2f, -1.2f, 0.0f, 0.573221982f},
    });
}

TEST(Plaid, DefaultColoursAreLuminancesOfTheTartansRgb) {
    PlaidTexture3D t;
    EXPECT_EQ(t.getPrimaryBackground(), 0.0f);
    EXPECT_EQ(t.getBackground2(), 0.0f);
    EXPECT_EQ(t.getBackground3(), 0.160898f);   // (0.15, 0.14, 0.4)
    EXPECT_EQ(t.getColor1(), 0.234318003f);     // (0.55, 0.15, 0.14)
    EXPECT_EQ(t.getColor2(), 0.160898f);
    EXPECT_EQ(t.getColor3(), 0.296108007f);     // (0.02, 0.4, 0.08)
    EXPECT_EQ(t.getColor4(), 0.0f);
}

TEST(Plaid, ZIsIgnored) {
    PlaidTexture3D t;
    for (float x : {0.37f, -2.9f})
        for (float y : {1.1f, -0.05f}) {
            const float v = at(t, x, y, 0.0f);
            for (float z : {-5.0f, 1e30f, std::numeric_limits<float>::quiet_NaN()})
                EXPECT_EQ(at(t, x, y, z), v) << x << ", " << y << ", " << z;
        }
}

TEST(Plaid, HardBandsAreAFifthWideWithTheNegativeSeamShift) {
    PlaidTexture3D t = bandsOnly();
    const float y = 0.1f;
    // 5x in [1, 2): one band.
    for (float x : {0.25f, 0.3f, 0.39f}) EXPECT_EQ(at(t, x, y), at(t, 0.2f, y)) << x;
    EXPECT_NE(at(t, 0.4f, y), at(t, 0.39f, y));
    EXPECT_NE(at(t, 0.19f, y), at(t, 0.2f, y));
    // 5x = -1 lies in the band below -1, with 5x = -1.5.
    EXPECT_EQ(at(t, -0.2f, y), at(t, -0.3f, y));
    EXPECT_NE(at(t, -0.2f, y), at(t, -0.19f, y));
    // The same along y.
    EXPECT_EQ(at(t, 0.1f, 0.61f), at(t, 0.1f, 0.79f));
    EXPECT_EQ(at(t, 0.1f, -0.4f), at(t, 0.1f, -0.5f));

    // Each band its own random tone.
    std::set<float> tones;
    for (int band = -10; band < 10; ++band)
        tones.insert(at(t, 0.2f * static_cast<float>(band) + 0.1f, y));
    EXPECT_GE(tones.size(), 15u);
}

TEST(Plaid, StripeLayersRepeatWithPeriodOverFrequency) {
    PlaidTexture3D t = stripesOnly();
    // Along y: verticalPeriod / verticalFrequency = 5 / 2.
    for (float y : {0.25f, 0.375f, 1.0625f, -0.75f}) {
        EXPECT_EQ(at(t, 0.125f, y + 2.5f), at(t, 0.125f, y)) << y;
        EXPECT_NE(at(t, 0.125f, y + 1.25f), at(t, 0.125f, y)) << y;
    }
    // Along x: 3 / 2.
    for (float x : {0.3125f, 0.375f, -0.625f}) {
        EXPECT_EQ(at(t, x + 1.5f, 0.375f), at(t, x, 0.375f)) << x;
        EXPECT_NE(at(t, x + 0.75f, 0.375f), at(t, x, 0.375f)) << x;
    }
    t.setVerticalFrequency(4.0f);
    t.setVerticalPeriod(3.0f);
    EXPECT_EQ(at(t, 0.125f, 0.3125f + 0.75f), at(t, 0.125f, 0.3125f));
}

TEST(Plaid, SumIsClampedAndANaNSumIsOne) {
    PlaidTexture3D t;
    auto setAll = [&t](float c) {
        using P = PlaidTexture3D;
        for (auto set : {&P::setColor1, &P::setColor2, &P::setColor3, &P::setColor4,
                         &P::setPrimaryBackground, &P::setBackground2, &P::setBackground3})
            (t.*set)(c);
    };
    setAll(1.0f);  // each layer about 1
    expectValues(t, {{0.3f, 0.7f, 0.0f, 1.0f}, {-4.1f, 2.2f, 0.0f, 1.0f}});
    setAll(-0.3f);
    expectValues(t, {{0.3f, 0.7f, 0.0f, 0.0f}, {-4.1f, 2.2f, 0.0f, 0.0f}});
    setAll(std::numeric_limits<float>::quiet_NaN());
    expectValues(t, {{0.3f, 0.7f, 0.0f, 1.0f}});
}

TEST(Plaid, PeriodsAreSetFromFloatsAndStoredTruncated) {
    PlaidTexture3D t;
    t.setHorizontalPeriod(3.9f);
    EXPECT_EQ(t.getHorizontalPeriod(), 3);
    t.setVerticalPeriod(-2.7f);
    EXPECT_EQ(t.getVerticalPeriod(), -2);
    t.setVerticalPeriod(1e20f);
    EXPECT_EQ(t.getVerticalPeriod(), INT_MIN);  // out of int range, safely
}

TEST(Plaid, DamagedPeriodsGiveAValueInUnitRange) {
    // A period of 0 makes the stripe noise NaN, which the clamp turns into 1.
    PlaidTexture3D t;
    t.setVerticalPeriod(0.0f);
    expectValues(t, {{0.3f, 0.7f, 0.0f, 1.0f}, {-2.0f, 0.0f, 0.0f, 1.0f}});
    for (float period : {2147483647.0f, -2147483648.0f, -1.0f}) {
        t.setVerticalPeriod(period);
        t.setHorizontalPeriod(period);
        for (float x : {0.3f, -17.0f, 1e9f}) {
            const float v = at(t, x, -x);
            EXPECT_TRUE(v >= 0.0f && v <= 1.0f) << period << " at " << x;
        }
    }
}

TEST(Plaid, HeaderAndVersionRule) {
    PlaidTexture3D t;
    char record[80];
    t.getDescription(record);
    // Size 80, the name, version 1.0, interactive update on.
    EXPECT_EQ(std::string(record, 36),
              std::string("\x50Plaid", 6) + std::string(27, '\0') + std::string("\x01\x00\x01", 3));

    PlaidTexture3D other;
    other.setVerticalPeriod(9.0f);
    other.getDescription(record);
    record[34] = 1;  // 1.1 is another version: ignored
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getVerticalPeriod(), 5);
    record[34] = 0;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getVerticalPeriod(), 9);
}
