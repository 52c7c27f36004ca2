#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "textures/WeaveTexture3D.h"

using namespace gritwell;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

void putFloat(std::vector<char>& record, std::size_t offset, float v) {
    std::memcpy(record.data() + offset, &v, sizeof v);
}

std::vector<char> description(WeaveTexture3D& t) {
    std::vector<char> d(96);
    t.getDescription(d.data());
    return d;
}

// Flat threads of three distinct tones, so that the value tells which of
// them lies on top.
void makeFlatTones(WeaveTexture3D& t) {
    t.setShadingEnable(false);
    t.setBackgroundColor(0.1f);
    t.setHorizontalColor(0.25f);
    t.setVerticalColor(0.75f);
}

// A version-2 record (92 bytes, no pattern, the shading switch a float),
// laid out by hand.
std::vector<char> version2Record(float shadingEnable) {
    std::vector<char> rec(92, 0);
    rec[0] = 92;
    std::memcpy(rec.data() + 1, "Weave", 6);
    rec[33] = 2;
    rec[34] = 0;
    rec[35] = 0;
    putFloat(rec, 36, 0.11f);  // backgroundColor
    putFloat(rec, 40, 0.22f);  // horizontalColor
    putFloat(rec, 44, 0.33f);  // verticalColor
    putFloat(rec, 48, 0.44f);  // horizontalWidth
    putFloat(rec, 52, 0.55f);  // verticalWidth
    rec[56] = 0;               // horizontalRandomize
    putFloat(rec, 60, 0.12f);  // horizontalMinColor
    putFloat(rec, 64, 0.34f);  // horizontalMaxColor
    rec[68] = 7;               // verticalRandomize: any non-zero byte
    putFloat(rec, 72, 0.56f);  // verticalMinColor
    putFloat(rec, 76, 0.78f);  // verticalMaxColor
    putFloat(rec, 80, shadingEnable);
    putFloat(rec, 84, 0.66f);  // shadingHorizontalStrength
    putFloat(rec, 88, 0.77f);  // shadingVerticalStrength
    return rec;
}

}  // namespace

// ---- Plain weave ----

TEST(Weave, PlainWeaveAlternatesWhichThreadLiesOnTop) {
    WeaveTexture3D t;
    t.setShadingEnable(false);
    // The defaults without shading: both threads white on black.
    expectValues(t, {{0.5f, 0.5f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 0.0f}});

    makeFlatTones(t);
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.75f},    // same parity: vertical on top
        {1.5f, 0.5f, 0.0f, 0.25f},
        {0.5f, 1.5f, 0.0f, 0.25f},
        {1.5f, 1.5f, 0.0f, 0.75f},
        {-0.5f, 0.5f, 0.0f, 0.25f},   // column -1 is odd
        {-0.5f, 1.5f, 0.0f, 0.75f},   // and so is row 1
        {-0.5f, -0.5f, 0.0f, 0.75f},
        {0.02f, 0.5f, 0.0f, 0.25f},   // beside the vertical thread
        {0.5f, 0.02f, 0.0f, 0.75f},   // beside the horizontal thread
        {0.0f, 0.0f, 0.0f, 0.1f},
        {3.95f, -2.97f, 0.0f, 0.1f},
    });
}

