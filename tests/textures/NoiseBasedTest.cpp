// The generators built on the noise library: gradient and cellular noise
// shown directly or summed, warped and thresholded into stone, wood, marble,
// camouflage, spots and tiles. Worked values as tables of (point, expected),
// several from independent float32 models over the library's noise; the
// shared properties (modes, records, odd points) are checked in
// GeneratorSuiteTest.

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "noise/Perlin.h"
#include "textures/CamouflageTexture3D.h"
#include "textures/CellTexture3D.h"
#include "textures/CheetahTexture3D.h"
#include "textures/DentedTexture3D.h"
#include "textures/ErodedTexture3D.h"
#include "textures/FBMTexture3D.h"
#include "textures/SpeckledStoneTexture3D.h"
#include "textures/GraniteTexture3D.h"
#include "textures/PerlinTexture3D.h"
#include "textures/PsychedelicTexture3D.h"
#include "textures/SimpleMarbleTexture3D.h"
#include "textures/SimplexTexture3D.h"
#include "textures/TurbulenceTexture3D.h"
#include "textures/VoronoiTexture3D.h"
#include "textures/VoronoiTileTexture3D.h"
#include "textures/WoodTexture3D.h"

using namespace gritwell;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

}  // namespace

// ---- Perlin Noise, FBM, Turbulence, Simplex ----

TEST(NoiseTextures, TheLatticeAndZeroOctavesGiveTheMidToneOrBlack) {
    // (0.25, 0.5, 0.75) and (-1, 2.25, -0.5) are lattice points at every
    // octave's frequency; without octaves any point is.
    PerlinTexture3D perlin;
    FBMTexture3D fbm;
    TurbulenceTexture3D turbulence;
    for (int octaves : {4, 0}) {
        SCOPED_TRACE(octaves);
        perlin.setOctaves(octaves);
        fbm.setOctaves(octaves);
        turbulence.setOctaves(octaves);
        const float x = octaves == 0 ? 0.37f : 0.25f;
        expectValues(perlin, {{x, 0.5f, 0.75f, 0.5f}, {-1.0f, 2.25f, -0.5f, 0.5f}});
        expectValues(fbm, {{x, 0.5f, 0.75f, 0.5f}, {-1.0f, 2.25f, -0.5f, 0.5f}});
        expectValues(turbulence, {{x, 0.5f, 0.75f, 0.0f}, {-1.0f, 2.25f, -0.5f, 0.0f}});
    }
}

// ---- Voronoi, Cell Noise ----

TEST(CellularTextures, FirstDistanceIsZeroAtAFeatureAndCrackleKeepsItsFloor) {
    VoronoiTexture3D voronoi;
    voronoi.setScale(1.0f);
    float F[4], P[12];
    Voronoi::Calculate(0.5f, 0.5f, 0.5f, F, P, Voronoi::LengthSquared);
    expectValues(voronoi, {{P[0], P[1], P[2], 0.0f}});
    // Crackle never falls below sqrt(2 / 3); Cell Noise's crackle is white.
    voronoi.setType(Voronoi::Crackle);
    CellTexture3D cell;
    cell.setType(Worley::Crackle);
    const float floor = static_cast<float>(1.4142135623730951 / 1.7320508075688772);
    for (float x = -2.0f; x < 2.0f; x += 0.173f)
        for (float y = -2.0f; y < 2.0f; y += 0.191f) {
            const float v = valueAt(voronoi, x, y, 0.37f);
            EXPECT_TRUE(v >= floor && v <= 1.0f) << x << ", " << y << ": " << v;
            expectValues(cell, {{x, y, 0.37f, 1.0f}});
        }
}

// ---- Erosion, Dents ----

