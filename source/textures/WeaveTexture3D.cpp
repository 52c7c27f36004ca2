#include "textures/WeaveTexture3D.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/FloatToInt.h"
#include "core/Rounding.h"
#include "core/SineToFloat.h"
#include "noise/CellNoise.h"
#include "noise/PRMan.h"

namespace gritwell {

namespace {

using PRMan::mix;
using PRMan::squarepulse;

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kThreeHalfPi = 4.71238898038469;

// Where the version-2 record (92 bytes) kept its fields; it had no pattern.
namespace v2 {
constexpr int kMajorVersion = 2;
constexpr std::size_t kBackgroundColor = 36;
constexpr std::size_t kHorizontalColor = 40;
constexpr std::size_t kVerticalColor = 44;
constexpr std::size_t kHorizontalWidth = 48;
constexpr std::size_t kVerticalWidth = 52;
constexpr std::size_t kHorizontalRandomize = 56;
constexpr std::size_t kHorizontalMinColor = 60;
constexpr std::size_t kHorizontalMaxColor = 64;
constexpr std::size_t kVerticalRandomize = 68;
constexpr std::size_t kVerticalMinColor = 72;
constexpr std::size_t kVerticalMaxColor = 76;
constexpr std::size_t kShadingEnable = 80;  // a float in this version
constexpr std::size_t kShadingHorizontalStrength = 84;
constexpr std::size_t kShadingVerticalStrength = 88;
}  // namespace v2

void readFloat(float& field, const char* in, std::size_t offset) {
    std::memcpy(&field, in + offset, sizeof field);
}

// What both weaves take from the record and the point's cell: each thread's
// intensity (random ones keyed by its row or column) and the bands the
// threads cover within a cell.
struct Threads {
    float hc, vc;  // horizontal and vertical thread intensities
    float h0, h1;  // horizontal band, on the y fraction
    float va, vb;  // vertical band, on the x fraction
    int ix, iy;    // the point's cell
};

Threads threads(const WeaveTexture3D::Record& r, float x, float y) {
    Threads t;
    t.ix = cellIndex(x);
    t.iy = cellIndex(y);
    t.hc = r.horizontalColor;
    if (r.horizontalRandomize != 0)
        t.hc = (r.horizontalMaxColor - r.horizontalMinColor) * CellNoise::cellNoise(static_cast<float>(t.iy)) +
               r.horizontalMinColor;
    t.vc = r.verticalColor;
    if (r.verticalRandomize != 0)
        t.vc = (r.verticalMaxColor - r.verticalMinColor) * CellNoise::cellNoise(static_cast<float>(t.ix)) +
               r.verticalMinColor;
    t.h0 = 0.5f - r.horizontalWidth / 2.0f;
    t.h1 = 0.5f + r.horizontalWidth / 2.0f;
    t.va = 0.5f - r.verticalWidth / 2.0f;
    t.vb = 0.5f + r.verticalWidth / 2.0f;
    return t;
}

// Darkens c by the thread's roundness at angle a: unchanged where sin(a) is
// 1, c (1 - s) where it is -1.
float shade(float c, float s, double a) {
    const float wave = sineToFloat(a);
    const float factor = static_cast<float>(0.5 + (1.0 - s) * 0.5 + wave / (2.0f / s));
    return c * factor;
}

// The plain weave's fraction of a coordinate in its cell, in double: the
// shading angles take it unrounded, the pulses as a float. Below zero it is
// one minus the remainder, so a negative integer gives 1, the far end of
// the cell the cell-index rule puts it in.
double plainFraction(float v) {
    const double rest = std::fabs(fmodOne(static_cast<double>(v)));
    return v >= 0.0f ? rest : 1.0 - rest;
}

// Evenness of a floored coordinate, as the twill has always tested it:
// -1 is odd, and NaN or an infinity (whose remainder is NaN) is odd too.
bool isEvenFloor(double floored) { return fmodTwo(floored) == 0.0; }

}  // namespace

float WeaveTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    switch (static_cast<Pattern>(r.pattern)) {
        case WEAVE_SIMPLE:
            return simple(r, x, y);
        case WEAVE_HERRINGBONE:
        default:  // every non-zero value
            return herringbone(r, x, y);
    }
}

