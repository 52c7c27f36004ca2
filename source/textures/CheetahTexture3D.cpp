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

// The edge noise in the plane.
float planarWobble(float x, float y) { return Perlin::noise(kWobbleFrequency * x, kWobbleFrequency * y); }

// A spot's diameter is the spot size times 0.75 .. 1.25.
constexpr float kSizeBase = 0.75f;
constexpr float kSizeRange = 0.5f;

// The wobbled distance to the nearest feature, d, and the spot's radius
// (half its size), seeded by that feature's position (cell noise), so the
// whole spot shares it. Every product and sum is left to right in float.
float wobbledDistance(const CheetahTexture3D::Record& r, float f1, float wobble) {
    return f1 + kWobbleAmplitude * r.spotVariability * wobble;
}
float spotRadius(const CheetahTexture3D::Record& r, float sizeNoise) {
    return 0.5f * (r.spotSize * (kSizeBase + kSizeRange * sizeNoise));
}

// In the plane a spot is the disc d < radius.
float planarSpot(const CheetahTexture3D::Record& r, float f1, float wobble, float sizeNoise) {
    return wobbledDistance(r, f1, wobble) < spotRadius(r, sizeNoise) ? kSpot : kGround;
}

// In space a spot is a ball, and a slice through balls of the disc's radius
// would show smaller and fewer spots than the plane. A ball of radius R
// covers, on average over slices, (4/3) pi R^3 of a unit cell's worth of
// plane where a disc of radius a covers pi a^2: R^3 = 0.75 a^2 makes every
// slice look as covered as the plane. Compared as d^3 < 0.75 a^2, which
// keeps the sign of a wobbled d below zero.
float solidSpot(const CheetahTexture3D::Record& r, float f1, float wobble, float sizeNoise) {
    const float d = wobbledDistance(r, f1, wobble);
    const float a = spotRadius(r, sizeNoise);
    return d * d * d < 0.75f * a * a ? kSpot : kGround;
}

// A slice through a regular 3-D grid of features shows its layers: spots
// crowd the slices through the layers and thin out between them, unless the
// features spread over nearly the whole cell along every axis. So space
// spreads them 1 - (1 - v)^3 of a cell for a layout variability v: 0 is
// still the regular grid and 1 the whole cell, while the default 0.75
// spreads them over 98% of it and every slice shows the plane's coverage.
float solidJitter(float v) {
    const float u = 1.0f - v;
    return 1.0f - u * u * u;
}

}  // namespace

float CheetahTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    if (isPlanar(flags)) {
        const float p[2] = {x, y};
        float f1, f2;
        float pos1[2];
        float pos2[2];
        ARMan::voronoi_f1f2_2d(p, r.layoutVariability, f1, pos1, f2, pos2);
        return planarSpot(r, f1, planarWobble(x, y), CellNoise::cellNoise(pos1[0], pos1[1]));
    }
    const float p[3] = {x, y, z};
    float f1;
    float pos1[3];
    ARMan::voronoi_f1_3d(p, solidJitter(r.layoutVariability), f1, pos1);
    return solidSpot(r, f1, Perlin::noise(kWobbleFrequency * x, kWobbleFrequency * y, kWobbleFrequency * z),
                     CellNoise::cellNoise(pos1[0], pos1[1], pos1[2]));
}

// The feature searches across the block at once, then each point's spot.
void CheetahTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, 1.0f);
    float f1[kBlockPoints], nearestX[kBlockPoints], nearestY[kBlockPoints];
    if (isPlanar(flags)) {
        float f2[kBlockPoints], secondX[kBlockPoints], secondY[kBlockPoints];
        ARMan::voronoi_f1f2_2d(p.x, p.y, n, r.layoutVariability, f1, f2, nearestX, nearestY, secondX, secondY);
        for (int i = 0; i < n; ++i)
            out[i] = planarSpot(r, f1[i], planarWobble(p.x[i], p.y[i]), CellNoise::cellNoise(nearestX[i], nearestY[i]));
        return;
    }
    float nearestZ[kBlockPoints];
    ARMan::voronoi_f1_3d(p.x, p.y, p.z, n, solidJitter(r.layoutVariability), f1, nearestX, nearestY, nearestZ);
    const PointBlock wobbleAt(points, n, kWobbleFrequency);
    float wobble[kBlockPoints];
    PerlinBatch::noise(wobbleAt.x, wobbleAt.y, wobbleAt.z, n, wobble);
    for (int i = 0; i < n; ++i)
        out[i] = solidSpot(r, f1[i], wobble[i], CellNoise::cellNoise(nearestX[i], nearestY[i], nearestZ[i]));
}

template class RecordTexture3D<CheetahTexture3D>;

}  // namespace gritwell
