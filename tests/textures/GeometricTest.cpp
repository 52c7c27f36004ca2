// The geometric generators: cells, lines, shells and ramps measured from the
// point itself. Worked values as tables of (point, expected); the shared
// properties (modes, records, odd points) are checked in GeneratorSuiteTest.

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "core/FloatToInt.h"
#include "core/Rounding.h"
#include "noise/CellNoise.h"
#include "noise/Perlin.h"
#include "textures/CheckerboardTexture3D.h"
#include "textures/ConstantTexture3D.h"
#include "textures/CorrugatedTexture3D.h"
#include "textures/GradientTexture3D.h"
#include "textures/GridTexture3D.h"
#include "textures/HexTileTexture3D.h"
#include "textures/NestedShapesTexture3D.h"
#include "textures/SpheresTexture3D.h"
#include "textures/SpiralTexture3D.h"
#include "textures/StripesTexture3D.h"
#include "textures/ZigzagTexture3D.h"

using namespace gritwell;

namespace {
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
}  // namespace

// ---- Constant ----

TEST(Constant, ReturnsItsFieldUnclamped) {
    ConstantTexture3D t;
    t.setConstant(2.5f);
    expectValues(t, {{0.1f, 0.2f, 0.3f, 2.5f}, {-7, 1e30f, 3, 2.5f}});
}

// ---- Checkerboard ----

TEST(Checkerboard, DeeperLevelsShadeAroundTheParentTone) {
    CheckerboardTexture3D t;
    t.setDepth(2);
    expectValues(t, {
        {0.25f, 0.25f, 0.25f, 0.125f},  // dark parent: tones 0.125 / 0.375
        {0.75f, 0.25f, 0.25f, 0.375f},
        {1.25f, 0.25f, 0.25f, 0.75f},  // light parent: tones 0.75 / 0.875
        {1.75f, 0.25f, 0.25f, 0.875f},
        {-1.0f, 0.25f, 0.25f, 0.375f},  // -1.0 lies in dark cell -2, then -2.0 in light cell -3
    });
    t.setDepth(3);
    expectValues(t, {{0.125f, 0.125f, 0.125f, 0.0625f}, {0.375f, 0.125f, 0.125f, 0.1875f}});
    for (int depth : {0, -1, INT_MIN}) {  // no level at all: black
        t.setDepth(depth);
        expectValues(t, {{0.5f, 0.5f, 0.5f, 0.0f}, {1.5f, 0.5f, 0.5f, 0.0f}});
    }
}

// ---- Spheres ----

TEST(Spheres, HollowAndStaggeredBalls) {
    SpheresTexture3D t;
    expectValues(t, {{0.5f, 0.5f, 0.75f, 0.0f}, {0.5f, 0.5f, 0.8f, 1.0f}});  // the boundary is inside
    t.setHollowness(0.5f);  // inner radius 0.125
    expectValues(t, {{0.5f, 0.5f, 0.5f, 1.0f}, {0.5f, 0.5f, 0.625f, 0.0f}, {0.5f, 0.5f, 0.7f, 0.0f}});
    // Staggered at radius 0.707: each face neighbour reaches into the empty cube (1, 0, 0).
    SpheresTexture3D s;
    s.setStaggered(true);
    s.setSphereSize(0.5f);
    expectValues(s, {{1.5f, 0.5f, 0.5f, 1.0f}, {1.2f, 0.5f, 0.5f, 0.0f}, {1.8f, 0.5f, 0.5f, 0.0f},
                     {1.5f, 0.2f, 0.5f, 0.0f}, {1.5f, 0.8f, 0.5f, 0.0f}, {1.5f, 0.5f, 0.2f, 0.0f},
                     {1.5f, 0.5f, 0.8f, 0.0f}});
}

// ---- Grid ----

TEST(Grid, LinesIncludeTheirEdges) {
    GridTexture3D t;
    expectValues(t, {{0.125f, 0.5f, 0.5f, 0.0f}, {0.126f, 0.5f, 0.5f, 1.0f}, {-1.0f, -2.5f, 3.5f, 0.0f}});
    t.setStripeWidth(0.0f);  // only the planes themselves
    expectValues(t, {{0.0f, 0.5f, 0.5f, 0.0f}, {0.001f, 0.5f, 0.5f, 1.0f}, {0.5f, 0.5f, 0.999f, 1.0f}});
    t.setStripeWidth(1.0f);  // every point on a line
    expectValues(t, {{0.5f, 0.5f, 0.5f, 0.0f}, {0.37f, -0.5f, 12.49f, 0.0f}});
}

