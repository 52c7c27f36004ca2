#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/SimdLevel.h"
#include "noise/Worley.h"

using namespace gritwell;

namespace {

constexpr double kScale = 2.5116162250408136;
constexpr Worley::DistanceMethod kMethods[] = {
    Worley::Length,    Worley::LengthSquared, Worley::LargestPlusRadial, Worley::Manhattan,
    Worley::Chebychev, Worley::Quadratic,     Worley::Minkowski4,        Worley::Minkowski5,
};

struct Result {
    double F[4];
    double delta[4][3];
    unsigned long ID[4];
};

Result search(double x, double y, double z, Worley::DistanceMethod m, long order = 4) {
    Result r;
    const double at[3] = {x, y, z};
    Worley::noise(at, order, r.F, r.delta, r.ID, m);
    return r;
}

double lengthOf(const double* d) { return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]); }

}  // namespace

TEST(Worley, PoissonCountIsThePublishedTable) {
    const int head[10] = {4, 3, 1, 1, 1, 2, 4, 2, 2, 2};
    for (int i = 0; i < 10; ++i) EXPECT_EQ(Worley::Poisson_count[i], head[i]);
    // Checksums over the whole table pin every value and its place.
    long sum = 0, weighted = 0;
    for (int i = 0; i < 256; ++i) {
        const int c = Worley::Poisson_count[i];
        ASSERT_TRUE(c >= 0 && c <= 5) << i;
        sum += c;
        weighted += long(i) * c;
    }
    EXPECT_EQ(sum, 665);
    EXPECT_EQ(weighted, 89068);
}

