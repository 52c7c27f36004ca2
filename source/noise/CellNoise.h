#pragma once
// Cell noise: one pseudo-random value per integer cell, the source of
// per-cell randomness (a tone per brick, tile, scale or stripe).
//
// The cell of a coordinate follows the shared cell-index rule, so an exactly
// negative integer -m falls in cell -m - 1.
//
// Inline: the cellular searches call it three times for each of 27 cells a
// point, and inlined the cells of a search's rows and columns are taken once.

#include <cstdint>

#include "core/FloatToInt.h"

namespace gritwell::CellNoise {

namespace detail {
// The integer hash of a cell number, on 32-bit words with wrap-around.
inline std::uint32_t hash(std::uint32_t n) {
    n ^= n << 13;
    return n * (n * n * 15731u + 789221u) + 1376312589u;
}
// The 1-D and the 2-/3-D scalings differ on purpose; records depend on both.
inline float unitFromSigned(std::uint32_t h) { return static_cast<float>((h & 0x7fffffffu) / 2147483647.0); }
inline float unitFromUnsigned(std::uint32_t h) { return static_cast<float>(h) / 4294967296.0f; }
inline std::uint32_t cell(float v) { return static_cast<std::uint32_t>(cellIndex(v)); }
}  // namespace detail

// In [0, 1]: (h AND 0x7fffffff) / 2147483647, in double, rounded to float.
inline float cellNoise(float x) { return detail::unitFromSigned(detail::hash(detail::cell(x))); }
// In [0, 1]: h as unsigned / 2^32 in float; 1.0 where h rounds up to 2^32.
inline float cellNoise(float x, float y) {
    return detail::unitFromUnsigned(detail::hash(detail::cell(y) * 1301u + detail::cell(x)));
}
inline float cellNoise(float x, float y, float z) {
    return detail::unitFromUnsigned(
        detail::hash(detail::cell(y) * 1301u + detail::cell(z) * 314159u + detail::cell(x)));
}

}  // namespace gritwell::CellNoise
