#include "textures/ZigzagTexture3D.h"

#include <cmath>

#include "core/UnitRange.h"
#include "noise/CellNoise.h"

namespace gritwell {

namespace {

constexpr float kDark = 0.25f;
constexpr float kLight = 0.75f;

}  // namespace

float ZigzagTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    // True floors in double, unlike the cell index rule: a negative integer
    // stays in its own row and column.
    const double fx = std::floor(static_cast<double>(x));
    const double fy = std::floor(static_cast<double>(y));
    // Half a step along x or y per unit: two-unit cells, rows offset by one.
    const double s = std::floor(0.5 * fy + 0.5 * fx);
    const float m = static_cast<float>(std::fabs(std::fmod(s, 2.0)));
    float value = m == 0.0f ? kDark : kLight;

    if (r.randomizeColors != 0) {
        // Cell noise is constant over unit cells: halving x gives one value
        // per two-unit cell, and odd rows shift by the same unit as the tones.
        const bool evenRow = std::fmod(fy, 2.0) == 0.0;
        const float c = evenRow ? CellNoise::cellNoise(0.5f * x, y)
                                : CellNoise::cellNoise(static_cast<float>(0.5 + 0.5 * static_cast<double>(x)), y);
        const float t = 2.0f * c - 1.0f;
        value = value + r.variability * t / 4.0f;
    }
    // Clamped, unlike the checkerboard, so a large variability saturates.
    return clampUnit(value);
}

template class RecordTexture3D<ZigzagTexture3D>;

}  // namespace gritwell
