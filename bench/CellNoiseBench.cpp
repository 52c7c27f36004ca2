#include "BenchPoints.h"
#include "noise/Noise.h"

using namespace gritwell;

static void BM_CellNoise1D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return CellNoise::cellNoise(p.x); });
}
BENCHMARK(BM_CellNoise1D);

static void BM_CellNoise2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return CellNoise::cellNoise(p.x, p.y); });
}
BENCHMARK(BM_CellNoise2D);

static void BM_CellNoise3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return CellNoise::cellNoise(p.x, p.y, p.z); });
}
BENCHMARK(BM_CellNoise3D);
