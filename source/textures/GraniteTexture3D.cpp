#include "textures/GraniteTexture3D.h"

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "textures/SettlingOctaveSum.h"

namespace gritwell {

namespace {

// Each layer samples the noise at four times its frequency.
constexpr float kSampleScale = 4.0f;

// The integer absolute value as the machine's instructions give it: the
// INT_MIN that a NaN sample truncates to stays INT_MIN.
constexpr int wrapAbs(int k) { return k < 0 ? wrapMul(k, -1) : k; }

// One layer per octave, each weighted by the inverse of its frequency.
struct GraniteLayer {
    [[gnu::always_inline]] static float at(float c, float f) { return kSampleScale * c * f; }
    // Truncating before the absolute value makes each layer all or nothing
    // (1 where the noise n is -0.5 or below): the speckles' hard edges
    // depend on it.
    [[gnu::always_inline]] static float add(float sum, float n, float f) {
        const int k = truncToInt(0.5 - static_cast<double>(n));
        return sum + static_cast<float>(wrapAbs(k)) / f;
    }
    [[gnu::always_inline]] static float next(float f) { return f * 2.0f; }
};

}  // namespace

float GraniteTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    return clampUnit(settlingOctaveSum<GraniteLayer>(r.octaves, r.frequency, isPlanar(flags), x, y, z));
}

void GraniteTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    const PointBlock p(points, n, 1.0f);
    settlingOctaveSum<GraniteLayer, kBlockPoints>(r.octaves, r.frequency, isPlanar(flags), p.x, p.y, p.z, n, out);
    for (int j = 0; j < n; ++j) out[j] = clampUnit(out[j]);
}

template class RecordTexture3D<GraniteTexture3D>;

}  // namespace gritwell
