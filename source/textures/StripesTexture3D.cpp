#include "textures/StripesTexture3D.h"

#include <cmath>

#include "core/FloatToInt.h"
#include "noise/CellNoise.h"
#include "noise/PRMan.h"
#include "noise/Perlin.h"

namespace gritwell {

namespace {

constexpr double kPi = 3.141592653589793;  // the double pi the sine wave was always taken with
constexpr float kRibbonRadius = 0.25f;     // two half circles per unit of y

// sqrt(r^2 - (t - r)^2): the upper half circle of radius r over [0, 2r]. The
// root is taken in double. Only a NaN y reaches it outside [0, 2r]; the NaN
// it returns then draws no line.
float convexSemicircle(float r, float t) {
    return static_cast<float>(std::sqrt(static_cast<double>(r * r - (t - r) * (t - r))));
}

// The lower half circle of radius r over [2r, 4r].
float concaveSemicircle(float r, float t) { return -convexSemicircle(r, t - 2.0f * r); }

float semicircle(float r, float t) {
    return 2.0f * r > t ? convexSemicircle(r, t) : concaveSemicircle(r, t);
}

// x moved sideways by the style's wave; fy is the fractional part of y.
float displace(const StripesTexture3D::Record& r, float x, float y, float fy) {
    const float a = r.amplitude;
    switch (r.stripeStyle) {
        case StripesTexture3D::PerlinNoise:
            return x + a * Perlin::noise(2.0f * x, 2.0f * y);
        case StripesTexture3D::Ribbon:
            return x + a * semicircle(kRibbonRadius, fy);
        case StripesTexture3D::Sawtooth:
            return x + a * fy;
        case StripesTexture3D::Sine:
            return static_cast<float>(a * std::sin(kPi * 2.0 * y) + x);
        case StripesTexture3D::Triangle:
            if (fy < 0.5f) return x + a * PRMan::mix(0.0f, 1.0f, 2.0f * fy);
            // The falling half's blend factor is formed in double: stored
            // records depend on its rounding.
            return x + a * PRMan::mix(1.0f, 0.0f, static_cast<float>(2.0 * (fy - 0.5)));
        case StripesTexture3D::Straight:
        default:  // Straight, and any value a damaged record holds beyond 0..5
            return x;
    }
}

}  // namespace

float StripesTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    // The true floor, in double; rounded back to float, a tiny negative y
    // gives fy = 1.0, which stored records were always evaluated with.
    const float fy = static_cast<float>(y - std::floor(static_cast<double>(y)));
    x = displace(r, x, y, fy);

    // The cell index rule puts an exactly negative integer x in the cell
    // below, where it is that cell's upper line: the drawing is the same.
    const int f = cellIndex(x);
    const int fNext = wrapAdd(f, 1);
    const float d1 = x - static_cast<float>(f);
    const float d2 = static_cast<float>(fNext) - x;
    const float w = r.stripeWidth / 2.0f;
    // A distance equal to the half width is on the line.
    const bool onLow = w * w >= d1 * d1;
    const bool onHigh = w * w >= d2 * d2;

    if (r.randomizeColors == 0) return onLow || onHigh ? 0.0f : 1.0f;

    // Each plane's tone comes from its own index, so a line keeps one tone
    // whether it is reached as a cell's low or high line.
    const float c0 = CellNoise::cellNoise(static_cast<float>(f));
    const float c1 = CellNoise::cellNoise(static_cast<float>(fNext));
    if (onLow) return r.minColor + (r.maxColor - r.minColor) * c0;
    if (onHigh) return r.minColor + (r.maxColor - r.minColor) * c1;
    return 1.0f;
}

template class RecordTexture3D<StripesTexture3D>;

}  // namespace gritwell
