#include <cmath>
#include <cstring>
#include <tuple>
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

// In space features spread 1 - (1 - v)^3 of a cell for a layout
// variability v, and a spot of the plane's radius a is a ball of radius
// (0.75 a^2)^(1/3).
float solidJitter(float v) { return 1.0f - (1.0f - v) * (1.0f - v) * (1.0f - v); }

Nearest nearest3d(float x, float y, float z, float layoutVariability) {
    const float p[3] = {x, y, z};
    Nearest n{};
    ARMan::voronoi_f1_3d(p, solidJitter(layoutVariability), n.f1, n.pos);
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
    // At its defaults a ball's radius is at most (0.75 x 0.219^2)^(1/3) =
    // 0.332, and the edge wobble at most about 0.1 either way.
    CheetahTexture3D t;
    int between = 0;
    for (float x = -3.9f; x < 4.0f; x += 0.37f)
        for (float y = -2.8f; y < 3.0f; y += 0.41f) {
            const float z = 0.5f * x - 0.3f * y;
            const Nearest n = nearest3d(x, y, z, 0.75f);
            EXPECT_EQ(at(t, n.pos[0], n.pos[1], n.pos[2]), kSpot) << x << ", " << y;
            if (n.f1 > 0.45f) {
                EXPECT_EQ(at(t, x, y, z), kGround) << x << ", " << y;
                ++between;
            }
        }
    EXPECT_GT(between, 20);
}

TEST(Cheetah, EverySliceOfTheSolidLooksLikeThePlane) {
    // The share of spot and where spots sit, on slices at several heights and
    // one at an angle, against the plane's: the same coverage within 30%,
    // and spots as often near a whole-number y as elsewhere (a fifth of them
    // within 0.1 of one, were they spread evenly), not lined up in rows.
    CheetahTexture3D t;
    struct Slice {
        float share, nearWholeY;
    };
    const auto slice = [&](auto point) {
        constexpr int kSide = 200;
        int spots = 0, nearWhole = 0;
        for (int i = 0; i < kSide; ++i)
            for (int j = 0; j < kSide; ++j) {
                const float u = 0.15f * (static_cast<float>(i) + 0.5f), v = 0.15f * (static_cast<float>(j) + 0.5f);
                const auto [x, y, z] = point(u, v);
                if (at(t, x, y, z) != kSpot) continue;
                ++spots;
                const float fy = v - std::floor(v);
                if (fy < 0.1f || fy > 0.9f) ++nearWhole;
            }
        return Slice{static_cast<float>(spots) / (kSide * kSide), static_cast<float>(nearWhole) / spots};
    };
    t.setFlags(12);
    const Slice plane = slice([](float u, float v) { return std::tuple{u, v, 0.0f}; });
    EXPECT_NEAR(plane.share, 0.10f, 0.02f);
    t.setFlags(2);
    for (const float z : {0.0f, 0.1f, 0.25f, 0.5f, 1.0f, -7.3f}) {
        const Slice s = slice([z](float u, float v) { return std::tuple{u, v, z}; });
        EXPECT_NEAR(s.share, plane.share, 0.3f * plane.share) << "z = " << z;
        EXPECT_GT(s.nearWholeY, 0.14f) << "z = " << z;
    }
    const Slice tilted = slice([](float u, float v) { return std::tuple{0.6f * u, v, 0.8f * u + 0.5f}; });
    EXPECT_NEAR(tilted.share, plane.share, 0.3f * plane.share);
}

TEST(Cheetah, EachSpotHasItsOwnSize) {
    // Features at the cell centres and no wobble: a ball's radius is
    // (0.75 a^2)^(1/3), a = 0.35 x (0.75 + 0.5 c) / 2 with c the cell noise of
    // its cell, worked out for the cells (2, 0, 0) (a 0.14670, radius 0.2527)
    // and (3, 0, 0) (a 0.20250, radius 0.3134).
    CheetahTexture3D t;
    t.setLayoutVariability(0.0f);
    t.setSpotVariability(0.0f);
    expectValues(t, {
        {2.5f, 0.5f, 0.5f, kSpot},
        {2.748f, 0.5f, 0.5f, kSpot},
        {2.758f, 0.5f, 0.5f, kGround},
        {3.81f, 0.5f, 0.5f, kSpot},
        {3.5f, 0.2f, 0.5f, kSpot},
        {3.5f, 0.5f, 0.82f, kGround},
        {3.82f, 0.5f, 0.5f, kGround},
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
        if (faceX - f.pos[0] > 0.1f) continue;
        const float own = CellNoise::cellNoise(f.pos[0], f.pos[1], f.pos[2]);
        const float across = CellNoise::cellNoise(faceX + 0.5f, f.pos[1], f.pos[2]);
        if (std::abs(own - across) < 0.1f) continue;
        const float a = 0.5f * 0.35f * (0.75f + 0.5f * own);
        const float radius = std::cbrt(0.75f * a * a);
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
    // Around the spot of cell (3, 0, 0), radius 0.3134: without wobble a ring
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
    EXPECT_EQ(ringCounts(0.345f), std::pair(0, 64));
    EXPECT_EQ(ringCounts(0.285f), std::pair(64, 0));
    t.setSpotVariability(1.0f);
    for (float radius : {0.345f, 0.285f}) {
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
    expectValues(t, {{3.67f, 0.5f, 17.0f, kGround}});
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
