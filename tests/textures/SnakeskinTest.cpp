#include <climits>
#include <cmath>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "noise/Perlin.h"
#include "textures/SnakeskinTexture3D.h"

using namespace gritwell;

// Worked values come from a float32 model of the rotation, shear, grooves,
// corners and cell hash written independently of this code. Each comment
// gives the scale cell (i, j) and the local point (fx, fy) inside it.

namespace {

float at(SnakeskinTexture3D& t, float x, float y, float z = 0.0f) {
    const float p[3] = {x, y, z};
    return t(p);
}

}  // namespace

TEST(Snakeskin, ScalesAreThreeQuartersAndGroovesBlackWhateverZ) {
    SnakeskinTexture3D t;
    for (float z : {0.0f, 3.7f, -1e30f, std::numeric_limits<float>::infinity(),
                    std::numeric_limits<float>::quiet_NaN()}) {
        expectValues(t, {
            {0.0f, 0.54f, z, 0.75f},       // (0, 0) at (0.4989, 0.4989)
            {6.53f, 0.0f, z, 0.75f},       // (2, -3) at (0.4989, 0.5011)
            {0.0f, -0.54f, z, 0.75f},      // (-1, -1) at (0.5011, 0.5011)
            {-13.07f, 1.62f, z, 0.75f},    // (-4, 6) at (0.4950, 0.4984)
            {0.0f, 0.0f, z, 0.0f},         // where four scales meet
            {-0.627f, 0.281f, z, 0.0f},    // (0, 0) at (0.0197, 0.4996)
            {-0.627f, 0.801f, z, 0.0f},    // (0, 0) at (0.5001, 0.9800)
            {0.614f, -0.796f, z, 0.0f},    // (-1, -1) at (0.4996, 0.0296)
            {3.358f, 2.906f, z, 0.0f},     // (3, 1) at (0.9698, 0.3997)
        });
    }
}

TEST(Snakeskin, GrooveIsHalfTheStripeWidthEachSideOfACellSide) {
    SnakeskinTexture3D t;
    t.setRoundCornersEnabled(false);
    expectValues(t, {
        {-0.6089f, 0.289f, 0.0f, 0.0f},     // (0, 0) at (0.0340, 0.5000)
        {-0.6062f, 0.2901f, 0.0f, 0.75f},   // (0, 0) at (0.0360, 0.5000)
        {-0.6089f, 0.7934f, 0.0f, 0.0f},    // (0, 0) at (0.5000, 0.9660)
        {-0.6062f, 0.7923f, 0.0f, 0.75f},   // (0, 0) at (0.5000, 0.9640)
    });

    // With no width at all a point exactly on a side is still a groove
    // (0 >= 0), and so is one whose distance squares to zero.
    t.setStripeWidth(0.0f);
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.0f},
        {1e-30f, 0.0f, 0.0f, 0.0f},         // (0, -1) at (3.8e-31, 1.0)
        {-0.652f, 0.2711f, 0.0f, 0.75f},    // (0, 0) at (0.0010, 0.5000)
    });
}

TEST(Snakeskin, TopAndBottomCornersAreRoundedMoreThanLeftAndRight) {
    SnakeskinTexture3D t;
    expectValues(t, {
        {0.0f, 0.0866f, 0.0f, 0.0f},        // (0, 0) at (0.08, 0.08): outside the top rounding
        {0.0f, 0.9958f, 0.0f, 0.0f},        // (0, 0) at (0.92, 0.92): outside the bottom one
        {0.0f, 0.1624f, 0.0f, 0.75f},       // (0, 0) at (0.15, 0.15): inside
        {-1.0975f, 0.5412f, 0.0f, 0.75f},   // (0, 0) at (0.08, 0.92): inside the sharper left one
        {1.0975f, 0.5412f, 0.0f, 0.75f},    // (0, 0) at (0.92, 0.08)
        {-1.202f, 0.5412f, 0.0f, 0.0f},     // (0, 0) at (0.04, 0.96): outside it
        {1.202f, 0.5412f, 0.0f, 0.0f},      // (0, 0) at (0.96, 0.04)
    });
    t.setRoundCornersEnabled(false);
    expectValues(t, {{0.0f, 0.0866f, 0.0f, 0.75f}, {0.0f, 0.9958f, 0.0f, 0.75f}, {-1.202f, 0.5412f, 0.0f, 0.75f}});
}

