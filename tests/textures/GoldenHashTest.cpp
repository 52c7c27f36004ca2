// Every generator's output pinned bit for bit: a 64-bit FNV-1a hash of its
// values over a fixed point set, for its defaults and for records that take
// its costlier paths (RecordVariants), in both the 3-D and the planar flag
// mode. A change that alters any value of any record fails here, so speed
// work can prove it kept the bits. The records are derived from each
// generator's field table, so a new generator is covered by one row of the table.
//
// The hashes are in golden-hashes.txt; rewriting it (only when a value
// change is intended):
//   GRITWELL_WRITE_GOLDEN=1 ./textures_tests --gtest_filter='GoldenHash*'
// writes the file instead of checking it.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "PluginLibrary.h"
#include "RecordVariants.h"
#include "textures/TextureFactory.h"

using namespace gritwell;
namespace fs = std::filesystem;

namespace {

constexpr int kVariants = RecordVariants::kCount;
constexpr std::array kFlagModes{2, 12};
using Hashes = std::array<std::uint64_t, kVariants * kFlagModes.size()>;  // [variant][flag mode]

// The table of golden-hashes.txt: a generator's name, a tab, its hashes.
using GoldenTable = std::map<std::string, Hashes, std::less<>>;

const fs::path kGoldenFile = fs::path(GRITWELL_SOURCE_DIR) / "tests" / "textures" / "golden-hashes.txt";

GoldenTable readGoldenTable() {
    GoldenTable table;
    std::ifstream in(kGoldenFile);
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        const auto tab = line.find('\t');
        std::istringstream hashes(line.substr(tab + 1));
        Hashes& h = table[line.substr(0, tab)];
        for (std::uint64_t& v : h) hashes >> std::hex >> v;
    }
    return table;
}

const GoldenTable& golden() {
    static const GoldenTable table = readGoldenTable();
    return table;
}

std::uint64_t fnv1a(const std::vector<float>& values) {
    std::uint64_t h = 0xcbf29ce484222325ull;  // FNV-1a 64-bit offset basis
    for (float v : values) {
        // Every NaN counts as one value: which sign bit a NaN carries depends
        // on instruction order, and no host reads it.
        const std::uint32_t bits = std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v);
        for (int b = 0; b < 4; ++b) {
            h ^= (bits >> (8 * b)) & 0xffu;
            h *= 0x100000001b3ull;  // FNV-1a 64-bit prime
        }
    }
    return h;
}

// A float in [-extent, extent) from 23 raw bits of a 32-bit draw: the same on
// every compiler, unlike the standard distributions.
float coordinate(std::uint32_t draw, float extent) {
    const float unit = std::bit_cast<float>(0x3f800000u | (draw >> 9)) - 1.0f;  // [0, 1)
    return (unit * 2.0f - 1.0f) * extent;
}

// 4096 random points over several cells, 256 integer lattice points, and
// every pairing of awkward values (signed zeros, halves, huge, subnormal,
// NaN, infinities).
const std::vector<float>& goldenPoints() {
    static const std::vector<float> points = [] {
        std::vector<float> p;
        std::mt19937 rng(20240917u);
        for (int i = 0; i < 3 * 4096; ++i) p.push_back(coordinate(static_cast<std::uint32_t>(rng()), 20.0f));
        for (int i = 0; i < 3 * 256; ++i)
            p.push_back(static_cast<float>(static_cast<int>(rng() % 21u) - 10));
        const float inf = std::numeric_limits<float>::infinity();
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float odd[] = {0.0f,   -0.0f, 1.0f,  -1.0f, 0.5f, -0.5f, 2.5f, -7.0f,
                             1e30f, -1e30f, 3e9f, 1e-40f, nan,  inf,   -inf, 16777216.0f};
        for (int i = 0; i < 16; ++i)
            for (int j = 0; j < 16; ++j) p.insert(p.end(), {odd[i], odd[j], odd[(i + j) % 16]});
        return p;
    }();
    return points;
}

