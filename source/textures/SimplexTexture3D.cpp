#include "textures/SimplexTexture3D.h"

#include "core/UnitRange.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

// The noise from about -1..1 to 0..1, clamped.
[[gnu::always_inline]] inline float unitOf(float n) { return clampUnit(static_cast<float>(0.5 + n / 2.0)); }

}  // namespace

float SimplexTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float s = r.scale;
    return unitOf(isPlanar(flags) ? Perlin::snoise(s * x, s * y) : Perlin::snoise(s * x, s * y, s * z));
}

void SimplexTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, r.scale);
    if (isPlanar(flags))
        Perlin::snoise(p.x, p.y, n, out);
    else
        Perlin::snoise(p.x, p.y, p.z, n, out);
    for (int i = 0; i < n; ++i) out[i] = unitOf(out[i]);
}

template class RecordTexture3D<SimplexTexture3D>;

}  // namespace gritwell
