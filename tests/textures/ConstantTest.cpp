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
