// The geometric generators' pure evaluators, one point per call, at their
// defaults and on their expensive paths.

#include "BenchPoints.h"
#include "textures/CorrugatedTexture3D.h"
#include "textures/GradientTexture3D.h"
#include "textures/GridTexture3D.h"
#include "textures/NestedShapesTexture3D.h"
#include "textures/SpiralTexture3D.h"
#include "textures/StripesTexture3D.h"
#include "textures/ZigzagTexture3D.h"

using namespace gritwell;

// ---- Corrugated -------------------------------------------------------------

static void BM_Corrugated(benchmark::State& state) { benchEvaluate<CorrugatedTexture3D>(state, {}); }
BENCHMARK(BM_Corrugated);

static void BM_CorrugatedPerlinNoise(benchmark::State& state) {
    CorrugatedTexture3D::Record r;
    r.style = CorrugatedTexture3D::PerlinNoise;
    benchEvaluate<CorrugatedTexture3D>(state, r);
}
BENCHMARK(BM_CorrugatedPerlinNoise);

static void BM_CorrugatedRibbon(benchmark::State& state) {
    CorrugatedTexture3D::Record r;
    r.style = CorrugatedTexture3D::Ribbon;
    benchEvaluate<CorrugatedTexture3D>(state, r);
}
BENCHMARK(BM_CorrugatedRibbon);

// ---- Nested Shapes ----------------------------------------------------------

static void BM_NestedShapes(benchmark::State& state) { benchEvaluate<NestedShapesTexture3D>(state, {}); }
BENCHMARK(BM_NestedShapes);

static void BM_NestedShapesCube(benchmark::State& state) {
    NestedShapesTexture3D::Record r;
    r.shapeType = NestedShapesTexture3D::Cube;
    benchEvaluate<NestedShapesTexture3D>(state, r);
}
BENCHMARK(BM_NestedShapesCube);

// ---- Stripes ----------------------------------------------------------------

static void BM_Stripes(benchmark::State& state) { benchEvaluate<StripesTexture3D>(state, {}); }
BENCHMARK(BM_Stripes);

static void BM_StripesPerlinNoiseRandomized(benchmark::State& state) {
    StripesTexture3D::Record r;
    r.stripeStyle = StripesTexture3D::PerlinNoise;
    r.randomizeColors = 1;
    benchEvaluate<StripesTexture3D>(state, r);
}
BENCHMARK(BM_StripesPerlinNoiseRandomized);

static void BM_StripesSine(benchmark::State& state) {
    StripesTexture3D::Record r;
    r.stripeStyle = StripesTexture3D::Sine;
    benchEvaluate<StripesTexture3D>(state, r);
}
BENCHMARK(BM_StripesSine);

// ---- Zigzag -----------------------------------------------------------------

static void BM_Zigzag(benchmark::State& state) { benchEvaluate<ZigzagTexture3D>(state, {}); }
BENCHMARK(BM_Zigzag);

static void BM_ZigzagRandomized(benchmark::State& state) {
    ZigzagTexture3D::Record r;
    r.randomizeColors = 1;
    benchEvaluate<ZigzagTexture3D>(state, r);
}
BENCHMARK(BM_ZigzagRandomized);

// ---- Gradient ---------------------------------------------------------------

static void BM_Gradient(benchmark::State& state) { benchEvaluate<GradientTexture3D>(state, {}); }
BENCHMARK(BM_Gradient);

// ---- Grid -------------------------------------------------------------------

static void BM_Grid(benchmark::State& state) { benchEvaluate<GridTexture3D>(state, {}); }
BENCHMARK(BM_Grid);

static void BM_GridRandomized(benchmark::State& state) {
    GridTexture3D::Record r;
    r.randomizeColors = 1;
    benchEvaluate<GridTexture3D>(state, r);
}
BENCHMARK(BM_GridRandomized);

// ---- Spiral -----------------------------------------------------------------

static void BM_Spiral(benchmark::State& state) { benchEvaluate<SpiralTexture3D>(state, {}); }
BENCHMARK(BM_Spiral);

static void BM_SpiralPlanar(benchmark::State& state) { benchEvaluate<SpiralTexture3D>(state, {}, 4); }
BENCHMARK(BM_SpiralPlanar);
