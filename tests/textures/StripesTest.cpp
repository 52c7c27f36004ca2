#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "noise/Perlin.h"
#include "textures/StripesTexture3D.h"

using namespace gritwell;

TEST(Stripes, StraightLinesCountTheEdgeAsOnTheLine) {
    StripesTexture3D t;
    expectValues(t, {
        {0.5f, 0.3f, 0.0f, 1.0f},
        {0.5f, -7.0f, 12.5f, 1.0f},    // y and z play no part
        {0.1f, 0.3f, 0.0f, 0.0f},
        {0.9f, 0.3f, 0.0f, 0.0f},      // the upper neighbour's line
        {0.125f, 0.3f, 0.0f, 0.0f},    // exactly half the width away
        {0.875f, 0.3f, 0.0f, 0.0f},
        {0.12501f, 0.3f, 0.0f, 1.0f},
        {-0.875f, 0.3f, 0.0f, 0.0f},
        {-1.0f, 0.3f, 0.0f, 0.0f},     // cell -2's upper line: still drawn
        {-1.13f, 0.3f, 0.0f, 1.0f},
        {-0.5f, 0.3f, 0.0f, 1.0f},
    });
    // Widths compare squared: a negative width draws like its magnitude,
    // and zero still draws the exact integer planes.
    t.setStripeWidth(-0.25f);
    expectValues(t, {{0.1f, 0.0f, 0.0f, 0.0f}, {0.5f, 0.0f, 0.0f, 1.0f}});
    t.setStripeWidth(0.0f);
    expectValues(t, {{2.0f, 0.0f, 0.0f, 0.0f}, {2.0001f, 0.0f, 0.0f, 1.0f}, {-3.0f, 0.0f, 0.0f, 0.0f}});
}

TEST(Stripes, SawtoothUsesTheTrueFractionalPartOfY) {
    StripesTexture3D t;
    t.setStripeStyle(StripesTexture3D::Sawtooth);
    expectValues(t, {
        {0.4f, 0.9f, 0.0f, 1.0f},   // x moves to 0.625
        {0.0f, 0.5f, 0.0f, 0.0f},   // x moves to 0.125: on the edge
        {0.8f, -0.5f, 0.0f, 0.0f},  // fy = 0.5: 0.925
        {0.8f, -1.0f, 0.0f, 1.0f},  // fy = 0, not 1: x stays 0.8
    });
}

TEST(Stripes, RibbonBendsByHalfCirclesUpThenDown) {
    StripesTexture3D t;
    t.setStripeStyle(StripesTexture3D::Ribbon);
    t.setAmplitude(1.0f);
    expectValues(t, {
        {0.7f, 0.25f, 0.0f, 0.0f},   // top of the upper arc: +0.25
        {0.3f, 0.25f, 0.0f, 1.0f},
        {0.3f, 0.75f, 0.0f, 0.0f},   // bottom of the lower arc: -0.25
        {0.7f, 0.75f, 0.0f, 1.0f},
        {0.7f, -0.75f, 0.0f, 0.0f},  // fy = 0.25
        {0.76f, 0.1f, 0.0f, 0.0f},   // sqrt(0.0625 - 0.0225) = 0.2
        {0.6f, 0.1f, 0.0f, 1.0f},
        {0.125f, 0.5f, 0.0f, 0.0f},  // arcs meet at zero displacement
        {0.13f, 0.5f, 0.0f, 1.0f},
    });
}

TEST(Stripes, SineIsTakenInDouble) {
    StripesTexture3D t;
    t.setStripeStyle(StripesTexture3D::Sine);
    expectValues(t, {
        {0.7f, 0.25f, 0.0f, 0.0f},  // +0.25
        {0.3f, 0.75f, 0.0f, 0.0f},  // -0.25
        {0.3f, 0.25f, 0.0f, 1.0f},
        // Displaced to within a float step of the edge: a single-precision
        // sine lands on the other side at each of these.
        {-0.03459439054131508f, 2.110197067260742f, 0.0f, 0.0f},
        {0.011623024940490723f, -2.92508602142334f, 0.0f, 1.0f},
        {0.37499621510505676f, -3.2491233348846436f, 0.0f, 1.0f},
        {-0.11818157881498337f, 1.2127437591552734f, 0.0f, 0.0f},
    });
}

