#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "textures/HexTileTexture3D.h"

using namespace gritwell;

// Worked by hand for the default circumradius 0.5: the hexagon with axial
// coordinates (q, r) is centred on (0.75 q, 0.8660254 (r + q/2)); its
// inradius is 0.4330127, so its edge midpoints lie 0.4330127 from the centre
// at 30, 90, 150, ... degrees, and its corners 0.5 away at 0, 60, 120, ...

namespace {

float at(HexTileTexture3D& t, float x, float y, float z = 0.0f) {
    const float p[3] = {x, y, z};
    return t(p);
}

struct Centre {
    float q, r, x, y;
};
// The origin's hexagon, its six neighbours and two further off.
const Centre kCentres[] = {
    {0, 0, 0.0f, 0.0f},          {1, 0, 0.75f, 0.4330127f},  {0, 1, 0.0f, 0.8660254f},
    {-1, 1, -0.75f, 0.4330127f}, {-1, 0, -0.75f, -0.4330127f}, {0, -1, 0.0f, -0.8660254f},
    {1, -1, 0.75f, -0.4330127f}, {40, -20, 30.0f, 0.0f},      {-3, -2, -2.25f, -3.0310888f},
};

}  // namespace

TEST(HexTile, TilesAtCentresMortarOnEdgesAndCorners) {
    HexTileTexture3D t;
    for (float z : {0.0f, -5.5f, std::numeric_limits<float>::quiet_NaN()})
        for (int flags : {2, 12}) {
            t.setFlags(flags);
            for (const Centre& c : kCentres) EXPECT_EQ(at(t, c.x, c.y, z), 0.75f) << c.q << ", " << c.r;
            expectValues(t, {
                // Edge midpoints of the origin's hexagon.
                {0.0f, 0.4330127f, z, 0.25f},
                {0.0f, -0.4330127f, z, 0.25f},
                {0.375f, 0.21650635f, z, 0.25f},
                {-0.375f, 0.21650635f, z, 0.25f},
                {0.375f, -0.21650635f, z, 0.25f},
                {-0.375f, -0.21650635f, z, 0.25f},
                // Corners.
                {0.5f, 0.0f, z, 0.25f},
                {-0.25f, 0.4330127f, z, 0.25f},
                // Between (1, 0) and (2, -1), and between (-1, 0) and (0, -1).
                {1.125f, 0.21650635f, z, 0.25f},
                {-0.375f, -0.64951905f, z, 0.25f},
                // The far hexagon (40, -20): its top edge and its right corner.
                {30.0f, 0.4330127f, z, 0.25f},
                {30.5f, 0.0f, z, 0.25f},
            });
        }
}

TEST(HexTile, MortarIsHalfTheThicknessEachSideOfAnEdge) {
    HexTileTexture3D t;
    // 0.05 wide: inside a tile up to 0.025 from its edge.
    expectValues(t, {
        {0.0f, 0.40f, 0.0f, 0.75f},    // 0.033 below the top edge
        {0.0f, 0.415f, 0.0f, 0.25f},   // 0.018 below it
        {0.0f, 0.455f, 0.0f, 0.25f},   // 0.022 into the hexagon above
        {0.0f, 0.47f, 0.0f, 0.75f},    // 0.037 into it
        {0.46f, 0.0f, 0.0f, 0.75f},    // 0.035 from both slanted edges of the corner
        {0.48f, 0.0f, 0.0f, 0.25f},    // 0.017 from them
    });
    t.setMortarThickness(0.2f);
    expectValues(t, {{0.0f, 0.40f, 0.0f, 0.25f}, {0.0f, 0.3f, 0.0f, 0.75f}});
    // Joints wider than a tile leave nothing but mortar.
    t.setMortarThickness(0.9f);
    for (const Centre& c : kCentres) EXPECT_EQ(at(t, c.x, c.y), 0.25f);
}

TEST(HexTile, TileSizeFollowsTheRadius) {
    HexTileTexture3D t;
    t.setTileRadius(2.0f);
    // Centres (3q, 3.4641016 (r + q/2)), inradius 1.7320508.
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.75f},
        {0.75f, 0.4330127f, 0.0f, 0.75f},   // a centre at radius 0.5, inside now
        {0.0f, 1.7320508f, 0.0f, 0.25f},
        {1.5f, 0.8660254f, 0.0f, 0.25f},
        {3.0f, 1.7320508f, 0.0f, 0.75f},    // centre of (1, 0)
        {2.0f, 0.0f, 0.0f, 0.25f},          // corner
    });
}

