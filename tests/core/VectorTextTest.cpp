#include <iomanip>
#include <sstream>

#include <gtest/gtest.h>

#include "core/Mat4.h"
#include "core/Vec2.h"

using namespace gritwell;

namespace {
// Runs a read with standard error captured: what the reader printed.
template <class T>
std::string readReporting(const std::string& text, T& into, bool& ok) {
    std::istringstream in(text);
    testing::internal::CaptureStderr();
    in >> into;
    ok = !in.fail();
    return testing::internal::GetCapturedStderr();
}
}  // namespace

TEST(VectorText, WritesBracketsAndPadsAllButTheFirstComponent) {
    std::ostringstream plain;
    plain << Vec3(1, 2, 3);
    EXPECT_EQ(plain.str(), "[1 2 3]");

    std::ostringstream padded;
    padded << std::setw(4) << Vec3(1, 2, 3);
    EXPECT_EQ(padded.str(), "   [1    2    3]");
}

TEST(VectorText, ReadsBackAndReportsEachKindOfError) {
    Vec3 v(9, 9, 9);
    bool ok = false;
    EXPECT_EQ(readReporting("  [4 5.5 -6] ", v, ok), "");
    EXPECT_TRUE(ok);
    EXPECT_EQ(v.y, 5.5f);

    const Vec3 before = v;
    EXPECT_EQ(readReporting("[1 2", v, ok), "Error: Expected number while reading vector\n");
    EXPECT_FALSE(ok);
    EXPECT_EQ(readReporting("(1 2 3)", v, ok), "Error: Expected '[' while reading vector\n");
    EXPECT_EQ(readReporting("[1 2 3 4]", v, ok), "Error: Expected ']' while reading vector\n");
    EXPECT_EQ(v.x, before.x);
    EXPECT_EQ(v.z, before.z);

    Vec2 w(0, 0);
    EXPECT_EQ(readReporting("[7 8]", w, ok), "");
    EXPECT_EQ(w.y, 8.0f);
}

TEST(MatrixText, RoundTripsAndReportsABadRowTwice) {
    const Mat4 m(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    std::ostringstream out;
    out << m;
    EXPECT_EQ(out.str(), "[[1 2 3 4]\n[5 6 7 8]\n[9 10 11 12]\n[13 14 15 16]]\n");

    Mat4 back;
    back.MakeZero();
    bool ok = false;
    EXPECT_EQ(readReporting(out.str(), back, ok), "");
    EXPECT_TRUE(ok);
    EXPECT_EQ(back, m);

    Mat4 kept = m;
    EXPECT_EQ(readReporting("[[1 2 3 4] [5 x 7 8]]", kept, ok),
              "Error: Expected number while reading vector\nExpected number while reading matrix\n");
    EXPECT_FALSE(ok);
    EXPECT_EQ(kept, m);
    EXPECT_EQ(readReporting("x", kept, ok), "Expected '[' while reading matrix\n");
    EXPECT_EQ(readReporting("[[1 2 3 4][5 6 7 8][9 10 11 12][13 14 15 16] x", kept, ok),
              "Expected ']' while reading matrix\n");
}

TEST(MatrixText, WidthPadsTheOuterBracketAndTheLaterRows) {
    Mat4 id;
    id.MakeDiag(1.0f);
    std::ostringstream out;
    out << std::setw(2) << id;
    // Row 0 follows the padded bracket at width 0; rows 1..3 get the width back.
    EXPECT_EQ(out.str(), " [[1 0 0 0]\n [0  1  0  0]\n [0  0  1  0]\n [0  0  0  1]]\n");
}
