#include "textures/CamouflageTexture3D.h"

#include <cmath>

#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {

struct Position {
    float x, y, z;
};

// ---- Where the layers sample ------------------------------------------------
//
// Each layer warps the point by three noise samples, c + frequency * sample
// per coordinate, and covers where the noise at the warped position exceeds
// the threshold in magnitude. Stored textures look as they do because of
// every offset, order and precision below.

// Layer 1 samples at the point and at two offsets from it.
[[gnu::always_inline]] inline Position layer1Second(float x, float y, float z) {
    return {1.0f + x, y + 0.0f, z + 0.0f};
}
[[gnu::always_inline]] inline Position layer1Third(float x, float y, float z) {
    return {0.0f + x, y + 1.0f, z + 2.0f};
}

// Layer 2 hands the noise its coordinates as (y, x, z), moved by half a
// cell; the offsets of its second and third samples are added in double.
[[gnu::always_inline]] inline Position layer2First(float x, float y, float z) {
    return {y + 0.5f, x + 0.5f, z + 0.5f};
}
[[gnu::always_inline]] inline Position layer2Offset(float x, float y, float z, double dy, double dx, double dz) {
    return {static_cast<float>(dy + (y + 0.5)), static_cast<float>(dx + (x + 0.5)), static_cast<float>(dz + (z + 0.5))};
}
[[gnu::always_inline]] inline Position layer2Second(float x, float y, float z) {
    return layer2Offset(x, y, z, 0.0, 1.0, 0.0);
}
[[gnu::always_inline]] inline Position layer2Third(float x, float y, float z) {
    return layer2Offset(x, y, z, 1.0, 0.0, 2.0);
}

[[gnu::always_inline]] inline float warped(float frequency, float sample, float c) { return frequency * sample + c; }

// The noise of layer 1 is taken at three times the warped position, so its
// blotches are a third the size of layer 2's.
constexpr float kLayer1Scale = 3.0f;

[[gnu::always_inline]] inline Position layer1Scaled(const Position& w) {
    return {kLayer1Scale * w.x, kLayer1Scale * w.y, kLayer1Scale * w.z};
}

// Layer 1's position in space from its three samples n1, n2, n3.
[[gnu::always_inline]] inline Position layer1Warp(float f, float n1, float n2, float n3, float x, float y, float z) {
    return layer1Scaled({warped(f, n1, x), warped(f, n2, y), warped(f, n3, z)});
}

// Layer 2's position in space from its three samples, which move y, z
// and x.
[[gnu::always_inline]] inline Position layer2Warp(float f, float n1, float n2, float n3, float x, float y, float z) {
    return {warped(f, n1, y), warped(f, n2, z), warped(f, n3, x)};
}

// ---- Colour -----------------------------------------------------------------

// A layer's colour where the noise at its warped position is n.
[[gnu::always_inline]] inline float layerColor(const CamouflageTexture3D::Record& r, float n, float color) {
    return std::fabs(n) > r.threshold ? color : r.baseColor;
}

// The layers are told apart by value: a layer coloured like the base is
// invisible and lets the one beneath show through.
[[gnu::always_inline]] inline float topColor(const CamouflageTexture3D::Record& r, float c1, float c2) {
    if (c1 == r.baseColor && c2 == r.baseColor) return r.baseColor;
    if (c1 != r.baseColor) return c1;
    return c2;
}

// ---- One point --------------------------------------------------------------

float noiseAt(const Position& p) { return Perlin::noise(p.x, p.y, p.z); }

// The noise at layer 1's warped position. Planar mode warps only x and y,
// by 2-D samples, and leaves w at 0.
float layer1(const CamouflageTexture3D::Record& r, bool planar, float x, float y, float z) {
    const float f = r.frequency;
    if (planar) {
        const Position second = layer1Second(x, y, z);
        const float u = warped(f, Perlin::noise(x, y), x);
        const float v = warped(f, Perlin::noise(second.x, second.y), y);
        return noiseAt(layer1Scaled({u, v, 0.0f}));
    }
    return noiseAt(layer1Warp(f, Perlin::noise(x, y, z), noiseAt(layer1Second(x, y, z)),
                              noiseAt(layer1Third(x, y, z)), x, y, z));
}

