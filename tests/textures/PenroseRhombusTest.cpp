#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>
#include <set>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/PenroseRhombusTexture3D.h"

using namespace gritwell;
using Rhombus = PenroseRhombusTexture3D::Rhombus;

namespace {

// The grid normals, computed here rather than taken from the generator.
struct Normal {
    double x, y;
};
const Normal& normal(int k) {
    static const auto table = [] {
        std::array<Normal, 5> n{};
        for (int i = 0; i < 5; ++i)
            n[i] = {std::cos(2.0 * std::numbers::pi * i / 5.0), std::sin(2.0 * std::numbers::pi * i / 5.0)};
        return n;
    }();
    return table[k];
}
double normalX(int k) { return normal(k).x; }
double normalY(int k) { return normal(k).y; }

// The tile's centre, halfway along its long or short diagonal.
double centreX(const Rhombus& t) { return t.x + 0.5 * (normalX(t.r) + normalX(t.s)); }
double centreY(const Rhombus& t) { return t.y + 0.5 * (normalY(t.r) + normalY(t.s)); }

// Distance from (x, y) to the nearest edge of the tile, negative outside.
double depth(const Rhombus& t, double x, double y) {
    const double rx = normalX(t.r), ry = normalY(t.r), sx = normalX(t.s), sy = normalY(t.s);
    const double det = rx * sy - ry * sx;
    const double dx = x - t.x, dy = y - t.y;
    const double a = (dx * sy - dy * sx) / det, b = (rx * dy - ry * dx) / det;
    return std::min(std::min(a, 1.0 - a), std::min(b, 1.0 - b)) * std::fabs(det);
}

auto key(const Rhombus& t) { return std::make_tuple(t.r, t.s, t.nr, t.ns); }

struct WorkedTile {
    double x, y;
    int r, s, nr, ns;
    double cornerX, cornerY;
};

}  // namespace

TEST(PenroseRhombus, RecordLayoutDefaultsAndVersionRule) {
    PenroseRhombusTexture3D t;
    t.setSkinnyRandomize(true);
    t.setFatMaxColor(0.125f);
    char record[76];
    t.getDescription(record);
    EXPECT_EQ(record[0], 76);
    EXPECT_STREQ(record + 1, "Penrose Rhombus");
    EXPECT_EQ(record[33], 2);
    EXPECT_EQ(record[34], 0);
    const std::pair<int, float> floats[] = {{36, 0.25f}, {40, 0.75f}, {48, 0.0f}, {52, 0.5f},
                                            {60, 0.5f},  {64, 0.125f}, {68, 0.04f}, {72, 0.0f}};
    for (auto [offset, value] : floats) {
        float v;
        std::memcpy(&v, record + offset, sizeof v);
        EXPECT_EQ(v, value) << "at byte " << offset;
    }
    EXPECT_EQ(record[44], 1);  // skinnyRandomize, then three padding bytes
    EXPECT_EQ(record[56], 0);  // fatRandomize

    // Another version is ignored; this one is adopted, any non-zero flag byte reading true.
    record[56] = 7;
    for (auto [major, minor] : {std::pair{3, 0}, {2, 1}, {-128, 0}}) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        PenroseRhombusTexture3D fresh;
        fresh.setStateFromDescription(record);
        EXPECT_FALSE(fresh.getFatRandomize());
        EXPECT_EQ(fresh.getFatMaxColor(), 1.0f);
    }
    record[33] = 2;
    record[34] = 0;
    PenroseRhombusTexture3D fresh;
    fresh.setStateFromDescription(record);
    EXPECT_TRUE(fresh.getFatRandomize());
    EXPECT_EQ(fresh.getFatMaxColor(), 0.125f);

    // Version 1 had the same fields up to byte 68 and no edge line: it keeps
    // its fields and its look.
    char v1[256] = {};
    std::memcpy(v1, record, 68);
    v1[0] = 68;
    v1[33] = 1;
    PenroseRhombusTexture3D converted;
    converted.setEdgeColor(0.5f);
    converted.setStateFromDescription(v1);
    EXPECT_TRUE(converted.getFatRandomize());
    EXPECT_TRUE(converted.getSkinnyRandomize());
    EXPECT_EQ(converted.getFatMaxColor(), 0.125f);
    EXPECT_EQ(converted.getEdgeWidth(), 0.0f);
    EXPECT_EQ(converted.getEdgeColor(), 0.5f);
}

