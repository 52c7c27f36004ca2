#pragma once
// Clamping a generator's value to [0, 1]. Whether the low or the high bound
// is tested first changes no value, and NaN passes through either way.

namespace gritwell {

constexpr float clampUnit(float v) { return v < 0.0f ? 0.0f : (v > 1.0f ? 1.0f : v); }
constexpr double clampUnit(double v) { return v < 0.0 ? 0.0 : (v > 1.0 ? 1.0 : v); }

}  // namespace gritwell
