#include "noise/Worley.h"

// GCC 12's AVX-512 intrinsics start some results from a deliberately
// undefined register and then warn that it is, or may be, used uninitialised.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>
#include <utility>

#include "core/FloatToInt.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"

namespace gritwell::Worley {

// Steven Worley's published feature counts per cube (mean about 2.6).
const std::int32_t Poisson_count[256] = {
    4, 3, 1, 1, 1, 2, 4, 2, 2, 2, 5, 1, 0, 2, 1, 2, 2, 0, 4, 3, 2, 1, 2, 1, 3, 2, 2, 4, 2, 2, 5, 1,
    2, 3, 2, 2, 2, 2, 2, 3, 2, 4, 2, 5, 3, 2, 2, 2, 5, 3, 3, 5, 2, 1, 3, 3, 4, 4, 2, 3, 0, 4, 2, 2,
    2, 1, 3, 2, 2, 2, 3, 3, 3, 1, 2, 0, 2, 1, 1, 2, 2, 2, 2, 5, 3, 2, 3, 2, 3, 2, 2, 1, 0, 2, 1, 1,
    2, 1, 2, 2, 1, 3, 4, 2, 2, 2, 5, 4, 2, 4, 2, 2, 5, 4, 3, 2, 2, 5, 4, 3, 3, 3, 5, 2, 2, 2, 2, 2,
    3, 1, 1, 4, 2, 1, 3, 3, 4, 3, 2, 4, 3, 3, 3, 4, 5, 1, 4, 2, 4, 3, 1, 2, 3, 5, 3, 2, 1, 3, 1, 3,
    3, 3, 2, 3, 1, 5, 5, 4, 2, 2, 4, 1, 3, 4, 1, 5, 3, 3, 5, 3, 4, 3, 2, 2, 1, 1, 1, 1, 1, 2, 4, 5,
    4, 5, 4, 2, 1, 5, 1, 1, 2, 3, 3, 3, 2, 5, 2, 3, 3, 2, 0, 2, 1, 1, 4, 2, 1, 3, 2, 1, 2, 2, 3, 2,
    5, 5, 3, 4, 5, 5, 2, 4, 4, 5, 3, 2, 2, 2, 1, 4, 2, 3, 3, 4, 2, 5, 4, 2, 4, 2, 2, 2, 4, 5, 3, 2,
};

namespace {

// Scales the sample so that the mean of F1 is 1 (the published value), and
// its reciprocal, which scales the results back.
constexpr double kDensityAdjustment = 0.398150;
constexpr double kInverseDensity = 2.5116162250408136;

// The published cube hash multipliers and the feature generator's LCG.
constexpr std::uint32_t kHashX = 702395077u;
constexpr std::uint32_t kHashY = 915488749u;
constexpr std::uint32_t kHashZ = 2120969693u;
constexpr std::uint32_t kChurnMul = 1402024253u;
constexpr std::uint32_t kChurnAdd = 586950981u;
constexpr std::uint32_t churn(std::uint32_t seed) { return kChurnMul * seed + kChurnAdd; }

// churn applied n times, as one multiply and add: a feature's three
// coordinates and the next seed all come from its first seed at once,
// rather than through a chain of four dependent steps.
struct Churns {
    std::uint32_t mul, add;
    constexpr std::uint32_t operator()(std::uint32_t seed) const { return mul * seed + add; }
};
constexpr Churns churnTimes(int n) {
    Churns c{1u, 0u};
    for (int k = 0; k < n; ++k) c = {kChurnMul * c.mul, kChurnMul * c.add + kChurnAdd};
    return c;
}
constexpr Churns kChurn2 = churnTimes(2), kChurn3 = churnTimes(3), kChurn4 = churnTimes(4);
static_assert(kChurn4(12345u) == churn(churn(churn(churn(12345u)))));
// A seed read as unsigned, centred in its step and mapped into (0, 1). Every
// step is exact: the sum needs 34 bits and the scale is 2^-32.
constexpr double kSeedScale = 2.3283064365386963e-10;
static_assert(kSeedScale == 0x1p-32);
double unitOf(std::uint32_t seed) { return (seed + 0.5) * kSeedScale; }

constexpr double kUnset = 999999.9;  // the search's starting "very far"

// The neighbour cubes in the published order: faces, edges, corners. Ties
// between equal measures go to the cube visited first.
constexpr int kNeighbours[26][3] = {
    {-1, 0, 0},   {0, -1, 0},   {0, 0, -1},  {1, 0, 0},  {0, 1, 0},   {0, 0, 1},   // faces
    {-1, -1, 0},  {-1, 0, -1},  {0, -1, -1}, {1, 1, 0},  {1, 0, 1},   {0, 1, 1},   // edges
    {-1, 1, 0},   {-1, 0, 1},   {0, -1, 1},  {1, -1, 0}, {1, 0, -1},  {0, 1, -1},  //
    {-1, -1, -1}, {-1, -1, 1},  {-1, 1, -1}, {-1, 1, 1},                           // corners
    {1, -1, -1},  {1, -1, 1},   {1, 1, -1},  {1, 1, 1},                            //
};

// Cube indices live in long: a cube beside the int-range extremes must not overflow.
static_assert(sizeof(long) >= 8, "cube indices need a 64-bit long");

template <DistanceMethod M>
[[gnu::always_inline]] inline double measureAs(double dx, double dy, double dz) {
    if constexpr (M == LengthSquared) {
        const double s = dx * dx + dy * dy + dz * dz;
        return s * s;
    } else if constexpr (M == LargestPlusRadial) {
        const double ax = std::fabs(dx), ay = std::fabs(dy), az = std::fabs(dz);
        double a, b, c;  // the largest (x before y before z on ties), then the others in order
        if (ax >= ay && ax >= az) {
            a = ax;
            b = dy;
            c = dz;
        } else if (ay >= az) {
            a = ay;
            b = dx;
            c = dz;
        } else {
            a = az;
            b = dx;
            c = dy;
        }
        const double r = a + std::sqrt(b * b + c * c);
        return r * r;
    } else if constexpr (M == Manhattan) {
        const double s = std::fabs(dx) + std::fabs(dy) + std::fabs(dz);
        return s * s;
    } else if constexpr (M == Chebychev) {
        const double s = std::max(std::max(std::fabs(dx), std::fabs(dy)), std::fabs(dz));
        return s * s;
    } else if constexpr (M == Quadratic) {
        const double s = dx * dx + dy * dy + dz * dz + dx * dy + dx * dz + dy * dz;
        return s * s;
    } else if constexpr (M == Minkowski4) {
        // The fourth-order sum in double, its root in single precision;
        // squared in double so the final sqrt gives the root back exactly.
        const double s = dx * dx * dx * dx + dy * dy * dy * dy + dz * dz * dz * dz;
        const float r = std::pow(static_cast<float>(s), 0.25f);
        return static_cast<double>(r) * r;
    } else if constexpr (M == Minkowski5) {
        // The fourth power, not the square, of the root sum: the returned
        // distance is that fourth power. Stored records depend on it.
        const double s = std::sqrt(std::fabs(dx)) + std::sqrt(std::fabs(dy)) + std::sqrt(std::fabs(dz));
        const float r = std::pow(static_cast<float>(s), 4.0f);
        return static_cast<double>(r) * r;
    } else {
        return dx * dx + dy * dy + dz * dz;  // Length
    }
}

// Calls f(M) with the method as a constant: Length for every value outside
// the enumeration.
template <class F>
[[gnu::always_inline]] inline decltype(auto) withMethod(DistanceMethod m, F f) {
    switch (m) {
        case LengthSquared: return f(std::integral_constant<DistanceMethod, LengthSquared>{});
        case LargestPlusRadial: return f(std::integral_constant<DistanceMethod, LargestPlusRadial>{});
        case Manhattan: return f(std::integral_constant<DistanceMethod, Manhattan>{});
        case Chebychev: return f(std::integral_constant<DistanceMethod, Chebychev>{});
        case Quadratic: return f(std::integral_constant<DistanceMethod, Quadratic>{});
        case Minkowski4: return f(std::integral_constant<DistanceMethod, Minkowski4>{});
        case Minkowski5: return f(std::integral_constant<DistanceMethod, Minkowski5>{});
        case Length:
        default: return f(std::integral_constant<DistanceMethod, Length>{});
    }
}

double measure(double dx, double dy, double dz, DistanceMethod m) {
    return withMethod(m, [&](auto method) { return measureAs<method()>(dx, dy, dz); });
}

// Visits the features of cube (xi, yi, zi) in the published order:
// visit(id, dx, dy, dz), the vector from the sample at to the feature.
template <class Visit>
[[gnu::always_inline]] inline void forEachFeature(long xi, long yi, long zi, const double* at, Visit visit) {
    std::uint32_t seed = kHashX * static_cast<std::uint32_t>(xi) +
                         kHashY * static_cast<std::uint32_t>(yi) +
                         kHashZ * static_cast<std::uint32_t>(zi);
    const std::int32_t count = Poisson_count[seed >> 24];
    seed = churn(seed);

    for (std::int32_t j = 0; j < count; ++j) {
        const std::uint32_t id = seed;
        const double fx = unitOf(churn(seed));
        const double fy = unitOf(kChurn2(seed));
        const double fz = unitOf(kChurn3(seed));
        seed = kChurn4(seed);
        visit(id, static_cast<double>(xi) + fx - at[0], static_cast<double>(yi) + fy - at[1],
              static_cast<double>(zi) + fz - at[2]);
    }
}

// The sample scaled to the features' density, its cube, and the squared
// distances to the cube's lower (near) and upper (far) faces.
struct Scaled {
    double s[3];
    long cube[3];
    double near[3], far[3];
};

Scaled scaledSample(const double* at) {
    Scaled r;  // every field is set below; zeroing it first cost a block store per sample
    for (int a = 0; a < 3; ++a) {
        r.s[a] = kDensityAdjustment * at[a];
        r.cube[a] = cellIndex(r.s[a]);
    }
    for (int a = 0; a < 3; ++a) {
        const double f = r.s[a] - static_cast<double>(r.cube[a]);
        r.far[a] = (1.0 - f) * (1.0 - f);
        r.near[a] = f * f;
    }
    return r;
}

// Neighbour I when its shared face, edge or corner is nearer than worst():
// the bound summed over the axes in order, as constants, so that the 26
// tests are straight code rather than a loop over the table.
template <std::size_t I, class AddCube, class Worst>
[[gnu::always_inline]] inline void searchNeighbour(const Scaled& p, AddCube& addCube, Worst& worst) {
    constexpr const int* o = kNeighbours[I];
    double bound = 0.0;
    if constexpr (o[0] < 0) bound += p.near[0];
    if constexpr (o[0] > 0) bound += p.far[0];
    if constexpr (o[1] < 0) bound += p.near[1];
    if constexpr (o[1] > 0) bound += p.far[1];
    if constexpr (o[2] < 0) bound += p.near[2];
    if constexpr (o[2] > 0) bound += p.far[2];
    if (bound < worst()) addCube(p.cube[0] + o[0], p.cube[1] + o[1], p.cube[2] + o[2]);
}

template <class AddCube, class Worst, std::size_t... I>
[[gnu::always_inline]] inline void searchNeighbours(const Scaled& p, AddCube& addCube, Worst& worst,
                                                     std::index_sequence<I...>) {
    (searchNeighbour<I>(p, addCube, worst), ...);
}

// The sample's cube, then each neighbour whose shared face, edge or corner
// is nearer than worst() (the current worst of the kept features).
template <class AddCube, class Worst>
[[gnu::always_inline]] inline void searchCubes(const Scaled& p, AddCube addCube, Worst worst) {
    addCube(p.cube[0], p.cube[1], p.cube[2]);
    searchNeighbours(p, addCube, worst, std::make_index_sequence<std::size(kNeighbours)>{});
}

// ---- Distances only ---------------------------------------------------------
//
// Get reads distances alone: its search keeps no vectors or identifiers and
// fixes the method and, for the first four orders, the number kept at
// compile time. Equal measures are interchangeable here, so the values are
// exactly those noise() gives.

template <DistanceMethod M, long Order>
void nearestMeasures(const Scaled& p, long order, double* F) {
    const long n = Order > 0 ? Order : order;
    for (long i = 0; i < n; ++i) F[i] = kUnset;
    searchCubes(
        p,
        [&](long xi, long yi, long zi) {
            forEachFeature(xi, yi, zi, p.s, [&](std::uint32_t, double dx, double dy, double dz) {
                double d2 = measureAs<M>(dx, dy, dz);
                if constexpr (Order == 1 || Order == 2) {
                    // One or two places: each a select, not a branch on
                    // every feature. The values are the insert's below, an
                    // equal measure going after; a NaN moves nothing.
                    for (long i = 0; i < Order; ++i) {
                        const bool before = d2 < F[i];
                        const double kept = before ? d2 : F[i];
                        d2 = before ? F[i] : d2;
                        F[i] = kept;
                    }
                    return;
                }
                if (!(d2 < F[n - 1])) return;
                long index = n - 1;
                while (index > 0 && d2 < F[index - 1]) {
                    F[index] = F[index - 1];
                    --index;
                }
                F[index] = d2;
            });
        },
        [&] { return F[n - 1]; });
}

// The (order)-th nearest distances F[0..order-1], scaled back.
void nearest(const double* at, long order, double* F, DistanceMethod m) {
    const Scaled p = scaledSample(at);
    withMethod(m, [&](auto method) {
        switch (order) {
            case 1: return nearestMeasures<method(), 1>(p, order, F);
            case 2: return nearestMeasures<method(), 2>(p, order, F);
            case 3: return nearestMeasures<method(), 3>(p, order, F);
            case 4: return nearestMeasures<method(), 4>(p, order, F);
            default: return nearestMeasures<method(), 0>(p, order, F);
        }
    });
    for (long i = 0; i < order; ++i) F[i] = std::sqrt(F[i]) * kInverseDensity;
}

// ---- The nearest feature, cubes across the lanes ----------------------------
//
// F1 by the Euclidean measure on AVX2 processors (and AVX-512 ones): the
// cubes' features eight cubes at a time, a lane per cube, rather than one
// feature after another. A cube's features all come from its hash by
// multiplies and adds, so the k-th feature of eight cubes is one set of lane
// steps; a cube holding fewer features masks its lane out of the later rounds.
//
// The search keeps the same value as the pruned one in its visiting order.
// For this measure a neighbour's bound (its shared face, edge or corner, as
// computed) never exceeds any of its features' measures as computed: along an
// axis the feature lies beyond the shared face, a rounded difference keeps
// that order, and the sums of squares, added in the same axis order, are
// monotone in each term. (Only for a sample just below 0 can the gap to the
// upper face round long, by at most 2^-54, and every feature lies at least
// 2^-33 inside its cube.) So a cube the prune skips holds nothing nearer than what
// was kept, and F1 is the least measure over all 27 cubes. The least measure
// does not depend on the order the candidates come in (measures are never
// NaN here once kept, never -0), so the cubes can go in any order and any
// cube whose bound is not below the least measure found so far can be
// skipped. First the 2x2x2 block of cubes on the sample's nearer side of each
// axis, which nearly always holds the nearest feature, then the others in
// groups of eight, each group only where one of its bounds is below it.

// The 27 cubes as steps towards (+1) or away from (-1) the nearer face of the
// sample's cube on each axis: the block first, then the others, fewest steps
// away first; lanes 27 to 31 are padding.
struct CubeLanes {
    std::int32_t toward[3][32];
    std::int32_t inUse[32];  // -1 for the 27 cubes, 0 for padding
};

constexpr CubeLanes makeCubeLanes() {
    CubeLanes lanes{};
    int lane = 0;
    auto add = [&](int x, int y, int z) {
        lanes.toward[0][lane] = x;
        lanes.toward[1][lane] = y;
        lanes.toward[2][lane] = z;
        lanes.inUse[lane] = -1;
        ++lane;
    };
    for (int away = 0; away <= 3; ++away)
        for (int close = 0; close <= 3 - away; ++close)
            for (int x = -1; x <= 1; ++x)
                for (int y = -1; y <= 1; ++y)
                    for (int z = -1; z <= 1; ++z) {
                        const int a = (x < 0) + (y < 0) + (z < 0), c = (x > 0) + (y > 0) + (z > 0);
                        if (a == away && c == close) add(x, y, z);
                    }
    return lanes;
}

constexpr CubeLanes kCubeLanes = makeCubeLanes();
static_assert(kCubeLanes.inUse[26] == -1 && kCubeLanes.inUse[27] == 0);
static_assert(kCubeLanes.toward[0][7] >= 0 && kCubeLanes.toward[1][7] >= 0 && kCubeLanes.toward[2][7] >= 0,
              "the first eight lanes are the block on the nearer side");

// The three coordinate seeds of each cube's k-th feature, from its hash.
constexpr Churns kFeatureChurns[5][3] = {
    {churnTimes(2), churnTimes(3), churnTimes(4)},     {churnTimes(6), churnTimes(7), churnTimes(8)},
    {churnTimes(10), churnTimes(11), churnTimes(12)},  {churnTimes(14), churnTimes(15), churnTimes(16)},
    {churnTimes(18), churnTimes(19), churnTimes(20)},
};

// The sample as the lanes read it.
struct SampleForLanes {
    std::uint32_t hash;          // its cube's
    std::int32_t step[3];        // towards the nearer face: -1 or +1
    std::uint32_t hashStep[3];   // the hash's change for one such step
    double s[3], cube[3];
    double closeGap[3], farGap[3];  // the bounds of one step towards and away
};

// The lanes' four doubles from eight int lanes: the low or the high half.
GRITWELL_AVX2 inline __m256i half64(__m256i v, int high) {
    return _mm256_cvtepi32_epi64(high ? _mm256_extracti128_si256(v, 1) : _mm256_castsi256_si128(v));
}

// The least measure of the features in the cubes of lanes [8g, 8g + 8)
// where use (four doubles per half) is set, merged into least.
GRITWELL_AVX2 [[gnu::always_inline]] inline void leastInGroup(const SampleForLanes& p, int g, const __m256i use[2], __m256d least[2]) {
    __m256i hash = _mm256_set1_epi32(static_cast<std::int32_t>(p.hash));
    __m256d cube[3][2];
    for (int a = 0; a < 3; ++a) {
        const __m256i toward = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kCubeLanes.toward[a] + 8 * g));
        hash = _mm256_add_epi32(hash, _mm256_sign_epi32(_mm256_set1_epi32(static_cast<std::int32_t>(p.hashStep[a])), toward));
        const __m256i offset = _mm256_sign_epi32(_mm256_set1_epi32(p.step[a]), toward);
        for (int h = 0; h < 2; ++h)
            cube[a][h] = _mm256_add_pd(_mm256_set1_pd(p.cube[a]),
                                       _mm256_cvtepi32_pd(h ? _mm256_extracti128_si256(offset, 1)
                                                            : _mm256_castsi256_si128(offset)));
    }
    const __m256i count =
        _mm256_i32gather_epi32(reinterpret_cast<const int*>(Poisson_count), _mm256_srli_epi32(hash, 24), 4);
    // Each hash in a 64-bit lane, the seed read as a double by its bits, as
    // in the AVX-512 form below.
    const __m256i hash64[2] = {_mm256_cvtepu32_epi64(_mm256_castsi256_si128(hash)),
                               _mm256_cvtepu32_epi64(_mm256_extracti128_si256(hash, 1))};
    const __m256d twoTo20 = _mm256_set1_pd(1048576.0), halfStep = _mm256_set1_pd(0x1p-33);
    const __m256i low32 = _mm256_set1_epi64x(0xffffffff), exponent = _mm256_set1_epi64x(0x4130000000000000);
#pragma GCC unroll 5
    for (int k = 0; k < 5; ++k) {
        const __m256i live = _mm256_cmpgt_epi32(count, _mm256_set1_epi32(k));
        const __m256i liveUsed[2] = {_mm256_and_si256(half64(live, 0), use[0]),
                                     _mm256_and_si256(half64(live, 1), use[1])};
        if (_mm256_testz_si256(_mm256_or_si256(liveUsed[0], liveUsed[1]), _mm256_set1_epi32(-1))) break;
        __m256d d2[2] = {_mm256_setzero_pd(), _mm256_setzero_pd()};
#pragma GCC unroll 3
        for (int a = 0; a < 3; ++a) {
            const Churns c = kFeatureChurns[k][a];
#pragma GCC unroll 2
            for (int h = 0; h < 2; ++h) {
                const __m256i seed = _mm256_add_epi32(_mm256_mul_epu32(hash64[h], _mm256_set1_epi64x(c.mul)),
                                                      _mm256_set1_epi64x(c.add));
                const __m256d shifted = _mm256_castsi256_pd(_mm256_or_si256(_mm256_and_si256(seed, low32), exponent));
                const __m256d unit = _mm256_add_pd(_mm256_sub_pd(shifted, twoTo20), halfStep);
                const __m256d d = _mm256_sub_pd(_mm256_add_pd(cube[a][h], unit), _mm256_set1_pd(p.s[a]));
                const __m256d squared = _mm256_mul_pd(d, d);
                d2[h] = a == 0 ? squared : _mm256_add_pd(d2[h], squared);
            }
        }
        // min(d2, least) keeps least for a NaN, as the scalar comparison does.
        for (int h = 0; h < 2; ++h)
            least[h] = _mm256_blendv_pd(least[h], _mm256_min_pd(d2[h], least[h]), _mm256_castsi256_pd(liveUsed[h]));
    }
}

