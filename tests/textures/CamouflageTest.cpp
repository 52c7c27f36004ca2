#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/Perlin.h"
#include "textures/CamouflageTexture3D.h"

using namespace gritwell;

namespace {
constexpr float kBase = 1.0f, kLayer1 = 0.8f, kLayer2 = 0.3f;

template <class F>
void forGrid(F&& f) {
    for (float x = -1.9f; x < 2.0f; x += 0.17f)
        for (float y = -1.3f; y < 2.0f; y += 0.19f)
            for (float z : {-0.61f, 0.0f, 0.43f}) f(x, y, z);
}

// Whether z changes the value anywhere on a grid.
bool dependsOnZ(Texture3D& t) {
    for (float x = -1.0f; x < 1.0f; x += 0.29f)
        for (float y = -1.0f; y < 1.0f; y += 0.31f) {
            const float a[3] = {x, y, 0.13f}, b[3] = {x, y, -2.71f};
            if (t(a) != t(b)) return true;
        }
    return false;
}
}  // namespace

TEST(Camouflage, WorkedValuesOfBothLayers) {
    // Noise magnitudes worked from the warped positions: (layer 1, layer 2).
    CamouflageTexture3D t;
    expectValues(t, {
        {0.3f, 0.7f, 0.1f, kLayer2},       // (0.017, 0.462)
        {1.25f, -0.4f, 2.6f, kLayer2},     // (0.176, 0.238)
        {-3.1f, 0.45f, 0.8f, kLayer1},     // (0.352, 0.087)
        {2.2f, 1.9f, -0.35f, kBase},       // (0.173, 0.083)
        {1.7f, 3.3f, -1.2f, kLayer1},      // (0.363, 0.363): layer 1 on top
        {-0.8f, -2.4f, 0.05f, kLayer2},    // (0.007, 0.323)
        {0.9f, 1.1f, 1.3f, kBase},         // (0.164, 0.020)
    });
    t.setFlags(8);
    expectValues(t, {
        {-3.1f, 0.45f, 0.8f, kLayer2},     // (0.002, 0.210)
        {0.55f, 0.5f, 0.5f, kLayer1},      // (0.208, 0.220): layer 1 on top
        {2.2f, 1.9f, -0.35f, kBase},       // (0.19998, 0.082)
        {0.37f, 0.81f, 0.6f, kLayer1},     // (0.295, 0.275)
        {4.1f, 0.6f, 1.9f, kLayer2},       // (0.189, 0.275)
        {1.7f, 3.3f, -1.2f, kBase},        // (0.076, 0.151)
    });
}

TEST(Camouflage, ThresholdBeyondTheNoiseRange) {
    CamouflageTexture3D t;
    for (int flags : {2, 4}) {
        t.setFlags(flags);
        t.setThreshold(1.0f);
        forGrid([&](float x, float y, float z) { expectValues(t, {{x, y, z, kBase}}); });
        t.setThreshold(-0.01f);
        forGrid([&](float x, float y, float z) { expectValues(t, {{x, y, z, kLayer1}}); });
    }
}

TEST(Camouflage, LayersAreToldApartByValue) {
    // Layer 1 coloured like the base is invisible: layer 2 shows through
    // even where layer 1 would cover it.
    CamouflageTexture3D t;
    t.setThreshold(-0.01f);
    t.setLayer1Color(kBase);
    expectValues(t, {{0.3f, 0.7f, 0.1f, kLayer2}, {-3.1f, 0.45f, 0.8f, kLayer2}});
    // Both layers coloured like the base: the base everywhere.
    t.setLayer2Color(kBase);
    expectValues(t, {{0.3f, 0.7f, 0.1f, kBase}, {-3.1f, 0.45f, 0.8f, kBase}});
}

