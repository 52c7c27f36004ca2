#include "textures/SimplexTexture3D.h"

#include "core/UnitRange.h"
#include "noise/Perlin.h"

namespace gritwell {

float SimplexTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float s = r.scale;
    const float n = isPlanar(flags) ? Perlin::snoise(s * x, s * y) : Perlin::snoise(s * x, s * y, s * z);
    return clampUnit(static_cast<float>(0.5 + n / 2.0));
}

template class RecordTexture3D<SimplexTexture3D>;

}  // namespace gritwell
