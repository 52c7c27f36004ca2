#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/NestedShapesTexture3D.h"

using namespace gritwell;

TEST(NestedShapes, DefaultCylindersWithTheBoundsOnTheShell) {
    NestedShapesTexture3D t;  // half-width 0.125
    EXPECT_EQ(t.getShapeType(), NestedShapesTexture3D::Cylinder);
    expectValues(t, {{0.0f, 0.0f, 3.0f, 0.0f},  // r = 0 lies on the innermost shell
                     {0.5f, 0.0f, 3.0f, 1.0f}, {1.1f, 0.0f, 5.0f, 0.0f}, {0.6f, 0.8f, -2.0f, 0.0f},
                     {0.5f, 0.0f, 0.9f, 1.0f},  // z is not measured
                     {1.125f, 0.0f, 0.0f, 0.0f}, {1.126f, 0.0f, 0.0f, 1.0f},
                     {0.0f, -0.875f, 0.0f, 0.0f}, {0.874f, 0.0f, 0.0f, 1.0f}});
    t.setThickness(0.0f);  // whole distances only
    expectValues(t, {{0.0f, 2.0f, 0.0f, 0.0f}, {0.0f, 2.001f, 0.0f, 1.0f}});
    t.setThickness(-0.25f);  // only the square of the half-width counts
    expectValues(t, {{1.125f, 0.0f, 0.0f, 0.0f}, {1.126f, 0.0f, 0.0f, 1.0f}});
}

TEST(NestedShapes, SpheresSquareTubesAndCubes) {
    NestedShapesTexture3D t;
    t.setShapeType(NestedShapesTexture3D::Sphere);
    expectValues(t, {{0.5f, 0.0f, 0.9f, 0.0f}, {0.3f, 0.4f, 0.0f, 1.0f}, {0.0f, 0.0f, -2.05f, 0.0f}});
    t.setShapeType(NestedShapesTexture3D::SquareTube);
    expectValues(t, {{0.7f, 0.7f, 0.0f, 1.0f}, {0.7f, 0.7f, 0.95f, 1.0f}, {-1.9f, 0.3f, 0.0f, 0.0f}});
    t.setShapeType(NestedShapesTexture3D::Cube);
    expectValues(t, {{0.7f, 0.7f, 0.95f, 0.0f}, {0.5f, 2.95f, -0.5f, 0.0f}, {0.5f, 2.5f, 0.2f, 1.0f}});
}

TEST(NestedShapes, StoredInverseRootsAndDoubleProductsDecideTheEdges) {
    // Each point lies exactly half a thickness from a whole distance as the
    // distance is formed; taking m itself, or the product in float, moves it
    // one ulp off the shell.
    NestedShapesTexture3D t;
    t.setShapeType(NestedShapesTexture3D::SquareTube);
    t.setThickness(0x1.abeecp-3f);
    expectValues(t, {{0x1.8d5f78p+1f, 0.0f, 0.0f, 0.0f}});
    t.setThickness(0x1.0c8abp-2f);
    expectValues(t, {{0x1.de6eaap+0f, 0.0f, 0.0f, 0.0f}});
    t.setShapeType(NestedShapesTexture3D::Cube);
    t.setThickness(0x1.a9824p-3f);
    expectValues(t, {{0.0f, 0.0f, 0x1.8d4c14p+1f, 0.0f}});
    t.setThickness(0x1.a6826p-3f);
    expectValues(t, {{0.0f, 0.0f, 0x1.e597dap+0f, 0.0f}});
}

TEST(NestedShapes, ThicknessOfOneOrMoreBlackensEverything) {
    NestedShapesTexture3D t;
    for (float thickness : {1.0f, 2.5f})
        for (int type = 0; type < 4; ++type) {
            t.setThickness(thickness);
            t.setShapeType(static_cast<NestedShapesTexture3D::ShapeType>(type));
            expectValues(t, {{0.5f, 0.0f, 0.0f, 0.0f}, {1.5f, 0.5f, 0.5f, 0.0f}, {-3.3f, 7.7f, 2.2f, 0.0f}});
        }
}

TEST(NestedShapes, InvalidTypesAndUnmeasurableDistancesAreTheGround) {
    NestedShapesTexture3D t;
    const float inf = std::numeric_limits<float>::infinity();
    // Beyond the int range the whole part is the integer indefinite, far
    // from any shell; NaN is never on one.
    t.setShapeType(NestedShapesTexture3D::Cube);
    expectValues(t, {{1e10f, 0.0f, 0.0f, 1.0f}, {0.0f, -inf, 0.0f, 1.0f}, {std::nanf(""), 0.0f, 0.0f, 1.0f}});
    // No table is indexed by the type: any other value draws no shells.
    for (int type : {4, -1, INT_MIN, INT_MAX}) {
        t.setShapeType(static_cast<NestedShapesTexture3D::ShapeType>(type));
        expectValues(t, {{0.0f, 0.0f, 0.0f, 1.0f}, {1.0f, 0.0f, 0.0f, 1.0f}, {inf, std::nanf(""), 0.0f, 1.0f}});
    }
}

TEST(NestedShapes, RecordLayoutAndVersionRule) {
    NestedShapesTexture3D t, other;
    char record[44];
    t.getDescription(record);
    EXPECT_EQ(Texture3D::recordName(record), "Nested Shapes");
    EXPECT_EQ(record[0], 44);
    EXPECT_EQ(record[33], 2);
    EXPECT_EQ(record[34], 0);

    other.setShapeType(NestedShapesTexture3D::Cube);
    other.setThickness(0.5f);
    other.getDescription(record);
    record[33] = 1;  // 1.0: no conversion, ignored
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getShapeType(), NestedShapesTexture3D::Cylinder);
    EXPECT_EQ(t.getThickness(), 0.25f);
    record[33] = 2;
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getShapeType(), NestedShapesTexture3D::Cube);
    EXPECT_EQ(t.getThickness(), 0.5f);
}
