// Granite: one all-or-nothing speckle layer per octave, weighted 1/frequency.
// Worked values come from an independent float32 model of the sum over the
// library's gradient noise.

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/GraniteTexture3D.h"

using namespace gritwell;

TEST(Granite, LayersAddTheInverseOfTheirFrequency) {
    GraniteTexture3D t;
    expectValues(t, {
        {0.74f, 1.45f, 1.77f, 0.0f},       // samples reach 0.509 but never -0.5
        {-2.83f, -0.21f, 2.66f, 0.03125f}, // the sixth layer only
        {0.89f, 2.41f, -2.32f, 0.5f},      // second layer at -0.504; 0.541 above 0.5 adds nothing
        {1.12f, 0.79f, -2.75f, 0.09375f},  // fifth and sixth
        {1.9f, 0.88f, 1.79f, 1.0f},        // 1 + 1/16 clamped
    });
}

TEST(Granite, PlanarModeSamplesTheTwoDimensionalNoiseAndIgnoresZ) {
    GraniteTexture3D t;
    t.setFlags(12);
    expectValues(t, {
        {-2.71f, 2.92f, 0.2f, 0.25f},
        {-2.71f, 2.92f, -9.0f, 0.25f},
        {-1.14f, 1.91f, -0.12f, 1.0f},
        {0.88f, -0.42f, 2.85f, 0.03125f},
    });
    for (float x = -1.0f; x < 1.0f; x += 0.043f)
        for (float y = -1.0f; y < 1.0f; y += 0.051f) {
            const float a[3] = {x, y, 0.13f}, b[3] = {x, y, -2.71f};
            ASSERT_EQ(t(a), t(b)) << x << ", " << y;
        }
}

TEST(Granite, OneOctaveIsAllOrNothing) {
    GraniteTexture3D t;
    t.setOctaves(1);
    for (float x = -2.0f; x < 2.0f; x += 0.037f)
        for (float y = -2.0f; y < 2.0f; y += 0.041f) {
            const float p[3] = {x, y, 0.57f};
            const float v = t(p);
            ASSERT_TRUE(v == 0.0f || v == 1.0f) << x << ", " << y << ": " << v;
        }
    expectValues(t, {{1.9f, 0.88f, 1.79f, 1.0f}, {0.74f, 1.45f, 1.77f, 0.0f}});

    t.setFrequency(2.0f);  // the layer weighs 1/2
    expectValues(t, {{0.89f, 2.41f, -2.32f, 0.5f}});
    t.setFrequency(0.5f);  // it weighs 2, clamped
    expectValues(t, {{1.38f, -0.13f, -1.25f, 1.0f}, {0.74f, 1.45f, 1.77f, 0.0f}});
}

TEST(Granite, NoOctavesIsBlack) {
    GraniteTexture3D t;
    for (int octaves : {0, -1, -2147483647 - 1}) {
        t.setOctaves(octaves);
        expectValues(t, {{1.9f, 0.88f, 1.79f, 0.0f}, {0.89f, 2.41f, -2.32f, 0.0f}});
    }
}

TEST(Granite, HugeOctaveCountsEndWithTheValueOfTheFullLoop) {
    // Within some 280 layers the frequency reaches infinity (or was 0 or NaN
    // from the start) and the sum stops changing. Long before that, samples
    // beyond the int range are not finite and each truncates to INT_MIN, so
    // the sum of a long loop leaves the unit range.
    GraniteTexture3D full, huge;
    full.setOctaves(300);
    huge.setOctaves(2147483647);
    const struct {
        float frequency, expected;
    } cases[] = {{1.0f, 0.0f}, {1e-30f, 0.0f}, {1e-45f, 0.0f}, {-1.0f, 1.0f}, {3e38f, 0.0f}};
    for (const auto& c : cases) {
        full.setFrequency(c.frequency);
        huge.setFrequency(c.frequency);
        for (float x : {0.89f, -2.83f, 1e20f}) {
            expectValues(full, {{x, 2.41f, -2.32f, c.expected}});
            expectValues(huge, {{x, 2.41f, -2.32f, c.expected}});
        }
    }
    for (float frequency : {0.0f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        full.setFrequency(frequency);
        huge.setFrequency(frequency);
        for (float x : {0.89f, 0.0f}) {
            const float p[3] = {x, 2.41f, -2.32f};
            EXPECT_EQ(std::bit_cast<std::uint32_t>(full(p)), std::bit_cast<std::uint32_t>(huge(p)))
                << "frequency " << frequency << " x " << x;
        }
    }
}

TEST(Granite, NonFiniteSamplesAndZeroFrequency) {
    // The machine's truncation of NaN is INT_MIN, whose integer absolute value
    // is INT_MIN again: every layer subtracts 2^31 / f and the sum clamps to 0.
    GraniteTexture3D t;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    expectValues(t, {{nan, 0.5f, 0.5f, 0.0f}});
    t.setFlags(4);
    expectValues(t, {{0.5f, nan, 0.5f, 0.0f}});

    // Frequency 0 samples the lattice point 0 and adds 0 / 0.
    t.setFrequency(0.0f);
    const float p[3] = {0.89f, 2.41f, -2.32f};
    EXPECT_TRUE(std::isnan(t(p)));
}

TEST(Granite, DefaultsAndVersionRule) {
    GraniteTexture3D t;
    EXPECT_EQ(t.getOctaves(), 6);
    EXPECT_EQ(t.getFrequency(), 1.0f);

    // Only a 2.0 record is adopted.
    GraniteTexture3D other;
    other.setOctaves(3);
    char record[44];
    other.getDescription(record);
    record[33] = 1;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getOctaves(), 6);
    record[33] = 2;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getOctaves(), 3);
}
