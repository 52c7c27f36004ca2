#include "textures/DentedTexture3D.h"

#include "core/UnitRange.h"
#include "textures/AbsoluteOctaveSum.h"

namespace gritwell {

namespace {
// Octaves start at frequency 1, each weighted 1 / f.
constexpr float kFirstFrequency = 1.0f;
constexpr double kWeight = 1.0;

[[gnu::always_inline]] inline float dentedValue(const DentedTexture3D::Record& r, float sum) {
    return clampUnit(cubed(r.magnitude, sum));
}
}  // namespace

float DentedTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    return dentedValue(
        r, absoluteOctaveSum(r.scale * x, r.scale * y, r.scale * z, isPlanar(flags), kFirstFrequency, kWeight));
}

void DentedTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, r.scale);
    absoluteOctaveSum(p.x, p.y, p.z, n, isPlanar(flags), kFirstFrequency, kWeight, out);
    for (int i = 0; i < n; ++i) out[i] = dentedValue(r, out[i]);
}

template class RecordTexture3D<DentedTexture3D>;

}  // namespace gritwell
