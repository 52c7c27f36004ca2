#include "textures/ErodedTexture3D.h"

#include "core/UnitRange.h"
#include "noise/PRMan.h"
#include "textures/AbsoluteOctaveSum.h"

namespace gritwell {

namespace {
// Octaves start at frequency 4, each weighted 4 / f: the first counts in full.
constexpr float kFirstFrequency = 4.0f;
constexpr double kWeight = 4.0;
// The cubed sum turns from black to white across this narrow band.
constexpr float kEdgeLow = 0.0001f;
constexpr float kEdgeHigh = 0.003f;

[[gnu::always_inline]] inline float erodedValue(const ErodedTexture3D::Record& r, float sum) {
    return clampUnit(PRMan::smoothstep(kEdgeLow, kEdgeHigh, cubed(r.magnitude, sum)));
}
}  // namespace

float ErodedTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    return erodedValue(
        r, absoluteOctaveSum(r.scale * x, r.scale * y, r.scale * z, isPlanar(flags), kFirstFrequency, kWeight));
}

void ErodedTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, r.scale);
    absoluteOctaveSum(p.x, p.y, p.z, n, isPlanar(flags), kFirstFrequency, kWeight, out);
    for (int i = 0; i < n; ++i) out[i] = erodedValue(r, out[i]);
}

template class RecordTexture3D<ErodedTexture3D>;

}  // namespace gritwell
