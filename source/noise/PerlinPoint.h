#pragma once
// Perlin::noise(x, y, z) at one point, with a kernel per instruction set:
// SSE2 for any x86-64 processor and AVX2, which holds all eight corners in
// one register. Every kernel gives the same bits.

#include "core/SimdLevel.h"

namespace gritwell {

class PerlinPoint {
public:
    // On the kernel of simdLevel().
    static float noise(float x, float y, float z);
    // On a chosen level's kernel (lowered to what this processor runs); the
    // AVX-512 level uses the AVX2 kernel.
    static float noise(SimdLevel level, float x, float y, float z);
};

}  // namespace gritwell
