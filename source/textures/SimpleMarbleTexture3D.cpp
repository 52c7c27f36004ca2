#include "textures/SimpleMarbleTexture3D.h"

#include <array>
#include <bit>
#include <cstring>

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "noise/PRMan.h"
#include "noise/Perlin.h"
#include "noise/PerlinBatch.h"

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

float marbleColor(float m) {
    const float x = PRMan::clamp(0.75f + 2.0f * m, 0.0f, 1.0f);
    return colorSpline(x, marbleKnots());
}

}  // namespace

// ---- Evaluation -------------------------------------------------------------

float SimpleMarbleTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float qx = r.textureScale * x;
    const float qy = r.textureScale * y;
    const float qz = r.textureScale * z;
    const bool planar = isPlanar(flags);

    float sum = 0.0f;
    float f = 1.0f;
    for (std::int32_t i = 0; i < r.octaves; ++i) {
        const float before[2] = {sum, f};
        const float n = planar ? Perlin::noise(f * qx, f * qy) : Perlin::noise(f * qx, f * qy, f * qz);
        sum += n / f;
        // A step of 2.17 rather than 2 keeps octaves off each other's lattice;
        // stored records depend on this exact step and its double product.
        f = static_cast<float>(2.17 * static_cast<double>(f));
        // Sum and frequency alone decide the next octave. Once one leaves both
        // bit for bit unchanged (the frequency has overflowed, so every later
        // octave adds zero or NaN to the same NaN), every later octave would
        // too: a damaged record's huge count ends here, within about 120
        // octaves, with the bits the full loop would give.
        const float after[2] = {sum, f};
        if (std::memcmp(before, after, sizeof before) == 0) break;
    }
    return clampUnit(marbleColor(sum));
}

// The octave loop across a block: a point whose sum an octave left
// unchanged, while the frequency also stayed put, is settled for good, so
// the pass runs until every point has settled and they keep their bits.
void SimpleMarbleTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const bool planar = isPlanar(flags);
    const PointBlock q(points, n, r.textureScale);
    float x[kBlockPoints], y[kBlockPoints], z[kBlockPoints], sample[kBlockPoints];
    float* sum = out;
    for (int j = 0; j < n; ++j) sum[j] = 0.0f;
    float f = 1.0f;
    for (std::int32_t i = 0; i < r.octaves; ++i) {
        for (int j = 0; j < n; ++j) {
            x[j] = f * q.x[j];
            y[j] = f * q.y[j];
            z[j] = f * q.z[j];
        }
        if (planar)
            PerlinBatch::noise(x, y, sample, n);
        else
            PerlinBatch::noise(x, y, z, sample, n);
        bool changed = false;
        for (int j = 0; j < n; ++j) {
            const float s = sum[j] + sample[j] / f;
            changed |= std::bit_cast<std::uint32_t>(s) != std::bit_cast<std::uint32_t>(sum[j]);
            sum[j] = s;
        }
        const float next = static_cast<float>(2.17 * static_cast<double>(f));
        if (!changed && std::bit_cast<std::uint32_t>(next) == std::bit_cast<std::uint32_t>(f)) break;
        f = next;
    }
    for (int j = 0; j < n; ++j) out[j] = clampUnit(marbleColor(sum[j]));
}

template class RecordTexture3D<SimpleMarbleTexture3D>;

}  // namespace gritwell
