// The pattern generators: bricks, cloth, scales and tilings laid out on a
// lattice. Worked values as tables of (point, expected); the shared
// properties (modes, records, odd points) are checked in GeneratorSuiteTest.

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "noise/Perlin.h"
#include "textures/BrickTexture3D.h"
#include "textures/HoundstoothTexture3D.h"
#include "textures/PenroseRhombusTexture3D.h"
#include "textures/PlaidTexture3D.h"
#include "textures/ScalesTexture3D.h"
#include "textures/SnakeskinTexture3D.h"
#include "textures/WeaveTexture3D.h"

using namespace gritwell;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

void putFloat(std::vector<char>& record, std::size_t offset, float v) {
    std::memcpy(record.data() + offset, &v, sizeof v);
}

template <class T>
std::vector<char> description(T& t) {
    std::vector<char> d(T::kRecordSize);
    t.getDescription(d.data());
    return d;
}

}  // namespace

// ---- Brick ----

namespace {
constexpr float kBrick = 0.223688f;  // luminance(0.5, 0.15, 0.14)
constexpr float kMortar = 0.5f;
}  // namespace

TEST(Brick, EveryPatternButOneIsAHerringboneOfTwoCellBricks) {
    BrickTexture3D t;
    for (int pattern : {static_cast<int>(BrickTexture3D::HERRINGBONE), 0, INT_MIN}) {
        SCOPED_TRACE(pattern);
        t.setPattern(static_cast<BrickTexture3D::Pattern>(pattern));
        expectValues(t, {
            {0.237f, 0.3525f, 0.1f, kMortar},
            {0.236f, 0.1f, 0.1f, kBrick},      // no joint between a brick's two cells
            {0.469f, 0.1f, 0.1f, kMortar},     // the right end of a horizontal brick
            {0.3525f, 0.237f, 0.1f, kMortar},  // the bottom of a vertical one
            // Cells -1 and 0 of column -1 form one vertical brick (-1 is odd).
            {-0.1175f, -0.234f, 0.1f, kMortar},
            {-0.1175f, -0.001f, 0.1f, kBrick},
        });
    }
    // The plane moves z by half, where the running bond replaces it: z =
    // -0.088 lands in the depth joint at u = 0.412 / 0.41.
    expectValues(t, {{0.1f, 0.1f, -0.088f, kBrick}});
    t.setFlags(4);
    expectValues(t, {{0.1f, 0.1f, -0.088f, kMortar}});
}

TEST(Brick, RoundedCornersStartExactlyAtTheRadius) {
    // Unit bricks without mortar and a radius of 5/16, so that a point 3/16
    // and 4/16 from a corner centre lies on the rounding circle exactly.
    for (auto pattern : {BrickTexture3D::RUNNING_BOND, BrickTexture3D::HERRINGBONE}) {
        SCOPED_TRACE(pattern);
        BrickTexture3D t;
        t.setPattern(pattern);
        t.setBrickWidth(1.0f);
        t.setBrickHeight(1.0f);
        t.setBrickDepth(1.0f);
        t.setMortarThickness(0.0f);
        t.setRoundedCornersEnabled(true);
        t.setRoundedCornersRadius(0.625f);  // of half the side
        expectValues(t, {
            {0.125f, 0.0625f, 0.5f, kMortar},            // distance == radius
            {0.125f + 0x1p-20f, 0.0625f, 0.5f, kBrick},  // a hair inside
            {0.5f, 0.5f, 0.5f, kBrick},
        });
        if (pattern == BrickTexture3D::RUNNING_BOND)  // all four corners of the brick
            expectValues(t, {{0.875f, 0.0625f, 0.5f, kMortar}, {0.125f, 0.9375f, 0.5f, kMortar},
                             {0.875f, 0.9375f, 0.5f, kMortar}});
        t.setRoundedCornersEnabled(false);
        expectValues(t, {{0.125f, 0.0625f, 0.5f, kBrick}});
    }
    // Equal intensities make every point pass as brick, so the corner test
    // runs in the joints too and yields the same intensity.
    BrickTexture3D t;
    t.setRoundedCornersEnabled(true);
    expectValues(t, {{0.0081f, 0.00705f, 0.1f, kMortar}, {0.02f, 0.01f, 0.1f, kBrick}});
    t.setMortarColor(kBrick);
    expectValues(t, {{0.0f, 0.1f, 0.1f, kBrick}, {0.0081f, 0.00705f, 0.1f, kBrick}});
}

