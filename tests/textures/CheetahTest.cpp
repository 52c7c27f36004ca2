#include <cmath>
#include <cstring>
#include <utility>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "textures/CheetahTexture3D.h"

using namespace gritwell;

namespace {

constexpr float kSpot = 0.1f;
constexpr float kGround = 0.8f;

struct Nearest {
    float f1;
    float pos[3];
};

Nearest nearest3d(float x, float y, float z, float jitter) {
    const float p[3] = {x, y, z};
    Nearest n{};
    float f2, pos2[3];
    ARMan::voronoi_f1f2_3d(p, jitter, n.f1, n.pos, f2, pos2);
    return n;
}

Nearest nearest2d(float x, float y, float jitter) {
    const float p[2] = {x, y};
    Nearest n{};
    float f2, pos2[2];
    ARMan::voronoi_f1f2_2d(p, jitter, n.f1, n.pos, f2, pos2);
    return n;
}

float at(CheetahTexture3D& t, float x, float y, float z) {
    const float p[3] = {x, y, z};
    return t(p);
}

}  // namespace

TEST(Cheetah, SpotsSitOnTheFeaturesAndNotBetweenThem) {
    // At its defaults a spot's radius is at most 0.35 x 1.25 / 2 = 0.219, and
    // the edge wobble at most about 0.1 either way.
    CheetahTexture3D t;
    int between = 0;
    for (float x = -3.9f; x < 4.0f; x += 0.37f)
        for (float y = -2.8f; y < 3.0f; y += 0.41f) {
            const float z = 0.5f * x - 0.3f * y;
            const Nearest n = nearest3d(x, y, z, 0.75f);
            EXPECT_EQ(at(t, n.pos[0], n.pos[1], n.pos[2]), kSpot) << x << ", " << y;
            if (n.f1 > 0.35f) {
                EXPECT_EQ(at(t, x, y, z), kGround) << x << ", " << y;
                ++between;
            }
        }
    EXPECT_GT(between, 20);
}

TEST(Cheetah, EachSpotHasItsOwnSize) {
    // Features at the cell centres and no wobble: a spot's radius is
    // 0.35 x (0.75 + 0.5 c) / 2 with c the cell noise of its cell, worked
    // out for the cells (2, 0, 0) (0.14670) and (3, 0, 0) (0.20250).
    CheetahTexture3D t;
    t.setLayoutVariability(0.0f);
    t.setSpotVariability(0.0f);
    expectValues(t, {
        {2.5f, 0.5f, 0.5f, kSpot},
        {2.64f, 0.5f, 0.5f, kSpot},
        {2.67f, 0.5f, 0.5f, kGround},
        {3.67f, 0.5f, 0.5f, kSpot},
        {3.5f, 0.33f, 0.5f, kSpot},
        {3.5f, 0.5f, 0.71f, kGround},
        {3.71f, 0.5f, 0.5f, kGround},
        {1.0f, 1.0f, 1.0f, kGround},  // 0.866 from every centre
    });
}

TEST(Cheetah, ASpotKeepsItsSizeAcrossACellFace) {
    // The size is drawn from the feature's own cell, so a spot reaching over a
    // cell face is round on both sides of it.
    CheetahTexture3D t;
    t.setLayoutVariability(1.0f);
    t.setSpotVariability(0.0f);
    bool checked = false;
    for (int cell = -40; cell < 40 && !checked; ++cell) {
        const Nearest f = nearest3d(static_cast<float>(cell) + 0.5f, 0.5f, 0.5f, 1.0f);
        const float faceX = std::floor(f.pos[0]) + 1.0f;
        if (faceX - f.pos[0] > 0.07f) continue;
        const float own = CellNoise::cellNoise(f.pos[0], f.pos[1], f.pos[2]);
        const float across = CellNoise::cellNoise(faceX + 0.5f, f.pos[1], f.pos[2]);
        if (std::abs(own - across) < 0.1f) continue;
        const float radius = 0.5f * 0.35f * (0.75f + 0.5f * own);
        for (auto [offset, expected] : {std::pair{radius - 0.002f, kSpot}, std::pair{radius + 0.002f, kGround}})
            for (float side : {-1.0f, 1.0f}) {
                const float x = f.pos[0] + side * offset;
                const Nearest n = nearest3d(x, f.pos[1], f.pos[2], 1.0f);
                if (n.pos[0] != f.pos[0] || n.pos[1] != f.pos[1]) continue;  // another spot is nearer
                EXPECT_EQ(at(t, x, f.pos[1], f.pos[2]), expected) << "cell " << cell << " side " << side;
                checked = checked || side > 0.0f;
            }
    }
    EXPECT_TRUE(checked);
}

