// Every generator's output pinned bit for bit: a 64-bit FNV-1a hash of its
// values over a fixed point set, for its defaults and for records that take
// its costlier paths (RecordVariants), in both the 3-D and the planar flag
// mode. A change that alters any value of any record fails here, so speed
// work can prove it kept the bits. The records are derived from each
// generator's field table, so a new generator is covered by one kGolden row.
//
// Regenerating the table (only when a value change is intended):
//   GRITWELL_PRINT_GOLDEN=1 ./textures_tests --gtest_filter='GoldenHash*'
// prints kGolden's rows instead of checking them.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "PluginLibrary.h"
#include "RecordVariants.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

constexpr int kVariants = RecordVariants::kCount;
constexpr std::array kFlagModes{2, 12};
using Hashes = std::array<std::uint64_t, kVariants * kFlagModes.size()>;  // [variant][flag mode]

struct GoldenRow {
    std::string_view name;
    Hashes hashes;
};

// clang-format off
constexpr GoldenRow kGolden[] = {
    {"Checkerboard", {0x4d8789406c7cb222ull, 0x4d8789406c7cb222ull, 0x06d4f29e2bef437aull, 0x06d4f29e2bef437aull,
        0x09e36e4e8131af22ull, 0x09e36e4e8131af22ull, 0xe40985d3ee6b9bafull, 0xe40985d3ee6b9bafull}},
    {"Wood", {0x9dcfa269840451e2ull, 0x9dcfa269840451e2ull, 0x9dcfa269840451e2ull, 0x9dcfa269840451e2ull,
        0x9d7ee1c58f3b62a3ull, 0x9d7ee1c58f3b62a3ull, 0x5efc7915813ddb48ull, 0x5efc7915813ddb48ull}},
    {"Perlin Noise", {0xea2a08075e74e69dull, 0x167a3a6bad49eee4ull, 0xea2a08075e74e69dull, 0x167a3a6bad49eee4ull,
        0x92237d121993a2d2ull, 0x7db7651c94881464ull, 0x42e18d40856b7af0ull, 0xe6a830bbbc2e5618ull}},
    {"Simple Marble", {0xb46b3e107fd3f4ebull, 0xcdcc325226b7d68dull, 0xb46b3e107fd3f4ebull, 0xcdcc325226b7d68dull,
        0xae1f64bfe121db30ull, 0x6fcbb965032a0f05ull, 0x695a50d4919a4b0dull, 0x1792fcaba32155bcull}},
    {"Stripes", {0xbb58bab3830ddb35ull, 0xbb58bab3830ddb35ull, 0x31afdd95719274b0ull, 0x31afdd95719274b0ull,
        0x093442ff6ea89641ull, 0x093442ff6ea89641ull, 0x862ce5aa1f661c93ull, 0x862ce5aa1f661c93ull}},
    {"Spheres", {0x2ddf6614059ac938ull, 0xdaa70aff6f4d78a5ull, 0xf4ca720dbdb85918ull, 0x4b0dfb12c804d025ull,
        0xf4ca720dbdb85918ull, 0x4b0dfb12c804d025ull, 0x379549f2d6a7ab98ull, 0xdbdbd3a676075fc8ull}},
    {"Granite", {0x72409d173e18de9aull, 0xbae403ce7e61bd57ull, 0x72409d173e18de9aull, 0xbae403ce7e61bd57ull,
        0x533a4ed9668e16baull, 0x779de1e54bc79bbfull, 0x8536d2b6daf5c70aull, 0xd12adb884af534aaull}},
    {"Gradient", {0xb9daeab2aca9b191ull, 0xb9daeab2aca9b191ull, 0xb9daeab2aca9b191ull, 0xb9daeab2aca9b191ull,
        0xb9daeab2aca9b191ull, 0xb9daeab2aca9b191ull, 0xb9daeab2aca9b191ull, 0xb9daeab2aca9b191ull}},
    {"Constant", {0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull,
        0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull, 0x8785157880cef325ull, 0x8785157880cef325ull}},
    {"Simplex", {0x609850dd92c9d7b5ull, 0x8691c13a1cb8cb60ull, 0x609850dd92c9d7b5ull, 0x8691c13a1cb8cb60ull,
        0x609850dd92c9d7b5ull, 0x8691c13a1cb8cb60ull, 0x3540d8f437ea5c29ull, 0x40562e1e9ade83f0ull}},
    {"Voronoi", {0xef0e54600ddfefc1ull, 0xab62cfff12b22861ull, 0xef0e54600ddfefc1ull, 0xab62cfff12b22861ull,
        0xaf707dbd0f9c2638ull, 0x9f6bd5b44adae621ull, 0x64fdbfc966e065bdull, 0x4e340a39a30a5a05ull}},
    {"Brick", {0x4adc3a3bf8409ad1ull, 0x8d33a58e75cf2a9dull, 0x982514af12cfa7cbull, 0xd6f0a4d8e23b8a6bull,
        0x51252f4b3dffc8b2ull, 0x6ca1a08e8915021full, 0x1b8dab94d9b487dcull, 0x2c20c4177b9c7766ull}},
    {"Grid", {0x4289086cdfe124c5ull, 0xc8c890dd273139f8ull, 0x06c01ead0bb9f5caull, 0x03426f092d1ecd9full,
        0x06c01ead0bb9f5caull, 0x03426f092d1ecd9full, 0xfac7ce63a3983d4full, 0x5f0765dfa2761f2full}},
    {"Turbulence", {0xa9c5b3fcb013d280ull, 0xc1f2486edb40691bull, 0xa9c5b3fcb013d280ull, 0xc1f2486edb40691bull,
        0x4ef9721a2d8cb8f8ull, 0x2c12bee8507b425eull, 0x4ee130b8fe8d31edull, 0xb19137ccc5bda87aull}},
    {"FBM", {0xea2a08075e74e69dull, 0x167a3a6bad49eee4ull, 0xea2a08075e74e69dull, 0x167a3a6bad49eee4ull,
        0x92237d121993a2d2ull, 0x7db7651c94881464ull, 0xe27a259d7428efb2ull, 0x0af38fdd0f1c4e3aull}},
    {"Erosion", {0xc40e8256d71e1c88ull, 0x85dcb548a364cd34ull, 0xc40e8256d71e1c88ull, 0x85dcb548a364cd34ull,
        0xc40e8256d71e1c88ull, 0x85dcb548a364cd34ull, 0x27b68046ec54a7c6ull, 0x611f76d887c19862ull}},
    {"Nested Shapes", {0x2041128f43073768ull, 0x2041128f43073768ull, 0x2041128f43073768ull, 0x2041128f43073768ull,
        0xd09cf0c8be69de55ull, 0xd09cf0c8be69de55ull, 0xb35bbd90e6bdac38ull, 0xb35bbd90e6bdac38ull}},
    {"Dents", {0xe997716ebc433f9full, 0xf3127f47a74b640bull, 0xe997716ebc433f9full, 0xf3127f47a74b640bull,
        0xe997716ebc433f9full, 0xf3127f47a74b640bull, 0xece1c3859d84bd6aull, 0x61dcac1bf27c8be0ull}},
    {"Speckled Stone", {0x6cf78c551a49b6e2ull, 0x10c85d75839a231bull, 0x6cf78c551a49b6e2ull, 0x10c85d75839a231bull,
        0x835ac83fe6a8f2b0ull, 0x3324fc7740146ad1ull, 0x51d3a2dc03ff75a2ull, 0xf9c372290c113d24ull}},
    {"HexTile", {0xf68a2de13fbb4992ull, 0xf68a2de13fbb4992ull, 0x39b5ea9f782efac7ull, 0x39b5ea9f782efac7ull,
        0x39b5ea9f782efac7ull, 0x39b5ea9f782efac7ull, 0xebe369cfbefe4cedull, 0xebe369cfbefe4cedull}},
    {"Spiral", {0x2b98173eac23fe85ull, 0x2e37c67ff49f45d5ull, 0x2b98173eac23fe85ull, 0x2e37c67ff49f45d5ull,
        0x2b98173eac23fe85ull, 0x2e37c67ff49f45d5ull, 0x6fb351c0067b8f15ull, 0x65f06c14285eb6a5ull}},
    {"Cheetah", {0x69aae4c60e19d1c5ull, 0xacd9dfe865af432dull, 0x69aae4c60e19d1c5ull, 0xacd9dfe865af432dull,
        0x69aae4c60e19d1c5ull, 0xacd9dfe865af432dull, 0xf63a4bb921411683ull, 0x924734b3ab4fbbfbull}},
    {"Voronoi Tiles", {0x7abddb0da2f9abf5ull, 0x7abddb0da2f9abf5ull, 0x8a028144c96c6352ull, 0x8a028144c96c6352ull,
        0xb6b7d21b90c1dc6full, 0xb6b7d21b90c1dc6full, 0xbac8587fdc7e0bbeull, 0xbac8587fdc7e0bbeull}},
    {"Weave", {0xb21042f418952253ull, 0xb21042f418952253ull, 0x39e3a6d0f878fc64ull, 0x39e3a6d0f878fc64ull,
        0xd62b7e0595d6f83eull, 0xd62b7e0595d6f83eull, 0x642c881f6fed4384ull, 0x642c881f6fed4384ull}},
    {"Plaid", {0xf7847014633acf22ull, 0xf7847014633acf22ull, 0xf7847014633acf22ull, 0xf7847014633acf22ull,
        0x382153e5819900dfull, 0x382153e5819900dfull, 0x98e7dcddc92a8bb5ull, 0x98e7dcddc92a8bb5ull}},
    {"Psychedelic", {0xeb79b98d751529feull, 0xe7313b052e972b4bull, 0xeb79b98d751529feull, 0xe7313b052e972b4bull,
        0xeb79b98d751529feull, 0xe7313b052e972b4bull, 0x61ecde7c89bb4239ull, 0xa57ae67b9344b152ull}},
    {"Camouflage", {0xb37e6bd5ce8a40a1ull, 0xe718a7f08352d207ull, 0xb37e6bd5ce8a40a1ull, 0xe718a7f08352d207ull,
        0xb37e6bd5ce8a40a1ull, 0xe718a7f08352d207ull, 0x156c19e21857f302ull, 0xef7f404feaceb2f2ull}},
    {"Zigzag", {0xeb3ca22d105611e2ull, 0xeb3ca22d105611e2ull, 0x4105107cf98b10e5ull, 0x4105107cf98b10e5ull,
        0x4105107cf98b10e5ull, 0x4105107cf98b10e5ull, 0x860d1019135e85b0ull, 0x860d1019135e85b0ull}},
    {"Corrugated", {0xbc413646e14a5e34ull, 0xbc413646e14a5e34ull, 0xbc413646e14a5e34ull, 0xbc413646e14a5e34ull,
        0x15ef1f28ca84c98dull, 0x15ef1f28ca84c98dull, 0x2958478be094d755ull, 0x2958478be094d755ull}},
    {"Snakeskin", {0x7542968fe755c305ull, 0x7542968fe755c305ull, 0xe16141da1aa4b4b6ull, 0xe16141da1aa4b4b6ull,
        0xd59c8a3aa2894976ull, 0xd59c8a3aa2894976ull, 0x0fc737758b18118eull, 0x0fc737758b18118eull}},
    {"Scales", {0xaa4d1bbb8432a885ull, 0xaa4d1bbb8432a885ull, 0x7b4c15d19aaf324dull, 0x7b4c15d19aaf324dull,
        0xce171a74b7b28b65ull, 0xce171a74b7b28b65ull, 0x7afe8090554eccb1ull, 0x7afe8090554eccb1ull}},
    {"Houndstooth", {0xf34c695180163ed2ull, 0xf34c695180163ed2ull, 0xde8365ff418bc68aull, 0xde8365ff418bc68aull,
        0x4382fee838c22607ull, 0x4382fee838c22607ull, 0x3516605933de0182ull, 0x3516605933de0182ull}},
    {"Cell Noise", {0x4aa068e56368a637ull, 0x4aa068e56368a637ull, 0x4aa068e56368a637ull, 0x4aa068e56368a637ull,
        0x19e1845b65da7ca2ull, 0x19e1845b65da7ca2ull, 0x67a96b32944827a7ull, 0x67a96b32944827a7ull}},
    {"Penrose Rhombus", {0x36d3bd810a4cbba2ull, 0x36d3bd810a4cbba2ull, 0x82aea7b645ff8374ull, 0x82aea7b645ff8374ull,
        0x82aea7b645ff8374ull, 0x82aea7b645ff8374ull, 0x9af65abfb84c50ecull, 0x9af65abfb84c50ecull}},
};
// clang-format on

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