TEST(PenroseRhombus, EdgeLineRunsAlongEveryTileEdge) {
    // Points at a known depth inside their tile: along the line from the
    // tile's centre to its corner. Within half the edge width of an edge the
    // edge colour, beyond it the tile's tone; a width of 0 draws no line.
    PenroseRhombusTexture3D t;
    t.setEdgeColor(0.125f);
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> coord(-20.0, 20.0);
    int onLine = 0, offLine = 0;
    for (int i = 0; i < 400; ++i) {
        const auto tile = PenroseRhombusTexture3D::rhombusAt(coord(rng), coord(rng));
        ASSERT_TRUE(tile);
        const double mx = centreX(*tile), my = centreY(*tile);
        const double along = 0.01 + 0.24 * i / 400.0;
        const float p[3] = {static_cast<float>(tile->x + along * (mx - tile->x)),
                            static_cast<float>(tile->y + along * (my - tile->y)), 0.0f};
        const double d = depth(*tile, p[0], p[1]);
        if (std::fabs(d - 0.02) < 1e-6) continue;
        const float tileTone = tile->fat() ? 0.75f : 0.25f;
        EXPECT_EQ(t(p), d < 0.02 ? 0.125f : tileTone) << "at depth " << d;
        ++(d < 0.02 ? onLine : offLine);
        t.setEdgeWidth(0.0f);
        EXPECT_EQ(t(p), tileTone);
        t.setEdgeWidth(0.04f);
    }
    EXPECT_GT(onLine, 50);
    EXPECT_GT(offLine, 50);
}

TEST(PenroseRhombus, WorkedTilesAndTheirTones) {
    // From a brute-force model over every crossing nearby: the point, its
    // crossing (families, line numbers) and the tile's corner.
    const WorkedTile cases[] = {
        {0.1, 0.1, 3, 4, 0, 0, 0.5, 1.5388417685876268},  // the star around the origin
        {0.5, 0.2, 2, 3, 0, 0, 1.6180339887498947, 0.0},
        {-0.7, 0.3, 0, 4, 0, 0, -1.3090169943749475, 0.9510565162951538},
        {-0.2, -0.9, 1, 2, 0, 0, 0.5, -1.5388417685876266},
        {2.5, 2.5, 2, 3, 0, -1, 3.4270509831248424, 2.48989828488278},
        {3.7, 0.4, 1, 2, 1, -1, 4.23606797749979, 0.0},
        {1.3, -2.2, 0, 3, 1, 0, 1.6180339887498945, -1.9021130325903073},  // skinny
        {0.0, 1.5, 0, 3, 0, 0, -0.5, 1.5388417685876268},
        {2.63, 4.55, 1, 4, 2, -1, 2.3090169943749475, 4.028740053470408},
        {-4.37, -3.4, 2, 4, 1, 1, -4.23606797749979, -3.077683537175253},
        {1000.3, -2000.7, 3, 4, 147, 885, 1000.2611929712027, -2000.0261549561487},
        {-12345.6, 7890.1, 0, 1, -4938, 1476, -12346.474668882543, 7889.875553324883},
    };
    PenroseRhombusTexture3D t;
    t.setEdgeWidth(0.0f);  // the tones alone
    for (const WorkedTile& c : cases) {
        const auto found = PenroseRhombusTexture3D::rhombusAt(c.x, c.y);
        ASSERT_TRUE(found) << "at (" << c.x << ", " << c.y << ")";
        EXPECT_EQ(key(*found), std::make_tuple(c.r, c.s, c.nr, c.ns)) << "at (" << c.x << ", " << c.y << ")";
        EXPECT_NEAR(found->x, c.cornerX, 1e-9);
        EXPECT_NEAR(found->y, c.cornerY, 1e-9);
        const bool fat = c.s - c.r == 1 || c.s - c.r == 4;
        EXPECT_EQ(found->fat(), fat);
        // z is ignored.
        const float x = static_cast<float>(c.x), y = static_cast<float>(c.y);
        expectValues(t, {{x, y, 0.0f, fat ? 0.75f : 0.25f}, {x, y, -37.5f, fat ? 0.75f : 0.25f}});
    }
}

