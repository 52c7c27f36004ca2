#include "noise/FBM.h"

#include <array>

#include "noise/FractalSum.h"
#include "noise/ImprovedPerlin.h"

namespace gritwell {

float FBM::fBM(float x, float octaves, float lacunarity, float gain) {
    return fractalSum<1>({x}, octaves, lacunarity, gain, latticeNoise<1>, addWeighted);
}

float FBM::fBM(float x, float y, float octaves, float lacunarity, float gain) {
    return latticeFractalSum<2>({x, y}, octaves, lacunarity, gain, addWeighted);
}

float FBM::fBM(const float* p, float octaves, float lacunarity, float gain) {
    return latticeFractalSum<3>({p[0], p[1], p[2]}, octaves, lacunarity, gain, addWeighted);
}

float FBM::fBM(const Vec3& p, float octaves, float lacunarity, float gain) {
    return latticeFractalSum<3>({p.x, p.y, p.z}, octaves, lacunarity, gain, addWeighted);
}

void FBM::fBM(float* x, float* y, float* z, int n, float octaves, float lacunarity, float gain, float* out) {
    fractalSumBlock(x, y, z, n, octaves, lacunarity, gain, 1.0f, addWeighted, out);
}

void FBM::fBM(float* x, float* y, int n, float octaves, float lacunarity, float gain, float* out) {
    fractalSumBlock(x, y, nullptr, n, octaves, lacunarity, gain, 1.0f, addWeighted, out);
}

// A fresh improved-noise object per call, as the sum has always made one;
// it holds no state, so this costs nothing.
float vFBM(float x, float octaves, float lacunarity, float gain) {
    const ImprovedPerlin noise;
    return fractalSum<1>(
        {x}, octaves, lacunarity, gain,
        [&noise](const std::array<float, 1>& p) { return static_cast<float>(noise.noise1(p[0])); },
        addWeighted);
}

float vFBM(const float* p, float octaves, float lacunarity, float gain) {
    const ImprovedPerlin noise;
    return fractalSum<3>(
        {p[0], p[1], p[2]}, octaves, lacunarity, gain,
        [&noise](const std::array<float, 3>& q) {
            return static_cast<float>(noise.noise3(q[0], q[1], q[2]));
        },
        addWeighted);
}

float vFBM(const Vec3& p, float octaves, float lacunarity, float gain) {
    const float q[3] = {p.x, p.y, p.z};
    return vFBM(q, octaves, lacunarity, gain);
}

}  // namespace gritwell
