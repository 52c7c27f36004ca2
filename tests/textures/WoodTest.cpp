#include <bit>
#include <climits>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/Perlin.h"
#include "textures/WoodTexture3D.h"

using namespace gritwell;

namespace {

// Worked values below come from a float32 model of the ring formula written
// independently of this code.

WoodTexture3D withoutDisplacement() {
    WoodTexture3D t;
    t.setFrequency(0.0f);
    return t;
}

// The point moved along (1, 1, 1) by the remapped octave sum, as the library's
// own octave sum gives it.
float shiftFor(const WoodTexture3D& t, float x, float y, float z, int octaves) {
    const float n = Perlin::Get(x, y, z, octaves, t.frequency(), t.amplitude());
    return static_cast<float>((n + 1.0) / 2.0);
}

std::uint32_t bitsOf(float v) { return std::bit_cast<std::uint32_t>(v); }

}  // namespace

TEST(Wood, UndisplacedRingsAreCirclesAroundTheYAxis) {
    WoodTexture3D t = withoutDisplacement();
    for (float y : {0.0f, 0.3f, -41.5f}) {
        expectValues(t, {
            {0.0f, y, 0.0f, 0.2265625f},  // on the axis: only noise(0) = 0 counts
            {0.5f, y, 0.0f, 0.2265625f},  // a whole ring number: noise 0, fraction 0.5
            {0.3f, y, 0.4f, 0.2265625f},
            {-0.7f, y, 0.2f, 0.307241917f},
            {1.3f, y, -2.1f, 0.363698423f},
            {0.05f, y, 0.0f, 0.481761634f},
            {-2.25f, y, -3.5f, 0.253942281f},
        });
    }
    t.setFrequency(-2.0f);  // any frequency <= 0 switches the displacement off
    expectValues(t, {{-0.7f, 5.0f, 0.2f, 0.307241917f}});
}

TEST(Wood, ProfileIsDarkOnItsPlateauAndLightWhereAPeriodStarts) {
    WoodTexture3D t = withoutDisplacement();
    // Ring fractions 0.806, 0.825 and 0.805: on the plateau [0.8, 0.83].
    expectValues(t, {{0.03f, 0.0f, 0.0f, 0.1f}, {0.032f, 0.0f, 0.0f, 0.1f},
                     {0.211f, 0.0f, 0.0f, 0.1f}});

    // At this radius the wobbled ring number is exactly 1.0: fraction 0.
    t.setRingScale(1.0f);
    expectValues(t, {{0.3178178668022156f, 0.0f, 0.0f, 0.5f}});
    t.setDarkColor(0.9f);
    t.setLightColor(0.2f);
    expectValues(t, {{0.3178178668022156f, 0.0f, 0.0f, 0.2f}});
    t.setRingScale(6.0f);
    expectValues(t, {{0.0f, 0.0f, 0.03f, 0.9f}, {0.0f, 0.0f, 0.0f, 0.678515613f}});
}

TEST(Wood, RingScaleGetterTruncatesWhileEvaluationUsesTheStoredFloat) {
    WoodTexture3D t = withoutDisplacement();
    t.setRingScale(6.7f);
    EXPECT_EQ(t.ringScale(), 6);
    EXPECT_EQ(t.record().ringScale, 6.7f);
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.100106098f}});  // 6.0 would give 0.2265625
    t.setRingScale(-6.7f);
    EXPECT_EQ(t.ringScale(), -6);
    t.setRingScale(3e9f);
    EXPECT_EQ(t.ringScale(), INT_MIN);  // out of int range, safely

    // A negative scale makes the ring number negative; fractions still count
    // up from the cell below.
    t.setRingScale(-6.0f);
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.2265625f}, {-0.7f, 0.0f, 0.2f, 0.476955235f}});
}

TEST(Wood, DisplacementMovesThePointAlongTheDiagonalByTheRemappedOctaveSum) {
    WoodTexture3D t;
    WoodTexture3D rings = withoutDisplacement();
    const float points[][3] = {
        {0.3f, -1.2f, 0.8f}, {-2.6f, 0.45f, 1.1f}, {4.0f, 3.0f, -0.2f}, {0.0f, 0.0f, 0.0f}};
    for (int octaves : {0, 1, 3, 8}) {
        for (float frequency : {1.0f, 2.5f}) {
            t.setOctaves(octaves);
            t.setFrequency(frequency);
            t.setAmplitude(octaves == 8 ? 0.7f : 0.1f);
            for (const auto& p : points) {
                // With no octaves the sum is 0 and the shift still 0.5.
                const float s = shiftFor(t, p[0], p[1], p[2], octaves);
                const float moved[3] = {p[0] + s, -99.0f, p[2] + s};
                EXPECT_EQ(t(p), rings(moved)) << octaves << " octaves at " << p[0] << ", " << p[1];
            }
        }
    }
}

TEST(Wood, HugeOctaveCountEndsWithTheFullLoopsBits) {
    // Past a few hundred octaves the coordinates have doubled to 0 or an
    // infinity and the amplitude halved to 0, so the sum no longer changes
    // (it may have turned NaN on the way, as the full loop's does).
    WoodTexture3D t;
    WoodTexture3D rings = withoutDisplacement();
    t.setOctaves(INT_MAX);
    for (float amplitude : {0.1f, 3e38f, std::numeric_limits<float>::infinity()}) {
        t.setAmplitude(amplitude);
        for (float x : {0.3f, 1e-30f, 0.0f, -7.5f}) {
            const float p[3] = {x, 0.0f, -x};
            const float s = shiftFor(t, p[0], p[1], p[2], 2000);
            const float moved[3] = {p[0] + s, 0.0f, p[2] + s};
            EXPECT_EQ(bitsOf(t(p)), bitsOf(rings(moved))) << amplitude << " at " << x;
        }
    }
}

TEST(Wood, DamagedFieldsGiveSomeValue) {
    WoodTexture3D t;
    t.setOctaves(INT_MIN);  // no octaves: the shift is 0.5
    expectValues(t, {{0.0f, 3.0f, -0.5f, 0.2265625f}});
    const float inf = std::numeric_limits<float>::infinity();
    for (float v : {std::numeric_limits<float>::quiet_NaN(), -inf, 3e38f}) {
        WoodTexture3D u;
        u.setRingScale(v);
        u.setFrequency(v);
        u.setAmplitude(v);
        u.setOctaves(INT_MAX);
        const float p[3] = {0.7f, -0.4f, 2.0f};
        (void)u(p);  // must neither hang nor trip the sanitizers
    }
}

TEST(Wood, HeaderAndVersionRule) {
    WoodTexture3D t;
    char record[60];
    t.getDescription(record);
    // Size 60, the name, version 2.0, interactive update on.
    EXPECT_EQ(std::string(record, 36),
              std::string("\x3cWood", 5) + std::string(28, '\0') + std::string("\x02\x00\x01", 3));

    WoodTexture3D other;
    other.setOctaves(5);
    other.getDescription(record);
    record[33] = 1;  // a version-1 record is not converted
    t.setStateFromDescription(record);
    EXPECT_EQ(t.octaves(), 1);
    record[33] = 2;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.octaves(), 5);
}
