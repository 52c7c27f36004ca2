// The pattern and material generators' pure evaluators, one point per call,
// at their defaults and on their expensive paths.

#include "BenchPoints.h"
#include "textures/BrickTexture3D.h"
#include "textures/CheetahTexture3D.h"
#include "textures/HexTileTexture3D.h"
#include "textures/HoundstoothTexture3D.h"
#include "textures/PenroseRhombusTexture3D.h"
#include "textures/PlaidTexture3D.h"
#include "textures/ScalesTexture3D.h"
#include "textures/SnakeskinTexture3D.h"
#include "textures/VoronoiTileTexture3D.h"
#include "textures/WeaveTexture3D.h"
#include "textures/WoodTexture3D.h"

using namespace gritwell;

// ---- Brick ----

static void BM_Brick(benchmark::State& state) { benchEvaluate<BrickTexture3D>(state, {}); }
BENCHMARK(BM_Brick);

static void BM_BrickRoundedCorners(benchmark::State& state) {
    BrickTexture3D::Record r;
    r.roundedCornersEnabled = 1;
    benchEvaluate<BrickTexture3D>(state, r);
}
BENCHMARK(BM_BrickRoundedCorners);

static void BM_BrickRandomizedJittered(benchmark::State& state) {
    BrickTexture3D::Record r;
    r.randomizeColors = 1;
    r.rowOffsetVariabilityEnabled = 1;
    benchEvaluate<BrickTexture3D>(state, r);
}
BENCHMARK(BM_BrickRandomizedJittered);

static void BM_BrickHerringbone(benchmark::State& state) {
    BrickTexture3D::Record r;
    r.pattern = BrickTexture3D::HERRINGBONE;
    benchEvaluate<BrickTexture3D>(state, r);
}
BENCHMARK(BM_BrickHerringbone);

static void BM_BrickHerringboneRoundedRandomized(benchmark::State& state) {
    BrickTexture3D::Record r;
    r.pattern = BrickTexture3D::HERRINGBONE;
    r.roundedCornersEnabled = 1;
    r.randomizeColors = 1;
    benchEvaluate<BrickTexture3D>(state, r);
}
BENCHMARK(BM_BrickHerringboneRoundedRandomized);

// ---- Wood ----

static void BM_Wood(benchmark::State& state) { benchEvaluate<WoodTexture3D>(state, {}); }
BENCHMARK(BM_Wood);

static void BM_WoodEightOctaves(benchmark::State& state) {
    WoodTexture3D::Record r;
    r.octaves = 8;
    benchEvaluate<WoodTexture3D>(state, r);
}
BENCHMARK(BM_WoodEightOctaves);

// A damaged record's octave count: bounded by the sum's early exit.
static void BM_WoodHugeOctaves(benchmark::State& state) {
    WoodTexture3D::Record r;
    r.octaves = 2147483647;
    benchEvaluate<WoodTexture3D>(state, r);
}
BENCHMARK(BM_WoodHugeOctaves);

// ---- Plaid ----

static void BM_Plaid(benchmark::State& state) { benchEvaluate<PlaidTexture3D>(state, {}); }
BENCHMARK(BM_Plaid);

// ---- Scales ----

static void BM_Scales(benchmark::State& state) { benchEvaluate<ScalesTexture3D>(state, {}); }
BENCHMARK(BM_Scales);

// Five cell hashes per point.
static void BM_ScalesRandomizedColors(benchmark::State& state) {
    ScalesTexture3D::Record r;
    r.baseRandomizeColors = 1;
    r.bodyRandomizeColors = 1;
    r.edgeRandomizeColors = 1;
    benchEvaluate<ScalesTexture3D>(state, r);
}
BENCHMARK(BM_ScalesRandomizedColors);

// Everything on: two gradient noises, five hashes, the circle outline and
// both shadings.
static void BM_ScalesWobbledShadedCircles(benchmark::State& state) {
    ScalesTexture3D::Record r;
    r.scaleShape = ScalesTexture3D::SCALE_SHAPE_NORMAL;
    r.shadingAlongEnabled = 1;
    r.shadingAcrossEnabled = 1;
    r.scaleVariabilityEnabled = 1;
    r.baseRandomizeColors = 1;
    r.bodyRandomizeColors = 1;
    r.edgeRandomizeColors = 1;
    benchEvaluate<ScalesTexture3D>(state, r);
}
BENCHMARK(BM_ScalesWobbledShadedCircles);

// ---- Weave ----

static void BM_Weave(benchmark::State& state) { benchEvaluate<WeaveTexture3D>(state, {}); }
BENCHMARK(BM_Weave);

static void BM_WeaveRandomized(benchmark::State& state) {
    WeaveTexture3D::Record r;
    r.horizontalRandomize = 1;
    r.verticalRandomize = 1;
    benchEvaluate<WeaveTexture3D>(state, r);
}
BENCHMARK(BM_WeaveRandomized);

static void BM_WeaveHerringbone(benchmark::State& state) {
    WeaveTexture3D::Record r;
    r.pattern = WeaveTexture3D::WEAVE_HERRINGBONE;
    benchEvaluate<WeaveTexture3D>(state, r);
}
BENCHMARK(BM_WeaveHerringbone);

static void BM_WeaveHerringboneRandomized(benchmark::State& state) {
    WeaveTexture3D::Record r;
    r.pattern = WeaveTexture3D::WEAVE_HERRINGBONE;
    r.horizontalRandomize = 1;
    r.verticalRandomize = 1;
    benchEvaluate<WeaveTexture3D>(state, r);
}
BENCHMARK(BM_WeaveHerringboneRandomized);

// ---- Penrose Rhombus ----

static void BM_PenroseRhombus(benchmark::State& state) { benchEvaluate<PenroseRhombusTexture3D>(state, {}); }
BENCHMARK(BM_PenroseRhombus);

