#pragma once
// Simplex noise in 2-D, 3-D and 4-D, in double precision.
//
// Cells are taken with the true floor and wrapped to 0..255 before they index
// the permutation, so negative cells are as varied as positive ones and the
// noise repeats every 256 cells of the skewed lattice.
//
// What each function returns: noise/Noise.h.

namespace gritwell::Simplex {

// Scaled by 70, 32 and 27 in 2, 3 and 4 dimensions. NaN in, NaN out.
double noise(double x, double y);
double noise(double x, double y, double z);
double noise(double x, double y, double z, double w);

}  // namespace gritwell::Simplex