TEST(Worley, AddSamplesPlacesFeaturesFromThePublishedGenerator) {
    // The cube hash picks the count from its top byte; each feature takes the
    // seed as its identifier, then one LCG step per coordinate and one more.
    auto churn = [](std::uint32_t s) { return 1402024253u * s + 586950981u; };
    const long cubes[][3] = {{0, 0, 0}, {1, 2, 3}, {-1, -7, 4}, {-300, 2, -9}, {5, -1, -1}};
    for (const auto& cube : cubes) {
        std::uint32_t seed = 702395077u * std::uint32_t(cube[0]) +
                             915488749u * std::uint32_t(cube[1]) +
                             2120969693u * std::uint32_t(cube[2]);
        const int count = Worley::Poisson_count[seed >> 24];
        seed = churn(seed);
        std::uint32_t ids[5];
        double points[5][3];
        for (int f = 0; f < count; ++f) {
            ids[f] = seed;
            for (int a = 0; a < 3; ++a) {
                seed = churn(seed);
                points[f][a] = cube[a] + (seed + 0.5) / 4294967296.0;
            }
            seed = churn(seed);
        }

        const double at[3] = {cube[0] + 0.25, cube[1] + 0.5, cube[2] + 0.75};
        double F[4] = {999999.9, 999999.9, 999999.9, 999999.9};
        double delta[4][3];
        unsigned long ID[4];
        Worley::AddSamples(cube[0], cube[1], cube[2], 4, at, F, delta, ID, Worley::Length);
        for (int r = 0; r < std::min(count, 4); ++r) {
            const int f = int(std::find(ids, ids + count, ID[r]) - ids);
            ASSERT_LT(f, count) << "unknown identifier " << ID[r];
            for (int a = 0; a < 3; ++a) EXPECT_EQ(delta[r][a], points[f][a] - at[a]);
            const double* d = delta[r];
            EXPECT_EQ(F[r], d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
            if (r > 0) {
                EXPECT_LT(F[r - 1], F[r]);
            }
        }
        for (int r = count; r < 4; ++r) EXPECT_EQ(F[r], 999999.9);
    }
}

TEST(Worley, ReturnedDistancesAreScaledBackToTheSamplesUnits) {
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> coord(-60.0, 60.0);
    double meanF1 = 0.0;
    const int samples = 4000;
    for (int n = 0; n < samples; ++n) {
        const double x = coord(rng), y = coord(rng), z = coord(rng);
        const Result e = search(x, y, z, Worley::Length);
        for (int r = 0; r < 4; ++r) {
            // F = sqrt(m) * 2.51..., delta = (feature - sample) * 0.398... * 2.51...
            EXPECT_NEAR(e.F[r], lengthOf(e.delta[r]), 1e-12 * e.F[r]);
        }
        // The squared length comes back as sqrt(m) * scale with m = |d|^4.
        const Result s = search(x, y, z, Worley::LengthSquared);
        const double d = lengthOf(s.delta[0]) / kScale;
        EXPECT_NEAR(s.F[0], d * d * kScale, 1e-12 * s.F[0] + 1e-15);
        meanF1 += e.F[0];
    }
    // The density adjustment makes F1 average 1.
    EXPECT_NEAR(meanF1 / samples, 1.0, 0.03);
}

TEST(Worley, MinkowskiHalfReturnsTheFourthPowerOfTheRootSum) {
    std::mt19937 rng(9);
    std::uniform_real_distribution<double> coord(-30.0, 30.0);
    for (int n = 0; n < 300; ++n) {
        const double x = coord(rng), y = coord(rng), z = coord(rng);
        const Result half = search(x, y, z, Worley::Minkowski5);
        const Result taxi = search(x, y, z, Worley::Manhattan);
        for (int r = 0; r < 4; ++r) {
            double rootSum = 0.0, sum = 0.0;
            for (int a = 0; a < 3; ++a) {
                rootSum += std::sqrt(std::fabs(half.delta[r][a]) / kScale);
                sum += std::fabs(taxi.delta[r][a]);
            }
            EXPECT_NEAR(half.F[r] / kScale, std::pow(rootSum, 4.0), 1e-5 * half.F[r]);
            EXPECT_NEAR(taxi.F[r], sum, 1e-12 * sum);
        }
        // (sum of roots)^2 >= the sum, so the 4th power bounds the squared
        // taxicab distance of the nearest feature from above.
        const double t = taxi.F[0] / kScale;
        EXPECT_GE(half.F[0] / kScale, t * t * (1.0 - 1e-6));
    }
}

TEST(Worley, PrunedCubesHoldNothingNearerThanWhatTheSearchKeeps) {
    // For measures never below the squared Euclidean length, a neighbour
    // cube skipped for its shared face, edge or corner holds no nearer
    // feature: the search must find what all 27 cubes give.
    struct Case {
        Worley::DistanceMethod method;
        long order;
    };
    const Case cases[] = {
        {Worley::Length, 1},    {Worley::Length, 2},    {Worley::Length, 4},
        {Worley::Manhattan, 1}, {Worley::Manhattan, 3}, {Worley::LargestPlusRadial, 2},
    };
    std::mt19937 rng(29);
    std::uniform_real_distribution<double> coord(-30.0, 30.0);
    for (int n = 0; n < 300; ++n) {
        const double x = coord(rng), y = coord(rng), z = coord(rng);
        const double s[3] = {0.398150 * x, 0.398150 * y, 0.398150 * z};
        for (const Case& c : cases) {
            double all[4] = {999999.9, 999999.9, 999999.9, 999999.9};
            double delta[4][3];
            unsigned long ID[4];
            for (long i = -1; i <= 1; ++i)
                for (long j = -1; j <= 1; ++j)
                    for (long k = -1; k <= 1; ++k)
                        Worley::AddSamples(long(std::floor(s[0])) + i, long(std::floor(s[1])) + j,
                                           long(std::floor(s[2])) + k, c.order, s, all, delta, ID, c.method);
            const Result pruned = search(x, y, z, c.method, c.order);
            for (long r = 0; r < c.order; ++r)
                EXPECT_EQ(pruned.F[r], std::sqrt(all[r]) * kScale)
                    << "method " << c.method << " order " << c.order << " F" << r + 1 << " at " << x << ", " << y
                    << ", " << z;
            EXPECT_EQ(Worley::Get(x, y, z, Worley::First, c.method), std::sqrt(all[0]) * kScale)
                << "method " << c.method;
        }
    }
}

TEST(Worley, GetCombinesWithoutFurtherScaling) {
    std::mt19937 rng(13);
    std::uniform_real_distribution<double> coord(-20.0, 20.0);
    int crackleAboveFloor = 0;
    for (int n = 0; n < 200; ++n) {
        const double x = coord(rng), y = coord(rng), z = coord(rng);
        for (auto m : kMethods) {
            // Each type searches only as deep as it needs: neighbour cubes are
            // pruned against the deepest distance kept, so the depth changes
            // what the measures below the Euclidean one find.
            for (int t = 0; t < 4; ++t)
                EXPECT_EQ(Worley::Get(x, y, z, Worley::VoronoiType(t), m),
                          search(x, y, z, m, t + 1).F[t]);
            const Result two = search(x, y, z, m, 2);
            const Result three = search(x, y, z, m, 3);
            const double d21 = Worley::Get(x, y, z, Worley::Difference21, m);
            EXPECT_EQ(d21, two.F[1] - two.F[0]);
            EXPECT_EQ(Worley::Get(x, y, z, Worley::Difference32, m), three.F[2] - three.F[1]);
            const double crackle = Worley::Get(x, y, z, Worley::Crackle, m);
            EXPECT_EQ(crackle, std::max(1.0, 10.0 * d21));
            if (crackle > 1.0) ++crackleAboveFloor;
        }
    }
    EXPECT_GT(crackleAboveFloor, 0);
}

TEST(Worley, EveryOrderIsTheNextNearestAndOthersStayInBounds) {
    const double at[3] = {1.3, -4.2, 7.7};
    const double sentinel = -123.0;
    const double unset = std::sqrt(999999.9) * kScale;
    constexpr int kOrders = 12;
    double F[kOrders + 1];
    double delta[kOrders + 1][3];
    unsigned long ID[kOrders + 1];

    std::fill_n(F, kOrders + 1, sentinel);
    Worley::noise(at, 0, F, delta, ID, Worley::Length);
    Worley::noise(at, -5, F, delta, ID, Worley::Length);
    EXPECT_EQ(F[0], sentinel);

    // Orders beyond four keep going outwards: the first four are the order-4
    // search's, the rest ascend, and nothing past the order is written.
    Worley::noise(at, kOrders, F, delta, ID, Worley::Manhattan);
    const Result four = search(at[0], at[1], at[2], Worley::Manhattan);
    for (int r = 0; r < 4; ++r) EXPECT_EQ(F[r], four.F[r]);
    for (int r = 4; r < kOrders; ++r) EXPECT_LT(F[r - 1], F[r]) << "order " << r;
    EXPECT_LT(F[kOrders - 1], unset);
    EXPECT_EQ(F[kOrders], sentinel);

    // Type t returns F[t] for every t from 7 on; the 27 cubes searched never
    // hold more than 135 features, so beyond that the distance is the
    // search's starting value. Negative types are invalid and give F1.
    const auto get = [&](int t) {
        return Worley::Get(at[0], at[1], at[2], Worley::VoronoiType(t), Worley::Manhattan);
    };
    for (int t = 7; t < kOrders; ++t) EXPECT_EQ(get(t), F[t]) << "type " << t;
    for (const int t : {135, 1000, 2147483647}) EXPECT_EQ(get(t), unset) << "type " << t;
    for (const int t : {-1, -2147483647 - 1}) EXPECT_EQ(get(t), F[0]) << "type " << t;
    for (const int m : {8, -1, 99})
        EXPECT_EQ(Worley::Get(at[0], at[1], at[2], Worley::Fourth, Worley::DistanceMethod(m)),
                  Worley::Get(at[0], at[1], at[2], Worley::Fourth, Worley::Length));
}

TEST(Worley, NonFiniteAndHugeSamplesFindNoFeature) {
    const double unset = std::sqrt(999999.9) * kScale;
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double v : {nan, inf, -inf, 1e300, -1e300, 1e10}) {
        for (auto m : kMethods) {
            const Result r = search(v, 0.5, -0.5, m);
            for (int k = 0; k < 4; ++k) {
                EXPECT_EQ(r.F[k], unset) << v << " metric " << m;
                EXPECT_EQ(r.ID[k], 0u);
                for (double d : r.delta[k]) EXPECT_EQ(d, 0.0);
            }
            EXPECT_EQ(Worley::Get(v, v, v, Worley::Crackle, m), 1.0);
        }
    }
}

