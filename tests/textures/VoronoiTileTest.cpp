#include <bit>
#include <climits>
#include <cstdint>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "textures/VoronoiTileTexture3D.h"

using namespace gritwell;

namespace {

float at(VoronoiTileTexture3D& t, float x, float y, float z = 0.0f) {
    const float p[3] = {x, y, z};
    return t(p);
}

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

// The point t from the midpoint of the pair towards a, on the line joining
// them: (f2 - f1) / 2 there is t itself.
Point along(const FeaturePair& f, float t) {
    const float ux = (f.a.x - f.b.x) / f.gap;
    const float uy = (f.a.y - f.b.y) / f.gap;
    return {(f.a.x + f.b.x) / 2 + t * ux, (f.a.y + f.b.y) / 2 + t * uy};
}

// Whether the two nearest features seen from p are the pair's.
bool nearestAre(const FeaturePair& f, Point p) {
    const float q[2] = {p.x, p.y};
    float f1, f2, n1[2], n2[2];
    ARMan::voronoi_f1f2_2d(q, 1.0f, f1, n1, f2, n2);
    auto same = [](const float* n, Point c) { return n[0] == c.x && n[1] == c.y; };
    return (same(n1, f.a) && same(n2, f.b)) || (same(n1, f.b) && same(n2, f.a));
}

const float kSeeds[][2] = {{0.3f, 0.7f}, {2.6f, -1.2f}, {-3.4f, 5.1f}, {7.7f, 7.2f}, {-6.1f, -2.9f}};

}  // namespace

TEST(VoronoiTile, SquareGridWithoutJitterHasGroutOnTheCellSides) {
    // No jitter: every feature on its cell centre (i + 0.5, j + 0.5), so the
    // bisectors are the cell sides and along y = 0.5 the edge distance is
    // the distance to x = 1 (or x = -1).
    VoronoiTileTexture3D t;
    t.setCellVariability(0.0f);
    for (float z : {0.0f, 9.5f, -1e30f})
        expectValues(t, {
            {0.5f, 0.5f, z, 0.75f},
            {1.0f, 0.5f, z, 0.0f},
            {1.02f, 0.5f, z, 0.0f},    // 0.02 from the side: within half of 0.05
            {0.98f, 0.5f, z, 0.0f},
            {1.03f, 0.5f, z, 0.75f},   // 0.03 from it
            {0.97f, 0.5f, z, 0.75f},
            {-1.0f, -0.5f, z, 0.0f},
            {-0.97f, -0.5f, z, 0.75f},
            {1.0f, 1.0f, z, 0.0f},     // where four tiles meet
            {-0.5f, 3.5f, z, 0.75f},
        });
    t.setBoundaryThickness(0.1f);
    expectValues(t, {{1.04f, 0.5f, 0.0f, 0.0f}, {1.06f, 0.5f, 0.0f, 0.75f}});
    // No thickness, no grout: not even on the bisector, where e is exactly 0.
    t.setBoundaryThickness(0.0f);
    expectValues(t, {{1.0f, 0.5f, 0.0f, 0.75f}, {1.001f, 0.5f, 0.0f, 0.75f}});
}

TEST(VoronoiTile, GroutOnTheBisectorOfTwoFeaturesAndNotAtAFeature) {
    VoronoiTileTexture3D t;
    for (const auto& seed : kSeeds) {
        const FeaturePair f = featuresNear(seed[0], seed[1]);
        ASSERT_GT(f.gap, 0.2f) << "pick seeds whose features lie apart";
        EXPECT_EQ(at(t, f.a.x, f.a.y), 0.75f);
        EXPECT_EQ(at(t, f.b.x, f.b.y), 0.75f);
        for (float s : {-1.0f, 1.0f}) {
            // Half of 0.05 either side of the bisector.
            for (float d : {0.0f, 0.01f, 0.02f}) {
                const Point p = along(f, s * d);
                ASSERT_TRUE(nearestAre(f, p));
                EXPECT_EQ(at(t, p.x, p.y), 0.0f) << seed[0] << ", " << seed[1] << " at " << s * d;
            }
            for (float d : {0.03f, 0.06f, 0.09f}) {
                const Point p = along(f, s * d);
                ASSERT_TRUE(nearestAre(f, p));
                EXPECT_EQ(at(t, p.x, p.y), 0.75f) << seed[0] << ", " << seed[1] << " at " << s * d;
            }
        }
    }
}