TEST(Grid, RandomizedCellsToneUnclampedAndInvertible) {
    GridTexture3D t;
    t.setRandomizeColors(true);
    const float c = CellNoise::cellNoise(2.5f, -3.5f, 0.5f);
    expectValues(t, {{2.5f, -3.5f, 0.5f, 0.5f + 0.5f * c}, {2.8f, -3.2f, 0.3f, 0.5f + 0.5f * c},
                     {2.5f, -3.0f, 0.5f, 0.0f}});  // lines stay black
    t.setMinColor(0.9f);
    t.setMaxColor(0.1f);
    expectValues(t, {{2.5f, -3.5f, 0.5f, 0.9f + (0.1f - 0.9f) * c}});
    t.setMinColor(2.0f);
    t.setMaxColor(3.0f);
    expectValues(t, {{2.5f, -3.5f, 0.5f, 2.0f + 1.0f * c}});
}

// ---- Stripes ----

TEST(Stripes, StraightLinesCountTheEdgeAsOnTheLine) {
    StripesTexture3D t;
    expectValues(t, {{0.125f, 0.3f, 0.0f, 0.0f}, {0.12501f, 0.3f, 0.0f, 1.0f}, {-1.0f, 0.3f, 0.0f, 0.0f}});
    // Widths compare squared: a negative width draws like its magnitude,
    // and zero still draws the exact integer planes.
    t.setStripeWidth(-0.25f);
    expectValues(t, {{0.1f, 0.0f, 0.0f, 0.0f}, {0.5f, 0.0f, 0.0f, 1.0f}});
    t.setStripeWidth(0.0f);
    expectValues(t, {{2.0f, 0.0f, 0.0f, 0.0f}, {2.0001f, 0.0f, 0.0f, 1.0f}, {-3.0f, 0.0f, 0.0f, 0.0f}});
}

TEST(Stripes, EachStyleMovesXByItsWave) {
    struct Case {
        StripesTexture3D::Style style;
        float amplitude;
        PointCase at;
    };
    const Case cases[] = {
        {StripesTexture3D::Sawtooth, 0.25f, {0.4f, 0.9f, 0.0f, 1.0f}},   // x moves to 0.625
        {StripesTexture3D::Sawtooth, 0.25f, {0.0f, 0.5f, 0.0f, 0.0f}},   // to 0.125: on the edge
        {StripesTexture3D::Sawtooth, 0.25f, {0.8f, -0.5f, 0.0f, 0.0f}},  // fy = 0.5: 0.925
        {StripesTexture3D::Sawtooth, 0.25f, {0.8f, -1.0f, 0.0f, 1.0f}},  // fy = 0, not 1
        {StripesTexture3D::Ribbon, 1.0f, {0.7f, 0.25f, 0.0f, 0.0f}},     // top of the upper arc: +0.25
        {StripesTexture3D::Ribbon, 1.0f, {0.3f, 0.25f, 0.0f, 1.0f}},
        {StripesTexture3D::Ribbon, 1.0f, {0.3f, 0.75f, 0.0f, 0.0f}},  // bottom of the lower arc: -0.25
        {StripesTexture3D::Ribbon, 1.0f, {0.7f, -0.75f, 0.0f, 0.0f}},
        {StripesTexture3D::Ribbon, 1.0f, {0.76f, 0.1f, 0.0f, 0.0f}},  // sqrt(0.0625 - 0.0225) = 0.2
        {StripesTexture3D::Ribbon, 1.0f, {0.13f, 0.5f, 0.0f, 1.0f}},  // arcs meet at no displacement
        {StripesTexture3D::Sine, 0.25f, {0.7f, 0.25f, 0.0f, 0.0f}},
        {StripesTexture3D::Sine, 0.25f, {0.3f, 0.75f, 0.0f, 0.0f}},
        {StripesTexture3D::Sine, 0.25f, {0.3f, 0.25f, 0.0f, 1.0f}},
        // Within a float step of the edge: a single-precision sine lands on
        // the other side at each of these.
        {StripesTexture3D::Sine, 0.25f, {-0.03459439054131508f, 2.110197067260742f, 0.0f, 0.0f}},
        {StripesTexture3D::Sine, 0.25f, {0.011623024940490723f, -2.92508602142334f, 0.0f, 1.0f}},
        {StripesTexture3D::Sine, 0.25f, {0.37499621510505676f, -3.2491233348846436f, 0.0f, 1.0f}},
        {StripesTexture3D::Triangle, 0.5f, {0.45f, 0.0f, 0.0f, 1.0f}},
        {StripesTexture3D::Triangle, 0.5f, {0.45f, 0.5f, 0.0f, 0.0f}},   // the peak, +0.5
        {StripesTexture3D::Triangle, 0.5f, {0.45f, 0.25f, 0.0f, 1.0f}},  // +0.25
        {StripesTexture3D::Triangle, 0.5f, {0.75f, 0.75f, 0.0f, 0.0f}},  // falling: +0.25
        {StripesTexture3D::Triangle, 0.5f, {0.6f, 0.75f, 0.0f, 1.0f}},
        {StripesTexture3D::PerlinNoise, 0.25f, {0.5f, 1.5f, 0.0f, 1.0f}},  // noise 0 on the lattice
        {StripesTexture3D::PerlinNoise, 0.25f, {-2.5f, 0.5f, 3.0f, 1.0f}},
    };
    StripesTexture3D t;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.style);
        t.setStripeStyle(c.style);
        t.setAmplitude(c.amplitude);
        expectValues(t, {c.at});
    }
    // Values beyond the list draw straight lines.
    for (std::int32_t style : {6, -1, INT_MAX, INT_MIN}) {
        t.setStripeStyle(static_cast<StripesTexture3D::Style>(style));
        expectValues(t, {{0.5f, 0.3f, 0.0f, 1.0f}, {0.9f, 0.55f, 0.0f, 0.0f}});
    }
}

