#include "noise/ARMan.h"

// GCC 12's AVX-512 intrinsics start some results from a deliberately
// undefined register and then warn that it is, or may be, used uninitialised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"
#include "noise/CellNoise.h"
#include "noise/DoubleLanes.h"

namespace gritwell::ARMan {

namespace {

constexpr float kFarAway = 3.4028235e38f;  // the largest float

// The centre of v's cell: cell index plus one half, summed in double.
float cellCentre(float v) { return static_cast<float>(static_cast<double>(cellIndex(v)) + 0.5); }

// A feature coordinate: the cell centre t moved by jitter * (r - 0.5), in double.
float place(float t, float jitter, float r) {
    return static_cast<float>(static_cast<double>(t) +
                              static_cast<double>(jitter) * (static_cast<double>(r) - 0.5));
}

// The nearest two candidates so far, as squared distances. Strict
// comparisons: the earlier of equal candidates stays ahead.
template <int N>
struct TwoNearest {
    float d1 = kFarAway;
    float d2 = kFarAway;
    float p1[N] = {};
    float p2[N] = {};

    void offer(float d, const float* q) {
        if (d < d1) {
            d2 = d1;
            std::copy_n(p1, N, p2);
            d1 = d;
            std::copy_n(q, N, p1);
        } else if (d < d2) {
            d2 = d;
            std::copy_n(q, N, p2);
        }
    }