TEST(VoronoiTile, GroutHasOneWidthMeasuredFromTheBisector) {
    // Anywhere in a tile, corners included: grout exactly where the point
    // lies within half the thickness of the bisector of its two nearest
    // features, that distance measured here in double from the positions.
    VoronoiTileTexture3D t;
    t.setBoundaryThickness(0.1f);
    int grout = 0, tile = 0;
    for (int i = 0; i < 150; ++i)
        for (int j = 0; j < 150; ++j) {
            const float x = -3.0f + 0.04f * static_cast<float>(i), y = 2.0f + 0.04f * static_cast<float>(j);
            const float q[2] = {x, y};
            float f1, f2, a[2], b[2];
            ARMan::voronoi_f1f2_2d(q, 1.0f, f1, a, f2, b);
            const double ux = double(b[0]) - a[0], uy = double(b[1]) - a[1];
            const double toEdge =
                ((0.5 * (double(a[0]) + b[0]) - x) * ux + (0.5 * (double(a[1]) + b[1]) - y) * uy) / std::hypot(ux, uy);
            if (std::fabs(toEdge - 0.05) < 1e-6) continue;
            const bool expectGrout = toEdge < 0.05;
            EXPECT_EQ(at(t, x, y) == 0.0f, expectGrout) << x << ", " << y << ": " << toEdge << " from the edge";
            ++(expectGrout ? grout : tile);
        }
    EXPECT_GT(grout, 1500);
    EXPECT_GT(tile, 10000);
}

TEST(VoronoiTile, RandomizedColoursAreOneToneOfTheNearestFeaturePerTile) {
    VoronoiTileTexture3D t;
    t.setCellRandomizeColors(true);

    // Without jitter the feature of the origin's cell is (0.5, 0.5), in cell
    // (0, 0) of the cell noise, whose hash is 1376312589.
    t.setCellVariability(0.0f);
    const float h0 = static_cast<float>(1376312589u) / 4294967296.0f;
    expectValues(t, {{0.5f, 0.5f, 0.0f, 0.4f + (0.9f - 0.4f) * h0},
                     {0.1f, 0.9f, 0.0f, 0.4f + (0.9f - 0.4f) * h0},
                     {1.0f, 0.5f, 0.0f, 0.0f}});

    t.setCellVariability(1.0f);
    for (const auto& seed : kSeeds) {
        const FeaturePair f = featuresNear(seed[0], seed[1]);
        const float toneA = 0.4f + (0.9f - 0.4f) * CellNoise::cellNoise(f.a.x, f.a.y);
        const float toneB = 0.4f + (0.9f - 0.4f) * CellNoise::cellNoise(f.b.x, f.b.y);
        EXPECT_NE(toneA, toneB);
        // One tone across each tile, from its feature to near the grout.
        for (float d : {0.03f, 0.06f, f.gap / 4, f.gap / 2}) {
            EXPECT_EQ(at(t, along(f, d).x, along(f, d).y), toneA) << d;
            EXPECT_EQ(at(t, along(f, -d).x, along(f, -d).y), toneB) << d;
        }
    }

    // Tones outside [0, 1] are clamped.
    const Point inside = along(featuresNear(0.3f, 0.7f), 0.1f);
    t.setCellMinColor(1.5f);
    t.setCellMaxColor(1.5f);
    EXPECT_EQ(at(t, inside.x, inside.y), 1.0f);
    t.setCellMinColor(-0.5f);
    t.setCellMaxColor(-0.2f);
    EXPECT_EQ(at(t, inside.x, inside.y), 0.0f);
}