static void BM_PenroseRhombusRandomized(benchmark::State& state) {
    PenroseRhombusTexture3D::Record r;
    r.skinnyRandomize = 1;
    r.fatRandomize = 1;
    benchEvaluate<PenroseRhombusTexture3D>(state, r);
}
BENCHMARK(BM_PenroseRhombusRandomized);

// ---- Snakeskin ----

static void BM_Snakeskin(benchmark::State& state) { benchEvaluate<SnakeskinTexture3D>(state, {}); }
BENCHMARK(BM_Snakeskin);

static void BM_SnakeskinSharpCorners(benchmark::State& state) {
    SnakeskinTexture3D::Record r;
    r.roundCornersEnabled = 0;
    benchEvaluate<SnakeskinTexture3D>(state, r);
}
BENCHMARK(BM_SnakeskinSharpCorners);

static void BM_SnakeskinRandomized(benchmark::State& state) {
    SnakeskinTexture3D::Record r;
    r.randomizeColors = 1;
    benchEvaluate<SnakeskinTexture3D>(state, r);
}
BENCHMARK(BM_SnakeskinRandomized);

static void BM_SnakeskinWobbled(benchmark::State& state) {
    SnakeskinTexture3D::Record r;
    r.scaleVariabilityEnabled = 1;
    benchEvaluate<SnakeskinTexture3D>(state, r);
}
BENCHMARK(BM_SnakeskinWobbled);

static void BM_SnakeskinScaleNoiseFourOctaves(benchmark::State& state) {
    SnakeskinTexture3D::Record r;
    r.scaleNoiseAdd = 1;
    r.scaleNoiseOctaves = 4;
    r.scaleNoiseGain = 0.5f;
    benchEvaluate<SnakeskinTexture3D>(state, r);
}
BENCHMARK(BM_SnakeskinScaleNoiseFourOctaves);

static void BM_SnakeskinEverything(benchmark::State& state) {
    SnakeskinTexture3D::Record r;
    r.randomizeColors = 1;
    r.scaleVariabilityEnabled = 1;
    r.scaleNoiseAdd = 1;
    r.scaleNoiseOctaves = 4;
    r.scaleNoiseGain = 0.5f;
    benchEvaluate<SnakeskinTexture3D>(state, r);
}
BENCHMARK(BM_SnakeskinEverything);

// A damaged record's octave count at the default gain and lacunarity: the
// sum turns NaN once the position overflows, and stops there.
static void BM_SnakeskinHugeOctaves(benchmark::State& state) {
    SnakeskinTexture3D::Record r;
    r.scaleNoiseAdd = 1;
    r.scaleNoiseOctaves = 2147483647;
    benchEvaluate<SnakeskinTexture3D>(state, r);
}
BENCHMARK(BM_SnakeskinHugeOctaves);

// ---- Voronoi Tiles ----

static void BM_VoronoiTiles(benchmark::State& state) { benchEvaluate<VoronoiTileTexture3D>(state, {}); }
BENCHMARK(BM_VoronoiTiles);

static void BM_VoronoiTilesRandomizedColors(benchmark::State& state) {
    VoronoiTileTexture3D::Record r;
    r.cellRandomizeColors = 1;
    benchEvaluate<VoronoiTileTexture3D>(state, r);
}
BENCHMARK(BM_VoronoiTilesRandomizedColors);

// Both fractal sums, four octaves each, on top of the feature search.
static void BM_VoronoiTilesBothNoises(benchmark::State& state) {
    VoronoiTileTexture3D::Record r;
    r.cellRandomizeColors = 1;
    r.cellAddNoise = 1;
    r.boundaryAddNoise = 1;
    benchEvaluate<VoronoiTileTexture3D>(state, r);
}
BENCHMARK(BM_VoronoiTilesBothNoises);

// A damaged record's octave counts: bounded by the sum's early exit.
static void BM_VoronoiTilesHugeOctaves(benchmark::State& state) {
    VoronoiTileTexture3D::Record r;
    r.cellAddNoise = 1;
    r.boundaryAddNoise = 1;
    r.cellOctaves = 2147483647;
    r.boundaryOctaves = 2147483647;
    benchEvaluate<VoronoiTileTexture3D>(state, r);
}
BENCHMARK(BM_VoronoiTilesHugeOctaves);

// ---- HexTile ----

static void BM_HexTile(benchmark::State& state) { benchEvaluate<HexTileTexture3D>(state, {}); }
BENCHMARK(BM_HexTile);

static void BM_HexTileRandomizedColors(benchmark::State& state) {
    HexTileTexture3D::Record r;
    r.randomizeColors = 1;
    benchEvaluate<HexTileTexture3D>(state, r);
}
BENCHMARK(BM_HexTileRandomizedColors);

// ---- Houndstooth ----

static void BM_Houndstooth(benchmark::State& state) { benchEvaluate<HoundstoothTexture3D>(state, {}); }
BENCHMARK(BM_Houndstooth);

static void BM_HoundstoothRandomizedColors(benchmark::State& state) {
    HoundstoothTexture3D::Record r;
    r.randomizeColors = 1;
    benchEvaluate<HoundstoothTexture3D>(state, r);
}
BENCHMARK(BM_HoundstoothRandomizedColors);

// ---- Cheetah ----

// 27 cells of two cell hashes each, one gradient noise and one more hash.
static void BM_Cheetah(benchmark::State& state) { benchEvaluate<CheetahTexture3D>(state, {}); }
BENCHMARK(BM_Cheetah);

static void BM_CheetahPlanar(benchmark::State& state) { benchEvaluate<CheetahTexture3D>(state, {}, 4); }
BENCHMARK(BM_CheetahPlanar);
