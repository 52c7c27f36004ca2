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
    {"Perlin Noise", {0xfa4efd2f30130b1dull, 0x36748efe8fc258e4ull, 0xfa4efd2f30130b1dull, 0x36748efe8fc258e4ull,
        0x8be5948ac51f93d2ull, 0xafb8fd9bd2950c64ull, 0xb28f279131bda2f0ull, 0xbcfc321ea2c69e18ull}},
    {"Simple Marble", {0x00afd68606a3d96bull, 0x8cef350c0b27408dull, 0x00afd68606a3d96bull, 0x8cef350c0b27408dull,
        0x8e7f24253a822930ull, 0x6a0b0c31e280b885ull, 0x4f6ac67d5fc8188dull, 0x1d7619be31d0e0bcull}},
    {"Stripes", {0xbb58bab3830ddb35ull, 0xbb58bab3830ddb35ull, 0x31afdd95719274b0ull, 0x31afdd95719274b0ull,
        0x093442ff6ea89641ull, 0x093442ff6ea89641ull, 0x862ce5aa1f661c93ull, 0x862ce5aa1f661c93ull}},
    {"Spheres", {0x2ddf6614059ac938ull, 0xdaa70aff6f4d78a5ull, 0xf4ca720dbdb85918ull, 0x4b0dfb12c804d025ull,
        0xf4ca720dbdb85918ull, 0x4b0dfb12c804d025ull, 0x379549f2d6a7ab98ull, 0xdbdbd3a676075fc8ull}},
    {"Granite", {0x72409d173e18de9aull, 0xbae403ce7e61bd57ull, 0x72409d173e18de9aull, 0xbae403ce7e61bd57ull,
        0x533a4ed9668e16baull, 0x779de1e54bc79bbfull, 0x8536d2b6daf5c70aull, 0xd12adb884af534aaull}},
    {"Gradient", {0x8163ee9338f9bb91ull, 0x8163ee9338f9bb91ull, 0x8163ee9338f9bb91ull, 0x8163ee9338f9bb91ull,
        0x8163ee9338f9bb91ull, 0x8163ee9338f9bb91ull, 0x8163ee9338f9bb91ull, 0x8163ee9338f9bb91ull}},
    {"Constant", {0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull,
        0x3bf63e3053bef325ull, 0x3bf63e3053bef325ull, 0x8785157880cef325ull, 0x8785157880cef325ull}},
    {"Simplex", {0xba08da4541d70235ull, 0x8691c13a1cb8cb60ull, 0xba08da4541d70235ull, 0x8691c13a1cb8cb60ull,
        0xba08da4541d70235ull, 0x8691c13a1cb8cb60ull, 0xed9aa407f4418ea9ull, 0x40562e1e9ade83f0ull}},
    {"Voronoi", {0xef0e54600ddfefc1ull, 0xab62cfff12b22861ull, 0xef0e54600ddfefc1ull, 0xab62cfff12b22861ull,
        0xaf707dbd0f9c2638ull, 0x9f6bd5b44adae621ull, 0x64fdbfc966e065bdull, 0x4e340a39a30a5a05ull}},
    {"Brick", {0x4adc3a3bf8409ad1ull, 0x8d33a58e75cf2a9dull, 0x982514af12cfa7cbull, 0xd6f0a4d8e23b8a6bull,
        0x51252f4b3dffc8b2ull, 0x6ca1a08e8915021full, 0x1b8dab94d9b487dcull, 0x2c20c4177b9c7766ull}},
    {"Grid", {0x4289086cdfe124c5ull, 0xc8c890dd273139f8ull, 0x06c01ead0bb9f5caull, 0x03426f092d1ecd9full,
        0x06c01ead0bb9f5caull, 0x03426f092d1ecd9full, 0xfac7ce63a3983d4full, 0x5f0765dfa2761f2full}},
    {"Turbulence", {0xa9c5b3fcb013d280ull, 0xc1f2486edb40691bull, 0xa9c5b3fcb013d280ull, 0xc1f2486edb40691bull,
        0x4ef9721a2d8cb8f8ull, 0x2c12bee8507b425eull, 0x4ee130b8fe8d31edull, 0xb19137ccc5bda87aull}},
    {"FBM", {0xfa4efd2f30130b1dull, 0xf8729d7c037a4d64ull, 0xfa4efd2f30130b1dull, 0xf8729d7c037a4d64ull,
        0x8be5948ac51f93d2ull, 0xb3062fb5707d58e4ull, 0x81b4fe72155c71b2ull, 0xfd3d18b76ce72abaull}},
    {"Erosion", {0xc40e8256d71e1c88ull, 0x85dcb548a364cd34ull, 0xc40e8256d71e1c88ull, 0x85dcb548a364cd34ull,
        0xc40e8256d71e1c88ull, 0x85dcb548a364cd34ull, 0x27b68046ec54a7c6ull, 0x611f76d887c19862ull}},
    {"Nested Shapes", {0x2041128f43073768ull, 0x2041128f43073768ull, 0x2041128f43073768ull, 0x2041128f43073768ull,
        0xd09cf0c8be69de55ull, 0xd09cf0c8be69de55ull, 0xb35bbd90e6bdac38ull, 0xb35bbd90e6bdac38ull}},
    {"Dents", {0xe997716ebc433f9full, 0xf3127f47a74b640bull, 0xe997716ebc433f9full, 0xf3127f47a74b640bull,
        0xe997716ebc433f9full, 0xf3127f47a74b640bull, 0xece1c3859d84bd6aull, 0x61dcac1bf27c8be0ull}},
    {"Speckled Stone", {0xfa844de048329662ull, 0xdffd7d8c18fb6b1bull, 0xfa844de048329662ull, 0xdffd7d8c18fb6b1bull,
        0xfc25888ae4330bb0ull, 0x39eea532988f5bd1ull, 0x048564864de5ad22ull, 0x8ab8d7c34dc92324ull}},
    {"HexTile", {0xf68a2de13fbb4992ull, 0xf68a2de13fbb4992ull, 0x39b5ea9f782efac7ull, 0x39b5ea9f782efac7ull,
        0x39b5ea9f782efac7ull, 0x39b5ea9f782efac7ull, 0xebe369cfbefe4cedull, 0xebe369cfbefe4cedull}},
    {"Spiral", {0x2b98173eac23fe85ull, 0x2e37c67ff49f45d5ull, 0x2b98173eac23fe85ull, 0x2e37c67ff49f45d5ull,
        0x2b98173eac23fe85ull, 0x2e37c67ff49f45d5ull, 0x6fb351c0067b8f15ull, 0x65f06c14285eb6a5ull}},
    {"Cheetah", {0x0a211a2bca66bf31ull, 0xacd9dfe865af432dull, 0x0a211a2bca66bf31ull, 0xacd9dfe865af432dull,
        0x0a211a2bca66bf31ull, 0xacd9dfe865af432dull, 0x98a74b71ce1d282dull, 0x924734b3ab4fbbfbull}},
    {"Voronoi Tiles", {0x3589bfea5b1b1935ull, 0x3589bfea5b1b1935ull, 0x7b924dad76a7b74dull, 0x7b924dad76a7b74dull,
        0xa1e28fa57c4e2d8eull, 0xa1e28fa57c4e2d8eull, 0xebe18454a06383f0ull, 0xebe18454a06383f0ull}},
    {"Weave", {0xb21042f418952253ull, 0xb21042f418952253ull, 0x39e3a6d0f878fc64ull, 0x39e3a6d0f878fc64ull,
        0x5beaefb7cbf8103eull, 0x5beaefb7cbf8103eull, 0x7da11bbeb01fa084ull, 0x7da11bbeb01fa084ull}},
    {"Plaid", {0xf7847014633acf22ull, 0xf7847014633acf22ull, 0xf7847014633acf22ull, 0xf7847014633acf22ull,
        0x382153e5819900dfull, 0x382153e5819900dfull, 0x98e7dcddc92a8bb5ull, 0x98e7dcddc92a8bb5ull}},
    {"Psychedelic", {0xeb79b98d751529feull, 0xe7313b052e972b4bull, 0xeb79b98d751529feull, 0xe7313b052e972b4bull,
        0xeb79b98d751529feull, 0xe7313b052e972b4bull, 0x61ecde7c89bb4239ull, 0xa57ae67b9344b152ull}},
    {"Camouflage", {0xb37e6bd5ce8a40a1ull, 0xe718a7f08352d207ull, 0xb37e6bd5ce8a40a1ull, 0xe718a7f08352d207ull,
        0xb37e6bd5ce8a40a1ull, 0xe718a7f08352d207ull, 0x156c19e21857f302ull, 0xef7f404feaceb2f2ull}},
    {"Zigzag", {0xeb3ca22d105611e2ull, 0xeb3ca22d105611e2ull, 0x4105107cf98b10e5ull, 0x4105107cf98b10e5ull,
        0x4105107cf98b10e5ull, 0x4105107cf98b10e5ull, 0x860d1019135e85b0ull, 0x860d1019135e85b0ull}},
    {"Corrugated", {0x64050ebec76d5e34ull, 0x64050ebec76d5e34ull, 0x64050ebec76d5e34ull, 0x64050ebec76d5e34ull,
        0xf9fe23443456c98dull, 0xf9fe23443456c98dull, 0x576f8a4eef92d755ull, 0x576f8a4eef92d755ull}},
    {"Snakeskin", {0x7542968fe755c305ull, 0x7542968fe755c305ull, 0x40c754a575ffda36ull, 0x40c754a575ffda36ull,
        0xfe5b8e7a72fc2476ull, 0xfe5b8e7a72fc2476ull, 0xa587316b74157e8eull, 0xa587316b74157e8eull}},
    {"Scales", {0xaa4d1bbb8432a885ull, 0xaa4d1bbb8432a885ull, 0x326ad86cd25322cdull, 0x326ad86cd25322cdull,
        0x7dc2169a0be993e5ull, 0x7dc2169a0be993e5ull, 0x04776d203895aab1ull, 0x04776d203895aab1ull}},
    {"Houndstooth", {0xf34c695180163ed2ull, 0xf34c695180163ed2ull, 0xde8365ff418bc68aull, 0xde8365ff418bc68aull,
        0x57b3faa1fcce792full, 0x57b3faa1fcce792full, 0x122a6fe5431dcdf5ull, 0x122a6fe5431dcdf5ull}},
    {"Cell Noise", {0x4aa068e56368a637ull, 0x4aa068e56368a637ull, 0x4aa068e56368a637ull, 0x4aa068e56368a637ull,
        0x19e1845b65da7ca2ull, 0x19e1845b65da7ca2ull, 0x67a96b32944827a7ull, 0x67a96b32944827a7ull}},
    {"Penrose Rhombus", {0x4d6a7ba5d33f24d5ull, 0x4d6a7ba5d33f24d5ull, 0x9cf77eccdf5ea89aull, 0x9cf77eccdf5ea89aull,
        0x9cf77eccdf5ea89aull, 0x9cf77eccdf5ea89aull, 0x08f5e4f63a2789b4ull, 0x08f5e4f63a2789b4ull}},
};
// clang-format on

std::uint64_t fnv1a(const std::vector<float>& values) {
    std::uint64_t h = 0xcbf29ce484222325ull;  // FNV-1a 64-bit offset basis
    for (float v : values) {
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(v);
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
