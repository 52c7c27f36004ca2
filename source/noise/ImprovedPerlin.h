#pragma once
// Improved gradient noise in double precision: Ken Perlin's 2002 reference
// noise, bit for bit, plus a 1-D noise on the same lattice and permutation.
//
// The object holds no state; its tables are compile-time constants, so making
// a fresh one per call costs nothing.
//
// What each function returns: noise/Noise.h.

namespace gritwell {

class ImprovedPerlin {
public:
    ImprovedPerlin() = default;

    // Period 256 in each coordinate. NaN or infinite coordinates give NaN.
    double noise3(double x, double y, double z) const;

    // Period 256. A 1-D gradient noise:
    // slope +1 or -1 at each integer by the parity of its permutation entry,
    // blended with the same fade curve as noise3.
    double noise1(double x) const;
};

}  // namespace gritwell
