#include "textures/SpiralTexture3D.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/Rounding.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"

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

// The reduction by pi/2: two parts, the first of 33 bits so that k times it
// is exact; the quadrant count rounded by adding 1.5 * 2^52, whose sum's low
// bits then hold it, with no conversion on the way.
constexpr double kTwoOverPi = 0.63661977236758134308;
constexpr double kHalfPiHigh = 1.57079632673412561417;
constexpr double kHalfPiLow = 6.07710050650619224932e-11;
constexpr double kRoundShift = 0x1.8p52;

// Taylor coefficients: sin t = t + t u (s3 + u s5 + u^2 (s7 + u s9)),
// cos t = 1 + u (c2 + u c4 + u^2 (c6 + u c8 + u^2 c10)), u = t^2, in
// Estrin's order, pairs first, for a shorter chain.
constexpr double kS3 = -1.0 / 6, kS5 = 1.0 / 120, kS7 = -1.0 / 5040, kS9 = 1.0 / 362880;
constexpr double kC2 = -1.0 / 2, kC4 = 1.0 / 24, kC6 = -1.0 / 720, kC8 = 1.0 / 40320, kC10 = -1.0 / 3628800;

// How far the float path's twisted x can be from the estimate, per unit of
// radius, beyond the rounding of theta + phi (kUlp (3.2 + |phi|)): atan2f's
// error in an angle up to pi, cosf's error, the radius's four roundings, the
// final product, four more to cover rounding the bounds to float, and the
// estimate's own error. The margin adds 1% on top.
constexpr double kFixedError = kLibraryUlps * 2.0 * kUlp * 3.2 + kUlp * 3.2 + kLibraryUlps * 2.0 * kUlp +
                               4.0 * kUlp + kUlp + 4.0 * kUlp + 0x1p-28;
constexpr double kMarginSlack = 1.01;

// sin and cos of |a| <= kMaxAngle to within 2e-9, which is all the bound
// below needs: Cody and Waite's reduction by pi/2 in two parts, then Taylor
// series on [-pi/4, pi/4] to t^9 and t^10. The quadrant picks and signs the
// pair without branches: it is as random as the points.
__m128d sinCos(double a) {
    const double shifted = a * kTwoOverPi + kRoundShift;
    const double k = shifted - kRoundShift;
    const int quadrant = static_cast<int>(static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(shifted)));
    const double t = (a - k * kHalfPiHigh) - k * kHalfPiLow;
    const double u = t * t;
    const double u2 = u * u;
    const double sinT = t + t * u * ((kS3 + u * kS5) + u2 * (kS7 + u * kS9));
    const double cosT = 1.0 + u * ((kC2 + u * kC4) + u2 * ((kC6 + u * kC8) + u2 * kC10));
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
    const double margin = kMarginSlack * radius * (kFixedError + kUlp * std::fabs(phi));
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


// ---- Four points at a time, on AVX2 ------------------------------------------

GRITWELL_AVX2 inline __m256d all(double v) { return _mm256_set1_pd(v); }

struct LineSides4 {
    __m128 lower, upper;
};

// lineSides lane by lane; ww is w * w.
GRITWELL_AVX2 inline LineSides4 lineSides4(__m128 x, __m128 ww) {
    const __m128i f = cellIndex(x);
    const __m128 d1 = _mm_sub_ps(x, _mm_cvtepi32_ps(f));
    const __m128 d2 = _mm_sub_ps(_mm_cvtepi32_ps(_mm_add_epi32(f, _mm_set1_epi32(1))), x);
    return {_mm_cmpge_ps(ww, _mm_mul_ps(d1, d1)), _mm_cmpge_ps(ww, _mm_mul_ps(d2, d2))};
}

