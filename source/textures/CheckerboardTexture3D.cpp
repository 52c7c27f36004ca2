#include "textures/CheckerboardTexture3D.h"

#include <cmath>

#include "core/FloatToInt.h"
#include "noise/CellNoise.h"

namespace gritwell {

namespace {

constexpr float kDark = 0.25f;
constexpr float kLight = 0.75f;

// Light when the evenness of x's and y's cells differ exactly as z's says,
// so the cube at the origin (all indices 0) is dark.
bool isLight(float x, float y, float z) {
    const bool ex = isEven(cellIndex(x));
    const bool ey = isEven(cellIndex(y));
    const bool ez = isEven(cellIndex(z));
    return (ex != ey) == ez;
}

}  // namespace

float CheckerboardTexture3D::evaluate(const Record& r, int, float x, float y, float z) {
    if (r.depth == 1) {
        float value = isLight(x, y, z) ? kLight : kDark;
        if (r.randomizeColors != 0) {
            float t = 2.0f * CellNoise::cellNoise(x, y, z) - 1.0f;
            t = r.variability * t;
            t = t / 4.0f;
            value = value + t;
        }
        return value;
    }

    float lo = kDark;
    float hi = kLight;
    float value = 0.0f;
    for (int i = 0; i < r.depth; ++i) {
        value = isLight(x, y, z) ? hi : lo;
        if (i == r.depth - 1) break;
        const float delta = static_cast<float>(1.0 / std::ldexp(1.0, i + 3));
        if (value == lo) {
            hi = lo + delta;
            lo = lo - delta;
        } else {
            // A light parent's sub-tones sit at and above it, a dark parent's
            // straddle it: stored records depend on this asymmetry.
            hi = hi + delta;
            lo = hi - delta;
        }
        // Once delta underflows to zero both tones equal the value, and every
        // finer level returns it: a huge depth from a damaged record ends here
        // with the bits the full loop would give.
        if (delta == 0.0f) break;
        x *= 2.0f;
        y *= 2.0f;
        z *= 2.0f;
    }
    return value;
}

template class RecordTexture3D<CheckerboardTexture3D>;

}  // namespace gritwell