TEST(Brick, Version3RecordConvertsFieldByField) {
    // The old layout, written by hand: header, then height, width, depth,
    // mortar, randomize flag (and padding), min and max. The host's buffer
    // goes on past the 64 bytes with bytes that must not be read.
    std::vector<char> old(256, '\x5a');
    std::fill(old.begin(), old.begin() + 64, '\0');
    old[0] = 64;
    std::memcpy(old.data() + 1, "Brick", 5);
    old[33] = 3;
    old[34] = 7;  // any minor of major 3
    const float sizes[] = {0.3f, 1.5f, 0.6f, 0.05f};
    std::memcpy(old.data() + 36, sizes, sizeof sizes);
    old[52] = 1;
    old[53] = 0x7f;  // padding, not copied
    putFloat(old, 56, 0.125f);
    putFloat(old, 60, 0.875f);

    // The header and the fields version 3 lacked keep the object's values.
    BrickTexture3D t;
    t.setInteractiveUpdate(false);
    t.setPattern(BrickTexture3D::HERRINGBONE);
    t.setBrickColor(0.9f);
    std::vector<char> expected = description(t);
    std::memcpy(expected.data() + 40, sizes, sizeof sizes);
    expected[80] = 1;
    putFloat(expected, 84, 0.125f);
    putFloat(expected, 88, 0.875f);
    t.setStateFromDescription(old.data());
    EXPECT_EQ(description(t), expected);
}

// ---- Weave ----

namespace {

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
    rec[34] = 9;  // any minor of major 2
    // Colours and widths, the horizontal switch (off) and range, the vertical
    // switch (any non-zero byte) and range, shading and its strengths.
    const float fields[] = {0.11f, 0.22f, 0.33f, 0.44f, 0.55f, 0.0f, 0.12f,
                            0.34f, 0.0f,  0.56f, 0.78f, shadingEnable, 0.66f, 0.77f};
    std::memcpy(rec.data() + 36, fields, sizeof fields);
    rec[68] = 7;
    return rec;
}

}  // namespace

TEST(Weave, PlainWeaveAlternatesWhichThreadLiesOnTop) {
    WeaveTexture3D t;
    makeFlatTones(t);
    expectValues(t, {
        {0.5f, 0.5f, 0.0f, 0.75f},  // same parity: vertical on top
        {1.5f, 0.5f, 0.0f, 0.25f},
        {0.5f, 1.5f, 0.0f, 0.25f},
        {-0.5f, 0.5f, 0.0f, 0.25f},  // column -1 is odd
        {-0.5f, -0.5f, 0.0f, 0.75f},
        {0.02f, 0.5f, 0.0f, 0.25f},  // beside the vertical thread
        {0.5f, 0.02f, 0.0f, 0.75f},  // beside the horizontal thread
        {0.0f, 0.0f, 0.0f, 0.1f},
        // A unit-wide thread covers fraction 0 but not 1, and -1.0 has
        // fraction 1 in the plain weave's cell -2.
        {-1.0f, 0.02f, 0.0f, 0.1f},
    });
    t.setVerticalWidth(1.0f);
    expectValues(t, {{-1.0f, 0.02f, 0.0f, 0.1f}, {0.0f, 0.02f, 0.0f, 0.75f}});
}

TEST(Weave, PlainWeaveShadingDarkensTheThreadUnderneathAtTheCellMiddle) {
    WeaveTexture3D t;
    t.setBackgroundColor(0.1f);
    t.setHorizontalColor(0.8f);
    t.setVerticalColor(0.6f);
    t.setShadingHorizontalStrength(0.3f);
    t.setShadingVerticalStrength(0.7f);
    expectValues(t, {{0.02f, 0.5f, 0.0f, 0.672465146f}, {0.063f, 0.137f, 0.0f, 0.656404316f}});  // 1 - s in double
    // A thread two columns wide covers every x, so -1.0 shows its cell: -2
    // (even, vertical on top, shaded along y), not -1.
    WeaveTexture3D wide;
    wide.setVerticalWidth(2.0f);
    expectValues(wide, {{-1.0f, 0.3f, 0.0f, 0.918832242f}, {-1.0f, 0.5f, 0.0f, 1.0f}});
}

