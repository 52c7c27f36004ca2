#include "noise/Worley.h"

#include <algorithm>
#include <cmath>

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
constexpr std::uint32_t churn(std::uint32_t seed) { return 1402024253u * seed + 586950981u; }
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

double measure(double dx, double dy, double dz, DistanceMethod m) {
    switch (m) {
        case LengthSquared: {
            const double s = dx * dx + dy * dy + dz * dz;
            return s * s;
        }
        case LargestPlusRadial: {
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
        }
        case Manhattan: {
            const double s = std::fabs(dx) + std::fabs(dy) + std::fabs(dz);
            return s * s;
        }
        case Chebychev: {
            const double s = std::max(std::max(std::fabs(dx), std::fabs(dy)), std::fabs(dz));
            return s * s;
        }
        case Quadratic: {
            const double s = dx * dx + dy * dy + dz * dz + dx * dy + dx * dz + dy * dz;
            return s * s;
        }
        case Minkowski4: {
            // The fourth-order sum in double, its root in single precision;
            // squared in double so the final sqrt gives the root back exactly.
            const double s = dx * dx * dx * dx + dy * dy * dy * dy + dz * dz * dz * dz;
            const float r = std::pow(static_cast<float>(s), 0.25f);
            return static_cast<double>(r) * r;
        }
        case Minkowski5: {
            // The fourth power, not the square, of the root sum: the returned
            // distance is that fourth power. Stored records depend on it.
            const double s =
                std::sqrt(std::fabs(dx)) + std::sqrt(std::fabs(dy)) + std::sqrt(std::fabs(dz));
            const float r = std::pow(static_cast<float>(s), 4.0f);
            return static_cast<double>(r) * r;
        }
        case Length:
        default:
            return dx * dx + dy * dy + dz * dz;  // Length and every value outside the enumeration
    }
}

}  // namespace

void AddSamples(long xi, long yi, long zi, long max_order, const double* at, double* F,
                double (*delta)[3], unsigned long* ID, DistanceMethod m) {
    if (max_order < 1) return;
    const long order = std::min(max_order, kMaxOrder);

    std::uint32_t seed = kHashX * static_cast<std::uint32_t>(xi) +
                         kHashY * static_cast<std::uint32_t>(yi) +
                         kHashZ * static_cast<std::uint32_t>(zi);
    const std::int32_t count = Poisson_count[seed >> 24];
    seed = churn(seed);

    for (std::int32_t j = 0; j < count; ++j) {
        const std::uint32_t id = seed;
        seed = churn(seed);
        const double fx = unitOf(seed);
        seed = churn(seed);
        const double fy = unitOf(seed);
        seed = churn(seed);
        const double fz = unitOf(seed);
        seed = churn(seed);

        const double dx = static_cast<double>(xi) + fx - at[0];
        const double dy = static_cast<double>(yi) + fy - at[1];
        const double dz = static_cast<double>(zi) + fz - at[2];
        const double d2 = measure(dx, dy, dz, m);
        if (!(d2 < F[order - 1])) continue;

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
    }
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

    const double s[3] = {kDensityAdjustment * at[0], kDensityAdjustment * at[1],
                         kDensityAdjustment * at[2]};
    const long cube[3] = {cellIndex(s[0]), cellIndex(s[1]), cellIndex(s[2])};

    AddSamples(cube[0], cube[1], cube[2], order, s, F, delta, ID, m);

    // Squared distances from the sample to its cube's lower (near) and upper
    // (far) faces: a neighbour is searched only if its shared face, edge or
    // corner is nearer than the current worst of the kept features.
    double near[3], far[3];
    for (int a = 0; a < 3; ++a) {
        const double f = s[a] - static_cast<double>(cube[a]);
        far[a] = (1.0 - f) * (1.0 - f);
        near[a] = f * f;
    }
    for (const auto& o : kNeighbours) {
        double bound = 0.0;
        for (int a = 0; a < 3; ++a) {
            if (o[a] < 0) bound += near[a];
            if (o[a] > 0) bound += far[a];
        }
        if (bound < F[order - 1])
            AddSamples(cube[0] + o[0], cube[1] + o[1], cube[2] + o[2], order, s, F, delta, ID, m);
    }

    for (long i = 0; i < order; ++i) {
        F[i] = std::sqrt(F[i]) * kInverseDensity;
        for (double& d : delta[i]) d *= kInverseDensity;
    }
}

double Get(double x, double y, double z, VoronoiType t, DistanceMethod m) {
    const double at[3] = {x, y, z};
    double F[kMaxOrder];
    double delta[kMaxOrder][3];
    unsigned long ID[kMaxOrder];
    switch (t) {
        case Difference21:
            noise(at, 2, F, delta, ID, m);
            return F[1] - F[0];
        case Difference32:
            noise(at, 3, F, delta, ID, m);
            return F[2] - F[1];
        // Ten, not the twenty of Voronoi::Get, and no sqrt(2)/sqrt(3): the
        // two families have always differed here.
        case Crackle:
            return std::max(1.0, 10.0 * Get(x, y, z, Difference21, m));
        case First:
            noise(at, 1, F, delta, ID, m);
            return F[0];
        case Second:
        case Third:
        case Fourth:
        default:  // every further order, and the invalid negative types
            if (t < First) {
                noise(at, 1, F, delta, ID, m);
                return F[0];
            }
            // No 27 cubes hold that many features: the distance never
            // leaves its starting value, whose bits are these.
            if (t >= kMaxOrder) return std::sqrt(kUnset) * kInverseDensity;
            noise(at, t + 1, F, delta, ID, m);
            return F[t];
    }
}

}  // namespace gritwell::Worley