TEST(Erosion, WorkedValuesAcrossTheNarrowBand) {
    ErodedTexture3D t;
    expectValues(t, {
        {-1.57f, 0.27f, -0.78f, 0x1.3973a4p-6f},  // sum 0.10408: just inside the band
        {-2.92f, 2.02f, -1.44f, 0x1.5d6838p-1f},
        {0.62f, 0.75f, -2.61f, 0.0f},  // 0.3 sum^3 = 4.6e-5, below the band
        {2.02f, -0.14f, 0.83f, 1.0f},  // 0.3 sum^3 = 0.0089, above it
        {0.25f, -0.5f, 1.75f, 0.0f},   // every octave on the lattice adds |0.5 - 0.5|
    });
    // At this point sum^3 = 0.00112733; these two neighbouring magnitudes put
    // magnitude * sum^3 exactly on 0.0001f and one step above it.
    t.setMagnitude(0x1.6b55e6p-4f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 0.0f}});
    t.setMagnitude(0x1.6b55e8p-4f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 0x1.5c5b8ap-56f}});
    t.setMagnitude(0.0f);
    expectValues(t, {{2.02f, -0.14f, 0.83f, 0.0f}});
}

TEST(Dents, WorkedValuesClampedToTheUnitRange) {
    DentedTexture3D t;
    expectValues(t, {
        {-1.57f, 0.27f, -0.78f, 0x1.2a62a2p-7f},
        {0.62f, 0.75f, -2.61f, 0x1.0b4bd8p-4f},
        {0.25f, -0.5f, 1.75f, 0x1.704fc6p-4f},  // black for erosion, which starts at frequency 4
        {1.0f, -2.0f, 3.0f, 0.0f},              // the first octave at the point scaled by 5
    });
    t.setMagnitude(1000.0f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 1.0f}});
    t.setMagnitude(-1.0f);
    expectValues(t, {{-1.57f, 0.27f, -0.78f, 0.0f}});
}

// ---- Granite ----
// One all-or-nothing speckle layer per octave, weighted 1/frequency.

TEST(Granite, LayersAddTheInverseOfTheirFrequency) {
    GraniteTexture3D t;
    expectValues(t, {
        {0.74f, 1.45f, 1.77f, 0.0f},        // samples reach 0.509 but never -0.5
        {-2.83f, -0.21f, 2.66f, 0.03125f},  // the sixth layer only
        {0.89f, 2.41f, -2.32f, 0.5f},       // second layer at -0.504
        {1.12f, 0.79f, -2.75f, 0.09375f},   // fifth and sixth
        {1.9f, 0.88f, 1.79f, 1.0f},         // 1 + 1/16 clamped
        {kNaN, 0.5f, 0.5f, 0.0f},           // NaN truncates to INT_MIN: the sum clamps to 0
    });
    t.setOctaves(1);
    expectValues(t, {{1.9f, 0.88f, 1.79f, 1.0f}, {0.74f, 1.45f, 1.77f, 0.0f}});
    t.setFrequency(2.0f);  // the layer weighs 1/2
    expectValues(t, {{0.89f, 2.41f, -2.32f, 0.5f}});
    for (int octaves : {0, -1, INT_MIN}) {
        t.setOctaves(octaves);
        expectValues(t, {{1.9f, 0.88f, 1.79f, 0.0f}});
    }
    GraniteTexture3D zero;
    zero.setFrequency(0.0f);  // samples the lattice point 0 and adds 0 / 0
    EXPECT_TRUE(std::isnan(valueAt(zero, 0.89f, 2.41f, -2.32f)));
}

TEST(Granite, HugeOctaveCountsEndWithTheValueOfTheFullLoop) {
    // Within some 280 layers the frequency reaches infinity (or was 0 or NaN)
    // and the sum stops changing.
    GraniteTexture3D full, huge;
    full.setOctaves(300);
    huge.setOctaves(INT_MAX);
    for (float frequency : {1.0f, 1e-45f, -1.0f, 3e38f, 0.0f, kInf, kNaN}) {
        full.setFrequency(frequency);
        huge.setFrequency(frequency);
        for (float x : {0.89f, 0.0f, 1e20f})
            EXPECT_EQ(bitsOf(valueAt(full, x, 2.41f, -2.32f)), bitsOf(valueAt(huge, x, 2.41f, -2.32f)))
                << "frequency " << frequency << " x " << x;
    }
}