TEST(PenroseRhombus, TheTileFoundContainsThePoint) {
    std::mt19937 rng(7);
    for (double scale : {3.0, 100.0, 1e5, PenroseRhombusTexture3D::kMaxCoordinate}) {
        std::uniform_real_distribution<double> coord(-scale, scale);
        for (int i = 0; i < 2000; ++i) {
            const double x = coord(rng), y = coord(rng);
            const auto found = PenroseRhombusTexture3D::rhombusAt(x, y);
            ASSERT_TRUE(found);
            // Corners are summed from line numbers of size ~scale.
            EXPECT_GE(depth(*found, x, y), -1e-9 * (1.0 + scale)) << "at (" << x << ", " << y << ")";
        }
    }
}

TEST(PenroseRhombus, EveryPointIsCoveredByExactlyOneTile) {
    // Every crossing with line numbers well beyond the search's reach, built
    // independently of the search, checked over a dense grid of each window.
    for (auto [cx, cy] : {std::pair{0.0, 0.0}, {-731.25, 412.5}}) {
        std::vector<Rhombus> tiles;
        for (int r = 0; r < 4; ++r)
            for (int s = r + 1; s < 5; ++s) {
                const int mr = static_cast<int>(std::lround(0.4 * (cx * normalX(r) + cy * normalY(r))));
                const int ms = static_cast<int>(std::lround(0.4 * (cx * normalX(s) + cy * normalY(s))));
                for (int nr = mr - 5; nr <= mr + 5; ++nr)
                    for (int ns = ms - 5; ns <= ms + 5; ++ns)
                        tiles.push_back(PenroseRhombusTexture3D::rhombusOfCrossing(r, s, nr, ns));
            }
        int checked = 0;
        for (double y = cy - 4.0; y <= cy + 4.0; y += 0.0625)
            for (double x = cx - 4.0; x <= cx + 4.0; x += 0.0625) {
                int holding = 0;
                bool onEdge = false;
                const Rhombus* holder = nullptr;
                for (const Rhombus& t : tiles) {
                    // Every point of a tile lies within 0.96 of its centre.
                    if (std::fabs(centreX(t) - x) > 1.0 || std::fabs(centreY(t) - y) > 1.0) continue;
                    const double d = depth(t, x, y);
                    if (std::fabs(d) < 1e-9) onEdge = true;
                    if (d > 0.0) {
                        ++holding;
                        holder = &t;
                    }
                }
                if (onEdge) continue;
                ++checked;
                ASSERT_EQ(holding, 1) << "at (" << x << ", " << y << ")";
                EXPECT_EQ(key(*PenroseRhombusTexture3D::rhombusAt(x, y)), key(*holder)) << "at (" << x << ", " << y << ")";
            }
        EXPECT_GT(checked, 16000);
    }
}