GRITWELL_AVX2 inline double leastOf(const __m256d least[2]) {
    const __m256d four = _mm256_min_pd(least[0], least[1]);
    const __m128d two = _mm_min_pd(_mm256_castpd256_pd128(four), _mm256_extractf128_pd(four, 1));
    return _mm_cvtsd_f64(_mm_min_sd(two, _mm_unpackhi_pd(two, two)));
}

// The sample as scaledSample places it, the three axes in one register: the
// same products, cell index and differences, with selects for the nearer
// face, whose side is as good as random.
GRITWELL_AVX2 inline SampleForLanes sampleForLanes(double x, double y, double z) {
    SampleForLanes q;
    const __m256d s = _mm256_mul_pd(_mm256_set1_pd(kDensityAdjustment), _mm256_setr_pd(x, y, z, 0.0));
    // cvttpd2dq is truncToInt lane by lane: INT_MIN for NaN and out of range.
    const __m128i truncated = _mm256_cvttpd_epi32(s);
    const __m128i negative = _mm256_cvtpd_epi32(_mm256_and_pd(_mm256_cmp_pd(s, _mm256_setzero_pd(), _CMP_LT_OQ),
                                                              _mm256_set1_pd(-1.0)));
    const __m128i cube = _mm_add_epi32(truncated, negative);  // cellIndex, wrapping as wrapAdd does
    const __m256d cubeD = _mm256_cvtepi32_pd(cube);
    const __m256d f = _mm256_sub_pd(s, cubeD);
    const __m256d g = _mm256_sub_pd(_mm256_set1_pd(1.0), f);
    const __m256d near = _mm256_mul_pd(f, f), far = _mm256_mul_pd(g, g);
    const __m256d lowerIsNearer = _mm256_cmp_pd(near, far, _CMP_LT_OQ);
    const __m128i lower = _mm256_cvtpd_epi32(_mm256_and_pd(lowerIsNearer, _mm256_set1_pd(-1.0)));
    const __m128i hashOf = _mm_setr_epi32(static_cast<std::int32_t>(kHashX), static_cast<std::int32_t>(kHashY),
                                          static_cast<std::int32_t>(kHashZ), 0);
    const __m128i terms = _mm_mullo_epi32(hashOf, cube);
    alignas(16) std::uint32_t t[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(t), terms);
    q.hash = t[0] + t[1] + t[2];
    alignas(16) std::int32_t step[4], hashStep[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(step), _mm_or_si128(lower, _mm_set1_epi32(1)));
    _mm_store_si128(reinterpret_cast<__m128i*>(hashStep), _mm_sub_epi32(_mm_xor_si128(hashOf, lower), lower));
    alignas(32) double sampled[4], cubes[4], close[4], away[4];
    _mm256_store_pd(sampled, s);
    _mm256_store_pd(cubes, cubeD);
    _mm256_store_pd(close, _mm256_min_pd(far, near));  // near < far ? near : far
    _mm256_store_pd(away, _mm256_max_pd(near, far));   // near < far ? far : near
    for (int a = 0; a < 3; ++a) {
        q.step[a] = step[a];
        q.hashStep[a] = static_cast<std::uint32_t>(hashStep[a]);
        q.s[a] = sampled[a];
        q.cube[a] = cubes[a];
        q.closeGap[a] = close[a];
        q.farGap[a] = away[a];
    }
    return q;
}

