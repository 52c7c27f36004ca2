// Properties every generator must have. A new generator joins this suite by
// being in the factory; the table below says where one differs.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "RecordVariants.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

// Which coordinates a generator reads at its defaults.
enum class ZUse {
    Solid,   // z in the solid mode, never in the planar one
    Never,   // a pattern of x and y alone
    Always,  // z in the planar mode too
};

// What a point with an infinite, NaN or huge coordinate gives at the
// generator's defaults; with switches on (noise added, colours randomised)
// NaN is allowed everywhere.
enum class OddPoints {
    Unit,       // a value in [0, 1]
    UnitOrNaN,  // the noise of an infinite coordinate is NaN
    AnyFloat,   // the ramp is not folded back beyond the int range
};

struct Traits {
    std::string_view name;
    ZUse z;
    OddPoints odd;
};

// Every generator not listed is Solid and Unit.
constexpr Traits kTraits[] = {
    {"Stripes", ZUse::Never, OddPoints::Unit},
    {"Constant", ZUse::Never, OddPoints::Unit},
    {"Nested Shapes", ZUse::Never, OddPoints::Unit},  // its default cylinders run along z
    {"HexTile", ZUse::Never, OddPoints::Unit},
    {"Voronoi Tiles", ZUse::Never, OddPoints::Unit},
    {"Weave", ZUse::Never, OddPoints::Unit},
    {"Plaid", ZUse::Never, OddPoints::Unit},
    {"Zigzag", ZUse::Never, OddPoints::Unit},
    {"Corrugated", ZUse::Never, OddPoints::UnitOrNaN},
    {"Snakeskin", ZUse::Never, OddPoints::Unit},
    {"Scales", ZUse::Never, OddPoints::Unit},
    {"Houndstooth", ZUse::Never, OddPoints::Unit},
    {"Penrose Rhombus", ZUse::Never, OddPoints::Unit},
    {"Checkerboard", ZUse::Always, OddPoints::Unit},  // flags are not read
    {"Wood", ZUse::Always, OddPoints::UnitOrNaN},     // rings around y, measured in x and z
    {"Gradient", ZUse::Always, OddPoints::AnyFloat},
    {"Cell Noise", ZUse::Always, OddPoints::Unit},
    {"Camouflage", ZUse::Always, OddPoints::Unit},  // the second layer's warp reads z
    {"Perlin Noise", ZUse::Solid, OddPoints::UnitOrNaN},
    {"FBM", ZUse::Solid, OddPoints::UnitOrNaN},
    {"Turbulence", ZUse::Solid, OddPoints::UnitOrNaN},
    {"Simplex", ZUse::Solid, OddPoints::UnitOrNaN},
    {"Simple Marble", ZUse::Solid, OddPoints::UnitOrNaN},
    {"Erosion", ZUse::Solid, OddPoints::UnitOrNaN},
    {"Dents", ZUse::Solid, OddPoints::UnitOrNaN},
    {"Speckled Stone", ZUse::Solid, OddPoints::UnitOrNaN},
};

Traits traitsOf(std::string_view name) {
    for (const Traits& t : kTraits)
        if (t.name == name) return t;
    return {name, ZUse::Solid, OddPoints::Unit};
}

class EveryGenerator : public testing::TestWithParam<const GeneratorInfo*> {
protected:
    const GeneratorInfo& info() const { return *GetParam(); }
    TexturePtr make() const { return TexturePtr(GetParam()->create()); }
    TexturePtr make(const std::vector<char>& record) const {
        TexturePtr t = make();
        t->setStateFromDescription(record.data());
        return t;
    }
    std::vector<char> description(Texture3D& t) const {
        std::vector<char> bytes(256, '\x5a');
        t.getDescription(bytes.data());
        return bytes;
    }
};

std::vector<float> randomPoints(int n, float extent, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> coord(-extent, extent);
    std::vector<float> p(3 * n);
    for (float& v : p) v = coord(rng);
    return p;
}