// Threads pass over and under alternately: where the cell's column and row
// have the same parity the horizontal thread lies underneath. The thread
// underneath is shaded darkest at the middle of the cell, the one on top
// brightest there.
float WeaveTexture3D::simple(const Record& r, float x, float y) {
    const Threads t = threads(r, x, y);
    const double fx = plainFraction(x);
    const double fy = plainFraction(y);
    const float pulseX = static_cast<float>(fx);
    const float pulseY = static_cast<float>(fy);
    const bool shading = r.shadingEnable != 0;

    float c;
    if (isEven(t.ix) == isEven(t.iy)) {
        const float hp = squarepulse(t.h0, t.h1, pulseY);
        c = mix(r.backgroundColor, t.hc, hp);
        if (shading && hp == 1.0f) c = shade(c, r.shadingHorizontalStrength, kPi + fx * kPi);
        const float vp = squarepulse(t.va, t.vb, pulseX);
        c = mix(c, t.vc, vp);
        if (shading && vp == 1.0f) c = shade(c, r.shadingVerticalStrength, kPi * fy);
    } else {
        const float vp = squarepulse(t.va, t.vb, pulseX);
        c = mix(r.backgroundColor, t.vc, vp);
        if (shading && vp == 1.0f) c = shade(c, r.shadingVerticalStrength, kPi + fy * kPi);
        const float hp = squarepulse(t.h0, t.h1, pulseY);
        c = mix(c, t.hc, hp);
        if (shading && hp == 1.0f) c = shade(c, r.shadingHorizontalStrength, kPi * fx);
    }
    return c;
}

// Diagonal bands two cells wide, alternately with the vertical (band 0) and
// the horizontal thread underneath. Each cell is a quarter wave of the
// shading, so a thread rises or falls over two cells, and a neighbouring
// cell of the other parity continues the same arc.
float WeaveTexture3D::herringbone(const Record& r, float x, float y) {
    const Threads t = threads(r, x, y);
    const double i = std::floor(static_cast<double>(x));
    const double j = std::floor(static_cast<double>(y));
    const double band = std::fabs(fmodTwo(std::floor(0.5 * j + 0.5 * i)));
    const float fx = static_cast<float>(x - i);
    const float fy = static_cast<float>(y - j);
    const bool differ = isEvenFloor(i) != isEvenFloor(j);
    const bool shading = r.shadingEnable != 0;

    if (band == 0.0) {
        const float vp = squarepulse(t.va, t.vb, fx);
        float c = mix(r.backgroundColor, t.vc, vp);
        if (shading && vp == 1.0f)
            c = shade(c, r.shadingVerticalStrength, differ ? kThreeHalfPi + fy * kHalfPi : kPi + fy * kHalfPi);
        const float hp = squarepulse(t.h0, t.h1, fy);
        c = mix(c, t.hc, hp);
        if (shading && hp == 1.0f)
            return shade(c, r.shadingHorizontalStrength, differ ? kHalfPi + fx * kHalfPi : fx * kHalfPi);
        return c;
    }
    // Band 1, and the NaN band of a NaN or infinite coordinate.
    const float hp = squarepulse(t.h0, t.h1, fy);
    float c = mix(r.backgroundColor, t.hc, hp);
    if (shading && hp == 1.0f)
        c = shade(c, r.shadingHorizontalStrength, differ ? kThreeHalfPi + fx * kHalfPi : kPi + fx * kHalfPi);
    const float vp = squarepulse(t.va, t.vb, fx);
    c = mix(c, t.vc, vp);
    if (shading && vp == 1.0f)
        return shade(c, r.shadingVerticalStrength, differ ? kHalfPi + fy * kHalfPi : fy * kHalfPi);
    return c;
}

// The one older layout this reads is version 2's.
static_assert(std::size(WeaveTexture3D::kOlderMajorVersions) == 1 &&
              WeaveTexture3D::kOlderMajorVersions[0] == v2::kMajorVersion);

void WeaveTexture3D::convertOlderRecord(Record& r, const char* in) {
    readFloat(r.backgroundColor, in, v2::kBackgroundColor);
    readFloat(r.horizontalColor, in, v2::kHorizontalColor);
    readFloat(r.verticalColor, in, v2::kVerticalColor);
    readFloat(r.horizontalWidth, in, v2::kHorizontalWidth);
    readFloat(r.verticalWidth, in, v2::kVerticalWidth);
    r.horizontalRandomize = static_cast<std::uint8_t>(in[v2::kHorizontalRandomize]);
    readFloat(r.horizontalMinColor, in, v2::kHorizontalMinColor);
    readFloat(r.horizontalMaxColor, in, v2::kHorizontalMaxColor);
    r.verticalRandomize = static_cast<std::uint8_t>(in[v2::kVerticalRandomize]);
    readFloat(r.verticalMinColor, in, v2::kVerticalMinColor);
    readFloat(r.verticalMaxColor, in, v2::kVerticalMaxColor);
    float shading;
    readFloat(shading, in, v2::kShadingEnable);
    // Any non-zero float switched the shading on, NaN included.
    r.shadingEnable = shading != 0.0f ? 1 : 0;
    readFloat(r.shadingHorizontalStrength, in, v2::kShadingHorizontalStrength);
    readFloat(r.shadingVerticalStrength, in, v2::kShadingVerticalStrength);
}

template class RecordTexture3D<WeaveTexture3D>;

}  // namespace gritwell
