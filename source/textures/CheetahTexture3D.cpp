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

namespace {

// A spot where the wobbled distance to the nearest feature is below half
// the spot's size, seeded by that feature's position (cell noise), so the
// whole spot shares it. Every product and sum is left to right in float.
float spotOrGround(const CheetahTexture3D::Record& r, float f1, float wobble, float sizeNoise) {
    const float d = f1 + kWobbleAmplitude * r.spotVariability * wobble;
    const float s = r.spotSize * (kSizeBase + kSizeRange * sizeNoise);
    return d < 0.5f * s ? kSpot : kGround;
}

}  // namespace

float CheetahTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    if (isPlanar(flags)) {
        const float p[2] = {x, y};
        float f1, f2;
        float pos1[2];
        float pos2[2];
        ARMan::voronoi_f1f2_2d(p, r.layoutVariability, f1, pos1, f2, pos2);
        return spotOrGround(r, f1, Perlin::noise(kWobbleFrequency * x, kWobbleFrequency * y),
                            CellNoise::cellNoise(pos1[0], pos1[1]));
    }
    const float p[3] = {x, y, z};
    float f1, f2;
    float pos1[3];
    float pos2[3];
    ARMan::voronoi_f1f2_3d(p, r.layoutVariability, f1, pos1, f2, pos2);
    return spotOrGround(r, f1, Perlin::noise(kWobbleFrequency * x, kWobbleFrequency * y, kWobbleFrequency * z),
                        CellNoise::cellNoise(pos1[0], pos1[1], pos1[2]));
}

// The feature searches across the block at once, then each point's spot.
void CheetahTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, 1.0f);
    float f1[kBlockPoints], nearestX[kBlockPoints], nearestY[kBlockPoints];
    if (isPlanar(flags)) {
        float f2[kBlockPoints];
        ARMan::voronoi_f1f2_2d(p.x, p.y, n, r.layoutVariability, f1, f2, nearestX, nearestY);
        for (int i = 0; i < n; ++i) {
            const float wobble = Perlin::noise(kWobbleFrequency * p.x[i], kWobbleFrequency * p.y[i]);
            out[i] = spotOrGround(r, f1[i], wobble, CellNoise::cellNoise(nearestX[i], nearestY[i]));
        }
        return;
    }
    float nearestZ[kBlockPoints];
    ARMan::voronoi_f1_3d(p.x, p.y, p.z, n, r.layoutVariability, f1, nearestX, nearestY, nearestZ);
    const PointBlock wobbleAt(points, n, kWobbleFrequency);
    float wobble[kBlockPoints];
    PerlinBatch::noise(wobbleAt.x, wobbleAt.y, wobbleAt.z, wobble, n);
    for (int i = 0; i < n; ++i)
        out[i] = spotOrGround(r, f1[i], wobble[i], CellNoise::cellNoise(nearestX[i], nearestY[i], nearestZ[i]));
}

template class RecordTexture3D<CheetahTexture3D>;

}  // namespace gritwell
