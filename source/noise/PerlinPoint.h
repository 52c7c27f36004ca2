#pragma once
// Perlin::noise(x, y, z) at one point: its definition in plain scalar code,
// and a kernel per instruction set, SSE2 for any x86-64 processor and AVX2,
// which holds all eight corners in one register. The kernels here and
// PerlinBatch's across arrays give the definition's bits.

#include "core/SimdLevel.h"

namespace gritwell {

class PerlinPoint {
public:
    // The definition, corner by corner in Ken Perlin's order of operations:
    // what every kernel is held to. Nothing on the evaluation path calls it.
    static float reference(float x, float y, float z);
    // On the kernel of simdLevel().
    static float noise(float x, float y, float z);
    // On a chosen level's kernel (lowered to what this processor runs); the
    // AVX-512 level uses the AVX2 kernel.
    static float noise(SimdLevel level, float x, float y, float z);
};

}  // namespace gritwell