    void write(float& f1, float* pos1, float& f2, float* pos2) const {
        f1 = static_cast<float>(std::sqrt(static_cast<double>(d1)));
        f2 = static_cast<float>(std::sqrt(static_cast<double>(d2)));
        std::copy_n(p1, N, pos1);
        std::copy_n(p2, N, pos2);
    }
};

}  // namespace

namespace {

// The one-point searches as written first: the reference the faster
// one-point form below is held to, and what a processor without AVX2 runs.
// The feature of the plane's cell centred on (tx, ty), and its squared
// distance from P.
[[gnu::always_inline]] inline float planeCandidate(const float* P, float tx, float ty, float jitter, float* q) {
    const float rx = CellNoise::cellNoise(tx, ty, 0.0f);
    const float ry = CellNoise::cellNoise(tx + 23.0f, ty - 87.0f, 0.0f);
    q[0] = place(tx, jitter, rx);
    q[1] = place(ty, jitter, ry);
    const float dx = P[0] - q[0];
    const float dy = P[1] - q[1];
    return dx * dx + dy * dy;
}

void twoNearestInThePlane(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2) {
    const float cx = cellCentre(P[0]);
    const float cy = cellCentre(P[1]);
    TwoNearest<2> best;
    for (int i = -1; i <= 1; ++i) {
        const float tx = cx + static_cast<float>(i);
        for (int j = -1; j <= 1; ++j) {
            float q[2];
            const float d = planeCandidate(P, tx, cy + static_cast<float>(j), jitter, q);
            best.offer(d, q);
        }
    }
    best.write(f1, pos1, f2, pos2);
}

}  // namespace

void voronoi_f1f2_3d(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2) {
    const float cx = cellCentre(P[0]);
    const float cy = cellCentre(P[1]);
    const float cz = cellCentre(P[2]);
    TwoNearest<3> best;
    for (int i = -1; i <= 1; ++i) {
        const float tx = cx + static_cast<float>(i);
        for (int j = -1; j <= 1; ++j) {
            const float ty = cy + static_cast<float>(j);
            for (int k = -1; k <= 1; ++k) {
                const float tz = cz + static_cast<float>(k);
                const float rx = CellNoise::cellNoise(tx, ty, tz);
                const float ry = CellNoise::cellNoise(ty, tz, tx);
                // z reuses the y value (a third value, cellNoise(tz, tx, ty),
                // never reached the feature): every feature sits equally far
                // off its centre in y and z, and stored looks depend on it.
                const float q[3] = {place(tx, jitter, rx), place(ty, jitter, ry),
                                    place(tz, jitter, ry)};
                const float dx = P[0] - q[0];
                const float dy = P[1] - q[1];
                const float dz = P[2] - q[2];
                best.offer(dx * dx + dy * dy + dz * dz, q);
            }
        }
    }
    best.write(f1, pos1, f2, pos2);
}

namespace {

void nearestInSpace(const float* P, float jitter, float& f1, float* pos1) {
    const float cx = cellCentre(P[0]);
    const float cy = cellCentre(P[1]);
    const float cz = cellCentre(P[2]);
    float d1 = kFarAway;
    float best[3] = {};
    for (int i = -1; i <= 1; ++i) {
        const float tx = cx + static_cast<float>(i);
        for (int j = -1; j <= 1; ++j) {
            const float ty = cy + static_cast<float>(j);
            for (int k = -1; k <= 1; ++k) {
                const float tz = cz + static_cast<float>(k);
                // Three values, one per axis: a slice at any height or
                // angle meets features at every offset.
                const float rx = CellNoise::cellNoise(tx, ty, tz);
                const float ry = CellNoise::cellNoise(ty, tz, tx);
                const float rz = CellNoise::cellNoise(tz, tx, ty);
                const float q[3] = {place(tx, jitter, rx), place(ty, jitter, ry), place(tz, jitter, rz)};
                const float dx = P[0] - q[0];
                const float dy = P[1] - q[1];
                const float dz = P[2] - q[2];
                const float d = dx * dx + dy * dy + dz * dz;
                if (d < d1) {
                    d1 = d;
                    std::copy_n(q, 3, best);
                }
            }
        }
    }
    f1 = static_cast<float>(std::sqrt(static_cast<double>(d1)));
    std::copy_n(best, 3, pos1);
}

}  // namespace

// ---- The searches, sixteen, eight or four points at a time -------------------
//
// voronoi_f1f2_2d's and voronoi_f1_3d's searches, one lane per point, with
// the same operations on each candidate: the cell hash on 32-bit lanes, the
// double-precision centre and placement in two halves. The plane's visit
// the cells in order, where a strict comparison lets the earlier of equal
// candidates stay ahead; space's visit the nearer cells first and prune
// (nearestPruned4, below, says why the answer is the same).

namespace {

// The relative cells in the order searched: the nearer block (no farther
// offset), then by how many axes are on the farther side.
struct RelativeCell {
    int x, y, z;
};
constexpr std::array<RelativeCell, 27> kRelativeOrder = [] {
    std::array<RelativeCell, 27> cells{};
    int n = 0;
    for (int farther = 0; farther <= 3; ++farther)
        for (int x = 0; x < 3; ++x)
            for (int y = 0; y < 3; ++y)
                for (int z = 0; z < 3; ++z)
                    if ((x == 2) + (y == 2) + (z == 2) == farther) cells[n++] = {x, y, z};
    return cells;
}();

// cellCentre, lane by lane.
GRITWELL_AVX512 inline __m512 centreLanes(__m512 v) {
    const __m512i cell = cellIndex(v);
    const __m512d half = _mm512_set1_pd(0.5);
    return narrow({_mm512_add_pd(_mm512_cvtepi32_pd(_mm512_castsi512_si256(cell)), half),
                   _mm512_add_pd(_mm512_cvtepi32_pd(_mm512_extracti64x4_epi64(cell, 1)), half)});
}

// place(t, jitter, r), lane by lane.
GRITWELL_AVX512 inline __m512 placeLanes(__m512 t, __m512d jitter, __m512 r) {
    const DoubleLanes th = widen(t), rh = widen(r);
    const __m512d half = _mm512_set1_pd(0.5);
    return narrow({_mm512_add_pd(th.low, _mm512_mul_pd(jitter, _mm512_sub_pd(rh.low, half))),
                   _mm512_add_pd(th.high, _mm512_mul_pd(jitter, _mm512_sub_pd(rh.high, half)))});
}

// nearestPruned4's search on sixteen lanes (below, with the argument).
struct AxisLanes16 {
    DoubleLanes wide[3];
    __m512i cell[3], row[3], layer[3];
    __m512 gapSquared[3];
    __m512 number[3];
};

GRITWELL_AVX512 inline AxisLanes16 axisLanes(__m512 p, __m512d jitter, float stride) {
    AxisLanes16 a;
    const __m512 c = centreLanes(p);
    const __m512 zero = _mm512_setzero_ps(), one = _mm512_set1_ps(1.0f);
    const __m512 side = _mm512_mask_blend_ps(_mm512_cmp_ps_mask(p, c, _CMP_LT_OQ), one, _mm512_set1_ps(-1.0f));
    const __m512 offset[3] = {zero, side, _mm512_sub_ps(zero, side)};
    for (int o = 0; o < 3; ++o) {
        const __m512 t = _mm512_add_ps(c, offset[o]);
        a.wide[o] = widen(t);
        a.cell[o] = cellIndex(t);
        a.row[o] = _mm512_mullo_epi32(a.cell[o], _mm512_set1_epi32(CellNoise::detail::kRowStride));
        a.layer[o] = _mm512_mullo_epi32(a.cell[o], _mm512_set1_epi32(CellNoise::detail::kLayerStride));
        const __m512 at0 = placeLanes(t, jitter, zero), at1 = placeLanes(t, jitter, one);
        const __m512 below = _mm512_sub_ps(_mm512_min_ps(at0, at1), p),
                     above = _mm512_sub_ps(p, _mm512_max_ps(at0, at1));
        const __m512 gap = _mm512_max_ps(_mm512_max_ps(below, above), zero);
        a.gapSquared[o] = _mm512_mul_ps(gap, gap);
        a.number[o] = _mm512_mul_ps(_mm512_add_ps(offset[o], one), _mm512_set1_ps(stride));
    }
    return a;
}

GRITWELL_AVX512 inline __m512 placeWide(const DoubleLanes& t, __m512d jitter, __m512i h) {
    const DoubleLanes r = widen(CellNoise::detail::unitFromUnsigned(CellNoise::detail::hash(h)));
    const __m512d half = _mm512_set1_pd(0.5);
    return narrow({_mm512_add_pd(t.low, _mm512_mul_pd(jitter, _mm512_sub_pd(r.low, half))),
                   _mm512_add_pd(t.high, _mm512_mul_pd(jitter, _mm512_sub_pd(r.high, half)))});
}

GRITWELL_AVX512 void nearestPruned16(const float* xs, const float* ys, const float* zs, float jitter, float* f1,
                                     float* nx, float* ny, float* nz) {
    const __m512 px = _mm512_loadu_ps(xs), py = _mm512_loadu_ps(ys), pz = _mm512_loadu_ps(zs);
    const __m512d jitterLanes = _mm512_set1_pd(static_cast<double>(jitter));
    const AxisLanes16 ax = axisLanes(px, jitterLanes, 9.0f), ay = axisLanes(py, jitterLanes, 3.0f),
                      az = axisLanes(pz, jitterLanes, 1.0f);
    __m512 d1 = _mm512_set1_ps(kFarAway), number = _mm512_set1_ps(-1.0f);
    __m512 bx = _mm512_setzero_ps(), by = _mm512_setzero_ps(), bz = _mm512_setzero_ps();
    for (int n = 0; n < 27; ++n) {
        const int i = kRelativeOrder[n].x, j = kRelativeOrder[n].y, k = kRelativeOrder[n].z;
        if (n >= 8) {
            const __m512 bound =
                _mm512_add_ps(_mm512_add_ps(ax.gapSquared[i], ay.gapSquared[j]), az.gapSquared[k]);
            if (_mm512_cmp_ps_mask(bound, d1, _CMP_NGT_UQ) == 0) continue;
        }
        const __m512 qx =
            placeWide(ax.wide[i], jitterLanes, _mm512_add_epi32(_mm512_add_epi32(ay.row[j], az.layer[k]), ax.cell[i]));
        const __m512 qy =
            placeWide(ay.wide[j], jitterLanes, _mm512_add_epi32(_mm512_add_epi32(az.row[k], ax.layer[i]), ay.cell[j]));
        const __m512 qz =
            placeWide(az.wide[k], jitterLanes, _mm512_add_epi32(_mm512_add_epi32(ax.row[i], ay.layer[j]), az.cell[k]));
        const __m512 dx = _mm512_sub_ps(px, qx), dy = _mm512_sub_ps(py, qy), dz = _mm512_sub_ps(pz, qz);
        const __m512 d =
            _mm512_add_ps(_mm512_add_ps(_mm512_mul_ps(dx, dx), _mm512_mul_ps(dy, dy)), _mm512_mul_ps(dz, dz));
        const __m512 m = _mm512_add_ps(_mm512_add_ps(ax.number[i], ay.number[j]), az.number[k]);
        const __mmask16 nearer = _mm512_cmp_ps_mask(d, d1, _CMP_LT_OQ) |
                                 (_mm512_cmp_ps_mask(d, d1, _CMP_EQ_OQ) & _mm512_cmp_ps_mask(m, number, _CMP_LT_OQ));
        d1 = _mm512_mask_blend_ps(nearer, d1, d);
        number = _mm512_mask_blend_ps(nearer, number, m);
        bx = _mm512_mask_blend_ps(nearer, bx, qx);
        by = _mm512_mask_blend_ps(nearer, by, qy);
        bz = _mm512_mask_blend_ps(nearer, bz, qz);
    }
    const DoubleLanes squared = widen(d1);
    _mm512_storeu_ps(f1, narrow({_mm512_sqrt_pd(squared.low), _mm512_sqrt_pd(squared.high)}));
    _mm512_storeu_ps(nx, bx);
    _mm512_storeu_ps(ny, by);
    _mm512_storeu_ps(nz, bz);
}

GRITWELL_AVX512 void twoNearest16(const float* xs, const float* ys, float jitter, float* f1, float* f2, float* nx,
                                  float* ny, float* sx, float* sy) {
    const __m512 px = _mm512_loadu_ps(xs), py = _mm512_loadu_ps(ys);
    const __m512 cx = centreLanes(px), cy = centreLanes(py);
    const __m512d jitterLanes = _mm512_set1_pd(static_cast<double>(jitter));
    const __m512 zero = _mm512_setzero_ps();
    __m512 d1 = _mm512_set1_ps(kFarAway), d2 = d1;
    __m512 bx = zero, by = zero, cx2 = zero, cy2 = zero;
    for (int i = -1; i <= 1; ++i) {
        const __m512 tx = _mm512_add_ps(cx, _mm512_set1_ps(static_cast<float>(i)));
        for (int j = -1; j <= 1; ++j) {
            const __m512 ty = _mm512_add_ps(cy, _mm512_set1_ps(static_cast<float>(j)));
            const __m512 rx = CellNoise::cellNoise(tx, ty, zero);
            const __m512 ry = CellNoise::cellNoise(_mm512_add_ps(tx, _mm512_set1_ps(23.0f)),
                                             _mm512_sub_ps(ty, _mm512_set1_ps(87.0f)), zero);
            const __m512 qx = placeLanes(tx, jitterLanes, rx);
            const __m512 qy = placeLanes(ty, jitterLanes, ry);
            const __m512 dx = _mm512_sub_ps(px, qx), dy = _mm512_sub_ps(py, qy);
            const __m512 d = _mm512_add_ps(_mm512_mul_ps(dx, dx), _mm512_mul_ps(dy, dy));
            const __mmask16 first = _mm512_cmp_ps_mask(d, d1, _CMP_LT_OQ);
            const __mmask16 second = _mm512_kandn(first, _mm512_cmp_ps_mask(d, d2, _CMP_LT_OQ));
            d2 = _mm512_mask_blend_ps(first, _mm512_mask_blend_ps(second, d2, d), d1);
            cx2 = _mm512_mask_blend_ps(first, _mm512_mask_blend_ps(second, cx2, qx), bx);
            cy2 = _mm512_mask_blend_ps(first, _mm512_mask_blend_ps(second, cy2, qy), by);
            d1 = _mm512_mask_blend_ps(first, d1, d);
            bx = _mm512_mask_blend_ps(first, bx, qx);
            by = _mm512_mask_blend_ps(first, by, qy);
        }
    }
    const DoubleLanes s1 = widen(d1), s2 = widen(d2);
    _mm512_storeu_ps(f1, narrow({_mm512_sqrt_pd(s1.low), _mm512_sqrt_pd(s1.high)}));
    _mm512_storeu_ps(f2, narrow({_mm512_sqrt_pd(s2.low), _mm512_sqrt_pd(s2.high)}));
    _mm512_storeu_ps(nx, bx);
    _mm512_storeu_ps(ny, by);
    _mm512_storeu_ps(sx, cx2);
    _mm512_storeu_ps(sy, cy2);
}

GRITWELL_AVX2 inline __m256 centreLanes(__m256 v) {
    const DoubleLanes8 cell = widen(cellIndex(v));
    const __m256d half = _mm256_set1_pd(0.5);
    return narrow({_mm256_add_pd(cell.low, half), _mm256_add_pd(cell.high, half)});
}

GRITWELL_AVX2 inline __m256 placeLanes(__m256 t, __m256d jitter, __m256 r) {
    const DoubleLanes8 th = widen(t), rh = widen(r);
    const __m256d half = _mm256_set1_pd(0.5);
    return narrow({_mm256_add_pd(th.low, _mm256_mul_pd(jitter, _mm256_sub_pd(rh.low, half))),
                   _mm256_add_pd(th.high, _mm256_mul_pd(jitter, _mm256_sub_pd(rh.high, half)))});
}

GRITWELL_AVX2 inline __m256 rootLanes(__m256 squared) {
    const DoubleLanes8 d = widen(squared);
    return narrow({_mm256_sqrt_pd(d.low), _mm256_sqrt_pd(d.high)});
}

GRITWELL_AVX2 void twoNearest8(const float* xs, const float* ys, float jitter, float* f1, float* f2, float* nx,
                               float* ny, float* sx, float* sy) {
    const __m256 px = _mm256_loadu_ps(xs), py = _mm256_loadu_ps(ys);
    const __m256 cx = centreLanes(px), cy = centreLanes(py);
    const __m256d jitterLanes = _mm256_set1_pd(static_cast<double>(jitter));
    const __m256 zero = _mm256_setzero_ps();
    __m256 d1 = _mm256_set1_ps(kFarAway), d2 = d1;
    __m256 bx = zero, by = zero, cx2 = zero, cy2 = zero;
    for (int i = -1; i <= 1; ++i) {
        const __m256 tx = _mm256_add_ps(cx, _mm256_set1_ps(static_cast<float>(i)));
        for (int j = -1; j <= 1; ++j) {
            const __m256 ty = _mm256_add_ps(cy, _mm256_set1_ps(static_cast<float>(j)));
            const __m256 rx = CellNoise::cellNoise(tx, ty, zero);
            const __m256 ry = CellNoise::cellNoise(_mm256_add_ps(tx, _mm256_set1_ps(23.0f)),
                                             _mm256_sub_ps(ty, _mm256_set1_ps(87.0f)), zero);
            const __m256 qx = placeLanes(tx, jitterLanes, rx);
            const __m256 qy = placeLanes(ty, jitterLanes, ry);
            const __m256 dx = _mm256_sub_ps(px, qx), dy = _mm256_sub_ps(py, qy);
            const __m256 d = _mm256_add_ps(_mm256_mul_ps(dx, dx), _mm256_mul_ps(dy, dy));
            const __m256 first = _mm256_cmp_ps(d, d1, _CMP_LT_OQ);
            const __m256 second = _mm256_andnot_ps(first, _mm256_cmp_ps(d, d2, _CMP_LT_OQ));
            d2 = _mm256_blendv_ps(_mm256_blendv_ps(d2, d, second), d1, first);
            cx2 = _mm256_blendv_ps(_mm256_blendv_ps(cx2, qx, second), bx, first);
            cy2 = _mm256_blendv_ps(_mm256_blendv_ps(cy2, qy, second), by, first);
            d1 = _mm256_blendv_ps(d1, d, first);
            bx = _mm256_blendv_ps(bx, qx, first);
            by = _mm256_blendv_ps(by, qy, first);
        }
    }
    _mm256_storeu_ps(f1, rootLanes(d1));
    _mm256_storeu_ps(f2, rootLanes(d2));
    _mm256_storeu_ps(nx, bx);
    _mm256_storeu_ps(ny, by);
    _mm256_storeu_ps(sx, cx2);
    _mm256_storeu_ps(sy, cy2);
}

// nearestPruned4's search on eight lanes (below, with the argument).
struct AxisLanes8 {
    __m256 t[3];
    DoubleLanes8 wide[3];
    __m256i cell[3], row[3], layer[3];
    __m256 gapSquared[3];
    __m256 number[3];
};

GRITWELL_AVX2 inline AxisLanes8 axisLanes(__m256 p, __m256d jitter, float stride) {
    AxisLanes8 a;
    const __m256 c = centreLanes(p);
    const __m256 side = _mm256_blendv_ps(_mm256_set1_ps(1.0f), _mm256_set1_ps(-1.0f), _mm256_cmp_ps(p, c, _CMP_LT_OQ));
    const __m256 zero = _mm256_setzero_ps(), one = _mm256_set1_ps(1.0f);
    const __m256 offset[3] = {zero, side, _mm256_sub_ps(zero, side)};
    for (int o = 0; o < 3; ++o) {
        a.t[o] = _mm256_add_ps(c, offset[o]);
        a.wide[o] = widen(a.t[o]);
        a.cell[o] = cellIndex(a.t[o]);
        a.row[o] = _mm256_mullo_epi32(a.cell[o], _mm256_set1_epi32(CellNoise::detail::kRowStride));
        a.layer[o] = _mm256_mullo_epi32(a.cell[o], _mm256_set1_epi32(CellNoise::detail::kLayerStride));
        const __m256 at0 = placeLanes(a.t[o], jitter, zero), at1 = placeLanes(a.t[o], jitter, one);
        const __m256 below = _mm256_sub_ps(_mm256_min_ps(at0, at1), p),
                     above = _mm256_sub_ps(p, _mm256_max_ps(at0, at1));
        const __m256 gap = _mm256_max_ps(_mm256_max_ps(below, above), zero);
        a.gapSquared[o] = _mm256_mul_ps(gap, gap);
        a.number[o] = _mm256_mul_ps(_mm256_add_ps(offset[o], one), _mm256_set1_ps(stride));
    }
    return a;
}

// placeLanes on a widened centre and the cell hash's value.
GRITWELL_AVX2 inline __m256 placeWide(const DoubleLanes8& t, __m256d jitter, __m256i h) {
    const DoubleLanes8 r = widen(CellNoise::detail::unitFromUnsigned(CellNoise::detail::hash(h)));
    const __m256d half = _mm256_set1_pd(0.5);
    return narrow({_mm256_add_pd(t.low, _mm256_mul_pd(jitter, _mm256_sub_pd(r.low, half))),
                   _mm256_add_pd(t.high, _mm256_mul_pd(jitter, _mm256_sub_pd(r.high, half)))});
}

GRITWELL_AVX2 void nearestPruned8(const float* xs, const float* ys, const float* zs, float jitter, float* f1,
                                  float* nx, float* ny, float* nz) {
    const __m256 px = _mm256_loadu_ps(xs), py = _mm256_loadu_ps(ys), pz = _mm256_loadu_ps(zs);
    const __m256d jitterLanes = _mm256_set1_pd(static_cast<double>(jitter));
    const AxisLanes8 ax = axisLanes(px, jitterLanes, 9.0f), ay = axisLanes(py, jitterLanes, 3.0f),
                     az = axisLanes(pz, jitterLanes, 1.0f);
    __m256 d1 = _mm256_set1_ps(kFarAway), number = _mm256_set1_ps(-1.0f);
    __m256 bx = _mm256_setzero_ps(), by = _mm256_setzero_ps(), bz = _mm256_setzero_ps();
    for (int n = 0; n < 27; ++n) {
        const int i = kRelativeOrder[n].x, j = kRelativeOrder[n].y, k = kRelativeOrder[n].z;
        if (n >= 8) {
            const __m256 bound =
                _mm256_add_ps(_mm256_add_ps(ax.gapSquared[i], ay.gapSquared[j]), az.gapSquared[k]);
            if (_mm256_movemask_ps(_mm256_cmp_ps(bound, d1, _CMP_NGT_UQ)) == 0) continue;
        }
        const __m256 qx =
            placeWide(ax.wide[i], jitterLanes, _mm256_add_epi32(_mm256_add_epi32(ay.row[j], az.layer[k]), ax.cell[i]));
        const __m256 qy =
            placeWide(ay.wide[j], jitterLanes, _mm256_add_epi32(_mm256_add_epi32(az.row[k], ax.layer[i]), ay.cell[j]));
        const __m256 qz =
            placeWide(az.wide[k], jitterLanes, _mm256_add_epi32(_mm256_add_epi32(ax.row[i], ay.layer[j]), az.cell[k]));
        const __m256 dx = _mm256_sub_ps(px, qx), dy = _mm256_sub_ps(py, qy), dz = _mm256_sub_ps(pz, qz);
        const __m256 d =
            _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(dx, dx), _mm256_mul_ps(dy, dy)), _mm256_mul_ps(dz, dz));
        const __m256 m = _mm256_add_ps(_mm256_add_ps(ax.number[i], ay.number[j]), az.number[k]);
        const __m256 nearer =
            _mm256_or_ps(_mm256_cmp_ps(d, d1, _CMP_LT_OQ),
                         _mm256_and_ps(_mm256_cmp_ps(d, d1, _CMP_EQ_OQ), _mm256_cmp_ps(m, number, _CMP_LT_OQ)));
        d1 = _mm256_blendv_ps(d1, d, nearer);
        number = _mm256_blendv_ps(number, m, nearer);
        bx = _mm256_blendv_ps(bx, qx, nearer);
        by = _mm256_blendv_ps(by, qy, nearer);
        bz = _mm256_blendv_ps(bz, qz, nearer);
    }
    _mm256_storeu_ps(f1, rootLanes(d1));
    _mm256_storeu_ps(nx, bx);
    _mm256_storeu_ps(ny, by);
    _mm256_storeu_ps(nz, bz);
}

