#include "textures/PerlinTexture3D.h"

#include "core/UnitRange.h"
#include "noise/Perlin.h"

namespace gritwell {

float PerlinTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float n = isPlanar(flags) ? Perlin::Get(x, y, r.octaves, r.frequency, r.amplitude)
                                    : Perlin::Get(x, y, z, r.octaves, r.frequency, r.amplitude);
    return clampUnit(static_cast<float>((n + 1.0) / 2.0));
}

template class RecordTexture3D<PerlinTexture3D>;

}  // namespace gritwell
