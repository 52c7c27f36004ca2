#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "noise/CellNoise.h"

using namespace gritwell;

TEST(CellNoise, ConstantOverACellWithNegativeIntegersOneCellLower) {
    EXPECT_EQ(CellNoise::cellNoise(0.3f), CellNoise::cellNoise(0.9f));
    EXPECT_EQ(CellNoise::cellNoise(-1.0f), CellNoise::cellNoise(-1.5f));
    EXPECT_NE(CellNoise::cellNoise(-1.0f), CellNoise::cellNoise(-0.5f));
    EXPECT_EQ(CellNoise::cellNoise(-1.0f, 2.5f), CellNoise::cellNoise(-1.99f, 2.01f));
    EXPECT_EQ(CellNoise::cellNoise(0.1f, -3.0f, 0.1f), CellNoise::cellNoise(0.9f, -3.5f, 0.9f));
}

TEST(CellNoise, OriginCellHashesToTheAdditiveConstant) {
    // n = 0 hashes to h = 1376312589; the 2-D and 3-D forms scale h as an
    // unsigned float, the 1-D form its low 31 bits in double.
    const float twoD = static_cast<float>(1376312589u) / 4294967296.0f;
    EXPECT_EQ(CellNoise::cellNoise(0.5f, 0.5f), twoD);
    EXPECT_EQ(CellNoise::cellNoise(0.0f, 0.99f, 0.5f), twoD);
    EXPECT_EQ(CellNoise::cellNoise(0.5f), static_cast<float>(1376312589 / 2147483647.0));
}

TEST(CellNoise, WorkedHashOfAnotherCell) {
    // Cell (1, 0): n = 1, n ^= n << 13 gives 8193;
    // h = 8193 * (8193 * 8193 * 15731 + 789221) + 1376312589 mod 2^32.
    const std::uint32_t n = 8193;
    const std::uint32_t h = n * (n * n * 15731u + 789221u) + 1376312589u;
    EXPECT_EQ(CellNoise::cellNoise(1.5f, 0.5f), static_cast<float>(h) / 4294967296.0f);
    EXPECT_EQ(CellNoise::cellNoise(1.5f), static_cast<float>((h & 0x7fffffffu) / 2147483647.0));
    // Cell -36, where dividing by 2^31 instead would round one float lower.
    EXPECT_EQ(CellNoise::cellNoise(-35.5f), 0x1.26b61ap-7f);
}

TEST(CellNoise, NonFiniteCoordinatesGiveAValue) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (float v : {inf, -inf, nan, 1e30f, -1e30f}) {
        EXPECT_GE(CellNoise::cellNoise(v), 0.0f);
        EXPECT_LE(CellNoise::cellNoise(v, v, v), 1.0f);
    }
}

TEST(CellNoise, ThreeDimensionalCellNumberWeighsYAndZ) {
    // 3-D cell (0, 1, 0) is cell number 1301 and (0, 0, 1) is 314159, the
    // same numbers as 2-D cells (1301, 0) and (314159, 0).
    EXPECT_EQ(CellNoise::cellNoise(0.5f, 1.5f, 0.5f), CellNoise::cellNoise(1301.5f, 0.5f));
    EXPECT_EQ(CellNoise::cellNoise(0.5f, 0.5f, 1.5f), CellNoise::cellNoise(314159.5f, 0.5f));
    EXPECT_EQ(CellNoise::cellNoise(0.5f, 1.5f), CellNoise::cellNoise(1301.5f, 0.5f));
}