// ---- Four points at a time, on any x86-64 (SSE2) ----------------------------
//
// The eight-lane searches on four lanes: SSE2 has no blend, so each choice
// is made with the comparison's mask (and, andnot, or).

inline __m128 centreLanes(__m128 v) {
    const DoubleLanes4 cell = widen(cellIndex(v));
    const __m128d half = _mm_set1_pd(0.5);
    return narrow({_mm_add_pd(cell.low, half), _mm_add_pd(cell.high, half)});
}

inline __m128 placeLanes(__m128 t, __m128d jitter, __m128 r) {
    const DoubleLanes4 th = widen(t), rh = widen(r);
    const __m128d half = _mm_set1_pd(0.5);
    return narrow({_mm_add_pd(th.low, _mm_mul_pd(jitter, _mm_sub_pd(rh.low, half))),
                   _mm_add_pd(th.high, _mm_mul_pd(jitter, _mm_sub_pd(rh.high, half)))});
}

inline __m128 rootLanes(__m128 squared) {
    const DoubleLanes4 d = widen(squared);
    return narrow({_mm_sqrt_pd(d.low), _mm_sqrt_pd(d.high)});
}

// b where mask is set, else a (blendv's operand order).
inline __m128 blend(__m128 a, __m128 b, __m128 mask) { return _mm_or_ps(_mm_and_ps(mask, b), _mm_andnot_ps(mask, a)); }

