#include <array>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/HoundstoothTexture3D.h"

using namespace gritwell;

namespace {

using Block = std::array<const char*, 8>;  // rows j = 7 (top) .. 0, columns i = 0..7

// Expects the 8 x 8 thread cells whose lower-left corner is cell (i0, j0),
// one cell = 1/n units, 'X' dark (0.25) and '.' light (0.75).
void expectBlock(HoundstoothTexture3D& t, int n, int i0, int j0, const Block& rows) {
    for (int row = 0; row < 8; ++row)
        for (int i = 0; i < 8; ++i) {
            const int j = 7 - row;
            const float p[3] = {(static_cast<float>(i0 + i) + 0.5f) / static_cast<float>(n),
                                (static_cast<float>(j0 + j) + 0.5f) / static_cast<float>(n), 0.3f};
            const float expected = rows[row][i] == 'X' ? 0.25f : 0.75f;
            EXPECT_EQ(t(p), expected) << "cell (" << i0 + i << ", " << j0 + j << ")";
        }
}

// Worked by hand: warp dark in columns 0-3, weft dark in rows 0-3, the warp
// showing where (i + j) mod 4 < 2.
constexpr Block kHoundstooth = {
    ".XX.....",  // j = 7
    "..XX....",
    "X..X....",
    "XX......",  // j = 4
    "XXXXX..X",  // j = 3
    "XXXXXX..",
    "XXXX.XX.",
    "XXXX..XX",  // j = 0
};

}  // namespace

TEST(Houndstooth, ToothShapeRepeatsEveryUnitOnBothSidesOfZero) {
    HoundstoothTexture3D t;
    expectBlock(t, 8, 0, 0, kHoundstooth);
    expectBlock(t, 8, -8, -8, kHoundstooth);  // negative cells continue the bands
    expectBlock(t, 8, 24, -16, kHoundstooth);
}

TEST(Houndstooth, AnyNonZeroPatternIsPuppytoothTheSameToothAtHalfTheSize) {
    HoundstoothTexture3D t;
    for (int pattern : {1, 2, -1, 2147483647}) {
        t.setPattern(static_cast<HoundstoothTexture3D::Pattern>(pattern));
        expectBlock(t, 16, 0, 0, kHoundstooth);
        expectBlock(t, 16, -8, -16, kHoundstooth);
    }
}

TEST(Houndstooth, ExactNegativeSeamFallsOneCellLower) {
    // 8 x -0.125 = -1 lies in cell -2 (column 6 of the repeat, dark in row 1),
    // not -1 (column 7, light in row 1).
    HoundstoothTexture3D t;
    expectValues(t, {{-0.125f, 0.1875f, 0.0f, 0.25f}, {-0.0625f, 0.1875f, 0.0f, 0.75f}});
}

TEST(Houndstooth, ZAndFlagsAreIgnored) {
    HoundstoothTexture3D t;
    const float base[3] = {0.3f, 0.45f, 0.0f};
    const float reference = t(base);
    for (int flags : {0, 2, 4, 12})
        for (float z : {-7.5f, 0.5f, 1e30f, std::numeric_limits<float>::quiet_NaN()}) {
            t.setFlags(flags);
            const float p[3] = {0.3f, 0.45f, z};
            EXPECT_EQ(t(p), reference) << flags << " " << z;
        }
}

TEST(Houndstooth, RandomizedTonesShiftEachUnitSquareOnceAndClamp) {
    // Unit square (0, 0) has cell noise 1376312589 / 2^32 = 0.32044774.
    HoundstoothTexture3D t;
    t.setRandomizeColors(true);
    const float dark[3] = {0.0625f, 0.0625f, 0.0f};
    const float light[3] = {0.6875f, 0.0625f, 0.0f};
    const float darkElsewhere[3] = {0.4375f, 0.3125f, 0.0f};   // cell (3, 2)
    const float lightElsewhere[3] = {0.9375f, 0.9375f, 0.0f};  // cell (7, 7)
    EXPECT_EQ(t(dark), 0.20511193573474884f);
    EXPECT_EQ(t(light), 0.7051119208335876f);
    EXPECT_EQ(t(darkElsewhere), t(dark));
    EXPECT_EQ(t(lightElsewhere), t(light));

    t.setVariability(4.0f);
    EXPECT_EQ(t(dark), 0.0f);  // -0.109 clamped
    EXPECT_EQ(t(light), 0.3908954858779907f);
    t.setVariability(-4.0f);
    EXPECT_EQ(t(dark), 0.6091045141220093f);
    EXPECT_EQ(t(light), 1.0f);  // 1.109 clamped

    // Another unit square draws another shift; off, the tones are plain.
    t.setVariability(1.0f);
    const float nextDark[3] = {1.0625f, 0.0625f, 0.0f};
    EXPECT_NE(t(nextDark), t(dark));
    t.setRandomizeColors(false);
    expectValues(t, {{0.0625f, 0.0625f, 0.0f, 0.25f}, {1.6875f, 0.0625f, 0.0f, 0.75f}});
}

TEST(Houndstooth, RecordLayoutAndVersionRule) {
    static_assert(sizeof(HoundstoothTexture3D::Record) == 48);
    HoundstoothTexture3D t;
    char record[48];
    t.getDescription(record);
    EXPECT_EQ(record[0], 48);
    EXPECT_STREQ(record + 1, "Houndstooth");
    EXPECT_EQ(record[33], 1);
    EXPECT_EQ(record[34], 0);
    float variability;
    std::memcpy(&variability, record + 44, 4);
    EXPECT_EQ(variability, 0.5f);

    HoundstoothTexture3D other;
    other.setPattern(HoundstoothTexture3D::PUPPYTOOTH);
    other.setRandomizeColors(true);
    other.setVariability(0.9f);
    other.getDescription(record);
    EXPECT_EQ(record[36], 1);
    EXPECT_EQ(record[40], 1);
    for (auto [major, minor] : {std::pair{2, 0}, std::pair{1, 1}, std::pair{0, 0}}) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        t.setStateFromDescription(record);
        EXPECT_EQ(t.getPattern(), HoundstoothTexture3D::HOUNDSTOOTH);
        EXPECT_FALSE(t.getRandomizeColors());
        EXPECT_EQ(t.getVariability(), 0.5f);
    }
    record[33] = 1;
    record[34] = 0;
    record[40] = 7;  // a damaged bool byte still reads as true
    t.setStateFromDescription(record);
    EXPECT_EQ(t.getPattern(), HoundstoothTexture3D::PUPPYTOOTH);
    EXPECT_TRUE(t.getRandomizeColors());
    EXPECT_EQ(t.getVariability(), 0.9f);
}
