#include <cmath>

#include <gtest/gtest.h>

#include "noise/PRMan.h"
#include "noise/Perlin.h"
#include "noise/Ramps.h"

using namespace gritwell;

TEST(PRMan, StepsAndPulses) {
    EXPECT_EQ(PRMan::step(0.5f, 0.5f), 1.0f);
    EXPECT_EQ(PRMan::step(0.5f, 0.49f), 0.0f);
    EXPECT_EQ(PRMan::smoothstep(0, 1, 1), 1.0f);
    EXPECT_EQ(PRMan::smoothstep(0, 1, 0), 0.0f);
    EXPECT_EQ(PRMan::smoothstep(0, 1, 0.5f), 0.5f);
    EXPECT_EQ(PRMan::smoothstep(0, 2, 0.5f), 0.25f * 0.25f * 2.5f);
    EXPECT_EQ(PRMan::squarepulse(1, 2, 1), 1.0f);
    EXPECT_EQ(PRMan::squarepulse(1, 2, 2), 0.0f);
    EXPECT_EQ(PRMan::squarepulse(2, 1, 1.5f), -1.0f);
}

TEST(PRMan, ClampTestsTheLowBoundFirst) {
    EXPECT_EQ(PRMan::clamp(0.5f, 0, 1), 0.5f);
    EXPECT_EQ(PRMan::clamp(-1, 0, 1), 0.0f);
    EXPECT_EQ(PRMan::clamp(2, 0, 1), 1.0f);
    // lo > hi: below lo gives lo, above lo gives hi.
    EXPECT_EQ(PRMan::clamp(0.5f, 1, 0), 1.0f);
    EXPECT_EQ(PRMan::clamp(1.5f, 1, 0), 0.0f);
}

TEST(PRMan, MixFormsTheFirstTermInDouble) {
    EXPECT_EQ(PRMan::mix(2, 10, 0), 2.0f);
    EXPECT_EQ(PRMan::mix(2, 10, 1), 10.0f);
    // With t = 0.1f the double 1 - t differs from the float one.
    const float a = 16777215.0f, b = 1.0f, t = 0.1f;
    EXPECT_EQ(PRMan::mix(a, b, t), static_cast<float>(a * (1.0 - t) + b * t));
    EXPECT_EQ(PRMan::mmix(a, b, t), PRMan::mix(a, b, t));
}

TEST(PRMan, LuminanceWeights) {
    EXPECT_NEAR(PRMan::luminance(1, 1, 1), 1.0f, 1e-7f);
    EXPECT_EQ(PRMan::luminance(1, 0, 0), 0.2126f);
    EXPECT_EQ(PRMan::luminance(0, 1, 0), 0.7152f);
    EXPECT_EQ(PRMan::luminance(0, 0, 1), 0.0722f);
}

TEST(PRMan, PeriodicNoiseRepeats) {
    for (float x : {0.3f, 1.7f, 2.9f}) {
        EXPECT_NEAR(PRMan::pnoise(x, 4.0f), PRMan::pnoise(x + 4.0f, 4.0f), 1e-6f);
        EXPECT_NEAR(PRMan::pnoise(x, 4.0f), PRMan::pnoise(x - 4.0f, 4.0f), 1e-6f);
    }
    // At x = 0 the blend is all of noise(0), a lattice point.
    EXPECT_EQ(PRMan::pnoise(0.0f, 3.0f), 0.0f);
}

TEST(PRMan, Distances) {
    EXPECT_EQ(PRMan::ptlined({0, 0, 0}, {1, 0, 0}, {5, 3, 4}), 5.0f);
    EXPECT_TRUE(std::isnan(PRMan::ptlined({1, 1, 1}, {1, 1, 1}, {0, 0, 0})));
    const float a[3] = {1, 2, 3}, b[3] = {4, 6, 15};
    EXPECT_EQ(PRMan::distance2(a, b), 5.0f);
    EXPECT_EQ(PRMan::distance3(a, b), 13.0f);
}

TEST(Ramps, SmoothLinearAndLerp) {
    EXPECT_EQ(smooth(0.5f), 0.5f);
    EXPECT_EQ(smooth(2.0f), -4.0f);  // not clamped
    EXPECT_EQ(smooth(5.0f, 1.0f, 3.0f), 1.0f);
    EXPECT_EQ(smooth(-5.0f, 1.0f, 3.0f), 0.0f);
    EXPECT_EQ(linear(1.5f, 1.0f, 3.0f), 0.25f);
    EXPECT_EQ(lerp(2, 10, 0), 10.0f);
    EXPECT_EQ(lerp(2, 10, 1), 2.0f);
    // a == b divides by zero: above gives 1, below 0, equal NaN.
    EXPECT_EQ(linear(2.0f, 1.0f, 1.0f), 1.0f);
    EXPECT_EQ(smooth(0.0f, 1.0f, 1.0f), 0.0f);
    EXPECT_TRUE(std::isnan(smooth(1.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(std::isnan(linear(1.0f, 1.0f, 1.0f)));
}