// Which lanes of each group of eight hold one of the 27 cubes.
constexpr __mmask8 kGroupInUse[4] = {0xff, 0xff, 0xff, 0x07};
static_assert(kCubeLanes.inUse[8 * 3 + 2] == -1 && kCubeLanes.inUse[8 * 3 + 3] == 0);

GRITWELL_AVX2 double nearestLengthAcrossCubes2(const SampleForLanes& q) {
    // The other groups' bounds as the scalar search sums them (the axes in
    // order, 0 for an axis not stepped), formed before the block is searched.
    __m256d bound[4][2];
    for (int g = 1; g < 4; ++g)
        for (int h = 0; h < 2; ++h) {
            bound[g][h] = _mm256_setzero_pd();
            for (int a = 0; a < 3; ++a) {
                const __m256i toward = half64(
                    _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kCubeLanes.toward[a] + 8 * g)), h);
                const __m256d close = _mm256_and_pd(_mm256_castsi256_pd(_mm256_cmpgt_epi64(toward, _mm256_setzero_si256())),
                                                    _mm256_set1_pd(q.closeGap[a]));
                const __m256d away = _mm256_and_pd(_mm256_castsi256_pd(_mm256_cmpgt_epi64(_mm256_setzero_si256(), toward)),
                                                   _mm256_set1_pd(q.farGap[a]));
                bound[g][h] = _mm256_add_pd(bound[g][h], _mm256_or_pd(close, away));
            }
            const __m256i inUse = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kCubeLanes.inUse + 8 * g));
            // Padding lanes never pass: their bound becomes NaN.
            bound[g][h] = _mm256_or_pd(bound[g][h], _mm256_castsi256_pd(_mm256_xor_si256(half64(inUse, h), _mm256_set1_epi32(-1))));
        }
    __m256d least[2] = {_mm256_set1_pd(kUnset), _mm256_set1_pd(kUnset)};
    const __m256i all[2] = {_mm256_set1_epi32(-1), _mm256_set1_epi32(-1)};
    leastInGroup(q, 0, all, least);
    double best = leastOf(least);
    __m256d any = _mm256_setzero_pd();
    for (int g = 1; g < 4; ++g)
        for (int h = 0; h < 2; ++h) any = _mm256_or_pd(any, _mm256_cmp_pd(bound[g][h], _mm256_set1_pd(best), _CMP_LT_OQ));
    if (_mm256_testz_pd(any, any)) return best;
    for (int g = 1; g < 4; ++g) {
        const __m256i use[2] = {_mm256_castpd_si256(_mm256_cmp_pd(bound[g][0], _mm256_set1_pd(best), _CMP_LT_OQ)),
                                _mm256_castpd_si256(_mm256_cmp_pd(bound[g][1], _mm256_set1_pd(best), _CMP_LT_OQ))};
        if (_mm256_testz_si256(_mm256_or_si256(use[0], use[1]), _mm256_set1_epi32(-1))) continue;
        leastInGroup(q, g, use, least);
        best = leastOf(least);
    }
    return best;
}

