#include "textures/WoodTexture3D.h"

#include <cmath>

#include "noise/PRMan.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {

// The ring profile: rising over the first 80% of a period, dark up to 83%,
// back to light by the period's end.
constexpr float kRiseEnd = 0.8f;
constexpr float kFallStart = 0.83f;

// The rings at the moved point's x and z.
float ringIntensity(const WoodTexture3D::Record& r, float x, float z) {
    float ring = std::sqrt(x * x + z * z) * r.ringScale;
    const float wobble = static_cast<float>((Perlin::noise(ring) + 1.0) / 2.0);
    ring = ring + std::fabs(wobble);

    // The fraction by the cell-index rule: an exactly negative whole ring
    // number gives 1.0, not 0.0 (both read as light, so no value depends on it).
    ring = ring - static_cast<float>(cellIndex(ring));

    const float t =
        PRMan::smoothstep(0.0f, kRiseEnd, ring) - PRMan::smoothstep(kFallStart, 1.0f, ring);
    return PRMan::mmix(r.lightColor, r.darkColor, t);
}

// How far the octave sum n moves the point along (1, 1, 1).
float shiftBy(float n) { return static_cast<float>((n + 1.0) / 2.0); }

}  // namespace

float WoodTexture3D::evaluate(const Record& r, int, float x, float y, float z) {
    // The whole point moves along (1, 1, 1); the rings run along y, so only
    // the x and z of the moved point are ever measured.
    if (r.frequency > 0.0f) {
        const float shift = shiftBy(Perlin::Get(x, y, z, r.octaves, r.frequency, r.amplitude));
        x = x + shift;
        z = z + shift;
    }
    return ringIntensity(r, x, z);
}

// The octave sum across the block at once, then each point's rings.
void WoodTexture3D::evaluateBlock(const Record& r, int, const float* points, int n, float* out) {
    if (!(r.frequency > 0.0f)) {
        for (int i = 0; i < n; ++i) out[i] = ringIntensity(r, points[3 * i], points[3 * i + 2]);
        return;
    }
    PointBlock p(points, n, 1.0f);
    float sums[kBlockPoints];
    PerlinBatch::Get(p.x, p.y, p.z, n, r.octaves, r.frequency, r.amplitude, sums);
    for (int i = 0; i < n; ++i) {
        const float shift = shiftBy(sums[i]);
        out[i] = ringIntensity(r, points[3 * i] + shift, points[3 * i + 2] + shift);
    }
}

template class RecordTexture3D<WoodTexture3D>;

}  // namespace gritwell
