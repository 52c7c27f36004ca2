#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/FloatToInt.h"
#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "core/SimdLevel.h"

using namespace gritwell;

namespace {

struct TwoFeatures {
    float f1, f2;
    float pos1[3], pos2[3];
};

TwoFeatures search(int dims, const float* P, float jitter) {
    TwoFeatures r{};
    if (dims == 2)
        ARMan::voronoi_f1f2_2d(P, jitter, r.f1, r.pos1, r.f2, r.pos2);
    else
        ARMan::voronoi_f1f2_3d(P, jitter, r.f1, r.pos1, r.f2, r.pos2);
    return r;
}

float distanceTo(int dims, const float* P, const float* q) {
    float d = 0.0f;
    for (int a = 0; a < dims; ++a) d += (P[a] - q[a]) * (P[a] - q[a]);
    return static_cast<float>(std::sqrt(static_cast<double>(d)));
}

}  // namespace

TEST(ARMan, WithoutJitterFeaturesSitAtCellCentresAndTiesKeepVisitOrder) {
    const float centre2[2] = {2.5f, -3.5f};
    TwoFeatures r = search(2, centre2, 0.0f);
    EXPECT_EQ(r.f1, 0.0f);
    EXPECT_EQ(r.pos1[0], 2.5f);
    EXPECT_EQ(r.pos1[1], -3.5f);
    EXPECT_EQ(r.f2, 1.0f);

    const float centre3[3] = {-0.5f, 7.5f, -12.5f};
    r = search(3, centre3, 0.0f);
    EXPECT_EQ(r.f1, 0.0f);
    EXPECT_EQ(r.f2, 1.0f);

    // Equidistant centres: the lower i wins, then the lower j.
    const float betweenX[2] = {1.0f, 0.5f};
    r = search(2, betweenX, 0.0f);
    EXPECT_EQ(r.f1, 0.5f);
    EXPECT_EQ(r.f2, 0.5f);
    EXPECT_EQ(r.pos1[0], 0.5f);
    EXPECT_EQ(r.pos2[0], 1.5f);

    const float corner[2] = {1.0f, 1.0f};  // four centres at equal distance
    r = search(2, corner, 0.0f);
    EXPECT_EQ(r.pos1[0], 0.5f);
    EXPECT_EQ(r.pos1[1], 0.5f);
    EXPECT_EQ(r.pos2[0], 0.5f);  // (i, j) = (-1, 0) comes before (0, -1)
    EXPECT_EQ(r.pos2[1], 1.5f);

    const float corner3[3] = {1.0f, 1.0f, 1.0f};
    r = search(3, corner3, 0.0f);
    EXPECT_EQ(r.pos1[2], 0.5f);
    EXPECT_EQ(r.pos2[0], 0.5f);  // (-1, -1, 0) is the second of eight
    EXPECT_EQ(r.pos2[1], 0.5f);
    EXPECT_EQ(r.pos2[2], 1.5f);
}

TEST(ARMan, FeaturesAreDisplacedByCellNoise) {
    // With jitter 0.5 a feature stays within a quarter of its cell centre, so
    // the centre t can be read back from the position.
    const float jitter = 0.5f;
    const auto place = [&](float t, float noise) {
        return static_cast<float>(double(t) + double(jitter) * (double(noise) - 0.5));
    };
    const auto centre = [](float v) { return cellIndex(v) + 0.5f; };
    std::mt19937 rng(33);
    std::uniform_real_distribution<float> coord(-6.0f, 6.0f);
    for (int n = 0; n < 200; ++n) {
        const float Q[3] = {coord(rng), coord(rng), coord(rng)};
        // 2-D: x from cellNoise(tx, ty, 0), y from the cell shifted by (23, -87).
        const TwoFeatures r2 = search(2, Q, jitter);
        for (const float* pos : {r2.pos1, r2.pos2}) {
            const float t[2] = {centre(pos[0]), centre(pos[1])};
            EXPECT_EQ(pos[0], place(t[0], CellNoise::cellNoise(t[0], t[1], 0.0f)));
            EXPECT_EQ(pos[1], place(t[1], CellNoise::cellNoise(t[0] + 23.0f, t[1] - 87.0f, 0.0f)));
        }
        // 3-D: x from cellNoise(tx, ty, tz); y and z both from cellNoise(ty, tz, tx).
        const TwoFeatures r3 = search(3, Q, jitter);
        for (const float* pos : {r3.pos1, r3.pos2}) {
            const float t[3] = {centre(pos[0]), centre(pos[1]), centre(pos[2])};
            EXPECT_EQ(pos[0], place(t[0], CellNoise::cellNoise(t[0], t[1], t[2])));
            const float ry = CellNoise::cellNoise(t[1], t[2], t[0]);
            EXPECT_EQ(pos[1], place(t[1], ry));
            EXPECT_EQ(pos[2], place(t[2], ry));
            EXPECT_NEAR(pos[1] - t[1], pos[2] - t[2], 1e-6f);
        }
        // The nearest alone: z from a third value, cellNoise(tz, tx, ty).
        float f1, pos[3];
        ARMan::voronoi_f1_3d(Q, jitter, f1, pos);
        const float t[3] = {centre(pos[0]), centre(pos[1]), centre(pos[2])};
        EXPECT_EQ(pos[0], place(t[0], CellNoise::cellNoise(t[0], t[1], t[2])));
        EXPECT_EQ(pos[1], place(t[1], CellNoise::cellNoise(t[1], t[2], t[0])));
        EXPECT_EQ(pos[2], place(t[2], CellNoise::cellNoise(t[2], t[0], t[1])));
        EXPECT_EQ(f1, distanceTo(3, Q, pos));
    }
}

