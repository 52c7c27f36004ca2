// libgritwell through its public header only (linked as the shared library),
// held to the plug-in as the host drives it.

#include <gritwell/gritwell.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "PluginLibrary.h"

using gritwell::Errc;
using gritwell::Status;
using gritwell::Texture;
using gritwell::Value;
using gritwell::ValueType;

namespace {

gritwell::PluginLibrary& plugin() {
    static gritwell::PluginLibrary library(GRITWELL_PLUGIN_PATH);
    return library;
}

std::vector<float> randomPoints(std::mt19937& rng, int n) {
    std::uniform_real_distribution<float> coordinate(-10.0f, 10.0f);
    std::vector<float> points(3 * static_cast<std::size_t>(n));
    for (float& c : points) c = coordinate(rng);
    return points;
}

// Every field at a random value of its type: enumerations and counts past
// their ranges included, as records from damaged files hold them.
void randomise(Texture& t, std::mt19937& rng) {
    std::uniform_real_distribution<float> real(-2.0f, 8.0f);
    std::uniform_int_distribution<std::int32_t> whole(-1, 9);
    for (const gritwell::FieldDesc& f : t.generator().fields) {
        Value v;
        switch (f.type) {
            case ValueType::Int32: v = whole(rng); break;
            case ValueType::Float: v = real(rng); break;
            case ValueType::Bool: v = (rng() & 1) != 0; break;
        }
        ASSERT_TRUE(t.set(f.name, v).ok()) << t.name() << "." << f.name;
    }
}

std::vector<float> pluginValues(const std::vector<unsigned char>& record, int flags, const std::vector<float>& points) {
    gritwell::PluginSession session(plugin(), record, flags);
    std::vector<float> out(points.size() / 3);
    session.evaluate(points.data(), static_cast<int>(out.size()), out.data());
    return out;
}

void expectSameBits(const std::vector<float>& expected, const std::vector<float>& actual, const std::string& what) {
    ASSERT_EQ(expected.size(), actual.size()) << what;
    EXPECT_EQ(0, std::memcmp(expected.data(), actual.data(), expected.size() * sizeof(float))) << what;
}

class EveryGenerator : public testing::TestWithParam<gritwell::GeneratorDesc> {};

// Random records and points, in space and in the plane: the library's
// interleaved and split calls give the plug-in's bits, and the record it
// reads back opens the same texture again.
TEST_P(EveryGenerator, GivesThePluginsBitsOnRandomRecords) {
    ASSERT_TRUE(plugin().ok()) << plugin().error();
    const std::string name = GetParam().name;
    std::mt19937 rng(std::hash<std::string>{}(name) & 0xffff);
    for (int flags : {2, 4}) {
        Status status;
        Texture t = Texture::fromName(name, &status);
        ASSERT_TRUE(status.ok()) << status.message;
        randomise(t, rng);
        t.setFlags(flags);
        const std::vector<float> points = randomPoints(rng, 700);
        const std::size_t n = points.size() / 3;
        const std::vector<float> expected = pluginValues(t.record(), flags, points);

        std::vector<float> interleaved(n), split(n);
        ASSERT_TRUE(t.evaluate(points.data(), n, interleaved.data()).ok());
        std::vector<float> x(n), y(n), z(n);
        for (std::size_t i = 0; i < n; ++i) x[i] = points[3 * i], y[i] = points[3 * i + 1], z[i] = points[3 * i + 2];
        ASSERT_TRUE(t.evaluate(x.data(), y.data(), z.data(), n, split.data()).ok());
        expectSameBits(expected, interleaved, name + " interleaved, flags " + std::to_string(flags));
        expectSameBits(expected, split, name + " split, flags " + std::to_string(flags));

        const std::vector<unsigned char> record = t.record();
        Texture again = Texture::fromRecord(record.data(), record.size(), &status);
        ASSERT_TRUE(status.ok()) << status.message;
        EXPECT_EQ(record, again.record()) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Library, EveryGenerator, testing::ValuesIn(gritwell::generators()),
                         [](const auto& info) {
                             std::string name = info.param.name;
                             std::erase_if(name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
                             return name;
                         });

// A record of a version the generator neither has nor converts leaves the
// defaults, as in the host's session; the plug-in agrees point for point.
TEST(Library, RecordOfAnUnknownVersionKeepsTheDefaults) {
    Texture brick = Texture::fromName("Brick");
    ASSERT_TRUE(brick.set("brickWidth", 0.25f).ok());
    std::vector<unsigned char> record = brick.record();
    record[33] = 99;
    Status status;
    Texture opened = Texture::fromRecord(record.data(), record.size(), &status);
    ASSERT_TRUE(status.ok()) << status.message;
    EXPECT_EQ(Texture::fromName("Brick").record(), opened.record());
    std::mt19937 rng(7);
    const std::vector<float> points = randomPoints(rng, 64);
    std::vector<float> values(64);
    ASSERT_TRUE(opened.evaluate(points.data(), 64, values.data()).ok());
    expectSameBits(pluginValues(record, 2, points), values, "version 99");
}

TEST(Library, BadInputIsAnErrorValueThatSaysWhy) {
    Texture brick = Texture::fromName("Brick");
    std::vector<unsigned char> record = brick.record();
    std::vector<unsigned char> longer = record;
    longer.push_back(0);
    longer[0] = static_cast<unsigned char>(longer.size());
    std::vector<unsigned char> misnamed = record;
    misnamed[1] = 'X';
    const Texture empty;
    float out[1];
    const float point[3] = {};
    struct Row {
        const char* what;
        Status status;
        Errc code;
        const char* says;
    } rows[] = {
        {"unknown name", [] { Status s; Texture::fromName("Brik", &s); return s; }(), Errc::unknownGenerator, "Brik"},
        {"unknown field", brick.set("width", 1.0f), Errc::unknownField, "brickWidth"},
        {"float field given an int", brick.set("brickWidth", 1), Errc::wrongType, "float, not int32"},
        {"bool field given a float", brick.set("randomizeColors", 1.0f), Errc::wrongType, "bool, not float"},
        {"record cut short", [&] { Status s; Texture::fromRecord(record.data(), 20, &s); return s; }(),
         Errc::badRecord, "36-byte header"},
        {"byte 0 disagrees", [&] { Status s; Texture::fromRecord(record.data(), record.size() - 4, &s); return s; }(),
         Errc::badRecord, "byte 0"},
        {"current version, wrong size", [&] { Status s; Texture::fromRecord(longer.data(), longer.size(), &s); return s; }(),
         Errc::badRecord, "bytes, not"},
        {"record naming nothing", [&] { Status s; Texture::fromRecord(misnamed.data(), misnamed.size(), &s); return s; }(),
         Errc::unknownGenerator, "Xrick"},
        {"null points", brick.evaluate(nullptr, 1, out), Errc::badArgument, "null"},
        {"empty texture", empty.evaluate(point, 1, out), Errc::badArgument, "empty"},
        {"slice of no pixels", brick.renderSlice(0, 0.3f, 4.0f, out), Errc::badArgument, "not 0"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.code, row.status.code) << row.what << ": " << row.status.message;
        EXPECT_NE(std::string::npos, row.status.message.find(row.says)) << row.what << ": " << row.status.message;
    }
}

// Distinct textures on different threads at once give what one thread gives.
TEST(Library, DistinctTexturesEvaluateOnManyThreads) {
    const char* names[] = {"Voronoi", "FBM", "Brick", "Wood", "Snakeskin", "Granite"};
    std::mt19937 rng(11);
    const std::vector<float> points = randomPoints(rng, 4000);
    const std::size_t n = points.size() / 3;
    std::vector<std::vector<float>> alone, together(std::size(names), std::vector<float>(n));
    for (const char* name : names) {
        alone.emplace_back(n);
        ASSERT_TRUE(Texture::fromName(name).evaluate(points.data(), n, alone.back().data()).ok());
    }
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < std::size(names); ++i)
        threads.emplace_back([&, i] {
            const Texture t = Texture::fromName(names[i]);
            for (int round = 0; round < 5; ++round) (void)t.evaluate(points.data(), n, together[i].data());
        });
    for (std::thread& thread : threads) thread.join();
    for (std::size_t i = 0; i < std::size(names); ++i) expectSameBits(alone[i], together[i], names[i]);
}

// The shared library exports the public header's names and nothing else:
// no internal class, no standard-library instantiation.
TEST(Library, ExportsOnlyThePublicInterface) {
    const std::string command = std::string("nm -D --defined-only -C '") + GRITWELL_LIBRARY_PATH + "'";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(nullptr, pipe) << command;
    std::vector<std::string> names;
    char line[1024];
    while (std::fgets(line, sizeof line, pipe) != nullptr) {
        const std::string text(line);
        const auto name = text.find(' ', text.find(' ') + 1);
        if (name != std::string::npos) names.push_back(text.substr(name + 1, text.size() - name - 2));
    }
    ASSERT_EQ(0, pclose(pipe)) << command;
    const std::string publicNames[] = {"gritwell::Texture::", "gritwell::generators()", "gritwell::valueTypeName("};
    int evaluates = 0;
    for (const std::string& name : names) {
        const bool isPublic = std::any_of(std::begin(publicNames), std::end(publicNames),
                                          [&](const std::string& p) { return name.rfind(p, 0) == 0; });
        EXPECT_TRUE(isPublic) << name;
        evaluates += name.rfind("gritwell::Texture::evaluate(", 0) == 0;
    }
    EXPECT_EQ(2, evaluates);
}

}  // namespace
