#pragma once
// Scalar ramps on which the band-limited noises and the generators draw.

namespace gritwell {

// t^2 (3 - 2t), not clamped.
float smooth(float t);
// The smooth ramp of v from a (0) to b (1), clamped outside. a == b divides
// by zero unguarded: v above a gives 1, below a gives 0, equal gives NaN.
float smooth(float v, float a, float b);
// The linear ramp of v from a (0) to b (1), clamped outside; a == b as above.
float linear(float v, float a, float b);
// (a - b) t + b: b at t = 0 and a at t = 1. The operand order is the one
// stored records were made with.
float lerp(float a, float b, float t);

}  // namespace gritwell