// The published table as bytes, four registers' worth, for byte permutes
// rather than a gather: the count is on the path of every group.
struct PoissonBytes {
    alignas(64) std::uint8_t count[256];
};
constexpr PoissonBytes makePoissonBytes() {
    PoissonBytes b{};
    for (int i = 0; i < 256; ++i) b.count[i] = static_cast<std::uint8_t>(Poisson_count[i]);
    return b;
}
constexpr PoissonBytes kPoissonBytes = makePoissonBytes();

// Poisson_count[hash >> 24] for eight hashes.
GRITWELL_AVX512 inline __m256i poissonCountLanes(__m256i hash) {
    const __m512i index = _mm512_castsi256_si512(_mm256_srli_epi32(hash, 24));
    const __m512i* table = reinterpret_cast<const __m512i*>(kPoissonBytes.count);
    const __m512i low = _mm512_permutex2var_epi8(_mm512_load_si512(table), index, _mm512_load_si512(table + 1));
    const __m512i high = _mm512_permutex2var_epi8(_mm512_load_si512(table + 2), index, _mm512_load_si512(table + 3));
    const __m512i bytes = _mm512_mask_blend_epi8(_mm512_movepi8_mask(index), low, high);
    return _mm256_and_si256(_mm512_castsi512_si256(bytes), _mm256_set1_epi32(0xff));
}

