#include "BenchPoints.h"
#include "noise/Noise.h"

using namespace gritwell;

static void BM_Voronoi2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        return Voronoi::Get(p.x, p.y, Voronoi::First, Voronoi::Length);
    });
}
BENCHMARK(BM_Voronoi2D);

static void BM_Voronoi3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        return Voronoi::Get(p.x, p.y, p.z, Voronoi::First, Voronoi::Length);
    });
}
BENCHMARK(BM_Voronoi3D);

static void BM_Worley(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        return Worley::Get(p.x, p.y, p.z, Worley::Difference21, Worley::Length);
    });
}
BENCHMARK(BM_Worley);

static void BM_WorleyF1(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        return Worley::Get(p.x, p.y, p.z, Worley::First, Worley::Length);
    });
}
BENCHMARK(BM_WorleyF1);

static void BM_ARMan2D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        const float P[2] = {p.x, p.y};
        float f1, f2, pos1[2], pos2[2];
        ARMan::voronoi_f1f2_2d(P, 1.0f, f1, pos1, f2, pos2);
        return f2 - f1;
    });
}
BENCHMARK(BM_ARMan2D);

static void BM_ARMan3D(benchmark::State& state) {
    benchOverPoints(state, [](const BenchPoint& p) {
        const float P[3] = {p.x, p.y, p.z};
        float f1, f2, pos1[3], pos2[3];
        ARMan::voronoi_f1f2_3d(P, 1.0f, f1, pos1, f2, pos2);
        return f2 - f1;
    });
}
BENCHMARK(BM_ARMan3D);