TEST(Weave, PlainWeaveShadingDarkensTheThreadUnderneathAtTheCellMiddle) {
    WeaveTexture3D t;
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 1.0f},            // top thread at its crest
        {0.3f, 0.5f, 0.0f, 1.0f},
        {1.3f, 0.5f, 0.0f, 0.918832183f},    // horizontal on top, x fraction from 1.3
        {0.5f, 0.3f, 0.0f, 0.918832242f},    // vertical on top
        {0.02f, 0.5f, 0.0f, 0.548314035f},   // horizontal underneath
        {1.02f, 0.5f, 0.0f, 0.601685941f},   // horizontal on top
        {0.5f, 0.02f, 0.0f, 0.601685941f},
        {0.5f, 1.02f, 0.0f, 0.548314035f},
        {-1.0f, 0.5f, 0.0f, 0.574999988f},   // the cell end: c (1 + (1 - s)) / 2
        {0.0f, 0.0f, 0.0f, 0.0f},
    });

    t.setBackgroundColor(0.1f);
    t.setHorizontalColor(0.8f);
    t.setVerticalColor(0.6f);
    t.setShadingHorizontalStrength(0.3f);
    t.setShadingVerticalStrength(0.7f);
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.600000024f},
        {1.5f, 0.5f, 0.0f, 0.800000012f},
        {0.02f, 0.5f, 0.0f, 0.672465146f},
        {1.02f, 0.5f, 0.0f, 0.687534869f},
        {0.5f, 0.02f, 0.0f, 0.403186023f},
        {0.5f, 1.02f, 0.0f, 0.376814008f},
        {0.2f, 0.7f, 0.0f, 0.559893608f},
        {0.063f, 0.137f, 0.0f, 0.656404316f},  // 1 - s and the sum in double
    });
}

TEST(Weave, PlainWeaveCellsFollowTheCellIndexRule) {
    // A vertical thread as wide as two columns covers every x, so that -1.0
    // shows its cell: -2 (even, vertical on top, shaded along y) rather than
    // -1 (odd, horizontal on top, fraction 1 shaded at its end).
    WeaveTexture3D t;
    t.setVerticalWidth(2.0f);
    expectValues(t, {{-1.0f, 0.3f, 0.0f, 0.918832242f}, {0.0f, 0.3f, 0.0f, 0.918832242f}});
    // The band is half-open: a unit-wide thread covers fraction 0 but not
    // 1, and -1.0 has fraction 1 here.
    makeFlatTones(t);
    t.setVerticalWidth(1.0f);
    expectValues(t, {{-1.0f, 0.02f, 0.0f, 0.1f}, {0.0f, 0.02f, 0.0f, 0.75f}});
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    expectValues(t, {{-1.0f, 0.02f, 0.0f, 0.75f}});
}

TEST(Weave, PlainWeaveFractionReachesTheShadingUnrounded) {
    // Below zero the fraction 1 - |fmod(x, 1)| needs one bit more than a
    // float holds; the shading angle pi x fraction takes it in double. At
    // (x, 0.5) in an odd column the horizontal thread lies on top, shaded
    // with sin(pi fraction), worked in double. (A fraction rounded to float
    // gives 0.768778205, 0.784873664, 0.858950317 and 0.939997137.)
    WeaveTexture3D t;
    const std::pair<float, float> cases[] = {
        {-0.150700003f, 0.768778265f},
        {-0.164399996f, 0.784873724f},
        {-0.232899994f, 0.858950257f},
        {-0.328799993f, 0.939997196f},
    };
    for (const auto& [x, expected] : cases) {
        const float p[3] = {x, 0.5f, 0.0f};
        EXPECT_EQ(t(p), expected) << "x = " << x;
    }
}

// ---- Herringbone ----

TEST(Weave, HerringboneBandsAreTwoCellsWide) {
    WeaveTexture3D t;
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    makeFlatTones(t);
    // Band 0 (horizontal on top) where floor((i + j) / 2) is even.
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.25f},
        {1.5f, 0.5f, 0.0f, 0.25f},
        {0.5f, 1.5f, 0.0f, 0.25f},
        {1.5f, 1.5f, 0.0f, 0.75f},
        {2.5f, 0.5f, 0.0f, 0.75f},
        {3.5f, 0.5f, 0.0f, 0.75f},
        {4.5f, 0.5f, 0.0f, 0.25f},
        {-0.5f, 0.5f, 0.0f, 0.75f},
        {-0.5f, 1.5f, 0.0f, 0.25f},
        {-1.5f, -0.5f, 0.0f, 0.25f},
        {0.0f, 0.0f, 0.0f, 0.1f},
    });
}