// ---- Wood ----
// Worked values from a float32 model of the ring formula.

namespace {

WoodTexture3D undisplacedWood() {
    WoodTexture3D t;
    t.setFrequency(0.0f);
    return t;
}

}  // namespace

TEST(Wood, UndisplacedRingsAreCirclesAroundTheYAxis) {
    WoodTexture3D t = undisplacedWood();
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.2265625f},  // on the axis: only noise(0) = 0 counts
        {0.5f, -41.5f, 0.0f, 0.2265625f},  // a whole ring number: fraction 0.5
        {-0.7f, 0.3f, 0.2f, 0.307241917f},
        {1.3f, 0.0f, -2.1f, 0.363698423f},
        {0.05f, 0.0f, 0.0f, 0.481761634f},
        {-2.25f, 0.0f, -3.5f, 0.253942281f},
        {0.03f, 0.0f, 0.0f, 0.1f},  // fraction 0.806: on the dark plateau [0.8, 0.83]
        {0.211f, 0.0f, 0.0f, 0.1f},
    });
    t.setFrequency(-2.0f);  // any frequency <= 0 switches the displacement off
    expectValues(t, {{-0.7f, 5.0f, 0.2f, 0.307241917f}});
    t.setRingScale(1.0f);  // at this radius the wobbled ring number is exactly 1.0: fraction 0
    expectValues(t, {{0.3178178668022156f, 0.0f, 0.0f, 0.5f}});
    t.setDarkColor(0.9f);
    t.setLightColor(0.2f);
    expectValues(t, {{0.3178178668022156f, 0.0f, 0.0f, 0.2f}});
}

TEST(Wood, RingScaleGetterTruncatesWhileEvaluationUsesTheStoredFloat) {
    WoodTexture3D t = undisplacedWood();
    t.setRingScale(6.7f);
    EXPECT_EQ(t.ringScale(), 6);
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.100106098f}});  // 6.0 would give 0.2265625
    t.setRingScale(3e9f);
    EXPECT_EQ(t.ringScale(), INT_MIN);  // out of int range, safely
    // A negative scale makes the ring number negative; fractions still count
    // up from the cell below.
    t.setRingScale(-6.0f);
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.2265625f}, {-0.7f, 0.0f, 0.2f, 0.476955235f}});
}

TEST(Wood, WithoutOctavesThePointStillMovesHalfwayAlongTheDiagonal) {
    WoodTexture3D t;
    WoodTexture3D rings = undisplacedWood();
    t.setOctaves(0);  // no octaves: the sum is 0 and the shift still 0.5
    expectValues(t, {{0.3f, -1.2f, 0.8f, valueAt(rings, 0.8f, -99.0f, 1.3f)}});
}

// ---- Simple Marble ----

namespace {

// The four marble tones, each the luminance of (a, a, b) in double rounded
// to float, worked out once in a float32 model.
constexpr float kPale = 0x1.7846b0p-1f;  // knots 0, 1, 5, 6, 11
constexpr float kMid = 0x1.4ed19ap-2f;   // knots 2, 3, 4
constexpr float kDark = 0x1.7d4a72p-3f;  // knots 7, 8
constexpr float kDeep = 0x1.eeba02p-4f;  // knots 9, 10, 12
constexpr float kRamp[14] = {kPale, kPale, kMid, kMid, kMid, kPale, kPale, kDark, kDark, kDeep, kDeep, kPale, kDeep, 0.0f};

// The ramp at a noise sum, written out for the test: a Catmull-Rom segment
// with coefficients rounded from double, the cubic in float.
float ramp(float m) {
    float x = 0.75f + 2.0f * m;
    x = x < 0.0f ? 0.0f : (x > 1.0f ? 1.0f : x);
    const int i = static_cast<int>(10.0f * x);
    const float t = 10.0f * x - static_cast<float>(i);
    const double k0 = kRamp[i], k1 = kRamp[i + 1], k2 = kRamp[i + 2], k3 = kRamp[i + 3];
    const float c3 = static_cast<float>(-0.5 * k0 + 1.5 * k1 - 1.5 * k2 + 0.5 * k3);
    const float c2 = static_cast<float>(k0 - 2.5 * k1 + 2.0 * k2 - 0.5 * k3);
    const float c1 = static_cast<float>(-0.5 * k0 + 0.5 * k2);
    return ((c3 * t + c2) * t + c1) * t + static_cast<float>(k1);
}

}  // namespace