TEST(Stripes, NoiseWaveSamplesTheUndisplacedPointAtTwiceTheScale) {
    // An amplitude that carries x = 0.5 exactly one half-spacing lands it on
    // the next line; half of it leaves it between lines.
    StripesTexture3D t;
    t.setStripeStyle(StripesTexture3D::PerlinNoise);
    for (float y : {0.3f, 0.8f, -1.2f}) {
        const float n = Perlin::noise(1.0f, 2.0f * y);
        ASSERT_GT(std::fabs(n), 0.05f) << y;
        t.setAmplitude(0.5f / n);
        expectValues(t, {{0.5f, y, 0.0f, 0.0f}});
        t.setAmplitude(0.25f / n);
        expectValues(t, {{0.5f, y, 0.0f, 1.0f}});
    }
}

TEST(Stripes, RandomizedLinesKeepOneToneFromTheirPlane) {
    StripesTexture3D t;
    t.setRandomizeColors(true);
    t.setMinColor(-1.0f);  // tones are not clamped
    t.setMaxColor(3.0f);
    const auto tone = [](float plane) { return -1.0f + 4.0f * CellNoise::cellNoise(plane); };
    expectValues(t, {
        {0.5f, 0.3f, 0.0f, 1.0f},           // between lines: white, not a tone
        {0.95f, 0.3f, 0.0f, tone(1.0f)},    // plane 1 as cell 0's upper line
        {1.05f, 0.3f, 0.0f, tone(1.0f)},    // and as cell 1's lower line
        {0.05f, 0.3f, 0.0f, tone(0.0f)},
        {-1.0f, 0.3f, 0.0f, tone(-1.0f)},  // exact -1 is cell -2's upper line
        {-1.05f, 0.3f, 0.0f, tone(-1.0f)},
    });
    t.setStripeWidth(1.5f);  // lines wider than the spacing: the lower plane's tone wins
    expectValues(t, {{0.5f, 0.3f, 0.0f, tone(0.0f)}, {2.5f, 0.3f, 0.0f, tone(2.0f)}});
}

// ---- Zigzag ----

TEST(Zigzag, JitterIsClampedUnlikeTheCheckerboards) {
    ZigzagTexture3D t;
    t.setRandomizeColors(true);
    t.setVariability(5.0f);
    int low = 0, high = 0;
    for (int cell = -8; cell < 8; ++cell) {
        const float v = valueAt(t, 2.0f * static_cast<float>(cell) + 0.5f, 0.5f);
        ASSERT_TRUE(v >= 0.0f && v <= 1.0f) << "cell " << cell << ": " << v;
        low += v == 0.0f;
        high += v == 1.0f;
    }
    EXPECT_GT(low, 0);
    EXPECT_GT(high, 0);
}