TEST(PenroseRhombus, FatAndSkinnyCountsAreInTheGoldenRatio) {
    // Tiles are counted, not sampled areas: the golden ratio is the ratio of
    // the numbers of tiles (their areas differ by another factor of φ). A grid
    // of step 0.4 hits every tile, since even a skinny one holds a disc of
    // radius sin 36° / 2 ≈ 0.294 > 0.4 / √2; a tile counts when its centre
    // lies in the window, so tiles cut by the border do not bias the count.
    constexpr double kHalf = 64.0;
    std::set<std::tuple<int, int, int, int>> seen;
    int fat = 0, skinny = 0;
    for (double y = -kHalf - 1.0; y <= kHalf + 1.0; y += 0.4)
        for (double x = -kHalf - 1.0; x <= kHalf + 1.0; x += 0.4) {
            const auto t = PenroseRhombusTexture3D::rhombusAt(x, y);
            if (!seen.insert(key(*t)).second) continue;
            const double mx = centreX(*t), my = centreY(*t);
            if (std::fabs(mx) < kHalf && std::fabs(my) < kHalf) ++(t->fat() ? fat : skinny);
        }
    EXPECT_GT(fat + skinny, 19000);
    EXPECT_NEAR(static_cast<double>(fat) / skinny, std::numbers::phi, 0.01 * std::numbers::phi);
}

TEST(PenroseRhombus, RandomizedTonesAreOnePerTileWithinTheTypeRange) {
    PenroseRhombusTexture3D t;
    t.setEdgeWidth(0.0f);
    t.setFatRandomize(true);
    t.setFatMinColor(0.6f);
    t.setFatMaxColor(0.9f);
    t.setSkinnyRandomize(true);
    t.setSkinnyMinColor(0.1f);
    t.setSkinnyMaxColor(0.2f);
    std::set<float> fatTones, skinnyTones;
    for (double y = -6.0; y < 6.0; y += 0.25)
        for (double x = -6.0; x < 6.0; x += 0.25) {
            const auto tile = PenroseRhombusTexture3D::rhombusAt(x, y);
            const double mx = centreX(*tile), my = centreY(*tile);
            // The tile's centre and a point of its far side get the same tone.
            const float centre[3] = {static_cast<float>(mx), static_cast<float>(my), 0.0f};
            const float nearCorner[3] = {static_cast<float>(mx + 0.4 * (mx - tile->x)),
                                         static_cast<float>(my + 0.4 * (my - tile->y)), 5.0f};
            const float p[3] = {static_cast<float>(x), static_cast<float>(y), 0.0f};
            const float v = t(p);
            EXPECT_EQ(t(centre), v) << "at (" << x << ", " << y << ")";
            EXPECT_EQ(t(nearCorner), v) << "at (" << x << ", " << y << ")";
            if (tile->fat()) {
                EXPECT_TRUE(v >= 0.6f && v <= 0.9f) << v;
                fatTones.insert(v);
            } else {
                EXPECT_TRUE(v >= 0.1f && v <= 0.2f) << v;
                skinnyTones.insert(v);
            }
        }
    // Tones vary from tile to tile (about 200 tiles in the window).
    EXPECT_GT(fatTones.size(), 50u);
    EXPECT_GT(skinnyTones.size(), 30u);

    // One type randomised leaves the other flat.
    t.setSkinnyRandomize(false);
    expectValues(t, {{1.3f, -2.2f, 0.0f, 0.25f}, {0.0f, 1.5f, 0.0f, 0.25f}});
}

TEST(PenroseRhombus, NonFiniteAndFarPointsGiveTheFatColor) {
    PenroseRhombusTexture3D t;
    t.setFatColor(0.625f);
    t.setFatRandomize(true);  // no tile, so no tile's tone
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float far = 2.0f * static_cast<float>(PenroseRhombusTexture3D::kMaxCoordinate);
    expectValues(t, {{nan, 0.5f, 0.0f, 0.625f}, {0.5f, nan, 0.0f, 0.625f}, {inf, 0.5f, 0.0f, 0.625f},
                     {0.5f, -inf, 0.0f, 0.625f}, {far, 0.5f, 0.0f, 0.625f}, {1e30f, -1e30f, 0.0f, 0.625f}});
    EXPECT_FALSE(PenroseRhombusTexture3D::rhombusAt(std::nan(""), 0.0));
    EXPECT_FALSE(PenroseRhombusTexture3D::rhombusAt(0.0, -far));
    // NaN or infinite z is ignored like any other z.
    const float p[3] = {0.1f, 0.1f, nan};
    PenroseRhombusTexture3D plain;
    EXPECT_EQ(plain(p), 0.75f);
}
