#pragma once
// Worked values as tables: (point, expected), the failing point streamed.

#include <initializer_list>

#include <gtest/gtest.h>

#include "core/Texture3D.h"

struct PointCase {
    float x, y, z;
    float expected;
};

inline void expectValues(gritwell::Texture3D& t, std::initializer_list<PointCase> cases) {
    for (const PointCase& c : cases) {
        const float p[3] = {c.x, c.y, c.z};
        EXPECT_EQ(t(p), c.expected) << "at (" << c.x << ", " << c.y << ", " << c.z << ")";
    }
}
