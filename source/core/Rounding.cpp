#include "core/Rounding.h"

#include <cmath>

#include "core/FloatToInt.h"

namespace gritwell {

int Floor(double x) { return roundToInt(2.0 * x - 0.5) >> 1; }

int TheFloor(double x) { return Floor(x); }

int ceilf_ASM(float x) {
    // In double, -0.5 - 2x is exact for every float of int range.
    return -(roundToInt(-0.5 - 2.0 * static_cast<double>(x)) >> 1);
}

void bilinearInterp(const float* p00, const float* p01, const float* p10, const float* p11,
                    const float* t, float* out) {
    const float u = t[0];
    const float v = t[1];
    for (int k = 0; k < 2; ++k)
        out[k] = p00[k] * (1 - u) * (1 - v) + p01[k] * (1 - u) * v + p10[k] * u * (1 - v) +
                 p11[k] * u * v;
}

void polarToCartesian(float r, float theta, float& x, float& y) {
    x = std::cos(theta) * r;
    y = std::sin(theta) * r;
}

void cartesianToPolar(float x, float y, float& r, float& theta) {
    r = std::sqrt(x * x + y * y);
    theta = std::atan2(y, x);
}

}  // namespace gritwell
