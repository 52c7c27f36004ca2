#include "textures/SpiralTexture3D.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include <emmintrin.h>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/Rounding.h"

namespace gritwell {

namespace {

// Which of a cell's two bounding planes a point lies on a line of: the lower
// (x - f within half a width) or the upper (f + 1 - x within it). Equality
// counts as on the line. The cell index puts an exact negative integer one
// cell low.
struct LineSides {
    bool lower, upper;
};

LineSides lineSides(float x, float w) {
    const int f = cellIndexSse(x);
    const float d1 = x - static_cast<float>(f);
    const float d2 = static_cast<float>(wrapAdd(f, 1)) - x;
    return {w * w >= d1 * d1, w * w >= d2 * d2};
}

bool onLine(float x, float w) {
    const LineSides s = lineSides(x, w);
    return s.lower || s.upper;
}

// ---- The twist without the C library's trigonometry -------------------------
//
// The twisted x is cos(atan2(z, x) + phi) * r in float, from the C library's
// atan2f and cosf. Mathematically that is x cos(phi) - z sin(phi), which one
// double sine and cosine of phi give to within 2e-9. The float path's own
// error is bounded: a few units in the last place from each library call,
// one rounding per operation. Where every x within that bound of the double
// estimate lands on the same side of every line edge, the answer is certain
// and no library call is made; elsewhere, near an edge, the float path
// itself decides.

constexpr double kUlp = 0x1p-24;  // half a float's spacing at 1, relative

// Largest twist angle handled without the library: the reduction below is
// exact for quadrant counts under 2^20.
constexpr double kMaxAngle = 0x1p20;

// The error the C library's atan2f and cosf may have, in units in the last
// place. Its documented bounds are smaller; a test checks them on this
// platform's library.
constexpr double kLibraryUlps = 4.0;

// sin and cos of |a| <= kMaxAngle to within 2e-9, which is all the bound
// below needs: Cody and Waite's reduction by pi/2 in two parts, then Taylor
// series on [-pi/4, pi/4] to t^9 and t^10. The quadrant picks and signs the
// pair without branches: it is as random as the points.
__m128d sinCos(double a) {
    constexpr double kTwoOverPi = 0.63661977236758134308;
    constexpr double kHalfPiHigh = 1.57079632673412561417;  // 33 bits: k times it is exact
    constexpr double kHalfPiLow = 6.07710050650619224932e-11;
    // The nearest quadrant count, by the old trick of adding 1.5 * 2^52: the
    // sum's low bits hold it, with no conversion on the way.
    constexpr double kRoundShift = 0x1.8p52;
    const double shifted = a * kTwoOverPi + kRoundShift;
    const double k = shifted - kRoundShift;
    const int quadrant = static_cast<int>(static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(shifted)));
    const double t = (a - k * kHalfPiHigh) - k * kHalfPiLow;
    // Both series in Estrin's order, pairs first, for a shorter chain.
    const double u = t * t;
    const double u2 = u * u;
    const double sinT =
        t + t * u * ((-1.0 / 6 + u * (1.0 / 120)) + u2 * (-1.0 / 5040 + u * (1.0 / 362880)));
    const double cosT = 1.0 + u * ((-1.0 / 2 + u * (1.0 / 24)) +
                                   u2 * ((-1.0 / 720 + u * (1.0 / 40320)) + u2 * (-1.0 / 3628800)));
    // (sin a, cos a) is (sinT, cosT), (cosT, -sinT), (-sinT, -cosT) or
    // (-cosT, sinT) in quadrants 0 to 3.
    const __m128d pair = _mm_set_pd(cosT, sinT);
    const __m128d odd = _mm_castsi128_pd(_mm_set1_epi64x(-static_cast<long long>(quadrant & 1)));
    const __m128d ordered = _mm_or_pd(_mm_and_pd(odd, _mm_shuffle_pd(pair, pair, 1)), _mm_andnot_pd(odd, pair));
    const std::uint64_t sinNegative = static_cast<std::uint64_t>((quadrant >> 1) & 1) << 63;
    const std::uint64_t cosNegative = static_cast<std::uint64_t>(((quadrant + 1) >> 1) & 1) << 63;
    const __m128i signs = _mm_set_epi64x(static_cast<long long>(cosNegative), static_cast<long long>(sinNegative));
    return _mm_xor_pd(ordered, _mm_castsi128_pd(signs));
}

// The twisted point's value where the double estimate decides it: 0 on a
// line, 1 off every line; -1 where only the float path can tell.
int twistedValue(float x, float y, float z, float rate, float w) {
    const float phi = rate * y;
    if (!(std::fabs(phi) <= kMaxAngle)) return -1;  // NaN too
    // The squares must neither overflow nor fall into the denormals, so that
    // the radius carries one rounding per step.
    const float ax = std::fabs(x), az = std::fabs(z);
    const bool sized = (ax == 0.0f || ax >= 0x1p-60f) && (az == 0.0f || az >= 0x1p-60f) && ax <= 0x1p60f &&
                       az <= 0x1p60f;
    // |x| + |z| bounds the radius without a square root on the way.
    const double radius = static_cast<double>(ax) + static_cast<double>(az);
    if (!sized || radius < 0x1p-30) return -1;

    const __m128d sc = sinCos(phi);
    const double s = _mm_cvtsd_f64(sc), c = _mm_cvtsd_f64(_mm_unpackhi_pd(sc, sc));
    const double estimate = static_cast<double>(x) * c - static_cast<double>(z) * s;
    // How far the float path's twisted x can be from the estimate, per unit
    // of radius: atan2f's error in an angle up to pi, the rounding of
    // theta + phi, cosf's error, the radius's four roundings, the final
    // product, four more to cover rounding the bounds below to float, and
    // the estimate's own error.
    const double angle = kLibraryUlps * 2.0 * kUlp * 3.2 + kUlp * (3.2 + std::fabs(phi));
    const double perRadius = angle + kLibraryUlps * 2.0 * kUlp + 4.0 * kUlp + kUlp + 4.0 * kUlp + 0x1p-28;
    const double margin = 1.01 * radius * perRadius;
    if (!(std::fabs(estimate) + margin < 0x1p22)) return -1;

    // Within one cell, the points on its lower line are an interval from the
    // cell's start, those on its upper line one to its end, monotonic in x
    // as the float steps are. So both ends of the range on the same line, or
    // both on none, decide every x between.
    const float lo = static_cast<float>(estimate - margin);
    const float hi = static_cast<float>(estimate + margin);
    const int cell = cellIndexSse(lo);
    const bool oneCell = (cell == cellIndexSse(hi)) & (lo != static_cast<float>(cell)) & (hi != static_cast<float>(cell));
    const LineSides a = lineSides(lo, w), b = lineSides(hi, w);
    const bool on = (a.lower & b.lower) | (a.upper & b.upper);
    const bool off = !(a.lower | a.upper | b.lower | b.upper);
    // A select, not a branch: which answer comes is as random as the points.
    return (oneCell & (on | off)) ? static_cast<int>(off) : -1;
}

}  // namespace

float SpiralTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float w = r.stripeWidth / 2.0f;
    if (isPlanar(flags)) return onLine(y * r.spiralRate + x, w) ? 0.0f : 1.0f;

    const int certain = twistedValue(x, y, z, r.spiralRate, w);
    if (certain >= 0) return static_cast<float>(certain);
    // Twist: turn (x, z) about the y axis by spiralRate radians per unit of y.
    float radius, theta;
    cartesianToPolar(x, z, radius, theta);
    theta = theta + r.spiralRate * y;
    polarToCartesian(radius, theta, x, z);
    return onLine(x, w) ? 0.0f : 1.0f;
}

template class RecordTexture3D<SpiralTexture3D>;

}  // namespace gritwell
