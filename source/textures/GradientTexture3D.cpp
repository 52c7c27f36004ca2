#include "textures/GradientTexture3D.h"

#include <cmath>

#include "core/FloatToInt.h"

namespace gritwell {

namespace {

// The ramp box: corner lo = (-1, -1, -1), size hi - lo = (2, 2, 2) on every axis.
constexpr float kLo = -1.0f;
constexpr float kSize = 2.0f;

// Brings a coordinate outside [-1, 1] back into [-1, 1) by an even shift, so
// the ramp repeats as a sawtooth of period 2. Exactly +-1 stays as it is:
// +1 is the top of the ramp. The cell index puts an exact negative integer
// one cell low, so -3 shifts by 4 to +1 while -2.9 shifts by 2 to -0.9.
float fold(float c) {
    if (c > 1.0f || c < -1.0f) {
        const int n = cellIndex(c);
        const int shift = isEven(n) ? n : wrapAdd(n, 1);
        c = c - static_cast<float>(shift);
    }
    return c;
}

// One later axis's factor, formed in double; the product is stored as float,
// as stored records always were.
float times(float r, float c) {
    const double factor = std::fabs(static_cast<double>(c) - kLo) / kSize;
    return static_cast<float>(r * factor);
}

}  // namespace

float GradientTexture3D::evaluate(const Record& r, int, float x, float y, float z) {
    x = fold(x);
    y = fold(y);
    z = fold(z);
    float value = 1.0f;
    if (r.xDir != 0) value = std::fabs(x - kLo) / kSize;
    if (r.yDir != 0) value = times(value, y);
    if (r.zDir != 0) value = times(value, z);
    return value;
}

template class RecordTexture3D<GradientTexture3D>;

}  // namespace gritwell
