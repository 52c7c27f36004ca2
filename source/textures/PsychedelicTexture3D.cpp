#include "textures/PsychedelicTexture3D.h"

#include <algorithm>

#include "noise/CellNoise.h"
#include "noise/Perlin.h"

namespace gritwell {

float PsychedelicTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float f = r.frequency;
    // The second warp samples the same noise one unit along x, so the two
    // warps are unrelated. The "+ 0.0f" terms stay: they turn -0 into +0.
    float u, v;
    if (isPlanar(flags)) {
        u = f * Perlin::noise(x, y) + x;
        v = f * Perlin::noise(1.0f + x, y + 0.0f) + y;
    } else {
        u = f * Perlin::noise(x, y, z) + x;
        v = f * Perlin::noise(1.0f + x, y + 0.0f, z + 0.0f) + y;
    }
    // z enters only through the warp.
    const float n = CellNoise::cellNoise(f * u, f * v);
    float value = (r.maxColor - r.minColor) * n + r.minColor;
    // The low bound last and the high bound through std::min, so a NaN
    // intensity comes out as 1 as it always has.
    value = std::min(1.0f, value);
    value = std::max(0.0f, value);
    return value;
}

template class RecordTexture3D<PsychedelicTexture3D>;

}  // namespace gritwell
