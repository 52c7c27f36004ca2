#include "textures/PlaidTexture3D.h"

#include <cmath>
#include <cstdint>

#include "core/FloatToIntLanes.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"
#include "noise/CellNoise.h"
#include "noise/DoubleLanes.h"
#include "noise/PerlinLattice.h"

namespace gritwell {

namespace {

// Hard bands per unit of x and of y: each is 0.2 units wide.
constexpr float kBandsPerUnit = 5.0f;

// The sum of the four layers, clamped: the high bound first and as
// "s < 1 ? s : 1", so a NaN sum (from a period of 0, say) fails that test
// and comes out as 1.0, as it always has.
[[gnu::always_inline]] inline float clampedSum(float ya, float xb, float xc, float yd) {
    float s = ya + xb + xc + yd;
    s = s < 1.0f ? s : 1.0f;
    s = 0.0f < s ? s : 0.0f;
    return s;
}

}  // namespace

// Each layer mixes from its colour (noise 0) to its background (noise 1).
float PlaidTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    const float vPeriod = static_cast<float>(r.verticalPeriod);
    const float hPeriod = static_cast<float>(r.horizontalPeriod);
    const float a = PRMan::pnoise(r.verticalFrequency * y, vPeriod);
    const float ya = PRMan::mix(r.color1, r.primaryBackground, a);
    const float b = PRMan::pnoise(r.horizontalFrequency * x, hPeriod);
    const float xb = PRMan::mix(r.color2, r.primaryBackground, b);
    const float c = CellNoise::cellNoise(kBandsPerUnit * x);
    const float xc = PRMan::mix(r.color3, r.background2, c);
    const float d = CellNoise::cellNoise(kBandsPerUnit * y);
    const float yd = PRMan::mix(r.color4, r.background3, d);

    return clampedSum(ya, xb, xc, yd);
}

// ---- Eight points at a time -------------------------------------------------
//
// evaluate with one lane per point: the periodic noise's remainder, the 1-D
// lattice noise, the cell noise of the bands and the blends, each the same
// operations in the same order. The remainder is the one certain shortcut
// of PRMan::pnoise (a whole-number period up to 2^24 and samples below
// 2^24); a group with any other sample, and every group of a record with
// another period, goes through evaluate point by point.