TEST(Weave, PlainWeaveFractionReachesTheShadingUnrounded) {
    // Below zero the fraction 1 - |fmod(x, 1)| needs one bit more than a
    // float holds. (Rounded to float it gives 0.768778205, 0.784873664,
    // 0.858950317 and 0.939997137.)
    WeaveTexture3D t;
    expectValues(t, {
        {-0.150700003f, 0.5f, 0.0f, 0.768778265f},
        {-0.164399996f, 0.5f, 0.0f, 0.784873724f},
        {-0.232899994f, 0.5f, 0.0f, 0.858950257f},
        {-0.328799993f, 0.5f, 0.0f, 0.939997196f},
    });
}

TEST(Weave, EveryOtherPatternIsAHerringboneOfTwoCellBands) {
    WeaveTexture3D t;
    makeFlatTones(t);
    for (std::int32_t pattern : {1, -1, INT_MIN}) {
        SCOPED_TRACE(pattern);
        t.setPattern(static_cast<WeaveTexture3D::Pattern>(pattern));
        // Band 0 (horizontal on top) where floor((i + j) / 2) is even.
        expectValues(t, {
            {1.5f, 0.5f, 0.0f, 0.25f},
            {1.5f, 1.5f, 0.0f, 0.75f},
            {2.5f, 0.5f, 0.0f, 0.75f},
            {-0.5f, 0.5f, 0.0f, 0.75f},
            {-1.5f, -0.5f, 0.0f, 0.25f},
        });
    }
}

TEST(Weave, HerringboneShadingIsAQuarterWavePerCellWithTheTrueFloor) {
    WeaveTexture3D t;
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    expectValues(t, {
        {0.25f, 0.5f, 0.0f, 0.73764044f},   // rising over cells 0 and 1
        {0.75f, 0.5f, 0.0f, 0.967648804f},
        {1.25f, 0.5f, 0.0f, 0.967648804f},  // and falling again
        {-1.0f, 0.5f, 0.0f, 0.149999976f},  // underneath at its lowest: c (1 - s)
    });
    t.setVerticalWidth(0.2f);  // leaves the horizontal thread bare
    expectValues(t, {{-0.25f, 0.5f, 0.0f, 0.412359536f}, {-0.999f, 0.5f, 0.0f, 0.150000483f}});
    t.setVerticalWidth(2.0f);  // -1.0 on top in band 1, continuing the arc of the cell below
    expectValues(t, {{-1.0f, 0.3f, 0.0f, 0.953677773f}, {0.0f, 0.3f, 0.0f, 0.574999988f}});
}

TEST(Weave, SetVerticalMaxColorWritesTheHorizontalMaximum) {
    WeaveTexture3D t;
    t.setVerticalMaxColor(0.3f);
    EXPECT_EQ(t.getHorizontalMaxColor(), 0.3f);
    EXPECT_EQ(t.getVerticalMaxColor(), 1.0f);
}

TEST(Weave, Version2RecordIsConvertedFieldByField) {
    WeaveTexture3D t;
    t.setPattern(WeaveTexture3D::WEAVE_HERRINGBONE);
    t.setInteractiveUpdate(false);
    t.setHorizontalRandomize(true);
    std::vector<char> expected = description(t);  // the header and the pattern stay
    const float fields[] = {0.11f, 0.22f, 0.33f, 0.44f, 0.55f};
    std::memcpy(expected.data() + 40, fields, sizeof fields);
    expected[60] = 0;
    putFloat(expected, 64, 0.12f);
    putFloat(expected, 68, 0.34f);
    expected[72] = 7;
    putFloat(expected, 76, 0.56f);
    putFloat(expected, 80, 0.78f);
    expected[84] = 1;
    putFloat(expected, 88, 0.66f);
    putFloat(expected, 92, 0.77f);
    t.setStateFromDescription(version2Record(0.5f).data());
    EXPECT_EQ(description(t), expected);

    // The shading switch was a float: any non-zero value, NaN included, is on.
    for (auto [stored, on] : {std::pair{0.0f, false}, {-0.0f, false}, {-2.0f, true}, {kNaN, true}, {1e-45f, true}}) {
        WeaveTexture3D u;
        u.setShadingEnable(!on);
        u.setStateFromDescription(version2Record(stored).data());
        EXPECT_EQ(description(u)[84], on ? 1 : 0) << "stored " << stored;
    }
}