TEST(Snakeskin, LyingWithinOneCornerDoesNotSpareThePointFromTheNext) {
    // (0, 0) at (0.0200, 0.9900): within both huge top/bottom roundings, but
    // outside the left/right one that also applies there.
    SnakeskinTexture3D t;
    t.setStripeWidth(0.0f);
    t.setRoundCornersTopBottomRadius(0.995f);
    t.setRoundCornersLeftRightRadius(0.2f);
    expectValues(t, {{-1.2674f, 0.5466f, 0.0f, 0.0f}});
    t.setRoundCornersLeftRightRadius(0.0f);
    expectValues(t, {{-1.2674f, 0.5466f, 0.0f, 0.75f}});
}

TEST(Snakeskin, RandomColoursGiveOneHashedValuePerScale) {
    SnakeskinTexture3D t;
    t.setRandomizeColors(true);
    t.setMinColor(0.2f);
    t.setMaxColor(0.9f);
    expectValues(t, {
        {-0.39f, 0.49f, 0.0f, 0.424313426f},     // (0, 0) at (0.3035, 0.6019)
        {0.65f, 0.49f, 0.0f, 0.424313426f},      // (0, 0) at (0.7014, 0.2040)
        {6.53f, 0.0f, 0.0f, 0.805061102f},       // (2, -3)
        {0.0f, -0.54f, 0.0f, 0.75028199f},       // (-1, -1)
        {-12.8f, 1.62f, 0.0f, 0.528707325f},     // (-4, 6)
        {-2.61f, 7.04f, 0.0f, 0.735561192f},     // (5, 7)
        {0.0f, 0.0f, 0.0f, 0.0f},                // grooves stay black
    });
}

TEST(Snakeskin, ScaleNoiseAddsAQuarterOfTheSumAndIsClamped) {
    // (-2.61, 7.04) lies at q = (5.50530815, 7.50291538).
    SnakeskinTexture3D t;
    t.setScaleNoiseAdd(true);
    const float n = FBM::fBM(5.50530815f * 4.0f, 7.50291538f * 4.0f, 1.0f, 2.0f, 2.0f);
    ASSERT_NE(n, 0.0f);
    EXPECT_EQ(at(t, -2.61f, 7.04f), static_cast<float>(0.25 * n + 0.75));
    for (int octaves : {0, -5, INT_MIN}) {  // no octaves, no noise
        t.setScaleNoiseOctaves(octaves);
        EXPECT_EQ(at(t, -2.61f, 7.04f), 0.75f);
    }

    // Eight octaves at gain 2 swing far past [0, 1]; the clamp holds it.
    t.setScaleNoiseOctaves(8);
    float highest = 0.0f;
    for (float x = -4.0f; x < 4.0f; x += 0.0625f)
        for (float y = -4.0f; y < 4.0f; y += 0.0625f) {
            const float v = at(t, x, y);
            ASSERT_TRUE(v >= 0.0f && v <= 1.0f) << x << ", " << y << ": " << v;
            highest = std::fmax(highest, v);
        }
    EXPECT_EQ(highest, 1.0f);
}

TEST(Snakeskin, WobbleAtZeroFrequencyShiftsTheWholeGridOffTheLattice) {
    // At frequency 0 both noise lookups fall on the lattice point (0, 0) and
    // are moved to (0.5, 0.5): every point shifts by the same noise value in
    // both directions. Half a cell turns corners into centres.
    const float n = Perlin::noise(0.5f, 0.5f);
    ASSERT_NE(n, 0.0f);
    SnakeskinTexture3D t;
    t.setScaleVariabilityEnabled(true);
    t.setScaleVariabilityFrequency(0.0f);
    t.setScaleVariabilityAmplitude(0.5f / n);
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.75f},    // four scales' corner, now a centre
        {0.0f, 0.54f, 0.0f, 0.0f},    // a scale's centre, now a corner
    });
    t.setScaleVariabilityEnabled(false);
    expectValues(t, {{0.0f, 0.0f, 0.0f, 0.0f}, {0.0f, 0.54f, 0.0f, 0.75f}});
}