// The same search with the doubles of eight cubes in one register, for
// AVX-512 processors: half the double steps, and masks in mask registers.
//
// Near the origin (cube coordinates below 2^19 in size) the cube plus the
// half step, cube + 2^-33, is exact, so it is added once per cube rather
// than once per feature: the feature's coordinate is then one rounded sum of
// the same two exact terms.
template <bool NearOrigin>
GRITWELL_AVX512 [[gnu::always_inline]] inline __m512d leastInGroup512(const SampleForLanes& p, int g, __mmask8 use,
                                                                       __m512d least) {
    __m256i hash = _mm256_set1_epi32(static_cast<std::int32_t>(p.hash));
    __m512d cube[3];
    for (int a = 0; a < 3; ++a) {
        const __m256i toward = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kCubeLanes.toward[a] + 8 * g));
        hash = _mm256_add_epi32(hash, _mm256_sign_epi32(_mm256_set1_epi32(static_cast<std::int32_t>(p.hashStep[a])), toward));
        cube[a] = _mm512_add_pd(_mm512_set1_pd(p.cube[a]),
                                _mm512_cvtepi32_pd(_mm256_sign_epi32(_mm256_set1_epi32(p.step[a]), toward)));
    }
    const __m256i count = poissonCountLanes(hash);
    // Each hash in a 64-bit lane: one multiply per lane gives the seed in the
    // low half, and the seed under the exponent of 2^20 reads as the double
    // 2^20 + seed 2^-32, exactly; less 2^20 it is seed 2^-32, and the
    // feature's offset is that plus 2^-33, exactly.
    const __m512i hash64 = _mm512_cvtepu32_epi64(hash);
    const __m512d twoTo20 = _mm512_set1_pd(1048576.0), halfStep = _mm512_set1_pd(0x1p-33);
    if constexpr (NearOrigin)
        for (__m512d& c : cube) c = _mm512_add_pd(c, halfStep);
