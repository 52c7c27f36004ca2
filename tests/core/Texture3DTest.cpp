#include <cstring>

#include <gtest/gtest.h>

#include "core/Texture3D.h"

using namespace gritwell;

namespace {
// The base class as the host would see a generator that overrides nothing.
struct BaseOnly final : Texture3D {};

BaseData headerWithVersion(int major, int minor) { return makeHeader(40, "Any", major, minor); }
}  // namespace

TEST(Texture3D, BaseClassYieldsOneEverywhereAndAnEmptyDescription) {
    BaseOnly base;
    const float p[3] = {0.3f, -7.0f, 1e30f};
    EXPECT_EQ(base(p), 1.0f);

    const float points[6] = {0, 0, 0, 1, 2, 3};
    float out[3] = {-1, -1, -1};
    base(points, 2, out);
    EXPECT_EQ(out[0], 1.0f);
    EXPECT_EQ(out[1], 1.0f);
    EXPECT_EQ(out[2], -1.0f);  // only n values written

    char description[8] = "xxxxxxx";
    base.getDescription(description);
    EXPECT_STREQ(description, "Empty");
    EXPECT_EQ(description[6], 'x');
    EXPECT_EQ(base.flags(), 2);
}

TEST(Texture3D, VersionsAreSignedBytesComparedMajorFirst) {
    BaseData record = headerWithVersion(4, 0);
    const char* bytes = reinterpret_cast<const char*>(&record);
    EXPECT_TRUE(Texture3D::versionsMatch(bytes, headerWithVersion(4, 0)));
    EXPECT_FALSE(Texture3D::versionsMatch(bytes, headerWithVersion(3, 0)));
    EXPECT_FALSE(Texture3D::versionsMatch(bytes, headerWithVersion(4, 1)));

    record.majorVersion = static_cast<std::int8_t>(0x80);
    EXPECT_EQ(Texture3D::majorVersion(bytes), -128);
    EXPECT_TRUE(Texture3D::versionsMatch(bytes, headerWithVersion(-128, 0)));
    record.minorVersion = -1;
    EXPECT_EQ(Texture3D::minorVersion(bytes), -1);
}

TEST(Texture3D, RecordNameStopsAtTheTerminatorOrTheEndOfItsBytes) {
    char record[64];
    std::memset(record, 'A', sizeof record);
    record[0] = 48;
    EXPECT_EQ(Texture3D::recordName(record), std::string(32, 'A'));
    std::memcpy(record + 1, "Spheres", 8);
    EXPECT_EQ(Texture3D::recordName(record), "Spheres");
}

TEST(Texture3D, PlanarModeIsEitherOfTheBitsFourAndEight) {
    EXPECT_FALSE(isPlanar(2));
    EXPECT_FALSE(isPlanar(3));
    EXPECT_TRUE(isPlanar(4));
    EXPECT_TRUE(isPlanar(8));
    EXPECT_TRUE(isPlanar(-1));
}
