#include "noise/Ramps.h"

namespace gritwell {

namespace {
// Clamps to [0, 1]; NaN passes through.
float clampUnit(float t) {
    if (t < 0.0f) return 0.0f;
    if (t > 1.0f) return 1.0f;
    return t;
}
}  // namespace

float smooth(float t) { return t * t * (3.0f - 2.0f * t); }

float smooth(float v, float a, float b) { return smooth(linear(v, a, b)); }

float linear(float v, float a, float b) { return clampUnit((v - a) / (b - a)); }

float lerp(float a, float b, float t) { return (a - b) * t + b; }

}  // namespace gritwell