// The generators whose text stream operators write and read nothing.
bool hasEmptyTextStreams(std::string_view name) {
    constexpr std::string_view kEmpty[] = {"Checkerboard", "Grid",       "Stripes", "Spiral",
                                           "Zigzag",       "Corrugated", "Spheres", "Nested Shapes"};
    return std::ranges::find(kEmpty, name) != std::end(kEmpty);
}

}  // namespace

TEST_P(EveryGenerator, FactoryBuildsItByNameWithItsHeader) {
    EXPECT_EQ(TextureFactory::find(info().name), &info());
    TexturePtr t(TextureFactory::isHostGenerator(info()) ? TextureFactory::create(info().name) : info().create());
    ASSERT_NE(t, nullptr);
    const std::vector<char> d = description(*t);
    EXPECT_EQ(static_cast<unsigned char>(d[0]), info().recordSize);
    EXPECT_EQ(Texture3D::recordName(d.data()), info().name);
    EXPECT_EQ(Texture3D::majorVersion(d.data()), info().majorVersion);
    EXPECT_EQ(Texture3D::minorVersion(d.data()), info().minorVersion);
    EXPECT_EQ(d[35], 1) << "interactive update defaults to on";
    EXPECT_EQ(d[info().recordSize], '\x5a') << "description wrote past the record";
}

TEST_P(EveryGenerator, FieldTableCoversTheRecordWithoutOverlap) {
    std::vector<int> owner(info().recordSize, -1);
    for (std::size_t i = 0; i < info().fields.size(); ++i) {
        const FieldInfo& f = info().fields[i];
        ASSERT_GE(f.offset, 36u) << f.name;
        ASSERT_LE(f.offset + fieldWidth(f.type), static_cast<std::size_t>(info().recordSize)) << f.name;
        EXPECT_EQ(f.offset % fieldWidth(f.type), 0u) << f.name << " is not aligned";
        for (std::size_t b = f.offset; b < f.offset + fieldWidth(f.type); ++b) {
            EXPECT_EQ(owner[b], -1) << f.name << " overlaps another field";
            owner[b] = static_cast<int>(i);
        }
    }
}

TEST_P(EveryGenerator, BatchEqualsSinglePointEvaluation) {
    TexturePtr t = make();
    for (int flags : {2, 4, 8}) {
        t->setFlags(flags);
        const int n = 500;
        std::vector<float> pts = randomPoints(n, 6.0f, 7);
        std::vector<float> out(n + 1, -7.0f);
        (*t)(pts.data(), n, out.data());
        for (int i = 0; i < n; ++i)
            ASSERT_EQ(out[i], (*t)(&pts[3 * i])) << "point " << i << " flags " << flags;
        EXPECT_EQ(out[n], -7.0f);
        (*t)(pts.data(), 0, out.data());
        (*t)(pts.data(), -3, out.data());
        EXPECT_EQ(out[0], (*t)(&pts[0])) << "n <= 0 must write nothing";
    }
}

TEST_P(EveryGenerator, DescriptionRoundTripsThroughAFreshGenerator) {
    for (int v = 0; v < RecordVariants::kCount; ++v) {
        std::vector<char> record = RecordVariants::record(info(), v);
        record[35] = 0;  // interactive update off, to see it adopted
        TexturePtr b = make(record);
        std::vector<char> back = description(*b);
        std::fill(back.begin() + info().recordSize, back.end(), '\0');
        EXPECT_EQ(back, record) << RecordVariants::label(v);
    }
}

// Every other version: any minor but the current one of this major, and
// every major but the older ones the generator converts.
TEST_P(EveryGenerator, RecordOfAnotherVersionChangesNothing) {
    TexturePtr t = make();
    const std::vector<char> before = description(*t);
    std::vector<char> other(256, '\x33');
    std::memcpy(other.data(), before.data(), 36);
    other[35] = 0;
    for (int major = -128; major < 128; ++major)
        for (int minor : {info().minorVersion - 1, info().minorVersion, info().minorVersion + 1, -128}) {
            const bool current = major == info().majorVersion && minor == info().minorVersion;
            if (current || info().convertsMajorVersion(major)) continue;
            other[33] = static_cast<char>(major);
            other[34] = static_cast<char>(minor);
            t->setStateFromDescription(other.data());
            ASSERT_EQ(description(*t), before) << "version " << major << "." << minor;
        }
}