TEST(VoronoiTile, FaceNoiseAddsAQuarterOfTheFractalSumAtDetailScale) {
    VoronoiTileTexture3D t;
    t.setCellVariability(0.0f);
    t.setCellAddNoise(true);
    t.setCellDetail(3.0f);
    t.setCellOctaves(2);
    for (auto [x, y] : {std::pair{0.5f, 0.5f}, {0.27f, 0.61f}, {-2.3f, 4.4f}, {5.55f, -0.3f}}) {
        const float n = FBM::fBM(3.0f * x, 3.0f * y, 2.0f, 2.0f, 0.5f);
        EXPECT_EQ(at(t, x, y, 7.0f), 0.75f + 0.25f * n) << x << ", " << y;
    }
    // Grout stays grout.
    EXPECT_EQ(at(t, 1.0f, 0.5f), 0.0f);
    // Octaves 0 adds nothing; a gain of 8 drives the tone past 1 and below
    // 0, and the result is clamped.
    t.setCellOctaves(0);
    EXPECT_EQ(at(t, 0.27f, 0.61f), 0.75f);
    t.setCellOctaves(6);
    t.setCellGain(8.0f);
    int clampedHigh = 0, clampedLow = 0;
    for (int i = 0; i < 16; ++i) {
        const float x = 0.2f + 0.04f * static_cast<float>(i);
        const float c = 0.75f + 0.25f * FBM::fBM(3.0f * x, 3.0f * 0.35f, 6.0f, 2.0f, 8.0f);
        clampedHigh += c > 1.0f;
        clampedLow += c < 0.0f;
        EXPECT_EQ(at(t, x, 0.35f), c > 1.0f ? 1.0f : (c < 0.0f ? 0.0f : c)) << x;
    }
    EXPECT_GT(clampedHigh, 0);
    EXPECT_GT(clampedLow, 0);
}

TEST(VoronoiTile, BoundaryNoiseMovesTheGroutLine) {
    // On the line y = 0.5 of the unjittered grid e = |x - 1| + 0.1 n, with n
    // the fractal sum at 8 times the point: grout where that is below 0.025.
    VoronoiTileTexture3D t;
    t.setCellVariability(0.0f);
    t.setBoundaryAddNoise(true);
    int movedOff = 0, movedOn = 0;
    for (int i = -40; i <= 40; ++i) {
        const float x = 1.0f + 0.005f * static_cast<float>(i);
        const float e = std::fabs(x - 1.0f) + 0.1f * FBM::fBM(8.0f * x, 4.0f, 4.0f, 2.0f, 0.5f);
        if (std::fabs(e - 0.025f) < 0.002f) continue;  // too close to call from the outside
        const bool grout = e < 0.025f;
        EXPECT_EQ(at(t, x, 0.5f), grout ? 0.0f : 0.75f) << x;
        const bool groutWithoutNoise = std::fabs(x - 1.0f) < 0.025f;
        movedOff += groutWithoutNoise && !grout;
        movedOn += !groutWithoutNoise && grout;
    }
    EXPECT_GT(movedOff + movedOn, 0) << "the noise should move the grout somewhere on this line";
}

