#pragma once
// A fixed cloud of points for the benchmarks: the same every run.

#include <cstddef>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

struct BenchPoint {
    float x, y, z;
};

// 4096 points in [-8, 8)^3 from a fixed seed: small enough to stay in cache,
// varied enough that branches cannot be learnt.
inline const std::vector<BenchPoint>& benchPoints() {
    static const std::vector<BenchPoint> points = [] {
        std::mt19937 rng(12345);
        std::uniform_real_distribution<float> coord(-8.0f, 8.0f);
        std::vector<BenchPoint> p(4096);
        for (BenchPoint& q : p) q = {coord(rng), coord(rng), coord(rng)};
        return p;
    }();
    return points;
}

// The cloud as three coordinate arrays, for the calls over arrays.
struct BenchAxes {
    std::vector<float> x, y, z;
};

inline const BenchAxes& benchAxes() {
    static const BenchAxes axes = [] {
        BenchAxes a;
        for (const BenchPoint& p : benchPoints()) {
            a.x.push_back(p.x);
            a.y.push_back(p.y);
            a.z.push_back(p.z);
        }
        return a;
    }();
    return axes;
}

// Times f(point) over the cloud, one point per iteration.
template <class F>
void benchOverPoints(benchmark::State& state, F&& f) {
    const auto& pts = benchPoints();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f(pts[i]));
        i = (i + 1) & (pts.size() - 1);
    }
    state.SetItemsProcessed(state.iterations());
}

// Times a generator's pure evaluator on a record, one point per call.
template <class Generator>
void benchEvaluate(benchmark::State& state, const typename Generator::Record& r, int flags = 2) {
    benchOverPoints(state, [&r, flags](const BenchPoint& p) { return Generator::evaluate(r, flags, p.x, p.y, p.z); });
}
