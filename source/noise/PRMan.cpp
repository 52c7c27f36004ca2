#include "noise/PRMan.h"

#include <cmath>
#include <cstdint>

#include "noise/Perlin.h"

namespace gritwell::PRMan {

float smoothstep(float a, float b, float x) {
    if (x < a) return 0.0f;
    if (x >= b) return 1.0f;
    const float t = (x - a) / (b - a);
    return t * t * (3.0f - 2.0f * t);
}

float clamp(float x, float lo, float hi) {
    if (x < lo) return lo;
    if (x > hi) return hi;
    return x;
}

float mmix(float a, float b, float t) { return mix(a, b, t); }

float luminance(float r, float g, float b) {
    return static_cast<float>(r * 0.2126 + 0.7152 * g + 0.0722 * b);
}

namespace {

// std::fmod(x, period) of two floats, the remainder every caller's bits rest
// on. Where it is certain to be exact, plain arithmetic: a sample within one
// period is its own remainder; a whole-number period up to 2^24 divides a
// sample below 2^24 with a quotient and product exact in double, and the
// one quotient the rounded division can overshoot is taken back. Anything
// else goes to the library.
double periodRemainder(float x, float period) {
    const double ax = std::fabs(static_cast<double>(x));
    const double ap = std::fabs(static_cast<double>(period));
    if (ax < ap) return x;
    // Past the first test a period that is not NaN is at most the sample.
    if (!(ax < 0x1p24 && ap >= 1.0) || ap != static_cast<double>(static_cast<std::int64_t>(ap)))
        return std::fmod(static_cast<double>(x), static_cast<double>(period));
    const double q = static_cast<double>(static_cast<std::int64_t>(ax / ap));
    double r = ax - q * ap;
    if (r < 0.0) r += ap;
    return std::copysign(r, static_cast<double>(x));
}

}  // namespace

float pnoise(float x, float period) {
    const float xp = static_cast<float>(periodRemainder(x, period) +
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
