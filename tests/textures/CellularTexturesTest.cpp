// The generators over the cellular noises: Voronoi and Cell Noise.

#include <cmath>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/CellTexture3D.h"
#include "textures/VoronoiTexture3D.h"

using namespace gritwell;

namespace {
template <class F>
void overGrid(F f) {
    for (float x = -2.0f; x < 2.0f; x += 0.173f)
        for (float y = -2.0f; y < 2.0f; y += 0.191f) f(x, y);
}
}  // namespace

TEST(CellularTextures, DefaultsDifferInTheirMetric) {
    EXPECT_EQ(VoronoiTexture3D().distanceMethod(), Voronoi::LengthSquared);
    EXPECT_EQ(CellTexture3D().distanceMethod(), Worley::Length);
    EXPECT_EQ(VoronoiTexture3D().type(), Voronoi::First);
}

TEST(CellularTextures, CrackleStaysBetweenItsFloorAndOne) {
    VoronoiTexture3D voronoi;
    voronoi.setType(Voronoi::Crackle);
    const float floor = static_cast<float>(1.4142135623730951 / 1.7320508075688772);
    CellTexture3D cell;
    cell.setType(Worley::Crackle);
    overGrid([&](float x, float y) {
        const float p[3] = {x, y, 0.37f};
        const float v = voronoi(p);
        EXPECT_GE(v, floor);
        EXPECT_LE(v, 1.0f);
        EXPECT_EQ(cell(p), 1.0f);
    });
}

TEST(CellularTextures, FirstDistanceIsZeroAtAFeatureAndClampedToOne) {
    VoronoiTexture3D voronoi;
    voronoi.setScale(1.0f);
    float F[4], P[12];
    Voronoi::Calculate(0.5f, 0.5f, 0.5f, F, P, Voronoi::LengthSquared);
    expectValues(voronoi, {{P[0], P[1], P[2], 0.0f}});

    // The fourth distance under the squared L1 metric runs past 1: clamped.
    voronoi.setType(Voronoi::Fourth);
    voronoi.setDistanceMethod(Voronoi::Manhattan);
    int ones = 0;
    overGrid([&](float x, float y) {
        const float p[3] = {x, y, 0.5f};
        ones += voronoi(p) == 1.0f;
    });
    EXPECT_GT(ones, 0);
}

TEST(CellularTextures, PlanarModeFlattensVoronoiButNotCellNoise) {
    VoronoiTexture3D voronoi;
    CellTexture3D cell;
    voronoi.setFlags(4);
    cell.setFlags(4);
    bool voronoiVaries = false, cellVaries = false;
    overGrid([&](float x, float y) {
        const float a[3] = {x, y, 0.1f}, b[3] = {x, y, 1.7f};
        voronoiVaries |= voronoi(a) != voronoi(b);
        cellVaries |= cell(a) != cell(b);
    });
    EXPECT_FALSE(voronoiVaries);
    EXPECT_TRUE(cellVaries);
}

TEST(CellularTextures, OutOfRangeEnumerationsAreSafe) {
    VoronoiTexture3D voronoi;
    CellTexture3D cell;
    for (int bad : {7, 100, -1, 2147483647}) {
        voronoi.setType(static_cast<Voronoi::VoronoiType>(bad));
        voronoi.setDistanceMethod(static_cast<Voronoi::DistanceMethod>(bad));
        cell.setType(static_cast<Worley::VoronoiType>(bad));
        cell.setDistanceMethod(static_cast<Worley::DistanceMethod>(bad));
        const float p[3] = {0.3f, 0.7f, -1.1f};
        EXPECT_TRUE(std::isfinite(voronoi(p)));
        EXPECT_TRUE(std::isfinite(cell(p)));
    }
}
