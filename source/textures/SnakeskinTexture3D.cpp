#include "textures/SnakeskinTexture3D.h"

#include <cmath>

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "core/Vec2.h"
#include "noise/CellNoise.h"
#include "noise/FBM.h"
#include "noise/Perlin.h"

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

// The grid wobble: gradient noise at v x frequency, times amplitude. A
// coordinate on the lattice is moved half a cell, where the noise would
// otherwise always be 0.
float getVariabilityNoise(const Vec2& v, float frequency, float amplitude) {
    float x = v[0] * frequency;
    float y = v[1] * frequency;
    if (std::fmod(x, 1.0f) == 0.0f) x += 0.5f;
    if (std::fmod(y, 1.0f) == 0.0f) y += 0.5f;
    return Perlin::noise(x, y) * amplitude;
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

}  // namespace

float SnakeskinTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    const Rotation& rot = rotation();
    float qx = x * rot.cosTheta - rot.sinTheta * y;
    float qy = x * rot.sinTheta + rot.cosTheta * y;
    qx = kOneOverSqrt2 * (qx + qy);

    if (r.scaleVariabilityEnabled != 0) {
        const float f = r.scaleVariabilityFrequency;
        const float a = r.scaleVariabilityAmplitude;
        qx += getVariabilityNoise({qx, qy}, f, a);
        // The second wobble reads the point before rotation: stored images
        // depend on this.
        qy += getVariabilityNoise({17.0f + x, y + 83.0f}, f, a);
    }

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

    if (r.scaleNoiseAdd != 0) {
        const float d = r.scaleNoiseDetail;
        const float n = FBM::fBM(qx * d, qy * d, static_cast<float>(r.scaleNoiseOctaves),
                                 r.scaleNoiseLacunarity, r.scaleNoiseGain);
        c = static_cast<float>(0.25 * n + static_cast<double>(c));
    }
    return clampUnit(c);
}

template class RecordTexture3D<SnakeskinTexture3D>;

}  // namespace gritwell
