// The noise-shaping generators' pure evaluators, one point per call, at
// their defaults and on their expensive paths.

#include "BenchPoints.h"
#include "textures/CamouflageTexture3D.h"
#include "textures/DentedTexture3D.h"
#include "textures/ErodedTexture3D.h"
#include "textures/GraniteTexture3D.h"
#include "textures/PsychedelicTexture3D.h"
#include "textures/SimpleMarbleTexture3D.h"
#include "textures/SpeckledStoneTexture3D.h"

using namespace gritwell;

static void BM_SimpleMarble(benchmark::State& state) { benchEvaluate<SimpleMarbleTexture3D>(state, {}); }
BENCHMARK(BM_SimpleMarble);

static void BM_SimpleMarblePlanar(benchmark::State& state) { benchEvaluate<SimpleMarbleTexture3D>(state, {}, 4); }
BENCHMARK(BM_SimpleMarblePlanar);

static void BM_SimpleMarble12Octaves(benchmark::State& state) {
    SimpleMarbleTexture3D::Record r;
    r.octaves = 12;
    benchEvaluate<SimpleMarbleTexture3D>(state, r);
}
BENCHMARK(BM_SimpleMarble12Octaves);

// A damaged record's octave count: the loop ends once the frequency overflows.
static void BM_SimpleMarbleHugeOctaveCount(benchmark::State& state) {
    SimpleMarbleTexture3D::Record r;
    r.octaves = 2147483647;
    benchEvaluate<SimpleMarbleTexture3D>(state, r);
}
BENCHMARK(BM_SimpleMarbleHugeOctaveCount);

static void BM_Psychedelic(benchmark::State& state) { benchEvaluate<PsychedelicTexture3D>(state, {}); }
BENCHMARK(BM_Psychedelic);

static void BM_PsychedelicPlanar(benchmark::State& state) { benchEvaluate<PsychedelicTexture3D>(state, {}, 4); }
BENCHMARK(BM_PsychedelicPlanar);

static void BM_SpeckledStone(benchmark::State& state) { benchEvaluate<SpeckledStoneTexture3D>(state, {}); }
BENCHMARK(BM_SpeckledStone);

static void BM_SpeckledStonePlanar(benchmark::State& state) { benchEvaluate<SpeckledStoneTexture3D>(state, {}, 4); }
BENCHMARK(BM_SpeckledStonePlanar);

// Eight 3-D noises per point: the warps and lookups of both layers.
static void BM_Camouflage(benchmark::State& state) { benchEvaluate<CamouflageTexture3D>(state, {}); }
BENCHMARK(BM_Camouflage);

static void BM_CamouflagePlanar(benchmark::State& state) { benchEvaluate<CamouflageTexture3D>(state, {}, 4); }
BENCHMARK(BM_CamouflagePlanar);

static void BM_Erosion(benchmark::State& state) { benchEvaluate<ErodedTexture3D>(state, {}); }
BENCHMARK(BM_Erosion);

static void BM_ErosionPlanar(benchmark::State& state) { benchEvaluate<ErodedTexture3D>(state, {}, 4); }
BENCHMARK(BM_ErosionPlanar);

static void BM_Dents(benchmark::State& state) { benchEvaluate<DentedTexture3D>(state, {}); }
BENCHMARK(BM_Dents);

static void BM_DentsPlanar(benchmark::State& state) { benchEvaluate<DentedTexture3D>(state, {}, 4); }
BENCHMARK(BM_DentsPlanar);

static void BM_Granite(benchmark::State& state) { benchEvaluate<GraniteTexture3D>(state, {}); }
BENCHMARK(BM_Granite);

static void BM_GranitePlanar(benchmark::State& state) { benchEvaluate<GraniteTexture3D>(state, {}, 4); }
BENCHMARK(BM_GranitePlanar);

// A damaged record's octave count: the loop ends once the frequency overflows
// and the sum stops changing, some 130 layers at the default frequency.
static void BM_GraniteHugeOctaveCount(benchmark::State& state) {
    GraniteTexture3D::Record r;
    r.octaves = 2147483647;
    benchEvaluate<GraniteTexture3D>(state, r);
}
BENCHMARK(BM_GraniteHugeOctaveCount);