TEST(HexTile, RandomTonesAreOnePerTileAndDifferBetweenNeighbours) {
    HexTileTexture3D t;
    t.setRandomizeColors(true);
    t.setMinColor(0.2f);
    t.setMaxColor(0.6f);
    std::vector<float> tones;
    for (const Centre& c : kCentres) {
        const float tone = 0.2f + (0.6f - 0.2f) * CellNoise::cellNoise(c.q, c.r);
        // The same tone across the tile, not just at its centre.
        for (auto [dx, dy] : {std::pair{0.0f, 0.0f}, {0.3f, 0.1f}, {-0.2f, -0.35f}, {0.0f, 0.39f},
                              {-0.41f, 0.0f}, {0.15f, -0.3f}})
            EXPECT_EQ(at(t, c.x + dx, c.y + dy), tone) << c.q << ", " << c.r << " + " << dx << ", " << dy;
        tones.push_back(tone);
    }
    for (std::size_t i = 0; i < tones.size(); ++i)
        for (std::size_t j = i + 1; j < tones.size(); ++j) EXPECT_NE(tones[i], tones[j]) << i << " " << j;
    // The joints keep the mortar colour.
    expectValues(t, {{0.0f, 0.4330127f, 0.0f, 0.25f}, {0.5f, 0.0f, 0.0f, 0.25f}});
}

TEST(HexTile, NoPositiveRadiusGivesMortarEverywhere) {
    HexTileTexture3D t;
    t.setRandomizeColors(true);
    for (float radius : {0.0f, -0.0f, -0.5f, -1e30f, std::numeric_limits<float>::quiet_NaN()}) {
        t.setTileRadius(radius);
        t.setMortarThickness(0.0f);
        for (const Centre& c : kCentres) EXPECT_EQ(at(t, c.x, c.y), 0.25f) << "radius " << radius;
        EXPECT_EQ(at(t, 1e30f, -1e30f), 0.25f);
    }
}

TEST(HexTile, DamagedRecordsAndPointsGiveAValue) {
    HexTileTexture3D t;
    const float inf = std::numeric_limits<float>::infinity();
    // Tiny and infinite radii push the axial coordinates to infinity or the
    // centre to NaN: some value, and never a crash.
    for (float radius : {1e-45f, 1e-30f, inf})
        for (float x : {0.0f, 0.3f, -1e30f, inf}) {
            t.setTileRadius(radius);
            const float v = at(t, x, 0.25f);
            EXPECT_TRUE(v == 0.25f || v == 0.75f) << radius << " at " << x;
        }
    // A huge radius holds everything near the origin in its one tile.
    t.setTileRadius(1e30f);
    EXPECT_EQ(at(t, 123.0f, -45.0f), 0.75f);
}

TEST(HexTile, RecordLayoutAndVersionRule) {
    HexTileTexture3D t;
    unsigned char record[64];
    t.getDescription(reinterpret_cast<char*>(record));
    EXPECT_EQ(record[0], 64);
    EXPECT_STREQ(reinterpret_cast<const char*>(record + 1), "HexTile");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    auto floatAt = [&](int offset) {
        float v;
        std::memcpy(&v, record + offset, 4);
        return v;
    };
    EXPECT_EQ(floatAt(36), 0.75f);
    EXPECT_EQ(floatAt(40), 0.25f);
    EXPECT_EQ(floatAt(44), 0.5f);
    EXPECT_EQ(floatAt(48), 0.05f);
    EXPECT_EQ(record[52], 0);
    EXPECT_EQ(floatAt(56), 0.5f);
    EXPECT_EQ(floatAt(60), 1.0f);

    // Any non-zero byte reads as true; the setter writes 1.
    record[52] = 0x80;
    t.setStateFromDescription(reinterpret_cast<const char*>(record));
    EXPECT_TRUE(t.getRandomizeColors());
    t.setRandomizeColors(true);
    EXPECT_EQ(t.record().randomizeColors, 1);

    // Records of another version are ignored.
    HexTileTexture3D other;
    other.setTileRadius(3.0f);
    other.getDescription(reinterpret_cast<char*>(record));
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{1, 1}, std::pair{-128, 0}}) {
        record[33] = static_cast<unsigned char>(major);
        record[34] = static_cast<unsigned char>(minor);
        t.setStateFromDescription(reinterpret_cast<const char*>(record));
        EXPECT_EQ(t.getTileRadius(), 0.5f);
    }
    record[33] = 1;
    record[34] = 0;
    t.setStateFromDescription(reinterpret_cast<const char*>(record));
    EXPECT_EQ(t.getTileRadius(), 3.0f);
}
