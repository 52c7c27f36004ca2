#include "textures/AbsoluteOctaveSum.h"

#include <cmath>

#include "noise/Perlin.h"

namespace gritwell {

namespace {
constexpr int kOctaves = 6;
}

float absoluteOctaveSum(float qx, float qy, float qz, bool planar, float firstFrequency, double weight) {
    float sum = 0.0f;
    float f = firstFrequency;
    // The counter is compared as a double, as stored records were always evaluated.
    for (int i = 0; static_cast<double>(i) < kOctaves; ++i) {
        const float n = planar ? Perlin::noise(f * qx, f * qy) : Perlin::noise(f * qx, f * qy, f * qz);
        const float unit = static_cast<float>(0.5 + static_cast<double>(n) / 2.0);
        sum = static_cast<float>(sum + std::fabs(0.5 - static_cast<double>(unit)) * weight / f);
        f *= 2.0f;
    }
    return sum;
}

}  // namespace gritwell
