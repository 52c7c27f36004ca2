#include "textures/VoronoiTileTexture3D.h"

#include <cmath>

#include "core/UnitRange.h"
#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"

namespace gritwell {

namespace {

constexpr float kGrout = 0.0f;
constexpr float kTileColor = 0.75f;           // the tone of every tile unless randomised
constexpr float kBoundaryNoiseWeight = 0.1f;  // how far the noise moves the grout line
constexpr float kCellNoiseWeight = 0.25f;     // how far the noise moves a tile's tone

}  // namespace

// In single precision, left to right as written, but for the distance to the
// edge (in double, rounded once):
//   e = distance from p to the bisector of the two nearest features
//       [+ 0.1 * fBM(detail * x, detail * y, ...)]
//   grout where e < thickness / 2
//   c = min + (max - min) * cellNoise(feature) [+ 0.25 * fBM(...)]
// The octave counts reach the fractal sum as floats; its own exact early
// exit bounds the loop for a damaged record's huge counts.
namespace {

// How far p lies from the bisector of features a (the nearest) and b: the
// tile edge between them. (m - p) . (b - a) / |b - a|, m their midpoint,
// in double. Half the gap between the two distances, (f2 - f1) / 2, would
// be cheaper, but it falls short of the edge distance wherever p is off the
// line through the features, by up to the whole of it: grout drawn from it
// widens into wedges towards the tile corners. Coinciding features (the
// search's answer for NaN and infinite points) give 0: grout, as the sample
// that finds no feature always has been.
float edgeDistance(float px, float py, const float a[2], const float b[2]) {
    const double ux = static_cast<double>(b[0]) - a[0];
    const double uy = static_cast<double>(b[1]) - a[1];
    if (ux == 0.0 && uy == 0.0) return 0.0f;
    const double mx = 0.5 * (static_cast<double>(a[0]) + b[0]);
    const double my = 0.5 * (static_cast<double>(a[1]) + b[1]);
    return static_cast<float>(((mx - px) * ux + (my - py) * uy) / std::sqrt(ux * ux + uy * uy));
}

// Everything after the search, from the distance to the edge and the
// nearest feature. The two noise terms are asked for only where they count:
// boundaryNoise() and cellNoise() give the fractal sums at the point.
template <class BoundaryNoise, class CellNoiseSum>
float shade(const VoronoiTileTexture3D::Record& r, float edge, const float nearest[2], BoundaryNoise boundaryNoise,
            CellNoiseSum cellNoise) {
    float e = edge;
    if (r.boundaryAddNoise != 0) e = e + kBoundaryNoiseWeight * boundaryNoise();
    if (e < r.boundaryThickness / 2.0f) return kGrout;

    // The nearest feature is the same everywhere in a tile: one tone per tile.
    float c = kTileColor;
    if (r.cellRandomizeColors != 0)
        c = r.cellMinColor + (r.cellMaxColor - r.cellMinColor) * CellNoise::cellNoise(nearest[0], nearest[1]);
    if (r.cellAddNoise != 0) c = c + kCellNoiseWeight * cellNoise();
    return clampUnit(c);
}

// A noise term's fractal sum: its detail scales the point.
struct NoiseSum {
    float detail;
    float octaves;
    float lacunarity;
    float gain;
};

NoiseSum boundaryTerm(const VoronoiTileTexture3D::Record& r) {
    return {r.boundaryDetail, static_cast<float>(r.boundaryOctaves), r.boundaryLacunarity, r.boundaryGain};
}

NoiseSum cellTerm(const VoronoiTileTexture3D::Record& r) {
    return {r.cellDetail, static_cast<float>(r.cellOctaves), r.cellLacunarity, r.cellGain};
}

float sumAt(const NoiseSum& s, float x, float y) {
    return FBM::fBM(s.detail * x, s.detail * y, s.octaves, s.lacunarity, s.gain);
}

// The sum at every point of a block, through the batch sum; the same bits
// as sumAt point by point.
void sumsAcross(const NoiseSum& s, const float* points, int n, float* out) {
    VoronoiTileTexture3D::PointBlock p(points, n, s.detail);
    FBM::fBM(p.x, p.y, n, s.octaves, s.lacunarity, s.gain, out);
}

}  // namespace

float VoronoiTileTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    const float p[2] = {x, y};
    float f1, f2;
    float nearest[2], second[2];
    ARMan::voronoi_f1f2_2d(p, r.cellVariability, f1, nearest, f2, second);
    return shade(
        r, edgeDistance(x, y, nearest, second), nearest, [&] { return sumAt(boundaryTerm(r), x, y); },
        [&] { return sumAt(cellTerm(r), x, y); });
}

// The search and the noise sums across the block at once, then each point's
// shade. A sum the shade would not read (grout) is computed and left.
void VoronoiTileTexture3D::evaluateBlock(const Record& r, int, const float* points, int n, float* out) {
    const PointBlock p(points, n, 1.0f);
    float f1[kBlockPoints], f2[kBlockPoints], nearestX[kBlockPoints], nearestY[kBlockPoints];
    float secondX[kBlockPoints], secondY[kBlockPoints];
    ARMan::voronoi_f1f2_2d(p.x, p.y, n, r.cellVariability, f1, f2, nearestX, nearestY, secondX, secondY);
    float boundary[kBlockPoints], cell[kBlockPoints];
    if (r.boundaryAddNoise != 0) sumsAcross(boundaryTerm(r), points, n, boundary);
    if (r.cellAddNoise != 0) sumsAcross(cellTerm(r), points, n, cell);
    for (int i = 0; i < n; ++i) {
        const float nearest[2] = {nearestX[i], nearestY[i]};
        const float second[2] = {secondX[i], secondY[i]};
        out[i] = shade(
            r, edgeDistance(p.x[i], p.y[i], nearest, second), nearest, [&] { return boundary[i]; },
            [&] { return cell[i]; });
    }
}

template class RecordTexture3D<VoronoiTileTexture3D>;

}  // namespace gritwell