TEST(SimpleMarble, OctavesStepTheFrequencyBy217InDouble) {
    SimpleMarbleTexture3D t;
    t.setTextureScale(1.0f);
    // 2.17 and 2.17 x 2.17 as the double product rounds them; the float
    // product would give 0x1.2d5ea0p+2 for the third.
    const float f[3] = {1.0f, 0x1.15c290p+1f, 0x1.2d5e9ep+2f};
    for (const PointCase& p : {PointCase{0.37f, -1.3f, 2.9f, 0}, PointCase{5.1f, 0.2f, -0.7f, 0}}) {
        float sum = 0.0f, planarSum = 0.0f;
        for (int octaves = 1; octaves <= 3; ++octaves) {
            const float k = f[octaves - 1];
            sum += Perlin::noise(k * p.x, k * p.y, k * p.z) / k;
            planarSum += Perlin::noise(k * p.x, k * p.y) / k;
            t.setOctaves(octaves);
            t.setFlags(2);
            expectValues(t, {{p.x, p.y, p.z, ramp(sum)}});
            t.setFlags(8);
            expectValues(t, {{p.x, p.y, p.z, ramp(planarSum)}});
        }
    }
    for (int octaves : {0, INT_MIN}) {  // no octaves: the ramp at 0
        t.setOctaves(octaves);
        expectValues(t, {{0.3f, -1.7f, 2.2f, ramp(0.0f)}});
    }
}

// ---- Psychedelic ----

TEST(Psychedelic, CellNoiseOfTheNoiseWarpedPoint) {
    PsychedelicTexture3D t;
    t.setFrequency(1.5f);
    t.setMinColor(0.2f);
    t.setMaxColor(0.7f);
    // The second warp samples the noise one unit along x.
    const float x = 0.37f, y = -1.3f, z = 2.9f;
    const float u = 1.5f * Perlin::noise(x, y, z) + x;
    const float v = 1.5f * Perlin::noise(x + 1.0f, y, z) + y;
    expectValues(t, {{x, y, z, 0.5f * CellNoise::cellNoise(1.5f * u, 1.5f * v) + 0.2f}});
    // On the lattice both noises vanish: the cell of (f x, f y) itself.
    expectValues(t, {{2.0f, -3.0f, 1.0f, 0.5f * CellNoise::cellNoise(3.0f, -4.5f) + 0.2f}});
    t.setFrequency(0.0f);  // one intensity everywhere
    const float everywhere = 0.5f * CellNoise::cellNoise(0.0f, 0.0f) + 0.2f;
    expectValues(t, {{0.37f, -1.3f, 2.9f, everywhere}, {-40.5f, 17.2f, 3.3f, everywhere}});
    t.setMinColor(kNaN);  // a NaN intensity fails the high bound's test: white
    expectValues(t, {{0.3f, 0.6f, 0.9f, 1.0f}});
}

// ---- Camouflage ----

namespace {
constexpr float kBase = 1.0f, kLayer1 = 0.8f, kLayer2 = 0.3f;
}  // namespace

