// The plug-in loaded with dlopen and driven exactly as the host drives it:
// seven arguments per call, a 256-byte record block, a 44-byte transform
// block, a count-prefixed point block.

#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "PluginLibrary.h"
#include "core/TransformData.h"
#include "textures/CheckerboardTexture3D.h"
#include "textures/SpheresTexture3D.h"

using namespace gritwell;

namespace {

class HostSession : public testing::Test {
protected:
    static PluginLibrary& plugin() {
        static PluginLibrary library(GRITWELL_PLUGIN_PATH);
        return library;
    }

    void SetUp() override {
        ASSERT_TRUE(plugin().ok()) << plugin().error();
        end();  // no session carried over from another test
    }
    void TearDown() override { end(); }

    template <class Generator>
    static std::vector<char> recordOf(const Generator& g) {
        std::vector<char> block(256, 0);
        const_cast<Generator&>(g).getDescription(block.data());
        return block;
    }
    static std::vector<char> transforms(int flags) {
        TransformData t;
        t.flags = flags;
        std::vector<char> bytes(44);
        t.toBytes(bytes.data());
        return bytes;
    }

    float begin(std::vector<char> record, int flags = 2) {
        std::vector<char> t = transforms(flags);
        return plugin().beginSession(nullptr, 0.0, record.data(), 256, t.data(), 44, nullptr);
    }
    float end() { return plugin().endSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr); }
    float one(float x, float y, float z) {
        float p[3] = {x, y, z};
        return plugin().continueSessionOne(reinterpret_cast<char*>(p), 0.0, nullptr, 0, nullptr, 0, nullptr);
    }
    // A batch; returns n + 1 slots, the last a sentinel the call must not touch.
    std::vector<float> batch(const std::vector<float>& points, int count) {
        std::vector<float> block(1 + points.size());
        std::memcpy(block.data(), &count, sizeof count);
        std::copy(points.begin(), points.end(), block.begin() + 1);
        std::vector<float> out(points.size() / 3 + 1, -9.0f);
        EXPECT_EQ(plugin().continueSession(nullptr, 0.0, reinterpret_cast<char*>(out.data()), 0,
                                           reinterpret_cast<char*>(block.data()), 0, nullptr),
                  1.0f);
        return out;
    }
};

std::vector<char> namedRecord(const char* name) {
    std::vector<char> block(256, 0);
    block[0] = 48;
    std::strncpy(block.data() + 1, name, 32);
    block[33] = 3;
    return block;
}

}  // namespace

TEST_F(HostSession, SpheresSessionInBatchesAndOneAtATime) {
    SpheresTexture3D spheres;
    EXPECT_EQ(begin(recordOf(spheres)), 1.0f);
    const std::vector<float> out = batch({0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 0.8f, 0.5f, 0.5f, 0.75f}, 3);
    EXPECT_EQ(out[0], 0.0f);
    EXPECT_EQ(out[1], 1.0f);
    EXPECT_EQ(out[2], 0.0f);
    EXPECT_EQ(out[3], -9.0f);
    EXPECT_EQ(one(0.5f, 0.5f, 0.8f), 1.0f);
    EXPECT_EQ(one(0.5f, 0.5f, 0.5f), 0.0f);
    EXPECT_EQ(end(), 1.0f);
}

TEST_F(HostSession, NamesThatMatchNoGeneratorLeaveTheSessionAsItWas) {
    CheckerboardTexture3D checker;
    begin(recordOf(checker));
    for (const char* name : {"Penrose Rhombus", "Cell Noise", "checkerboard", "", "Spheres "}) {
        EXPECT_EQ(begin(namedRecord(name)), 1.0f) << name;
        EXPECT_EQ(one(1.5f, 0.5f, 0.5f), 0.75f) << "still the checkerboard after '" << name << "'";
    }
}

TEST_F(HostSession, NoSessionMeansNoOutputAndOne) {
    EXPECT_EQ(one(0.5f, 0.5f, 0.5f), 1.0f);
    const std::vector<float> out = batch({0.5f, 0.5f, 0.5f}, 1);
    EXPECT_EQ(out[0], -9.0f);
    EXPECT_EQ(end(), 1.0f);
    EXPECT_EQ(end(), 1.0f);  // twice: harmless
}

