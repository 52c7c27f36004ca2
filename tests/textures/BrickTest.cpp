#include <algorithm>
#include <climits>
#include <cstring>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "noise/CellNoise.h"
#include "textures/BrickTexture3D.h"

using namespace gritwell;

namespace {

constexpr float kBrick = 0.223688f;  // luminance(0.5, 0.15, 0.14)
constexpr float kMortar = 0.5f;
constexpr int kPlanar = 4;

void putFloat(std::vector<char>& record, std::size_t offset, float v) {
    std::memcpy(record.data() + offset, &v, sizeof v);
}

std::vector<char> description(BrickTexture3D& t) {
    std::vector<char> d(92);
    t.getDescription(d.data());
    return d;
}

// Unit bricks without mortar and a radius of 5/16, so that a point 3/16 and
// 4/16 away from a corner centre lies on the rounding circle exactly.
void makeUnitBricksWithRoundedCorners(BrickTexture3D& t) {
    t.setBrickWidth(1.0f);
    t.setBrickHeight(1.0f);
    t.setBrickDepth(1.0f);
    t.setMortarThickness(0.0f);
    t.setRoundedCornersEnabled(true);
    t.setRoundedCornersRadius(0.625f);  // of half the side: 0.3125
}

}  // namespace

TEST(Brick, RunningBondBricksJointsAndHalfBrickShifts) {
    BrickTexture3D t;
    EXPECT_EQ(t.getBrickColor(), kBrick);
    EXPECT_EQ(t.getMortarColor(), kMortar);
    expectValues(t, {
        {0.1f, 0.1f, 0.1f, kBrick},
        {0.0f, 0.1f, 0.1f, kMortar},      // s fraction 0: in the vertical joint
        {0.0f, 0.3525f, 0.1f, kBrick},    // course 1 is shifted half a brick
        {0.0f, -0.1f, 0.1f, kBrick},      // and so is course -1
        {0.0f, 0.1f, 0.615f, kBrick},     // layer 1 too
        {0.0f, 0.3525f, 0.615f, kMortar}, // course 1 in layer 1: a whole brick, no shift
        {0.0f, 0.3525f, -0.3f, kMortar},  // likewise course 1 in layer -1
    });
}

TEST(Brick, FlatRunningBondSitsInLayerOne) {
    BrickTexture3D t;
    t.setFlags(kPlanar);
    // z = 0.5 is in the odd layer, which moves the joint away from x = 0.
    expectValues(t, {{0.0f, 0.1f, 0.1f, kBrick}, {0.1f, 0.1f, 0.1f, kBrick}});
    for (float z : {-5.0f, 0.0f, 0.45f, 3.3f, 1e30f}) {
        const float p[3] = {0.37f, -1.21f, z};
        const float q[3] = {0.37f, -1.21f, 0.5f};
        t.setFlags(kPlanar);
        const float flat = t(p);
        t.setFlags(2);
        EXPECT_EQ(flat, t(q)) << "z = " << z;
    }
    t.setFlags(8);
    expectValues(t, {{0.0f, 0.1f, 0.1f, kBrick}});
}

TEST(Brick, OnlyPatternOneIsTheRunningBond) {
    // (0.237, 0.3525) is inside a running-bond brick but on the left joint
    // of a vertical herringbone cell.
    BrickTexture3D t;
    expectValues(t, {{0.237f, 0.3525f, 0.1f, kBrick}});
    for (int pattern : {0, 2, -1, INT_MIN, INT_MAX}) {
        t.setPattern(static_cast<BrickTexture3D::Pattern>(pattern));
        expectValues(t, {{0.237f, 0.3525f, 0.1f, kMortar}, {0.1f, 0.1f, 0.1f, kBrick}});
    }
}

TEST(Brick, HerringboneBricksAreTwoCellsLong) {
    BrickTexture3D t;
    t.setPattern(BrickTexture3D::HERRINGBONE);
    expectValues(t, {
        {0.1f, 0.1f, 0.1f, kBrick},
        {0.001f, 0.1f, 0.1f, kMortar},     // left end of a horizontal brick
        {0.236f, 0.1f, 0.1f, kBrick},      // no joint between its two cells
        {0.469f, 0.1f, 0.1f, kMortar},     // right end
        {0.3525f, 0.237f, 0.1f, kMortar},  // bottom of a vertical brick
        {0.3525f, 0.471f, 0.1f, kBrick},   // no joint between its two cells
        // Cells -1 and 0 of column -1 form one vertical brick (-1 is odd).
        {-0.1175f, -0.234f, 0.1f, kMortar},
        {-0.1175f, -0.001f, 0.1f, kBrick},
        {-0.1175f, 0.001f, 0.1f, kBrick},
        {-0.1175f, 0.234f, 0.1f, kMortar},
    });
}