TEST(Cheetah, SpotEdgesWobble) {
    // Around the spot of cell (3, 0, 0), radius 0.2025: without wobble a ring
    // just outside is all ground and one just inside all spot; at full spot
    // variability each ring holds both.
    CheetahTexture3D t;
    t.setLayoutVariability(0.0f);
    auto ringCounts = [&](float radius) {
        int spots = 0, ground = 0;
        for (int k = 0; k < 64; ++k) {
            const float a = static_cast<float>(k) * 0.09817477f;
            (at(t, 3.5f + radius * std::cos(a), 0.5f + radius * std::sin(a), 0.5f) == kSpot ? spots : ground)++;
        }
        return std::pair{spots, ground};
    };
    t.setSpotVariability(0.0f);
    EXPECT_EQ(ringCounts(0.23f), std::pair(0, 64));
    EXPECT_EQ(ringCounts(0.17f), std::pair(64, 0));
    t.setSpotVariability(1.0f);
    for (float radius : {0.23f, 0.17f}) {
        const auto [spots, ground] = ringCounts(radius);
        EXPECT_GT(spots, 0) << radius;
        EXPECT_GT(ground, 0) << radius;
    }
}

TEST(Cheetah, PlanarModeIgnoresZ) {
    CheetahTexture3D t;
    for (int flags : {4, 8, 12}) {
        t.setFlags(flags);
        // Spots on the 2-D features, whatever z.
        for (float x = -2.3f; x < 2.5f; x += 0.61f) {
            const Nearest n = nearest2d(x, 0.25f * x + 0.1f, 0.75f);
            for (float z : {0.0f, -3.7f, 11.2f, 1e30f})
                EXPECT_EQ(at(t, n.pos[0], n.pos[1], z), kSpot) << flags << " " << x << " " << z;
        }
        // The worked sizes of cells (2, 0) and (3, 0) hold at every height,
        // where the solid spots of the 3-D search would not reach.
        t.setLayoutVariability(0.0f);
        t.setSpotVariability(0.0f);
        for (float z : {0.5f, 17.3f, -5.0f})
            expectValues(t, {{2.67f, 0.5f, z, kGround}, {3.67f, 0.5f, z, kSpot}, {1.0f, 1.0f, z, kGround}});
        t.setLayoutVariability(0.75f);
        t.setSpotVariability(0.5f);
    }
    t.setFlags(2);
    t.setLayoutVariability(0.0f);
    t.setSpotVariability(0.0f);
    expectValues(t, {{3.67f, 0.5f, 17.3f, kGround}});
}

TEST(Cheetah, RecordLayoutAndVersionRule) {
    static_assert(sizeof(CheetahTexture3D::Record) == 48);
    CheetahTexture3D t;
    char record[48];
    t.getDescription(record);
    EXPECT_EQ(record[0], 48);
    EXPECT_STREQ(record + 1, "Cheetah");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    float fields[3];
    std::memcpy(fields, record + 36, sizeof fields);
    EXPECT_EQ(fields[0], 0.35f);
    EXPECT_EQ(fields[1], 0.75f);
    EXPECT_EQ(fields[2], 0.5f);

    CheetahTexture3D other;
    other.setSpotSize(0.6f);
    other.setLayoutVariability(0.2f);
    other.setSpotVariability(0.9f);
    other.getDescription(record);
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{1, 1}, std::pair{-1, 0}}) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        t.setStateFromDescription(record);
        EXPECT_EQ(t.getSpotSize(), 0.35f);
        EXPECT_EQ(t.getLayoutVariability(), 0.75f);
        EXPECT_EQ(t.getSpotVariability(), 0.5f);
    }
    record[33] = 1;
    record[34] = 0;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getSpotSize(), 0.6f);
    EXPECT_EQ(t.getLayoutVariability(), 0.2f);
    EXPECT_EQ(t.getSpotVariability(), 0.9f);
}