// ---- Houndstooth ----

namespace {

using Block = std::array<const char*, 8>;  // rows j = 7 (top) .. 0, columns i = 0..7

// Expects the 8 x 8 thread cells whose lower-left corner is cell (i0, j0),
// one cell = 1/n units, 'X' dark (0.25) and '.' light (0.75).
void expectBlock(HoundstoothTexture3D& t, int n, int i0, int j0, const Block& rows) {
    for (int row = 0; row < 8; ++row)
        for (int i = 0; i < 8; ++i) {
            const int j = 7 - row;
            const float x = (static_cast<float>(i0 + i) + 0.5f) / static_cast<float>(n);
            const float y = (static_cast<float>(j0 + j) + 0.5f) / static_cast<float>(n);
            expectValues(t, {{x, y, 0.3f, rows[row][i] == 'X' ? 0.25f : 0.75f}});
        }
}

// Worked by hand: warp dark in columns 0-3, weft dark in rows 0-3, the warp
// showing where (i + j) mod 4 < 2.
constexpr Block kHoundstooth = {
    ".XX.....",  // j = 7
    "..XX....", "X..X....", "XX......", "XXXXX..X", "XXXXXX..", "XXXX.XX.",
    "XXXX..XX",  // j = 0
};

}  // namespace

TEST(Houndstooth, ToothRepeatsEveryUnitAndPuppytoothAtHalfTheSize) {
    HoundstoothTexture3D t;
    expectBlock(t, 8, 0, 0, kHoundstooth);
    expectBlock(t, 8, -8, -8, kHoundstooth);  // negative cells continue the bands
    // 8 x -0.125 = -1 lies in cell -2 (dark in row 1), not -1 (light).
    expectValues(t, {{-0.125f, 0.1875f, 0.0f, 0.25f}, {-0.0625f, 0.1875f, 0.0f, 0.75f}});
    for (int pattern : {1, -1, INT_MAX}) {  // any non-zero pattern
        t.setPattern(static_cast<HoundstoothTexture3D::Pattern>(pattern));
        expectBlock(t, 16, -8, -16, kHoundstooth);
    }
}

TEST(Houndstooth, RandomizedTonesShiftEachUnitSquareOnceAndClamp) {
    // Unit square (0, 0) has cell noise 1376312589 / 2^32 = 0.32044774.
    HoundstoothTexture3D t;
    t.setRandomizeColors(true);
    expectValues(t, {{0.0625f, 0.0625f, 0.0f, 0.20511193573474884f},
                     {0.4375f, 0.3125f, 0.0f, 0.20511193573474884f},  // dark cell (3, 2)
                     {0.6875f, 0.0625f, 0.0f, 0.7051119208335876f},
                     {0.9375f, 0.9375f, 0.0f, 0.7051119208335876f}});
    t.setVariability(4.0f);
    expectValues(t, {{0.0625f, 0.0625f, 0.0f, 0.0f},  // -0.109 clamped
                     {0.6875f, 0.0625f, 0.0f, 0.3908954858779907f}});
    t.setVariability(-4.0f);
    expectValues(t, {{0.0625f, 0.0625f, 0.0f, 0.6091045141220093f},
                     {0.6875f, 0.0625f, 0.0f, 1.0f}});  // 1.109 clamped
    t.setVariability(1.0f);
    EXPECT_NE(valueAt(t, 1.0625f, 0.0625f), valueAt(t, 0.0625f, 0.0625f)) << "another unit square, another shift";
}

