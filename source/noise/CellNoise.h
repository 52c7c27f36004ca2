#pragma once
// Cell noise: one pseudo-random value per integer cell, the source of
// per-cell randomness (a tone per brick, tile, scale or stripe).
//
// The cell of a coordinate follows the shared cell-index rule, so an exactly
// negative integer -m falls in cell -m - 1.

namespace gritwell::CellNoise {

// In [0, 1]: (h AND 0x7fffffff) / 2147483647, in double, rounded to float.
float cellNoise(float x);
// In [0, 1]: h as unsigned / 2^32 in float; 1.0 where h rounds up to 2^32.
float cellNoise(float x, float y);
float cellNoise(float x, float y, float z);

}  // namespace gritwell::CellNoise
