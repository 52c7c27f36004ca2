// Axial hexagon coordinates and cube rounding after Amit Patel,
// "Hexagonal Grids" (Red Blob Games, 2013).
#include "textures/HexTileTexture3D.h"

#include <algorithm>
#include <cmath>

#include "noise/CellNoise.h"

namespace gritwell {

namespace {

// sqrt(3) and the fractions of it the flat-topped layout uses, in single precision.
constexpr float kSqrt3 = 1.7320508f;
constexpr float kHalfSqrt3 = 0.8660254f;    // inradius per unit circumradius; the slanted normals' x
constexpr float kSqrt3Over3 = 0.57735026f;
constexpr float kTwoThirds = 0.6666667f;
constexpr float kOneThird = 0.33333334f;
constexpr float kThreeHalves = 1.5f;        // centre spacing along x per unit circumradius

// The whole axial coordinates (q, r) of the hexagon holding the fractional
// ones: round all three cube coordinates (q, r, s = -q - r), then rebuild the
// one that moved furthest from the other two so that q + r + s stays 0. Kept
// in float: nothing here needs an int, and huge or non-finite points stay
// well defined. Ties round to even; only points on a joint meet one.
struct Axial {
    float q, r;
};
Axial roundAxial(float fq, float fr) {
    const float fs = -fq - fr;
    float q = std::nearbyint(fq);
    float r = std::nearbyint(fr);
    const float s = std::nearbyint(fs);
    const float dq = std::fabs(q - fq);
    const float dr = std::fabs(r - fr);
    const float ds = std::fabs(s - fs);
    if (dq > dr && dq > ds)
        q = -r - s;
    else if (dr > ds)
        r = -q - s;
    return {q, r};
}

}  // namespace

// Single precision, left to right as written, with R the circumradius:
//   fq = 2/3 * x / R,  fr = (sqrt3/3 * y - 1/3 * x) / R
//   centre = (3/2 * R * q, sqrt3 * R * (r + q / 2))
//   edge distance = sqrt3/2 * R - max(|dy|, |sqrt3/2 * dx + 1/2 * dy|, |sqrt3/2 * dx - 1/2 * dy|)
float HexTileTexture3D::evaluate(const Record& rec, int, float x, float y, float) {
    const float radius = rec.tileRadius;
    // No tiles to find: and never a division by a zero radius.
    if (!(radius > 0.0f)) return rec.mortarColor;

    const Axial a = roundAxial(kTwoThirds * x / radius, (kSqrt3Over3 * y - kOneThird * x) / radius);
    const float dx = x - kThreeHalves * radius * a.q;
    const float dy = y - kSqrt3 * radius * (a.r + a.q / 2.0f);

    // The three edge normals of a flat-topped hexagon: up, and 30 degrees
    // either side of the x axis; each serves a pair of opposite edges.
    const float across = std::max({std::fabs(dy), std::fabs(kHalfSqrt3 * dx + 0.5f * dy),
                                   std::fabs(kHalfSqrt3 * dx - 0.5f * dy)});
    const float toEdge = kHalfSqrt3 * radius - across;
    if (toEdge < rec.mortarThickness / 2.0f) return rec.mortarColor;

    // Whole axial coordinates as they are: a negative one falls one cell
    // lower under the cell-index rule, which keeps distinct tiles distinct.
    if (rec.randomizeColors != 0)
        return rec.minColor + (rec.maxColor - rec.minColor) * CellNoise::cellNoise(a.q, a.r);
    return rec.tileColor;
}

template class RecordTexture3D<HexTileTexture3D>;

}  // namespace gritwell