// An older record it converts changes fields but keeps the header; what
// each field becomes is the generator's own test.
TEST_P(EveryGenerator, OlderVersionsItConvertsKeepTheHeader) {
    for (int major : info().olderMajorVersions) {
        std::vector<char> before = RecordVariants::record(info(), 0);
        before[35] = 0;  // interactive update off, to see it kept
        TexturePtr t = make(before);
        before = description(*t);
        std::vector<char> old(256, '\x33');
        std::memcpy(old.data(), before.data(), 33);
        old[0] = 64;  // another size: the older layout's
        old[33] = static_cast<char>(major);
        old[34] = 5;  // any minor
        old[35] = 1;
        t->setStateFromDescription(old.data());
        const std::vector<char> after = description(*t);
        EXPECT_TRUE(std::equal(after.begin(), after.begin() + 36, before.begin())) << "version " << major;
        EXPECT_NE(after, before) << "version " << major << " converted nothing";
    }
}

TEST_P(EveryGenerator, FlagBytesOtherThanOneReadAsOn) {
    const std::vector<char> on = RecordVariants::record(info(), 1);
    std::vector<char> damaged = on;
    int flags = 0;
    for (const FieldInfo& f : info().fields)
        if (f.type == FieldType::Bool) damaged[f.offset] = static_cast<char>(++flags % 2 ? 0x80 : 7);
    if (flags == 0) GTEST_SKIP() << "no switches";
    TexturePtr a = make(on), b = make(damaged);
    const std::vector<float> pts = randomPoints(400, 4.0f, 3);
    for (int i = 0; i < 400; ++i)
        ASSERT_EQ(bitsOf((*a)(&pts[3 * i])), bitsOf((*b)(&pts[3 * i]))) << "point " << i;
}

TEST_P(EveryGenerator, ZIsReadOnlyWhereTheModeSaysSo) {
    const ZUse use = traitsOf(info().name).z;
    TexturePtr t = make();
    for (int flags : {2, 4, 8, 12}) {
        t->setFlags(flags);
        const bool readsZ = use == ZUse::Always || (use == ZUse::Solid && !isPlanar(flags));
        bool differs = false;
        for (float x = -1.0f; x < 1.0f; x += 0.29f)
            for (float y = -1.0f; y < 1.0f; y += 0.31f) {
                const float a[3] = {x, y, 0.13f};
                for (float z : {-2.71f, 0.61f, 0.05f, 1e30f, std::numeric_limits<float>::quiet_NaN()}) {
                    const float b[3] = {x, y, z};
                    const bool same = bitsOf((*t)(a)) == bitsOf((*t)(b));
                    ASSERT_TRUE(readsZ || same) << "flags " << flags << " at (" << x << ", " << y << ", " << z << ")";
                    differs |= !same;
                }
            }
        EXPECT_TRUE(!readsZ || differs) << "flags " << flags;
    }
}

TEST_P(EveryGenerator, FiniteOverSpaceAndInUnitRangeUntilColoursLeaveIt) {
    const std::vector<float> pts = randomPoints(2000, 50.0f, 11);
    for (int v = 0; v < RecordVariants::kCount; ++v)
        for (int flags : {2, 12}) {
            TexturePtr t = make(RecordVariants::record(info(), v));
            t->setFlags(flags);
            for (int i = 0; i < 2000; ++i) {
                const float value = (*t)(&pts[3 * i]);
                ASSERT_TRUE(std::isfinite(value)) << RecordVariants::label(v) << ", point " << i;
                // The last variant's colours a quarter larger may pass 1.
                ASSERT_TRUE(v == 3 || (value >= 0.0f && value <= 1.0f)) << RecordVariants::label(v) << ": " << value;
            }
        }
}