#pragma GCC unroll 5
    for (int k = 0; k < 5; ++k) {
        const __mmask8 live = static_cast<__mmask8>(
            _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_cmpgt_epi32(count, _mm256_set1_epi32(k))))) & use;
        if (g != 0 && live == 0) break;
        __m512d d2 = _mm512_setzero_pd();
#pragma GCC unroll 3
        for (int a = 0; a < 3; ++a) {
            const Churns c = kFeatureChurns[k][a];
            const __m512i seed = _mm512_add_epi32(_mm512_mul_epu32(hash64, _mm512_set1_epi64(c.mul)), _mm512_set1_epi64(c.add));
            // (seed & 0xffffffff) | the bits of 2^20
            const __m512d shifted = _mm512_castsi512_pd(_mm512_ternarylogic_epi64(
                seed, _mm512_set1_epi64(0xffffffff), _mm512_set1_epi64(0x4130000000000000), 0xea));
            const __m512d unit = _mm512_sub_pd(shifted, twoTo20);
            const __m512d at = NearOrigin ? _mm512_add_pd(cube[a], unit) : _mm512_add_pd(cube[a], _mm512_add_pd(unit, halfStep));
            const __m512d d = _mm512_sub_pd(at, _mm512_set1_pd(p.s[a]));
            d2 = a == 0 ? _mm512_mul_pd(d, d) : _mm512_add_pd(d2, _mm512_mul_pd(d, d));
        }
        least = _mm512_mask_min_pd(least, live, d2, least);
    }
    return least;
}