// twistedValue for four points, the same steps lane by lane: each certain
// lane's value goes to out and sets its bit in the result; the others are
// left for the float path.
GRITWELL_AVX2 int twistedValues4(const float* xs, const float* ys, const float* zs, float rate, float w,
                                 float* out) {
    const __m128 x = _mm_loadu_ps(xs), y = _mm_loadu_ps(ys), z = _mm_loadu_ps(zs);
    const __m128 phi = _mm_mul_ps(_mm_set1_ps(rate), y);
    const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    const __m128 ax = _mm_and_ps(x, magnitude), az = _mm_and_ps(z, magnitude), aphi = _mm_and_ps(phi, magnitude);
    const __m128 tiny = _mm_set1_ps(0x1p-60f), huge = _mm_set1_ps(0x1p60f), zero = _mm_setzero_ps();
    const __m128 sized = _mm_and_ps(
        _mm_and_ps(_mm_or_ps(_mm_cmpeq_ps(ax, zero), _mm_cmpge_ps(ax, tiny)),
                   _mm_or_ps(_mm_cmpeq_ps(az, zero), _mm_cmpge_ps(az, tiny))),
        _mm_and_ps(_mm_and_ps(_mm_cmple_ps(ax, huge), _mm_cmple_ps(az, huge)),
                   _mm_cmple_ps(aphi, _mm_set1_ps(static_cast<float>(kMaxAngle)))));
    const __m256d radius = _mm256_cvtps_pd(ax) + _mm256_cvtps_pd(az);

    const __m256d a = _mm256_cvtps_pd(phi);
    const __m256d shifted = a * all(kTwoOverPi) + all(kRoundShift);
    const __m256d k = shifted - all(kRoundShift);
    const __m256d t = (a - k * all(kHalfPiHigh)) - k * all(kHalfPiLow);
    const __m256d u = t * t;
    const __m256d u2 = u * u;
    const __m256d sinT = t + t * u * ((all(kS3) + u * all(kS5)) + u2 * (all(kS7) + u * all(kS9)));
    const __m256d cosT =
        all(1.0) + u * ((all(kC2) + u * all(kC4)) + u2 * ((all(kC6) + u * all(kC8)) + u2 * all(kC10)));
    // The quadrant's bit 0 swaps the pair (the blend reads the sign bit);
    // its bit 1 signs the sine, and bit 1 of quadrant + 1 the cosine.
    const __m256i quadrant = _mm256_castpd_si256(shifted);
    const __m256d odd = _mm256_castsi256_pd(_mm256_slli_epi64(quadrant, 63));
    const __m256i bit1 = _mm256_set1_epi64x(2);
    const __m256d sinSign = _mm256_castsi256_pd(_mm256_slli_epi64(_mm256_and_si256(quadrant, bit1), 62));
    const __m256d cosSign = _mm256_castsi256_pd(
        _mm256_slli_epi64(_mm256_and_si256(_mm256_add_epi64(quadrant, _mm256_set1_epi64x(1)), bit1), 62));
    const __m256d sine = _mm256_xor_pd(_mm256_blendv_pd(sinT, cosT, odd), sinSign);
    const __m256d cosine = _mm256_xor_pd(_mm256_blendv_pd(cosT, sinT, odd), cosSign);

    const __m256d estimate = _mm256_cvtps_pd(x) * cosine - _mm256_cvtps_pd(z) * sine;
    const __m256d margin = all(kMarginSlack) * radius * (all(kFixedError) + all(kUlp) * _mm256_cvtps_pd(aphi));
    const __m256d size = _mm256_andnot_pd(all(-0.0), estimate) + margin;
    const __m256d inRange =
        _mm256_and_pd(_mm256_cmp_pd(radius, all(0x1p-30), _CMP_GE_OQ), _mm256_cmp_pd(size, all(0x1p22), _CMP_LT_OQ));

    const __m128 lo = _mm256_cvtpd_ps(estimate - margin), hi = _mm256_cvtpd_ps(estimate + margin);
    const __m128i cell = cellIndex(lo);
    const __m128 cellStart = _mm_cvtepi32_ps(cell);
    const __m128 oneCell = _mm_and_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(cell, cellIndex(hi))),
                                      _mm_and_ps(_mm_cmpneq_ps(lo, cellStart), _mm_cmpneq_ps(hi, cellStart)));
    const __m128 ww = _mm_set1_ps(w * w);
    const LineSides4 sa = lineSides4(lo, ww), sb = lineSides4(hi, ww);
    const __m128 on = _mm_or_ps(_mm_and_ps(sa.lower, sb.lower), _mm_and_ps(sa.upper, sb.upper));
    const __m128 anyLine = _mm_or_ps(_mm_or_ps(sa.lower, sa.upper), _mm_or_ps(sb.lower, sb.upper));
    const __m128 decided = _mm_or_ps(on, _mm_xor_ps(anyLine, _mm_castsi128_ps(_mm_set1_epi32(-1))));
    _mm_storeu_ps(out, _mm_andnot_ps(anyLine, _mm_set1_ps(1.0f)));
    return _mm_movemask_ps(_mm_and_ps(_mm_and_ps(sized, oneCell), decided)) & _mm256_movemask_pd(inRange);
}

// The twist as stored values were made: through the C library's atan2f,
// cosf and sinf.
float twistedByLibrary(float rate, float w, float x, float y, float z) {
    // Turn (x, z) about the y axis by rate radians per unit of y.
    float radius, theta;
    cartesianToPolar(x, z, radius, theta);
    theta = theta + rate * y;
    polarToCartesian(radius, theta, x, z);
    return onLine(x, w) ? 0.0f : 1.0f;
}

float twisted(float rate, float w, float x, float y, float z) {
    const int certain = twistedValue(x, y, z, rate, w);
    if (certain >= 0) return static_cast<float>(certain);
    return twistedByLibrary(rate, w, x, y, z);
}

// Four points at a time; a lane the estimate leaves uncertain goes through
// the library, and the last few points one by one.
GRITWELL_AVX2 void twistBlock(float rate, float w, const float* x, const float* y, const float* z, int n,
                              float* out) {
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const int certain = twistedValues4(x + i, y + i, z + i, rate, w, out + i);
        if (certain == 15) continue;
        for (int k = 0; k < 4; ++k)
            if (!(certain & (1 << k))) out[i + k] = twistedByLibrary(rate, w, x[i + k], y[i + k], z[i + k]);
    }
    for (; i < n; ++i) out[i] = twisted(rate, w, x[i], y[i], z[i]);
}

// How far either side of a line's centre a point counts as on it.
float halfWidth(const SpiralTexture3D::Record& r) { return r.stripeWidth / 2.0f; }

}  // namespace

float SpiralTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const float w = halfWidth(r);
    if (isPlanar(flags)) return onLine(y * r.spiralRate + x, w) ? 0.0f : 1.0f;
    return twisted(r.spiralRate, w, x, y, z);
}

// The solid mode runs four points at a time where the processor has AVX2.
void SpiralTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    if (isPlanar(flags) || simdLevel() < SimdLevel::kAvx2) return evaluateEach(r, flags, points, n, out);
    const PointBlock p(points, n, 1.0f);
    twistBlock(r.spiralRate, halfWidth(r), p.x, p.y, p.z, n, out);
}

template class RecordTexture3D<SpiralTexture3D>;

}  // namespace gritwell
