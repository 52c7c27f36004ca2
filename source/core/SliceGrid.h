#pragma once
// The sample points of a square slice of a texture: z = const over
// [0, extent] x [0, extent], one point at each pixel's centre, x to the
// right and y up, rows from the top. The command-line host's pictures and
// the library's slices read the same points.

#include <vector>

namespace gritwell {

// The size points (x, y, z) of one row, row 0 the top, into xyz[0..3 size).
void sliceRow(int size, int row, float z, float extent, float* xyz);

// size * size interleaved points, row-major, top row first.
std::vector<float> sliceGrid(int size, float z, float extent);

}  // namespace gritwell
