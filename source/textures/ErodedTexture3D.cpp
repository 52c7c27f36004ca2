#include "textures/ErodedTexture3D.h"

#include <cmath>

#include "core/UnitRange.h"
#include "noise/PRMan.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

constexpr int kOctaves = 6;
constexpr float kFirstFrequency = 4.0f;
// The cubed sum turns from black to white across this narrow band.
constexpr float kEdgeLow = 0.0001f;
constexpr float kEdgeHigh = 0.003f;

}  // namespace

float ErodedTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const bool planar = isPlanar(flags);
    const float qx = r.scale * x;
    const float qy = r.scale * y;
    const float qz = r.scale * z;

    float sum = 0.0f;
    float f = kFirstFrequency;
    // The counter is compared as a double, as stored records were always evaluated.
    for (int i = 0; static_cast<double>(i) < kOctaves; ++i) {
        const float n = planar ? Perlin::noise(f * qx, f * qy) : Perlin::noise(f * qx, f * qy, f * qz);
        const float unit = static_cast<float>(0.5 + static_cast<double>(n) / 2.0);
        // Weight 4 / f: the first octave, at frequency 4, counts in full.
        sum = static_cast<float>(sum + std::fabs(0.5 - static_cast<double>(unit)) * 4.0 / f);
        f *= 2.0f;
    }

    const float c = r.magnitude * (sum * sum * sum);
    return clampUnit(PRMan::smoothstep(kEdgeLow, kEdgeHigh, c));
}

template class RecordTexture3D<ErodedTexture3D>;

}  // namespace gritwell
