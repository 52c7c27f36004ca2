// Baking and rendering as the command line does them, without the files:
// a 2,048² map baked over a mesh of about a million triangles, and a 4,096²
// slice, each on one thread (through the plug-in's session) and on every
// core (a generator per thread). Items are texels; the benchmark table sets
// their cost beside the plug-in's cost per point.

#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>

#include "HostTransform.h"
#include "MapBaker.h"
#include "ParallelEvaluator.h"
#include "PluginLibrary.h"
#include "RecordFile.h"
#include "SliceRenderer.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

PluginLibrary& plugin() {
    static PluginLibrary library(GRITWELL_PLUGIN_PATH);
    return library;
}

// A rippled sheet of 707 x 707 quads (999,698 triangles), its texture
// coordinates its grid: every texel of the map is covered.
const UvMesh& millionTriangles() {
    static const UvMesh mesh = [] {
        constexpr int n = 707;
        UvMesh m;
        for (int j = 0; j <= n; ++j)
            for (int i = 0; i <= n; ++i) {
                const float u = static_cast<float>(i) / n, v = static_cast<float>(j) / n;
                m.positions.insert(m.positions.end(), {4 * u, 4 * v, 0.3f + 0.2f * std::sin(9 * u) * std::cos(7 * v)});
                m.uvs.insert(m.uvs.end(), {u, v});
            }
        for (std::uint32_t j = 0; j < n; ++j)
            for (std::uint32_t i = 0; i < n; ++i) {
                const std::uint32_t a = j * (n + 1) + i, b = a + 1, c = a + n + 1, d = c + 1;
                m.triangles.insert(m.triangles.end(), {a, b, d, a, d, c});
            }
        return m;
    }();
    return mesh;
}

int threadsOf(const benchmark::State& state) {
    return state.range(0) == 0 ? ParallelEvaluator::defaultThreads() : static_cast<int>(state.range(0));
}

void BM_Bake(benchmark::State& state, const char* generator) {
    if (!plugin().ok()) {
        state.SkipWithError(plugin().error().c_str());
        return;
    }
    constexpr int size = 2048;
    const MapBaker baker(millionTriangles(), size, 4);
    const HostTransform transform;
    ParallelEvaluator parallel(plugin(), defaultRecord(*TextureFactory::find(generator)), TransformData{}, transform,
                               threadsOf(state));
    std::vector<MapBaker::Scratch> scratch(static_cast<std::size_t>(parallel.window()));
    std::vector<std::vector<float>> slots(scratch.size());
    for (auto _ : state) {
        parallel.run(
            baker.bands(),
            [&](int band, int slot, const BatchEvaluator& evaluate) {
                slots[slot].resize(static_cast<std::size_t>(baker.bandRows(band)) * size);
                baker.bake(band, evaluate, scratch[slot], slots[slot].data());
            },
            [&](int, int slot) { benchmark::DoNotOptimize(slots[slot].data()); });
    }
    state.SetItemsProcessed(state.iterations() * size * size);
    state.counters["threads"] = parallel.threads();
}

void BM_Render(benchmark::State& state, const char* generator) {
    if (!plugin().ok()) {
        state.SkipWithError(plugin().error().c_str());
        return;
    }
    SliceView view;
    view.size = 4096;
    constexpr int kBandRows = 16;
    const HostTransform transform;
    ParallelEvaluator parallel(plugin(), defaultRecord(*TextureFactory::find(generator)), TransformData{}, transform,
                               threadsOf(state));
    std::vector<std::vector<float>> slots(static_cast<std::size_t>(parallel.window()),
                                          std::vector<float>(std::size_t(kBandRows) * view.size));
    for (auto _ : state) {
        parallel.run(
            view.size / kBandRows,
            [&](int band, int slot, const BatchEvaluator& evaluate) {
                sliceRows(evaluate, view, band * kBandRows, kBandRows, slots[slot].data());
            },
            [&](int, int slot) { benchmark::DoNotOptimize(slots[slot].data()); });
    }
    state.SetItemsProcessed(state.iterations() * view.size * view.size);
    state.counters["threads"] = parallel.threads();
}

// Argument 0 is every core.
BENCHMARK_CAPTURE(BM_Bake, Brick, "Brick")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_Bake, Voronoi, "Voronoi")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_Render, Brick, "Brick")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_Render, Voronoi, "Voronoi")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
