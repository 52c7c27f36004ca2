#include "textures/NestedShapesTexture3D.h"

#include <cmath>

#include "core/FloatToInt.h"

namespace gritwell {

namespace {

// 1/sqrt(2) and 1/sqrt(3) as they have always been stored, in single
// precision, so square tubes and cubes measure max(|x|, ...) only up to rounding.
constexpr float kInvRoot2 = 0.70710677f;
constexpr float kInvRoot3 = 0.57735026f;

float maxOf(float a, float b) { return a < b ? b : a; }

float rootToFloat(float v) { return static_cast<float>(std::sqrt(static_cast<double>(v))); }

}  // namespace

float NestedShapesTexture3D::evaluate(const Record& r, int, float x, float y, float z) {
    float d;
    switch (r.shapeType) {
        case Cylinder:
            d = rootToFloat(x * x + y * y);
            break;
        case Sphere:
            d = rootToFloat(x * x + y * y + z * z);
            break;
        case SquareTube: {
            const float m = maxOf(std::fabs(x), std::fabs(y));
            d = static_cast<float>(kInvRoot2 * std::sqrt(static_cast<double>(m * m + m * m)));
            break;
        }
        case Cube: {
            const float m = maxOf(maxOf(std::fabs(x), std::fabs(y)), std::fabs(z));
            d = static_cast<float>(kInvRoot3 * std::sqrt(static_cast<double>(m * m + m * m + m * m)));
            break;
        }
        default:
            // Any other value names no shape: the plain white ground.
            return 1.0f;
    }

    // d is never negative, so truncation is its whole part; NaN and huge d
    // take the integer indefinite and end up off every shell.
    const int n = truncToInt(d);
    const float d1 = d - static_cast<float>(n);
    const float d2 = static_cast<float>(wrapAdd(n, 1)) - d;
    const float w = r.thickness / 2.0f;
    // Exactly half a thickness away still counts as on the shell.
    return (w * w >= d1 * d1 || w * w >= d2 * d2) ? 0.0f : 1.0f;
}

template class RecordTexture3D<NestedShapesTexture3D>;

}  // namespace gritwell
