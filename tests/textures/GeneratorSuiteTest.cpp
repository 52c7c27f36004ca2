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
#include "core/SimdLevel.h"
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

// Coordinates of every kind the host can send: mostly spread over many cells
// (negative and positive), exact integers and halves on cell seams, huge
// values of either sign, and tiny ones near zero.
std::vector<float> mixedPoints(int n, std::uint32_t seed) {
    std::mt19937 rng(seed);
    std::vector<float> p(3 * static_cast<std::size_t>(n));
    for (float& v : p) {
        const std::uint32_t r = static_cast<std::uint32_t>(rng());
        const float unit = std::bit_cast<float>(0x3f800000u | (r >> 9)) - 1.0f;  // [0, 1)
        switch (r & 15u) {
            case 0: v = static_cast<float>(static_cast<int>(r >> 24) - 128); break;  // integers
            case 1: v = static_cast<float>(static_cast<int>(r >> 24) - 128) + 0.5f; break;
            case 2: v = std::bit_cast<float>((r & 0x80000000u) | (0x4b000000u + (r & 0x1f800000u))); break;  // 2^23..2^86
            case 3: v = (unit - 0.5f) * 1e-3f; break;
            default: v = (unit * 2.0f - 1.0f) * 40.0f; break;
        }
    }
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

// The batch call is compiled for several instruction sets; one point at a
// time is the reference. A million points at the defaults in the solid
// mode, the vector kernels' path; every other record and flag mode 32,768.
TEST_P(EveryGenerator, BatchEqualsSinglePointEvaluation) {
    constexpr int kPoints = 1 << 20, kOtherPoints = 32771;  // 32771: a tail after the last vector block
    const std::vector<float> all = mixedPoints(kPoints, 97u);
    for (int v = 0; v < RecordVariants::kCount; ++v)
        for (int flags : {2, 4, 8, 12}) {
            const int n = (v == 0 && flags == 2) ? kPoints : kOtherPoints;
            TexturePtr t = make(RecordVariants::record(info(), v));
            t->setFlags(flags);
            std::vector<float> batch(n + 1, -7.0f);
            (*t)(all.data(), n, batch.data());
            for (int i = 0; i < n; ++i)
                ASSERT_EQ(bitsOf(batch[i]), bitsOf((*t)(&all[3 * static_cast<std::size_t>(i)])))
                    << RecordVariants::label(v) << ", flags " << flags << ", point (" << all[3 * i] << ", "
                    << all[3 * i + 1] << ", " << all[3 * i + 2] << ")";
            EXPECT_EQ(batch[n], -7.0f) << "wrote past the last point";
            (*t)(all.data(), 0, batch.data());
            (*t)(all.data(), -3, batch.data());
            EXPECT_EQ(bitsOf(batch[0]), bitsOf((*t)(all.data()))) << "n <= 0 must write nothing";
        }
}

// One point may run a vector kernel of its own where the processor has
// one; the scalar level is the definition it is held to, on the mixed cloud
// and on the coordinates where an exact shortcut hands over to the library
// (NaN, infinities, signed zeros, huge values, whole multiples of a period).
TEST_P(EveryGenerator, OnePointAtEveryLevelEqualsTheScalarLevel) {
    std::vector<float> points = mixedPoints(32771, 131u);
    const float inf = std::numeric_limits<float>::infinity();
    const float edges[] = {inf, -inf, std::numeric_limits<float>::quiet_NaN(), -0.0f, 0.0f, 1.5f, 2.5f, -7.5f,
                           0x1p24f, -0x1p23f - 2.0f, 3e9f, -1e38f};
    for (float x : edges)
        for (float y : edges) points.insert(points.end(), {x, y, -x});
    const std::size_t n = points.size() / 3;
    const SimdLevel before = simdLevel();
    for (int v = 0; v < RecordVariants::kCount; ++v)
        for (int flags : {2, 12}) {
            TexturePtr t = make(RecordVariants::record(info(), v));
            t->setFlags(flags);
            setSimdLevel(SimdLevel::kScalar);
            std::vector<std::uint32_t> reference(n);
            for (std::size_t i = 0; i < n; ++i) reference[i] = bitsOf((*t)(&points[3 * i]));
            for (const SimdLevel level : {SimdLevel::kAvx2, SimdLevel::kAvx512}) {
                if (supportedSimdLevel(level) != level) continue;
                setSimdLevel(level);
                std::size_t wrong = 0;
                for (std::size_t i = 0; i < n && wrong < 3; ++i) {
                    if (bitsOf((*t)(&points[3 * i])) == reference[i]) continue;
                    ++wrong;
                    ADD_FAILURE() << simdLevelName(level) << ", " << RecordVariants::label(v) << ", flags " << flags
                                  << ", point (" << points[3 * i] << ", " << points[3 * i + 1] << ", "
                                  << points[3 * i + 2] << ")";
                }
            }
        }
    setSimdLevel(before);
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

// A damaged record's huge octave count or depth ends, with the value of a
// long loop: each loop stops once its terms no longer change anything.
TEST_P(EveryGenerator, HugeCountsEndWithTheValueOfALongLoop) {
    std::vector<const FieldInfo*> counts;
    for (const FieldInfo& f : info().fields)
        if (f.type == FieldType::Int32 && (f.name.ends_with("ctaves") || f.name == "depth")) counts.push_back(&f);
    if (counts.empty()) GTEST_SKIP() << "no octave count";
    for (int v : {1, 3}) {
        std::vector<char> longer = RecordVariants::record(info(), v), huge = longer;
        for (const FieldInfo* f : counts) {
            writeIntField(longer.data(), *f, 3000);
            writeIntField(huge.data(), *f, std::numeric_limits<std::int32_t>::max());
        }
        TexturePtr a = make(longer), b = make(huge);
        for (float x : {0.3f, -2.75f, 1e-3f, 0.0f, 1e20f}) {
            const float p[3] = {x, 0.45f, -0.6f};
            ASSERT_EQ(bitsOf((*a)(p)), bitsOf((*b)(p))) << RecordVariants::label(v) << " at x = " << x;
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

INSTANTIATE_TEST_SUITE_P(Factory, EveryGenerator, testing::ValuesIn(TextureFactory::allGenerators()),
                         [](const testing::TestParamInfo<const GeneratorInfo*>& info) {
                             std::string name(info.param->name);
                             std::erase(name, ' ');
                             return name;
                         });
