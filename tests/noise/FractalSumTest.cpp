#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "noise/FBM.h"
#include "noise/FractalSum.h"
#include "noise/ImprovedPerlin.h"
#include "noise/Perlin.h"
#include "noise/Turbulence.h"

using namespace gritwell;

TEST(FractalSum, OctaveCountRoundsUpAndNonPositiveIsZero) {
    const float p[3] = {0.3f, 1.7f, -2.2f};
    for (float octaves : {0.0f, -1.0f, -1e30f}) {
        EXPECT_EQ(FBM::fBM(p, octaves, 2.0f, 0.5f), 0.0f);
        EXPECT_EQ(Turbulence::turbulence(p, octaves, 2.0f, 0.5f), 0.0f);
        EXPECT_EQ(vFBM(p, octaves, 2.0f, 0.5f), 0.0f);
    }
    EXPECT_EQ(FBM::fBM(p, 0.1f, 2.0f, 0.5f), Perlin::noise(p[0], p[1], p[2]));
    EXPECT_EQ(FBM::fBM(p[0], p[1], 1.0f, 2.0f, 0.5f), Perlin::noise(p[0], p[1]));
    EXPECT_EQ(FBM::fBM(p[0], 1.0f, 2.0f, 0.5f), Perlin::noise(p[0]));
    // 2.5 octaves are three full octaves.
    EXPECT_EQ(FBM::fBM(p, 2.5f, 2.0f, 0.5f), FBM::fBM(p, 3.0f, 2.0f, 0.5f));
    EXPECT_NE(FBM::fBM(p, 2.0f, 2.0f, 0.5f), FBM::fBM(p, 3.0f, 2.0f, 0.5f));
}

TEST(FractalSum, WorkedTwoOctaveSums) {
    const float x = 0.3f, y = 1.7f, z = -2.2f;
    const float n0 = Perlin::noise(x, y, z);
    const float n1 = Perlin::noise(x * 3.0f, y * 3.0f, z * 3.0f);
    EXPECT_EQ(FBM::fBM(Vec3(x, y, z), 2.0f, 3.0f, 0.25f), n0 * 1.0f + n1 * 0.25f);

    const float t = static_cast<float>(static_cast<double>(std::fabs(n0)) * 1.0);
    EXPECT_EQ(Turbulence::turbulence(Vec3(x, y, z), 2.0f, 3.0f, 0.25f),
              static_cast<float>(t + static_cast<double>(std::fabs(n1)) * 0.25f));

    const ImprovedPerlin improved;
    const float v0 = static_cast<float>(improved.noise3(x, y, z));
    const float v1 = static_cast<float>(improved.noise3(x * 3.0f, y * 3.0f, z * 3.0f));
    EXPECT_EQ(vFBM(Vec3(x, y, z), 2.0f, 3.0f, 0.25f), v0 + v1 * 0.25f);
    EXPECT_EQ(vFBM(x, 1.0f, 3.0f, 0.25f), static_cast<float>(improved.noise1(x)));
}

TEST(FractalSum, TurbulenceIsNeverNegativeAndTheCallersPointIsKept) {
    float p[3] = {-3.1f, 0.4f, 5.5f};
    for (int i = 0; i < 200; ++i) {
        p[0] += 0.173f;
        p[1] -= 0.091f;
        EXPECT_GE(Turbulence::turbulence(p, 5.0f, 2.0f, 0.5f), 0.0f);
        EXPECT_GE(Turbulence::turbulence(p[0], p[1], 5.0f, 2.0f, 0.5f), 0.0f);
    }
    const float before[3] = {p[0], p[1], p[2]};
    (void)FBM::fBM(p, 4.0f, 2.0f, 0.5f);
    EXPECT_EQ(p[0], before[0]);
    EXPECT_EQ(p[2], before[2]);
}

TEST(FractalSum, HugeOctaveCountsEndWithTheBitsOfTheFullLoop) {
    // Past a few hundred octaves the weight is zero and the position fixed;
    // 2^31 octaves must end there, with the value of any longer sum.
    const float p[3] = {0.37f, -1.25f, 2.5f};
    const float inf = std::numeric_limits<float>::infinity();
    const float at400 = FBM::fBM(p, 400.0f, 2.0f, 0.5f);
    const float atMax = FBM::fBM(p, 2147483648.0f, 2.0f, 0.5f);
    EXPECT_EQ(std::isnan(atMax), std::isnan(at400));
    if (!std::isnan(at400)) {
        EXPECT_EQ(atMax, at400);
    }
    (void)FBM::fBM(p, inf, 0.5f, 0.5f);  // shrinking positions reach zero and stop
    (void)Turbulence::turbulence(p, inf, 1.0f, 0.0f);
    (void)vFBM(p, 1e9f, 2.0f, 0.5f);
}

TEST(FractalSum, SumsThatNeverSettleStopAtTheOctaveLimit) {
    // A lacunarity of -1 flips the position forever and a gain of 1 never
    // lets the weight fade: such a damaged record sums kMaxOctaves octaves,
    // exactly what asking for that many gives.
    const float p[3] = {0.37f, -1.25f, 2.5f};
    const float limit = static_cast<float>(kMaxOctaves);
    EXPECT_EQ(FBM::fBM(p, 2147483648.0f, -1.0f, 1.0f), FBM::fBM(p, limit, -1.0f, 1.0f));
    EXPECT_EQ(Turbulence::turbulence(p, 1e30f, 1.0f, 0.99999994f),
              Turbulence::turbulence(p, limit, 1.0f, 0.99999994f));
    EXPECT_NE(FBM::fBM(p, limit, -1.0f, 1.0f), FBM::fBM(p, limit - 1.0f, -1.0f, 1.0f));
}
