#include "textures/DentedTexture3D.h"

#include <cmath>

#include "core/UnitRange.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

constexpr int kOctaves = 6;
constexpr float kFirstFrequency = 1.0f;

}  // namespace

float DentedTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
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
        sum = static_cast<float>(sum + std::fabs(0.5 - static_cast<double>(unit)) / f);
        f *= 2.0f;
    }

    return clampUnit(r.magnitude * (sum * sum * sum));
}

template class RecordTexture3D<DentedTexture3D>;

}  // namespace gritwell
