#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/SimdLevel.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"
#include "noise/PerlinPoint.h"

using namespace gritwell;

namespace {

// A million points: ordinary ones, then exact integers (negative ones
// included, where the cell index steps down), halves, points far beyond the
// int range and every bit pattern at random (NaN, infinities, denormals).
struct Cloud {
    std::vector<float> x, y, z;
};

const Cloud& cloud() {
    static const Cloud c = [] {
        constexpr int kPoints = 1 << 20;
        Cloud out;
        std::mt19937 rng(2024);
        auto next = [&rng](int kind) -> float {
            const std::uint32_t r = rng();
            switch (kind) {
            case 0: return static_cast<float>(static_cast<std::int32_t>(r % 2000001u) - 1000000) / 1000.0f;
            case 1: return static_cast<float>(static_cast<std::int32_t>(r % 601u) - 300);
            case 2: return static_cast<float>(static_cast<std::int32_t>(r % 601u) - 300) + 0.5f;
            case 3: return std::bit_cast<float>((r & 0x80000000u) | 0x4f000000u | (r & 0x00ffffffu));
            default: return std::bit_cast<float>(r);
            }
        };
        for (int i = 0; i < kPoints; ++i) {
            const int kind = static_cast<int>(rng() % 8) < 4 ? 0 : static_cast<int>(rng() % 5);
            out.x.push_back(next(kind));
            out.y.push_back(next(kind == 0 ? 0 : static_cast<int>(rng() % 5)));
            out.z.push_back(next(kind));
        }
        return out;
    }();
    return c;
}

// Every NaN counts as one value: which of two NaNs an addition keeps depends
// on the operand order the compiler picks, in either path.
std::uint32_t bits(float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); }

}  // namespace

class PerlinBatchLevel : public ::testing::TestWithParam<SimdLevel> {};

// The one-point and the batch kernels of a level against the definitions:
// PerlinPoint::reference in space, the scalar Perlin::noise in the plane.
TEST_P(PerlinBatchLevel, EveryKernelHasTheBitsOfTheDefinitionInSpaceAndThePlane) {
    if (supportedSimdLevel(GetParam()) != GetParam()) GTEST_SKIP() << "this processor lacks the instruction set";
    const Cloud& c = cloud();
    const int n = static_cast<int>(c.x.size());
    std::vector<float> out(c.x.size()), plane(c.x.size());
    PerlinBatch::noise(GetParam(), c.x.data(), c.y.data(), c.z.data(), n, out.data());
    PerlinBatch::noise(GetParam(), c.x.data(), c.y.data(), n, plane.data());
    int wrong = 0;
    for (int i = 0; i < n && wrong < 5; ++i) {
        const float expected = PerlinPoint::reference(c.x[i], c.y[i], c.z[i]);
        const float point = PerlinPoint::noise(GetParam(), c.x[i], c.y[i], c.z[i]);
        const float expectedPlane = Perlin::noise(c.x[i], c.y[i]);
        if (bits(out[i]) != bits(expected) || bits(point) != bits(expected) ||
            bits(plane[i]) != bits(expectedPlane)) {
            ++wrong;
            ADD_FAILURE() << "point (" << c.x[i] << ", " << c.y[i] << ", " << c.z[i] << "): " << point
                          << " one point, " << out[i] << " batch, " << plane[i] << " in the plane, instead of "
                          << expected << ", " << expectedPlane;
        }
    }
}

TEST_P(PerlinBatchLevel, ShortAndOddLengthsFinishTheTailAndWriteNoFurther) {
    const Cloud& c = cloud();
    for (int n : {0, 1, 7, 8, 9, 15, 16, 17, 33}) {
        std::vector<float> out(40, -7.0f);
        PerlinBatch::noise(GetParam(), c.x.data() + 3, c.y.data() + 3, c.z.data() + 3, n, out.data());
        std::vector<float> plane(40, -7.0f);
        PerlinBatch::noise(GetParam(), c.x.data() + 3, c.y.data() + 3, n, plane.data());
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(bits(out[i]), bits(Perlin::noise(c.x[3 + i], c.y[3 + i], c.z[3 + i]))) << n << ' ' << i;
            EXPECT_EQ(bits(plane[i]), bits(Perlin::noise(c.x[3 + i], c.y[3 + i]))) << n << ' ' << i;
        }
        for (int i = n; i < 40; ++i) {
            EXPECT_EQ(out[i], -7.0f) << n << ' ' << i;
            EXPECT_EQ(plane[i], -7.0f) << n << ' ' << i;
        }
    }
}