// ---- Corrugated ----

TEST(Corrugated, EachStyleIsAProfileOfX) {
    struct Case {
        std::int32_t style;
        PointCase at;
    };
    const Case cases[] = {
        {CorrugatedTexture3D::Sine, {0.25f, -7.5f, 3e6f, 1.0f}},
        {CorrugatedTexture3D::Sine, {0.75f, 0.0f, 0.0f, 0.0f}},
        {CorrugatedTexture3D::Sine, {0.125f, 0.0f, 0.0f, 0.853553414f}},
        {CorrugatedTexture3D::Sine, {0.6f, 0.0f, 0.0f, 0.206107318f}},
        {CorrugatedTexture3D::Sawtooth, {-0.25f, 0.0f, 0.0f, 0.75f}},
        {CorrugatedTexture3D::Sawtooth, {2.75f, 0.0f, 0.0f, 0.75f}},
        {CorrugatedTexture3D::Sawtooth, {-1.0f, 0.0f, 0.0f, 0.0f}},  // a true floor
        {CorrugatedTexture3D::Sawtooth, {-1e-10f, 0.0f, 0.0f, 1.0f}},
        // The ribbon is centred on 0, not 0.5.
        {CorrugatedTexture3D::Ribbon, {0.25f, 0.0f, 0.0f, 0.25f}},
        {CorrugatedTexture3D::Ribbon, {0.75f, 0.0f, 0.0f, -0.25f}},
        {CorrugatedTexture3D::Ribbon, {0.125f, 0.0f, 0.0f, 0.216506347f}},
        {CorrugatedTexture3D::Ribbon, {-0.1f, 0.0f, 0.0f, -0.200000018f}},
        {CorrugatedTexture3D::Triangle, {0.5f, 0.0f, 0.0f, 1.0f}},
        {CorrugatedTexture3D::Triangle, {0.3f, 0.0f, 0.0f, 0.600000024f}},
        {CorrugatedTexture3D::Triangle, {0.9f, 0.0f, 0.0f, 0.200000048f}},
        {CorrugatedTexture3D::PerlinNoise, {0.5f, 1.0f, 2.0f, 0.5f}},  // the noise lattice
        {CorrugatedTexture3D::PerlinNoise, {-3.5f, 0.0f, 0.0f, 0.5f}},
        // Not periodic: the noise sees x, not its fraction.
        {CorrugatedTexture3D::PerlinNoise, {1.3f, 0.0f, 0.0f, 0.5f + Perlin::noise(2.6f) / 2.0f}},
        // Any other value is half a sine wave per unit.
        {5, {0.25f, 0.0f, 0.0f, 0.853553414f}},
        {-1, {0.75f, 0.0f, 0.0f, 0.853553414f}},
        {INT_MIN, {0.5f, 0.0f, 0.0f, 1.0f}},
    };
    CorrugatedTexture3D t;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.style);
        t.setStyle(static_cast<CorrugatedTexture3D::Style>(c.style));
        expectValues(t, {c.at});
    }
}

// ---- Nested Shapes ----

