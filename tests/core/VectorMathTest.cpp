#include <cmath>

#include <gtest/gtest.h>

#include "core/DistanceMetrics.h"
#include "core/Mat4.h"

using namespace gritwell;

TEST(DistanceMetrics, WorkedValues) {
    EXPECT_EQ(manhattan({1, -2, 2}), 25.0f);
    EXPECT_EQ(chebychev({1, -3, 2}), 9.0f);
    EXPECT_EQ(minkowski5({1, 4, 0}), 9.0f);
    EXPECT_EQ(minkowski4({1, 1, 1}), std::pow(3.0f, 0.25f));
    EXPECT_EQ(quadratic({1, 2, 3}), 14.0f + 2.0f + 3.0f + 6.0f);
    EXPECT_EQ(sqrlen({1, 2, 3}), 14.0f);
    EXPECT_EQ(len({3, 4, 0}), 5.0f);
}

TEST(DistanceMetrics, ManhattanRoundsTheSumOnceBeforeSquaring) {
    // 1 + 2^-24 + 2^-24: summed in float the small terms vanish one at a
    // time; in double they survive and round up to the next float.
    const float tiny = std::ldexp(1.0f, -24);
    const float sum = static_cast<float>(1.0 + tiny + tiny);
    EXPECT_EQ(manhattan({1.0f, tiny, tiny}), sum * sum);
    EXPECT_NE(sum, 1.0f);
}

TEST(Vec4, ArithmeticAndUnitVectors) {
    Vec4 v(1, 2, 3, 4);
    EXPECT_EQ(v + v, Vec4(2, 4, 6, 8));
    EXPECT_EQ(-v, Vec4(-1, -2, -3, -4));
    EXPECT_EQ(2.0f * v, v * 2.0f);
    EXPECT_EQ(v / 2.0f, Vec4(0.5f, 1, 1.5f, 2));
    EXPECT_EQ(dot(v, v), 30.0f);
    v.MakeUnit(2, 5.0f);
    EXPECT_EQ(v, Vec4(0, 0, 5, 0));
    v.MakeUnit(4, 1.0f);  // out of range: unchanged
    EXPECT_EQ(v, Vec4(0, 0, 5, 0));
    EXPECT_EQ(proj(Vec4(2, 4, 6, 2)).y, 2.0f);
}

TEST(Vec4, GeneralisedCrossIsOrthogonalToAllThree) {
    const Vec4 a(1, 2, 0, 1), b(0, 1, 3, 1), c(2, 0, 1, 5);
    const Vec4 n = cross(a, b, c);
    EXPECT_EQ(dot(n, a), 0.0f);
    EXPECT_EQ(dot(n, b), 0.0f);
    EXPECT_EQ(dot(n, c), 0.0f);
    // Sign: the unit vectors e1, e2, e3 give +e0.
    EXPECT_EQ(cross(Vec4(0, 1, 0, 0), Vec4(0, 0, 1, 0), Vec4(0, 0, 0, 1)), Vec4(1, 0, 0, 0));
}

TEST(Mat4, DeterminantAdjugateAndInverse) {
    const Mat4 m(2, 0, 0, 1, 0, 3, 0, 2, 1, 0, 4, 3, 0, 0, 0, 1);
    EXPECT_EQ(det(m), 24.0f);
    const Mat4 product = m * inv(m);
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_NEAR(product[r][c], r == c ? 1.0f : 0.0f, 1e-6f) << r << "," << c;
    EXPECT_EQ(trans(trans(m)), m);
    EXPECT_EQ(trace(m), 10.0f);
}

TEST(Mat4, BuildersAndProducts) {
    Mat4 id;
    id.MakeDiag(1.0f);
    const Mat4 t = MakeHTrans({1, 2, 3});
    EXPECT_EQ(t * Vec4(0, 0, 0, 1), Vec4(1, 2, 3, 1));
    EXPECT_EQ(MakeHScale({2, 3, 4}) * Vec4(1, 1, 1, 1), Vec4(2, 3, 4, 1));
    EXPECT_EQ(t * id, t);
    EXPECT_EQ(Vec4(0, 0, 0, 1) * trans(t), Vec4(1, 2, 3, 1));
    Mat4 shifted = id;
    AddShift(shifted, {1, 2, 3});
    EXPECT_EQ(shifted, t);

    // A quarter turn about z takes x to y.
    const Vec4 turned = MakeHRot(Vec3(0, 0, 1), static_cast<float>(M_PI / 2)) * Vec4(1, 0, 0, 1);
    EXPECT_NEAR(turned.x, 0.0f, 1e-6f);
    EXPECT_NEAR(turned.y, 1.0f, 1e-6f);
    EXPECT_EQ(turned.w, 1.0f);

    Mat4 block;
    block.MakeBlock(2.0f);
    EXPECT_EQ(oprod(Vec4(1, 1, 1, 1), Vec4(2, 2, 2, 2)), block);
    Mat4 zero;
    zero.MakeZero();
    EXPECT_EQ(block - block, zero);
    EXPECT_NE(block, zero);
}
