#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "noise/Perlin.h"
#include "textures/PsychedelicTexture3D.h"

using namespace gritwell;

namespace {
const PointCase kPoints[] = {{0.37f, -1.3f, 2.9f, 0}, {5.1f, 0.2f, -0.7f, 0}, {-0.61f, 0.44f, 0.05f, 0},
                             {2.0f, 3.0f, -1.0f, 0}};
}  // namespace

TEST(Psychedelic, CellNoiseOfTheNoiseWarpedPoint) {
    PsychedelicTexture3D t;
    t.setFrequency(1.5f);
    t.setMinColor(0.2f);
    t.setMaxColor(0.7f);
    for (const PointCase& c : kPoints) {
        // The second warp samples the noise one unit along x.
        const float u = 1.5f * Perlin::noise(c.x, c.y, c.z) + c.x;
        const float v = 1.5f * Perlin::noise(c.x + 1.0f, c.y, c.z) + c.y;
        const float n = CellNoise::cellNoise(1.5f * u, 1.5f * v);
        t.setFlags(2);
        expectValues(t, {{c.x, c.y, c.z, 0.5f * n + 0.2f}});

        const float pu = 1.5f * Perlin::noise(c.x, c.y) + c.x;
        const float pv = 1.5f * Perlin::noise(c.x + 1.0f, c.y) + c.y;
        const float pn = CellNoise::cellNoise(1.5f * pu, 1.5f * pv);
        t.setFlags(4);
        expectValues(t, {{c.x, c.y, c.z, 0.5f * pn + 0.2f}, {c.x, c.y, -7.25f, 0.5f * pn + 0.2f}});
    }
    // On the lattice both noises vanish: the cell of (f x, f y) itself.
    t.setFlags(2);
    expectValues(t, {{2.0f, -3.0f, 1.0f, 0.5f * CellNoise::cellNoise(3.0f, -4.5f) + 0.2f}});
}

TEST(Psychedelic, FrequencyZeroIsOneIntensityEverywhere) {
    PsychedelicTexture3D t;
    t.setFrequency(0.0f);
    const float expected = CellNoise::cellNoise(0.0f, 0.0f);
    for (int flags : {2, 12}) {
        t.setFlags(flags);
        for (const PointCase& c : kPoints) expectValues(t, {{c.x, c.y, c.z, expected}});
        expectValues(t, {{-40.5f, 17.2f, 3.3f, expected}});
    }
}

TEST(Psychedelic, ColoursMapTheCellValueAndTheResultIsClamped) {
    PsychedelicTexture3D plain, inverted, wide;
    inverted.setMinColor(1.0f);
    inverted.setMaxColor(0.0f);
    wide.setMinColor(-1.0f);
    wide.setMaxColor(2.0f);
    int black = 0, white = 0;
    for (float x = -2.0f; x < 2.0f; x += 0.23f)
        for (float y = -2.0f; y < 2.0f; y += 0.19f) {
            const float p[3] = {x, y, 0.4f};
            const float n = plain(p);
            EXPECT_EQ(inverted(p), -1.0f * n + 1.0f);
            const float w = wide(p);
            EXPECT_EQ(w, std::fmin(1.0f, std::fmax(0.0f, 3.0f * n + -1.0f)));
            black += w == 0.0f;
            white += w == 1.0f;
        }
    EXPECT_GT(black, 0);
    EXPECT_GT(white, 0);

    // A NaN intensity fails the high bound's test and comes out white.
    PsychedelicTexture3D broken;
    broken.setMinColor(std::numeric_limits<float>::quiet_NaN());
    expectValues(broken, {{0.3f, 0.6f, 0.9f, 1.0f}});
}

TEST(Psychedelic, PlanarModeIgnoresZ) {
    PsychedelicTexture3D t;
    bool dependsOnZ = false;
    for (int flags : {2, 4, 8}) {
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

TEST(Psychedelic, RecordLayoutAndVersionRule) {
    PsychedelicTexture3D t;
    char record[48];
    t.getDescription(record);
    EXPECT_EQ(record[0], 48);
    EXPECT_STREQ(record + 1, "Psychedelic");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    EXPECT_EQ(record[35], 1);
    const float defaults[3] = {1.0f, 0.0f, 1.0f};  // frequency, minColor, maxColor
    EXPECT_EQ(std::memcmp(record + 36, defaults, sizeof defaults), 0);

    PsychedelicTexture3D other;
    other.setFrequency(3.0f);
    other.setMinColor(0.25f);
    other.setMaxColor(0.5f);
    other.getDescription(record);
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{0, 5}}) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        t.setStateFromDescription(record);
        EXPECT_EQ(t.getFrequency(), 1.0f);
        EXPECT_EQ(t.getMinColor(), 0.0f);
        EXPECT_EQ(t.getMaxColor(), 1.0f);
    }
    record[33] = 1;
    record[34] = 0;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getFrequency(), 3.0f);
    EXPECT_EQ(t.getMinColor(), 0.25f);
    EXPECT_EQ(t.getMaxColor(), 0.5f);
}
