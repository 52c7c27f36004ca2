#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "core/DistanceMetrics.h"
#include "core/SimdLevel.h"
#include "core/Vec3.h"
#include "noise/Voronoi.h"

using namespace gritwell;

namespace {

constexpr float kFarAway = 3.4028235e38f;
constexpr Voronoi::DistanceMethod kMethods[] = {
    Voronoi::Length,    Voronoi::LengthSquared, Voronoi::Manhattan,  Voronoi::Chebychev,
    Voronoi::Quadratic, Voronoi::Minkowski4,    Voronoi::Minkowski5,
};

float scaled(float v) { return static_cast<float>(v * 1.4142135623730951 / 1.7320508075688772); }

Vec3 feature(int i, int j, int k) {
    const float* c = Voronoi::GetPoint(i, j, k);
    return {static_cast<float>(i) + c[0], static_cast<float>(j) + c[1],
            static_cast<float>(k) + c[2]};
}

float metric(const Vec3& v, Voronoi::DistanceMethod m) {
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
        default:
            return len(v);
    }
}

// The place of feature q in P, or -1.
int placeOf(const Vec3& q, const float* P) {
    for (int r = 0; r < 4; ++r)
        if (P[3 * r] == q.x && P[3 * r + 1] == q.y && P[3 * r + 2] == q.z) return r;
    return -1;
}

}  // namespace

TEST(Voronoi, TablesKeepTheirFixedPrefixesAndForms) {
    const auto& index = Voronoi::IndexTable();
    const int prefix[16] = {162, 160, 25,  59, 248, 235, 170, 238,
                            243, 28,  103, 40, 29,  237, 0,   222};
    for (int i = 0; i < 16; ++i) EXPECT_EQ(index[i], prefix[i]) << i;
    EXPECT_EQ(std::set<int>(index.begin(), index.end()).size(), 256u);

    const auto& coords = Voronoi::CoordsTable();
    const Voronoi::Row rows[4] = {{0.536902f, 0.020915f, 0.501445f},
                                  {0.216316f, 0.517036f, 0.822466f},
                                  {0.965315f, 0.377313f, 0.678764f},
                                  {0.744545f, 0.097731f, 0.396357f}};
    for (int r = 0; r < 4; ++r) EXPECT_EQ(coords[r], rows[r]) << r;
}

TEST(Voronoi, GetPointHashesThroughTheTablesWithPeriod256) {
    const auto& index = Voronoi::IndexTable();
    const auto& coords = Voronoi::CoordsTable();
    // Cell (0, 0, 0): Index[(Index[Index[0]] + 0) & 255].
    EXPECT_EQ(Voronoi::GetPoint(0, 0, 0), coords[index[index[index[0]]]].data());
    EXPECT_EQ(Voronoi::GetPoint(3, -7, 11), Voronoi::GetPoint(3 + 256, -7 - 512, 11 - 256));
    EXPECT_EQ(Voronoi::GetPoint(-5, 9), Voronoi::GetPoint(-5, 9, 0));
    // The int extremes wrap like every other cell.
    const float* extreme = Voronoi::GetPoint(INT_MAX, INT_MIN, INT_MAX);
    EXPECT_EQ(extreme, Voronoi::GetPoint(255, 0, 255));
}

TEST(Voronoi, TwoDimensionalFeaturesKeepTheirHeight) {
    // Over the lowest feature of the layer k = 0, the 2-D F1 is that
    // feature's own height, not 0.
    int best = 0;
    for (int i = 1; i < 256; ++i)
        if (Voronoi::GetPoint(i, 0)[2] < Voronoi::GetPoint(best, 0)[2]) best = i;
    const Vec3 q = feature(best, 0, 0);
    ASSERT_GT(q.z, 0.0f);
    float F[4], P[12];
    Voronoi::Calculate(q.x, q.y, F, P, Voronoi::Length);
    EXPECT_EQ(F[0], q.z);
    EXPECT_EQ(placeOf(q, P), 0);
    EXPECT_EQ(Voronoi::Get(q.x, q.y, Voronoi::First, Voronoi::Length), scaled(q.z));
}

