#pragma once
// Perlin's lattice noise and its octave sum over arrays of points: at every
// point the same bits as Perlin::noise and Perlin::Get in two and three
// dimensions, computed 8 or 16 points per instruction where the processor
// has AVX2 or AVX-512, and 4 on any other x86-64 (SSE2).

#include "core/SimdLevel.h"

namespace gritwell {

class PerlinBatch {
public:
    // The points one step of the kernels on `level` takes: 16 on AVX-512, 8
    // on AVX2, 1 on the scalar loop. A handful of points padded to this many
    // costs one step; fewer leave the kernels to their scalar tail.
    static constexpr int kMaxLanes = 16;
    static constexpr int lanes(SimdLevel level) {
        return level == SimdLevel::kAvx512 ? 16 : level == SimdLevel::kAvx2 ? 8 : 1;
    }
    // The fewest points for which that one step costs less than the points
    // one at a time (Perlin::noise): a step of either kernel measured about
    // six single points.
    static constexpr int fewestForAStep(SimdLevel level) { return level == SimdLevel::kScalar ? 1 : 7; }

    // out[i] = Perlin::noise(x[i], y[i], z[i]) for 0 <= i < n; out may be x, y or z.
    static void noise(const float* x, const float* y, const float* z, int n, float* out);
    // The same on a chosen level (lowered to what this processor runs).
    static void noise(SimdLevel level, const float* x, const float* y, const float* z, int n, float* out);
    // out[i] = Perlin::noise(x[i], y[i]), on this processor's best level or a
    // chosen one; out may be x or y.
    static void noise(const float* x, const float* y, int n, float* out);
    static void noise(SimdLevel level, const float* x, const float* y, int n, float* out);

    // out[i] = Perlin::Get(x[i], y[i], z[i], octaves, freq, amp); x, y and z
    // are the caller's scratch and come back scaled.
    static void Get(float* x, float* y, float* z, int n, int octaves, float freq, float amp, float* out);
    // out[i] = Perlin::Get(x[i], y[i], octaves, freq, amp); x and y come back scaled.
    static void Get(float* x, float* y, int n, int octaves, float freq, float amp, float* out);
};

}  // namespace gritwell
