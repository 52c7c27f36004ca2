#pragma once
// Worked values as tables: (point, expected), the failing point streamed.

#include <bit>
#include <cmath>
#include <cstdint>
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

inline float valueAt(gritwell::Texture3D& t, float x, float y, float z = 0.0f) {
    const float p[3] = {x, y, z};
    return t(p);
}

// A value's bits, every NaN counted as one: which sign a NaN carries depends
// on the order of an addition's operands, and no host reads it.
inline std::uint32_t bitsOf(float v) { return std::isnan(v) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(v); }