TEST(Worley, EveryLevelFindsTheScalarSearchesValues) {
    // The vector levels search F1 by the Euclidean measure a cube per lane,
    // in an order of their own, and skip cubes by their own test. Samples
    // where that could differ: cube faces, edges and corners after scaling
    // (exact integers and halves of the scaled coordinate), just either side
    // of 0, the ends of the int range, beyond it and not finite; every
    // measure and type, against the scalar level bit for bit.
    const double unitsPerCube = 1.0 / 0.398150;
    const double inf = std::numeric_limits<double>::infinity();
    std::vector<std::array<double, 3>> samples;
    std::mt19937 rng(41);
    std::uniform_real_distribution<double> coord(-50.0, 50.0);
    for (int n = 0; n < 1500; ++n) samples.push_back({coord(rng), coord(rng), coord(rng)});
    std::uniform_int_distribution<int> cube(-40, 40);
    for (int n = 0; n < 300; ++n)
        samples.push_back({cube(rng) * unitsPerCube, (cube(rng) + 0.5) * unitsPerCube, coord(rng)});
    for (int n = 0; n < 100; ++n) samples.push_back({cube(rng) * unitsPerCube, cube(rng) * unitsPerCube, cube(rng) * unitsPerCube});
    for (const double v : {0.0, -0.0, -1e-20, 1e-20, -1e-300, 2147483647.0 * unitsPerCube, -2147483648.0 * unitsPerCube,
                           -2147483649.0 * unitsPerCube, 524286.5 * unitsPerCube, -524287.5 * unitsPerCube, 1e10, -1e10, 1e300, inf, -inf,
                           std::numeric_limits<double>::quiet_NaN()})
        for (const double w : {0.3, -1e-20, 5.5 * unitsPerCube}) {
            samples.push_back({v, w, 0.7});
            samples.push_back({w, 0.2, v});
            samples.push_back({v, v, w});
        }
    auto bits = [](double v) { return std::isnan(v) ? 0x7ff8000000000000ull : std::bit_cast<std::uint64_t>(v); };
    const SimdLevel before = simdLevel();
    for (const int m : {0, 1, 2, 3, 4, 5, 6, 7, 8, -1}) {
        for (const int t : {0, 1, 4, 6, -1}) {
            const auto get = [&](const std::array<double, 3>& s) {
                return Worley::Get(s[0], s[1], s[2], Worley::VoronoiType(t), Worley::DistanceMethod(m));
            };
            setSimdLevel(SimdLevel::kScalar);
            std::vector<double> reference;
            for (const auto& s : samples) reference.push_back(get(s));
            for (const SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
                if (supportedSimdLevel(level) != level) continue;
                setSimdLevel(level);
                int wrong = 0;
                for (std::size_t i = 0; i < samples.size() && wrong < 3; ++i)
                    if (bits(get(samples[i])) != bits(reference[i]) && ++wrong)
                        ADD_FAILURE() << simdLevelName(level) << ", measure " << m << ", type " << t << " at "
                                      << samples[i][0] << ", " << samples[i][1] << ", " << samples[i][2] << ": "
                                      << get(samples[i]) << " instead of " << reference[i];
            }
        }
    }
    setSimdLevel(before);
}
