#include "BenchPoints.h"
#include "noise/Noise.h"

using namespace gritwell;

static void BM_PerlinNoise1D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::noise(p.x); });
}
BENCHMARK(BM_PerlinNoise1D);

static void BM_PerlinNoise2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::noise(p.x, p.y); });
}
BENCHMARK(BM_PerlinNoise2D);

static void BM_PerlinNoise3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::noise(p.x, p.y, p.z); });
}
BENCHMARK(BM_PerlinNoise3D);

static void BM_PerlinNoise4D(benchmark::State& state) {
    benchOverPoints(state,
                    [](const BenchPoint& p) { return Perlin::noise(p.x, p.y, p.z, p.x - p.y); });
}
BENCHMARK(BM_PerlinNoise4D);

static void BM_PerlinSimplex1D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::snoise(p.x); });
}
BENCHMARK(BM_PerlinSimplex1D);

static void BM_PerlinSimplex2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::snoise(p.x, p.y); });
}
BENCHMARK(BM_PerlinSimplex2D);

static void BM_PerlinSimplex3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::snoise(p.x, p.y, p.z); });
}
BENCHMARK(BM_PerlinSimplex3D);

static void BM_PerlinSimplex4D(benchmark::State& state) {
    benchOverPoints(state,
                    [](const BenchPoint& p) { return Perlin::snoise(p.x, p.y, p.z, p.x - p.y); });
}
BENCHMARK(BM_PerlinSimplex4D);

// Four octaves, as the textures use by default.
static void BM_PerlinGet2D(benchmark::State& state) {
    benchOverPoints(state,
                    [](const BenchPoint& p) { return Perlin::Get(p.x, p.y, 4, 1.0f, 1.0f); });
}
BENCHMARK(BM_PerlinGet2D);

static void BM_PerlinGet3D(benchmark::State& state) {
    benchOverPoints(state,
                    [](const BenchPoint& p) { return Perlin::Get(p.x, p.y, p.z, 4, 1.0f, 1.0f); });
}
BENCHMARK(BM_PerlinGet3D);

// One point's sum by octave count: below seven octaves the plain loop, from
// seven on the octaves as lanes of one batch-kernel step.
static void BM_PerlinGet3DOctaves(benchmark::State& state) {
    const int octaves = static_cast<int>(state.range(0));
    benchOverPoints(state,
                    [octaves](const BenchPoint& p) { return Perlin::Get(p.x, p.y, p.z, octaves, 1.0f, 1.0f); });
}
BENCHMARK(BM_PerlinGet3DOctaves)->Arg(6)->Arg(7)->Arg(8)->Arg(12)->Arg(16);

// A filter width inside the fade, so both the noise and the ramp are paid for.
static void BM_PerlinFilteredNoise2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::fnoise2D(p.x, p.y, 2.0f); });
}
BENCHMARK(BM_PerlinFilteredNoise2D);

static void BM_PerlinFilteredNoise3D(benchmark::State& state) {
    benchOverPoints(state,
                    [](const BenchPoint& p) { return Perlin::fnoise3D(p.x, p.y, p.z, 2.0f); });
}
BENCHMARK(BM_PerlinFilteredNoise3D);

static void BM_PerlinFilteredNoise4D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        return Perlin::fnoise4D(p.x, p.y, p.z, p.x - p.y, 2.0f);
    });
}
BENCHMARK(BM_PerlinFilteredNoise4D);

static void BM_PerlinFilteredSimplex2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::fsnoise2D(p.x, p.y, 2.0f); });
}
BENCHMARK(BM_PerlinFilteredSimplex2D);

static void BM_PerlinFilteredSimplex3D(benchmark::State& state) {
    benchOverPoints(state,
                    [](const BenchPoint& p) { return Perlin::fsnoise3D(p.x, p.y, p.z, 2.0f); });
}
BENCHMARK(BM_PerlinFilteredSimplex3D);

static void BM_PerlinFilteredSimplex4D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        return Perlin::fsnoise4D(p.x, p.y, p.z, p.x - p.y, 2.0f);
    });
}
BENCHMARK(BM_PerlinFilteredSimplex4D);

// The noise over the cloud as coordinate arrays, one call per pass, on each
// level the processor runs (a level it lacks is skipped): the kernel for
// every instruction set, in space (3) and in the plane (2).
static void BM_PerlinBatch(benchmark::State& state) {
    const auto level = static_cast<SimdLevel>(state.range(0));
    if (supportedSimdLevel(level) != level) {
        state.SkipWithError("this processor lacks the instruction set");
        return;
    }
    const bool space = state.range(1) == 3;
    const auto& [x, y, z] = benchAxes();
    const int n = static_cast<int>(x.size());
    std::vector<float> out(x.size());
    for (auto _ : state) {
        if (space)
            PerlinBatch::noise(level, x.data(), y.data(), z.data(), n, out.data());
        else
            PerlinBatch::noise(level, x.data(), y.data(), n, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * n);
    state.SetLabel(simdLevelName(level));
}
BENCHMARK(BM_PerlinBatch)
    ->ArgNames({"level", "dims"})
    ->ArgsProduct({{static_cast<int>(SimdLevel::kScalar), static_cast<int>(SimdLevel::kAvx2),
                    static_cast<int>(SimdLevel::kAvx512)},
                   {3, 2}});
