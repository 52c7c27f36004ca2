#pragma once
// The noise library, as the generators see it: every function they call and
// what it returns. Each is declared once, in the header named in its group;
// that header says how arguments, NaN and out-of-range points are treated.
//
// Array forms take the inputs (x, y, z arrays), then the count n, then the
// parameters, then the outputs, and give each point the bits of the
// one-point form; an overload taking a SimdLevel first runs a chosen
// instruction set, for tests and benchmarks.
//
// Lattice gradient noise (Perlin.h, PerlinBatch.h), Ken Perlin's, in float:
//   Perlin::noise(x [, y [, z [, w]]])   about -1..1, exactly 0 on the
//                                        lattice; period 256 on every axis
//   PerlinBatch::noise(x, y [, z], n, out)
//                                        the same over arrays
//   Perlin::Get(x, y [, z], octaves, freq, amp)
//   PerlinBatch::Get(x, y [, z], n, octaves, freq, amp, out)
//                                        octave sum, frequency doubling and
//                                        amplitude halving: about -2 amp..
//                                        2 amp; 0 for octaves <= 0
//   Perlin::fnoise2D/3D/4D(..., fw)      noise faded out by the filter width:
//                                        unchanged for fw <= 1.44, 0 from
//                                        about fw = 2.64
//   Perlin::snoise(x [, y [, z [, w]]])  simplex noise, about -1..1
//   Perlin::fsnoise2D/3D/4D(..., fw)     simplex noise faded out likewise
//
// Fractal sums (FBM.h, Turbulence.h): octave i at lacunarity^i times the
// frequency and gain^i the weight, octaves a float (2.5 runs three):
//   FBM::fBM(x [, y [, z]], octaves, lacunarity, gain) and over arrays
//                                        not normalised: about -1..1 for
//                                        gain 0.5, up to 2 in general
//   vFBM(x or p, octaves, lacunarity, gain)
//                                        the same over ImprovedPerlin
//   Turbulence::turbulence(...)          the sum of |noise|: never negative
//
// Other gradient noises:
//   ImprovedPerlin::noise3(x, y, z)      double, about -1..1, exactly 0 on
//                                        the lattice (ImprovedPerlin.h)
//   ImprovedPerlin::noise1(x)            double, -0.5..0.5, 0 at integers
//   Simplex::noise(x, y [, z [, w]])     double, about -1..1, 0 at the
//                                        origin (Simplex.h)
//   StbPerlin::noise3(x, y, z [, wraps]) about -1..1, 0 on the lattice
//                                        (StbPerlin.h); its fbm about -1..1
//                                        times the sum of the weights,
//                                        turbulence and ridge never negative
//   WaveletNoise::noise(x, y, z)         mean 0, deviation about 0.45, rarely
//                                        beyond -2.5..2.5 (WaveletNoise.h)
//
// Cellular noise:
//   CellNoise::cellNoise(x [, y [, z]])  0..1, one value per integer cell
//                                        (CellNoise.h)
//   Voronoi::Get(x, y [, z], type, metric) and over arrays
//                                        a combination of the four nearest
//                                        feature distances times
//                                        sqrt(2)/sqrt(3): >= 0, Crackle
//                                        >= 0.8165 (Voronoi.h)
//   Worley::Get(x, y, z, type, metric)   Steven Worley's cellular basis in
//                                        double: >= 0, Crackle >= 1 (Worley.h)
//   ARMan::voronoi_f1f2_2d/3d, voronoi_f1_3d and over arrays
//                                        0 <= f1 <= f2, the distances to the
//                                        nearest features (ARMan.h)
//
// Shading-language helpers (PRMan.h) and ramps (Ramps.h):
//   PRMan::smoothstep; smooth, linear    0..1
//   PRMan::step                          0 or 1
//   PRMan::squarepulse                   -1, 0 or 1
//   PRMan::pnoise(x, period)             1-D lattice noise of that period,
//                                        about -1..1
//   PRMan::mix, mmix, clamp, luminance, distance2/3, ptlined; lerp
//                                        as their formulas give

#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "noise/ImprovedPerlin.h"
#include "noise/PRMan.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"
#include "noise/Ramps.h"
#include "noise/Simplex.h"
#include "noise/StbPerlin.h"
#include "noise/Turbulence.h"
#include "noise/Voronoi.h"
#include "noise/WaveletNoise.h"
#include "noise/Worley.h"
