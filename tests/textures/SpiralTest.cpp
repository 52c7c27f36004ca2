#include <gtest/gtest.h>

#include "PointCases.h"
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
