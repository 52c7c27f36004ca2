#include "textures/SimpleMarbleTexture3D.h"

#include <array>

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "noise/PRMan.h"
#include "textures/SettlingOctaveSum.h"

namespace gritwell {

namespace {

// ---- Colour ramp ------------------------------------------------------------

constexpr int kKnots = 13;

// The marble tones: the luminance of the colour (a, a, b) at each knot.
// Stored records depend on these exact float values.
constexpr float kPale = 0.71428573f, kPaleBlue = 1.0f;
constexpr float kMid = 0.2857143f, kMidBlue = 0.85714287f;
constexpr float kDark = 0.14285715f, kDarkBlue = 0.74285716f;
constexpr float kDeep = 0.08571429f, kDeepBlue = 0.5714286f;

// The ramp plus one zero knot: at the ramp's top end the spline reads one
// knot past the last, weighted by zero, and that read must land somewhere.
const std::array<float, kKnots + 1>& marbleKnots() {
    static const std::array<float, kKnots + 1> knots = [] {
        auto tone = [](float a, float b) { return PRMan::luminance(a, a, b); };
        const float pale = tone(kPale, kPaleBlue);
        const float mid = tone(kMid, kMidBlue);
        const float dark = tone(kDark, kDarkBlue);
        const float deep = tone(kDeep, kDeepBlue);
        return std::array<float, kKnots + 1>{pale, pale, mid, mid, mid, pale, pale,
                                             dark, dark, deep, deep, pale, deep, 0.0f};
    }();
    return knots;
}

// One Catmull-Rom segment between k1 (t = 0) and k2 (t = 1); each
// coefficient is formed in double and rounded, the cubic is in float.
float spline(float t, float k0, float k1, float k2, float k3) {
    const float c3 = static_cast<float>(-0.5 * k0 + 1.5 * k1 - 1.5 * k2 + 0.5 * k3);
    const float c2 = static_cast<float>(k0 - 2.5 * k1 + 2.0 * k2 - 0.5 * k3);
    const float c1 = static_cast<float>(-0.5 * k0 + 0.5 * k2);
    const float c0 = k1;
    return ((c3 * t + c2) * t + c1) * t + c0;
}

// x in [0, 1] spans ten segments over knots 0..12; x = 1 is knot 11.
float colorSpline(float x, const std::array<float, kKnots + 1>& knots) {
    // Only a NaN x falls outside [0, 1]; its value is NaN whatever knots
    // the spline would read, so it never indexes the ramp.
    if (!(x >= 0.0f && x <= 1.0f)) return x;
    const int i = truncToInt(10.0f * x);
    const float t = 10.0f * x - static_cast<float>(i);
    return spline(t, knots[i], knots[i + 1], knots[i + 2], knots[i + 3]);
}

// The value of an octave sum m: its place on the marble ramp.
float marbleValue(float m) {
    const float x = PRMan::clamp(0.75f + 2.0f * m, 0.0f, 1.0f);
    return clampUnit(colorSpline(x, marbleKnots()));
}

// ---- Octave steps -----------------------------------------------------------

// Octave k samples the scaled point at frequency 2.17^k and adds the noise
// weighted by the inverse of that frequency.
struct MarbleOctave {
    [[gnu::always_inline]] static float at(float c, float f) { return f * c; }
    [[gnu::always_inline]] static float add(float sum, float n, float f) { return sum + n / f; }
    // A step of 2.17 rather than 2 keeps octaves off each other's lattice;
    // stored records depend on this exact step and its double product.
    [[gnu::always_inline]] static float next(float f) { return static_cast<float>(2.17 * static_cast<double>(f)); }
};

constexpr float kFirstFrequency = 1.0f;

}  // namespace

// ---- Evaluation -------------------------------------------------------------

float SimpleMarbleTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float s = r.textureScale;
    return marbleValue(
        settlingOctaveSum<MarbleOctave>(r.octaves, kFirstFrequency, isPlanar(flags), s * x, s * y, s * z));
}

void SimpleMarbleTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock q(points, n, r.textureScale);
    settlingOctaveSum<MarbleOctave, kBlockPoints>(r.octaves, kFirstFrequency, isPlanar(flags), q.x, q.y, q.z, n, out);
    for (int j = 0; j < n; ++j) out[j] = marbleValue(out[j]);
}

template class RecordTexture3D<SimpleMarbleTexture3D>;

}  // namespace gritwell
