#include "textures/HoundstoothTexture3D.h"

#include "core/FloatToInt.h"
#include "core/UnitRange.h"
#include "noise/CellNoise.h"

namespace gritwell {

namespace {

constexpr float kDark = 0.25f;
constexpr float kLight = 0.75f;

// Both checks are four dark threads then four light ones, woven in the
// same twill, so both draw the same four-pointed tooth; the puppytooth packs
// the repeat into half a unit, a tooth half the size.
constexpr int kRepeatThreads = 8;
constexpr float kHoundstoothThreadsPerUnit = 8.0f;
constexpr float kPuppytoothThreadsPerUnit = 16.0f;

// The 2/2 twill repeats every four crossings along a diagonal.
constexpr int kTwillRepeat = 4;

// a mod m in [0, m) for m > 0, so negative cells continue the bands.
int nonNegativeMod(int a, int m) {
    const int r = a % m;
    return r < 0 ? r + m : r;
}

}  // namespace

float HoundstoothTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    float threadsPerUnit = kHoundstoothThreadsPerUnit;
    switch (static_cast<Pattern>(r.pattern)) {
        case HOUNDSTOOTH:
            threadsPerUnit = kHoundstoothThreadsPerUnit;
            break;
        case PUPPYTOOTH:
        default:  // every non-zero value
            threadsPerUnit = kPuppytoothThreadsPerUnit;
            break;
    }

    // The thread cells, scaled in float.
    const int n = kRepeatThreads;
    const int i = cellIndex(threadsPerUnit * x);
    const int j = cellIndex(threadsPerUnit * y);

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
