#pragma once
// The compact gradient noise of the public-domain stb_perlin library (Ken
// Perlin's 2002 noise in float, on its own permutation), behind a thin wrapper
// so that nothing else includes the library's header.
//
// The library converts floors of its coordinates to int with a plain cast,
// undefined for NaN, infinities and values beyond the int range. The wrapper
// hands it only coordinates inside that range: a non-finite coordinate is
// read as 0, and a finite one of magnitude 2^31 or more, always a multiple of
// 256 in float, as 0 too, which is where the noise's 256-cell period puts it.
//
// What each function returns: noise/Noise.h.

namespace gritwell::StbPerlin {

// A wrap of 2, 4, ..., 256 repeats the noise with that period along its
// axis; 0 (or any multiple of 256) keeps the built-in period of 256. Other
// wraps give a noise without that period, never undefined behaviour.
float noise3(float x, float y, float z, int wrapX = 0, int wrapY = 0, int wrapZ = 0);

// The library's octave sums. Octave i samples the noise at p * lacunarity^i
// on its own permutation (seed i mod 256); octaves <= 0 give 0.
// The sum of noise_i * gain^i.
float fbm(float x, float y, float z, float lacunarity, float gain, int octaves);
// The sum of |noise_i| * gain^i.
float turbulence(float x, float y, float z, float lacunarity, float gain, int octaves);
// With r_i = (offset - |noise_i|)^2 and r_-1 = 1, the sum of
// r_i * r_(i-1) * 0.5 * gain^i.
float ridge(float x, float y, float z, float lacunarity, float gain, float offset, int octaves);

}  // namespace gritwell::StbPerlin