// ---- Plaid ----

TEST(Plaid, SumIsClampedAndANaNSumIsOne) {
    PlaidTexture3D t;
    auto setAll = [&t](float c) {
        using P = PlaidTexture3D;
        for (auto set : {&P::setColor1, &P::setColor2, &P::setColor3, &P::setColor4, &P::setPrimaryBackground,
                         &P::setBackground2, &P::setBackground3})
            (t.*set)(c);
    };
    setAll(1.0f);
    expectValues(t, {{0.3f, 0.7f, 0.0f, 1.0f}, {-4.1f, 2.2f, 0.0f, 1.0f}});
    setAll(-0.3f);
    expectValues(t, {{0.3f, 0.7f, 0.0f, 0.0f}});
    setAll(kNaN);
    expectValues(t, {{0.3f, 0.7f, 0.0f, 1.0f}});
    PlaidTexture3D zero;
    zero.setVerticalPeriod(0.0f);  // the stripe noise is NaN
    expectValues(zero, {{0.3f, 0.7f, 0.0f, 1.0f}});
}

TEST(Plaid, PeriodsAreSetFromFloatsAndStoredTruncated) {
    PlaidTexture3D t;
    t.setHorizontalPeriod(3.9f);
    EXPECT_EQ(t.getHorizontalPeriod(), 3);
    t.setVerticalPeriod(-2.7f);
    EXPECT_EQ(t.getVerticalPeriod(), -2);
    t.setVerticalPeriod(1e20f);
    EXPECT_EQ(t.getVerticalPeriod(), INT_MIN);  // out of int range, safely
}

// ---- Scales ----

namespace {
constexpr float kBody = 0.6647f;   // luminance(0.5, 0.7, 0.8)
constexpr float kEdge = 0.97152f;  // luminance(0.9, 1.0, 0.9)

}  // namespace

TEST(Scales, OutlinesAndTheSeamAtHalf) {
    ScalesTexture3D t;
    expectValues(t, {
        {0.25f, 0.3f, 0.0f, kEdge}, {0.02f, 0.55f, 0.0f, 0.0f},  // a side scale's rim, base
        // At y = 0.5 exactly the lower outline meets the upper region.
        {0.5f, 0.5f, 0.0f, kEdge}, {0.5f, 0.49999997f, 0.0f, kBody}, {0.5f, 0.50000006f, 0.0f, kBody},
        {1e30f, 0.05f, 0.0f, kBody},  // whole numbers beyond the int range start a cell like 0 does
    });
    for (std::int32_t shape : {1, 2, -1, INT_MIN}) {  // every value but 0 is the normal shape
        t.setScaleShape(static_cast<ScalesTexture3D::ScaleShape>(shape));
        expectValues(t, {
            {0.25f, 0.3f, 0.0f, kBody},  // inside the circle, on the semicircle's rim
            {0.1f, 0.45f, 0.0f, kEdge},
            {0.01f, 0.65f, 0.0f, 0.0f},  // twice the semicircle's base band
            {0.02f, 0.55f, 0.0f, kBody},
        });
    }
}

TEST(Scales, ShadingAcrossAtFullStrengthRunsFromBlackToTheBody) {
    ScalesTexture3D t;
    t.setBaseColor(0.1f);
    t.setShadingAcrossEnabled(true);
    t.setShadingAcrossStrength(1.0f);  // 0 at a scale's side, 1 in its middle
    expectValues(t, {{0.5f, 0.0f, 0.0f, 0.0f}, {0.5f, 0.75f, 0.0f, kBody}});
}

// ---- Snakeskin ----
// Worked values from a float32 model of the rotation, shear, grooves,
// corners and cell hash; each comment gives the scale cell (i, j) and the
// local point (fx, fy) inside it.