// Four points' 27 cells each, the far ones pruned. Each lane names its
// cells by offsets relative to its point: its own cell, the neighbour on its
// nearer side and the one on its farther side, so the 2x2x2 cells nearest
// every lane are searched first and the other 19 only where a lane may find
// a nearer feature in them.
//
// The prune cannot change the answer: along an axis a cell's features lie
// between place(t, jitter, 0) and place(t, jitter, 1) (the placement is
// monotone in the cell value, which is in [0, 1]), so the rounded gap from
// the point to that span never exceeds any feature's rounded |dx|, and the
// squares summed in the same axis order never exceed its squared distance.
// A cell whose bound in every lane is above that lane's least distance so
// far can neither win nor tie there. A NaN gap counts as 0, never a reason
// to skip. Candidates come out of the reference's visiting order, so a lane
// keeps the least (distance, cell number), the number counting in that
// order, and the earlier of equal distances stays ahead as there.
struct AxisLanes {
    // At the offsets own, nearer and farther, taken once a point instead of
    // once a cell: the cell centres (also widened), their cell indices and
    // those times the row and layer strides, the least squared |dx| of any
    // feature there, and the cell's weight in the reference's numbering.
    __m128 t[3];
    DoubleLanes4 wide[3];
    __m128i cell[3], row[3], layer[3];
    __m128 gapSquared[3];
    __m128 number[3];
};

