#include <cmath>
#include <limits>

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

TEST(PRMan, PeriodicNoiseWrapsByTheLibrarysRemainder) {
    // The sample wrapped into the period as the C library's fmod wraps it,
    // for samples within a period, beyond it, negative, exact multiples,
    // beyond 2^24 and non-finite, and periods whole, fractional, negative,
    // zero, tiny and NaN.
    auto reference = [](float x, float period) {
        const float xp = static_cast<float>(std::fmod(static_cast<double>(x), static_cast<double>(period)) +
                                            (x < 0.0f ? static_cast<double>(period) : 0.0));
        return ((period - xp) * Perlin::noise(xp) + xp * Perlin::noise(xp - period)) / period;
    };
    const float inf = std::numeric_limits<float>::infinity();
    const float samples[] = {0.0f,   -0.0f, 0.3f,   -0.3f,  2.9999998f, 3.0f,  -3.0f,      14.999999f, -15.0f,
                             16.25f, -7.5f, 1e6f,   -1e6f,  16777215.0f, 16777216.0f, 3e9f, -1e30f, inf,
                             -inf,   std::numeric_limits<float>::quiet_NaN()};
    const float periods[] = {3.0f, 5.0f, -4.0f, 1.0f, 7.0f, 2.5f, 0.1f, 0.0f, 16777216.0f, 1e-30f,
                             std::numeric_limits<float>::quiet_NaN()};
    for (const float p : periods)
        for (const float x : samples) {
            const float got = PRMan::pnoise(x, p), want = reference(x, p);
            EXPECT_TRUE(got == want || (std::isnan(got) && std::isnan(want))) << "x " << x << ", period " << p;
        }
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
