#include "textures/CheetahTexture3D.h"

#include "noise/ARMan.h"
#include "noise/CellNoise.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {

constexpr float kSpot = 0.1f;
constexpr float kGround = 0.8f;

constexpr float kWobbleFrequency = 3.0f;  // edge noise cycles per cell
constexpr float kWobbleAmplitude = 0.2f;  // edge shift at full spot variability

// A spot's diameter is the spot size times 0.75 .. 1.25.
constexpr float kSizeBase = 0.75f;
constexpr float kSizeRange = 0.5f;

}  // namespace

// Every product and sum is taken left to right in float.
float CheetahTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    float f1 = 0.0f;
    float f2 = 0.0f;
    float wobble = 0.0f;
    float sizeNoise = 0.0f;
    if (isPlanar(flags)) {
        const float p[2] = {x, y};
        float pos1[2];
        float pos2[2];
        ARMan::voronoi_f1f2_2d(p, r.layoutVariability, f1, pos1, f2, pos2);
        wobble = Perlin::noise(kWobbleFrequency * x, kWobbleFrequency * y);
        sizeNoise = CellNoise::cellNoise(pos1[0], pos1[1]);
    } else {
        const float p[3] = {x, y, z};
        float pos1[3];
        float pos2[3];
        ARMan::voronoi_f1f2_3d(p, r.layoutVariability, f1, pos1, f2, pos2);
        wobble = Perlin::noise(kWobbleFrequency * x, kWobbleFrequency * y, kWobbleFrequency * z);
        sizeNoise = CellNoise::cellNoise(pos1[0], pos1[1], pos1[2]);
    }

    const float d = f1 + kWobbleAmplitude * r.spotVariability * wobble;
    // Seeded by the nearest feature's position, so the whole spot shares it.
    const float s = r.spotSize * (kSizeBase + kSizeRange * sizeNoise);
    return d < 0.5f * s ? kSpot : kGround;
}

void CheetahTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    if (isPlanar(flags)) return evaluateEach(r, flags, points, n, out);
    const PointBlock p(points, n, 1.0f);
    float f1[kBlockPoints], nearestX[kBlockPoints], nearestY[kBlockPoints], nearestZ[kBlockPoints];
    ARMan::voronoi_f1_3d(p.x, p.y, p.z, n, r.layoutVariability, f1, nearestX, nearestY, nearestZ);
    const PointBlock wobbleAt(points, n, kWobbleFrequency);
    float wobble[kBlockPoints];
    PerlinBatch::noise(wobbleAt.x, wobbleAt.y, wobbleAt.z, wobble, n);
    for (int i = 0; i < n; ++i) {
        const float sizeNoise = CellNoise::cellNoise(nearestX[i], nearestY[i], nearestZ[i]);
        const float d = f1[i] + kWobbleAmplitude * r.spotVariability * wobble[i];
        const float s = r.spotSize * (kSizeBase + kSizeRange * sizeNoise);
        out[i] = d < 0.5f * s ? kSpot : kGround;
    }
}

template class RecordTexture3D<CheetahTexture3D>;

}  // namespace gritwell