inline AxisLanes axisLanes(__m128 p, __m128d jitter, float stride) {
    AxisLanes a;
    const __m128 c = centreLanes(p);
    const __m128 side = blend(_mm_set1_ps(1.0f), _mm_set1_ps(-1.0f), _mm_cmplt_ps(p, c));
    const __m128 offset[3] = {_mm_setzero_ps(), side, _mm_sub_ps(_mm_setzero_ps(), side)};
    const __m128 zero = _mm_setzero_ps(), one = _mm_set1_ps(1.0f);
    for (int o = 0; o < 3; ++o) {
        // The own cell's centre is c itself, as c + 0 gives it.
        a.t[o] = _mm_add_ps(c, offset[o]);
        a.wide[o] = widen(a.t[o]);
        a.cell[o] = cellIndex(a.t[o]);
        a.row[o] = CellNoise::detail::mulLow(a.cell[o], _mm_set1_epi32(CellNoise::detail::kRowStride));
        a.layer[o] = CellNoise::detail::mulLow(a.cell[o], _mm_set1_epi32(CellNoise::detail::kLayerStride));
        const __m128 at0 = placeLanes(a.t[o], jitter, zero), at1 = placeLanes(a.t[o], jitter, one);
        const __m128 below = _mm_sub_ps(_mm_min_ps(at0, at1), p), above = _mm_sub_ps(p, _mm_max_ps(at0, at1));
        // _mm_max_ps returns its second operand where either is NaN.
        const __m128 gap = _mm_max_ps(_mm_max_ps(below, above), zero);
        a.gapSquared[o] = _mm_mul_ps(gap, gap);
        a.number[o] = _mm_mul_ps(_mm_add_ps(offset[o], one), _mm_set1_ps(stride));
    }
    return a;
}