TEST(Weave, HerringboneShadingIsAQuarterWavePerCell) {
    WeaveTexture3D t;
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.875520349f},
        {0.25f, 0.5f, 0.0f, 0.73764044f},    // rising over cells 0 and 1
        {0.75f, 0.5f, 0.0f, 0.967648804f},
        {1.25f, 0.5f, 0.0f, 0.967648804f},   // and falling again
        {0.5f, 0.25f, 0.0f, 0.875520349f},
        {1.5f, 1.25f, 0.0f, 0.73764044f},
        {1.5f, 1.75f, 0.0f, 0.967648804f},
        {0.02f, 0.5f, 0.0f, 0.588349581f},
        {0.5f, 0.02f, 0.0f, 0.561650395f},
        {-1.0f, 0.5f, 0.0f, 0.149999976f},   // underneath at its lowest: c (1 - s)
        {0.0f, 0.0f, 0.0f, 0.0f},
    });

    t.setBackgroundColor(0.1f);
    t.setHorizontalColor(0.8f);
    t.setVerticalColor(0.6f);
    t.setShadingHorizontalStrength(0.3f);
    t.setShadingVerticalStrength(0.7f);
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.764852822f},
        {1.5f, 1.5f, 0.0f, 0.538492441f},
        {0.02f, 0.5f, 0.0f, 0.683769286f},
        {1.02f, 1.5f, 0.0f, 0.676230729f},
        {0.3f, 0.02f, 0.0f, 0.383403778f},
        {2.3f, 0.02f, 0.0f, 0.396596283f},
        {0.2f, 0.7f, 0.0f, 0.717082024f},
        {0.013f, 0.137f, 0.0f, 0.682450235f},
    });
}

TEST(Weave, HerringboneUsesTheTrueFloor) {
    WeaveTexture3D t;
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    // A narrow vertical thread leaves the horizontal one bare: -0.25 has
    // fraction 0.75 in cell -1, and -1.0 fraction 0 in cell -1.
    t.setVerticalWidth(0.2f);
    expectValues(t, {
        {-0.25f, 0.5f, 0.0f, 0.412359536f},
        {-1.0f, 0.5f, 0.0f, 0.149999976f},
        {-0.999f, 0.5f, 0.0f, 0.150000483f},
    });
    // A vertical thread covering every x: at -1.0 it lies on top in band 1
    // and continues the arc of the cell below.
    t.setVerticalWidth(2.0f);
    expectValues(t, {{-1.0f, 0.3f, 0.0f, 0.953677773f}, {0.0f, 0.3f, 0.0f, 0.574999988f}});
}

// ---- Both weaves ----

TEST(Weave, EveryNonZeroPatternIsTheHerringbone) {
    WeaveTexture3D simple, herringbone, odd;
    herringbone.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    const float p[3] = {0.25f, 0.5f, 0.0f};
    ASSERT_NE(simple(p), herringbone(p));
    EXPECT_EQ(simple(p), simple.simple(p));
    EXPECT_EQ(simple(p), herringbone.simple(p));
    EXPECT_EQ(herringbone(p), simple.herringbone(p));
    for (std::int32_t pattern : {2, -1, 7, std::numeric_limits<std::int32_t>::min(),
                                 std::numeric_limits<std::int32_t>::max()}) {
        odd.setPattern(static_cast<WeaveTexture3D::Pattern>(pattern));
        for (float x : {0.25f, 1.3f, -2.7f})
            for (float y : {0.5f, -0.6f, 3.02f}) {
                const float q[3] = {x, y, 0.0f};
                EXPECT_EQ(odd(q), herringbone(q)) << "pattern " << pattern << " at " << x << ", " << y;
            }
    }
}