TEST(Snakeskin, WobbleMovesTheSlantedPointByNoiseOfTheSlantedAndTheOriginalPoint) {
    // (6.53, 0) lies at q = (2.49892259, -2.49892306) before the wobble. With
    // no grooves or corners and colours 0..1 the value is the cell hash of
    // the wobbled point itself.
    const float x = 6.53f, y = 0.0f;
    const float qx = 2.49892259f, qy = -2.49892306f;
    const float f = 0.37f, a = 4.0f;
    const float wx = qx + Perlin::noise(qx * f, qy * f) * a;
    const float wy = qy + Perlin::noise((17.0f + x) * f, (y + 83.0f) * f) * a;

    SnakeskinTexture3D t;
    t.setStripeWidth(0.0f);
    t.setRoundCornersEnabled(false);
    t.setRandomizeColors(true);
    t.setMinColor(0.0f);
    t.setMaxColor(1.0f);
    t.setScaleVariabilityEnabled(true);
    t.setScaleVariabilityFrequency(f);
    t.setScaleVariabilityAmplitude(a);
    ASSERT_NE(CellNoise::cellNoise(wx, wy), CellNoise::cellNoise(qx, qy));
    EXPECT_EQ(at(t, x, y), CellNoise::cellNoise(wx, wy));
}

TEST(Snakeskin, RecordsOfOtherVersionsAreIgnored) {
    SnakeskinTexture3D other;
    other.setStripeWidth(0.3f);
    other.setScaleNoiseOctaves(6);
    other.setInteractiveUpdate(false);
    char record[96];
    other.getDescription(record);
    EXPECT_EQ(record[0], 96);
    EXPECT_STREQ(record + 1, "Snakeskin");

    SnakeskinTexture3D t;
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{1, 1}, std::pair{-128, 0}}) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        t.setStateFromDescription(record);
        EXPECT_EQ(t.getStripeWidth(), 0.07f);
        EXPECT_EQ(t.getScaleNoiseOctaves(), 1);
        EXPECT_TRUE(t.interactiveUpdate());
    }
    record[33] = 1;
    record[34] = 0;
    record[40] = '\xff';  // a damaged bool byte reads as true
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getStripeWidth(), 0.3f);
    EXPECT_EQ(t.getScaleNoiseOctaves(), 6);
    EXPECT_FALSE(t.interactiveUpdate());
    EXPECT_TRUE(t.getRandomizeColors());
}

TEST(Snakeskin, DamagedValuesGiveAUnitValueOrNaNAndEnd) {
    const GeneratorInfo& info = SnakeskinTexture3D::info();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const float kBad[] = {nan, inf, -inf, 1e30f, -1e30f, 0.0f};
    const float kPoints[][2] = {{0.0f, 0.54f}, {-0.39f, 0.49f}, {3e9f, -3e9f}, {0.0f, 0.0f},
                                {nan, 0.5f}, {inf, -inf}};
    for (const FieldInfo& field : info.fields) {
        if (field.type != FieldType::Float) continue;
        for (float bad : kBad) {
            SnakeskinTexture3D t;
            t.setRandomizeColors(true);
            t.setScaleVariabilityEnabled(true);
            t.setScaleNoiseAdd(true);
            char record[96];
            t.getDescription(record);
            writeFloatField(record, field, bad);
            t.setStateFromDescription(record);
            for (const auto& p : kPoints) {
                const float v = at(t, p[0], p[1]);
                EXPECT_TRUE(std::isnan(v) || (v >= 0.0f && v <= 1.0f)) << field.name << " = " << bad;
            }
        }
    }

    // A huge octave count ends with what a few hundred octaves give: by
    // then the position has shrunk to the lattice point 0 and the sum no
    // longer changes.
    SnakeskinTexture3D many, most;
    for (SnakeskinTexture3D* t : {&many, &most}) {
        t->setScaleNoiseAdd(true);
        t->setScaleNoiseLacunarity(0.5f);
        t->setScaleNoiseGain(1.0f);
    }
    many.setScaleNoiseOctaves(400);
    most.setScaleNoiseOctaves(INT_MAX);
    for (const auto& p : {kPoints[0], kPoints[1], kPoints[2], kPoints[3]})
        EXPECT_EQ(at(most, p[0], p[1]), at(many, p[0], p[1])) << p[0] << ", " << p[1];
}