void nearestPruned4(const float* xs, const float* ys, const float* zs, float jitter, float* f1, float* nx, float* ny,
                    float* nz) {
    const __m128 px = _mm_loadu_ps(xs), py = _mm_loadu_ps(ys), pz = _mm_loadu_ps(zs);
    const __m128d jitterLanes = _mm_set1_pd(static_cast<double>(jitter));
    const AxisLanes ax = axisLanes(px, jitterLanes, 9.0f), ay = axisLanes(py, jitterLanes, 3.0f),
                    az = axisLanes(pz, jitterLanes, 1.0f);
    __m128 d1 = _mm_set1_ps(kFarAway), number = _mm_set1_ps(-1.0f);
    __m128 bx = _mm_setzero_ps(), by = _mm_setzero_ps(), bz = _mm_setzero_ps();
    const auto place = [&](const DoubleLanes4& t, __m128i h) {
        const DoubleLanes4 r = widen(CellNoise::detail::unitFromUnsigned(CellNoise::detail::hash(h)));
        const __m128d half = _mm_set1_pd(0.5);
        return narrow({_mm_add_pd(t.low, _mm_mul_pd(jitterLanes, _mm_sub_pd(r.low, half))),
                       _mm_add_pd(t.high, _mm_mul_pd(jitterLanes, _mm_sub_pd(r.high, half)))});
    };
    for (int n = 0; n < 27; ++n) {
        const int i = kRelativeOrder[n].x, j = kRelativeOrder[n].y, k = kRelativeOrder[n].z;
        if (n >= 8) {
            const __m128 bound = _mm_add_ps(_mm_add_ps(ax.gapSquared[i], ay.gapSquared[j]), az.gapSquared[k]);
            if (_mm_movemask_ps(_mm_cmpngt_ps(bound, d1)) == 0) continue;
        }
        // cellNoise(tx, ty, tz), cellNoise(ty, tz, tx) and cellNoise(tz, tx, ty).
        const __m128 qx = place(ax.wide[i], _mm_add_epi32(_mm_add_epi32(ay.row[j], az.layer[k]), ax.cell[i]));
        const __m128 qy = place(ay.wide[j], _mm_add_epi32(_mm_add_epi32(az.row[k], ax.layer[i]), ay.cell[j]));
        const __m128 qz = place(az.wide[k], _mm_add_epi32(_mm_add_epi32(ax.row[i], ay.layer[j]), az.cell[k]));
        const __m128 dx = _mm_sub_ps(px, qx), dy = _mm_sub_ps(py, qy), dz = _mm_sub_ps(pz, qz);
        const __m128 d = _mm_add_ps(_mm_add_ps(_mm_mul_ps(dx, dx), _mm_mul_ps(dy, dy)), _mm_mul_ps(dz, dz));
        const __m128 m = _mm_add_ps(_mm_add_ps(ax.number[i], ay.number[j]), az.number[k]);
        // No cell numbers below -1, so no candidate ties its way past the
        // largest float, which the reference never keeps.
        const __m128 nearer = _mm_or_ps(_mm_cmplt_ps(d, d1), _mm_and_ps(_mm_cmpeq_ps(d, d1), _mm_cmplt_ps(m, number)));
        d1 = blend(d1, d, nearer);
        number = blend(number, m, nearer);
        bx = blend(bx, qx, nearer);
        by = blend(by, qy, nearer);
        bz = blend(bz, qz, nearer);
    }
    _mm_storeu_ps(f1, rootLanes(d1));
    _mm_storeu_ps(nx, bx);
    _mm_storeu_ps(ny, by);
    _mm_storeu_ps(nz, bz);
}