TEST(Stripes, TriangleRisesThenFallsOverEachUnitOfY) {
    StripesTexture3D t;
    t.setStripeStyle(StripesTexture3D::Triangle);
    t.setAmplitude(0.5f);
    expectValues(t, {
        {0.45f, 0.0f, 0.0f, 1.0f},   // no displacement at integer y
        {0.45f, 0.5f, 0.0f, 0.0f},   // the peak, +0.5
        {0.45f, 0.49f, 0.0f, 0.0f},
        {0.45f, -0.5f, 0.0f, 0.0f},
        {0.45f, 0.25f, 0.0f, 1.0f},  // +0.25
        {0.75f, 0.75f, 0.0f, 0.0f},  // falling: +0.25, unlike the sawtooth's +0.375
        {0.6f, 0.75f, 0.0f, 1.0f},
    });
}

TEST(Stripes, PerlinNoiseWaveSamplesTheUndisplacedPointAtTwiceTheScale) {
    StripesTexture3D t;
    t.setStripeStyle(StripesTexture3D::PerlinNoise);
    // Noise is zero on the lattice: half-integer points stay where they are.
    expectValues(t, {{0.5f, 1.5f, 0.0f, 1.0f}, {-2.5f, 0.5f, 3.0f, 1.0f}});
    // An amplitude that carries x = 0.5 exactly one half-spacing lands it on
    // the next line; half that amplitude leaves it between lines.
    for (float y : {0.3f, 0.8f, -1.2f}) {
        const float n = Perlin::noise(1.0f, 2.0f * y);
        ASSERT_GT(std::fabs(n), 0.05f) << y;
        t.setAmplitude(0.5f / n);
        expectValues(t, {{0.5f, y, 0.0f, 0.0f}});
        t.setAmplitude(0.25f / n);
        expectValues(t, {{0.5f, y, 0.0f, 1.0f}});
    }
}

TEST(Stripes, StylesBeyondTheListDrawStraightLines) {
    StripesTexture3D straight, odd;
    straight.setAmplitude(0.7f);
    odd.setAmplitude(0.7f);
    for (std::int32_t style : {6, 7, 100, -1, std::numeric_limits<std::int32_t>::max(),
                               std::numeric_limits<std::int32_t>::min()}) {
        odd.setStripeStyle(static_cast<StripesTexture3D::Style>(style));
        for (float x = -2.0f; x < 2.0f; x += 0.0625f)
            for (float y : {0.1f, 0.3f, 0.55f, 0.8f}) {
                const float p[3] = {x, y, 0.0f};
                EXPECT_EQ(odd(p), straight(p)) << "style " << style << " at " << x << ", " << y;
            }
    }
}

TEST(Stripes, RandomizedLinesKeepOneToneFromTheirPlane) {
    StripesTexture3D t;
    t.setRandomizeColors(true);
    t.setMinColor(-1.0f);  // tones are not clamped: planes -1, 0 and 1 come out above 1
    t.setMaxColor(3.0f);
    const auto tone = [](float plane) { return -1.0f + 4.0f * CellNoise::cellNoise(plane); };
    expectValues(t, {
        {0.5f, 0.3f, 0.0f, 1.0f},  // between lines: white, not a tone
        {0.95f, 0.3f, 0.0f, tone(1.0f)},   // plane 1 as cell 0's upper line
        {1.05f, 0.3f, 0.0f, tone(1.0f)},   // and as cell 1's lower line
        {0.05f, 0.3f, 0.0f, tone(0.0f)},
        {-0.95f, 0.3f, 0.0f, tone(-1.0f)},
        {-1.0f, 0.3f, 0.0f, tone(-1.0f)},  // exact -1 is cell -2's upper line
        {-1.05f, 0.3f, 0.0f, tone(-1.0f)},
    });
    EXPECT_NE(tone(1.0f), tone(0.0f));

    // Lines wider than the spacing: the lower plane's tone wins.
    t.setStripeWidth(1.5f);
    expectValues(t, {{0.5f, 0.3f, 0.0f, tone(0.0f)}, {2.5f, 0.3f, 0.0f, tone(2.0f)}});

    // Any non-zero byte in a damaged record switches the tones on.
    StripesTexture3D::Record r;
    r.randomizeColors = 0x80;
    r.minColor = 0.25f;
    r.maxColor = 0.25f;
    EXPECT_EQ(StripesTexture3D::evaluate(r, 2, 0.05f, 0.0f, 0.0f), 0.25f);
}

TEST(Stripes, HostilePointsGiveFiniteValuesInEveryStyle) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float coords[] = {nan, inf, -inf, 3e38f, -3e38f, -2147483648.0f, 2147483648.0f, -1e-30f};
    StripesTexture3D t;
    t.setRandomizeColors(true);
    for (int style = 0; style <= 6; ++style) {
        t.setStripeStyle(static_cast<StripesTexture3D::Style>(style));
        for (float x : coords)
            for (float y : coords) {
                const float p[3] = {x, y, 0.0f};
                EXPECT_TRUE(std::isfinite(t(p))) << "style " << style << " at " << x << ", " << y;
            }
    }
}