TEST(Camouflage, ThresholdsAndLayersToldApartByValue) {
    // Noise magnitudes worked from the warped positions: (layer 1, layer 2).
    CamouflageTexture3D t;
    expectValues(t, {
        {0.3f, 0.7f, 0.1f, kLayer2},    // (0.017, 0.462)
        {-3.1f, 0.45f, 0.8f, kLayer1},  // (0.352, 0.087)
        {2.2f, 1.9f, -0.35f, kBase},    // (0.173, 0.083)
        {1.7f, 3.3f, -1.2f, kLayer1},   // (0.363, 0.363): layer 1 on top
    });
    t.setThreshold(1.0f);  // beyond the noise range
    expectValues(t, {{0.3f, 0.7f, 0.1f, kBase}, {-3.1f, 0.45f, 0.8f, kBase}});
    t.setThreshold(-0.01f);
    expectValues(t, {{0.3f, 0.7f, 0.1f, kLayer1}, {2.2f, 1.9f, -0.35f, kLayer1}});
    // Layer 1 coloured like the base lets layer 2 show through where layer 1 covers it.
    t.setLayer1Color(kBase);
    expectValues(t, {{0.3f, 0.7f, 0.1f, kLayer2}, {-3.1f, 0.45f, 0.8f, kLayer2}});
}

TEST(Camouflage, LayerTwoOffsetsAreAddedInDouble) {
    // At these points 1 + (x + 0.5) or 2 + (z + 0.5) rounds differently when
    // formed in float; each threshold lies between the two noise magnitudes
    // that result, so only the double form gives the expected side.
    struct Case {
        int flags;
        float threshold;
        PointCase at;
    };
    const Case cases[] = {
        {2, 0x1.b39aaap-4f, {0x1.99b5eap-4f, 0.3f, 0.7f, kLayer2}},  // double 0x1.b39abap-4, float 0x1.b39a9ap-4
        {2, 0x1.b39284p-4f, {0x1.99ef96p-4f, 0.3f, 0.7f, kBase}},    // double 0x1.b39276p-4, float 0x1.b39294p-4
        {2, 0x1.25e736p-2f, {0.3f, 0.2f, 0x1.9a975cp-4f, kBase}},    // double 0x1.25e732p-2, float 0x1.25e73ap-2
        {4, 0x1.1695d0p-5f, {0x1.a15012p-4f, 0.3f, 0.7f, kLayer2}},  // double 0x1.1695f6p-5, float 0x1.1695bp-5
    };
    CamouflageTexture3D t;
    t.setLayer1Color(kBase);
    for (const Case& c : cases) {
        t.setFlags(c.flags);
        t.setThreshold(c.threshold);
        expectValues(t, {c.at});
    }
}

// ---- Speckled Stone ----

TEST(SpeckledStone, PosterisedShadesOfTheNoise) {
    // floor(0.5 + nShades base^exponent) / nShades, base 0.5 + noise / 2,
    // mixed from the grain to the base colour.
    SpeckledStoneTexture3D t;
    expectValues(t, {
        {0, 0, 0, 0.125f},               // noise 0: 0.5^2 = 0.25, shade 1 of 4
        {1.0f, -2.0f, 0.04f, 0.125f},    // 1 / 0.02f rounds to 50: the lattice again
        {0.05f, 0.09f, 0.013f, 0.375f},  // noise 0.6545: shade 3
    });
    // Three shades of a cube between 0.1 and 0.9. The blend forms grain
    // (1 - t) in double: shade 2 is 0x1.444446p-1, not 0x1.444444p-1.
    t.setScale(1.0f);
    t.setNShades(3);
    t.setExponent(3);
    t.setGrainColor(0.1f);
    t.setBaseColor(0.9f);
    expectValues(t, {{2.8f, 4.4f, 0.4f, 0x1.444446p-1f}, {0.1f, 0.2f, 0.3f, 0x1.777778p-2f}, {-3.1f, 0.45f, 0.8f, 0.1f}});
}

