#pragma once
// Steven Worley's cellular texture basis function ("A Cellular Texture Basis
// Function", SIGGRAPH 1996, and his published code), in double precision,
// with a choice of distance measure added.
//
// Space is diced into unit cubes holding a Poisson-distributed number of
// feature points each; the sample is scaled so that the mean of F1 is about
// 1. Distances are compared as a measure m and returned as
// sqrt(m) * 2.5116162250408136.
//
// What each function returns: noise/Noise.h.

#include <cstdint>

namespace gritwell::Worley {

// What Get returns; the same values as Voronoi::VoronoiType. A type t of 7
// or more returns F[t], the (t + 1)-th nearest distance, like First to Fourth;
// negative values are not valid, and Get treats them like First.
enum VoronoiType : std::int32_t {
    First = 0,
    Second = 1,
    Third = 2,
    Fourth = 3,
    Difference21 = 4,
    Difference32 = 5,
    Crackle = 6,  // max(1, 10 (F2 - F1))
};

// The measure m compared during the search (dx, dy, dz: sample to feature).
// Any other value measures with Length.
enum DistanceMethod : std::int32_t {
    Length = 0,             // dx^2 + dy^2 + dz^2: returns the Euclidean length
    LengthSquared = 1,      // (dx^2 + dy^2 + dz^2)^2: returns the squared length
    LargestPlusRadial = 2,  // (a + sqrt(b^2 + c^2))^2, a the largest |component|
    Manhattan = 3,          // (|dx| + |dy| + |dz|)^2
    Chebychev = 4,          // max(|dx|, |dy|, |dz|)^2
    Quadratic = 5,          // (dx^2 + dy^2 + dz^2 + dx dy + dx dz + dy dz)^2
    Minkowski4 = 6,         // powf(dx^4 + dy^4 + dz^4, 0.25)^2
    Minkowski5 = 7,         // powf(sqrt|dx| + sqrt|dy| + sqrt|dz|, 4)^2: returns the 4th power
};

// The largest order the search keeps: the most features its 27 cubes can
// hold, at most 5 each. A higher order finds no more: its further distances
// stay at the search's starting value.
constexpr long kMaxOrder = 27 * 5;

// Feature points per cube, indexed by the top byte of the cube hash: Steven
// Worley's published table, an approximate Poisson distribution (values 0..5).
extern const std::int32_t Poisson_count[256];

// The max_order nearest features of the sample at[0..2]: F[0..max_order-1]
// their distances ascending (>= 0), delta[] the vectors from the sample to
// them, ID[] their 32-bit identifiers. max_order is 1..kMaxOrder: below 1
// nothing is written, above kMaxOrder only the nearest kMaxOrder are found. A sample with a NaN,
// infinite or beyond-int-range scaled coordinate finds no feature: every F
// is sqrt(999999.9) * 2.5116162250408136 (about 2511.6), delta and ID 0.
void noise(const double* at, long max_order, double* F, double (*delta)[3], unsigned long* ID,
           DistanceMethod m);

// Merges the features of cube (xi, yi, zi) into the running lists of the
// already scaled sample at: F holds measures, unscaled, delta unscaled
// vectors. max_order as for noise; F[0..max_order-1] must be initialised.
void AddSamples(long xi, long yi, long zi, long max_order, const double* at, double* F,
                double (*delta)[3], unsigned long* ID, DistanceMethod m);

// The chosen combination of the returned distances, unscaled.
double Get(double x, double y, double z, VoronoiType t, DistanceMethod m);

}  // namespace gritwell::Worley
