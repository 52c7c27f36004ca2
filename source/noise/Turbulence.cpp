#include "noise/Turbulence.h"

#include <array>
#include <cmath>

#include "noise/FractalSum.h"

namespace gritwell::Turbulence {

namespace {

// A function object, not a function: each sum's loop then inlines it.
constexpr auto addAbsolute = [](float sum, float sample, float amplitude) {
    return static_cast<float>(sum + static_cast<double>(std::fabs(sample)) * amplitude);
};

}  // namespace

float turbulence(float x, float octaves, float lacunarity, float gain) {
    return fractalSum<1>({x}, octaves, lacunarity, gain, latticeNoise<1>, addAbsolute);
}

float turbulence(float x, float y, float octaves, float lacunarity, float gain) {
    return latticeFractalSum<2>({x, y}, octaves, lacunarity, gain, addAbsolute);
}

float turbulence(const float* p, float octaves, float lacunarity, float gain) {
    return latticeFractalSum<3>({p[0], p[1], p[2]}, octaves, lacunarity, gain, addAbsolute);
}

float turbulence(const Vec3& p, float octaves, float lacunarity, float gain) {
    return latticeFractalSum<3>({p.x, p.y, p.z}, octaves, lacunarity, gain, addAbsolute);
}

void turbulence(float* x, float* y, float* z, int n, float octaves, float lacunarity, float gain, float* out) {
    fractalSumBlock(x, y, z, n, octaves, lacunarity, gain, 1.0f, addAbsolute, out);
}

void turbulence(float* x, float* y, int n, float octaves, float lacunarity, float gain, float* out) {
    fractalSumBlock(x, y, nullptr, n, octaves, lacunarity, gain, 1.0f, addAbsolute, out);
}

}  // namespace gritwell::Turbulence
