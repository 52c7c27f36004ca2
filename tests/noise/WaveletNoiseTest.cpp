#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "noise/WaveletNoise.h"

using namespace gritwell;

namespace {
constexpr float kTile = static_cast<float>(WaveletNoise::kTileSize);
}  // namespace

TEST(WaveletNoise, PinnedValues) {
    // The tile comes from integer arithmetic only; these hold on every platform.
    EXPECT_EQ(WaveletNoise::noise(0.0f, 0.0f, 0.0f), 0.131858766f);
    EXPECT_EQ(WaveletNoise::noise(0.25f, 0.5f, 0.75f), -0.177683502f);
    EXPECT_EQ(WaveletNoise::noise(-3.5f, 10.125f, 63.9f), 0.0669947118f);
    EXPECT_EQ(WaveletNoise::noise(1.0f, 2.0f, 3.0f), 0.651650786f);
    EXPECT_EQ(WaveletNoise::noise(17.3f, -0.2f, 5.5f), -0.0574147031f);
}

TEST(WaveletNoise, RepeatsWithTheTile) {
    for (float v : {0.125f, 3.5f, 31.75f, 63.0625f}) {
        const float base = WaveletNoise::noise(v, 2.25f, 7.5f);
        EXPECT_EQ(WaveletNoise::noise(v + kTile, 2.25f, 7.5f), base) << v;
        EXPECT_EQ(WaveletNoise::noise(v - kTile, 2.25f + kTile, 7.5f - 2 * kTile), base) << v;
    }
}

TEST(WaveletNoise, ZeroMeanAndBandLimited) {
    // Sampling every cell centre of the tile weighs every coefficient equally,
    // so the mean is the coefficients' mean: zero once the coarse band is gone.
    const int n = WaveletNoise::kTileSize;
    double sum = 0.0, sumSquares = 0.0;
    for (int z = 0; z < n; ++z)
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                const double v = WaveletNoise::noise(x + 0.5f, y + 0.5f, z + 0.5f);
                sum += v;
                sumSquares += v * v;
            }
    const double count = double(n) * n * n;
    const double variance = sumSquares / count;
    EXPECT_NEAR(sum / count, 0.0, 1e-5);
    EXPECT_GT(variance, 0.05);
    EXPECT_LT(variance, 0.5);

    // Without low frequencies, means over 4x4x4 blocks vary less than means of
    // 64 independent samples would (variance / 64).
    double blockSquares = 0.0;
    int blocks = 0;
    for (int bz = 0; bz < n; bz += 4)
        for (int by = 0; by < n; by += 4)
            for (int bx = 0; bx < n; bx += 4) {
                double mean = 0.0;
                for (int k = 0; k < 64; ++k)
                    mean += WaveletNoise::noise(bx + k % 4 + 0.5f, by + k / 4 % 4 + 0.5f, bz + k / 16 + 0.5f);
                mean /= 64;
                blockSquares += mean * mean;
                ++blocks;
            }
    EXPECT_LT(blockSquares / blocks, variance / 64);
}

TEST(WaveletNoise, SpreadMatchesTheDocumentedRange) {
    std::mt19937 rng(2005);
    std::uniform_real_distribution<float> coord(-100.0f, 100.0f);
    double sumSquares = 0.0;
    const int count = 100000;
    for (int i = 0; i < count; ++i) {
        const float v = WaveletNoise::noise(coord(rng), coord(rng), coord(rng));
        ASSERT_LT(std::fabs(v), 3.0f);
        sumSquares += double(v) * v;
    }
    EXPECT_NEAR(std::sqrt(sumSquares / count), 0.45, 0.03);
}

TEST(WaveletNoise, NonFiniteAndHugeCoordinatesGiveAValue) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float atZero = WaveletNoise::noise(0.0f, 2.25f, 7.5f);
    for (float v : {nan, inf, -inf}) EXPECT_EQ(WaveletNoise::noise(v, 2.25f, 7.5f), atZero) << v;
    // 2^30 and -3 * 2^40 are whole multiples of the tile.
    EXPECT_EQ(WaveletNoise::noise(1073741824.0f, 2.25f, 7.5f), atZero);
    EXPECT_EQ(WaveletNoise::noise(-3298534883328.0f, 2.25f, 7.5f), atZero);
    EXPECT_TRUE(std::isfinite(WaveletNoise::noise(1e38f, -1e38f, 3e9f)));
}
