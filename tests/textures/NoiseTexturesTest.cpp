// The generators that show a gradient noise directly: Perlin Noise, FBM,
// Turbulence and Simplex.

#include <cmath>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/Perlin.h"
#include "textures/FBMTexture3D.h"
#include "textures/PerlinTexture3D.h"
#include "textures/SimplexTexture3D.h"
#include "textures/TurbulenceTexture3D.h"

using namespace gritwell;

namespace {
// Points at which the scaled position, and every octave's, is a lattice point.
const PointCase kLattice[] = {{0.25f, 0.5f, 0.75f, 0}, {-1.0f, 2.25f, -0.5f, 0}, {0, 0, 0, 0}};

template <class T>
void expectEverywhere(T& t, float expected) {
    for (const PointCase& c : kLattice) expectValues(t, {{c.x, c.y, c.z, expected}});
    expectValues(t, {{0.37f, -1.3f, 2.9f, expected}, {5.1f, 0.2f, -0.7f, expected}});
}

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

TEST(NoiseTextures, ZeroOctavesGiveTheMidToneOrBlack) {
    PerlinTexture3D perlin;
    perlin.setOctaves(0);
    expectEverywhere(perlin, 0.5f);
    FBMTexture3D fbm;
    fbm.setOctaves(0);
    expectEverywhere(fbm, 0.5f);
    TurbulenceTexture3D turbulence;
    turbulence.setOctaves(0);
    expectEverywhere(turbulence, 0.0f);
}

TEST(NoiseTextures, LatticePointsAreTheMidToneOrBlack) {
    PerlinTexture3D perlin;
    FBMTexture3D fbm;
    TurbulenceTexture3D turbulence;
    for (const PointCase& c : kLattice) {
        expectValues(perlin, {{c.x, c.y, c.z, 0.5f}});
        expectValues(fbm, {{c.x, c.y, c.z, 0.5f}});
        expectValues(turbulence, {{c.x, c.y, c.z, 0.0f}});
    }
}

TEST(NoiseTextures, PerlinRemapsTheOctaveSumInDouble) {
    PerlinTexture3D t;
    const float p[3] = {0.37f, -1.3f, 2.9f};
    const float n = Perlin::Get(p[0], p[1], p[2], 4, 4.0f, 1.0f);
    EXPECT_EQ(t(p), static_cast<float>((n + 1.0) / 2.0));
    t.setFlags(8);
    EXPECT_EQ(t(p), static_cast<float>((Perlin::Get(p[0], p[1], 4, 4.0f, 1.0f) + 1.0) / 2.0));
}

TEST(NoiseTextures, PerlinWithAmplitudeFourSaturatesByClamping) {
    PerlinTexture3D t;
    t.setAmplitude(4.0f);
    int black = 0, white = 0, total = 0;
    for (float x = 0.01f; x < 3.0f; x += 0.07f)
        for (float y = 0.02f; y < 3.0f; y += 0.09f) {
            const float p[3] = {x, y, 0.41f};
            const float v = t(p);
            black += v == 0.0f;
            white += v == 1.0f;
            ++total;
        }
    EXPECT_GT(black, total / 10);
    EXPECT_GT(white, total / 10);
}

TEST(NoiseTextures, PlanarModeIgnoresZ) {
    PerlinTexture3D perlin;
    FBMTexture3D fbm;
    TurbulenceTexture3D turbulence;
    SimplexTexture3D simplex;
    for (Texture3D* t : std::initializer_list<Texture3D*>{&perlin, &fbm, &turbulence, &simplex}) {
        EXPECT_TRUE(dependsOnZ(*t));
        t->setFlags(4);
        EXPECT_FALSE(dependsOnZ(*t));
        t->setFlags(8);
        EXPECT_FALSE(dependsOnZ(*t));
    }
}

TEST(NoiseTextures, SimplexShowsTheScaledSimplexNoise) {
    SimplexTexture3D t;
    t.setScale(2.0f);
    const float p[3] = {0.3f, -0.45f, 1.2f};
    EXPECT_EQ(t(p), std::clamp(static_cast<float>(0.5 + Perlin::snoise(0.6f, -0.9f, 2.4f) / 2.0), 0.0f, 1.0f));
    t.setFlags(12);
    EXPECT_EQ(t(p), std::clamp(static_cast<float>(0.5 + Perlin::snoise(0.6f, -0.9f) / 2.0), 0.0f, 1.0f));
}