TEST(NestedShapes, ShellsOfEachShapeWithTheBoundsOnTheShell) {
    struct Case {
        std::int32_t shape;
        PointCase at;
    };
    const Case cases[] = {
        {NestedShapesTexture3D::Cylinder, {0.0f, 0.0f, 3.0f, 0.0f}},  // r = 0 is on the innermost shell
        {NestedShapesTexture3D::Cylinder, {0.5f, 0.0f, 0.9f, 1.0f}},
        {NestedShapesTexture3D::Cylinder, {0.6f, 0.8f, -2.0f, 0.0f}},
        {NestedShapesTexture3D::Cylinder, {1.125f, 0.0f, 0.0f, 0.0f}},
        {NestedShapesTexture3D::Cylinder, {1.126f, 0.0f, 0.0f, 1.0f}},
        {NestedShapesTexture3D::Cylinder, {0.874f, 0.0f, 0.0f, 1.0f}},
        {NestedShapesTexture3D::Sphere, {0.5f, 0.0f, 0.9f, 0.0f}},
        {NestedShapesTexture3D::Sphere, {0.3f, 0.4f, 0.0f, 1.0f}},
        {NestedShapesTexture3D::Sphere, {0.0f, 0.0f, -2.05f, 0.0f}},
        {NestedShapesTexture3D::SquareTube, {0.7f, 0.7f, 0.95f, 1.0f}},
        {NestedShapesTexture3D::SquareTube, {-1.9f, 0.3f, 0.0f, 0.0f}},
        {NestedShapesTexture3D::Cube, {0.7f, 0.7f, 0.95f, 0.0f}},
        {NestedShapesTexture3D::Cube, {0.5f, 2.95f, -0.5f, 0.0f}},
        {NestedShapesTexture3D::Cube, {0.5f, 2.5f, 0.2f, 1.0f}},
        {NestedShapesTexture3D::Cube, {1e10f, 0.0f, 0.0f, 1.0f}},  // beyond the int range: off every shell
        {NestedShapesTexture3D::Cube, {kNaN, 0.0f, 0.0f, 1.0f}},
        {4, {0.0f, 0.0f, 0.0f, 1.0f}},  // any other value draws no shells
        {-1, {1.0f, 0.0f, 0.0f, 1.0f}},
    };
    NestedShapesTexture3D t;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.shape);
        t.setShapeType(static_cast<NestedShapesTexture3D::ShapeType>(c.shape));
        expectValues(t, {c.at});
    }
    t.setShapeType(NestedShapesTexture3D::Cylinder);
    t.setThickness(0.0f);  // whole distances only
    expectValues(t, {{0.0f, 2.0f, 0.0f, 0.0f}, {0.0f, 2.001f, 0.0f, 1.0f}});
    t.setThickness(-0.25f);  // only the square of the half-width counts
    expectValues(t, {{1.125f, 0.0f, 0.0f, 0.0f}, {1.126f, 0.0f, 0.0f, 1.0f}});
    t.setThickness(1.0f);  // a thickness of one or more blackens everything
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.0f}, {-3.3f, 7.7f, 2.2f, 0.0f}});
}

TEST(NestedShapes, StoredInverseRootsAndDoubleProductsDecideTheEdges) {
    // Each point lies exactly half a thickness from a whole distance as the
    // distance is formed; taking m itself, or the product in float, moves it
    // one ulp off the shell.
    struct Case {
        NestedShapesTexture3D::ShapeType shape;
        float thickness;
        PointCase at;
    };
    const Case cases[] = {
        {NestedShapesTexture3D::SquareTube, 0x1.abeecp-3f, {0x1.8d5f78p+1f, 0.0f, 0.0f, 0.0f}},
        {NestedShapesTexture3D::SquareTube, 0x1.0c8abp-2f, {0x1.de6eaap+0f, 0.0f, 0.0f, 0.0f}},
        {NestedShapesTexture3D::Cube, 0x1.a9824p-3f, {0.0f, 0.0f, 0x1.8d4c14p+1f, 0.0f}},
        {NestedShapesTexture3D::Cube, 0x1.a6826p-3f, {0.0f, 0.0f, 0x1.e597dap+0f, 0.0f}},
    };
    NestedShapesTexture3D t;
    for (const Case& c : cases) {
        t.setShapeType(c.shape);
        t.setThickness(c.thickness);
        expectValues(t, {c.at});
    }
}

// ---- Gradient ----

TEST(Gradient, XRampFoldsAsASawtoothOfPeriodTwo) {
    GradientTexture3D t;
    t.setYDir(false);
    t.setZDir(false);
    expectValues(t, {
        {-1.0f, 9.0f, 9.0f, 0.0f},
        {0.0f, 9.0f, 9.0f, 0.5f},
        {1.0f, 9.0f, 9.0f, 1.0f},   // exactly 1 is not folded: the top of the ramp
        {1.5f, 9.0f, 9.0f, 0.25f},  // folded to -0.5
        {3.0f, 9.0f, 9.0f, 0.0f},   // folded to -1
        // -3 lies in cell -4, an even shift up to +1; -2.9 shifts by 2.
        {-3.0f, 9.0f, 9.0f, 1.0f},
        {-2.9f, 9.0f, 9.0f, 0.04999995231628418f},
    });
}

