#pragma once
// Turbulence: the fractal sum of the absolute gradient noise.
// Each octave's weighted sample is added in double precision and the sum
// rounded back to float.
//
// What each function returns: noise/Noise.h.

#include "core/Vec3.h"

namespace gritwell::Turbulence {

float turbulence(float x, float octaves, float lacunarity, float gain);
float turbulence(float x, float y, float octaves, float lacunarity, float gain);
float turbulence(const float* p, float octaves, float lacunarity, float gain);
float turbulence(const Vec3& p, float octaves, float lacunarity, float gain);
// out[i] = turbulence(Vec3(x[i], y[i], z[i]), ...) for n points at once; x,
// y and z are scratch.
void turbulence(float* x, float* y, float* z, int n, float octaves, float lacunarity, float gain, float* out);
// out[i] = turbulence(x[i], y[i], ...) for n points at once; x and y are scratch.
void turbulence(float* x, float* y, int n, float octaves, float lacunarity, float gain, float* out);

}  // namespace gritwell::Turbulence
