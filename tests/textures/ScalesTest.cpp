#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/Perlin.h"
#include "textures/ScalesTexture3D.h"

using namespace gritwell;

namespace {
constexpr float kBody = 0.6647f;   // luminance(0.5, 0.7, 0.8)
constexpr float kEdge = 0.97152f;  // luminance(0.9, 1.0, 0.9)

float at(ScalesTexture3D& t, float x, float y, float z = 0.0f) {
    const float p[3] = {x, y, z};
    return t(p);
}

ScalesTexture3D randomized() {
    ScalesTexture3D t;
    t.setBaseRandomizeColors(true);
    t.setBodyRandomizeColors(true);
    t.setEdgeRandomizeColors(true);
    return t;
}
}  // namespace

TEST(Scales, DefaultsAndRecordHeader) {
    ScalesTexture3D t;
    EXPECT_EQ(t.getScaleShape(), ScalesTexture3D::SCALE_SHAPE_SEMICIRCLE);
    EXPECT_EQ(t.getBaseColor(), 0.0f);
    EXPECT_EQ(t.getBodyColor(), kBody);
    EXPECT_EQ(t.getEdgeColor(), kEdge);
    EXPECT_EQ(ScalesTexture3D::info().fields.size(), 22u);
    char record[124];
    t.getDescription(record);
    EXPECT_EQ(record[0], 124);
    EXPECT_STREQ(record + 1, "Scales");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    EXPECT_EQ(record[35], 1);
}

TEST(Scales, OutlinesAndTheSeamAtHalf) {
    ScalesTexture3D t;
    expectValues(t, {
        {0.4f, 0.75f, 0.0f, kBody}, {0.5f, 0.05f, 0.0f, 0.0f},   // a scale's tip and base
        {0.25f, 0.3f, 0.0f, kEdge}, {0.02f, 0.55f, 0.0f, 0.0f},  // a side scale's rim, base
        // At y = 0.5 exactly the lower outline meets the upper region: a rim
        // point in the middle of a body.
        {0.5f, 0.5f, 0.0f, kEdge}, {0.5f, 0.49999997f, 0.0f, kBody}, {0.5f, 0.50000006f, 0.0f, kBody},
        {-1.0f, 0.05f, 0.0f, kBody}, {-0.5f, -0.95f, 0.0f, 0.0f},
        // Whole numbers beyond the int range start a cell like 0 does.
        {1e30f, 0.05f, 0.0f, kBody}, {-3e9f, 1e20f, 0.0f, kBody},
    });
    t.setScaleShape(ScalesTexture3D::SCALE_SHAPE_NORMAL);
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, kEdge}, {0.1f, 0.45f, 0.0f, kEdge},
        {0.25f, 0.3f, 0.0f, kBody},  // inside the circle, on the sine outline's rim
        {0.01f, 0.65f, 0.0f, 0.0f},  // twice the sine outline's base band
        {0.02f, 0.55f, 0.0f, kBody}, {0.1f, 0.9f, 0.0f, kBody},
    });

    // Every value but 0 draws circles.
    t.setShadingAcrossEnabled(true);
    for (std::int32_t shape : {2, -1, INT_MIN, INT_MAX}) {
        ScalesTexture3D other = t;
        other.setScaleShape(static_cast<ScalesTexture3D::ScaleShape>(shape));
        for (float x = -1.0f; x < 1.0f; x += 0.0625f)
            for (float y = -1.0f; y < 1.0f; y += 0.03125f) EXPECT_EQ(at(other, x, y), at(t, x, y));
    }
}