TEST(Snakeskin, ScalesAreThreeQuartersAndGroovesHalfTheWidthEachSide) {
    SnakeskinTexture3D t;
    expectValues(t, {
        {0.0f, 0.54f, 0.0f, 0.75f},  // (0, 0) at (0.4989, 0.4989)
        // Top and bottom corners are rounded more than left and right.
        {0.0f, 0.0866f, 0.0f, 0.0f},       // (0, 0) at (0.08, 0.08): outside the top rounding
        {0.0f, 0.1624f, 0.0f, 0.75f},      // (0.15, 0.15): inside
        {-1.0975f, 0.5412f, 0.0f, 0.75f},  // (0.08, 0.92): inside the sharper left one
        {1.202f, 0.5412f, 0.0f, 0.0f},     // (0.96, 0.04): outside the right one
    });
    t.setRoundCornersEnabled(false);
    expectValues(t, {
        {0.0f, 0.0866f, 0.0f, 0.75f},
        {-0.6089f, 0.289f, 0.0f, 0.0f},    // (0, 0) at (0.0340, 0.5000)
        {-0.6062f, 0.2901f, 0.0f, 0.75f},  // (0.0360, 0.5000)
        {-0.6089f, 0.7934f, 0.0f, 0.0f},   // (0.5000, 0.9660)
        {-0.6062f, 0.7923f, 0.0f, 0.75f},  // (0.5000, 0.9640)
    });
    // No width at all: a point exactly on a side is still a groove (0 >= 0).
    t.setStripeWidth(0.0f);
    expectValues(t, {{0.0f, 0.0f, 0.0f, 0.0f}, {1e-30f, 0.0f, 0.0f, 0.0f}, {-0.652f, 0.2711f, 0.0f, 0.75f}});
}

TEST(Snakeskin, LyingWithinOneCornerDoesNotSpareThePointFromTheNext) {
    // (0, 0) at (0.0200, 0.9900): within both huge top/bottom roundings, but
    // outside the left/right one that also applies there.
    SnakeskinTexture3D t;
    t.setStripeWidth(0.0f);
    t.setRoundCornersTopBottomRadius(0.995f);
    t.setRoundCornersLeftRightRadius(0.2f);
    expectValues(t, {{-1.2674f, 0.5466f, 0.0f, 0.0f}});
    t.setRoundCornersLeftRightRadius(0.0f);
    expectValues(t, {{-1.2674f, 0.5466f, 0.0f, 0.75f}});
}

TEST(Snakeskin, ScaleNoiseAddsAQuarterOfTheSum) {
    // (-2.61, 7.04) lies at q = (5.50530815, 7.50291538).
    SnakeskinTexture3D t;
    t.setScaleNoiseAdd(true);
    const float n = FBM::fBM(5.50530815f * 4.0f, 7.50291538f * 4.0f, 1.0f, 2.0f, 2.0f);
    ASSERT_NE(n, 0.0f);
    expectValues(t, {{-2.61f, 7.04f, 0.0f, static_cast<float>(0.25 * n + 0.75)}});
    for (int octaves : {0, -5, INT_MIN}) {  // no octaves, no noise
        t.setScaleNoiseOctaves(octaves);
        expectValues(t, {{-2.61f, 7.04f, 0.0f, 0.75f}});
    }
}

TEST(Snakeskin, WobbleAtZeroFrequencyShiftsTheWholeGrid) {
    // Both lookups fall on the lattice point (0, 0), moved to (0.5, 0.5):
    // every point shifts alike, and half a cell turns corners into centres.
    const float n = Perlin::noise(0.5f, 0.5f);
    ASSERT_NE(n, 0.0f);
    SnakeskinTexture3D t;
    t.setScaleVariabilityEnabled(true);
    t.setScaleVariabilityFrequency(0.0f);
    t.setScaleVariabilityAmplitude(0.5f / n);
    expectValues(t, {{0.0f, 0.0f, 0.0f, 0.75f}, {0.0f, 0.54f, 0.0f, 0.0f}});
}

// ---- Penrose Rhombus ----

namespace {

using Rhombus = PenroseRhombusTexture3D::Rhombus;

// The grid normals, computed here rather than taken from the generator.
double normalX(int k) { return std::cos(2.0 * std::numbers::pi * k / 5.0); }
double normalY(int k) { return std::sin(2.0 * std::numbers::pi * k / 5.0); }

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

}  // namespace