TEST(Voronoi, DistancesAscendAndMatchTheirFeatures) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> coord(-20.0f, 20.0f);
    for (int n = 0; n < 200; ++n) {
        const Vec3 s(coord(rng), coord(rng), coord(rng));
        for (auto m : kMethods) {
            for (bool flat : {false, true}) {
                float F[4], P[12];
                if (flat)
                    Voronoi::Calculate(s.x, s.y, F, P, m);
                else
                    Voronoi::Calculate(s.x, s.y, s.z, F, P, m);
                const Vec3 at(s.x, s.y, flat ? 0.0f : s.z);
                for (int r = 0; r < 4; ++r) {
                    const Vec3 q(P[3 * r], P[3 * r + 1], P[3 * r + 2]);
                    EXPECT_EQ(F[r], metric(at - q, m)) << s << " metric " << m << " place " << r;
                    if (r > 0) {
                        EXPECT_LE(F[r - 1], F[r]);
                    }
                    // Features come from the sample's cell and its neighbours
                    // only, and in 2-D from the layer k = 0 only.
                    EXPECT_LE(std::fabs(std::floor(q.x) - std::floor(s.x)), 1.0f);
                    EXPECT_LE(std::fabs(std::floor(q.y) - std::floor(s.y)), 1.0f);
                    if (flat) {
                        EXPECT_TRUE(q.z >= 0.0f && q.z < 1.0f) << q;
                    }
                }
            }
        }
    }
}

namespace {

// A sample at which the Chebychev distances to a and b are exactly equal:
// their midpoint, nudged along the dominant axis until the floats agree.
std::optional<Vec3> chebychevTie(const Vec3& a, const Vec3& b) {
    Vec3 s((a.x + b.x) * 0.5f, (a.y + b.y) * 0.5f, (a.z + b.z) * 0.5f);
    int axis = 0;
    for (int k = 1; k < 3; ++k)
        if (std::fabs(a[k] - b[k]) > std::fabs(a[axis] - b[axis])) axis = k;
    for (int step = 0; step < 64; ++step) {
        const float da = chebychev(s - a);
        const float db = chebychev(s - b);
        if (da == db) return s;
        s[axis] = std::nextafter(s[axis], da < db ? b[axis] : a[axis]);
    }
    return std::nullopt;
}

}  // namespace

TEST(Voronoi, EqualDistancesKeepTheOrderOfLowerIThenJThenK) {
    // Each pair: the first cell is visited first (i outermost, k innermost),
    // though the second is lower in a later axis.
    const int pairs[3][2][3] = {{{0, 1, 0}, {1, 0, 0}},   // lower i beats lower j
                                {{0, 0, 1}, {0, 1, 0}},   // lower j beats lower k
                                {{0, 0, 0}, {0, 0, 1}}};  // lower k
    for (const auto& pair : pairs) {
        int ties = 0;
        for (int base = -20; base < 20; ++base) {
            const int bx = base, by = 3 * base, bz = -base;
            const Vec3 a = feature(bx + pair[0][0], by + pair[0][1], bz + pair[0][2]);
            const Vec3 b = feature(bx + pair[1][0], by + pair[1][1], bz + pair[1][2]);
            const auto s = chebychevTie(a, b);
            if (!s) continue;
            float F[4], P[12];
            Voronoi::Calculate(s->x, s->y, s->z, F, P, Voronoi::Chebychev);
            const int pa = placeOf(a, P);
            const int pb = placeOf(b, P);
            if (pa < 0 || pb < 0) continue;  // a nearer feature crowded them out
            ++ties;
            EXPECT_EQ(F[pa], F[pb]);
            EXPECT_EQ(pb, pa + 1) << "base " << base;
        }
        EXPECT_GE(ties, 5);
    }
}

TEST(Voronoi, NegativeCoordinatesSearchAroundTheTrueFloor) {
    // -0.75 lies in cell -1 (cells -2..0 searched), and so does exactly -1.0;
    // truncation or the cell-index rule would search other cells.
    for (const float x : {-0.75f, -1.0f}) {
        float lowest = 100.0f, highest = -100.0f;
        for (int n = 0; n < 64; ++n) {
            const float y = 0.37f * n - 11.0f;
            float F[4], P[12];
            Voronoi::Calculate(x, y, F, P, Voronoi::Length);
            for (int r = 0; r < 4; ++r) {
                lowest = std::min(lowest, P[3 * r]);
                highest = std::max(highest, P[3 * r]);
            }
            Voronoi::Calculate(x, y, 0.5f * y, F, P, Voronoi::Length);
            for (int r = 0; r < 4; ++r) {
                lowest = std::min(lowest, P[3 * r]);
                highest = std::max(highest, P[3 * r]);
            }
        }
        EXPECT_GE(lowest, -2.0f) << x;
        EXPECT_LT(lowest, -1.0f) << x;
        EXPECT_LT(highest, 1.0f) << x;
        EXPECT_GE(highest, 0.0f) << x;
    }
}

