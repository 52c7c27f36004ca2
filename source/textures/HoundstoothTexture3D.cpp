#include "textures/HoundstoothTexture3D.h"

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "noise/CellNoise.h"

namespace gritwell {

namespace {

constexpr float kDark = 0.25f;
constexpr float kLight = 0.75f;

// Threads per unit: four dark then four light (houndstooth), or two and two.
constexpr int kHoundstoothThreads = 8;
constexpr int kPuppytoothThreads = 4;

// The 2/2 twill repeats every four crossings along a diagonal.
constexpr int kTwillRepeat = 4;

// a mod m in [0, m) for m > 0, so negative cells continue the bands.
int nonNegativeMod(int a, int m) {
    const int r = a % m;
    return r < 0 ? r + m : r;
}

}  // namespace

float HoundstoothTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    int n = kHoundstoothThreads;
    switch (static_cast<Pattern>(r.pattern)) {
        case HOUNDSTOOTH:
            n = kHoundstoothThreads;
            break;
        case PUPPYTOOTH:
        default:  // every non-zero value
            n = kPuppytoothThreads;
            break;
    }

    // The thread cells, scaled in float.
    const float fn = static_cast<float>(n);
    const int i = cellIndex(fn * x);
    const int j = cellIndex(fn * y);

    const bool warpDark = nonNegativeMod(i, n) < n / 2;
    const bool weftDark = nonNegativeMod(j, n) < n / 2;
    // The wrapped sum keeps i + j mod 4 exact even for the INT_MIN cells of
    // NaN or huge coordinates, since 2^32 is a multiple of 4.
    const bool warpShows = nonNegativeMod(wrapAdd(i, j), kTwillRepeat) < kTwillRepeat / 2;
    float value = (warpShows ? warpDark : weftDark) ? kDark : kLight;

    if (r.randomizeColors != 0) {
        // variability x (2c - 1) / 4, left to right in float.
        const float c = CellNoise::cellNoise(x, y);
        float t = 2.0f * c - 1.0f;
        t = r.variability * t;
        t = t / 4.0f;
        value = value + t;
    }
    return clampUnit(value);
}

template class RecordTexture3D<HoundstoothTexture3D>;

}  // namespace gritwell