TEST(Brick, FlatHerringboneMovesZByHalf) {
    // The running bond replaces z by 0.5; the herringbone adds 0.5 instead,
    // so z = -0.088 lands in the depth joint at u = 0.412 / 0.41.
    BrickTexture3D t;
    t.setPattern(BrickTexture3D::HERRINGBONE);
    expectValues(t, {{0.1f, 0.1f, -0.088f, kBrick}});
    t.setFlags(kPlanar);
    expectValues(t, {{0.1f, 0.1f, -0.088f, kMortar}, {0.1f, 0.1f, 0.1f, kBrick}});
}

TEST(Brick, RoundedCornersStartExactlyAtTheRadius) {
    for (auto pattern : {BrickTexture3D::RUNNING_BOND, BrickTexture3D::HERRINGBONE}) {
        SCOPED_TRACE(pattern);
        BrickTexture3D t;
        t.setPattern(pattern);
        makeUnitBricksWithRoundedCorners(t);
        expectValues(t, {
            {0.125f, 0.0625f, 0.5f, kMortar},             // distance == radius
            {0.125f + 0x1p-20f, 0.0625f, 0.5f, kBrick},  // a hair inside
            {0.1875f, 0.0625f, 0.5f, kBrick},
            {0.5f, 0.5f, 0.5f, kBrick},
        });
        t.setRoundedCornersEnabled(false);
        expectValues(t, {{0.125f, 0.0625f, 0.5f, kBrick}});
    }
    // The running bond rounds all four corners of the brick.
    BrickTexture3D t;
    makeUnitBricksWithRoundedCorners(t);
    expectValues(t, {{0.875f, 0.0625f, 0.5f, kMortar}, {0.125f, 0.9375f, 0.5f, kMortar},
                     {0.875f, 0.9375f, 0.5f, kMortar}});
}

TEST(Brick, RoundedCornersOfDefaultBricks) {
    BrickTexture3D t;
    t.setRoundedCornersEnabled(true);
    expectValues(t, {
        {0.0081f, 0.00705f, 0.1f, kMortar},
        {0.02f, 0.01f, 0.1f, kBrick},
        {0.1f, 0.1f, 0.1f, kBrick},
    });
    t.setPattern(BrickTexture3D::HERRINGBONE);
    expectValues(t, {{0.0081f, 0.00705f, 0.1f, kMortar}, {0.02f, 0.01f, 0.1f, kBrick}});

    // Equal intensities make every point pass as brick, so the corner test
    // runs in the joints too and yields the same intensity.
    t.setPattern(BrickTexture3D::RUNNING_BOND);
    t.setMortarColor(kBrick);
    expectValues(t, {{0.0f, 0.1f, 0.1f, kBrick}, {0.0081f, 0.00705f, 0.1f, kBrick}});
}

TEST(Brick, RandomizedIntensityIsOnePerBrick) {
    for (auto pattern : {BrickTexture3D::RUNNING_BOND, BrickTexture3D::HERRINGBONE}) {
        SCOPED_TRACE(pattern);
        BrickTexture3D t;
        t.setPattern(pattern);
        t.setRandomizeColors(true);
        t.setMinColor(0.2f);
        t.setMaxColor(0.4f);
        // Pairs of points in one brick; for the herringbone, the two cells
        // of a horizontal, a vertical and a negative vertical brick.
        const float running[][2][3] = {
            {{0.1f, 0.1f, 0.1f}, {0.3f, 0.2f, 0.3f}},
            {{0.5f, 0.3f, 0.1f}, {1.0f, 0.4f, 0.3f}},
            {{-0.1f, -0.1f, -0.1f}, {-0.35f, -0.2f, -0.3f}},
        };
        const float herringbone[][2][3] = {
            {{0.1f, 0.1f, 0.1f}, {0.3f, 0.2f, 0.3f}},
            {{0.3525f, 0.3525f, 0.1f}, {0.3525f, 0.5875f, 0.1f}},
            {{-0.1f, -0.1f, -0.1f}, {-0.15f, -0.05f, -0.2f}},
        };
        for (const auto& pair : pattern == BrickTexture3D::RUNNING_BOND ? running : herringbone) {
            const float a = t(pair[0]);
            EXPECT_EQ(a, t(pair[1])) << "at (" << pair[0][0] << ", " << pair[0][1] << ")";
            EXPECT_GE(a, 0.2f);
            EXPECT_LE(a, 0.4f);
        }
        std::set<float> values;
        for (int i = 0; i < 6; ++i)
            for (int j = 0; j < 6; ++j) {
                const float p[3] = {0.47f * static_cast<float>(i) + 0.117f, 0.235f * static_cast<float>(j) + 0.117f,
                                    0.2f};
                values.insert(t(p));
            }
        EXPECT_GT(values.size(), 4u);
    }
}

