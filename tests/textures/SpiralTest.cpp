#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "core/FloatToInt.h"
#include "core/Rounding.h"
#include "textures/SpiralTexture3D.h"

using namespace gritwell;

namespace {
// y at which the default rate of 0.2 rad per unit has turned a quarter and an
// eighth of a turn.
constexpr float kQuarterTurnY = 7.853982f;
constexpr float kEighthTurnY = 3.926991f;
}  // namespace

TEST(Spiral, SolidModeTwistsAboutTheYAxis) {
    SpiralTexture3D t;
    expectValues(t, {
        {0.5f, 0.0f, 0.0f, 1.0f},
        {0.0f, 0.0f, 0.5f, 0.0f},  // turned onto x ~ 0: a line
        {0.5f, kQuarterTurnY, 0.0f, 0.0f},
        {0.0f, kQuarterTurnY, 0.5f, 1.0f},  // turned to x = -0.5
        {1.0f, 0.0f, 0.0f, 0.0f},
        {1.0f, kEighthTurnY, 0.0f, 1.0f},  // x ~ 0.707
        {1.414f, 0.0f, 1.414f, 1.0f},
        {1.414f, kEighthTurnY, 1.414f, 0.0f},
        {0.5f, kEighthTurnY, 0.5f, 0.0f},   // turned onto the z axis: x ~ 0
        {0.5f, -kEighthTurnY, 0.5f, 1.0f},  // turned onto the x axis: x ~ 0.707
        {0.5f, -kQuarterTurnY, 0.0f, 0.0f},
        {0.0f, -kQuarterTurnY, 0.5f, 1.0f},  // turned back to x = 0.5
    });
}

TEST(Spiral, PlanarModeShearsInsteadOfTwisting) {
    SpiralTexture3D t;
    for (int flags : {4, 8, 12}) {
        t.setFlags(flags);
        for (float z : {0.0f, 0.5f, -3.25f, 1e30f})
            expectValues(t, {{0.3f, 1.0f, z, 1.0f}, {0.3f, 0.0f, z, 1.0f}, {0.05f, 0.0f, z, 0.0f},
                             {0.3f, 3.5f, z, 0.0f}, {-1.0f, 0.0f, z, 0.0f}, {-1.5f, 0.0f, z, 1.0f},
                             {-0.95f, 0.0f, z, 0.0f},  // 0.05 above the plane x = -1
                             // Equality counts as on the line, at either plane.
                             {0.125f, 0.0f, z, 0.0f}, {0.875f, 0.0f, z, 0.0f}});
    }
}

TEST(Spiral, ZeroRateGivesStraightLines) {
    SpiralTexture3D t;
    t.setSpiralRate(0.0f);
    for (float y : {0.0f, 5.0f, -40.0f})
        for (float z : {0.0f, 0.3f, -2.7f, 9.0f})
            expectValues(t, {{0.3f, y, z, 1.0f}, {0.7f, y, z, 1.0f}, {-0.4f, y, z, 1.0f}, {2.5f, y, z, 1.0f},
                             {0.05f, y, z, 0.0f}, {0.9f, y, z, 0.0f}, {-1.1f, y, z, 0.0f}, {3.0f, y, z, 0.0f}});
}

TEST(Spiral, WidthExtremes) {
    SpiralTexture3D t;
    t.setFlags(4);
    t.setStripeWidth(0.0f);  // only the planes themselves
    expectValues(t, {{0.0f, 0.0f, 0.0f, 0.0f}, {-2.0f, 0.0f, 0.0f, 0.0f}, {0.001f, 0.0f, 0.0f, 1.0f}});
    t.setStripeWidth(1.0f);  // every point on a line
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.0f}, {-0.5f, 0.0f, 0.0f, 0.0f}, {0.37f, 0.0f, 0.0f, 0.0f}});
}

