#include "textures/TurbulenceTexture3D.h"

#include "core/UnitRange.h"
#include "noise/Turbulence.h"

namespace gritwell {

float TurbulenceTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float octaves = static_cast<float>(r.octaves);
    const float n =
        isPlanar(flags)
            ? Turbulence::turbulence(r.scale * x, r.scale * y, octaves, r.lacunarity, r.gain)
            : Turbulence::turbulence(Vec3(r.scale * x, r.scale * y, r.scale * z), octaves, r.lacunarity, r.gain);
    return clampUnit(n);
}

void TurbulenceTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    PointBlock p(points, n, r.scale);
    const float octaves = static_cast<float>(r.octaves);
    if (isPlanar(flags))
        Turbulence::turbulence(p.x, p.y, n, octaves, r.lacunarity, r.gain, out);
    else
        Turbulence::turbulence(p.x, p.y, p.z, n, octaves, r.lacunarity, r.gain, out);
    for (int i = 0; i < n; ++i) out[i] = clampUnit(out[i]);
}

template class RecordTexture3D<TurbulenceTexture3D>;

}  // namespace gritwell
