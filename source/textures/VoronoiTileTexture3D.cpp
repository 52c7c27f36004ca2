#include "textures/VoronoiTileTexture3D.h"

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

// Everything in single precision, left to right as written:
//   e = (f2 - f1) / 2 [+ 0.1 * fBM(detail * x, detail * y, ...)]
//   grout where e < thickness / 2
//   c = min + (max - min) * cellNoise(feature) [+ 0.25 * fBM(...)]
// The octave counts reach the fractal sum as floats; its own exact early
// exit bounds the loop for a damaged record's huge counts.
namespace {

// Everything after the search, from the two nearest distances and the
// nearest feature. The two noise terms are asked for only where they count:
// boundaryNoise() and cellNoise() give the fractal sums at the point.
template <class BoundaryNoise, class CellNoiseSum>
float shade(const VoronoiTileTexture3D::Record& r, float f1, float f2, const float nearest[2],
            BoundaryNoise boundaryNoise, CellNoiseSum cellNoise) {
    // Half the gap between the two nearest distances: zero on the bisector,
    // and the distance to it along the line joining the two features.
    float e = (f2 - f1) / 2.0f;
    if (r.boundaryAddNoise != 0) e = e + kBoundaryNoiseWeight * boundaryNoise();
    if (e < r.boundaryThickness / 2.0f) return kGrout;

    // The nearest feature is the same everywhere in a tile: one tone per tile.
    float c = kTileColor;
    if (r.cellRandomizeColors != 0)
        c = r.cellMinColor + (r.cellMaxColor - r.cellMinColor) * CellNoise::cellNoise(nearest[0], nearest[1]);
    if (r.cellAddNoise != 0) c = c + kCellNoiseWeight * cellNoise();
    return clampUnit(c);
}

float boundarySum(const VoronoiTileTexture3D::Record& r, float x, float y) {
    const float d = r.boundaryDetail;
    return FBM::fBM(d * x, d * y, static_cast<float>(r.boundaryOctaves), r.boundaryLacunarity, r.boundaryGain);
}

float cellSum(const VoronoiTileTexture3D::Record& r, float x, float y) {
    const float d = r.cellDetail;
    return FBM::fBM(d * x, d * y, static_cast<float>(r.cellOctaves), r.cellLacunarity, r.cellGain);
}

// A noise term's fractal sum at every point of a block, through the batch
// sum; the same bits as boundarySum or cellSum point by point.
void sumsAcross(const float* points, int n, float detail, std::int32_t octaves, float lacunarity, float gain,
                float* out) {
    float x[VoronoiTileTexture3D::kBlockPoints], y[VoronoiTileTexture3D::kBlockPoints];
    for (int i = 0; i < n; ++i) {
        x[i] = detail * points[3 * i];
        y[i] = detail * points[3 * i + 1];
    }
    FBM::fBM(x, y, n, static_cast<float>(octaves), lacunarity, gain, out);
}

}  // namespace

float VoronoiTileTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    const float p[2] = {x, y};
    float f1, f2;
    float nearest[2], second[2];
    ARMan::voronoi_f1f2_2d(p, r.cellVariability, f1, nearest, f2, second);
    return shade(
        r, f1, f2, nearest, [&] { return boundarySum(r, x, y); }, [&] { return cellSum(r, x, y); });
}

// The search and the noise sums across the block at once, then each point's
// shade. A sum the shade would not read (grout) is computed and left.
void VoronoiTileTexture3D::evaluateBlock(const Record& r, int, const float* points, int n, float* out) {
    const PointBlock p(points, n, 1.0f);
    float f1[kBlockPoints], f2[kBlockPoints], nearestX[kBlockPoints], nearestY[kBlockPoints];
    ARMan::voronoi_f1f2_2d(p.x, p.y, n, r.cellVariability, f1, f2, nearestX, nearestY);
    float boundary[kBlockPoints], cell[kBlockPoints];
    if (r.boundaryAddNoise != 0)
        sumsAcross(points, n, r.boundaryDetail, r.boundaryOctaves, r.boundaryLacunarity, r.boundaryGain, boundary);
    if (r.cellAddNoise != 0) sumsAcross(points, n, r.cellDetail, r.cellOctaves, r.cellLacunarity, r.cellGain, cell);
    for (int i = 0; i < n; ++i) {
        const float nearest[2] = {nearestX[i], nearestY[i]};
        out[i] = shade(
            r, f1[i], f2[i], nearest, [&] { return boundary[i]; }, [&] { return cell[i]; });
    }
}

template class RecordTexture3D<VoronoiTileTexture3D>;

}  // namespace gritwell