TEST(Weave, ZIsIgnoredAndNonFinitePointsAreSafe) {
    for (auto pattern : {WeaveTexture3D::WEAVE_SIMPLE, WeaveTexture3D::WEAVE_HERRINGBONE}) {
        WeaveTexture3D t;
        t.setPattern(pattern);
        t.setHorizontalRandomize(true);
        t.setVerticalRandomize(true);
        t.setFlags(12);
        for (float x : {0.3f, -1.0f, 2.02f})
            for (float y : {0.5f, -3.7f}) {
                const float flat[3] = {x, y, 0.0f};
                for (float z : {-7.5f, 1e30f, kNaN}) {
                    const float p[3] = {x, y, z};
                    EXPECT_EQ(t(p), t(flat));
                }
            }
        // A non-finite or huge fraction is outside every band: the background.
        t.setBackgroundColor(0.2f);
        for (float v : {kNaN, kInf, -kInf, 1e30f, -1e30f}) {
            const float p[3] = {v, v, 0.0f};
            EXPECT_EQ(t(p), 0.2f) << "at " << v;
        }
        for (float v : {kNaN, kInf, -kInf, 3e9f, -3e9f}) {
            const float p[3] = {v, 0.5f, 0.0f};
            const float q[3] = {0.5f, v, 0.0f};
            (void)t(p);
            (void)t(q);
        }
    }
}

// ---- Random thread intensities ----

TEST(Weave, RandomIntensityIsOnePerThread) {
    for (auto pattern : {WeaveTexture3D::WEAVE_SIMPLE, WeaveTexture3D::WEAVE_HERRINGBONE}) {
        WeaveTexture3D t;
        t.setPattern(pattern);
        t.setShadingEnable(false);
        t.setHorizontalRandomize(true);
        t.setVerticalRandomize(true);
        t.setHorizontalMinColor(0.2f);
        t.setHorizontalMaxColor(0.6f);
        t.setVerticalMinColor(0.3f);

        // Along a horizontal thread, beside the vertical ones: one intensity,
        // keyed by the row.
        std::set<float> rows;
        for (int row = -8; row < 8; ++row) {
            const float y = static_cast<float>(row) + 0.5f;
            const float expected = (0.6f - 0.2f) * CellNoise::cellNoise(static_cast<float>(row)) + 0.2f;
            for (float x : {0.02f, 5.02f, -3.98f}) {
                const float p[3] = {x, y, 0.0f};
                EXPECT_EQ(t(p), expected) << "pattern " << pattern << " row " << row << " x " << x;
            }
            EXPECT_GE(expected, 0.2f);
            EXPECT_LE(expected, 0.6f);
            rows.insert(expected);
        }
        EXPECT_GT(rows.size(), 8u);

        // Along a vertical thread, one intensity keyed by the column.
        std::set<float> columns;
        for (int column = -8; column < 8; ++column) {
            const float x = static_cast<float>(column) + 0.5f;
            const float p[3] = {x, 0.02f, 0.0f};
            const float q[3] = {x, -6.98f, 0.0f};
            EXPECT_EQ(t(p), t(q)) << "pattern " << pattern << " column " << column;
            EXPECT_GE(t(p), 0.3f);
            EXPECT_LE(t(p), 1.0f);
            columns.insert(t(p));
        }
        EXPECT_GT(columns.size(), 8u);

        // A negative integer belongs to the row below it, by the cell-index
        // rule, in both weaves.
        t.setHorizontalWidth(2.0f);
        const float onSeam[3] = {0.02f, -1.0f, 0.0f};
        const float below[3] = {0.02f, -1.5f, 0.0f};
        EXPECT_EQ(t(onSeam), t(below)) << "pattern " << pattern;
    }
}

TEST(Weave, SetVerticalMaxColorWritesTheHorizontalMaximum) {
    WeaveTexture3D t;
    t.setVerticalMaxColor(0.3f);
    EXPECT_EQ(t.getHorizontalMaxColor(), 0.3f);
    EXPECT_EQ(t.getVerticalMaxColor(), 1.0f);

    // Only a whole record moves the vertical maximum, and the random
    // vertical intensity follows it.
    t.setShadingEnable(false);
    t.setVerticalRandomize(true);
    t.setVerticalMinColor(0.0f);
    const float p[3] = {3.5f, 0.02f, 0.0f};
    const float n = CellNoise::cellNoise(3.0f);
    EXPECT_EQ(t(p), (1.0f - 0.0f) * n + 0.0f);
    std::vector<char> rec = description(t);
    putFloat(rec, 80, 0.5f);
    t.setStateFromDescription(rec.data());
    EXPECT_EQ(t.getVerticalMaxColor(), 0.5f);
    EXPECT_EQ(t(p), (0.5f - 0.0f) * n + 0.0f);
}