TEST(Brick, RowJitterShiftsEachCourseByTheCellNoise) {
    BrickTexture3D t;
    t.setRowOffsetVariabilityEnabled(true);
    t.setRowOffsetVariabilityAmplitude(0.0f);
    expectValues(t, {{0.0f, 0.1f, 0.1f, kMortar}, {0.1f, 0.1f, 0.1f, kBrick}});

    // Course 0 of layer 0 moves by (noise - 0.5) bricks: its joint leaves
    // x = 0 and reappears where s + shift is a whole number.
    t.setRowOffsetVariabilityAmplitude(1.0f);
    const float shift = CellNoise::cellNoise(0.0f, 0.0f) - 0.5f;
    ASSERT_GT(shift < 0 ? -shift : shift, 0.02f);
    const float joint = (1.0f - shift) * 0.81f;
    expectValues(t, {{0.0f, 0.1f, 0.1f, kBrick}, {joint, 0.1f, 0.1f, kMortar}});
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
    old[35] = 1;
    putFloat(old, 36, 0.3f);
    putFloat(old, 40, 1.5f);
    putFloat(old, 44, 0.6f);
    putFloat(old, 48, 0.05f);
    old[52] = 1;
    old[53] = 0x7f;  // padding, not copied
    putFloat(old, 56, 0.125f);
    putFloat(old, 60, 0.875f);

    // The header and the fields version 3 lacked keep the object's values.
    BrickTexture3D t;
    t.setInteractiveUpdate(false);
    t.setPattern(BrickTexture3D::HERRINGBONE);
    t.setRoundedCornersEnabled(true);
    t.setRoundedCornersRadius(0.5f);
    t.setRowOffsetVariabilityEnabled(true);
    t.setRowOffsetVariabilityAmplitude(0.3f);
    t.setBrickColor(0.9f);
    t.setMortarColor(0.1f);
    std::vector<char> expected = description(t);
    putFloat(expected, 40, 0.3f);
    putFloat(expected, 44, 1.5f);
    putFloat(expected, 48, 0.6f);
    putFloat(expected, 52, 0.05f);
    expected[80] = 1;
    putFloat(expected, 84, 0.125f);
    putFloat(expected, 88, 0.875f);

    t.setStateFromDescription(old.data());
    EXPECT_EQ(description(t), expected);
    EXPECT_EQ(t.getBrickWidth(), 1.5f);
    EXPECT_TRUE(t.getRandomizeColors());
    EXPECT_FALSE(t.interactiveUpdate());

    // From a fresh object: running bond, no corners or jitter, default tones.
    BrickTexture3D fresh;
    fresh.setStateFromDescription(old.data());
    EXPECT_EQ(fresh.getPattern(), BrickTexture3D::RUNNING_BOND);
    EXPECT_FALSE(fresh.getRoundedCornersEnabled());
    EXPECT_FALSE(fresh.getRowOffsetVariabilityEnabled());
    EXPECT_EQ(fresh.getBrickColor(), kBrick);
    EXPECT_EQ(fresh.getMortarColor(), kMortar);
    const std::vector<char> d = description(fresh);
    EXPECT_EQ(d[0], 92);
    EXPECT_EQ(d[33], 4);
    EXPECT_EQ(d[34], 0);
}

TEST(Brick, OtherVersionsAreIgnored) {
    BrickTexture3D source;
    source.setPattern(BrickTexture3D::HERRINGBONE);
    source.setBrickHeight(2.0f);
    source.setMaxColor(0.9f);
    source.setInteractiveUpdate(false);
    std::vector<char> record = description(source);

    BrickTexture3D t;
    const std::vector<char> before = description(t);
    const std::pair<int, int> versions[] = {{4, 1}, {5, 0}, {2, 0}, {-128, 0}, {-125, 0}};
    for (auto [major, minor] : versions) {
        record[33] = static_cast<char>(major);
        record[34] = static_cast<char>(minor);
        t.setStateFromDescription(record.data());
        EXPECT_EQ(description(t), before) << major << "." << minor;
    }
    record[33] = 4;
    record[34] = 0;
    t.setStateFromDescription(record.data());
    EXPECT_EQ(description(t), record);
}

TEST(Brick, FlagBytesOtherThanOneReadAsOn) {
    BrickTexture3D on;
    on.setRoundedCornersEnabled(true);
    on.setRandomizeColors(true);
    std::vector<char> record = description(on);
    record[56] = 7;
    record[80] = static_cast<char>(0x80);
    BrickTexture3D damaged;
    damaged.setStateFromDescription(record.data());
    EXPECT_TRUE(damaged.getRoundedCornersEnabled());
    for (float x : {0.0081f, 0.1f, 0.5f, -2.3f}) {
        const float p[3] = {x, 0.00705f, 0.1f};
        EXPECT_EQ(damaged(p), on(p)) << x;
    }
}