TEST(Voronoi, GetCombinesTheDistancesAndScalesInDouble) {
    // Random samples, then samples on cell corners (ties between features
    // of neighbouring cells), at the edge of the int range and beyond it,
    // whose squared distances overflow, and non-finite ones.
    std::mt19937 rng(11);
    std::uniform_real_distribution<float> coord(-9.0f, 9.0f);
    std::vector<Vec3> samples;
    for (int n = 0; n < 50; ++n) samples.emplace_back(coord(rng), coord(rng), coord(rng));
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Vec3& s : {Vec3(0.0f, 0.0f, 0.0f), Vec3(-1.0f, 2.0f, -3.0f), Vec3(2147483520.0f, -2147483648.0f, 1e9f),
                          Vec3(3e9f, -3e9f, 0.5f), Vec3(1e30f, 0.5f, -1e19f), Vec3(-1e19f, 1e19f, 1e19f),
                          Vec3(0.5f, nan, 0.5f), Vec3(inf, 0.5f, -inf)})
        samples.push_back(s);
    auto same = [](float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    for (const Vec3& s : samples) {
        for (auto m : kMethods) {
            float F[4], P[12];
            Voronoi::Calculate(s.x, s.y, s.z, F, P, m);
            for (int t = 0; t < 4; ++t)
                EXPECT_TRUE(same(Voronoi::Get(s.x, s.y, s.z, Voronoi::VoronoiType(t), m), scaled(F[t])))
                    << s << " metric " << m << " type " << t;
            const float d21 = Voronoi::Get(s.x, s.y, s.z, Voronoi::Difference21, m);
            EXPECT_TRUE(same(d21, scaled(F[1] - F[0]))) << s << " metric " << m;
            EXPECT_TRUE(same(Voronoi::Get(s.x, s.y, s.z, Voronoi::Difference32, m), scaled(F[2] - F[1])))
                << s << " metric " << m;
            // Crackle: the already scaled difference, times 20, floored at 1,
            // scaled again.
            const float crackle = Voronoi::Get(s.x, s.y, s.z, Voronoi::Crackle, m);
            EXPECT_EQ(crackle, scaled(std::max(1.0f, 20.0f * d21))) << s << " metric " << m;
            EXPECT_GE(crackle, scaled(1.0f));

            Voronoi::Calculate(s.x, s.y, F, P, m);
            for (int t = 0; t < 4; ++t)
                EXPECT_TRUE(same(Voronoi::Get(s.x, s.y, Voronoi::VoronoiType(t), m), scaled(F[t])))
                    << s << " in the plane, metric " << m << " type " << t;
            EXPECT_TRUE(same(Voronoi::Get(s.x, s.y, Voronoi::Difference32, m), scaled(F[2] - F[1])));
            EXPECT_GE(Voronoi::Get(s.x, s.y, Voronoi::Crackle, m), scaled(1.0f));
        }
    }
}

TEST(Voronoi, OutOfRangeEnumerationsTakeTheirDefinedPaths) {
    const float x = 3.3f, y = -1.7f, z = 0.4f;
    for (const int t : {7, -1, 1000}) {
        EXPECT_EQ(Voronoi::Get(x, y, z, Voronoi::VoronoiType(t), Voronoi::Manhattan),
                  Voronoi::Get(x, y, z, Voronoi::First, Voronoi::Manhattan));
        EXPECT_EQ(Voronoi::Get(x, y, Voronoi::VoronoiType(t), Voronoi::Length),
                  Voronoi::Get(x, y, Voronoi::First, Voronoi::Length));
    }
    for (const int m : {7, -1, 99})
        EXPECT_EQ(Voronoi::Get(x, y, z, Voronoi::Second, Voronoi::DistanceMethod(m)),
                  Voronoi::Get(x, y, z, Voronoi::Second, Voronoi::Length));
}

TEST(Voronoi, NonFiniteSamplesFindNothing) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float v : {nan, inf, -inf}) {
        float F[4], P[12];
        Voronoi::Calculate(v, 0.5f, 0.5f, F, P, Voronoi::Length);
        for (int r = 0; r < 4; ++r) EXPECT_EQ(F[r], kFarAway);
        for (float p : P) EXPECT_EQ(p, 0.0f);
        Voronoi::Calculate(0.5f, v, F, P, Voronoi::Minkowski4);
        EXPECT_EQ(F[3], kFarAway);
        EXPECT_EQ(Voronoi::Get(v, v, v, Voronoi::Difference21, Voronoi::Length), 0.0f);
        EXPECT_EQ(Voronoi::Get(v, v, Voronoi::Crackle, Voronoi::Length), scaled(1.0f));
    }
}

