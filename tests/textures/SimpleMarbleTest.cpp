#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/Perlin.h"
#include "textures/SimpleMarbleTexture3D.h"

using namespace gritwell;

namespace {

// The four marble tones, each the luminance of (a, a, b) in double rounded
// to float, worked out once in a float32 model.
constexpr float kPale = 0x1.7846b0p-1f;  // 0.734914303, knots 0, 1, 5, 6, 11
constexpr float kMid = 0x1.4ed19ap-2f;   // 0.326971442, knots 2, 3, 4
constexpr float kDark = 0x1.7d4a72p-3f;  // 0.186177149, knots 7, 8
constexpr float kDeep = 0x1.eeba02p-4f;  // 0.12078286,  knots 9, 10, 12
// A zero sum sits halfway between knots 8 and 9.
constexpr float kZeroSum = 0x1.3a53b8p-3f;  // 0.153479993

constexpr float kRamp[14] = {kPale, kPale, kMid, kMid, kMid, kPale, kPale,
                             kDark, kDark, kDeep, kDeep, kPale, kDeep, 0.0f};

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

float luminance(double a, double b) { return static_cast<float>((a * 0.2126 + 0.7152 * a) + 0.0722 * b); }

bool sameBits(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

TEST(SimpleMarble, TheFourTonesAreLuminancesOfBluishGreys) {
    EXPECT_EQ(luminance(0.71428573f, 1.0f), kPale);
    EXPECT_EQ(luminance(0.2857143f, 0.85714287f), kMid);
    EXPECT_EQ(luminance(0.14285715f, 0.74285716f), kDark);
    EXPECT_EQ(luminance(0.08571429f, 0.5714286f), kDeep);
    // The test's own ramp against sums worked out in the float32 model.
    EXPECT_EQ(ramp(0.0f), kZeroSum);
    EXPECT_EQ(ramp(0.05f), 0x1.40c49cp-4f);
    EXPECT_EQ(ramp(-0.1f), 0x1.d7994cp-2f);
    EXPECT_EQ(ramp(-0.3f), 0x1.34b5dcp-2f);
}

TEST(SimpleMarble, NoOctavesGiveTheValueBetweenKnotsEightAndNine) {
    SimpleMarbleTexture3D t;
    for (int octaves : {0, -1, -2147483647 - 1}) {
        t.setOctaves(octaves);
        for (int flags : {2, 4}) {
            t.setFlags(flags);
            expectValues(t, {{0.3f, -1.7f, 2.2f, kZeroSum}, {0, 0, 0, kZeroSum}, {41.5f, 9.25f, -3.0f, kZeroSum}});
        }
    }
}

TEST(SimpleMarble, OctavesStepTheFrequencyBy217InDouble) {
    SimpleMarbleTexture3D t;
    t.setTextureScale(1.0f);
    // 2.17 and 2.17 x 2.17 as the double product rounds them; the float
    // product would give 0x1.2d5ea0p+2 for the third.
    const float f[3] = {1.0f, 0x1.15c290p+1f, 0x1.2d5e9ep+2f};
    for (const PointCase& p : {PointCase{0.37f, -1.3f, 2.9f, 0}, PointCase{5.1f, 0.2f, -0.7f, 0},
                               PointCase{-0.61f, 0.44f, 0.05f, 0}}) {
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
    // The texture scale multiplies the point before the first octave.
    t.setTextureScale(2.5f);
    t.setOctaves(1);
    t.setFlags(2);
    expectValues(t, {{0.4f, 0.3f, -0.2f, ramp(Perlin::noise(2.5f * 0.4f, 2.5f * 0.3f, 2.5f * -0.2f))}});
}

TEST(SimpleMarble, EverySegmentOfTheRampAndThePaleEnds) {
    // One octave at scale 1: the value is the ramp at the noise itself. Sums
    // of 0.125 or more read knot 11, -0.375 or less knot 1: both pale.
    SimpleMarbleTexture3D t;
    t.setOctaves(1);
    t.setTextureScale(1.0f);
    int segments[11] = {}, high = 0, low = 0;
    for (float x = 0.05f; x < 4.0f; x += 0.13f)
        for (float y = 0.07f; y < 4.0f; y += 0.17f) {
            const float n = Perlin::noise(x, y, 0.31f);
            expectValues(t, {{x, y, 0.31f, ramp(n)}});
            if (n >= 0.125f || n <= -0.375f) {
                (n > 0 ? high : low) += 1;
                expectValues(t, {{x, y, 0.31f, kPale}});
            } else {
                segments[static_cast<int>(10.0f * (0.75f + 2.0f * n))] += 1;
            }
        }
    EXPECT_GT(high, 10);
    EXPECT_GT(low, 10);
    for (int i = 0; i < 10; ++i) EXPECT_GT(segments[i], 0) << "segment " << i;
}

TEST(SimpleMarble, PlanarModeIgnoresZ) {
    SimpleMarbleTexture3D t;
    bool dependsOnZ = false;
    for (int flags : {2, 4, 8, 12}) {
        t.setFlags(flags);
        for (float x = -1.0f; x < 1.0f; x += 0.29f)
            for (float y = -1.0f; y < 1.0f; y += 0.31f) {
                const float a[3] = {x, y, 0.13f}, b[3] = {x, y, -2.71f};
                if (flags == 2) dependsOnZ |= t(a) != t(b);
                else EXPECT_EQ(t(a), t(b));
            }
    }
    EXPECT_TRUE(dependsOnZ);
}

TEST(SimpleMarble, HugeOctaveCountsEndOnceTheFrequencyOverflows) {
    // The frequency overflows after 115 steps; from then on nothing changes,
    // so any larger count gives the same bits, and quickly.
    SimpleMarbleTexture3D many, all;
    many.setOctaves(130);
    all.setOctaves(2147483647);
    for (int flags : {2, 4})
        for (float x : {0.3f, -2.2f, 0.0f}) {
            many.setFlags(flags);
            all.setFlags(flags);
            const float p[3] = {x, 0.7f, -0.45f};
            EXPECT_TRUE(sameBits(many(p), all(p))) << x;
        }
}

TEST(SimpleMarble, RecordLayoutAndVersionRule) {
    SimpleMarbleTexture3D t;
    char record[44];
    t.getDescription(record);
    EXPECT_EQ(record[0], 44);
    EXPECT_STREQ(record + 1, "Simple Marble");
    EXPECT_EQ(record[33], 2);
    EXPECT_EQ(record[34], 0);
    EXPECT_EQ(record[35], 1);
    std::int32_t octaves;
    float scale;
    std::memcpy(&octaves, record + 36, 4);
    std::memcpy(&scale, record + 40, 4);
    EXPECT_EQ(octaves, 4);
    EXPECT_EQ(scale, 2.5f);

    SimpleMarbleTexture3D other;
    other.setOctaves(7);
    other.setTextureScale(0.5f);
    other.getDescription(record);
    record[33] = 1;  // a 1.0 record is not converted
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getOctaves(), 4);
    EXPECT_EQ(t.getTextureScale(), 2.5f);
    record[33] = 2;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getOctaves(), 7);
    EXPECT_EQ(t.getTextureScale(), 0.5f);
}
