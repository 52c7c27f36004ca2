#pragma once
// Improved gradient noise in double precision: Ken Perlin's 2002 reference
// noise, bit for bit, plus a 1-D noise on the same lattice and permutation.
//
// The object holds no state; its tables are compile-time constants, so making
// a fresh one per call costs nothing.

namespace gritwell {

class ImprovedPerlin {
public:
    ImprovedPerlin() = default;

    // About -1..1, exactly 0 where x, y and z are all integers; period 256 in
    // each coordinate. NaN or infinite coordinates give NaN.
    double noise3(double x, double y, double z) const;

    // In -0.5..0.5, exactly 0 at integers; period 256. A 1-D gradient noise:
    // slope +1 or -1 at each integer by the parity of its permutation entry,
    // blended with the same fade curve as noise3.
    double noise1(double x) const;
};

}  // namespace gritwell