const GoldenRow* goldenRow(std::string_view name) {
    for (const GoldenRow& row : kGolden)
        if (row.name == name) return &row;
    return nullptr;
}

bool printMode() {
    const char* env = std::getenv("GRITWELL_PRINT_GOLDEN");
    return env != nullptr && std::string_view(env) == "1";
}

class GoldenHash : public testing::TestWithParam<const GeneratorInfo*> {};

}  // namespace

TEST(GoldenHashTable, PrintsOrChecksEveryGenerator) {
    if (printMode()) {
        for (const GeneratorInfo* info : TextureFactory::allGenerators()) {
            const Hashes h = inProcessHashes(*info);
            std::printf("    {\"%.*s\", {", static_cast<int>(info->name.size()), info->name.data());
            for (std::size_t i = 0; i < h.size(); ++i)
                std::printf("%s0x%016llxull", i == 0 ? "" : (i % 4 == 0 ? ",\n        " : ", "),
                            static_cast<unsigned long long>(h[i]));
            std::printf("}},\n");
        }
        GTEST_SKIP() << "printed the golden table instead of checking it";
    }
    EXPECT_EQ(std::size(kGolden), TextureFactory::allGenerators().size())
        << "a generator is missing from kGolden, or a row names one that is gone";
}

TEST_P(GoldenHash, InProcessValuesAreUnchanged) {
    if (printMode()) GTEST_SKIP();
    const GeneratorInfo& info = *GetParam();
    const GoldenRow* row = goldenRow(info.name);
    ASSERT_NE(row, nullptr) << info.name << " has no golden row";
    const Hashes h = inProcessHashes(info);
    for (std::size_t i = 0; i < h.size(); ++i)
        EXPECT_EQ(h[i], row->hashes[i]) << "variant " << i / kFlagModes.size() << ", flags "
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
