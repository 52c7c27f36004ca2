#include "textures/SpeckledStoneTexture3D.h"

#include <cmath>

#include "noise/PRMan.h"
#include "noise/Perlin.h"

namespace gritwell {

float SpeckledStoneTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float sx = x / r.scale;
    const float sy = y / r.scale;
    const float sz = z / r.scale;
    const float n = isPlanar(flags) ? Perlin::noise(sx, sy) : Perlin::noise(sx, sy, sz);
    const float base = static_cast<float>((n + 1.0) / 2.0);

    // The shade stays a double throughout: no integer conversion, so a
    // damaged exponent or shade count yields an infinity or NaN, never UB.
    const double shades = static_cast<double>(r.nShades);
    const double q = std::floor(0.5 + shades * std::pow(static_cast<double>(base),
                                                         static_cast<double>(r.exponent)));
    // nShades 0 divides by zero unguarded, giving NaN or an infinity: that is
    // what records holding it have always shown.
    const float t = static_cast<float>(q / shades);
    return PRMan::mix(r.grainColor, r.baseColor, t);
}

template class RecordTexture3D<SpeckledStoneTexture3D>;

}  // namespace gritwell
