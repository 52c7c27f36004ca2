#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/SpheresTexture3D.h"

using namespace gritwell;

TEST(Spheres, SolidBallsWithTheBoundaryInside) {
    SpheresTexture3D t;
    expectValues(t, {
        {0.5f, 0.5f, 0.5f, 0.0f},
        {0.5f, 0.5f, 0.8f, 1.0f},
        {0.5f, 0.5f, 0.75f, 0.0f},
        {-0.5f, -0.5f, -0.5f, 0.0f},  // every cube holds a ball
        {-1.0f, 0.5f, 0.5f, 1.0f},    // cell -2: 0.5 from its centre
    });
}

TEST(Spheres, HollowShells) {
    SpheresTexture3D t;
    t.setHollowness(0.5f);
    expectValues(t, {{0.5f, 0.5f, 0.5f, 1.0f}, {0.5f, 0.5f, 0.7f, 0.0f}, {0.5f, 0.5f, 0.625f, 0.0f}});
}

TEST(Spheres, StaggeredSpheresReachIntoEmptyNeighbours) {
    SpheresTexture3D t;
    t.setStaggered(true);
    expectValues(t, {
        {0.5f, 0.5f, 0.5f, 0.0f},   // the origin cube is occupied
        {1.5f, 0.5f, 0.5f, 1.0f},   // an empty cube's centre
        {1.1f, 0.5f, 0.5f, 1.0f},   // 0.6 from the neighbour, outside R ~ 0.354
        {1.05f, 0.5f, 0.5f, 1.0f},
        {0.5f, 0.5f, 0.84f, 0.0f},  // occupied cube, inside R ~ 0.354
    });
    t.setSphereSize(0.5f);  // R ~ 0.707
    expectValues(t, {{1.05f, 0.5f, 0.5f, 0.0f}, {1.5f, 0.5f, 0.5f, 1.0f}});
    // Each face neighbour reaches in: -x, +x, -y, +y, -z, +z of the empty cube (1, 0, 0).
    expectValues(t, {{1.2f, 0.5f, 0.5f, 0.0f}, {1.8f, 0.5f, 0.5f, 0.0f}, {1.5f, 0.2f, 0.5f, 0.0f},
                     {1.5f, 0.8f, 0.5f, 0.0f}, {1.5f, 0.5f, 0.2f, 0.0f}, {1.5f, 0.5f, 0.8f, 0.0f}});
}

TEST(Spheres, PlanarModeIsTheSliceAtMinusHalf) {
    // z = -0.5 runs through the centres of the layer of cells below z = 0.
    SpheresTexture3D t;
    for (int flags : {4, 8, 12}) {
        t.setFlags(flags);
        for (float z : {-0.5f, 0.0f, 0.5f, 7.25f, 1e30f})
            expectValues(t, {{0.5f, 0.5f, z, 0.0f}, {0.5f, 0.3f, z, 0.0f}, {0.5f, 0.2f, z, 1.0f},
                             {0.05f, 0.05f, z, 1.0f}});
    }
    t.setFlags(2);
    expectValues(t, {{0.5f, 0.3f, 0.0f, 1.0f}});
}
