// Properties every generator must have. A new generator joins this suite by
// being in the factory.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

class EveryGenerator : public testing::TestWithParam<const GeneratorInfo*> {
protected:
    TexturePtr make() const { return TexturePtr(GetParam()->create()); }
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
    const GeneratorInfo& info = *GetParam();
    EXPECT_EQ(TextureFactory::find(info.name), &info);
    TexturePtr t(TextureFactory::isHostGenerator(info) ? TextureFactory::create(info.name) : info.create());
    ASSERT_NE(t, nullptr);
    const std::vector<char> d = description(*t);
    EXPECT_EQ(static_cast<unsigned char>(d[0]), info.recordSize);
    EXPECT_EQ(Texture3D::recordName(d.data()), info.name);
    EXPECT_EQ(Texture3D::majorVersion(d.data()), info.majorVersion);
    EXPECT_EQ(Texture3D::minorVersion(d.data()), info.minorVersion);
    EXPECT_EQ(d[35], 1) << "interactive update defaults to on";
    EXPECT_EQ(d[info.recordSize], '\x5a') << "description wrote past the record";
}

TEST_P(EveryGenerator, FieldTableCoversTheRecordWithoutOverlap) {
    const GeneratorInfo& info = *GetParam();
    std::vector<int> owner(info.recordSize, -1);
    for (std::size_t i = 0; i < info.fields.size(); ++i) {
        const FieldInfo& f = info.fields[i];
        ASSERT_GE(f.offset, 36u) << f.name;
        ASSERT_LE(f.offset + fieldWidth(f.type), static_cast<std::size_t>(info.recordSize)) << f.name;
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
    TexturePtr a = make();
    std::vector<char> record = description(*a);
    record[35] = 0;  // interactive update off, to see it adopted
    TexturePtr b = make();
    b->setStateFromDescription(record.data());
    EXPECT_EQ(description(*b), record);
}

TEST_P(EveryGenerator, RecordOfAnotherVersionChangesNothing) {
    const GeneratorInfo& info = *GetParam();
    TexturePtr t = make();
    const std::vector<char> before = description(*t);
    std::vector<char> other(256, '\x33');
    std::memcpy(other.data(), before.data(), 36);
    other[35] = 0;
    for (auto [major, minor] : {std::pair{info.majorVersion + 7, info.minorVersion},
                                std::pair{info.majorVersion, info.minorVersion + 1},
                                std::pair{-128, 0}}) {
        other[33] = static_cast<char>(major);
        other[34] = static_cast<char>(minor);
        t->setStateFromDescription(other.data());
        EXPECT_EQ(description(*t), before) << "version " << major << "." << minor;
    }
}

TEST_P(EveryGenerator, NonFiniteAndHugePointsGiveAValue) {
    TexturePtr t = make();
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float odd[] = {inf, -inf, nan, 1e30f, -1e30f, -1.0f, 0.0f, -0.0f, 1e-40f, 3e9f};
    for (int flags : {2, 12})
        for (float x : odd)
            for (float y : odd) {
                t->setFlags(flags);
                const float p[3] = {x, y, -x};
                (void)(*t)(p);  // must not crash or trip the sanitizers
            }
}

TEST_P(EveryGenerator, DefaultsAreFiniteInUnitRangeOverSpace) {
    TexturePtr t = make();
    std::vector<float> pts = randomPoints(2000, 50.0f, 11);
    for (int i = 0; i < 2000; ++i) {
        const float v = (*t)(&pts[3 * i]);
        ASSERT_TRUE(std::isfinite(v));
        ASSERT_GE(v, 0.0f);
        ASSERT_LE(v, 1.0f);
    }
}

TEST_P(EveryGenerator, TextStreamsCarryTheFieldTableOrNothing) {
    const GeneratorInfo& info = *GetParam();
    // Every field off its default, so a field skipped or out of order shows.
    TexturePtr changed = make();
    std::vector<char> record = description(*changed);
    for (const FieldInfo& f : info.fields) {
        switch (f.type) {
            case FieldType::Int32: writeIntField(record.data(), f, readIntField(record.data(), f) + 3); break;
            case FieldType::Float: writeFloatField(record.data(), f, readFloatField(record.data(), f) * 0.75f + 0.3f); break;
            case FieldType::Bool: writeBoolField(record.data(), f, !readBoolField(record.data(), f)); break;
        }
    }
    changed->setStateFromDescription(record.data());
    std::ostringstream out;
    out.precision(9);  // enough digits for every float to read back exactly
    info.writeText(out, *changed);
    const std::string text = out.str();

    TexturePtr back = make();
    const std::vector<char> defaults = description(*back);
    if (hasEmptyTextStreams(info.name)) {
        EXPECT_EQ(text, "");
        std::istringstream in("1 0 1\n");
        info.readText(in, *back);
        EXPECT_TRUE(in.good());
        EXPECT_EQ(in.tellg(), 0) << "the stream must be left untouched";
        EXPECT_EQ(description(*back), defaults);
        return;
    }
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(std::ranges::count(text, ' '), static_cast<long>(info.fields.size()) - 1) << text;
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
    std::istringstream in(text);
    info.readText(in, *back);
    EXPECT_FALSE(in.fail()) << text;
    EXPECT_EQ(description(*back), record) << text;

    // The last value unreadable: nothing is adopted.
    const std::size_t lastBlank = text.rfind(' ');
    std::istringstream bad(text.substr(0, lastBlank == std::string::npos ? 0 : lastBlank + 1) + "x\n");
    TexturePtr untouched = make();
    info.readText(bad, *untouched);
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

INSTANTIATE_TEST_SUITE_P(Factory, EveryGenerator, testing::ValuesIn(TextureFactory::allGenerators()),
                         [](const testing::TestParamInfo<const GeneratorInfo*>& info) {
                             std::string name(info.param->name);
                             std::erase(name, ' ');
                             return name;
                         });
