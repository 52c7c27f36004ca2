// The figures of docs/benchmarks.md: every generator through the plug-in's
// session functions at its defaults and on records that take its costlier
// paths, the 3-D lattice noise on its own, and libnoise's Perlin module as the
// peer measured in the same run. tools/bench/table.sh runs it and writes the
// table.

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <libnoise/noise.h>

#include "BenchPoints.h"
#include "PluginLibrary.h"
#include "RecordVariants.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

PluginLibrary& plugin() {
    static PluginLibrary library(GRITWELL_PLUGIN_PATH);
    return library;
}

std::vector<float> packedPoints() {
    std::vector<float> points;
    for (const BenchPoint& p : benchPoints()) points.insert(points.end(), {p.x, p.y, p.z});
    return points;
}

// The host's flags word: 2, its default, evaluates in space; 12 in the plane.
constexpr int kSpace = 2;
constexpr int kPlane = 12;

// ns per point of continueSession over the whole cloud in one call.
void BM_Session(benchmark::State& state, const GeneratorInfo* generator, int variant, int flags) {
    if (!plugin().ok()) {
        state.SkipWithError(plugin().error().c_str());
        return;
    }
    const std::vector<float> points = packedPoints();
    const int n = static_cast<int>(points.size() / 3);
    std::vector<float> out(n);
    const std::vector<char> record = RecordVariants::record(*generator, variant);
    PluginSession session(plugin(), std::vector<unsigned char>(record.begin(), record.begin() + generator->recordSize),
                          flags);
    for (auto _ : state) {
        session.evaluate(points.data(), n, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * n);
}

// ns per point of continueSessionOne, the host's call for one point at a
// time, over the same cloud.
void BM_SessionOne(benchmark::State& state, const GeneratorInfo* generator, int flags) {
    if (!plugin().ok()) {
        state.SkipWithError(plugin().error().c_str());
        return;
    }
    std::vector<float> points = packedPoints();
    const int n = static_cast<int>(points.size() / 3);
    const std::vector<char> record = RecordVariants::record(*generator, 0);
    PluginSession session(plugin(), std::vector<unsigned char>(record.begin(), record.begin() + generator->recordSize),
                          flags);
    for (auto _ : state) {
        float sum = 0.0f;
        for (int i = 0; i < n; ++i)
            sum += plugin().continueSessionOne(reinterpret_cast<char*>(points.data() + 3 * i), 0.0, nullptr, 0,
                                               nullptr, 0, nullptr);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

// One point per call of a generator host sessions never open.
void BM_One(benchmark::State& state, const GeneratorInfo* generator, int flags) {
    const std::vector<float> points = packedPoints();
    const int n = static_cast<int>(points.size() / 3);
    TexturePtr t(generator->create());
    t->setStateFromDescription(RecordVariants::record(*generator, 0).data());
    t->setFlags(flags);
    for (auto _ : state) {
        float sum = 0.0f;
        for (int i = 0; i < n; ++i) sum += (*t)(points.data() + 3 * i);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

// Generators host sessions never open: the same batch call, in-process.
void BM_Batch(benchmark::State& state, const GeneratorInfo* generator, int variant, int flags) {
    const std::vector<float> points = packedPoints();
    const int n = static_cast<int>(points.size() / 3);
    std::vector<float> out(n);
    TexturePtr t(generator->create());
    t->setStateFromDescription(RecordVariants::record(*generator, variant).data());
    t->setFlags(flags);
    for (auto _ : state) {
        (*t)(points.data(), n, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void BM_PerlinNoise3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) { return Perlin::noise(p.x, p.y, p.z); });
}

// The same noise over the cloud as three coordinate arrays in one call, on
// the instruction set --simd leaves (the best this processor has).
void BM_PerlinBatch3D(benchmark::State& state) {
    const auto& [x, y, z] = benchAxes();
    const int n = static_cast<int>(x.size());
    std::vector<float> out(x.size());
    for (auto _ : state) {
        PerlinBatch::noise(x.data(), y.data(), z.data(), n, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void BM_LibnoisePerlin(benchmark::State& state) {
    noise::module::Perlin perlin;
    perlin.SetOctaveCount(static_cast<int>(state.range(0)));
    benchOverPoints(state, [&perlin](const BenchPoint& p) { return perlin.GetValue(p.x, p.y, p.z); });
}

void registerBenchmarks() {
    benchmark::RegisterBenchmark("Primitive/Perlin::noise(x,y,z)", BM_PerlinNoise3D);
    benchmark::RegisterBenchmark("Primitive/PerlinBatch::noise", BM_PerlinBatch3D);
    benchmark::RegisterBenchmark("Peer/libnoise Perlin", BM_LibnoisePerlin)->Arg(1)->Arg(6);
    for (const GeneratorInfo* g : TextureFactory::allGenerators()) {
        const bool host = TextureFactory::isHostGenerator(*g);
        const std::string prefix = std::string(host ? "Session/" : "Batch/") + std::string(g->name) + "/";
        const auto bench = host ? BM_Session : BM_Batch;
        for (int v = 0; v < RecordVariants::kCount; ++v) {
            const std::string name = prefix + std::string(RecordVariants::label(v));
            benchmark::RegisterBenchmark(name.c_str(), bench, g, v, kSpace);
        }
        // The defaults again with the host's planar flags.
        benchmark::RegisterBenchmark((prefix + "planar").c_str(), bench, g, 0, kPlane);
        // The defaults one point per call.
        benchmark::RegisterBenchmark((prefix + "one point").c_str(), host ? BM_SessionOne : BM_One, g, kSpace);
    }
}

}  // namespace

// Google Benchmark's arguments, and --simd=LEVEL (scalar, avx2 or avx512) to
// hold this process and the plug-in's sessions to one instruction set; the
// report's "simd" says which level ran.
int main(int argc, char** argv) {
    constexpr std::string_view kSimd = "--simd=";
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (!arg.starts_with(kSimd)) {
            argv[kept++] = argv[i];
            continue;
        }
        const std::optional<SimdLevel> level = simdLevelFromName(arg.substr(kSimd.size()));
        if (!level) {
            std::fprintf(stderr, "%s: --simd must be scalar, avx2 or avx512, not '%s'\n", argv[0],
                         argv[i] + kSimd.size());
            return 2;
        }
        PluginLibrary::requestSimdLevel(*level);
    }
    argc = kept;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::AddCustomContext("compiler", "GCC " __VERSION__);
    benchmark::AddCustomContext("flags", GRITWELL_BENCH_FLAGS);
    benchmark::AddCustomContext("simd", simdLevelName(simdLevel()));
    registerBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