TEST(Camouflage, WithoutWarpTheLayersSampleScaledAndSwappedNoise) {
    // Frequency 0: layer 1 reads the noise at 3 (x, y, z), layer 2 at
    // (y, z, x); in planar mode at 3 (x, y, 0) and (y, x, 0).
    CamouflageTexture3D t;
    t.setFrequency(0.0f);
    const float threshold = 0.2f;
    for (int flags : {2, 8}) {
        const bool planar = flags == 8;
        t.setFlags(flags);
        int covered1 = 0, covered2 = 0;
        forGrid([&](float x, float y, float z) {
            const float n1 = planar ? Perlin::noise(3.0f * x, 3.0f * y, 0.0f)
                                    : Perlin::noise(3.0f * x, 3.0f * y, 3.0f * z);
            const float n2 = planar ? Perlin::noise(y, x, 0.0f) : Perlin::noise(y, z, x);
            const bool c1 = std::fabs(n1) > threshold, c2 = std::fabs(n2) > threshold;
            covered1 += c1;
            covered2 += c2;
            t.setLayer1Color(kLayer1);
            t.setLayer2Color(kBase);
            expectValues(t, {{x, y, z, c1 ? kLayer1 : kBase}});
            t.setLayer1Color(kBase);
            t.setLayer2Color(kLayer2);
            expectValues(t, {{x, y, z, c2 ? kLayer2 : kBase}});
        });
        EXPECT_GT(covered1, 20);
        EXPECT_GT(covered2, 20);
    }
}

TEST(Camouflage, LayerTwoOffsetsAreAddedInDouble) {
    // At these points 1 + (x + 0.5) or 2 + (z + 0.5) rounds differently when
    // formed in float; each threshold lies between the two noise magnitudes
    // that result, so only the double form gives the expected side.
    CamouflageTexture3D t;
    t.setLayer1Color(kBase);
    t.setThreshold(0x1.b39aaap-4f);  // double 0x1.b39abap-4, float 0x1.b39a9ap-4
    expectValues(t, {{0x1.99b5eap-4f, 0.3f, 0.7f, kLayer2}});
    t.setThreshold(0x1.b39284p-4f);  // double 0x1.b39276p-4, float 0x1.b39294p-4
    expectValues(t, {{0x1.99ef96p-4f, 0.3f, 0.7f, kBase}});
    t.setThreshold(0x1.25e736p-2f);  // double 0x1.25e732p-2, float 0x1.25e73ap-2
    expectValues(t, {{0.3f, 0.2f, 0x1.9a975cp-4f, kBase}});
    t.setFlags(4);
    t.setThreshold(0x1.1695d0p-5f);  // double 0x1.1695f6p-5, float 0x1.1695bp-5
    expectValues(t, {{0x1.a15012p-4f, 0.3f, 0.7f, kLayer2}});
}

TEST(Camouflage, PlanarModeFlattensLayerOneOnly) {
    CamouflageTexture3D layer1, layer2;
    layer1.setLayer2Color(kBase);
    layer2.setLayer1Color(kBase);
    layer1.setFlags(4);
    layer2.setFlags(4);
    EXPECT_FALSE(dependsOnZ(layer1));
    EXPECT_TRUE(dependsOnZ(layer2));
    // Without the warp layer 2 is flat too.
    layer2.setFrequency(0.0f);
    EXPECT_FALSE(dependsOnZ(layer2));
    layer1.setFlags(2);
    EXPECT_TRUE(dependsOnZ(layer1));
}

TEST(Camouflage, RecordLayoutAndVersionRule) {
    CamouflageTexture3D t;
    char record[56];
    t.getDescription(record);
    EXPECT_EQ(record[0], 56);
    EXPECT_STREQ(record + 1, "Camouflage");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    const float defaults[5] = {0.6f, 0.2f, kBase, kLayer1, kLayer2};
    EXPECT_EQ(std::memcmp(record + 36, defaults, sizeof defaults), 0);

    CamouflageTexture3D other;
    other.setThreshold(0.5f);
    other.getDescription(record);
    record[33] = 2;  // 2.0: ignored
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getThreshold(), 0.2f);
    record[33] = 1;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getThreshold(), 0.5f);
}