TEST(Voronoi, ArraysGiveEveryPointTheBitsOfOnePointAtATime) {
    // Ordinary points, exact integers (ties between cells), points on the
    // edge of the int range and beyond it, NaN and infinities; 1,003 of
    // them, so the tail after the last group of sixteen runs too.
    std::mt19937 rng(31);
    std::uniform_real_distribution<float> coord(-40.0f, 40.0f);
    const float specials[] = {0.0f, -1.0f, 7.0f, 1e9f, -2147483648.0f, 2147483520.0f, 3e9f, -1e30f,
                              std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()};
    std::vector<float> x, y, z;
    for (int i = 0; i < 1003; ++i) {
        const bool special = i % 7 == 0;
        x.push_back(special ? specials[rng() % 10] : coord(rng));
        y.push_back(i % 11 == 0 ? std::floor(coord(rng)) : coord(rng));
        z.push_back(i % 13 == 0 ? specials[rng() % 10] : coord(rng));
    }
    const int n = static_cast<int>(x.size());
    auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    for (int t = 0; t <= 7; ++t) {
        for (int metric = 0; metric <= 7; ++metric) {
            const auto m = static_cast<Voronoi::DistanceMethod>(metric == 7 ? 9 : metric);
            const auto type = static_cast<Voronoi::VoronoiType>(t);
            std::vector<float> out(x.size()), plane(x.size());
            Voronoi::Get(x.data(), y.data(), z.data(), n, type, m, out.data());
            Voronoi::Get(x.data(), y.data(), n, type, m, plane.data());
            int wrong = 0;
            for (int i = 0; i < n && wrong < 3; ++i) {
                const float one = Voronoi::Get(x[i], y[i], z[i], type, m);
                const float onePlane = Voronoi::Get(x[i], y[i], type, m);
                if (bits(one) != bits(out[i]) || bits(onePlane) != bits(plane[i])) {
                    ++wrong;
                    ADD_FAILURE() << "type " << t << ", metric " << m << ", point " << i << ": " << out[i] << ", "
                                  << plane[i] << " in the plane, instead of " << one << ", " << onePlane;
                }
            }
        }
    }
}

TEST(Voronoi, OnePointGivesTheScalarBitsAtEveryLevel) {
    // In space the vector levels find F1 across the lanes, in an order of
    // their own: cell corners and faces (exact integers and halves, where
    // neighbouring cells tie), negative cells, the int range's ends and
    // beyond, non-finite samples; every metric and type, invalid ones too.
    std::mt19937 rng(43);
    std::uniform_real_distribution<float> coord(-30.0f, 30.0f);
    std::uniform_int_distribution<int> cell(-30, 30);
    const float inf = std::numeric_limits<float>::infinity();
    std::vector<Vec3> samples;
    for (int n = 0; n < 600; ++n) samples.emplace_back(coord(rng), coord(rng), coord(rng));
    for (int n = 0; n < 200; ++n) samples.emplace_back(float(cell(rng)), cell(rng) + 0.5f, float(cell(rng)));
    for (const float v : {0.0f, -0.0f, -1.0f, -1e-30f, 2147483520.0f, -2147483648.0f, 3e9f, -1e30f, inf, -inf,
                          std::numeric_limits<float>::quiet_NaN()}) {
        samples.emplace_back(v, 0.5f, -3.0f);
        samples.emplace_back(-7.5f, v, v);
    }
    auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    const SimdLevel before = simdLevel();
    for (const int m : {0, 1, 2, 3, 4, 5, 6, 7, -1}) {
        for (const int t : {0, 1, 3, 4, 6, 7, -1}) {
            const auto get = [&](const Vec3& s) {
                return Voronoi::Get(s.x, s.y, s.z, Voronoi::VoronoiType(t), Voronoi::DistanceMethod(m));
            };
            setSimdLevel(SimdLevel::kScalar);
            std::vector<float> reference;
            for (const Vec3& s : samples) reference.push_back(get(s));
            for (const SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
                if (supportedSimdLevel(level) != level) continue;
                setSimdLevel(level);
                int wrong = 0;
                for (std::size_t i = 0; i < samples.size() && wrong < 3; ++i)
                    if (bits(get(samples[i])) != bits(reference[i]) && ++wrong)
                        ADD_FAILURE() << simdLevelName(level) << ", metric " << m << ", type " << t << " at "
                                      << samples[i] << ": " << get(samples[i]) << " instead of " << reference[i];
            }
        }
    }
    setSimdLevel(before);
}
