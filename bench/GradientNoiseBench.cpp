#include "BenchPoints.h"
#include "noise/Noise.h"

using namespace gritwell;

static void BM_ImprovedPerlin3D(benchmark::State& state) {
    const ImprovedPerlin perlin;
    benchOverPoints(state, [&](const BenchPoint& p) { return perlin.noise3(p.x, p.y, p.z); });
}
BENCHMARK(BM_ImprovedPerlin3D);

static void BM_StbPerlin3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return StbPerlin::noise3(p.x, p.y, p.z); });
}
BENCHMARK(BM_StbPerlin3D);

static void BM_Simplex2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Simplex::noise(p.x, p.y); });
}
BENCHMARK(BM_Simplex2D);

static void BM_Simplex3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Simplex::noise(p.x, p.y, p.z); });
}
BENCHMARK(BM_Simplex3D);

static void BM_Simplex4D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Simplex::noise(p.x, p.y, p.z, p.x - p.y); });
}
BENCHMARK(BM_Simplex4D);

static void BM_WaveletNoise3D(benchmark::State& state) {
    WaveletNoise::noise(0.0f, 0.0f, 0.0f);  // builds the tile outside the timing
    benchOverPoints(state, [](const BenchPoint& p) { return WaveletNoise::noise(p.x, p.y, p.z); });
}
BENCHMARK(BM_WaveletNoise3D);
