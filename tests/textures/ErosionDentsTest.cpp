// Erosion and Dents: six octaves of absolute gradient noise, cubed. Worked
// values come from an independent float32 model of the sums over the
// library's gradient noise.

#include <initializer_list>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/DentedTexture3D.h"
#include "textures/ErodedTexture3D.h"

using namespace gritwell;

namespace {
// Whether z changes the value anywhere on a small grid.
bool dependsOnZ(Texture3D& t) {
    for (float x = -1.0f; x < 1.0f; x += 0.29f)
        for (float y = -1.0f; y < 1.0f; y += 0.31f) {
            const float a[3] = {x, y, 0.13f}, b[3] = {x, y, -2.71f};
            if (t(a) != t(b)) return true;
        }
    return false;
}
}  // namespace

TEST(Erosion, WorkedValuesAcrossTheNarrowBand) {
    ErodedTexture3D t;
    expectValues(t, {
        {-1.57f, 0.27f, -0.78f, 0x1.3973a4p-6f},  // sum 0.10408: just inside the band
        {-2.92f, 2.02f, -1.44f, 0x1.5d6838p-1f},
        {-0.16f, 1.31f, 2.27f, 0x1.7daa32p-5f},
        {0.62f, 0.75f, -2.61f, 0.0f},             // 0.3 sum^3 = 4.6e-5, below the band
        {2.02f, -0.14f, 0.83f, 1.0f},             // 0.3 sum^3 = 0.0089, above it
    });
    t.setFlags(4);
    expectValues(t, {
        {-1.57f, 0.27f, -0.78f, 0x1.f8e04cp-1f},
        {1.28f, 2.53f, -0.63f, 0x1.6d6eeap-1f},
        {0.62f, 0.75f, -2.61f, 0.0f},
    });
}

TEST(Erosion, TheBandOpensJustAboveOneTenThousandth) {
    // At this point sum^3 = 0.00112733; these two neighbouring magnitudes put
    // magnitude * sum^3 exactly on 0.0001f and one step above it.
    ErodedTexture3D t;
    t.setMagnitude(0x1.6b55e6p-4f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 0.0f}});
    t.setMagnitude(0x1.6b55e8p-4f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 0x1.5c5b8ap-56f}});
}

TEST(Dents, WorkedValues) {
    DentedTexture3D t;
    expectValues(t, {
        {-1.57f, 0.27f, -0.78f, 0x1.2a62a2p-7f},
        {0.62f, 0.75f, -2.61f, 0x1.0b4bd8p-4f},
        {0.25f, -0.5f, 1.75f, 0x1.704fc6p-4f},  // black for erosion, which starts at frequency 4
    });
    t.setFlags(8);
    expectValues(t, {
        {-2.92f, 2.02f, -1.44f, 0x1.fa065cp-4f},
        {0.62f, 0.75f, -2.61f, 0x1.ddde4p-5f},
    });
}

TEST(Dents, ClampedToTheUnitRange) {
    DentedTexture3D t;
    t.setMagnitude(1000.0f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 1.0f}});
    t.setMagnitude(-1.0f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 0.0f}});
}

TEST(ErosionAndDents, ZeroMagnitudeIsBlackEverywhere) {
    ErodedTexture3D erosion;
    DentedTexture3D dents;
    erosion.setMagnitude(0.0f);
    dents.setMagnitude(0.0f);
    for (Texture3D* t : std::initializer_list<Texture3D*>{&erosion, &dents})
        expectValues(*t, {{-1.57f, 0.27f, -0.78f, 0.0f}, {2.02f, -0.14f, 0.83f, 0.0f}, {0.3f, 9.1f, -4.4f, 0.0f}});
}

TEST(ErosionAndDents, EveryOctaveOnTheLatticeGivesBlack) {
    // Gradient noise is 0 on the lattice, so every octave adds |0.5 - 0.5|.
    ErodedTexture3D erosion;  // first octave at 4 x the point
    expectValues(erosion, {{0.25f, -0.5f, 1.75f, 0.0f}, {-3.0f, 0.0f, 2.5f, 0.0f}});
    DentedTexture3D dents;    // first octave at the point scaled by 5
    expectValues(dents, {{1.0f, -2.0f, 3.0f, 0.0f}, {0.0f, -1.0f, 0.0f, 0.0f}});
}

TEST(ErosionAndDents, PlanarModeIgnoresZ) {
    ErodedTexture3D erosion;
    DentedTexture3D dents;
    for (Texture3D* t : std::initializer_list<Texture3D*>{&erosion, &dents}) {
        EXPECT_TRUE(dependsOnZ(*t));
        t->setFlags(4);
        EXPECT_FALSE(dependsOnZ(*t));
        t->setFlags(8);
        EXPECT_FALSE(dependsOnZ(*t));
    }
}

TEST(ErosionAndDents, DefaultsAndVersionRule) {
    ErodedTexture3D erosion;
    DentedTexture3D dents;
    EXPECT_EQ(erosion.getMagnitude(), 0.3f);
    EXPECT_EQ(erosion.getScale(), 1.0f);
    EXPECT_EQ(dents.getMagnitude(), 5.0f);
    EXPECT_EQ(dents.getScale(), 5.0f);

    // Only a 2.0 record is adopted.
    ErodedTexture3D other;
    other.setMagnitude(0.7f);
    char record[44];
    other.getDescription(record);
    record[34] = 1;
    erosion.setStateFromDescription(record);
    EXPECT_EQ(erosion.getMagnitude(), 0.3f);
    record[34] = 0;
    erosion.setStateFromDescription(record);
    EXPECT_EQ(erosion.getMagnitude(), 0.7f);
}