TEST(SpeckledStone, HalfwayShadesRoundUpAndDegenerateCountsAndExponents) {
    SpeckledStoneTexture3D t;
    t.setExponent(1);  // at noise 0, nShades x 0.5 lands half-way for odd counts
    t.setNShades(1);
    expectValues(t, {{0, 0, 0, 0.5f}});
    t.setNShades(5);
    expectValues(t, {{0, 0, 0, 0.3f}});  // 3 of 5, not the even 2
    t.setNShades(4);
    t.setExponent(0);  // base^0 is 1: the top shade
    expectValues(t, {{0.05f, 0.09f, 0.013f, 0.5f}, {0, 0, 0, 0.5f}});
    t.setExponent(INT_MAX);  // every base below 1 underflows to the grain
    expectValues(t, {{0.05f, 0.09f, 0.013f, 0.0f}, {0, 0, 0, 0.0f}});
    t.setExponent(2);
    t.setNShades(-4);  // a negative count rounds the mirrored shade
    expectValues(t, {{0, 0, 0, 0.125f}});
    t.setNShades(0);
    for (int exponent : {2, 0, INT_MIN}) {
        t.setExponent(exponent);
        EXPECT_TRUE(std::isnan(valueAt(t, 0.05f, 0.09f, 0.013f))) << "exponent " << exponent;
    }
}

// ---- Cheetah ----

namespace {

constexpr float kSpot = 0.1f;
constexpr float kGround = 0.8f;

}  // namespace

TEST(Cheetah, EachSpotHasItsOwnSizeWhetherInSpaceOrThePlane) {
    // Features at the cell centres and no wobble: a ball's radius is
    // (0.75 a^2)^(1/3), a = 0.35 x (0.75 + 0.5 c) / 2 with c the cell noise
    // of its cell: 0.2527 for cell (2, 0, 0), 0.3134 for (3, 0, 0). In the
    // plane the spot is the disc of radius a.
    CheetahTexture3D t;
    t.setLayoutVariability(0.0f);
    t.setSpotVariability(0.0f);
    expectValues(t, {
        {2.748f, 0.5f, 0.5f, kSpot},
        {2.758f, 0.5f, 0.5f, kGround},
        {3.81f, 0.5f, 0.5f, kSpot},
        {3.5f, 0.5f, 0.82f, kGround},
        {3.82f, 0.5f, 0.5f, kGround},
        {1.0f, 1.0f, 1.0f, kGround},  // 0.866 from every centre
        {3.67f, 0.5f, 17.0f, kGround},
    });
    t.setFlags(12);
    expectValues(t, {{2.67f, 0.5f, 17.3f, kGround}, {3.67f, 0.5f, 17.3f, kSpot}, {1.0f, 1.0f, 0.5f, kGround}});
}

// ---- Voronoi Tiles ----

namespace {

struct Point {
    float x, y;
};

// Two neighbouring tiles at full jitter: a feature, found through the
// feature search itself, and the feature nearest to it.
struct FeaturePair {
    Point a, b;
    float gap;  // |a - b|
};
FeaturePair featuresNear(float x, float y) {
    const float p[2] = {x, y};
    float f1, f2, a[2], b[2], unused[2];
    ARMan::voronoi_f1f2_2d(p, 1.0f, f1, a, f2, unused);
    ARMan::voronoi_f1f2_2d(a, 1.0f, f1, unused, f2, b);  // at a: f1 = 0 and b is its nearest
    return {{a[0], a[1]}, {b[0], b[1]}, std::hypot(a[0] - b[0], a[1] - b[1])};
}

// The point t from the pair's midpoint towards a, on the line joining them.
Point along(const FeaturePair& f, float t) {
    return {(f.a.x + f.b.x) / 2 + t * (f.a.x - f.b.x) / f.gap, (f.a.y + f.b.y) / 2 + t * (f.a.y - f.b.y) / f.gap};
}

}  // namespace

TEST(VoronoiTile, SquareGridWithoutJitterHasGroutOnTheCellSides) {
    // Every feature on its cell centre: the bisectors are the cell sides.
    VoronoiTileTexture3D t;
    t.setCellVariability(0.0f);
    expectValues(t, {{0.5f, 0.5f, 0.0f, 0.75f}, {1.02f, 0.5f, 0.0f, 0.0f}, {1.03f, 0.5f, 0.0f, 0.75f},
                     {-0.97f, -0.5f, 0.0f, 0.75f}, {1.0f, 1.0f, 0.0f, 0.0f}});
    t.setBoundaryThickness(0.1f);
    expectValues(t, {{1.04f, 0.5f, 0.0f, 0.0f}, {1.06f, 0.5f, 0.0f, 0.75f}});
    t.setBoundaryThickness(0.0f);  // no thickness, no grout, not even on the bisector
    expectValues(t, {{1.0f, 0.5f, 0.0f, 0.75f}});
}

