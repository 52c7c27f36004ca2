#include "textures/FBMTexture3D.h"

#include "core/UnitRange.h"
#include "noise/FBM.h"

namespace gritwell {

namespace {

// The fractal sum, about -1..1, mapped to 0..1 in double and clamped.
[[gnu::always_inline]] inline float fbmValue(float n) { return clampUnit(static_cast<float>(0.5 + n / 2.0)); }

}  // namespace

float FBMTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float octaves = static_cast<float>(r.octaves);
    const float n = isPlanar(flags)
                        ? FBM::fBM(r.scale * x, r.scale * y, octaves, r.lacunarity, r.gain)
                        : FBM::fBM(Vec3(r.scale * x, r.scale * y, r.scale * z), octaves, r.lacunarity, r.gain);
    return fbmValue(n);
}

void FBMTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    PointBlock p(points, n, r.scale);
    const float octaves = static_cast<float>(r.octaves);
    if (isPlanar(flags))
        FBM::fBM(p.x, p.y, n, octaves, r.lacunarity, r.gain, out);
    else
        FBM::fBM(p.x, p.y, p.z, n, octaves, r.lacunarity, r.gain, out);
    for (int i = 0; i < n; ++i) out[i] = fbmValue(out[i]);
}

template class RecordTexture3D<FBMTexture3D>;

}  // namespace gritwell
