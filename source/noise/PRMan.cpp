#include "noise/PRMan.h"

#include <cmath>

#include "noise/Perlin.h"

namespace gritwell::PRMan {

float smoothstep(float a, float b, float x) {
    if (x < a) return 0.0f;
    if (x >= b) return 1.0f;
    const float t = (x - a) / (b - a);
    return t * t * (3.0f - 2.0f * t);
}

float step(float a, float x) { return x < a ? 0.0f : 1.0f; }

float squarepulse(float a, float b, float x) { return step(a, x) - step(b, x); }

float clamp(float x, float lo, float hi) {
    if (x < lo) return lo;
    if (x > hi) return hi;
    return x;
}

float mix(float a, float b, float t) {
    const double left = a * (1.0 - t);
    const float right = b * t;
    return static_cast<float>(left + right);
}

float mmix(float a, float b, float t) { return mix(a, b, t); }

float luminance(float r, float g, float b) {
    return static_cast<float>(r * 0.2126 + 0.7152 * g + 0.0722 * b);
}

float pnoise(float x, float period) {
    const float xp = static_cast<float>(std::fmod(static_cast<double>(x), static_cast<double>(period)) +
                                        (x < 0.0f ? static_cast<double>(period) : 0.0));
    return ((period - xp) * Perlin::noise(xp) + xp * Perlin::noise(xp - period)) / period;
}

float ptlined(const Vec3& a, const Vec3& b, const Vec3& q) {
    return len(cross(q - a, q - b)) / len(b - a);
}

float distance2(const float* a, const float* b) {
    const float dx = b[0] - a[0];
    const float dy = b[1] - a[1];
    return std::sqrt(dx * dx + dy * dy);
}

float distance3(const float* a, const float* b) {
    const float dx = b[0] - a[0];
    const float dy = b[1] - a[1];
    const float dz = b[2] - a[2];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

}  // namespace gritwell::PRMan
