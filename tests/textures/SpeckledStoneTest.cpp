#include <climits>
#include <cmath>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/SpeckledStoneTexture3D.h"

using namespace gritwell;

namespace {
// Mean value over a small grid, in units of the noise features.
float meanValue(Texture3D& t) {
    double sum = 0.0;
    int n = 0;
    for (float x = 0.013f; x < 3.0f; x += 0.11f)
        for (float y = -1.5f; y < 1.5f; y += 0.13f) {
            const float p[3] = {x, y, 0.37f};
            sum += t(p);
            ++n;
        }
    return static_cast<float>(sum / n);
}
}  // namespace

TEST(SpeckledStone, ZeroNoiseIsTheSecondShade) {
    // Noise 0 at the lattice: base 0.5, 0.5^2 = 0.25, floor(0.5 + 4 x 0.25)
    // = 1 of 4 shades, mix(0, 0.5, 0.25) = 0.125. 1 / 0.02f rounds to 50.
    SpeckledStoneTexture3D t;
    expectValues(t, {{0, 0, 0, 0.125f}, {1.0f, -2.0f, 0.04f, 0.125f}, {-0.08f, 0.02f, 3.0f, 0.125f}});
}

TEST(SpeckledStone, PosterisedShadesOffTheLattice) {
    // Expected shades worked from the noise at each point through
    // floor(0.5 + nShades base^exponent) / nShades.
    SpeckledStoneTexture3D t;
    expectValues(t, {
        {0.05f, 0.09f, 0.013f, 0.375f},    // noise 0.6545: shade 3
        {-0.031f, 0.017f, 0.2f, 0.125f},   // noise 0.0045: shade 1
    });
    t.setScale(1.0f);
    expectValues(t, {
        {2.8f, 4.4f, 0.4f, 0.375f},        // noise 0.6864: shade 3
        {0.1f, 0.2f, 0.3f, 0.25f},         // noise 0.3288: shade 2
        {1.25f, -0.4f, 2.6f, 0.125f},      // noise 0.1026: shade 1
        {-3.1f, 0.45f, 0.8f, 0.0f},        // noise -0.5616: shade 0
    });

    // Three shades of a cube between 0.1 and 0.9. The blend forms
    // grain (1 - t) in double: shade 2 is 0x1.444446p-1, where an all-float
    // blend would give 0x1.444444p-1.
    t.setNShades(3);
    t.setExponent(3);
    t.setGrainColor(0.1f);
    t.setBaseColor(0.9f);
    expectValues(t, {
        {2.8f, 4.4f, 0.4f, 0x1.444446p-1f},
        {0.1f, 0.2f, 0.3f, 0x1.777778p-2f},
        {-3.1f, 0.45f, 0.8f, 0.1f},
    });
}

TEST(SpeckledStone, HalfwayShadesRoundUp) {
    // At noise 0 with exponent 1, nShades x 0.5 lands exactly half-way for
    // odd counts: floor(x + 0.5) takes the upper shade, not the even one.
    SpeckledStoneTexture3D t;
    t.setExponent(1);
    t.setNShades(1);
    expectValues(t, {{0, 0, 0, 0.5f}});
    t.setNShades(5);
    expectValues(t, {{0, 0, 0, 0.3f}});  // 3 of 5
}

TEST(SpeckledStone, ExponentDarkensAndZeroGivesTheBaseColour) {
    SpeckledStoneTexture3D t;
    t.setScale(1.0f);
    t.setExponent(1);
    const float one = meanValue(t);
    t.setExponent(2);
    const float two = meanValue(t);
    t.setExponent(4);
    const float four = meanValue(t);
    EXPECT_GT(one, two);
    EXPECT_GT(two, four);

    // base^0 is 1 everywhere: the top shade.
    t.setExponent(0);
    expectValues(t, {{0.1f, 0.2f, 0.3f, 0.5f}, {-3.1f, 0.45f, 0.8f, 0.5f}, {0, 0, 0, 0.5f}});
    // A damaged exponent: every base below 1 underflows to the grain.
    t.setExponent(INT_MAX);
    expectValues(t, {{0.1f, 0.2f, 0.3f, 0.0f}, {2.8f, 4.4f, 0.4f, 0.0f}, {0, 0, 0, 0.0f}});
}

TEST(SpeckledStone, ZeroShadesGiveNaNWithoutACrash) {
    SpeckledStoneTexture3D t;
    t.setNShades(0);
    for (int exponent : {2, 0, -3, INT_MIN}) {
        t.setExponent(exponent);
        for (float x : {0.0f, 0.05f, -0.031f, 1e30f}) {
            const float p[3] = {x, 0.09f, 0.013f};
            EXPECT_TRUE(std::isnan(t(p))) << "exponent " << exponent << " at x " << x;
        }
    }
    // A negative count rounds the mirrored shade; at noise 0 it is the same t.
    t.setExponent(2);
    t.setNShades(-4);
    expectValues(t, {{0, 0, 0, 0.125f}});
}

TEST(SpeckledStone, PlanarModeIgnoresZ) {
    SpeckledStoneTexture3D t;
    t.setScale(1.0f);
    t.setFlags(4);
    // 2-D noise 0.6830 at (1.6, 2.6): shade 3; 0.0451 at (1.25, -0.4): shade 1.
    for (float z : {0.0f, 0.4f, -7.3f, 1e20f})
        expectValues(t, {{1.6f, 2.6f, z, 0.375f}, {1.25f, -0.4f, z, 0.125f}, {0.3f, 0.7f, z, 0.0f}});
    // The solid form does depend on z.
    t.setFlags(2);
    bool differs = false;
    for (float x = 0.05f; x < 3.0f && !differs; x += 0.23f) {
        const float a[3] = {x, 2.6f, 0.0f}, b[3] = {x, 2.6f, 0.4f};
        differs = t(a) != t(b);
    }
    EXPECT_TRUE(differs);
}

TEST(SpeckledStone, IntegerFieldsReadBackAsFloats) {
    SpeckledStoneTexture3D t;
    static_assert(std::is_same_v<decltype(t.nShades()), float>);
    static_assert(std::is_same_v<decltype(t.exponent()), float>);
    EXPECT_EQ(t.nShades(), 4.0f);
    EXPECT_EQ(t.exponent(), 2.0f);
    // The stored integer is exact; only its float reading rounds.
    t.setNShades(16777217);
    EXPECT_EQ(t.nShades(), 16777216.0f);
    EXPECT_EQ(t.record().nShades, 16777217);
    t.setExponent(-3);
    EXPECT_EQ(t.exponent(), -3.0f);
}

TEST(SpeckledStone, RecordLayoutAndVersionRule) {
    SpeckledStoneTexture3D t;
    char record[56];
    t.getDescription(record);
    EXPECT_EQ(record[0], 56);
    EXPECT_STREQ(record + 1, "Speckled Stone");
    EXPECT_EQ(record[33], 2);
    EXPECT_EQ(record[34], 0);
    float scale;
    std::memcpy(&scale, record + 36, 4);
    EXPECT_EQ(scale, 0.02f);

    SpeckledStoneTexture3D other;
    other.setNShades(7);
    other.getDescription(record);
    record[34] = 1;  // 2.1: ignored
    t.setStateFromDescription(record);
    EXPECT_EQ(t.nShades(), 4.0f);
    record[34] = 0;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.nShades(), 7.0f);
}
