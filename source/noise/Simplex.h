#pragma once
// Simplex noise in 2-D, 3-D and 4-D, in double precision.
//
// Cells are taken with the true floor and wrapped to 0..255 before they index
// the permutation, so negative cells are as varied as positive ones and the
// noise repeats every 256 cells of the skewed lattice.

namespace gritwell::Simplex {

// About -1..1 (scaled by 70), exactly 0 at the origin. NaN in, NaN out.
double noise(double x, double y);
// About -1..1 (scaled by 32), exactly 0 at the origin. NaN in, NaN out.
double noise(double x, double y, double z);
// About -1..1 (scaled by 27), exactly 0 at the origin. NaN in, NaN out.
double noise(double x, double y, double z, double w);

}  // namespace gritwell::Simplex
