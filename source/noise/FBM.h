#pragma once
// Fractal Brownian motion: octaves of gradient noise, each at `lacunarity`
// times the frequency and `gain` times the weight of the one before. The
// first octave is the noise at the point itself, at weight 1; the sum is
// not normalised.
//
// What each function returns: noise/Noise.h.

#include "core/Vec3.h"

namespace gritwell {

namespace FBM {
float fBM(float x, float octaves, float lacunarity, float gain);
float fBM(float x, float y, float octaves, float lacunarity, float gain);
float fBM(const float* p, float octaves, float lacunarity, float gain);
float fBM(const Vec3& p, float octaves, float lacunarity, float gain);
// out[i] = fBM(Vec3(x[i], y[i], z[i]), ...) for n points at once; x, y and z
// are scratch.
void fBM(float* x, float* y, float* z, int n, float octaves, float lacunarity, float gain, float* out);
// out[i] = fBM(x[i], y[i], ...) for n points at once; x and y are scratch.
void fBM(float* x, float* y, int n, float octaves, float lacunarity, float gain, float* out);
}  // namespace FBM

// The same sum over the improved gradient noise, in double precision per
// sample (the point widened on the way in, the sample rounded to float).
float vFBM(float x, float octaves, float lacunarity, float gain);
float vFBM(const float* p, float octaves, float lacunarity, float gain);
float vFBM(const Vec3& p, float octaves, float lacunarity, float gain);

}  // namespace gritwell