TEST(Scales, RandomSlotsComeFromTheNeighbouringCells) {
    ScalesTexture3D t = randomized();
    expectValues(t, {
        // The middle scale: body above and below y = 3.5, base, rim.
        {2.4f, 3.75f, 0.0f, 0.581392229f}, {2.5f, 3.45f, 0.0f, 0.581392229f},
        {2.5f, 3.05f, 0.0f, 0.0542614833f}, {2.5f, 3.97f, 0.0f, 0.927130699f},
        // The side scales rising from y = 3, left and right: body, rim.
        {2.25f, 3.2f, 0.0f, 0.571162939f}, {2.75f, 3.2f, 0.0f, 0.59928f},
        {2.25f, 3.3f, 0.0f, 0.923720956f}, {2.75f, 3.3f, 0.0f, 0.933093309f},
        // The side scales rising from y = 4, left and right: base, body.
        {2.02f, 3.55f, 0.0f, 0.142967924f}, {2.98f, 3.55f, 0.0f, 0.179770261f},
        {2.1f, 3.9f, 0.0f, 0.714451909f}, {2.9f, 3.9f, 0.0f, 0.769655406f},
        // The outline takes the true floor (left tip) while the hashes take
        // their own cell rule.
        {-1.0f, 0.25f, 0.0f, 0.731013834f},
        {-1.0f, -0.75f, 0.0f, 0.539697587f},
    });
    t.setScaleShape(ScalesTexture3D::SCALE_SHAPE_NORMAL);
    expectValues(t, {
        {2.08f, 3.45f, 0.0f, 0.923720956f}, {2.9f, 3.45f, 0.0f, 0.933093309f},
        {2.015f, 3.65f, 0.0f, 0.142967924f}, {2.99f, 3.65f, 0.0f, 0.179770261f},
    });
}

TEST(Scales, OneRandomToneForEachScaleAcrossCells) {
    ScalesTexture3D t = randomized();
    // The scale centred on x = 3 between rows 2 and 3 spans four cells.
    const float body = at(t, 2.9f, 3.2f);
    EXPECT_EQ(at(t, 3.1f, 3.2f), body);
    EXPECT_EQ(at(t, 2.9f, 2.9f), body);
    EXPECT_EQ(at(t, 3.1f, 2.9f), body);
    EXPECT_EQ(at(t, 3.25f, 3.3f), at(t, 2.75f, 3.3f));   // its rim
    EXPECT_EQ(at(t, 3.02f, 2.55f), at(t, 2.98f, 2.55f));  // its base
    // The middle scale's body reads one value on both sides of y = 0.5.
    EXPECT_EQ(at(t, 0.5f, 0.45f), at(t, 0.55f, 0.9f));

    std::set<float> tones;
    for (int i = -3; i < 3; ++i)
        for (int j = -3; j < 3; ++j) tones.insert(at(t, i + 0.5f, j + 0.75f));
    EXPECT_GT(tones.size(), 30u);
}

TEST(Scales, ShadingAlongAndAcross) {
    ScalesTexture3D t;
    t.setBaseColor(0.1f);
    t.setShadingAcrossEnabled(true);
    t.setShadingAcrossStrength(1.0f);
    // Full strength: 0 at a scale's side, 1 in its middle.
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.0f}, {0.5f, 0.75f, 0.0f, kBody}});

    t.setShadingAcrossStrength(0.3f);
    t.setShadingAlongEnabled(true);
    t.setShadingAlongStrength(0.6f);
    expectValues(t, {
        {2.4f, 3.75f, 0.0f, 0.539843619f}, {2.5f, 3.05f, 0.0f, 0.049386058f},
        {2.4f, 3.97f, 0.0f, 0.436953396f}, {2.2f, 3.2f, 0.0f, 0.554812193f},
        {2.75f, 3.2f, 0.0f, 0.536818981f}, {2.28f, 3.3f, 0.0f, 0.651696622f},
        {2.75f, 3.3f, 0.0f, 0.666983008f}, {2.03f, 3.55f, 0.0f, 0.0493203029f},
        {2.98f, 3.55f, 0.0f, 0.0493568219f}, {2.15f, 3.9f, 0.0f, 0.624084234f},
        {2.9f, 3.9f, 0.0f, 0.6357072f},
    });
    t.setScaleShape(ScalesTexture3D::SCALE_SHAPE_NORMAL);
    expectValues(t, {
        {2.08f, 3.45f, 0.0f, 0.475273311f}, {2.9f, 3.45f, 0.0f, 0.472750604f},
        {2.015f, 3.65f, 0.0f, 0.067217052f}, {2.99f, 3.65f, 0.0f, 0.0672294945f},
    });
}

