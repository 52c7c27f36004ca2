// libgritwell's batch call over a million points, the figure the Python
// module's call is held to (tools/bench/python_table.py).

#include <gritwell/gritwell.h>

#include <benchmark/benchmark.h>

#include "MillionPoints.h"

namespace {

void evaluateMillion(benchmark::State& state, const char* name) {
    static const std::vector<float> xyz = millionPoints();
    const gritwell::Texture texture = gritwell::Texture::fromName(name);
    const std::size_t n = xyz.size() / 3;
    std::vector<float> out(n);
    for (auto _ : state) {
        if (!texture.evaluate(xyz.data(), n, out.data())) state.SkipWithError("evaluate failed");
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(n));
}

}  // namespace

BENCHMARK_CAPTURE(evaluateMillion, Brick, "Brick")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(evaluateMillion, Voronoi, "Voronoi")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(evaluateMillion, FBM, "FBM")->Unit(benchmark::kMillisecond);
