// Every generator at its defaults, through the plug-in's session functions
// exactly as the host calls them: ns per point of continueSession.

#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "BenchPoints.h"
#include "PluginLibrary.h"
#include "RecordFile.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

PluginLibrary& plugin() {
    static PluginLibrary library(GRITWELL_PLUGIN_PATH);
    return library;
}

void BM_ContinueSession(benchmark::State& state, const GeneratorInfo* generator) {
    if (!plugin().ok()) {
        state.SkipWithError(plugin().error().c_str());
        return;
    }
    const auto& cloud = benchPoints();
    std::vector<float> points;
    for (const BenchPoint& p : cloud) points.insert(points.end(), {p.x, p.y, p.z});
    const int n = static_cast<int>(cloud.size());
    std::vector<float> out(n);
    PluginSession session(plugin(), defaultRecord(*generator), 2);
    for (auto _ : state) {
        session.evaluate(points.data(), n, out.data());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

// The host's block at an address `shift` bytes past float alignment (its
// output block too): what the plug-in's aligned copies cost against a block
// it reads in place.
void BM_ShiftedBlock(benchmark::State& state, const GeneratorInfo* generator) {
    if (!plugin().ok()) {
        state.SkipWithError(plugin().error().c_str());
        return;
    }
    const auto shift = static_cast<std::size_t>(state.range(0));
    const auto& cloud = benchPoints();
    const int n = static_cast<int>(cloud.size());
    std::vector<char> block(shift + sizeof n + 3 * sizeof(float) * cloud.size());
    std::vector<char> out(shift + sizeof(float) * cloud.size());
    std::memcpy(block.data() + shift, &n, sizeof n);
    for (std::size_t i = 0; i < cloud.size(); ++i) {
        const float p[3] = {cloud[i].x, cloud[i].y, cloud[i].z};
        std::memcpy(block.data() + shift + sizeof n + sizeof p * i, p, sizeof p);
    }
    PluginSession session(plugin(), defaultRecord(*generator), 2);
    for (auto _ : state) {
        plugin().continueSession(nullptr, 0.0, out.data() + shift, 0, block.data() + shift, 0, nullptr);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

const int kRegistered = [] {
    // A cheap generator, where a copy shows most, and a dearer one.
    for (const char* name : {"Checkerboard", "Perlin Noise"})
        if (const GeneratorInfo* g = TextureFactory::find(name))
            benchmark::RegisterBenchmark(("ShiftedBlock/" + std::string(name)).c_str(), BM_ShiftedBlock, g)
                ->Arg(0)
                ->Arg(1);
    for (const GeneratorInfo* g : TextureFactory::hostGenerators())
        benchmark::RegisterBenchmark(("ContinueSession/" + std::string(g->name)).c_str(), BM_ContinueSession, g);
    return 0;
}();

}  // namespace