TEST(Gradient, ChosenAxesMultiplyWithLaterFactorsInDouble) {
    GradientTexture3D t;
    expectValues(t, {
        {0.0f, 0.0f, 0.0f, 0.125f},
        {-3.0f, -2.9f, 2.5f, 0.037499964237213135f},
        // Forming (c + 1) / 2 in float would give 0.2746249735... and 0.4696250259...
        {0.3f, 0.3f, 0.3f, 0.2746250033378601f},
        {0.3f, 0.7f, 0.7f, 0.46962496638298035f},
    });
    t.setXDir(false);
    t.setZDir(false);
    expectValues(t, {{5.0f, 0.3f, 5.0f, 0.6499999761581421f}, {5.0f, -2.9f, 5.0f, 0.04999995231628418f}});
    t.setYDir(false);
    expectValues(t, {{0.3f, -7.1f, 1e30f, 1.0f}});
}

// ---- Spiral ----

TEST(Spiral, SolidModeTwistsAboutTheYAxisAndThePlaneShears) {
    constexpr float kQuarterTurnY = 7.853982f;  // at the default 0.2 rad per unit
    SpiralTexture3D t;
    expectValues(t, {{0.5f, 0.0f, 0.0f, 1.0f}, {0.5f, kQuarterTurnY, 0.0f, 0.0f}, {0.0f, kQuarterTurnY, 0.5f, 1.0f}});
    t.setFlags(4);  // sheared lines; equality is on the line
    expectValues(t, {{0.3f, 3.5f, 0.0f, 0.0f}, {0.125f, 0.0f, 0.0f, 0.0f}, {0.875f, 0.0f, 0.0f, 0.0f}});
    t.setStripeWidth(0.0f);  // only the planes themselves
    expectValues(t, {{-2.0f, 0.0f, 0.0f, 0.0f}, {0.001f, 0.0f, 0.0f, 1.0f}});
    t.setFlags(2);
    t.setStripeWidth(0.25f);
    t.setSpiralRate(0.0f);  // straight lines
    expectValues(t, {{0.3f, 5.0f, -2.7f, 1.0f}, {0.05f, -40.0f, 9.0f, 0.0f}, {-1.1f, 5.0f, 0.3f, 0.0f}});
}

namespace {

// The twist as written down, through the C library's float trigonometry:
// what every point must match, whichever way the generator reaches it.
float twistedReference(float width, float rate, float x, float y, float z) {
    float radius, theta;
    cartesianToPolar(x, z, radius, theta);
    theta = theta + rate * y;
    polarToCartesian(radius, theta, x, z);
    const int f = cellIndex(x);
    const float d1 = x - static_cast<float>(f);
    const float d2 = static_cast<float>(wrapAdd(f, 1)) - x;
    const float w = width / 2.0f;
    return (w * w >= d1 * d1 || w * w >= d2 * d2) ? 0.0f : 1.0f;
}

// Every point, one at a time and through the batch call, against the reference.
void expectTwistReference(float width, float rate, const std::vector<float>& points) {
    SpiralTexture3D t;
    t.setStripeWidth(width);
    t.setSpiralRate(rate);
    const int n = static_cast<int>(points.size() / 3);
    std::vector<float> batch(points.size() / 3);
    t(points.data(), n, batch.data());
    for (int i = 0; i < n; ++i) {
        const float x = points[3 * i], y = points[3 * i + 1], z = points[3 * i + 2];
        const std::uint32_t expected = std::bit_cast<std::uint32_t>(twistedReference(width, rate, x, y, z));
        ASSERT_EQ(std::bit_cast<std::uint32_t>(t(&points[3 * i])), expected)
            << "width " << width << ", rate " << rate << ", point (" << x << ", " << y << ", " << z << ")";
        ASSERT_EQ(std::bit_cast<std::uint32_t>(batch[i]), expected) << "batch, point " << i;
    }
}

}  // namespace

