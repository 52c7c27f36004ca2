// The transform as this host applies it: scale, turn about x, y, z, move.

#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "HostTransform.h"

using namespace gritwell;

namespace {

std::array<float, 3> mapped(const TransformData& record, float x, float y, float z) {
    const float in[3] = {x, y, z};
    std::array<float, 3> out;
    HostTransform(record).apply(in, out.data(), 1);
    return out;
}

}  // namespace

TEST(HostTransform, TheDefaultRecordLeavesEveryBitAlone) {
    TransformData record;
    record.flags = 6;  // the flags word is the session's business, not a movement
    const HostTransform t(record);
    EXPECT_TRUE(t.isIdentity());
    const float in[6] = {-0.0f, 1e30f, std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(), 0.1f, -3.5f};
    float out[6];
    t.apply(in, out, 2);
    EXPECT_EQ(std::memcmp(in, out, sizeof in), 0);
}

TEST(HostTransform, OffsetAndScalesAreUndoneRoundedOnce) {
    TransformData record;
    record.xOffset = 0.5f;
    record.yOffset = -1.0f;
    record.zOffset = 0.1f;
    record.xScale = 2.0f;
    record.yScale = 0.5f;
    record.zScale = 3.0f;
    record.overallScale = 4.0f;
    const auto q = mapped(record, 4.5f, 1.0f, 0.7f);
    EXPECT_EQ(q[0], 0.5f);  // (4.5 - 0.5) / (2 * 4)
    EXPECT_EQ(q[1], 1.0f);  // (1 + 1) / (0.5 * 4)
    // In double, rounded once: not what float steps would give.
    EXPECT_EQ(q[2], static_cast<float>((double{0.7f} - double{0.1f}) / 12.0));

    // An offset alone gives exactly the float difference, so a moved point
    // evaluates to the same bits as the difference itself.
    TransformData moved;
    moved.xOffset = 1.0f;
    EXPECT_EQ(mapped(moved, 0.3f, 0, 0)[0], 0.3f - 1.0f);
}

TEST(HostTransform, ScaledThenTurnedAboutXYZThenMoved) {
    struct Case {
        float ax, ay, az, overall, xOffset;
        std::array<float, 3> p;  // model point
        std::array<float, 3> q;  // where the texture is evaluated
    } const cases[] = {
        // Quarter turns swap axes exactly. A texture turned a quarter about z
        // shows its +x along the model's +y.
        {0, 0, 0.25f, 1, 0, {0, 1, 0}, {1, 0, 0}},
        {0, 0, -0.75f, 1, 0, {0, 1, 0}, {1, 0, 0}},
        {0.25f, 0, 0, 1, 0, {0, 0, 1}, {0, 1, 0}},
        {0, 0.25f, 0, 1, 0, {1, 0, 0}, {0, 0, 1}},
        {0, 0, 3.0f, 1, 0, {0.3f, 0.7f, 2}, {0.3f, 0.7f, 2}},
        // About x first, then z: the texture's +z goes to -y, then to +x;
        // its +y goes to +z and stays.
        {0.25f, 0, 0.25f, 1, 0, {1, 0, 0}, {0, 0, 1}},
        {0.25f, 0, 0.25f, 1, 0, {0, 0, 1}, {0, 1, 0}},
        // Texture point (1, 0, 0) scaled by 2, turned half about y, moved by
        // 1 in x lands on (-1, 0, 0).
        {0, 0.5f, 0, 2, 1, {-1, 0, 0}, {1, 0, 0}},
    };
    for (const Case& c : cases) {
        TransformData record;
        record.xAngle = c.ax;
        record.yAngle = c.ay;
        record.zAngle = c.az;
        record.overallScale = c.overall;
        record.xOffset = c.xOffset;
        const auto q = mapped(record, c.p[0], c.p[1], c.p[2]);
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(q[k], c.q[k]) << "angles " << c.ax << ' ' << c.ay << ' ' << c.az << ", axis " << k;
    }
}