// The noise at layer 2's warped position. Layer 2 stays three-dimensional
// in planar mode, but for its warp: two samples, moving y and x, and w at 0.
float layer2(const CamouflageTexture3D::Record& r, bool planar, float x, float y, float z) {
    const float f = r.frequency;
    const float first = noiseAt(layer2First(x, y, z));
    const float second = noiseAt(layer2Second(x, y, z));
    if (planar) return Perlin::noise(warped(f, first, y), warped(f, second, x), 0.0f);
    return noiseAt(layer2Warp(f, first, second, noiseAt(layer2Third(x, y, z)), x, y, z));
}

// ---- A block ----------------------------------------------------------------

// The noise at at(x[i], y[i], z[i]) for every point of the block.
template <class At>
void noiseAcross(At at, const float* x, const float* y, const float* z, int n, float* out) {
    float a[CamouflageTexture3D::kBlockPoints], b[CamouflageTexture3D::kBlockPoints],
        c[CamouflageTexture3D::kBlockPoints];
    for (int i = 0; i < n; ++i) {
        const Position p = at(x[i], y[i], z[i]);
        a[i] = p.x;
        b[i] = p.y;
        c[i] = p.z;
    }
    PerlinBatch::noise(a, b, c, n, out);
}

// The noise at a layer's warped position, warp(f, n1, n2, n3, x, y, z), for
// every point of the block, from its three samples.
template <class Warp>
void warpedNoiseAcross(Warp warp, float f, const float* n1, const float* n2, const float* n3, const float* x,
                       const float* y, const float* z, int n, float* out) {
    float u[CamouflageTexture3D::kBlockPoints], v[CamouflageTexture3D::kBlockPoints],
        w[CamouflageTexture3D::kBlockPoints];
    for (int i = 0; i < n; ++i) {
        const Position p = warp(f, n1[i], n2[i], n3[i], x[i], y[i], z[i]);
        u[i] = p.x;
        v[i] = p.y;
        w[i] = p.z;
    }
    PerlinBatch::noise(u, v, w, n, out);
}

}  // namespace

float CamouflageTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const bool planar = isPlanar(flags);
    const float c1 = layerColor(r, layer1(r, planar, x, y, z), r.layer1Color);
    const float c2 = layerColor(r, layer2(r, planar, x, y, z), r.layer2Color);
    return topColor(r, c1, c2);
}

// The 3-D layers as above, sample by sample over the block.
void CamouflageTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    if (isPlanar(flags)) return evaluateEach(r, flags, points, n, out);
    const PointBlock p(points, n, 1.0f);
    const float f = r.frequency;
    float n1[kBlockPoints], n2[kBlockPoints], n3[kBlockPoints], layer1Noise[kBlockPoints];

    PerlinBatch::noise(p.x, p.y, p.z, n, n1);
    noiseAcross(layer1Second, p.x, p.y, p.z, n, n2);
    noiseAcross(layer1Third, p.x, p.y, p.z, n, n3);
    warpedNoiseAcross(layer1Warp, f, n1, n2, n3, p.x, p.y, p.z, n, layer1Noise);

    noiseAcross(layer2First, p.x, p.y, p.z, n, n1);
    noiseAcross(layer2Second, p.x, p.y, p.z, n, n2);
    noiseAcross(layer2Third, p.x, p.y, p.z, n, n3);
    warpedNoiseAcross(layer2Warp, f, n1, n2, n3, p.x, p.y, p.z, n, out);

    for (int i = 0; i < n; ++i)
        out[i] = topColor(r, layerColor(r, layer1Noise[i], r.layer1Color), layerColor(r, out[i], r.layer2Color));
}

template class RecordTexture3D<CamouflageTexture3D>;

}  // namespace gritwell