namespace {

using DoubleLanes = DoubleLanes8;

// Perlin::noise(x), lane by lane.
GRITWELL_AVX2 inline __m256 noise1(__m256 x) {
    using namespace lattice;
    const AxisLanes8 ax = axis(x);
    const PermPair8 h = permPair(ax.i);
    return _mm256_mul_ps(_mm256_set1_ps(kScale1),
                         interp(fade(ax.f0), gradient(h.near, ax.f0), gradient(h.far, ax.f1)));
}

// f(low half) and f(high half) of eight doubles.
template <class F>
GRITWELL_AVX2 inline DoubleLanes eachHalf(const DoubleLanes& d, F f) {
    return {f(d.low), f(d.high)};
}

// f(low halves) and f(high halves) of two sets of eight doubles.
template <class F>
GRITWELL_AVX2 inline DoubleLanes eachHalfOf(const DoubleLanes& a, const DoubleLanes& b, F f) {
    return {f(a.low, b.low), f(a.high, b.high)};
}

// PRMan::pnoise(x, period) for a whole-number period of 1 to 2^24; false
// where a lane's sample is NaN, infinite or 2^24 or more.
GRITWELL_AVX2 inline bool periodicNoise(__m256 x, float period, __m256& out) {
    const __m256 absX = _mm256_andnot_ps(_mm256_set1_ps(-0.0f), x);
    if (_mm256_movemask_ps(_mm256_cmp_ps(absX, _mm256_set1_ps(0x1p24f), _CMP_LT_OQ)) != 0xff) return false;
    const __m256d p = _mm256_set1_pd(std::fabs(static_cast<double>(period)));
    const __m256d signedPeriod = _mm256_set1_pd(static_cast<double>(period));
    const DoubleLanes ax = widen(absX), xd = widen(x);
    // The remainder of |x| by |period|, exact: the quotient truncated, the
    // one the rounded division can overshoot taken back; then x's sign.
    const DoubleLanes rest = eachHalf(ax, [&](__m256d a) GRITWELL_AVX2 {
        const __m256d q = _mm256_round_pd(_mm256_div_pd(a, p), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
        const __m256d r = _mm256_sub_pd(a, _mm256_mul_pd(q, p));
        return _mm256_add_pd(r, _mm256_and_pd(_mm256_cmp_pd(r, _mm256_setzero_pd(), _CMP_LT_OQ), p));
    });
    // With x's sign, plus the period where x is below zero, else plus 0.
    const DoubleLanes xp2 = eachHalfOf(rest, xd, [&](__m256d r, __m256d v) GRITWELL_AVX2 {
        const __m256d signedRest = _mm256_or_pd(r, _mm256_and_pd(v, _mm256_set1_pd(-0.0)));
        const __m256d below = _mm256_cmp_pd(v, _mm256_setzero_pd(), _CMP_LT_OQ);
        return _mm256_add_pd(signedRest, _mm256_and_pd(below, signedPeriod));
    });
    const __m256 xp = narrow(xp2);
    const __m256 pf = _mm256_set1_ps(period);
    const __m256 sum = _mm256_add_ps(_mm256_mul_ps(_mm256_sub_ps(pf, xp), noise1(xp)),
                                     _mm256_mul_ps(xp, noise1(_mm256_sub_ps(xp, pf))));
    out = _mm256_div_ps(sum, pf);
    return true;
}

// PRMan::mix(from, to, t) for a record's two colours.
GRITWELL_AVX2 inline __m256 toward(float from, float to, __m256 t) {
    return PRMan::mix(_mm256_set1_ps(from), _mm256_set1_ps(to), t);
}

// Eight points; false, with nothing written, where a group must go point by point.
GRITWELL_AVX2 bool plaid8(const PlaidTexture3D::Record& r, const float* xs, const float* ys, float* out) {
    const __m256 x = _mm256_loadu_ps(xs), y = _mm256_loadu_ps(ys);
    __m256 a, b;
    if (!periodicNoise(_mm256_mul_ps(_mm256_set1_ps(r.verticalFrequency), y), static_cast<float>(r.verticalPeriod), a) ||
        !periodicNoise(_mm256_mul_ps(_mm256_set1_ps(r.horizontalFrequency), x), static_cast<float>(r.horizontalPeriod), b))
        return false;
    const __m256 bands = _mm256_set1_ps(kBandsPerUnit);
    const __m256 ya = toward(r.color1, r.primaryBackground, a);
    const __m256 xb = toward(r.color2, r.primaryBackground, b);
    const __m256 xc = toward(r.color3, r.background2, CellNoise::cellNoise(_mm256_mul_ps(bands, x)));
    const __m256 yd = toward(r.color4, r.background3, CellNoise::cellNoise(_mm256_mul_ps(bands, y)));
    __m256 s = _mm256_add_ps(_mm256_add_ps(_mm256_add_ps(ya, xb), xc), yd);
    // s < 1 ? s : 1, then 0 < s ? s : 0, as clampedSum tests them.
    s = _mm256_blendv_ps(_mm256_set1_ps(1.0f), s, _mm256_cmp_ps(s, _mm256_set1_ps(1.0f), _CMP_LT_OQ));
    s = _mm256_blendv_ps(_mm256_setzero_ps(), s, _mm256_cmp_ps(_mm256_setzero_ps(), s, _CMP_LT_OQ));
    _mm256_storeu_ps(out, s);
    return true;
}

// Whether both periods take the certain shortcut.
bool wholePeriods(const PlaidTexture3D::Record& r) {
    for (const std::int32_t period : {r.verticalPeriod, r.horizontalPeriod}) {
        const double p = std::fabs(static_cast<double>(static_cast<float>(period)));
        if (!(p >= 1.0 && p <= 0x1p24)) return false;
    }
    return true;
}

}  // namespace

void PlaidTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    int done = 0;
    if (simdLevel() >= SimdLevel::kAvx2 && wholePeriods(r)) {
        const PointBlock p(points, n, 1.0f);
        for (; done + 8 <= n; done += 8)
            if (!plaid8(r, p.x + done, p.y + done, out + done))
                evaluateEach(r, flags, points + 3 * done, 8, out + done);
    }
    evaluateEach(r, flags, points + 3 * done, n - done, out + done);
}

template class RecordTexture3D<PlaidTexture3D>;

}  // namespace gritwell