TEST_F(HostSession, CountZeroOrNegativeWritesNothing) {
    SpheresTexture3D spheres;
    begin(recordOf(spheres));
    EXPECT_EQ(batch({0.5f, 0.5f, 0.5f}, 0)[0], -9.0f);
    EXPECT_EQ(batch({0.5f, 0.5f, 0.5f}, -5)[0], -9.0f);
}

TEST_F(HostSession, ARecordOfAnotherVersionOpensAtTheDefaultsWithTheFlagsSet) {
    SpheresTexture3D spheres;
    spheres.setSphereSize(0.45f);
    std::vector<char> record = recordOf(spheres);
    record[33] = 1;  // version 1.0
    begin(record, 4);
    EXPECT_EQ(one(0.5f, 0.2f, 0.8f), 1.0f) << "default radius 0.25, not 0.45";
    // Planar: the slice z = -0.5, whatever z is asked for.
    EXPECT_EQ(one(0.5f, 0.5f, 123.0f), 0.0f);
}

TEST_F(HostSession, PlanarFlagsComeFromTheTransformRecord) {
    SpheresTexture3D spheres;
    for (int flags : {4, 8, 12, 2 | 8}) {
        begin(recordOf(spheres), flags);
        EXPECT_EQ(one(0.5f, 0.3f, 0.3f), 0.0f) << flags;
        EXPECT_EQ(one(0.5f, 0.3f, 0.9f), 0.0f) << flags;
        end();
    }
    begin(recordOf(spheres), 2);
    EXPECT_EQ(one(0.5f, 0.3f, 0.9f), 1.0f);
}

TEST_F(HostSession, DamagedRecordsAndPointsAreSurvived) {
    // A name that is not terminated within its 32 bytes matches nothing.
    std::vector<char> unterminated(256, 'S');
    unterminated[0] = 48;
    EXPECT_EQ(begin(unterminated), 1.0f);
    EXPECT_EQ(one(0.5f, 0.5f, 0.5f), 1.0f);

    // Size bytes of 0 and 255 are copied but never trusted for lengths.
    SpheresTexture3D spheres;
    for (unsigned char size : {0, 255}) {
        std::vector<char> record = recordOf(spheres);
        record[0] = static_cast<char>(size);
        begin(record);
        EXPECT_EQ(one(0.5f, 0.5f, 0.5f), 0.0f);
        end();
    }

    // A record shorter than a Checkerboard's, zero-padded in its block: the
    // missing fields read as zero (depth 0: black everywhere).
    std::vector<char> shortRecord(256, 0);
    CheckerboardTexture3D checker;
    checker.getDescription(shortRecord.data());
    std::memset(shortRecord.data() + 36, 0, 12);
    shortRecord[0] = 36;
    begin(shortRecord);
    EXPECT_EQ(one(1.5f, 0.5f, 0.5f), 0.0f);

    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<float> out = batch({nan, nan, nan, inf, -inf, 1e30f, -1e38f, 0.0f, nan}, 3);
    EXPECT_EQ(out[3], -9.0f);
}

TEST_F(HostSession, BlocksAtAnyAddressGiveTheSameValues) {
    // The host owes us no alignment: its point block and output may start at
    // any byte. Enough points for several of the copies a misaligned block
    // goes through, and a part one at the end.
    CheckerboardTexture3D checker;
    begin(recordOf(checker));
    const int n = 2500;
    std::vector<float> points(3 * n);
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = 0.37f * static_cast<float>(i % 97) - 11.0f;
    const std::vector<float> aligned = batch(points, n);
    for (const std::size_t shift : {1, 2, 3}) {
        std::vector<char> block(shift + sizeof(int) + sizeof(float) * points.size());
        std::memcpy(block.data() + shift, &n, sizeof n);
        std::memcpy(block.data() + shift + sizeof n, points.data(), sizeof(float) * points.size());
        std::vector<char> out(shift + sizeof(float) * (n + 1), 7);
        plugin().continueSession(nullptr, 0.0, out.data() + shift, 0, block.data() + shift, 0, nullptr);
        std::vector<float> values(n);
        std::memcpy(values.data(), out.data() + shift, sizeof(float) * n);
        EXPECT_EQ(values, std::vector<float>(aligned.begin(), aligned.end() - 1)) << "shifted by " << shift;
        EXPECT_EQ(out.back(), 7) << "wrote past the count, shifted by " << shift;
    }
}
