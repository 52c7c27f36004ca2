// The generators' pure evaluators, one point per call, at their defaults and
// on their expensive paths.

#include "BenchPoints.h"
#include "textures/CellTexture3D.h"
#include "textures/CheckerboardTexture3D.h"
#include "textures/FBMTexture3D.h"
#include "textures/PerlinTexture3D.h"
#include "textures/SimplexTexture3D.h"
#include "textures/SpheresTexture3D.h"
#include "textures/TurbulenceTexture3D.h"
#include "textures/VoronoiTexture3D.h"

using namespace gritwell;

static void BM_Checkerboard(benchmark::State& state) { benchEvaluate<CheckerboardTexture3D>(state, {}); }
BENCHMARK(BM_Checkerboard);

static void BM_CheckerboardRandomized(benchmark::State& state) {
    CheckerboardTexture3D::Record r;
    r.randomizeColors = 1;
    benchEvaluate<CheckerboardTexture3D>(state, r);
}
BENCHMARK(BM_CheckerboardRandomized);

static void BM_CheckerboardDepth8(benchmark::State& state) {
    CheckerboardTexture3D::Record r;
    r.depth = 8;
    benchEvaluate<CheckerboardTexture3D>(state, r);
}
BENCHMARK(BM_CheckerboardDepth8);

static void BM_Spheres(benchmark::State& state) { benchEvaluate<SpheresTexture3D>(state, {}); }
BENCHMARK(BM_Spheres);

static void BM_SpheresStaggeredHollow(benchmark::State& state) {
    SpheresTexture3D::Record r;
    r.staggered = 1;
    r.hollowness = 0.5f;
    benchEvaluate<SpheresTexture3D>(state, r);
}
BENCHMARK(BM_SpheresStaggeredHollow);

static void BM_PerlinNoise(benchmark::State& state) { benchEvaluate<PerlinTexture3D>(state, {}); }
BENCHMARK(BM_PerlinNoise);

static void BM_PerlinNoise8Octaves(benchmark::State& state) {
    PerlinTexture3D::Record r;
    r.octaves = 8;
    benchEvaluate<PerlinTexture3D>(state, r);
}
BENCHMARK(BM_PerlinNoise8Octaves);

static void BM_FBM(benchmark::State& state) { benchEvaluate<FBMTexture3D>(state, {}); }
BENCHMARK(BM_FBM);

static void BM_Turbulence(benchmark::State& state) { benchEvaluate<TurbulenceTexture3D>(state, {}); }
BENCHMARK(BM_Turbulence);

static void BM_Simplex(benchmark::State& state) { benchEvaluate<SimplexTexture3D>(state, {}); }
BENCHMARK(BM_Simplex);

static void BM_Voronoi(benchmark::State& state) { benchEvaluate<VoronoiTexture3D>(state, {}); }
BENCHMARK(BM_Voronoi);

static void BM_VoronoiPlanar(benchmark::State& state) { benchEvaluate<VoronoiTexture3D>(state, {}, 4); }
BENCHMARK(BM_VoronoiPlanar);

static void BM_CellNoiseTexture(benchmark::State& state) { benchEvaluate<CellTexture3D>(state, {}); }
BENCHMARK(BM_CellNoiseTexture);
