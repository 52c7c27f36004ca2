// Every generator at its defaults, through the plug-in's session functions
// exactly as the host calls them: ns per point of continueSession.

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

const int kRegistered = [] {
    for (const GeneratorInfo* g : TextureFactory::hostGenerators())
        benchmark::RegisterBenchmark(("ContinueSession/" + std::string(g->name)).c_str(), BM_ContinueSession, g);
    return 0;
}();

}  // namespace