// The twisted x is decided without the C library wherever its error bound
// leaves no doubt; half of these points are aimed within a few float steps of
// a line's edge, where only the library can decide.
TEST(Spiral, EveryPointMatchesTheTwistThroughTheCLibrary) {
    std::mt19937 rng(77);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    const std::pair<float, float> settings[] = {{0.25f, 0.2f}, {0.0f, 1.0f}, {0.9f, -3.0f}, {1.0f, 0.2f},
                                                {2.5f, 0.5f},  {0.5f, 0.0f}, {0.1f, 37.0f}, {0.3f, 1e-4f},
                                                {0.25f, 5000.0f}};
    for (const auto& [width, rate] : settings) {
        const float w = width / 2.0f;
        std::vector<float> points;
        for (int i = 0; i < 60001; ++i) {
            float x, y, z;
            if (i % 2 == 0) {
                const float span = (i % 6 == 0) ? 1000.0f : 8.0f;
                x = (2.0f * unit(rng) - 1.0f) * span;
                y = (2.0f * unit(rng) - 1.0f) * span;
                z = (2.0f * unit(rng) - 1.0f) * span;
            } else {
                const double n = std::floor((2.0 * unit(rng) - 1.0) * 20.0);
                const double edge = (i % 4 == 1) ? n + w : n + 1.0 - w;
                const double target = edge + std::ldexp(2.0 * unit(rng) - 1.0, -20) * (1.0 + std::fabs(edge));
                const double radius = std::fabs(target) + 0.01 + 30.0 * unit(rng);
                const double turned = std::acos(target / radius) * (unit(rng) < 0.5f ? -1.0 : 1.0);
                y = (2.0f * unit(rng) - 1.0f) * 40.0f;
                const double theta = turned - static_cast<double>(rate * y);
                x = static_cast<float>(radius * std::cos(theta));
                z = static_cast<float>(radius * std::sin(theta));
            }
            points.insert(points.end(), {x, y, z});
        }
        expectTwistReference(width, rate, points);
    }
    const float extremes[] = {0.0f, -0.0f, 1e-30f, -1e-45f, 0x1p-60f, 3.0f, -3.0f, 0.125f, 1e10f, -3e38f, kInf, -kInf, kNaN};
    std::vector<float> points;
    for (float x : extremes)
        for (float y : extremes)
            for (float z : extremes) points.insert(points.end(), {x, y, z});
    for (float rate : {0.2f, 0x1p20f, 3e6f, kNaN}) expectTwistReference(0.25f, rate, points);
}

// ---- Hex Tiles ----

TEST(HexTile, MortarIsHalfTheThicknessEachSideOfAnEdge) {
    // For the default circumradius 0.5 the hexagon (q, r) is centred on
    // (0.75 q, 0.8660254 (r + q/2)), its inradius 0.4330127.
    HexTileTexture3D t;
    expectValues(t, {
        {0.0f, 0.415f, 0.0f, 0.25f},  // 0.018 below the origin's top edge
        {0.0f, 0.40f, 0.0f, 0.75f},   // 0.033 below it
        {0.46f, 0.0f, 0.0f, 0.75f},   // 0.035 from both slanted edges of the corner
        {0.48f, 0.0f, 0.0f, 0.25f},
        {30.5f, 0.0f, 0.0f, 0.25f},   // the far hexagon's right corner
    });
    t.setMortarThickness(0.2f);
    expectValues(t, {{0.0f, 0.40f, 0.0f, 0.25f}, {0.0f, 0.3f, 0.0f, 0.75f}});
    t.setMortarThickness(0.05f);
    t.setTileRadius(2.0f);  // centres (3q, 3.4641016 (r + q/2)), inradius 1.7320508
    expectValues(t, {{0.75f, 0.4330127f, 0.0f, 0.75f}, {0.0f, 1.7320508f, 0.0f, 0.25f},
                     {3.0f, 1.7320508f, 0.0f, 0.75f}, {2.0f, 0.0f, 0.0f, 0.25f}});
}

TEST(HexTile, NoPositiveRadiusGivesMortarEverywhere) {
    HexTileTexture3D t;
    t.setRandomizeColors(true);
    t.setMortarThickness(0.0f);
    for (float radius : {0.0f, -0.0f, -0.5f, -1e30f, kNaN}) {
        SCOPED_TRACE(radius);
        t.setTileRadius(radius);
        expectValues(t, {{0.0f, 0.0f, 0.0f, 0.25f}, {0.75f, 0.4330127f, 0.0f, 0.25f}, {1e30f, -1e30f, 0.0f, 0.25f}});
    }
    t.setTileRadius(1e30f);  // one tile holds everything near the origin
    t.setRandomizeColors(false);
    expectValues(t, {{123.0f, -45.0f, 0.0f, 0.75f}});
}
