#include "textures/SnakeskinTexture3D.h"

#include <cmath>

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "core/Vec2.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

namespace gritwell {

namespace {

// The slant of the scale rows, -pi/8 rounded to single precision.
constexpr float kTheta = -0.39269909262657166f;
// 1/sqrt(2) in single precision: the shear that turns square cells into diamonds.
constexpr float kOneOverSqrt2 = 0.70710677f;
// The intensity of a scale without random colours.
constexpr float kScaleColor = 0.75f;

struct Rotation {
    float cosTheta;
    float sinTheta;
};

// Cosine and sine of the single-precision angle, taken in double and rounded
// once, on the first evaluation; a function-local static is initialised
// exactly once even when threads evaluate concurrently.
const Rotation& rotation() {
    static const Rotation kRotation{static_cast<float>(std::cos(static_cast<double>(kTheta))),
                                    static_cast<float>(std::sin(static_cast<double>(kTheta)))};
    return kRotation;
}

// Where the grid wobble samples the gradient noise: v x frequency, a
// coordinate on the lattice moved half a cell, where the noise would
// otherwise always be 0.
Vec2 wobbleAt(const Vec2& v, float frequency) {
    float x = v[0] * frequency;
    float y = v[1] * frequency;
    if (std::fmod(x, 1.0f) == 0.0f) x += 0.5f;
    if (std::fmod(y, 1.0f) == 0.0f) y += 0.5f;
    return {x, y};
}

// The second wobble reads the point before rotation, moved off the first's
// pattern: stored images depend on this.
Vec2 secondWobbleSource(float x, float y) { return {17.0f + x, y + 83.0f}; }

// How far a wobble moves a coordinate: the noise there times amplitude.
float wobble(float noise, float amplitude) { return noise * amplitude; }

// The point turned onto the scale rows and sheared into diamonds.
Vec2 slanted(float x, float y) {
    const Rotation& rot = rotation();
    const float qx = x * rot.cosTheta - rot.sinTheta * y;
    const float qy = x * rot.sinTheta + rot.cosTheta * y;
    return {kOneOverSqrt2 * (qx + qy), qy};
}

float squaredDistance(const Vec2& a, const Vec2& b) {
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    return dx * dx + dy * dy;
}

// Whether the point lies outside the rounding of any of the four scale
// corners: top and bottom (on the cell diagonal) first, then left and right.
// Every applicable corner is tested in turn; lying within one does not spare
// the point from the next.
bool outsideRoundedCorners(const SnakeskinTexture3D::Record& r, float hw, const Vec2& l) {
    float radius = r.roundCornersTopBottomRadius;
    float R = radius + hw;
    if (R >= l.x && R >= l.y && squaredDistance(l, {R, R}) >= radius * radius) return true;
    if (l.x >= 1.0f - R && l.y >= 1.0f - R && squaredDistance(l, {1.0f - R, 1.0f - R}) >= radius * radius)
        return true;

    radius = r.roundCornersLeftRightRadius;
    R = radius + hw;
    if (R >= l.x && l.y >= 1.0f - R && squaredDistance(l, {R, 1.0f - R}) >= radius * radius) return true;
    if (l.x >= 1.0f - R && R >= l.y && squaredDistance(l, {1.0f - R, R}) >= radius * radius) return true;
    return false;
}

// Where the scale noise's fractal sum is taken for grid point q, and the
// sum's octave count.
Vec2 scaleNoiseAt(const SnakeskinTexture3D::Record& r, float qx, float qy) {
    return {qx * r.scaleNoiseDetail, qy * r.scaleNoiseDetail};
}
float scaleNoiseOctaves(const SnakeskinTexture3D::Record& r) { return static_cast<float>(r.scaleNoiseOctaves); }

// The intensity at the wobbled grid point q: grooves, corners, then the
// scale's tone. noiseSum() gives the fractal sum at q, asked for only on a
// scale with noise added.
template <class NoiseSum>
float scaleIntensity(const SnakeskinTexture3D::Record& r, float qx, float qy, NoiseSum noiseSum) {
    const int ix = cellIndex(qx);
    const int iy = cellIndex(qy);
    const float fx = qx - static_cast<float>(ix);
    const float gx = static_cast<float>(wrapAdd(ix, 1)) - qx;
    const float fy = qy - static_cast<float>(iy);
    const float gy = static_cast<float>(wrapAdd(iy, 1)) - qy;

    // Within half a groove of a cell side (the side itself included, even
    // for a zero width) the point is in the black groove.
    const float hw = 0.5f * r.stripeWidth;
    const float hw2 = hw * hw;
    if (hw2 >= fx * fx || hw2 >= gx * gx || hw2 >= fy * fy || hw2 >= gy * gy) return 0.0f;

    if (r.roundCornersEnabled != 0 && outsideRoundedCorners(r, hw, {fx, fy})) return 0.0f;

    float c = kScaleColor;
    if (r.randomizeColors != 0) c = (r.maxColor - r.minColor) * CellNoise::cellNoise(qx, qy) + r.minColor;

    if (r.scaleNoiseAdd != 0) c = static_cast<float>(0.25 * noiseSum() + static_cast<double>(c));
    return clampUnit(c);
}

}  // namespace

float SnakeskinTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    Vec2 q = slanted(x, y);
    if (r.scaleVariabilityEnabled != 0) {
        const float f = r.scaleVariabilityFrequency;
        const float a = r.scaleVariabilityAmplitude;
        const Vec2 pa = wobbleAt(q, f);
        const Vec2 pb = wobbleAt(secondWobbleSource(x, y), f);
        q.x += wobble(Perlin::noise(pa.x, pa.y), a);
        q.y += wobble(Perlin::noise(pb.x, pb.y), a);
    }
    return scaleIntensity(r, q.x, q.y, [&] {
        const Vec2 s = scaleNoiseAt(r, q.x, q.y);
        return FBM::fBM(s.x, s.y, scaleNoiseOctaves(r), r.scaleNoiseLacunarity, r.scaleNoiseGain);
    });
}

