#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/Perlin.h"
#include "textures/CorrugatedTexture3D.h"

using namespace gritwell;

TEST(Corrugated, DefaultSineIgnoresYZAndFlags) {
    CorrugatedTexture3D t;
    EXPECT_EQ(t.getStyle(), CorrugatedTexture3D::Sine);
    expectValues(t, {{0.25f, 0.0f, 0.0f, 1.0f}, {0.75f, 0.0f, 0.0f, 0.0f}, {-0.75f, 0.0f, 0.0f, 1.0f},
                     {0.0f, 0.0f, 0.0f, 0.5f}, {0.125f, 0.0f, 0.0f, 0.853553414f},
                     {0.6f, 0.0f, 0.0f, 0.206107318f}, {0.25f, -7.5f, 3e6f, 1.0f}});
    t.setFlags(12);
    expectValues(t, {{0.125f, 2.0f, 9.0f, 0.853553414f}});
}

TEST(Corrugated, SawtoothRibbonAndTriangleProfiles) {
    CorrugatedTexture3D t;
    t.setStyle(CorrugatedTexture3D::Sawtooth);
    expectValues(t, {{-0.25f, 0.0f, 0.0f, 0.75f}, {2.75f, 0.0f, 0.0f, 0.75f},
                     {-1.0f, 0.0f, 0.0f, 0.0f},  // a true floor: -1 is not shifted a cell down
                     {-0.1f, 0.0f, 0.0f, 0.899999976f}, {-1e-10f, 0.0f, 0.0f, 1.0f}});
    // The ribbon is centred on 0, not 0.5.
    t.setStyle(CorrugatedTexture3D::Ribbon);
    expectValues(t, {{0.25f, 0.0f, 0.0f, 0.25f}, {0.75f, 0.0f, 0.0f, -0.25f}, {0.5f, 0.0f, 0.0f, 0.0f},
                     {0.125f, 0.0f, 0.0f, 0.216506347f}, {-0.1f, 0.0f, 0.0f, -0.200000018f}});
    t.setStyle(CorrugatedTexture3D::Triangle);
    expectValues(t, {{0.25f, 0.0f, 0.0f, 0.5f}, {0.5f, 0.0f, 0.0f, 1.0f}, {0.75f, 0.0f, 0.0f, 0.5f},
                     {0.3f, 0.0f, 0.0f, 0.600000024f}, {0.9f, 0.0f, 0.0f, 0.200000048f}});
}

TEST(Corrugated, PerlinNoiseRunsAlongTheRawCoordinate) {
    CorrugatedTexture3D t;
    t.setStyle(CorrugatedTexture3D::PerlinNoise);
    // 2x meets the noise lattice, where it is 0, at every half unit.
    expectValues(t, {{0.5f, 1.0f, 2.0f, 0.5f}, {-3.5f, 0.0f, 0.0f, 0.5f}});
    for (float x : {0.3f, 1.3f, -2.7f}) {  // not periodic: the noise sees x, not its fraction
        const float p[3] = {x, 0.0f, 0.0f};
        EXPECT_EQ(t(p), 0.5f + Perlin::noise(2.0f * x) / 2.0f) << x;
    }
}

TEST(Corrugated, AnyOtherStyleIsAHalfSineWave) {
    CorrugatedTexture3D t;
    const float inf = std::numeric_limits<float>::infinity();
    for (int style : {7, 5, -1, INT_MIN, INT_MAX}) {
        t.setStyle(static_cast<CorrugatedTexture3D::Style>(style));
        // Sine would give 1 at 0.25 and 0 at 0.75.
        expectValues(t, {{0.5f, 0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 0.5f},
                         {0.25f, 0.0f, 0.0f, 0.853553414f}, {0.75f, 0.0f, 0.0f, 0.853553414f}});
        for (float x : {inf, -inf, std::nanf(""), 3e38f}) {
            const float p[3] = {x, 0.0f, 0.0f};
            (void)t(p);  // no table is indexed by the style: nothing to overrun
        }
    }
}

TEST(Corrugated, RecordLayoutAndVersionRule) {
    CorrugatedTexture3D t, other;
    char record[40];
    t.getDescription(record);
    EXPECT_EQ(Texture3D::recordName(record), "Corrugated");
    EXPECT_EQ(record[0], 40);
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    EXPECT_EQ(record[36], 3);

    other.setStyle(CorrugatedTexture3D::Ribbon);
    other.getDescription(record);
    record[34] = 1;  // 1.1: ignored
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getStyle(), CorrugatedTexture3D::Sine);
    record[34] = 0;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getStyle(), CorrugatedTexture3D::Ribbon);
}
