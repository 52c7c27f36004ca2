#include "textures/CamouflageTexture3D.h"

#include <cmath>

#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

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

// The 3-D layers as above, sample by sample over the block.
void CamouflageTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    if (isPlanar(flags)) return evaluateEach(r, flags, points, n, out);
    const PointBlock p(points, n, 1.0f);
    const float* x = p.x;
    const float* y = p.y;
    const float* z = p.z;
    const float f = r.frequency;
    float u[kBlockPoints], v[kBlockPoints], w[kBlockPoints], sample[kBlockPoints];
    bool layer1Covers[kBlockPoints];

    // Layer 1: the point warped by three samples, then sampled at three times that.
    PerlinBatch::noise(x, y, z, sample, n);
    for (int i = 0; i < n; ++i) u[i] = f * sample[i] + x[i];
    for (int i = 0; i < n; ++i) {
        v[i] = 1.0f + x[i];
        w[i] = y[i] + 0.0f;
        sample[i] = z[i] + 0.0f;
    }
    PerlinBatch::noise(v, w, sample, sample, n);
    for (int i = 0; i < n; ++i) v[i] = f * sample[i] + y[i];
    float a[kBlockPoints], b[kBlockPoints], c[kBlockPoints];
    for (int i = 0; i < n; ++i) {
        a[i] = 0.0f + x[i];
        b[i] = y[i] + 1.0f;
        c[i] = z[i] + 2.0f;
    }
    PerlinBatch::noise(a, b, c, sample, n);
    for (int i = 0; i < n; ++i) {
        w[i] = f * sample[i] + z[i];
        u[i] = kLayer1Scale * u[i];
        v[i] = kLayer1Scale * v[i];
        w[i] = kLayer1Scale * w[i];
    }
    PerlinBatch::noise(u, v, w, sample, n);
    for (int i = 0; i < n; ++i) layer1Covers[i] = std::fabs(sample[i]) > r.threshold;

    // Layer 2: (y, x, z) and offsets formed in double.
    for (int i = 0; i < n; ++i) {
        a[i] = y[i] + 0.5f;
        b[i] = x[i] + 0.5f;
        c[i] = z[i] + 0.5f;
    }
    PerlinBatch::noise(a, b, c, sample, n);
    for (int i = 0; i < n; ++i) u[i] = f * sample[i] + y[i];
    for (int i = 0; i < n; ++i) {
        a[i] = static_cast<float>(0.0 + (y[i] + 0.5));
        b[i] = static_cast<float>(1.0 + (x[i] + 0.5));
        c[i] = static_cast<float>(0.0 + (z[i] + 0.5));
    }
    PerlinBatch::noise(a, b, c, sample, n);
    for (int i = 0; i < n; ++i) v[i] = f * sample[i] + z[i];
    for (int i = 0; i < n; ++i) {
        a[i] = static_cast<float>(1.0 + (y[i] + 0.5));
        b[i] = static_cast<float>(0.0 + (x[i] + 0.5));
        c[i] = static_cast<float>(2.0 + (z[i] + 0.5));
    }
    PerlinBatch::noise(a, b, c, sample, n);
    for (int i = 0; i < n; ++i) w[i] = f * sample[i] + x[i];
    PerlinBatch::noise(u, v, w, sample, n);

    for (int i = 0; i < n; ++i) {
        const float c1 = layer1Covers[i] ? r.layer1Color : r.baseColor;
        const float c2 = std::fabs(sample[i]) > r.threshold ? r.layer2Color : r.baseColor;
        out[i] = c1 == r.baseColor && c2 == r.baseColor ? r.baseColor : c1 != r.baseColor ? c1 : c2;
    }
}

template class RecordTexture3D<CamouflageTexture3D>;

}  // namespace gritwell
