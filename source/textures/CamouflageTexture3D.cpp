#include "textures/CamouflageTexture3D.h"

#include <cmath>

#include "noise/Perlin.h"

namespace gritwell {

namespace {

// The noise of layer 1 is taken at three times the warped position, so its
// blotches are a third the size of layer 2's.
constexpr float kLayer1Scale = 3.0f;

// Whether the layer covers the base: the noise magnitude at (u, v, w) exceeds
// the threshold.
bool covers(float u, float v, float w, float threshold) {
    return std::fabs(Perlin::noise(u, v, w)) > threshold;
}

float layer1(const CamouflageTexture3D::Record& r, bool planar, float x, float y, float z) {
    const float f = r.frequency;
    float u, v, w;
    if (planar) {
        u = f * Perlin::noise(x, y) + x;
        v = f * Perlin::noise(1.0f + x, y + 0.0f) + y;
        w = 0.0f;
    } else {
        u = f * Perlin::noise(x, y, z) + x;
        v = f * Perlin::noise(1.0f + x, y + 0.0f, z + 0.0f) + y;
        w = f * Perlin::noise(0.0f + x, y + 1.0f, z + 2.0f) + z;
    }
    return covers(kLayer1Scale * u, kLayer1Scale * v, kLayer1Scale * w, r.threshold) ? r.layer1Color
                                                                                      : r.baseColor;
}

// Layer 2 hands the noise its coordinates as (y, x, z) and stays
// three-dimensional in planar mode; the offset positions after the first are
// formed in double. Stored textures look as they do because of all three.
float layer2(const CamouflageTexture3D::Record& r, bool planar, float x, float y, float z) {
    const float f = r.frequency;
    const float a = x + 0.5f, b = y + 0.5f, c = z + 0.5f;
    const double ad = x + 0.5, bd = y + 0.5, cd = z + 0.5;
    const float first = Perlin::noise(b, a, c);
    const float second = Perlin::noise(static_cast<float>(0.0 + bd), static_cast<float>(1.0 + ad),
                                       static_cast<float>(0.0 + cd));
    float u, v, w;
    if (planar) {
        u = f * first + y;
        v = f * second + x;
        w = 0.0f;
    } else {
        const float third = Perlin::noise(static_cast<float>(1.0 + bd), static_cast<float>(0.0 + ad),
                                          static_cast<float>(2.0 + cd));
        u = f * first + y;
        v = f * second + z;
        w = f * third + x;
    }
    return covers(u, v, w, r.threshold) ? r.layer2Color : r.baseColor;
}

}  // namespace

float CamouflageTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const bool planar = isPlanar(flags);
    const float c1 = layer1(r, planar, x, y, z);
    const float c2 = layer2(r, planar, x, y, z);
    // The layers are told apart by value: a layer coloured like the base is
    // invisible and lets the one beneath show through.
    if (c1 == r.baseColor && c2 == r.baseColor) return r.baseColor;
    if (c1 != r.baseColor) return c1;
    return c2;
}

template class RecordTexture3D<CamouflageTexture3D>;

}  // namespace gritwell
