#include "textures/WeaveTexture3D.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"
#include "core/Rounding.h"
#include "core/SineToFloat.h"
#include "noise/CellNoise.h"
#include "noise/DoubleLanes.h"
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

// ---- The plain weave, eight points at a time ---------------------------------
//
// simple with one lane per point: the two layers of threads chosen lane by
// lane by the cell's parity (which thread lies underneath), each a pulse,
// a blend and, where the thread covers the point, its shading. The sines
// take sineToFloat's short road four lanes at a time, and the few lanes it
// leaves sineToFloat itself; the rest is the same operations in the same
// order across the lanes.

namespace {

GRITWELL_AVX2 inline __m256 stepLanes(__m256 a, __m256 x) {
    return _mm256_andnot_ps(_mm256_cmp_ps(x, a, _CMP_LT_OQ), _mm256_set1_ps(1.0f));
}

GRITWELL_AVX2 inline __m256 squarepulseLanes(__m256 a, __m256 b, __m256 x) {
    return _mm256_sub_ps(stepLanes(a, x), stepLanes(b, x));
}

// plainFraction of four doubles (floats widened).
GRITWELL_AVX2 inline __m256d plainFractionLanes(__m256d v) {
    const __m256d rest =
        _mm256_andnot_pd(_mm256_set1_pd(-0.0), _mm256_sub_pd(v, _mm256_round_pd(v, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC)));
    return _mm256_blendv_pd(_mm256_sub_pd(_mm256_set1_pd(1.0), rest), rest,
                            _mm256_cmp_pd(v, _mm256_setzero_pd(), _CMP_GE_OQ));
}

// A thread's intensity per lane: the record's, or one keyed by the cell.
GRITWELL_AVX2 inline __m256 threadLanes(bool randomize, float plain, float lo, float hi, __m256i cell) {
    if (!randomize) return _mm256_set1_ps(plain);
    return _mm256_add_ps(_mm256_mul_ps(_mm256_set1_ps(hi - lo), CellNoise::cellNoise(_mm256_cvtepi32_ps(cell))),
                         _mm256_set1_ps(lo));
}

// Threads across eight lanes.
struct ThreadLanes {
    __m256 hc, vc, h0, h1, va, vb;
    __m256i ix, iy;
};

GRITWELL_AVX2 inline ThreadLanes threadLanes(const WeaveTexture3D::Record& r, __m256 x, __m256 y) {
    ThreadLanes t;
    t.ix = cellIndex(x);
    t.iy = cellIndex(y);
    t.hc = threadLanes(r.horizontalRandomize != 0, r.horizontalColor, r.horizontalMinColor, r.horizontalMaxColor,
                       t.iy);
    t.vc = threadLanes(r.verticalRandomize != 0, r.verticalColor, r.verticalMinColor, r.verticalMaxColor, t.ix);
    t.h0 = _mm256_set1_ps(0.5f - r.horizontalWidth / 2.0f);
    t.h1 = _mm256_set1_ps(0.5f + r.horizontalWidth / 2.0f);
    t.va = _mm256_set1_ps(0.5f - r.verticalWidth / 2.0f);
    t.vb = _mm256_set1_ps(0.5f + r.verticalWidth / 2.0f);
    return t;
}

// shade(c, strength, angle) in the lanes of `shaded`, c elsewhere.
GRITWELL_AVX2 inline __m256 shadeLanes(__m256 c, __m256 strength, __m256d angleLow, __m256d angleHigh, __m256 shaded) {
    const int lanes = _mm256_movemask_ps(shaded);
    if (lanes == 0) return c;
    __m128 waveLow, waveHigh;
    const int settled = sineToFloatSettled(angleLow, waveLow) | sineToFloatSettled(angleHigh, waveHigh) << 4;
    alignas(32) float wave[8];
    _mm256_store_ps(wave, _mm256_set_m128(waveHigh, waveLow));
    // The shaded lanes the short road leaves, seldom more than none.
    if (const int rest = lanes & ~settled; rest != 0) {
        alignas(32) double angle[8];
        _mm256_store_pd(angle, angleLow);
        _mm256_store_pd(angle + 4, angleHigh);
        for (int k = 0; k < 8; ++k)
            if (rest & (1 << k)) wave[k] = sineToFloat(angle[k]);
    }
    const __m256 term = _mm256_div_ps(_mm256_load_ps(wave), _mm256_div_ps(_mm256_set1_ps(2.0f), strength));
    const DoubleLanes8 sd = widen(strength), td = widen(term);
    const __m256d half = _mm256_set1_pd(0.5), one = _mm256_set1_pd(1.0);
    auto factorOf = [&](__m256d sv, __m256d tv) GRITWELL_AVX2 {
        return _mm256_add_pd(_mm256_add_pd(half, _mm256_mul_pd(_mm256_sub_pd(one, sv), half)), tv);
    };
    const __m256 factor = narrow({factorOf(sd.low, td.low), factorOf(sd.high, td.high)});
    return _mm256_blendv_ps(c, _mm256_mul_ps(c, factor), shaded);
}

GRITWELL_AVX2 void simple8(const WeaveTexture3D::Record& r, const float* xs, const float* ys, float* out) {
    const __m256 x = _mm256_loadu_ps(xs), y = _mm256_loadu_ps(ys);
    const ThreadLanes t = threadLanes(r, x, y);
    const __m256i ix = t.ix, iy = t.iy;
    const __m256 hc = t.hc, vc = t.vc, h0 = t.h0, h1 = t.h1, va = t.va, vb = t.vb;
    const DoubleLanes8 fx = {plainFractionLanes(widen(x).low), plainFractionLanes(widen(x).high)};
    const DoubleLanes8 fy = {plainFractionLanes(widen(y).low), plainFractionLanes(widen(y).high)};
    const __m256 pulseX = narrow(fx), pulseY = narrow(fy);
    const __m256 hp = squarepulseLanes(h0, h1, pulseY), vp = squarepulseLanes(va, vb, pulseX);

    // Where the parities agree the horizontal thread is the first layer.
    const __m256 horizontalFirst = _mm256_castsi256_ps(_mm256_cmpeq_epi32(
        _mm256_and_si256(_mm256_xor_si256(ix, iy), _mm256_set1_epi32(1)), _mm256_setzero_si256()));
    auto pick = [&](__m256 ifHorizontalFirst, __m256 otherwise) GRITWELL_AVX2 {
        return _mm256_blendv_ps(otherwise, ifHorizontalFirst, horizontalFirst);
    };
    auto pickd = [&](__m256d ifHorizontalFirst, __m256d otherwise, int half) GRITWELL_AVX2 {
        const __m256 m = horizontalFirst;
        const __m256d mask = _mm256_castsi256_pd(_mm256_cvtepi32_epi64(
            half == 0 ? _mm256_castsi256_si128(_mm256_castps_si256(m)) : _mm256_extracti128_si256(_mm256_castps_si256(m), 1)));
        return _mm256_blendv_pd(otherwise, ifHorizontalFirst, mask);
    };
    const __m256d pi = _mm256_set1_pd(kPi);
    const __m256 sH = _mm256_set1_ps(r.shadingHorizontalStrength), sV = _mm256_set1_ps(r.shadingVerticalStrength);
    const __m256 one = _mm256_set1_ps(1.0f);
    const bool shading = r.shadingEnable != 0;

    // First layer: kPi + f kPi along the other axis's fraction.
    const __m256 p1 = pick(hp, vp);
    __m256 c = PRMan::mix(_mm256_set1_ps(r.backgroundColor), pick(hc, vc), p1);
    if (shading) {
        const __m256d a1Low = pickd(_mm256_add_pd(pi, _mm256_mul_pd(fx.low, pi)), _mm256_add_pd(pi, _mm256_mul_pd(fy.low, pi)), 0);
        const __m256d a1High =
            pickd(_mm256_add_pd(pi, _mm256_mul_pd(fx.high, pi)), _mm256_add_pd(pi, _mm256_mul_pd(fy.high, pi)), 1);
        c = shadeLanes(c, pick(sH, sV), a1Low, a1High, _mm256_cmp_ps(p1, one, _CMP_EQ_OQ));
    }
    // Second layer: kPi times the fraction across it.
    const __m256 p2 = pick(vp, hp);
    c = PRMan::mix(c, pick(vc, hc), p2);
    if (shading) {
        const __m256d a2Low = pickd(_mm256_mul_pd(pi, fy.low), _mm256_mul_pd(pi, fx.low), 0);
        const __m256d a2High = pickd(_mm256_mul_pd(pi, fy.high), _mm256_mul_pd(pi, fx.high), 1);
        c = shadeLanes(c, pick(sV, sH), a2Low, a2High, _mm256_cmp_ps(p2, one, _CMP_EQ_OQ));
    }
    _mm256_storeu_ps(out, c);
}

// ---- The twill, eight points at a time ----------------------------------------
//
// herringbone with one lane per point, as the plain weave's lanes: the
// band picks which thread is the first layer, the parities which quarter
// wave each shading takes, both as selects; floors, parities and angles
// in double as herringbone has them.

GRITWELL_AVX2 inline __m256d floorLanes(__m256d v) { return _mm256_round_pd(v, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC); }

// isEvenFloor, lane by lane.
GRITWELL_AVX2 inline __m256d isEvenFloorLanes(__m256d floored) {
    return _mm256_cmp_pd(fmodTwo(floored), _mm256_setzero_pd(), _CMP_EQ_OQ);
}

// Four of the twill's angles: `near` + f kHalfPi where the parities agree,
// `far` + f kHalfPi where they differ, f a float fraction.
GRITWELL_AVX2 inline __m256d twillAngles(__m256d f, double near, double far, __m256d differ) {
    const __m256d quarter = _mm256_mul_pd(f, _mm256_set1_pd(kHalfPi));
    const __m256d agree = near == 0.0 ? quarter : _mm256_add_pd(_mm256_set1_pd(near), quarter);
    return _mm256_blendv_pd(agree, _mm256_add_pd(_mm256_set1_pd(far), quarter), differ);
}

GRITWELL_AVX2 void twill8(const WeaveTexture3D::Record& r, const float* xs, const float* ys, float* out) {
    const __m256 x = _mm256_loadu_ps(xs), y = _mm256_loadu_ps(ys);
    const ThreadLanes t = threadLanes(r, x, y);
    const __m256 hc = t.hc, vc = t.vc, h0 = t.h0, h1 = t.h1, va = t.va, vb = t.vb;
    const DoubleLanes8 xd = widen(x), yd = widen(y);
    const DoubleLanes8 i = {floorLanes(xd.low), floorLanes(xd.high)}, j = {floorLanes(yd.low), floorLanes(yd.high)};
    const __m256 fx = narrow({_mm256_sub_pd(xd.low, i.low), _mm256_sub_pd(xd.high, i.high)});
    const __m256 fy = narrow({_mm256_sub_pd(yd.low, j.low), _mm256_sub_pd(yd.high, j.high)});
    const __m256d half = _mm256_set1_pd(0.5);
    // Band 0 (the vertical thread first); a NaN band is band 1.
    auto bandZeroOf = [&](__m256d ii, __m256d jj) GRITWELL_AVX2 {
        const __m256d band = fmodTwo(floorLanes(_mm256_add_pd(_mm256_mul_pd(half, jj), _mm256_mul_pd(half, ii))));
        return _mm256_cmp_pd(band, _mm256_setzero_pd(), _CMP_EQ_OQ);
    };
    const DoubleLanes8 bandZero = {bandZeroOf(i.low, j.low), bandZeroOf(i.high, j.high)};
    const DoubleLanes8 differ = {_mm256_xor_pd(isEvenFloorLanes(i.low), isEvenFloorLanes(j.low)),
                                 _mm256_xor_pd(isEvenFloorLanes(i.high), isEvenFloorLanes(j.high))};
    const __m256 verticalFirst = narrowMask(bandZero.low, bandZero.high);
    auto pick = [&](__m256 ifVerticalFirst, __m256 otherwise) GRITWELL_AVX2 {
        return _mm256_blendv_ps(otherwise, ifVerticalFirst, verticalFirst);
    };
    const __m256 hp = squarepulseLanes(h0, h1, fy), vp = squarepulseLanes(va, vb, fx);
    const __m256 sH = _mm256_set1_ps(r.shadingHorizontalStrength), sV = _mm256_set1_ps(r.shadingVerticalStrength);
    const __m256 one = _mm256_set1_ps(1.0f);
    const bool shading = r.shadingEnable != 0;
    const DoubleLanes8 fxw = widen(fx), fyw = widen(fy);

    // First layer: its quarter wave from pi (3 pi / 2 where the parities
    // differ) along the other thread's fraction.
    const __m256 p1 = pick(vp, hp);
    __m256 c = PRMan::mix(_mm256_set1_ps(r.backgroundColor), pick(vc, hc), p1);
    if (shading) {
        const __m256d a1Low =
            twillAngles(_mm256_blendv_pd(fxw.low, fyw.low, bandZero.low), kPi, kThreeHalfPi, differ.low);
        const __m256d a1High =
            twillAngles(_mm256_blendv_pd(fxw.high, fyw.high, bandZero.high), kPi, kThreeHalfPi, differ.high);
        c = shadeLanes(c, pick(sV, sH), a1Low, a1High, _mm256_cmp_ps(p1, one, _CMP_EQ_OQ));
    }
    // Second layer: from 0 (pi / 2) along its own fraction.
    const __m256 p2 = pick(hp, vp);
    c = PRMan::mix(c, pick(hc, vc), p2);
    if (shading) {
        const __m256d a2Low = twillAngles(_mm256_blendv_pd(fyw.low, fxw.low, bandZero.low), 0.0, kHalfPi, differ.low);
        const __m256d a2High =
            twillAngles(_mm256_blendv_pd(fyw.high, fxw.high, bandZero.high), 0.0, kHalfPi, differ.high);
        c = shadeLanes(c, pick(sH, sV), a2Low, a2High, _mm256_cmp_ps(p2, one, _CMP_EQ_OQ));
    }
    _mm256_storeu_ps(out, c);
}

}  // namespace

void WeaveTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    int done = 0;
    if (simdLevel() >= SimdLevel::kAvx2) {
        const PointBlock p(points, n, 1.0f);
        const bool plain = static_cast<Pattern>(r.pattern) == WEAVE_SIMPLE;
        for (; done + 8 <= n; done += 8) {
            if (plain)
                simple8(r, p.x + done, p.y + done, out + done);
            else
                twill8(r, p.x + done, p.y + done, out + done);
        }
    }
    evaluateEach(r, flags, points + 3 * done, n - done, out + done);
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