TEST(Scales, WobbleMovesLatticePointsOffTheNoiseZeros) {
    ScalesTexture3D plain;
    plain.setShadingAcrossEnabled(true);
    plain.setShadingAlongEnabled(true);
    ScalesTexture3D t = plain;
    t.setScaleVariabilityEnabled(true);
    const float a = 0.25f;
    // (0, 0) scaled by 0.1 is a lattice point in both coordinates; (10, 3)
    // only in x. Both offsets are taken at the unmoved point.
    struct Case {
        float x, y, nx, ny;
    };
    for (const Case& c : {Case{0.0f, 0.0f, 0.5f, 0.5f}, Case{10.0f, 3.0f, 1.5f, 3.0f * 0.1f}}) {
        const float dx = Perlin::noise(c.nx, c.ny) * a;
        const float dy = Perlin::noise((c.x + 17.0f) * 0.1f, (c.y + 83.0f) * 0.1f) * a;
        EXPECT_NE(dx, 0.0f);
        EXPECT_EQ(at(t, c.x, c.y), at(plain, c.x + dx, c.y + dy)) << c.x << ", " << c.y;
    }
}

TEST(Scales, PlainColoursZIgnoredAndNonFinitePoints) {
    ScalesTexture3D t;
    t.setBaseColor(0.1f);
    t.setBodyColor(0.5f);
    t.setEdgeColor(0.9f);
    for (auto shape : {ScalesTexture3D::SCALE_SHAPE_SEMICIRCLE, ScalesTexture3D::SCALE_SHAPE_NORMAL}) {
        t.setScaleShape(shape);
        for (float x = -2.0f; x < 2.0f; x += 0.03125f)
            for (float y = -2.0f; y < 2.0f; y += 0.015625f) {
                const float v = at(t, x, y);
                EXPECT_TRUE(v == 0.1f || v == 0.5f || v == 0.9f) << x << ", " << y;
            }
    }

    ScalesTexture3D all = randomized();
    all.setShadingAlongEnabled(true);
    all.setShadingAcrossEnabled(true);
    all.setScaleVariabilityEnabled(true);
    const float inf = std::numeric_limits<float>::infinity();
    for (float x : {-3.3f, 0.7f, 5.1f})
        for (float y : {-0.2f, 0.5f, 2.6f})
            for (float z : {1.0f, -7.5f, inf, std::nanf("")})
                EXPECT_EQ(at(all, x, y, z), at(all, x, y, 0.0f)) << x << ", " << y << ", " << z;
    for (float v : {inf, -inf, std::nanf("")}) {  // some float, and no fault
        at(all, v, 0.5f);
        at(all, 0.5f, v);
    }
}

TEST(Scales, OtherVersionsIgnoredAndDamagedBoolsReadAsSet) {
    ScalesTexture3D source;
    source.setEdgeDimension(0.125f);
    source.setInteractiveUpdate(false);
    char record[124];
    source.getDescription(record);

    ScalesTexture3D t;
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{0, 0}, std::pair{1, 1}}) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        t.setStateFromDescription(record);
        EXPECT_EQ(t.getEdgeDimension(), 0.07f);
        EXPECT_TRUE(t.interactiveUpdate());
    }
    record[33] = 1;
    record[34] = 0;
    record[40] = static_cast<char>(0x80);  // shadingAlongEnabled
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getEdgeDimension(), 0.125f);
    EXPECT_FALSE(t.interactiveUpdate());
    EXPECT_TRUE(t.getShadingAlongEnabled());
    ScalesTexture3D clean = t;
    clean.setShadingAlongEnabled(true);
    EXPECT_EQ(at(t, 0.4f, 0.75f), at(clean, 0.4f, 0.75f));
    EXPECT_NE(at(t, 0.4f, 0.75f), kBody);
}