// The same steps, each across the block: the wobble's two noise samples per
// point and the fractal sum through the batch noise. A sum the intensity
// would not read (in a groove) is computed and left.
void SnakeskinTexture3D::evaluateBlock(const Record& r, int, const float* points, int n, float* out) {
    float qx[kBlockPoints], qy[kBlockPoints];
    for (int i = 0; i < n; ++i) {
        const Vec2 q = slanted(points[3 * i], points[3 * i + 1]);
        qx[i] = q.x;
        qy[i] = q.y;
    }
    if (r.scaleVariabilityEnabled != 0) {
        const float f = r.scaleVariabilityFrequency;
        const float a = r.scaleVariabilityAmplitude;
        float ax[kBlockPoints]{}, ay[kBlockPoints]{}, bx[kBlockPoints]{}, by[kBlockPoints]{};
        for (int i = 0; i < n; ++i) {
            const Vec2 pa = wobbleAt({qx[i], qy[i]}, f);
            const Vec2 pb = wobbleAt(secondWobbleSource(points[3 * i], points[3 * i + 1]), f);
            ax[i] = pa.x;
            ay[i] = pa.y;
            bx[i] = pb.x;
            by[i] = pb.y;
        }
        PerlinBatch::noise(ax, ay, n, ax);
        PerlinBatch::noise(bx, by, n, bx);
        for (int i = 0; i < n; ++i) {
            qx[i] += wobble(ax[i], a);
            qy[i] += wobble(bx[i], a);
        }
    }
    float sums[kBlockPoints];
    if (r.scaleNoiseAdd != 0) {
        float sx[kBlockPoints], sy[kBlockPoints];
        for (int i = 0; i < n; ++i) {
            const Vec2 s = scaleNoiseAt(r, qx[i], qy[i]);
            sx[i] = s.x;
            sy[i] = s.y;
        }
        FBM::fBM(sx, sy, n, scaleNoiseOctaves(r), r.scaleNoiseLacunarity, r.scaleNoiseGain, sums);
    }
    for (int i = 0; i < n; ++i) out[i] = scaleIntensity(r, qx[i], qy[i], [&] { return sums[i]; });
}

template class RecordTexture3D<SnakeskinTexture3D>;

}  // namespace gritwell