template <bool NearOrigin>
GRITWELL_AVX512 double nearestLengthAcrossCubes512(const SampleForLanes& q) {
    // The other groups' bounds depend on the sample alone, so they are ready
    // by the time the block's least is, and one test passes all three groups
    // by in the usual case.
    __m512d bound[4];
    for (int g = 1; g < 4; ++g) {
        bound[g] = _mm512_setzero_pd();
        for (int a = 0; a < 3; ++a) {
            const __m512d toward = _mm512_cvtepi32_pd(
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(kCubeLanes.toward[a] + 8 * g)));
            const __m512d gap = _mm512_mask_mov_pd(
                _mm512_maskz_mov_pd(_mm512_cmp_pd_mask(toward, _mm512_setzero_pd(), _CMP_LT_OQ), _mm512_set1_pd(q.farGap[a])),
                _mm512_cmp_pd_mask(toward, _mm512_setzero_pd(), _CMP_GT_OQ), _mm512_set1_pd(q.closeGap[a]));
            bound[g] = _mm512_add_pd(bound[g], gap);
        }
    }
    __m512d least = leastInGroup512<NearOrigin>(q, 0, 0xff, _mm512_set1_pd(kUnset));
    double best = _mm512_reduce_min_pd(least);
    __mmask8 any = 0;
    for (int g = 1; g < 4; ++g) any |= _mm512_cmp_pd_mask(bound[g], _mm512_set1_pd(best), _CMP_LT_OQ) & kGroupInUse[g];
    if (any == 0) return best;
    for (int g = 1; g < 4; ++g) {
        const __mmask8 use = _mm512_cmp_pd_mask(bound[g], _mm512_set1_pd(best), _CMP_LT_OQ) & kGroupInUse[g];
        if (use == 0) continue;
        least = leastInGroup512<NearOrigin>(q, g, use, least);
        best = _mm512_reduce_min_pd(least);
    }
    return best;
}