namespace {

// The twist as written down, through the C library's float trigonometry:
// what every point must match, whichever way the generator reaches it.
float twistedReference(float width, float rate, float x, float y, float z) {
    float radius, theta;
    cartesianToPolar(x, z, radius, theta);
    theta = theta + rate * y;
    polarToCartesian(radius, theta, x, z);
    const int f = cellIndex(x);
    const float d1 = x - static_cast<float>(f);
    const float d2 = static_cast<float>(wrapAdd(f, 1)) - x;
    const float w = width / 2.0f;
    return (w * w >= d1 * d1 || w * w >= d2 * d2) ? 0.0f : 1.0f;
}

// Units in the last place between a float result and the double one.
double ulpsApart(float got, double exact) {
    const float nearest = static_cast<float>(exact);
    const double ulp = std::nextafter(std::fabs(nearest), INFINITY) - std::fabs(nearest);
    return std::fabs(static_cast<double>(got) - exact) / ulp;
}

// Every point, one at a time and through the batch call, against the
// reference; the first mismatch stops the check.
void expectTwistReference(float width, float rate, const std::vector<float>& points) {
    SpiralTexture3D t;
    t.setStripeWidth(width);
    t.setSpiralRate(rate);
    const int n = static_cast<int>(points.size() / 3);
    std::vector<float> batch(points.size() / 3);
    t(points.data(), n, batch.data());
    for (int i = 0; i < n; ++i) {
        const float x = points[3 * i], y = points[3 * i + 1], z = points[3 * i + 2];
        const float expected = twistedReference(width, rate, x, y, z);
        const float single = t(&points[3 * i]);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(single), std::bit_cast<std::uint32_t>(expected))
            << "one point; width " << width << ", rate " << rate << ", point (" << x << ", " << y << ", " << z << ")";
        ASSERT_EQ(std::bit_cast<std::uint32_t>(batch[i]), std::bit_cast<std::uint32_t>(expected))
            << "batch; width " << width << ", rate " << rate << ", point (" << x << ", " << y << ", " << z << ")";
    }
}

}  // namespace

// The twisted x is decided without the C library wherever its error bound
// leaves no doubt; these points include many whose twisted x lands within a
// few float steps of a line's edge, where only the library can decide.
TEST(Spiral, EveryPointMatchesTheTwistThroughTheCLibrary) {
    std::mt19937 rng(77);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    struct Setting {
        float width, rate;
    };
    const Setting settings[] = {{0.25f, 0.2f}, {0.0f, 1.0f}, {0.9f, -3.0f}, {1.0f, 0.2f}, {2.5f, 0.5f},
                                {0.5f, 0.0f}, {0.1f, 37.0f}, {0.3f, 1e-4f}, {0.25f, 5000.0f}};
    for (const Setting k : settings) {
        const float w = k.width / 2.0f;
        std::vector<float> points;
        for (int i = 0; i < 60001; ++i) {
            float x, y, z;
            if (i % 2 == 0) {
                const float span = (i % 6 == 0) ? 1000.0f : 8.0f;
                x = (2.0f * unit(rng) - 1.0f) * span;
                y = (2.0f * unit(rng) - 1.0f) * span;
                z = (2.0f * unit(rng) - 1.0f) * span;
            } else {
                // Aim the twisted x at an edge: n + w or n + 1 - w, off by a few float steps.
                const double n = std::floor((2.0 * unit(rng) - 1.0) * 20.0);
                const double edge = (i % 4 == 1) ? n + w : n + 1.0 - w;
                const double target = edge + std::ldexp(2.0 * unit(rng) - 1.0, -20) * (1.0 + std::fabs(edge));
                const double radius = std::fabs(target) + 0.01 + 30.0 * unit(rng);
                const double turned = std::acos(target / radius) * (unit(rng) < 0.5f ? -1.0 : 1.0);
                y = (2.0f * unit(rng) - 1.0f) * 40.0f;
                const double theta = turned - static_cast<double>(k.rate * y);
                x = static_cast<float>(radius * std::cos(theta));
                z = static_cast<float>(radius * std::sin(theta));
            }
            points.insert(points.end(), {x, y, z});
        }
        expectTwistReference(k.width, k.rate, points);
    }
}

TEST(Spiral, ExtremePointsMatchTheTwistThroughTheCLibrary) {
    const float inf = INFINITY, nan = NAN;
    const float values[] = {0.0f, -0.0f, 1e-30f, -1e-45f, 0x1p-60f, 3.0f, -3.0f, 0.125f, 1e10f, -3e38f, inf, -inf, nan};
    std::vector<float> points;
    for (float x : values)
        for (float y : values)
            for (float z : values) points.insert(points.end(), {x, y, z});
    for (float rate : {0.2f, 0x1p20f, 3e6f, nan}) expectTwistReference(0.25f, rate, points);
}

// The shortcut assumes the C library's atan2f and cosf within 4 units in the
// last place; its documentation promises less. Checked here, on this
// platform's library, over the angles the shortcut takes.
TEST(Spiral, TheCLibraryStaysWithinTheErrorTheShortcutAllows) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<float> coord(-100.0f, 100.0f);
    std::uniform_real_distribution<float> angle(-1048580.0f, 1048580.0f);
    double worstAtan = 0.0, worstCos = 0.0;
    for (int i = 0; i < 200000; ++i) {
        const float x = coord(rng), z = coord(rng);
        worstAtan = std::max(worstAtan, ulpsApart(std::atan2(z, x), std::atan2(static_cast<double>(z), x)));
        const float a = (i % 2) ? angle(rng) : coord(rng) * 0.05f;
        worstCos = std::max(worstCos, ulpsApart(std::cos(a), std::cos(static_cast<double>(a))));
    }
    EXPECT_LE(worstAtan, 2.0);
    EXPECT_LE(worstCos, 2.0);
}
