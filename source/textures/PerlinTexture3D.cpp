#include "textures/PerlinTexture3D.h"

#include "core/UnitRange.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {

// The octave sum, about -1..1, mapped to 0..1 in double and clamped.
[[gnu::always_inline]] inline float perlinValue(float n) { return clampUnit(static_cast<float>((n + 1.0) / 2.0)); }

}  // namespace

float PerlinTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float n = isPlanar(flags) ? Perlin::Get(x, y, r.octaves, r.frequency, r.amplitude)
                                    : Perlin::Get(x, y, z, r.octaves, r.frequency, r.amplitude);
    return perlinValue(n);
}

void PerlinTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    PointBlock p(points, n, 1.0f);
    if (isPlanar(flags))
        PerlinBatch::Get(p.x, p.y, n, r.octaves, r.frequency, r.amplitude, out);
    else
        PerlinBatch::Get(p.x, p.y, p.z, n, r.octaves, r.frequency, r.amplitude, out);
    for (int i = 0; i < n; ++i) out[i] = perlinValue(out[i]);
}

template class RecordTexture3D<PerlinTexture3D>;

}  // namespace gritwell
