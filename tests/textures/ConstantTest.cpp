#include <sstream>

#include <gtest/gtest.h>

#include "PointCases.h"
#include "textures/ConstantTexture3D.h"

using namespace gritwell;

TEST(Constant, ReturnsItsFieldUnclampedEverywhere) {
    ConstantTexture3D t;
    expectValues(t, {{0, 0, 0, 0.5f}, {-7, 1e30f, 3, 0.5f}});
    t.setConstant(2.5f);
    expectValues(t, {{0.1f, 0.2f, 0.3f, 2.5f}});
}

TEST(Constant, TextStreamWritesAndReadsTheConstant) {
    ConstantTexture3D t;
    t.setConstant(0.75f);
    std::ostringstream out;
    out << t;
    EXPECT_EQ(out.str(), "0.75\n");

    ConstantTexture3D back;
    std::istringstream in("0.125\n");
    in >> back;
    EXPECT_EQ(back.getConstant(), 0.125f);
    std::istringstream bad("x");
    bad >> back;
    EXPECT_EQ(back.getConstant(), 0.125f);
}