TEST(VoronoiTile, HugeOctaveCountsEndWithTheValueOfALongSum) {
    VoronoiTileTexture3D longSum, huge;
    for (VoronoiTileTexture3D* t : {&longSum, &huge}) {
        t->setCellAddNoise(true);
        t->setBoundaryAddNoise(true);
    }
    longSum.setCellOctaves(2000);
    longSum.setBoundaryOctaves(2000);
    huge.setCellOctaves(INT_MAX);
    huge.setBoundaryOctaves(INT_MAX);
    // Past about 128 octaves at lacunarity 2 the noise position overflows and
    // the sum is NaN: a damaged count gives NaN, bit for bit the long sum's.
    for (float x : {0.3f, -2.75f, 6.1f})
        for (float y : {0.45f, -1.3f})
            EXPECT_EQ(std::bit_cast<std::uint32_t>(at(huge, x, y)),
                      std::bit_cast<std::uint32_t>(at(longSum, x, y)))
                << x << ", " << y;
    // The grout noise alone: NaN there leaves no grout, and the tile tone.
    huge.setCellAddNoise(false);
    for (float x : {0.3f, -2.75f, 6.1f}) EXPECT_EQ(at(huge, x, 0.45f), 0.75f) << x;
}

TEST(VoronoiTile, NonFinitePointsAndDamagedRecordsGiveAValue) {
    VoronoiTileTexture3D t;
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    // The feature search sees no feature from a non-finite point: both
    // distances equal, so it is grout.
    EXPECT_EQ(at(t, nan, 0.5f), 0.0f);
    EXPECT_EQ(at(t, inf, -inf), 0.0f);
    t.setCellVariability(nan);
    t.setCellRandomizeColors(true);
    t.setCellAddNoise(true);
    t.setBoundaryAddNoise(true);
    t.setBoundaryThickness(-1.0f);
    for (float x : {0.3f, 1e30f, -inf})
        for (float y : {0.7f, -3e9f}) {
            const float v = at(t, x, y);
            EXPECT_TRUE(std::isnan(v) || (v >= 0.0f && v <= 1.0f)) << x << ", " << y;
        }
}

TEST(VoronoiTile, RecordLayoutAndVersionRule) {
    VoronoiTileTexture3D t;
    unsigned char record[96];
    t.getDescription(reinterpret_cast<char*>(record));
    EXPECT_EQ(record[0], 96);
    EXPECT_STREQ(reinterpret_cast<const char*>(record + 1), "Voronoi Tiles");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    // The defaults at their offsets: floats, then the int32 octave counts,
    // then the three bools.
    const std::pair<int, float> floats[] = {{36, 1.0f}, {44, 0.4f}, {48, 0.9f}, {60, 2.0f},
                                            {64, 0.5f}, {68, 4.0f}, {72, 0.05f}, {84, 2.0f},
                                            {88, 0.5f}, {92, 8.0f}};
    for (auto [offset, value] : floats) {
        float v;
        std::memcpy(&v, record + offset, 4);
        EXPECT_EQ(v, value) << "at " << offset;
    }
    for (int offset : {56, 80}) {
        std::int32_t v;
        std::memcpy(&v, record + offset, 4);
        EXPECT_EQ(v, 4) << "at " << offset;
    }
    for (int offset : {40, 52, 76}) EXPECT_EQ(record[offset], 0) << "at " << offset;

    // Any non-zero byte reads as true; setters write 1.
    record[52] = 0xff;
    t.setStateFromDescription(reinterpret_cast<const char*>(record));
    EXPECT_TRUE(t.getCellAddNoise());
    t.setBoundaryAddNoise(true);
    EXPECT_EQ(t.record().boundaryAddNoise, 1);

    // Records of another version are ignored.
    VoronoiTileTexture3D fresh;
    t.setCellOctaves(9);
    t.getDescription(reinterpret_cast<char*>(record));
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{1, 1}, std::pair{0, 0}}) {
        record[33] = static_cast<unsigned char>(major);
        record[34] = static_cast<unsigned char>(minor);
        fresh.setStateFromDescription(reinterpret_cast<const char*>(record));
        EXPECT_EQ(fresh.getCellOctaves(), 4);
    }
    record[33] = 1;
    record[34] = 0;
    fresh.setStateFromDescription(reinterpret_cast<const char*>(record));
    EXPECT_EQ(fresh.getCellOctaves(), 9);
}
