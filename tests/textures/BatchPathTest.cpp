// The batch call (the host's continueSession path, compiled for several
// instruction sets) against single-point evaluation, the reference, bit for
// bit, for every generator and record variant over a large random point set.

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RecordVariants.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

// A million points per generator at its defaults in the 3-D mode, the path
// the vector kernels take; every other record and flag mode takes 32,768,
// which keeps the suite to seconds.
constexpr int kPoints = 1 << 20;
constexpr int kOtherPoints = 32768;

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

// Every NaN counts as one value, as in the golden hashes: which sign a NaN
// carries depends on the order the compiler gives an addition's operands,
// which differs between the vector and the single-point code and between
// builds, and no host reads it.
std::uint32_t bits(float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); }

class BatchPath : public testing::TestWithParam<const GeneratorInfo*> {};

}  // namespace

TEST_P(BatchPath, EqualsSinglePointEvaluationBitForBit) {
    const GeneratorInfo& info = *GetParam();
    const std::vector<float> all = mixedPoints(kPoints, 97u);
    for (int v = 0; v < RecordVariants::kCount; ++v) {
        const std::vector<char> record = RecordVariants::record(info, v);
        for (int flags : {2, 12}) {
            const int n = (v == 0 && flags == 2) ? kPoints : kOtherPoints;
            TexturePtr t(info.create());
            t->setStateFromDescription(record.data());
            t->setFlags(flags);
            std::vector<float> batch(n);
            (*t)(all.data(), n, batch.data());
            for (int i = 0; i < n; ++i) {
                const float single = (*t)(&all[3 * static_cast<std::size_t>(i)]);
                ASSERT_EQ(bits(batch[i]), bits(single))
                    << RecordVariants::label(v) << ", flags " << flags << ", point (" << all[3 * i] << ", "
                    << all[3 * i + 1] << ", " << all[3 * i + 2] << ")";
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Factory, BatchPath, testing::ValuesIn(TextureFactory::allGenerators()),
                         [](const testing::TestParamInfo<const GeneratorInfo*>& info) {
                             std::string name(info.param->name);
                             std::erase(name, ' ');
                             return name;
                         });