TEST(ARMan, NegativeCoordinatesUseTheCellIndexRule) {
    // Exactly -1.0 lies in cell -2, so the cells searched along x are -3..-1.
    float lowest = 0.0f, highest = -100.0f;
    for (int n = 0; n < 2000; ++n) {
        const float P[3] = {-1.0f, 0.31f * n - 300.0f, 0.17f * n};
        for (int dims : {2, 3}) {
            const TwoFeatures r = search(dims, P, 1.0f);
            for (const float* pos : {r.pos1, r.pos2}) {
                lowest = std::min(lowest, pos[0]);
                highest = std::max(highest, pos[0]);
            }
        }
    }
    EXPECT_LT(lowest, -2.0f);
    EXPECT_LE(highest, 0.0f);
}

TEST(ARMan, NonFiniteSamplesFindNoFeature) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float far = static_cast<float>(std::sqrt(double(3.4028235e38f)));
    for (const float v : {nan, inf, -inf}) {
        const float P[3] = {0.5f, v, 0.5f};
        for (int dims : {2, 3}) {
            const TwoFeatures r = search(dims, P, 1.0f);
            EXPECT_EQ(r.f1, far);
            EXPECT_EQ(r.f2, far);
            for (int a = 0; a < dims; ++a) EXPECT_EQ(r.pos1[a], 0.0f);
        }
    }
}

TEST(ARMan, NearestFeatureOverArraysHasTheBitsOfThePointByPointSearch) {
    // Ordinary points, integers and half-integers on cell seams, far-out and
    // non-finite coordinates; 1,001 points, so a tail follows the groups of
    // sixteen. Then points where a search that skips cells could go wrong:
    // on faces, edges and corners (without jitter, features equally near
    // across them), at centres, where centres stop being apart (2^23, 2^24)
    // and at the most negative cells.
    const float seams[][3] = {{1.0f, 1.0f, 1.0f},       {-1.0f, -1.0f, -1.0f},    {0.0f, 0.5f, -0.5f},
                              {2.5f, -3.0f, 4.0f},      {-0.5f, -0.5f, 0.0f},     {7.5f, 7.5f, 7.5f},
                              {8388608.0f, 0.5f, 1.0f}, {16777216.0f, -1.0f, 2.0f}, {-2147483648.0f, 0.0f, 3.5f},
                              {1.0f, -2147483648.0f, -1.0f}};
    std::mt19937 rng(77);
    std::uniform_real_distribution<float> coord(-30.0f, 30.0f);
    const float specials[] = {0.0f, -1.0f, 2.5f, -3.5f, 1e8f, -2147483648.0f, 3e9f,
                              std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity()};
    std::vector<float> x, y, z;
    for (int i = 0; i < 1001; ++i) {
        x.push_back(i % 9 == 0 ? specials[rng() % 9] : coord(rng));
        y.push_back(i % 5 == 0 ? std::round(coord(rng)) : coord(rng));
        z.push_back(i % 11 == 0 ? specials[rng() % 9] : coord(rng));
    }
    for (const auto& p : seams) {
        x.push_back(p[0]);
        y.push_back(p[1]);
        z.push_back(p[2]);
    }
    const int n = static_cast<int>(x.size());
    auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    for (const float jitter : {0.0f, 0.6f, 0.984375f, 1.0f, 2.5f, -0.75f}) {
        std::vector<float> f1(x.size()), nx(x.size()), ny(x.size()), nz(x.size());
        ARMan::voronoi_f1_3d(x.data(), y.data(), z.data(), n, jitter, f1.data(), nx.data(), ny.data(), nz.data());
        int wrong = 0;
        for (int i = 0; i < n && wrong < 3; ++i) {
            const float p[3] = {x[i], y[i], z[i]};
            float oneF1, pos1[3];
            ARMan::voronoi_f1_3d(p, jitter, oneF1, pos1);
            if (bits(oneF1) != bits(f1[i]) || bits(pos1[0]) != bits(nx[i]) || bits(pos1[1]) != bits(ny[i]) ||
                bits(pos1[2]) != bits(nz[i])) {
                ++wrong;
                ADD_FAILURE() << "jitter " << jitter << ", point " << i << ": f1 " << f1[i] << " instead of " << oneF1;
            }
        }
    }
}