// ---- Records ----

TEST(Weave, Version2RecordIsConvertedFieldByField) {
    WeaveTexture3D t;
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    t.setInteractiveUpdate(false);
    t.setHorizontalRandomize(true);
    const std::vector<char> before = description(t);

    t.setStateFromDescription(version2Record(0.5f).data());
    EXPECT_EQ(t.getBackgroundColor(), 0.11f);
    EXPECT_EQ(t.getHorizontalColor(), 0.22f);
    EXPECT_EQ(t.getVerticalColor(), 0.33f);
    EXPECT_EQ(t.getHorizontalWidth(), 0.44f);
    EXPECT_EQ(t.getVerticalWidth(), 0.55f);
    EXPECT_FALSE(t.getHorizontalRandomize());
    EXPECT_EQ(t.getHorizontalMinColor(), 0.12f);
    EXPECT_EQ(t.getHorizontalMaxColor(), 0.34f);
    EXPECT_TRUE(t.getVerticalRandomize());
    EXPECT_EQ(t.getVerticalMinColor(), 0.56f);
    EXPECT_EQ(t.getVerticalMaxColor(), 0.78f);
    EXPECT_TRUE(t.getShadingEnable());
    EXPECT_EQ(t.getShadingHorizontalStrength(), 0.66f);
    EXPECT_EQ(t.getShadingVerticalStrength(), 0.77f);

    // The header (size, name, version 3.0, interactive update) and the
    // pattern keep the object's values.
    const std::vector<char> after = description(t);
    EXPECT_EQ(std::memcmp(after.data(), before.data(), 40), 0);
    EXPECT_EQ(t.getPattern(), WeaveTexture3D::WEAVE_HERRINGBONE);
    EXPECT_FALSE(t.interactiveUpdate());

    // The shading switch was a float: any non-zero value, NaN included, is on.
    const struct {
        float stored;
        bool on;
    } switches[] = {{0.0f, false}, {-0.0f, false}, {1.0f, true}, {-2.0f, true}, {kNaN, true}, {1e-45f, true}};
    for (const auto& s : switches) {
        WeaveTexture3D u;
        u.setShadingEnable(!s.on);
        u.setStateFromDescription(version2Record(s.stored).data());
        EXPECT_EQ(u.getShadingEnable(), s.on) << "stored " << s.stored;
        EXPECT_EQ(description(u)[84], s.on ? 1 : 0);
    }

    // Any minor of major 2 is the same layout.
    WeaveTexture3D v;
    std::vector<char> rec = version2Record(1.0f);
    rec[34] = 9;
    v.setStateFromDescription(rec.data());
    EXPECT_EQ(v.getVerticalMaxColor(), 0.78f);
}

TEST(Weave, RecordsOfOtherVersionsAreIgnored) {
    WeaveTexture3D t;
    t.setHorizontalWidth(0.3f);
    const std::vector<char> before = description(t);
    const std::pair<int, int> versions[] = {{1, 0}, {4, 0}, {3, 1}, {-128, 0}, {0, 0}};
    for (auto [major, minor] : versions) {
        std::vector<char> rec = version2Record(1.0f);
        rec.resize(96, 0);
        rec[33] = static_cast<char>(major);
        rec[34] = static_cast<char>(minor);
        t.setStateFromDescription(rec.data());
        EXPECT_EQ(description(t), before) << "version " << major << "." << minor;
    }
    // Version 3.0 is adopted whole, header included.
    std::vector<char> rec = description(t);
    EXPECT_EQ(static_cast<unsigned char>(rec[0]), 96);
    EXPECT_STREQ(rec.data() + 1, "Weave");
    rec[35] = 0;
    rec[36] = 1;
    t.setStateFromDescription(rec.data());
    EXPECT_FALSE(t.interactiveUpdate());
    EXPECT_EQ(t.getPattern(), WeaveTexture3D::WEAVE_HERRINGBONE);
}