void twoNearest4(const float* xs, const float* ys, float jitter, float* f1, float* f2, float* nx, float* ny,
                 float* sx, float* sy) {
    const __m128 px = _mm_loadu_ps(xs), py = _mm_loadu_ps(ys);
    const __m128 cx = centreLanes(px), cy = centreLanes(py);
    const __m128d jitterLanes = _mm_set1_pd(static_cast<double>(jitter));
    const __m128 zero = _mm_setzero_ps();
    __m128 d1 = _mm_set1_ps(kFarAway), d2 = d1;
    __m128 bx = zero, by = zero, cx2 = zero, cy2 = zero;
    for (int i = -1; i <= 1; ++i) {
        const __m128 tx = _mm_add_ps(cx, _mm_set1_ps(static_cast<float>(i)));
        for (int j = -1; j <= 1; ++j) {
            const __m128 ty = _mm_add_ps(cy, _mm_set1_ps(static_cast<float>(j)));
            const __m128 rx = CellNoise::cellNoise(tx, ty, zero);
            const __m128 ry = CellNoise::cellNoise(_mm_add_ps(tx, _mm_set1_ps(23.0f)),
                                                   _mm_sub_ps(ty, _mm_set1_ps(87.0f)), zero);
            const __m128 qx = placeLanes(tx, jitterLanes, rx);
            const __m128 qy = placeLanes(ty, jitterLanes, ry);
            const __m128 dx = _mm_sub_ps(px, qx), dy = _mm_sub_ps(py, qy);
            const __m128 d = _mm_add_ps(_mm_mul_ps(dx, dx), _mm_mul_ps(dy, dy));
            const __m128 first = _mm_cmplt_ps(d, d1);
            const __m128 second = _mm_andnot_ps(first, _mm_cmplt_ps(d, d2));
            d2 = blend(blend(d2, d, second), d1, first);
            cx2 = blend(blend(cx2, qx, second), bx, first);
            cy2 = blend(blend(cy2, qy, second), by, first);
            d1 = blend(d1, d, first);
            bx = blend(bx, qx, first);
            by = blend(by, qy, first);
        }
    }
    _mm_storeu_ps(f1, rootLanes(d1));
    _mm_storeu_ps(f2, rootLanes(d2));
    _mm_storeu_ps(nx, bx);
    _mm_storeu_ps(ny, by);
    _mm_storeu_ps(sx, cx2);
    _mm_storeu_ps(sy, cy2);
}

// ---- One point, its cells across the lanes ---------------------------------
//
// The one-point searches with the lanes turned the other way: a point's 27
// cells in space (9 in the plane), eight at a time, through the same lane
// steps as the kernels above, each candidate's squared distance stored;
// then the candidates are offered in the visiting order, so the earlier of
// equal distances stays ahead as in the reference. Lanes past the last cell
// repeat the first and are never offered.

constexpr int kCellSlots = 32;

GRITWELL_AVX2 void nearestAcrossCells(const float* P, float jitter, float& f1, float* pos1) {
    alignas(32) float t[3][kCellSlots], q[3][kCellSlots], d[kCellSlots];
    const float c[3] = {cellCentre(P[0]), cellCentre(P[1]), cellCentre(P[2])};
    int n = 0;
    for (int i = -1; i <= 1; ++i)
        for (int j = -1; j <= 1; ++j)
            for (int k = -1; k <= 1; ++k, ++n) {
                t[0][n] = c[0] + static_cast<float>(i);
                t[1][n] = c[1] + static_cast<float>(j);
                t[2][n] = c[2] + static_cast<float>(k);
            }
    for (int m = n; m < kCellSlots; ++m)
        for (auto& axis : t) axis[m] = axis[0];
    const __m256d jitterLanes = _mm256_set1_pd(static_cast<double>(jitter));
    const __m256 px = _mm256_set1_ps(P[0]), py = _mm256_set1_ps(P[1]), pz = _mm256_set1_ps(P[2]);
    for (int g = 0; g < kCellSlots; g += 8) {
        const __m256 tx = _mm256_load_ps(t[0] + g), ty = _mm256_load_ps(t[1] + g), tz = _mm256_load_ps(t[2] + g);
        const __m256 qx = placeLanes(tx, jitterLanes, CellNoise::cellNoise(tx, ty, tz));
        const __m256 qy = placeLanes(ty, jitterLanes, CellNoise::cellNoise(ty, tz, tx));
        const __m256 qz = placeLanes(tz, jitterLanes, CellNoise::cellNoise(tz, tx, ty));
        const __m256 dx = _mm256_sub_ps(px, qx), dy = _mm256_sub_ps(py, qy), dz = _mm256_sub_ps(pz, qz);
        _mm256_store_ps(d + g,
                        _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(dx, dx), _mm256_mul_ps(dy, dy)), _mm256_mul_ps(dz, dz)));
        _mm256_store_ps(q[0] + g, qx);
        _mm256_store_ps(q[1] + g, qy);
        _mm256_store_ps(q[2] + g, qz);
    }
    float d1 = kFarAway;
    int best = -1;
    for (int m = 0; m < n; ++m)
        if (d[m] < d1) {
            d1 = d[m];
            best = m;
        }
    f1 = static_cast<float>(std::sqrt(static_cast<double>(d1)));
    for (int a = 0; a < 3; ++a) pos1[a] = best < 0 ? 0.0f : q[a][best];
}