// F1 by the Euclidean measure, scaled back, on AVX2 and AVX-512 processors.
GRITWELL_AVX2 double firstByLengthAcrossCubes(double x, double y, double z) {
    const SampleForLanes q = sampleForLanes(x, y, z);
    double least;
    if (simdLevel() == SimdLevel::kAvx512) {
        constexpr double kNearOrigin = 524287.0;  // 2^19 - 1: the neighbours' coordinates stay below 2^19
        const bool nearOrigin = std::fabs(q.cube[0]) < kNearOrigin && std::fabs(q.cube[1]) < kNearOrigin &&
                                std::fabs(q.cube[2]) < kNearOrigin;
        least = nearOrigin ? nearestLengthAcrossCubes512<true>(q) : nearestLengthAcrossCubes512<false>(q);
    } else {
        least = nearestLengthAcrossCubes2(q);
    }
    return std::sqrt(least) * kInverseDensity;
}

}  // namespace

void AddSamples(long xi, long yi, long zi, long max_order, const double* at, double* F,
                double (*delta)[3], unsigned long* ID, DistanceMethod m) {
    if (max_order < 1) return;
    const long order = std::min(max_order, kMaxOrder);

    forEachFeature(xi, yi, zi, at, [&](std::uint32_t id, double dx, double dy, double dz) {
        const double d2 = measure(dx, dy, dz, m);
        if (!(d2 < F[order - 1])) return;

        // Insertion: strict comparisons keep earlier equal features ahead.
        long index = order;
        while (index > 0 && d2 < F[index - 1]) --index;
        for (long i = order - 2; i >= index; --i) {
            F[i + 1] = F[i];
            ID[i + 1] = ID[i];
            std::copy_n(delta[i], 3, delta[i + 1]);
        }
        F[index] = d2;
        ID[index] = id;
        delta[index][0] = dx;
        delta[index][1] = dy;
        delta[index][2] = dz;
    });
}

void noise(const double* at, long max_order, double* F, double (*delta)[3], unsigned long* ID,
           DistanceMethod m) {
    if (max_order < 1) return;
    const long order = std::min(max_order, kMaxOrder);
    for (long i = 0; i < order; ++i) {
        F[i] = kUnset;
        ID[i] = 0;
        std::fill_n(delta[i], 3, 0.0);
    }

    const Scaled p = scaledSample(at);
    searchCubes(
        p, [&](long xi, long yi, long zi) { AddSamples(xi, yi, zi, order, p.s, F, delta, ID, m); },
        [&] { return F[order - 1]; });

    for (long i = 0; i < order; ++i) {
        F[i] = std::sqrt(F[i]) * kInverseDensity;
        for (double& d : delta[i]) d *= kInverseDensity;
    }
}

double Get(double x, double y, double z, VoronoiType t, DistanceMethod m) {
    const double at[3] = {x, y, z};
    double F[kMaxOrder];
    switch (t) {
        case Difference21:
            nearest(at, 2, F, m);
            return F[1] - F[0];
        case Difference32:
            nearest(at, 3, F, m);
            return F[2] - F[1];
        // Ten, not the twenty of Voronoi::Get, and no sqrt(2)/sqrt(3): the
        // two families have always differed here.
        case Crackle:
            return std::max(1.0, 10.0 * Get(x, y, z, Difference21, m));
        case First:
            if ((m < LengthSquared || m > Minkowski5) && simdLevel() >= SimdLevel::kAvx2)
                return firstByLengthAcrossCubes(x, y, z);  // Length, as every value outside the enumeration
            nearest(at, 1, F, m);
            return F[0];
        case Second:
        case Third:
        case Fourth:
        default:  // every further order, and the invalid negative types
            if (t < First) {
                nearest(at, 1, F, m);
                return F[0];
            }
            // No 27 cubes hold that many features: the distance never
            // leaves its starting value, whose bits are these.
            if (t >= kMaxOrder) return std::sqrt(kUnset) * kInverseDensity;
            nearest(at, t + 1, F, m);
            return F[t];
    }
}

}  // namespace gritwell::Worley
