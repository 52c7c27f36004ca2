#pragma once
// The six-octave sum of |noise| that Erosion and Dents cube: octave i samples
// the unit-mapped gradient noise at frequency firstFrequency * 2^i and adds
// |0.5 - unit| * weight / frequency, in double, rounded to float each time.

namespace gritwell {

// What Erosion and Dents shade: the sum cubed, then times their magnitude.
[[gnu::always_inline]] inline float cubed(float magnitude, float sum) { return magnitude * (sum * sum * sum); }

float absoluteOctaveSum(float qx, float qy, float qz, bool planar, float firstFrequency, double weight);

// The sum for n points at once: out[i] is
// absoluteOctaveSum(qx[i], qy[i], qz[i], planar, ...), bit for bit; qz is
// not read in the plane.
void absoluteOctaveSum(const float* qx, const float* qy, const float* qz, int n, bool planar, float firstFrequency,
                       double weight, float* out);

}  // namespace gritwell