// The plane's nine cells: the first eight across the lanes, the last
// alone, which costs less than a second group of lanes.
GRITWELL_AVX2 void twoNearestAcrossCells(const float* P, float jitter, float& f1, float* pos1, float& f2,
                                         float* pos2) {
    constexpr int kSlots = 9;
    float t[2][kSlots], q[2][kSlots], d[kSlots];
    const float c[2] = {cellCentre(P[0]), cellCentre(P[1])};
    int n = 0;
    for (int i = -1; i <= 1; ++i)
        for (int j = -1; j <= 1; ++j, ++n) {
            t[0][n] = c[0] + static_cast<float>(i);
            t[1][n] = c[1] + static_cast<float>(j);
        }
    const __m256d jitterLanes = _mm256_set1_pd(static_cast<double>(jitter));
    const __m256 px = _mm256_set1_ps(P[0]), py = _mm256_set1_ps(P[1]), zero = _mm256_setzero_ps();
    const __m256 tx = _mm256_loadu_ps(t[0]), ty = _mm256_loadu_ps(t[1]);
    const __m256 rx = CellNoise::cellNoise(tx, ty, zero);
    const __m256 ry = CellNoise::cellNoise(_mm256_add_ps(tx, _mm256_set1_ps(23.0f)),
                                     _mm256_sub_ps(ty, _mm256_set1_ps(87.0f)), zero);
    const __m256 qx = placeLanes(tx, jitterLanes, rx), qy = placeLanes(ty, jitterLanes, ry);
    const __m256 dx = _mm256_sub_ps(px, qx), dy = _mm256_sub_ps(py, qy);
    _mm256_storeu_ps(d, _mm256_add_ps(_mm256_mul_ps(dx, dx), _mm256_mul_ps(dy, dy)));
    _mm256_storeu_ps(q[0], qx);
    _mm256_storeu_ps(q[1], qy);
    float last[2];
    d[8] = planeCandidate(P, t[0][8], t[1][8], jitter, last);
    q[0][8] = last[0];
    q[1][8] = last[1];
    TwoNearest<2> best;
    for (int m = 0; m < n; ++m) {
        const float at[2] = {q[0][m], q[1][m]};
        best.offer(d[m], at);
    }
    best.write(f1, pos1, f2, pos2);
}

}  // namespace

void voronoi_f1f2_2d(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2) {
    if (simdLevel() >= SimdLevel::kAvx2)
        twoNearestAcrossCells(P, jitter, f1, pos1, f2, pos2);
    else
        twoNearestInThePlane(P, jitter, f1, pos1, f2, pos2);
}

void voronoi_f1_3d(const float* P, float jitter, float& f1, float* pos1) {
    if (simdLevel() >= SimdLevel::kAvx2)
        nearestAcrossCells(P, jitter, f1, pos1);
    else
        nearestInSpace(P, jitter, f1, pos1);
}

void voronoi_f1f2_2d(const float* x, const float* y, int n, float jitter, float* f1, float* f2, float* nearestX,
                     float* nearestY, float* secondX, float* secondY) {
    int done = 0;
    const SimdLevel level = simdLevel();
    if (level == SimdLevel::kAvx512)
        for (; done + 16 <= n; done += 16)
            twoNearest16(x + done, y + done, jitter, f1 + done, f2 + done, nearestX + done, nearestY + done,
                         secondX + done, secondY + done);
    if (level >= SimdLevel::kAvx2)
        for (; done + 8 <= n; done += 8)
            twoNearest8(x + done, y + done, jitter, f1 + done, f2 + done, nearestX + done, nearestY + done,
                        secondX + done, secondY + done);
    for (; done + 4 <= n; done += 4)
        twoNearest4(x + done, y + done, jitter, f1 + done, f2 + done, nearestX + done, nearestY + done,
                    secondX + done, secondY + done);
    for (; done < n; ++done) {
        const float p[2] = {x[done], y[done]};
        float pos1[2], pos2[2];
        voronoi_f1f2_2d(p, jitter, f1[done], pos1, f2[done], pos2);
        nearestX[done] = pos1[0];
        nearestY[done] = pos1[1];
        secondX[done] = pos2[0];
        secondY[done] = pos2[1];
    }
}

void voronoi_f1_3d(const float* x, const float* y, const float* z, int n, float jitter, float* f1, float* nearestX,
                   float* nearestY, float* nearestZ) {
    int done = 0;
    const SimdLevel level = simdLevel();
    if (level == SimdLevel::kAvx512)
        for (; done + 16 <= n; done += 16)
            nearestPruned16(x + done, y + done, z + done, jitter, f1 + done, nearestX + done, nearestY + done,
                            nearestZ + done);
    if (level >= SimdLevel::kAvx2)
        for (; done + 8 <= n; done += 8)
            nearestPruned8(x + done, y + done, z + done, jitter, f1 + done, nearestX + done, nearestY + done,
                           nearestZ + done);
    for (; done + 4 <= n; done += 4)
        nearestPruned4(x + done, y + done, z + done, jitter, f1 + done, nearestX + done, nearestY + done,
                       nearestZ + done);
    for (; done < n; ++done) {
        const float p[3] = {x[done], y[done], z[done]};
        float pos1[3];
        voronoi_f1_3d(p, jitter, f1[done], pos1);
        nearestX[done] = pos1[0];
        nearestY[done] = pos1[1];
        nearestZ[done] = pos1[2];
    }
}

}  // namespace gritwell::ARMan
