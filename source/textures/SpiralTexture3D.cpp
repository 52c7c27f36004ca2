#include "textures/SpiralTexture3D.h"

#include "core/FloatToInt.h"
#include "core/Rounding.h"

namespace gritwell {

float SpiralTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    if (!isPlanar(flags)) {
        // Twist: turn (x, z) about the y axis by spiralRate radians per unit of y.
        float radius, theta;
        cartesianToPolar(x, z, radius, theta);
        theta = theta + r.spiralRate * y;
        polarToCartesian(radius, theta, x, z);
    } else {
        x = y * r.spiralRate + x;
    }

    // Distance to the planes bounding x's cell; equality counts as on the
    // line. The cell index puts an exact negative integer one cell low.
    const int f = cellIndex(x);
    const float d1 = x - static_cast<float>(f);
    const float d2 = static_cast<float>(wrapAdd(f, 1)) - x;
    const float w = r.stripeWidth / 2.0f;
    return (w * w >= d1 * d1 || w * w >= d2 * d2) ? 0.0f : 1.0f;
}

template class RecordTexture3D<SpiralTexture3D>;

}  // namespace gritwell