TEST(VoronoiTile, GroutHasOneWidthMeasuredFromTheBisector) {
    // Grout exactly where the point lies within half the thickness of the
    // bisector of its two nearest features, measured here in double.
    VoronoiTileTexture3D t;
    t.setBoundaryThickness(0.1f);
    int grout = 0, tile = 0;
    for (int i = 0; i < 100; ++i)
        for (int j = 0; j < 100; ++j) {
            const float x = -3.0f + 0.06f * static_cast<float>(i), y = 2.0f + 0.06f * static_cast<float>(j);
            const float q[2] = {x, y};
            float f1, f2, a[2], b[2];
            ARMan::voronoi_f1f2_2d(q, 1.0f, f1, a, f2, b);
            const double ux = double(b[0]) - a[0], uy = double(b[1]) - a[1];
            const double toEdge =
                ((0.5 * (double(a[0]) + b[0]) - x) * ux + (0.5 * (double(a[1]) + b[1]) - y) * uy) / std::hypot(ux, uy);
            if (std::fabs(toEdge - 0.05) < 1e-6) continue;
            expectValues(t, {{x, y, 0.0f, toEdge < 0.05 ? 0.0f : 0.75f}});
            ++(toEdge < 0.05 ? grout : tile);
        }
    EXPECT_GT(grout, 300);
    EXPECT_GT(tile, 4000);
}

TEST(VoronoiTile, RandomizedColoursAreOneClampedToneOfTheNearestFeature) {
    VoronoiTileTexture3D t;
    t.setCellRandomizeColors(true);
    const FeaturePair f = featuresNear(0.3f, 0.7f);
    const float tone = 0.4f + (0.9f - 0.4f) * CellNoise::cellNoise(f.a.x, f.a.y);
    for (float d : {0.03f, f.gap / 4, f.gap / 2}) expectValues(t, {{along(f, d).x, along(f, d).y, 0.0f, tone}});
    const Point inside = along(f, 0.1f);
    t.setCellMinColor(1.5f);
    t.setCellMaxColor(1.5f);
    expectValues(t, {{inside.x, inside.y, 0.0f, 1.0f}});
    t.setCellMinColor(-0.5f);
    t.setCellMaxColor(-0.2f);
    expectValues(t, {{inside.x, inside.y, 0.0f, 0.0f}});
}

TEST(VoronoiTile, FaceNoiseAddsAQuarterOfTheFractalSumClamped) {
    VoronoiTileTexture3D t;
    t.setCellVariability(0.0f);
    t.setCellAddNoise(true);
    t.setCellDetail(3.0f);
    t.setCellOctaves(6);
    t.setCellGain(8.0f);  // drives the tone past 1 and below 0
    int clamped = 0;
    for (int i = 0; i < 16; ++i) {
        const float x = 0.2f + 0.04f * static_cast<float>(i);
        const float c = 0.75f + 0.25f * FBM::fBM(3.0f * x, 3.0f * 0.35f, 6.0f, 2.0f, 8.0f);
        clamped += c > 1.0f || c < 0.0f;
        expectValues(t, {{x, 0.35f, 7.0f, std::clamp(c, 0.0f, 1.0f)}});
    }
    EXPECT_GT(clamped, 0);
    expectValues(t, {{1.0f, 0.5f, 0.0f, 0.0f}});  // grout stays grout
}

TEST(VoronoiTile, ANaNGroutNoiseLeavesNoGrout) {
    // Past about 128 octaves the noise position overflows and the sum is NaN.
    VoronoiTileTexture3D t;
    t.setBoundaryAddNoise(true);
    t.setBoundaryOctaves(INT_MAX);
    for (float x : {0.3f, -2.75f}) expectValues(t, {{x, 0.45f, 0.0f, 0.75f}});
}