TEST(ARMan, TwoNearestInThePlaneOverArraysHaveTheBitsOfThePointByPointSearch) {
    std::mt19937 rng(78);
    std::uniform_real_distribution<float> coord(-30.0f, 30.0f);
    const float specials[] = {0.0f, -1.0f, 2.5f, 1e8f, -2147483648.0f, 3e9f, std::numeric_limits<float>::quiet_NaN(),
                              std::numeric_limits<float>::infinity()};
    std::vector<float> x, y;
    for (int i = 0; i < 1001; ++i) {
        x.push_back(i % 9 == 0 ? specials[rng() % 8] : coord(rng));
        y.push_back(i % 5 == 0 ? std::round(coord(rng)) : coord(rng));
    }
    const int n = static_cast<int>(x.size());
    auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    for (const float jitter : {0.0f, 0.75f, 1.0f, 3.0f}) {
        std::vector<float> f1(x.size()), f2(x.size()), nx(x.size()), ny(x.size()), sx(x.size()), sy(x.size());
        ARMan::voronoi_f1f2_2d(x.data(), y.data(), n, jitter, f1.data(), f2.data(), nx.data(), ny.data(), sx.data(),
                               sy.data());
        int wrong = 0;
        for (int i = 0; i < n && wrong < 3; ++i) {
            const float p[2] = {x[i], y[i]};
            float oneF1, oneF2, pos1[2], pos2[2];
            ARMan::voronoi_f1f2_2d(p, jitter, oneF1, pos1, oneF2, pos2);
            if (bits(oneF1) != bits(f1[i]) || bits(oneF2) != bits(f2[i]) || bits(pos1[0]) != bits(nx[i]) ||
                bits(pos1[1]) != bits(ny[i]) || bits(pos2[0]) != bits(sx[i]) || bits(pos2[1]) != bits(sy[i])) {
                ++wrong;
                ADD_FAILURE() << "jitter " << jitter << ", point " << i << ": f1, f2 " << f1[i] << ", " << f2[i]
                              << " instead of " << oneF1 << ", " << oneF2;
            }
        }
    }
}

TEST(ARMan, OnePointSearchesGiveEveryLevelTheScalarBits) {
    // On every level the processor runs, the one-point searches (a point's
    // cells across the lanes where there are lanes) against the scalar
    // level's: ordinary points, seams, ties between equally near features
    // (no jitter, integer and half-integer points), far-out and non-finite
    // coordinates.
    std::mt19937 rng(79);
    std::uniform_real_distribution<float> coord(-30.0f, 30.0f);
    const float specials[] = {0.0f, -1.0f, 2.5f, -3.5f, 1e8f, -2147483648.0f, 3e9f,
                              std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity()};
    std::vector<std::array<float, 3>> points;
    for (int i = 0; i < 3000; ++i)
        points.push_back({i % 9 == 0 ? specials[rng() % 9] : coord(rng), i % 5 == 0 ? std::round(coord(rng)) : coord(rng),
                          i % 11 == 0 ? specials[rng() % 9] : coord(rng)});
    struct Found {
        float f1, f2, pos1[3], pos2[2];
        float planeF1, planePos1[2];
    };
    auto search = [&](float jitter) {
        std::vector<Found> out(points.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            Found& f = out[i];
            ARMan::voronoi_f1_3d(points[i].data(), jitter, f.f1, f.pos1);
            ARMan::voronoi_f1f2_2d(points[i].data(), jitter, f.planeF1, f.planePos1, f.f2, f.pos2);
        }
        return out;
    };
    auto bits = [](float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); };
    const SimdLevel before = simdLevel();
    for (const float jitter : {0.0f, 0.75f, 1.0f, 2.5f}) {
        setSimdLevel(SimdLevel::kScalar);
        const std::vector<Found> reference = search(jitter);
        for (const SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
            if (supportedSimdLevel(level) != level) continue;
            setSimdLevel(level);
            const std::vector<Found> got = search(jitter);
            int wrong = 0;
            for (std::size_t i = 0; i < points.size() && wrong < 3; ++i) {
                const Found &a = got[i], &b = reference[i];
                bool same = bits(a.f1) == bits(b.f1) && bits(a.f2) == bits(b.f2) && bits(a.planeF1) == bits(b.planeF1);
                for (int k = 0; k < 3; ++k) same = same && bits(a.pos1[k]) == bits(b.pos1[k]);
                for (int k = 0; k < 2; ++k)
                    same = same && bits(a.pos2[k]) == bits(b.pos2[k]) && bits(a.planePos1[k]) == bits(b.planePos1[k]);
                if (!same && ++wrong)
                    ADD_FAILURE() << simdLevelName(level) << ", jitter " << jitter << ", point (" << points[i][0] << ", "
                                  << points[i][1] << ", " << points[i][2] << "): f1 " << a.f1 << ", plane " << a.planeF1
                                  << ", " << a.f2 << " instead of " << b.f1 << ", " << b.planeF1 << ", " << b.f2;
            }
        }
    }
    setSimdLevel(before);
}