TEST_P(PerlinBatchLevel, OutputMayOverwriteAnInput) {
    std::vector<float> x(cloud().x.begin(), cloud().x.begin() + 100);
    std::vector<float> expected;
    for (int i = 0; i < 100; ++i) expected.push_back(Perlin::noise(x[i], cloud().y[i], cloud().z[i]));
    PerlinBatch::noise(GetParam(), x.data(), cloud().y.data(), cloud().z.data(), 100, x.data());
    for (int i = 0; i < 100; ++i) EXPECT_EQ(bits(x[i]), bits(expected[i])) << i;
}

INSTANTIATE_TEST_SUITE_P(Levels, PerlinBatchLevel,
                         ::testing::Values(SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512),
                         [](const auto& info) { return std::string(simdLevelName(info.param)); });

TEST(PerlinBatchGet, OctaveSumsMatchPointByPointWhereverEachPointStopsInSpaceAndThePlane) {
    const Cloud& c = cloud();
    constexpr int kPoints = 5000;
    struct Case {
        int octaves;
        float freq, amp;
    };
    // Ordinary sums; one far past the point where every lane settles (a
    // damaged count); a zero and a negative count; amplitudes that vanish or
    // stay put at once.
    for (const Case k : {Case{4, 0.37f, 1.0f}, Case{1, 1.0f, 0.5f}, Case{100000, 3.0f, 1.0f}, Case{0, 1.0f, 1.0f},
                         Case{-3, 1.0f, 1.0f}, Case{6, 1e-30f, 0.0f}, Case{5, 2.0f, std::numeric_limits<float>::infinity()}}) {
        std::vector<float> x(c.x.begin(), c.x.begin() + kPoints), y(c.y.begin(), c.y.begin() + kPoints),
            z(c.z.begin(), c.z.begin() + kPoints), out(kPoints);
        PerlinBatch::Get(x.data(), y.data(), z.data(), kPoints, k.octaves, k.freq, k.amp, out.data());
        std::vector<float> px(c.x.begin(), c.x.begin() + kPoints), py(c.y.begin(), c.y.begin() + kPoints),
            plane(kPoints);
        PerlinBatch::Get(px.data(), py.data(), kPoints, k.octaves, k.freq, k.amp, plane.data());
        int wrong = 0;
        for (int i = 0; i < kPoints && wrong < 3; ++i) {
            const float expected = Perlin::Get(c.x[i], c.y[i], c.z[i], k.octaves, k.freq, k.amp);
            const float expectedPlane = Perlin::Get(c.x[i], c.y[i], k.octaves, k.freq, k.amp);
            if (bits(out[i]) != bits(expected) || bits(plane[i]) != bits(expectedPlane)) {
                ++wrong;
                ADD_FAILURE() << k.octaves << " octaves, point " << i << ": " << out[i] << ", " << plane[i]
                              << " in the plane, instead of " << expected << ", " << expectedPlane;
            }
        }
    }
}

TEST(SimdLevel, NamesAndTheChosenLevel) {
    for (SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx2, SimdLevel::kAvx512})
        EXPECT_EQ(simdLevelFromName(simdLevelName(level)), level) << simdLevelName(level);
    EXPECT_EQ(simdLevelFromName("AVX2"), std::nullopt);
    EXPECT_EQ(simdLevelFromName(""), std::nullopt);
    EXPECT_EQ(supportedSimdLevel(SimdLevel::kScalar), SimdLevel::kScalar);

    // A choice holds from the next call on, lowered to what the processor runs.
    const SimdLevel before = simdLevel();
    EXPECT_LE(before, supportedSimdLevel(SimdLevel::kAvx512));
    for (SimdLevel level : {SimdLevel::kScalar, SimdLevel::kAvx512, SimdLevel::kAvx2}) {
        setSimdLevel(level);
        EXPECT_EQ(simdLevel(), supportedSimdLevel(level)) << simdLevelName(level);
    }
    setSimdLevel(before);
}
