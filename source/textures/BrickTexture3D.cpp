#include "textures/BrickTexture3D.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/FloatToInt.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"
#include "core/Rounding.h"
#include "core/Vec2.h"
#include "noise/CellNoise.h"
#include "noise/DoubleLanes.h"
#include "noise/PRMan.h"

namespace gritwell {

namespace {

using PRMan::step;

// Where the version-3 record (64 bytes) kept its fields.
namespace v3 {
constexpr int kMajorVersion = 3;
constexpr std::size_t kBrickHeight = 36;
constexpr std::size_t kBrickWidth = 40;
constexpr std::size_t kBrickDepth = 44;
constexpr std::size_t kMortarThickness = 48;
constexpr std::size_t kRandomizeColors = 52;
constexpr std::size_t kMinColor = 56;
constexpr std::size_t kMaxColor = 60;
}  // namespace v3

void readFloat(float& field, const char* in, std::size_t offset) {
    std::memcpy(&field, in + offset, sizeof field);
}

// The brick a coordinate lies in, by the true floor (so -1.0 is in brick -1):
// truncToInt(std::floor(v)), without the library's floor. Below 2^23 the
// truncation is one too high exactly where it lies above v; from there on
// every float is whole and is its own floor (NaN still gives INT_MIN).
int floorIndex(float v) {
    if (!(std::fabs(v) < 0x1p23f)) return truncToInt(v);
    const int i = truncToInt(v);
    return static_cast<float>(i) > v ? i - 1 : i;
}

// Parity of a floored coordinate taken as a 64-bit integer. NaN and values
// beyond that range convert to the 64-bit minimum, which is even.
bool isEvenFloor(double floored) {
    return !(std::fabs(floored) < 0x1p63) || fmodTwo(floored) == 0.0;
}

// Every other course (or layer) is shifted by half a brick: above the origin
// those whose half-count has a fraction above one half, below it those with
// a fraction under one half. A count of exactly 1 stays unshifted.
bool shiftedByHalf(float coordinate, float count) {
    const float f = std::fabs(fmodOne(0.5f * count));
    return coordinate >= 0.0f ? f > 0.5f : f < 0.5f;
}

// 1 inside, 0 within `joint` of either edge of the unit cell.
float jointMask(float joint, float fraction) { return step(joint, fraction) - step(1.0f - joint, fraction); }

// Squared length of a - b, as the corner tests have always compared it.
float squaredDistance(const Vec2& a, const Vec2& b) {
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    return dx * dx + dy * dy;
}

}  // namespace

namespace {

// The running bond's cell sizes (brick plus mortar) and half joints, from
// the record; the one-point and the block paths both start from them.
struct BondFrame {
    float bw, bh, bd;  // cell width, height, depth
    float mw, mh, md;  // half a joint as a fraction of a cell, divided in double
};

BondFrame bondFrame(const BrickTexture3D::Record& r) {
    const float M = r.mortarThickness;
    const float bw = r.brickWidth + M;
    const float bh = r.brickHeight + M;
    const float bd = r.brickDepth + M;
    return {bw, bh, bd, static_cast<float>(M * 0.5 / bw), static_cast<float>(M * 0.5 / bh),
            static_cast<float>(M * 0.5 / bd)};
}

}  // namespace

float BrickTexture3D::runningBond(const Record& r, int flags, float x, float y, float z) {
    const float W = r.brickWidth;
    const float H = r.brickHeight;
    const float M = r.mortarThickness;
    const auto [bw, bh, bd, mw, mh, md] = bondFrame(r);

    if (isPlanar(flags)) z = 0.5f;
    const float mortar = r.mortarColor;
    float brick = r.brickColor;

    float s = x / bw;
    float t = y / bh;
    float u = z / bd;
    if (shiftedByHalf(y, t)) s += 0.5f;
    // A course shifted in both y and z moves a whole brick, i.e. not at all.
    if (shiftedByHalf(z, u)) s += 0.5f;

    const int tb = floorIndex(t);
    const int ub = floorIndex(u);
    if (r.rowOffsetVariabilityEnabled != 0)
        s = s + r.rowOffsetVariabilityAmplitude *
                    (CellNoise::cellNoise(static_cast<float>(tb), static_cast<float>(ub)) - 0.5f);
    const int sb = floorIndex(s);
    s -= static_cast<float>(sb);
    t -= static_cast<float>(tb);
    u -= static_cast<float>(ub);

    const float ws = jointMask(mw, s);
    const float ht = jointMask(mh, t);
    const float du = jointMask(md, u);

    if (r.randomizeColors != 0)
        brick = (r.maxColor - r.minColor) *
                    CellNoise::cellNoise(static_cast<float>(sb), static_cast<float>(tb), static_cast<float>(ub)) +
                r.minColor;

    const float result = PRMan::mix(mortar, brick, ws * ht * du);
    // Equal intensities make every point "inside", so the corners then
    // become the (identical) mortar everywhere; kept as stored images show it.
    if (r.roundedCornersEnabled == 0 || result != brick) return result;

    // Corners are rounded in a frame scaled by the longer cell side, so the
    // brick is isotropic: x spans [0, ex] and y [0, ey].
    const float m = H < W ? H : W;  // W when the sides are equal
    const float L = bh > bw ? bh : bw;
    Vec2 q;
    if (W == m)
        q = {bw * s / bh, t};
    else
        q = {s, bh * t / bw};
    const float radius = r.roundedCornersRadius * (m / 2.0f / L);
    const float c = M / 2.0f / L + radius;
    float ex, ey;
    if (H == m) {
        ex = 1.0f;
        ey = bh / bw;
    } else {
        ex = bw / bh;
        ey = 1.0f;
    }
    const float r2 = radius * radius;
    // A point at exactly the radius from a corner centre is already mortar.
    if (c >= q.x && c >= q.y && squaredDistance(q, {c, c}) >= r2) return mortar;
    if (q.x >= ex - c && c >= q.y && squaredDistance(q, {ex - c, c}) >= r2) return mortar;
    if (c >= q.x && q.y >= ey - c && squaredDistance(q, {c, ey - c}) >= r2) return mortar;
    if (q.x >= ex - c && q.y >= ey - c && squaredDistance(q, {ex - c, ey - c}) >= r2) return mortar;
    return result;
}

namespace {

// The herringbone's cell sizes and half joints, from the record, for the
// one-point and the block paths.
struct HerringboneFrame {
    float bh, bd;  // cell side in x and y, cell depth
    float mh, md;  // half a joint as a fraction of a cell, divided in double
};

HerringboneFrame herringboneFrame(const BrickTexture3D::Record& r) {
    const float M = r.mortarThickness;
    const float bh = r.brickHeight + M;
    const float bd = r.brickDepth + M;
    return {bh, bd, static_cast<float>(M * 0.5 / bh), static_cast<float>(M * 0.5 / bd)};
}

}  // namespace

float BrickTexture3D::herringbone(const Record& r, int flags, float x, float y, float z) {
    const float H = r.brickHeight;
    const float M = r.mortarThickness;
    const auto [bh, bd, mh, md] = herringboneFrame(r);

    // Square cells of side bh; a brick covers two of them.
    const float s = x / bh;
    const float t = y / bh;
    // Planar mode moves z by half a unit here, where the running bond sets it
    // to 0.5: stored images depend on both.
    const float u = isPlanar(flags) ? static_cast<float>((z + 0.5) / bd) : z / bd;

    const double i = std::floor(static_cast<double>(s));
    const double j = std::floor(static_cast<double>(t));
    // Diagonal bands of bricks, alternately vertical (1) and horizontal (0).
    const bool vertical = std::fabs(fmodTwo(std::floor(0.5 * j + 0.5 * i))) != 0.0;
    const float fs = static_cast<float>(s - i);
    const float ft = static_cast<float>(t - j);
    const float fu = u - std::floor(u);
    const bool sEven = isEvenFloor(i);
    const bool tEven = isEvenFloor(j);

    // Each cell is one half of a brick: the joint runs only along its outer end.
    float ws, ht;
    if (vertical) {
        ws = jointMask(mh, fs);
        ht = sEven == tEven ? step(mh, ft) : 1.0f - step(1.0f - mh, ft);
    } else {
        ht = jointMask(mh, ft);
        ws = sEven != tEven ? 1.0f - step(1.0f - mh, fs) : step(mh, fs);
    }
    const float du = jointMask(md, fu);

    const float mortar = r.mortarColor;
    float brick = r.brickColor;
    if (r.randomizeColors != 0) {
        // Both cells of a brick hash to the same cell: the halved coordinate
        // (shifted by a half for odd cells) floors to the brick's index.
        float n;
        if (vertical)
            n = sEven ? CellNoise::cellNoise(s, 0.5f * t, u)
                      : CellNoise::cellNoise(s, static_cast<float>(0.5 + 0.5 * t), u);
        else
            n = tEven ? CellNoise::cellNoise(0.5f * s, t, u) : CellNoise::cellNoise(0.5f + 0.5f * s, t, u);
        brick = (r.maxColor - r.minColor) * n + r.minColor;
    }

    const float result = PRMan::mix(mortar, brick, ws * ht * du);
    if (result != brick || r.roundedCornersEnabled == 0) return result;

    // Only the two corners at the brick's outer end of this cell are rounded.
    const float radius = r.roundedCornersRadius * (H / 2.0f / bh);
    const float c = M / 2.0f / bh + radius;
    const float c1 = 1.0f - c;
    const Vec2 q{fs, ft};
    Vec2 centre{0.0f, 0.0f};
    bool chosen = true;
    if (vertical && sEven == tEven) {  // bottom end
        if (c >= fs && c >= ft)
            centre = {c, c};
        else if (fs >= c1 && c >= ft)
            centre = {c1, c};
        else
            chosen = false;
    } else if (vertical) {  // top end
        if (c >= fs && ft >= c1)
            centre = {c, c1};
        else if (fs >= c1 && ft >= c1)
            centre = {c1, c1};
        else
            chosen = false;
    } else if (sEven != tEven) {  // right end
        if (c >= ft && fs >= c1)
            centre = {c1, c};
        else if (ft >= c1 && fs >= c1)
            centre = {c1, c1};
        else
            chosen = false;
    } else {  // left end
        if (c >= ft && c >= fs)
            centre = {c, c};
        else if (ft >= c1 && c >= fs)
            centre = {c, c1};
        else
            chosen = false;
    }
    if (chosen && squaredDistance(q, centre) >= radius * radius) return mortar;
    return result;
}

// ---- The running bond, eight points at a time ------------------------------
//
// runningBond with one lane per point, the same operations in the same
// order; its rounded corners' tests are made in every lane and kept where
// the blend is the brick's own colour.

namespace {

GRITWELL_AVX2 inline __m256 stepLanes(float a, __m256 x) {
    return _mm256_andnot_ps(_mm256_cmp_ps(x, _mm256_set1_ps(a), _CMP_LT_OQ), _mm256_set1_ps(1.0f));
}

GRITWELL_AVX2 inline __m256 jointMaskLanes(float joint, __m256 fraction) {
    return _mm256_sub_ps(stepLanes(joint, fraction), stepLanes(1.0f - joint, fraction));
}

// squaredDistance of (x, y) from (cx, cy), lane by lane.
GRITWELL_AVX2 inline __m256 squaredDistanceLanes(__m256 x, __m256 y, __m256 cx, __m256 cy) {
    const __m256 dx = _mm256_sub_ps(x, cx), dy = _mm256_sub_ps(y, cy);
    return _mm256_add_ps(_mm256_mul_ps(dx, dx), _mm256_mul_ps(dy, dy));
}

// floorIndex, lane by lane: the conversion gives INT_MIN where truncToInt does.
GRITWELL_AVX2 inline __m256i floorIndexLanes(__m256 v) {
    return _mm256_cvttps_epi32(_mm256_round_ps(v, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC));
}

// shiftedByHalf, lane by lane: |fmodOne(v)| is |v - trunc(v)| for every v.
GRITWELL_AVX2 inline __m256 shiftedByHalfLanes(__m256 coordinate, __m256 count) {
    const __m256 v = _mm256_mul_ps(_mm256_set1_ps(0.5f), count);
    const __m256 rest = _mm256_sub_ps(v, _mm256_round_ps(v, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
    const __m256 f = _mm256_andnot_ps(_mm256_set1_ps(-0.0f), rest);
    const __m256 half = _mm256_set1_ps(0.5f);
    return _mm256_blendv_ps(_mm256_cmp_ps(f, half, _CMP_LT_OQ), _mm256_cmp_ps(f, half, _CMP_GT_OQ),
                            _mm256_cmp_ps(coordinate, _mm256_setzero_ps(), _CMP_GE_OQ));
}

// Eight points into out.
// Inlined into both callers, so each ends with the vzeroupper an AVX
// function returning to SSE code needs: GCC leaves it out of a tail call
// to another AVX function, and the caller's SSE instructions then wait on
// the upper halves left dirty.
[[gnu::always_inline]] GRITWELL_AVX2 inline void runningBondLanes(const BrickTexture3D::Record& r, const BondFrame& b, bool planar,
                                          __m256 x, __m256 y, __m256 z, float* out) {
    if (planar) z = _mm256_set1_ps(0.5f);
    __m256 s = _mm256_div_ps(x, _mm256_set1_ps(b.bw));
    __m256 t = _mm256_div_ps(y, _mm256_set1_ps(b.bh));
    __m256 u = _mm256_div_ps(z, _mm256_set1_ps(b.bd));
    const __m256 half = _mm256_set1_ps(0.5f);
    s = _mm256_blendv_ps(s, _mm256_add_ps(s, half), shiftedByHalfLanes(y, t));
    s = _mm256_blendv_ps(s, _mm256_add_ps(s, half), shiftedByHalfLanes(z, u));
    const __m256 tb = _mm256_cvtepi32_ps(floorIndexLanes(t)), ub = _mm256_cvtepi32_ps(floorIndexLanes(u));
    if (r.rowOffsetVariabilityEnabled != 0)
        s = _mm256_add_ps(s, _mm256_mul_ps(_mm256_set1_ps(r.rowOffsetVariabilityAmplitude),
                                           _mm256_sub_ps(CellNoise::cellNoise(tb, ub), half)));
    const __m256 sb = _mm256_cvtepi32_ps(floorIndexLanes(s));
    s = _mm256_sub_ps(s, sb);
    t = _mm256_sub_ps(t, tb);
    u = _mm256_sub_ps(u, ub);
    const __m256 coverage =
        _mm256_mul_ps(_mm256_mul_ps(jointMaskLanes(b.mw, s), jointMaskLanes(b.mh, t)), jointMaskLanes(b.md, u));
    __m256 brick = _mm256_set1_ps(r.brickColor);
    if (r.randomizeColors != 0)
        brick = _mm256_add_ps(_mm256_mul_ps(_mm256_set1_ps(r.maxColor - r.minColor), CellNoise::cellNoise(sb, tb, ub)),
                              _mm256_set1_ps(r.minColor));
    __m256 result = PRMan::mix(_mm256_set1_ps(r.mortarColor), brick, coverage);
    if (r.roundedCornersEnabled != 0) {
        // runningBond's four corner tests, any of which makes mortar of a
        // point whose blend is the brick's own colour.
        const float W = r.brickWidth, H = r.brickHeight, M = r.mortarThickness;
        const float m = H < W ? H : W;
        const float L = b.bh > b.bw ? b.bh : b.bw;
        const __m256 qx = W == m ? _mm256_div_ps(_mm256_mul_ps(_mm256_set1_ps(b.bw), s), _mm256_set1_ps(b.bh)) : s;
        const __m256 qy = W == m ? t : _mm256_div_ps(_mm256_mul_ps(_mm256_set1_ps(b.bh), t), _mm256_set1_ps(b.bw));
        const float radius = r.roundedCornersRadius * (m / 2.0f / L);
        const float c = M / 2.0f / L + radius;
        const float ex = H == m ? 1.0f : b.bw / b.bh;
        const float ey = H == m ? b.bh / b.bw : 1.0f;
        const __m256 cv = _mm256_set1_ps(c), exc = _mm256_set1_ps(ex - c), eyc = _mm256_set1_ps(ey - c);
        const __m256 nearX = _mm256_cmp_ps(cv, qx, _CMP_GE_OQ), nearY = _mm256_cmp_ps(cv, qy, _CMP_GE_OQ);
        const __m256 farX = _mm256_cmp_ps(qx, exc, _CMP_GE_OQ), farY = _mm256_cmp_ps(qy, eyc, _CMP_GE_OQ);
        const __m256 r2 = _mm256_set1_ps(radius * radius);
        const auto outside = [&](__m256 inCorner, __m256 cx, __m256 cy) GRITWELL_AVX2 {
            return _mm256_and_ps(inCorner, _mm256_cmp_ps(squaredDistanceLanes(qx, qy, cx, cy), r2, _CMP_GE_OQ));
        };
        const __m256 corner = _mm256_or_ps(
            _mm256_or_ps(outside(_mm256_and_ps(nearX, nearY), cv, cv), outside(_mm256_and_ps(farX, nearY), exc, cv)),
            _mm256_or_ps(outside(_mm256_and_ps(nearX, farY), cv, eyc), outside(_mm256_and_ps(farX, farY), exc, eyc)));
        result = _mm256_blendv_ps(result, _mm256_set1_ps(r.mortarColor),
                                  _mm256_and_ps(corner, _mm256_cmp_ps(result, brick, _CMP_EQ_OQ)));
    }
    _mm256_storeu_ps(out, result);
}

GRITWELL_AVX2 void runningBond8(const BrickTexture3D::Record& r, const BondFrame& b, bool planar, const float* xs,
                                const float* ys, const float* zs, float* out) {
    runningBondLanes(r, b, planar, _mm256_loadu_ps(xs), _mm256_loadu_ps(ys), _mm256_loadu_ps(zs), out);
}

// One point through the same lanes, in all eight of them. The scalar steps
// guess a branch at every joint and half-brick shift, and those guesses,
// as random as the points, cost a single call several times the arithmetic;
// the lanes take none.
GRITWELL_AVX2 float runningBondOnePoint(const BrickTexture3D::Record& r, int flags, float x, float y, float z) {
    alignas(32) float lanes[8];
    runningBondLanes(r, bondFrame(r), isPlanar(flags), _mm256_set1_ps(x), _mm256_set1_ps(y), _mm256_set1_ps(z), lanes);
    return lanes[0];
}

// ---- The herringbone, eight points at a time --------------------------------
//
// herringbone with one lane per point, the same operations in the same
// order, in double where it floors and tests parity, as far as the blend;
// the choices between a vertical and a horizontal band and between the
// ends of a brick are selects, and so are its rounded corners, as in the
// running bond.

GRITWELL_AVX2 inline __m256d floorLanes(__m256d v) {
    return _mm256_round_pd(v, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC);
}

// isEvenFloor, lane by lane.
GRITWELL_AVX2 inline __m256d isEvenFloorLanes(__m256d floored) {
    const __m256d beyond = _mm256_cmp_pd(_mm256_andnot_pd(_mm256_set1_pd(-0.0), floored), _mm256_set1_pd(0x1p63),
                                         _CMP_NLT_UQ);
    return _mm256_or_pd(beyond, _mm256_cmp_pd(fmodTwo(floored), _mm256_setzero_pd(), _CMP_EQ_OQ));
}

// Whether the band of cell (i, j) is vertical: |fmodTwo(floor(j/2 + i/2))|
// is not 0, NaN included.
GRITWELL_AVX2 inline __m256d verticalBandLanes(__m256d i, __m256d j) {
    const __m256d half = _mm256_set1_pd(0.5);
    const __m256d band = fmodTwo(floorLanes(_mm256_add_pd(_mm256_mul_pd(half, j), _mm256_mul_pd(half, i))));
    return _mm256_cmp_pd(band, _mm256_setzero_pd(), _CMP_NEQ_UQ);
}

[[gnu::always_inline]] GRITWELL_AVX2 inline void herringboneLanes(const BrickTexture3D::Record& r,
                                                                 const HerringboneFrame& f, bool planar, __m256 x,
                                                                 __m256 y, __m256 z, float* out) {
    const __m256 s = _mm256_div_ps(x, _mm256_set1_ps(f.bh));
    const __m256 t = _mm256_div_ps(y, _mm256_set1_ps(f.bh));
    const __m256d half = _mm256_set1_pd(0.5);
    __m256 u;
    if (planar) {
        const DoubleLanes8 zd = widen(z);
        const __m256d depth = _mm256_set1_pd(static_cast<double>(f.bd));
        u = narrow({_mm256_div_pd(_mm256_add_pd(zd.low, half), depth), _mm256_div_pd(_mm256_add_pd(zd.high, half), depth)});
    } else {
        u = _mm256_div_ps(z, _mm256_set1_ps(f.bd));
    }
    const DoubleLanes8 sd = widen(s), td = widen(t);
    const DoubleLanes8 i = {floorLanes(sd.low), floorLanes(sd.high)};
    const DoubleLanes8 j = {floorLanes(td.low), floorLanes(td.high)};
    const __m256 vertical = narrowMask(verticalBandLanes(i.low, j.low), verticalBandLanes(i.high, j.high));
    const __m256 fs = narrow({_mm256_sub_pd(sd.low, i.low), _mm256_sub_pd(sd.high, i.high)});
    const __m256 ft = narrow({_mm256_sub_pd(td.low, j.low), _mm256_sub_pd(td.high, j.high)});
    const __m256 fu = _mm256_sub_ps(u, _mm256_round_ps(u, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC));
    const __m256 sEven = narrowMask(isEvenFloorLanes(i.low), isEvenFloorLanes(i.high));
    const __m256 tEven = narrowMask(isEvenFloorLanes(j.low), isEvenFloorLanes(j.high));
    const __m256 differ = _mm256_xor_ps(sEven, tEven);

    // Vertical bands joint across x and at one end in y; horizontal ones
    // the other way about.
    const __m256 one = _mm256_set1_ps(1.0f);
    const __m256 wsVertical = jointMaskLanes(f.mh, fs);
    const __m256 htVertical =
        _mm256_blendv_ps(stepLanes(f.mh, ft), _mm256_sub_ps(one, stepLanes(1.0f - f.mh, ft)), differ);
    const __m256 htHorizontal = jointMaskLanes(f.mh, ft);
    const __m256 wsHorizontal =
        _mm256_blendv_ps(stepLanes(f.mh, fs), _mm256_sub_ps(one, stepLanes(1.0f - f.mh, fs)), differ);
    const __m256 ws = _mm256_blendv_ps(wsHorizontal, wsVertical, vertical);
    const __m256 ht = _mm256_blendv_ps(htHorizontal, htVertical, vertical);
    const __m256 du = jointMaskLanes(f.md, fu);

    __m256 brick = _mm256_set1_ps(r.brickColor);
    if (r.randomizeColors != 0) {
        const __m256 halfF = _mm256_set1_ps(0.5f);
        const __m256 halfS = _mm256_mul_ps(halfF, s);
        const __m256 oddRow = narrow({_mm256_add_pd(half, _mm256_mul_pd(half, td.low)),
                                      _mm256_add_pd(half, _mm256_mul_pd(half, td.high))});
        const __m256 cx = _mm256_blendv_ps(_mm256_blendv_ps(_mm256_add_ps(halfF, halfS), halfS, tEven), s, vertical);
        const __m256 cy = _mm256_blendv_ps(t, _mm256_blendv_ps(oddRow, _mm256_mul_ps(halfF, t), sEven), vertical);
        brick = _mm256_add_ps(_mm256_mul_ps(_mm256_set1_ps(r.maxColor - r.minColor), CellNoise::cellNoise(cx, cy, u)),
                              _mm256_set1_ps(r.minColor));
    }
    __m256 result = PRMan::mix(_mm256_set1_ps(r.mortarColor), brick, _mm256_mul_ps(_mm256_mul_ps(ws, ht), du));
    if (r.roundedCornersEnabled != 0) {
        // herringbone's corner at the brick's outer end of the cell: a
        // vertical band's end in y (the lower where the parities agree), a
        // horizontal band's in x (the left where they agree); along the end,
        // the corner the fraction is within c of, the nearer first.
        const float radius = r.roundedCornersRadius * (r.brickHeight / 2.0f / f.bh);
        const float c = r.mortarThickness / 2.0f / f.bh + radius;
        const __m256 cv = _mm256_set1_ps(c), c1 = _mm256_set1_ps(1.0f - c);
        const __m256 nearX = _mm256_cmp_ps(cv, fs, _CMP_GE_OQ), farX = _mm256_cmp_ps(fs, c1, _CMP_GE_OQ);
        const __m256 nearY = _mm256_cmp_ps(cv, ft, _CMP_GE_OQ), farY = _mm256_cmp_ps(ft, c1, _CMP_GE_OQ);
        const __m256 atEndX = _mm256_blendv_ps(nearX, farX, differ), atEndY = _mm256_blendv_ps(nearY, farY, differ);
        const __m256 endCentre = _mm256_blendv_ps(cv, c1, differ);
        const __m256 chosen = _mm256_blendv_ps(_mm256_and_ps(atEndX, _mm256_or_ps(nearY, farY)),
                                               _mm256_and_ps(atEndY, _mm256_or_ps(nearX, farX)), vertical);
        const __m256 cx = _mm256_blendv_ps(endCentre, _mm256_blendv_ps(c1, cv, nearX), vertical);
        const __m256 cy = _mm256_blendv_ps(_mm256_blendv_ps(c1, cv, nearY), endCentre, vertical);
        const __m256 outside =
            _mm256_cmp_ps(squaredDistanceLanes(fs, ft, cx, cy), _mm256_set1_ps(radius * radius), _CMP_GE_OQ);
        result = _mm256_blendv_ps(result, _mm256_set1_ps(r.mortarColor),
                                  _mm256_and_ps(_mm256_and_ps(chosen, outside), _mm256_cmp_ps(result, brick, _CMP_EQ_OQ)));
    }
    _mm256_storeu_ps(out, result);
}

GRITWELL_AVX2 void herringbone8(const BrickTexture3D::Record& r, const HerringboneFrame& f, bool planar,
                                const float* xs, const float* ys, const float* zs, float* out) {
    herringboneLanes(r, f, planar, _mm256_loadu_ps(xs), _mm256_loadu_ps(ys), _mm256_loadu_ps(zs), out);
}

GRITWELL_AVX2 float herringboneOnePoint(const BrickTexture3D::Record& r, int flags, float x, float y, float z) {
    alignas(32) float lanes[8];
    herringboneLanes(r, herringboneFrame(r), isPlanar(flags), _mm256_set1_ps(x), _mm256_set1_ps(y), _mm256_set1_ps(z),
                     lanes);
    return lanes[0];
}

}  // namespace

float BrickTexture3D::evaluate(const Record& r, int flags, float x, float y, float z) {
    const bool lanes = simdLevel() >= SimdLevel::kAvx2;
    switch (static_cast<Pattern>(r.pattern)) {
        case RUNNING_BOND:
            return lanes ? runningBondOnePoint(r, flags, x, y, z) : runningBond(r, flags, x, y, z);
        case HERRINGBONE:
        default:  // every value other than 1
            return lanes ? herringboneOnePoint(r, flags, x, y, z) : herringbone(r, flags, x, y, z);
    }
}

void BrickTexture3D::evaluateBlock(const Record& r, int flags, const float* points, int n, float* out) {
    if (simdLevel() < SimdLevel::kAvx2) {
        evaluateEach(r, flags, points, n, out);
        return;
    }
    const PointBlock p(points, n, 1.0f);
    const bool planar = isPlanar(flags);
    const bool bond = static_cast<Pattern>(r.pattern) == RUNNING_BOND;
    const BondFrame bondCells = bondFrame(r);
    const HerringboneFrame herringboneCells = herringboneFrame(r);
    int done = 0;
    for (; done + 8 <= n; done += 8) {
        if (bond)
            runningBond8(r, bondCells, planar, p.x + done, p.y + done, p.z + done, out + done);
        else
            herringbone8(r, herringboneCells, planar, p.x + done, p.y + done, p.z + done, out + done);
    }
    evaluateEach(r, flags, points + 3 * done, n - done, out + done);
}

// The one older layout this reads is version 3's.
static_assert(std::size(BrickTexture3D::kOlderMajorVersions) == 1 &&
              BrickTexture3D::kOlderMajorVersions[0] == v3::kMajorVersion);

void BrickTexture3D::convertOlderRecord(Record& r, const char* in) {
    readFloat(r.brickHeight, in, v3::kBrickHeight);
    readFloat(r.brickWidth, in, v3::kBrickWidth);
    readFloat(r.brickDepth, in, v3::kBrickDepth);
    readFloat(r.mortarThickness, in, v3::kMortarThickness);
    r.randomizeColors = static_cast<std::uint8_t>(in[v3::kRandomizeColors]);
    readFloat(r.minColor, in, v3::kMinColor);
    readFloat(r.maxColor, in, v3::kMaxColor);
}

template class RecordTexture3D<BrickTexture3D>;

}  // namespace gritwell