Hashes inProcessHashes(const GeneratorInfo& info) {
    const std::vector<float>& pts = goldenPoints();
    const int n = static_cast<int>(pts.size() / 3);
    Hashes h{};
    for (int v = 0; v < kVariants; ++v) {
        const std::vector<char> record = RecordVariants::record(info, v);
        for (std::size_t m = 0; m < kFlagModes.size(); ++m) {
            TexturePtr t(info.create());
            t->setStateFromDescription(record.data());
            t->setFlags(kFlagModes[m]);
            std::vector<float> out(n);
            for (int i = 0; i < n; ++i) out[i] = (*t)(&pts[3 * i]);
            h[v * kFlagModes.size() + m] = fnv1a(out);
        }
    }
    return h;
}

bool writeMode() {
    const char* env = std::getenv("GRITWELL_WRITE_GOLDEN");
    return env != nullptr && std::string_view(env) == "1";
}

class GoldenHash : public testing::TestWithParam<const GeneratorInfo*> {};

}  // namespace

TEST(GoldenHashTable, WritesOrChecksEveryGenerator) {
    if (writeMode()) {
        std::ifstream in(kGoldenFile);
        std::string text;
        for (std::string line; std::getline(in, line) && line.starts_with('#');) text += line + "\n";
        for (const GeneratorInfo* info : TextureFactory::allGenerators()) {
            text += std::string(info->name) + "\t";
            char hex[24];
            for (const std::uint64_t h : inProcessHashes(*info)) {
                std::snprintf(hex, sizeof hex, "0x%016llx ", static_cast<unsigned long long>(h));
                text += hex;
            }
            text.back() = '\n';
        }
        std::ofstream(kGoldenFile) << text;
        GTEST_SKIP() << "wrote " << kGoldenFile << " instead of checking it";
    }
    EXPECT_EQ(golden().size(), TextureFactory::allGenerators().size())
        << "a generator is missing from " << kGoldenFile << ", or a row names one that is gone";
}

TEST_P(GoldenHash, InProcessValuesAreUnchanged) {
    if (writeMode()) GTEST_SKIP();
    const GeneratorInfo& info = *GetParam();
    const auto row = golden().find(info.name);
    ASSERT_NE(row, golden().end()) << info.name << " has no golden row";
    const Hashes h = inProcessHashes(info);
    for (std::size_t i = 0; i < h.size(); ++i)
        EXPECT_EQ(h[i], row->second[i]) << "variant " << i / kFlagModes.size() << ", flags "
                                        << kFlagModes[i % kFlagModes.size()];
}

// The plug-in's session evaluates through the batch path of the loaded
// library: its values must hash the same as the single-point ones here.
TEST_P(GoldenHash, PluginSessionGivesTheSameValues) {
    const GeneratorInfo& info = *GetParam();
    if (!TextureFactory::isHostGenerator(info)) GTEST_SKIP() << "host sessions never open it";
    static PluginLibrary plugin(GRITWELL_PLUGIN_PATH);
    ASSERT_TRUE(plugin.ok()) << plugin.error();
    const std::vector<float>& pts = goldenPoints();
    const int n = static_cast<int>(pts.size() / 3);
    const Hashes expected = inProcessHashes(info);
    for (int v = 0; v < kVariants; ++v) {
        const std::vector<char> record = RecordVariants::record(info, v);
        const std::vector<unsigned char> bytes(record.begin(), record.begin() + info.recordSize);
        for (std::size_t m = 0; m < kFlagModes.size(); ++m) {
            std::vector<float> out(n);
            {
                PluginSession session(plugin, bytes, kFlagModes[m]);
                session.evaluate(pts.data(), n, out.data());
            }
            EXPECT_EQ(fnv1a(out), expected[v * kFlagModes.size() + m])
                << "variant " << v << ", flags " << kFlagModes[m];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Factory, GoldenHash, testing::ValuesIn(TextureFactory::allGenerators()),
                         [](const testing::TestParamInfo<const GeneratorInfo*>& info) {
                             std::string name(info.param->name);
                             std::erase(name, ' ');
                             return name;
                         });
