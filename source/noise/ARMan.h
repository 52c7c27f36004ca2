#pragma once
// The two nearest features of a jittered grid: one feature per unit cell,
// displaced from the cell centre by cell noise, searched over the sample's
// cell and its neighbours.

namespace gritwell::ARMan {

// P: 2 floats. f1 <= f2: Euclidean distances (>= 0) to the nearest and
// second-nearest feature; pos1, pos2: their 2 coordinates. jitter 0 puts
// every feature at its cell centre, 1 spreads them over the whole cell. Of
// equal distances the cell of lower i (x offset), then j, comes first. A
// sample from which every squared distance reaches the largest float (NaN,
// infinities) gives f1 = f2 = 2^64, its root rounded, and positions 0.
void voronoi_f1f2_2d(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2);
// The same over 3 floats, 27 cells. A feature's y and z offsets from its cell
// centre are always equal, so features line up along the diagonals of y and
// z; stored looks depend on it.
void voronoi_f1f2_3d(const float* P, float jitter, float& f1, float* pos1, float& f2, float* pos2);
// The nearest feature alone over 3 floats, 27 cells, of a grid whose features
// are offset independently along x, y and z (the y value as voronoi_f1f2_3d
// draws it, x likewise, z from a third cell-noise value): a plane at any
// height or angle sees them scattered alike. f1 and pos1 as above.
void voronoi_f1_3d(const float* P, float jitter, float& f1, float* pos1);
// voronoi_f1f2_2d for n points at once: f1[i], f2[i], nearest*[i] and
// second*[i] are what it gives ({x[i], y[i]}) as f1, f2, pos1 and pos2, bit
// for bit; sixteen points at a time on AVX-512, eight on AVX2.
void voronoi_f1f2_2d(const float* x, const float* y, int n, float jitter, float* f1, float* f2, float* nearestX,
                     float* nearestY, float* secondX, float* secondY);
// voronoi_f1_3d for n points at once: f1[i] and nearest*[i] are what it
// gives ({x[i], y[i], z[i]}), bit for bit; sixteen points at a time on
// processors with AVX-512, eight on AVX2.
void voronoi_f1_3d(const float* x, const float* y, const float* z, int n, float jitter, float* f1, float* nearestX,
                   float* nearestY, float* nearestZ);

}  // namespace gritwell::ARMan
