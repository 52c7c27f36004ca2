#include "noise/Voronoi.h"

// GCC 12's AVX-512 intrinsics start some results from a deliberately
// undefined register and then warn that it is, or may be, used uninitialised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <algorithm>
#include <cstddef>

#include "core/ByteTableLanes.h"
#include "core/DistanceMetrics.h"
#include "core/DoubleLanes.h"
#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdLevel.h"
#include "core/Rounding.h"
#include "core/Vec3.h"

namespace gritwell {

namespace {

// ---- The fixed tables -------------------------------------------------------
//
// Stored records reproduce their look only with these exact tables. Their
// leading entries are fixed data; the rest comes from Marsaglia's 32-bit
// xorshift (shifts 13, 17, 5) started at kTableSeed, drawn in this order:
// first the Fisher-Yates shuffle of the Index values not in the prefix, then
// three offsets per remaining Coords row. Never change the generator, its
// seed or the draw order.

constexpr std::uint8_t kIndexPrefix[16] = {162, 160, 25,  59, 248, 235, 170, 238,
                                           243, 28,  103, 40, 29,  237, 0,   222};
constexpr Voronoi::Row kCoordsPrefix[4] = {{0.536902f, 0.020915f, 0.501445f},
                                           {0.216316f, 0.517036f, 0.822466f},
                                           {0.965315f, 0.377313f, 0.678764f},
                                           {0.744545f, 0.097731f, 0.396357f}};

// The first 32 bits of the fractional part of sqrt(2): any non-zero seed
// works, this one hides nothing.
constexpr std::uint32_t kTableSeed = 0x6a09e667u;

struct XorShift32 {
    std::uint32_t state;
    constexpr std::uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    // In [0, n): the high word of a 32 x 32-bit product.
    constexpr std::uint32_t below(std::uint32_t n) {
        return static_cast<std::uint32_t>((static_cast<std::uint64_t>(next()) * n) >> 32);
    }
    // In [0, 1): the top 24 bits, exact in a float.
    constexpr float unit() { return static_cast<float>(next() >> 8) * (1.0f / 16777216.0f); }
};

struct Tables {
    std::array<std::uint8_t, 256> index;
    std::array<Voronoi::Row, 256> coords;
};

constexpr Tables makeTables() {
    Tables t{};
    XorShift32 rng{kTableSeed};

    bool used[256] = {};
    std::size_t n = 0;
    for (const std::uint8_t v : kIndexPrefix) {
        t.index[n++] = v;
        used[v] = true;
    }
    const std::size_t restBegin = n;
    for (int v = 0; v < 256; ++v)
        if (!used[v]) t.index[n++] = static_cast<std::uint8_t>(v);
    for (std::size_t i = 255; i > restBegin; --i) {
        const std::size_t j = restBegin + rng.below(static_cast<std::uint32_t>(i - restBegin + 1));
        const std::uint8_t swap = t.index[i];
        t.index[i] = t.index[j];
        t.index[j] = swap;
    }

    std::size_t row = 0;
    for (const Voronoi::Row& r : kCoordsPrefix) t.coords[row++] = r;
    for (; row < 256; ++row)
        for (float& c : t.coords[row]) c = rng.unit();
    return t;
}

constexpr Tables kTables = makeTables();

// ---- The search -------------------------------------------------------------

// sqrt(2) / sqrt(3), applied to every result in double.
constexpr double kRoot2 = 1.4142135623730951;
constexpr double kRoot3 = 1.7320508075688772;

constexpr float kFarAway = 3.4028235e38f;  // the largest float

float measure(const Vec3& v, Voronoi::DistanceMethod m) {
    switch (m) {
        case Voronoi::LengthSquared:
            return sqrlen(v);
        case Voronoi::Manhattan:
            return manhattan(v);
        case Voronoi::Chebychev:
            return chebychev(v);
        case Voronoi::Quadratic:
            return quadratic(v);
        case Voronoi::Minkowski4:
            return minkowski4(v);
        case Voronoi::Minkowski5:
            return minkowski5(v);
        case Voronoi::Length:
        default:
            return len(v);  // Length and every value outside the enumeration
    }
}

// Inserts (d, q) into the ascending F/P lists. The comparisons are strict, so
// of equal distances the one visited first keeps the lower place.
void insert(float d, const Vec3& q, float* F, float* P) {
    int place = 0;
    while (place < 4 && !(d < F[place])) ++place;
    if (place == 4) return;
    for (int r = 3; r > place; --r) {
        F[r] = F[r - 1];
        P[3 * r] = P[3 * r - 3];
        P[3 * r + 1] = P[3 * r - 2];
        P[3 * r + 2] = P[3 * r - 1];
    }
    F[place] = d;
    P[3 * place] = q.x;
    P[3 * place + 1] = q.y;
    P[3 * place + 2] = q.z;
}

// Visits cells (cx-1..cx+1) x (cy-1..cy+1) x (k0..k1), i outermost, k innermost.
void search(const Vec3& s, int cx, int cy, int k0, int k1, float* F, float* P,
            Voronoi::DistanceMethod m) {
    std::fill_n(F, 4, kFarAway);
    std::fill_n(P, 12, 0.0f);
    for (int di = -1; di <= 1; ++di) {
        const int i = wrapAdd(cx, di);
        for (int dj = -1; dj <= 1; ++dj) {
            const int j = wrapAdd(cy, dj);
            for (int k = k0;; k = wrapAdd(k, 1)) {
                const float* c = Voronoi::GetPoint(i, j, k);
                const Vec3 q(static_cast<float>(i) + c[0], static_cast<float>(j) + c[1],
                             static_cast<float>(k) + c[2]);
                insert(measure(s - q, m), q, F, P);
                if (k == k1) break;
            }
        }
    }
}

float scaled(float v) { return static_cast<float>(static_cast<double>(v) * kRoot2 / kRoot3); }

}  // namespace

const std::array<std::uint8_t, 256>& Voronoi::IndexTable() { return kTables.index; }
const std::array<Voronoi::Row, 256>& Voronoi::CoordsTable() { return kTables.coords; }

const float* Voronoi::GetPoint(int i, int j, int k) {
    const auto& index = kTables.index;
    const int a = index[static_cast<std::size_t>(k & 255)];
    const int b = index[static_cast<std::size_t>(wrapAdd(a, j) & 255)];
    const int row = index[static_cast<std::size_t>(wrapAdd(b, i) & 255)];
    return kTables.coords[static_cast<std::size_t>(row)].data();
}

const float* Voronoi::GetPoint(int i, int j) { return GetPoint(i, j, 0); }

void Voronoi::Calculate(float x, float y, float* F, float* P, DistanceMethod m) {
    // Only the layer k = 0, measured from the slice z = 0: the feature's
    // height stays in the distance, as the 2-D look always had it.
    search(Vec3(x, y, 0.0f), TheFloor(x), TheFloor(y), 0, 0, F, P, m);
}

void Voronoi::Calculate(float x, float y, float z, float* F, float* P, DistanceMethod m) {
    const int cz = TheFloor(z);
    search(Vec3(x, y, z), TheFloor(x), TheFloor(y), wrapAdd(cz, -1), wrapAdd(cz, 1), F, P, m);
}

namespace {

// Get for either dimension; calc fills F (and P) for the sample.
template <class Calc, class Recurse>
float combine(Voronoi::VoronoiType t, Calc calc, Recurse recurse) {
    float F[4];
    float P[12];
    switch (t) {
        case Voronoi::Difference21:
            calc(F, P);
            return scaled(F[1] - F[0]);
        case Voronoi::Difference32:
            calc(F, P);
            return scaled(F[2] - F[1]);
        case Voronoi::Crackle:
            // The recursive value is already scaled and is scaled once more:
            // stored records depend on the double scaling.
            return scaled(std::max(1.0f, 20.0f * recurse(Voronoi::Difference21)));
        case Voronoi::Second:
        case Voronoi::Third:
        case Voronoi::Fourth:
            calc(F, P);
            return scaled(F[t]);
        case Voronoi::First:
        default:
            calc(F, P);
            return scaled(F[0]);  // First, and every invalid type
    }
}

}  // namespace

float Voronoi::Get(float x, float y, VoronoiType t, DistanceMethod m) {
    return combine(
        t, [&](float* F, float* P) { Calculate(x, y, F, P, m); },
        [&](VoronoiType u) { return Get(x, y, u, m); });
}

float Voronoi::Get(float x, float y, float z, VoronoiType t, DistanceMethod m) {
    return combine(
        t, [&](float* F, float* P) { Calculate(x, y, z, F, P, m); },
        [&](VoronoiType u) { return Get(x, y, z, u, m); });
}

// ---- Sixteen points at a time ----------------------------------------------
//
// The 3-D search and combination above, one lane per point, with the same
// operations in the same order: the cell by the round-to-nearest floor in
// double, the feature through the three index lookups (byte permutes over
// the index table) and gathers of its offsets, the distance as
// (x x + y y) + z z (and its square root for Length), and the insertion into
// four ascending registers. F never holds a NaN, so the places a distance
// beats are a suffix of the list and each register takes the one below it,
// the distance, or stays, by the strict comparisons the scalar insert makes.

namespace {

#if defined(__x86_64__)

#define GRITWELL_AVX512 __attribute__((target("avx512f,avx512bw,avx512vbmi")))

struct CoordColumns {
    alignas(64) float x[256], y[256], z[256];
};

constexpr CoordColumns makeCoordColumns() {
    CoordColumns c{};
    for (int row = 0; row < 256; ++row) {
        c.x[row] = kTables.coords[static_cast<std::size_t>(row)][0];
        c.y[row] = kTables.coords[static_cast<std::size_t>(row)][1];
        c.z[row] = kTables.coords[static_cast<std::size_t>(row)][2];
    }
    return c;
}

constexpr CoordColumns kCoordColumns = makeCoordColumns();

GRITWELL_AVX512 inline __m512i floorLanes(__m512 v) {
    const __m512d two = _mm512_set1_pd(2.0), half = _mm512_set1_pd(0.5);
    const DoubleLanes d = widen(v);
    const __m256i lowCell = _mm256_srai_epi32(roundToInt(_mm512_sub_pd(_mm512_mul_pd(two, d.low), half)), 1);
    const __m256i highCell = _mm256_srai_epi32(roundToInt(_mm512_sub_pd(_mm512_mul_pd(two, d.high), half)), 1);
    return _mm512_inserti64x4(_mm512_castsi256_si512(lowCell), highCell, 1);
}

GRITWELL_AVX512 inline __m512 scaledLanes(__m512 v) {
    const __m512d root2 = _mm512_set1_pd(kRoot2), root3 = _mm512_set1_pd(kRoot3);
    const DoubleLanes d = widen(v);
    return narrow({_mm512_div_pd(_mm512_mul_pd(d.low, root2), root3), _mm512_div_pd(_mm512_mul_pd(d.high, root2), root3)});
}

GRITWELL_AVX512 void get16(const float* xs, const float* ys, const float* zs, Voronoi::VoronoiType t, bool root,
                           float* out) {
    const auto* index = kTables.index.data();
    const ByteTableLanes indexOf(index);
    const __m512 sx = _mm512_loadu_ps(xs), sy = _mm512_loadu_ps(ys), sz = _mm512_loadu_ps(zs);
    const __m512i cx = floorLanes(sx), cy = floorLanes(sy), cz = floorLanes(sz);
    __m512 F[4];
    for (__m512& f : F) f = _mm512_set1_ps(kFarAway);
    for (int di = -1; di <= 1; ++di) {
        const __m512i i = _mm512_add_epi32(cx, _mm512_set1_epi32(di));
        const __m512 fi = _mm512_cvtepi32_ps(i);
        for (int dj = -1; dj <= 1; ++dj) {
            const __m512i j = _mm512_add_epi32(cy, _mm512_set1_epi32(dj));
            const __m512 fj = _mm512_cvtepi32_ps(j);
            for (int dk = -1; dk <= 1; ++dk) {
                const __m512i k = _mm512_add_epi32(cz, _mm512_set1_epi32(dk));
                const __m512i a = indexOf(k);
                const __m512i b = indexOf(_mm512_add_epi32(a, j));
                const __m512i row = indexOf(_mm512_add_epi32(b, i));
                const __m512 qx = _mm512_add_ps(fi, _mm512_i32gather_ps(row, kCoordColumns.x, 4));
                const __m512 qy = _mm512_add_ps(fj, _mm512_i32gather_ps(row, kCoordColumns.y, 4));
                const __m512 qz = _mm512_add_ps(_mm512_cvtepi32_ps(k), _mm512_i32gather_ps(row, kCoordColumns.z, 4));
                const __m512 vx = _mm512_sub_ps(sx, qx), vy = _mm512_sub_ps(sy, qy), vz = _mm512_sub_ps(sz, qz);
                __m512 d = _mm512_add_ps(_mm512_add_ps(_mm512_mul_ps(vx, vx), _mm512_mul_ps(vy, vy)), _mm512_mul_ps(vz, vz));
                if (root) d = _mm512_sqrt_ps(d);
                const __mmask16 beats0 = _mm512_cmp_ps_mask(d, F[0], _CMP_LT_OQ);
                const __mmask16 beats1 = _mm512_cmp_ps_mask(d, F[1], _CMP_LT_OQ);
                const __mmask16 beats2 = _mm512_cmp_ps_mask(d, F[2], _CMP_LT_OQ);
                const __mmask16 beats3 = _mm512_cmp_ps_mask(d, F[3], _CMP_LT_OQ);
                F[3] = _mm512_mask_blend_ps(beats2, _mm512_mask_blend_ps(beats3, F[3], d), F[2]);
                F[2] = _mm512_mask_blend_ps(beats1, _mm512_mask_blend_ps(beats2, F[2], d), F[1]);
                F[1] = _mm512_mask_blend_ps(beats0, _mm512_mask_blend_ps(beats1, F[1], d), F[0]);
                F[0] = _mm512_mask_blend_ps(beats0, F[0], d);
            }
        }
    }
    __m512 v;
    switch (t) {
        case Voronoi::Difference21: v = scaledLanes(_mm512_sub_ps(F[1], F[0])); break;
        case Voronoi::Difference32: v = scaledLanes(_mm512_sub_ps(F[2], F[1])); break;
        case Voronoi::Crackle: {
            // max(1, x) keeps 1 for a NaN x, as the comparison 1 < x does.
            const __m512 twenty = _mm512_mul_ps(_mm512_set1_ps(20.0f), scaledLanes(_mm512_sub_ps(F[1], F[0])));
            v = scaledLanes(_mm512_max_ps(twenty, _mm512_set1_ps(1.0f)));
            break;
        }
        case Voronoi::Second:
        case Voronoi::Third:
        case Voronoi::Fourth: v = scaledLanes(F[t]); break;
        case Voronoi::First:
        default: v = scaledLanes(F[0]); break;
    }
    _mm512_storeu_ps(out, v);
}

#endif  // __x86_64__

}  // namespace

void Voronoi::Get(const float* x, const float* y, const float* z, int n, VoronoiType t, DistanceMethod m,
                  float* out) {
    int done = 0;
#if defined(__x86_64__)
    const bool root = !(m >= LengthSquared && m <= Minkowski5);
    if ((root || m == LengthSquared) && simdLevel() == SimdLevel::kAvx512)
        for (; done + 16 <= n; done += 16) get16(x + done, y + done, z + done, t, root, out + done);
#endif
    for (; done < n; ++done) out[done] = Get(x[done], y[done], z[done], t, m);
}

}  // namespace gritwell