TEST_P(EveryGenerator, InfiniteNaNAndHugePointsGiveAValue) {
    const OddPoints odd = traitsOf(info().name).odd;
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float coords[] = {inf, -inf, nan, 1e30f, -1e30f, -1.0f, 0.0f, -0.0f, 1e-40f, 3e9f};
    for (int v = 0; v < 3; ++v)
        for (int flags : {2, 12}) {
            TexturePtr t = make(RecordVariants::record(info(), v));
            t->setFlags(flags);
            for (float x : coords)
                for (float y : coords) {
                    const float p[3] = {x, y, -x};
                    const float value = (*t)(p);
                    EXPECT_EQ(bitsOf(value), bitsOf((*t)(p))) << "a second call differs";
                    const bool unit = value >= 0.0f && value <= 1.0f;
                    const bool allowed = unit || odd == OddPoints::AnyFloat ||
                                         ((odd == OddPoints::UnitOrNaN || v > 0) && std::isnan(value));
                    EXPECT_TRUE(allowed) << RecordVariants::label(v) << " at (" << x << ", " << y << "): " << value;
                }
        }
}

TEST_P(EveryGenerator, TextStreamsCarryTheFieldTableOrNothing) {
    // Every field off its default, so a field skipped or out of order shows.
    TexturePtr changed = make();
    std::vector<char> record = description(*changed);
    for (const FieldInfo& f : info().fields) {
        switch (f.type) {
            case FieldType::Int32: writeIntField(record.data(), f, readIntField(record.data(), f) + 3); break;
            case FieldType::Float: writeFloatField(record.data(), f, readFloatField(record.data(), f) * 0.75f + 0.3f); break;
            case FieldType::Bool: writeBoolField(record.data(), f, !readBoolField(record.data(), f)); break;
        }
    }
    changed->setStateFromDescription(record.data());
    std::ostringstream out;
    out.precision(9);  // enough digits for every float to read back exactly
    info().writeText(out, *changed);
    const std::string text = out.str();

    TexturePtr back = make();
    const std::vector<char> defaults = description(*back);
    if (hasEmptyTextStreams(info().name)) {
        EXPECT_EQ(text, "");
        std::istringstream in("1 0 1\n");
        info().readText(in, *back);
        EXPECT_TRUE(in.good());
        EXPECT_EQ(in.tellg(), 0) << "the stream must be left untouched";
        EXPECT_EQ(description(*back), defaults);
        return;
    }
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(std::ranges::count(text, ' '), static_cast<long>(info().fields.size()) - 1) << text;
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
    std::istringstream in(text);
    info().readText(in, *back);
    EXPECT_FALSE(in.fail()) << text;
    EXPECT_EQ(description(*back), record) << text;

    // The last value unreadable: nothing is adopted.
    const std::size_t lastBlank = text.rfind(' ');
    std::istringstream bad(text.substr(0, lastBlank == std::string::npos ? 0 : lastBlank + 1) + "x\n");
    TexturePtr untouched = make();
    info().readText(bad, *untouched);
    EXPECT_TRUE(bad.fail());
    EXPECT_EQ(description(*untouched), defaults);
}

TEST(TextStreams, WriteTheDefaultsWithTheStreamsFormatting) {
    struct Case {
        std::string_view generator, text;
    };
    const Case cases[] = {
        {"Constant", "0.5\n"},
        {"Gradient", "1 1 1\n"},
        {"Wood", "6 1 1 0.1 0.1 0.5\n"},  // ringScale octaves frequency amplitude darkColor lightColor
    };
    for (const Case& c : cases) {
        const GeneratorInfo* info = TextureFactory::find(c.generator);
        ASSERT_NE(info, nullptr) << c.generator;
        TexturePtr t(info->create());
        std::ostringstream out;
        info->writeText(out, *t);
        EXPECT_EQ(out.str(), c.text) << c.generator;
    }
}

TEST(GeneratorTraits, NameOnlyGeneratorsOfTheFactory) {
    for (const Traits& t : kTraits) EXPECT_NE(TextureFactory::find(t.name), nullptr) << t.name;
}

INSTANTIATE_TEST_SUITE_P(Factory, EveryGenerator, testing::ValuesIn(TextureFactory::allGenerators()),
                         [](const testing::TestParamInfo<const GeneratorInfo*>& info) {
                             std::string name(info.param->name);
                             std::erase(name, ' ');
                             return name;
                         });
