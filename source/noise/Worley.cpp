#include "noise/Worley.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>
#include <utility>

#include "core/FloatToInt.h"

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
// A seed read as unsigned, centred in its step and mapped into (0, 1).
double unitOf(std::uint32_t seed) { return (seed + 0.5) * 2.3283064365386963e-10; }

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
    Scaled r{};
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
