#pragma once
// Voronoi cellular noise: one jittered feature point per unit cell, the four
// nearest to a sample under a chosen distance metric, and combinations of
// those four distances.
//
// The 2-D form is the slice z = 0 of a 3-D field whose features all lie in
// the layer of cells k = 0: a feature keeps its third coordinate, so even
// the nearest one is at least its height above the slice away.
//
// What each function returns: noise/Noise.h.

#include <array>
#include <cstdint>

namespace gritwell {

class Voronoi {
public:
    // What Get returns. Stored in records: the values are fixed. Values
    // outside 0..6 are not valid; Get treats them like First.
    enum VoronoiType : std::int32_t {
        First = 0,         // F1
        Second = 1,        // F2
        Third = 2,         // F3
        Fourth = 3,        // F4
        Difference21 = 4,  // F2 - F1
        Difference32 = 5,  // F3 - F2
        Crackle = 6,       // max(1, 20 (F2 - F1)), the "Tile" look
    };

    // The metric between a feature and the sample (see core/DistanceMetrics.h
    // for which are squared). Any other value measures with Length.
    enum DistanceMethod : std::int32_t {
        Length = 0,
        LengthSquared = 1,
        Manhattan = 2,
        Chebychev = 3,
        Quadratic = 4,
        Minkowski4 = 5,
        Minkowski5 = 6,  // exponent 0.5
    };

    using Row = std::array<float, 3>;

    Voronoi() = delete;

    // The offset of cell (i, j, k)'s feature within its cell, each component
    // in [0, 1); periodic with period 256 along every axis.
    static const float* GetPoint(int i, int j, int k);
    static const float* GetPoint(int i, int j);  // GetPoint(i, j, 0)

    // F[0..3]: the four smallest distances, ascending; P[0..11]: their
    // feature points in world coordinates, three floats each. Of equal
    // distances the cell of lower i, then j, then k comes first. A sample
    // too far out for any distance to stay below the largest float (NaN,
    // infinities) leaves F at 3.4028235e38 and P at 0.
    static void Calculate(float x, float y, float* F, float* P, DistanceMethod m);
    static void Calculate(float x, float y, float z, float* F, float* P, DistanceMethod m);

    // The chosen combination times sqrt(2)/sqrt(3).
    static float Get(float x, float y, VoronoiType t, DistanceMethod m);
    static float Get(float x, float y, float z, VoronoiType t, DistanceMethod m);
    // out[i] = Get(x[i], y[i], z[i], t, m) (or Get(x[i], y[i], t, m)) for
    // 0 <= i < n; eight points at a time on processors with AVX2, for every
    // metric but Minkowski4.
    static void Get(const float* x, const float* y, const float* z, int n, VoronoiType t, DistanceMethod m,
                    float* out);
    static void Get(const float* x, const float* y, int n, VoronoiType t, DistanceMethod m, float* out);

    // The two fixed tables behind GetPoint: a permutation of 0..255 that
    // hashes a cell to a row, and 256 feature offsets in [0, 1).
    static const std::array<std::uint8_t, 256>& IndexTable();
    static const std::array<Row, 256>& CoordsTable();
};

}  // namespace gritwell
