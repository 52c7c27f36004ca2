#pragma once
// Wavelet noise: band-limited noise from a periodic tile of coefficients
// (fine-scale Gaussian noise minus its own coarse-scale part), evaluated
// with quadratic B-splines.
//
// The tile is built on first use, once per process and thread-safely, from a
// fixed-seed generator whose numbers are the same on every platform.
//
// What each function returns: noise/Noise.h.

namespace gritwell::WaveletNoise {

// Tile edge in lattice units: the noise repeats every kTileSize along each
// axis. 64^3 floats are exactly 1 MiB, the largest power of two within that
// budget; a power of two lets lattice indices wrap with a mask.
inline constexpr int kTileSize = 64;

// Unbounded in principle: a sum of Gaussian coefficients. NaN or infinite
// coordinates are read as 0; finite ones beyond 2^24, where floats are whole
// numbers, are reduced exactly modulo the tile first.
float noise(float x, float y, float z);

}  // namespace gritwell::WaveletNoise
