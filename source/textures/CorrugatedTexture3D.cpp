#include "textures/CorrugatedTexture3D.h"

#include <cmath>

#include "noise/PRMan.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

constexpr double kPi = 3.141592653589793;

// Upper half circle of radius r over [0, 2r).
float convexSemicircle(float r, float t) {
    return static_cast<float>(std::sqrt(static_cast<double>(r * r - (t - r) * (t - r))));
}

// Lower half circle of radius r over [2r, 4r).
float concaveSemicircle(float r, float t) { return -convexSemicircle(r, t - 2.0f * r); }

float semicircle(float r, float t) {
    return 2.0f * r > t ? convexSemicircle(r, t) : concaveSemicircle(r, t);
}

}  // namespace

float CorrugatedTexture3D::evaluate(const Record& r, int, float x, float, float) {
    // The true floor, taken in double; only the difference is rounded.
    const double xd = x;
    const float fx = static_cast<float>(xd - std::floor(xd));

    switch (r.style) {
        case PerlinNoise:
            // The noise runs along the raw coordinate, not the wrapped one.
            return 0.5f + Perlin::noise(2.0f * x) / 2.0f;
        case Sawtooth:
            return fx;
        case Ribbon:
            // Centred on 0 rather than 0.5, unlike every other profile: stored
            // records depend on this exact range.
            return semicircle(0.25f, fx);
        case Sine:
            return static_cast<float>(0.5 + std::sin(kPi * (2.0f * fx)) / 2.0);
        case Triangle:
            if (fx < 0.5f) return PRMan::mix(0.0f, 1.0f, 2.0f * fx);
            return PRMan::mix(1.0f, 0.0f, static_cast<float>(2.0 * (fx - 0.5)));
        default:
            // Every other value, a damaged record's included: half a sine
            // period per unit, not the full wave of Sine, as it always was.
            return static_cast<float>(0.5 + std::sin(kPi * fx) / 2.0);
    }
}

template class RecordTexture3D<CorrugatedTexture3D>;

}  // namespace gritwell