TEST(PenroseRhombus, EveryPointIsCoveredByExactlyOneTileTheSearchFinds) {
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
                    onEdge |= std::fabs(d) < 1e-9;
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
    // Far out, corners are summed from line numbers of size ~scale.
    std::mt19937 rng(7);
    for (double scale : {1e5, PenroseRhombusTexture3D::kMaxCoordinate}) {
        std::uniform_real_distribution<double> coord(-scale, scale);
        for (int i = 0; i < 2000; ++i) {
            const double x = coord(rng), y = coord(rng);
            const auto found = PenroseRhombusTexture3D::rhombusAt(x, y);
            ASSERT_TRUE(found);
            EXPECT_GE(depth(*found, x, y), -1e-9 * (1.0 + scale)) << "at (" << x << ", " << y << ")";
        }
    }
}

TEST(PenroseRhombus, EdgeLineRunsAlongEveryTileEdge) {
    // Points at a known depth inside their tile, along the line from the
    // tile's centre to its corner: within half the edge width of an edge the
    // edge colour, beyond it the tile's tone; a width of 0 draws no line.
    PenroseRhombusTexture3D t;
    t.setEdgeColor(0.125f);
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> coord(-20.0, 20.0);
    int onLine = 0, offLine = 0;
    for (int i = 0; i < 400; ++i) {
        const auto tile = PenroseRhombusTexture3D::rhombusAt(coord(rng), coord(rng));
        ASSERT_TRUE(tile);
        const double along = 0.01 + 0.24 * i / 400.0;
        const float x = static_cast<float>(tile->x + along * (centreX(*tile) - tile->x));
        const float y = static_cast<float>(tile->y + along * (centreY(*tile) - tile->y));
        const double d = depth(*tile, x, y);
        if (std::fabs(d - 0.02) < 1e-6) continue;
        const float tone = tile->fat() ? 0.75f : 0.25f;
        t.setEdgeWidth(0.04f);
        expectValues(t, {{x, y, 0.0f, d < 0.02 ? 0.125f : tone}});
        ++(d < 0.02 ? onLine : offLine);
        t.setEdgeWidth(0.0f);
        expectValues(t, {{x, y, 0.0f, tone}});
    }
    EXPECT_GT(onLine, 50);
    EXPECT_GT(offLine, 50);
}

TEST(PenroseRhombus, NonFiniteAndFarPointsGiveTheFatColor) {
    PenroseRhombusTexture3D t;
    t.setFatColor(0.625f);
    t.setFatRandomize(true);  // no tile, so no tile's tone
    const float inf = std::numeric_limits<float>::infinity();
    const float far = 2.0f * static_cast<float>(PenroseRhombusTexture3D::kMaxCoordinate);
    expectValues(t, {{kNaN, 0.5f, 0.0f, 0.625f}, {0.5f, -inf, 0.0f, 0.625f}, {far, 0.5f, 0.0f, 0.625f},
                     {1e30f, -1e30f, 0.0f, 0.625f}});
    EXPECT_FALSE(PenroseRhombusTexture3D::rhombusAt(std::nan(""), 0.0));
    EXPECT_FALSE(PenroseRhombusTexture3D::rhombusAt(0.0, -far));
}

TEST(PenroseRhombus, Version1RecordKeepsItsFieldsAndHasNoEdgeLine) {
    // Version 1 had the same fields up to byte 68 and no edge line.
    PenroseRhombusTexture3D source;
    source.setSkinnyRandomize(true);
    source.setFatMaxColor(0.125f);
    std::vector<char> v1 = description(source);
    v1.resize(256, '\x5a');
    v1[0] = 68;
    v1[33] = 1;
    PenroseRhombusTexture3D converted;
    converted.setEdgeColor(0.5f);
    converted.setStateFromDescription(v1.data());
    EXPECT_TRUE(converted.getSkinnyRandomize());
    EXPECT_EQ(converted.getFatMaxColor(), 0.125f);
    EXPECT_EQ(converted.getEdgeWidth(), 0.0f);
    EXPECT_EQ(converted.getEdgeColor(), 0.5f);
}
