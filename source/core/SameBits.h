#pragma once
// Whether two floats hold the same bits: a NaN matches itself, and -0 does
// not match +0. The octave loops stop on it once a step changes nothing.

#include <bit>
#include <cstdint>

namespace gritwell {

constexpr bool sameBits(float a, float b) { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); }

}  // namespace gritwell
