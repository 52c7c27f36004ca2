#include "noise/Voronoi.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/DistanceMetrics.h"
#include "core/FloatToInt.h"
#include "core/FloatToIntLanes.h"
#include "core/SimdLevel.h"
#include "core/SimdTargets.h"
#include "core/Rounding.h"
#include "core/Vec3.h"
#include "noise/DoubleLanes.h"

namespace gritwell {

namespace {

// ---- The fixed tables -------------------------------------------------------
//
// Stored records reproduce their look only with these exact tables. Their
// leading entries are fixed data; the rest comes from Marsaglia's 32-bit
// xorshift (shifts 13, 17, 5) started at kTableSeed, drawn in this order:
// first the Fisher-Yates shuffle of the Index values not in the prefix, then
// three offsets per remaining Coords row. Never change the generator, its
// seed or the draw order.

constexpr std::uint8_t kIndexPrefix[16] = {162, 160, 25,  59, 248, 235, 170, 238,
                                           243, 28,  103, 40, 29,  237, 0,   222};
constexpr Voronoi::Row kCoordsPrefix[4] = {{0.536902f, 0.020915f, 0.501445f},
                                           {0.216316f, 0.517036f, 0.822466f},
                                           {0.965315f, 0.377313f, 0.678764f},
                                           {0.744545f, 0.097731f, 0.396357f}};

// The first 32 bits of the fractional part of sqrt(2): any non-zero seed
// works, this one hides nothing.
constexpr std::uint32_t kTableSeed = 0x6a09e667u;

struct XorShift32 {
    std::uint32_t state;
    constexpr std::uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    // In [0, n): the high word of a 32 x 32-bit product.
    constexpr std::uint32_t below(std::uint32_t n) {
        return static_cast<std::uint32_t>((static_cast<std::uint64_t>(next()) * n) >> 32);
    }
    // In [0, 1): the top 24 bits, exact in a float.
    constexpr float unit() { return static_cast<float>(next() >> 8) * (1.0f / 16777216.0f); }
};

struct Tables {
    std::array<std::uint8_t, 256> index;
    std::array<Voronoi::Row, 256> coords;
};

constexpr Tables makeTables() {
    Tables t{};
    XorShift32 rng{kTableSeed};

    bool used[256] = {};
    std::size_t n = 0;
    for (const std::uint8_t v : kIndexPrefix) {
        t.index[n++] = v;
        used[v] = true;
    }
    const std::size_t restBegin = n;
    for (int v = 0; v < 256; ++v)
        if (!used[v]) t.index[n++] = static_cast<std::uint8_t>(v);
    for (std::size_t i = 255; i > restBegin; --i) {
        const std::size_t j = restBegin + rng.below(static_cast<std::uint32_t>(i - restBegin + 1));
        const std::uint8_t swap = t.index[i];
        t.index[i] = t.index[j];
        t.index[j] = swap;
    }

    std::size_t row = 0;
    for (const Voronoi::Row& r : kCoordsPrefix) t.coords[row++] = r;
    for (; row < 256; ++row)
        for (float& c : t.coords[row]) c = rng.unit();
    return t;
}

constexpr Tables kTables = makeTables();

// ---- The search -------------------------------------------------------------

// sqrt(2) / sqrt(3), applied to every result in double.
constexpr double kRoot2 = 1.4142135623730951;
constexpr double kRoot3 = 1.7320508075688772;

constexpr float kFarAway = 3.4028235e38f;  // the largest float

float measure(const Vec3& v, Voronoi::DistanceMethod m) {
    switch (m) {
        case Voronoi::LengthSquared:
            return sqrlen(v);
        case Voronoi::Manhattan:
            return manhattan(v);
        case Voronoi::Chebychev:
            return chebychev(v);
        case Voronoi::Quadratic:
            return quadratic(v);
        case Voronoi::Minkowski4:
            return minkowski4(v);
        case Voronoi::Minkowski5:
            return minkowski5(v);
        case Voronoi::Length:
        default:
            return len(v);  // Length and every value outside the enumeration
    }
}

// Inserts (d, q) into the ascending F/P lists. The comparisons are strict, so
// of equal distances the one visited first keeps the lower place.
void insert(float d, const Vec3& q, float* F, float* P) {
    int place = 0;
    while (place < 4 && !(d < F[place])) ++place;
    if (place == 4) return;
    for (int r = 3; r > place; --r) {
        F[r] = F[r - 1];
        P[3 * r] = P[3 * r - 3];
        P[3 * r + 1] = P[3 * r - 2];
        P[3 * r + 2] = P[3 * r - 1];
    }
    F[place] = d;
    P[3 * place] = q.x;
    P[3 * place + 1] = q.y;
    P[3 * place + 2] = q.z;
}

// Visits cells (cx-1..cx+1) x (cy-1..cy+1) x (k0..k1), i outermost, k innermost.
void search(const Vec3& s, int cx, int cy, int k0, int k1, float* F, float* P,
            Voronoi::DistanceMethod m) {
    std::fill_n(F, 4, kFarAway);
    std::fill_n(P, 12, 0.0f);
    for (int di = -1; di <= 1; ++di) {
        const int i = wrapAdd(cx, di);
        for (int dj = -1; dj <= 1; ++dj) {
            const int j = wrapAdd(cy, dj);
            for (int k = k0;; k = wrapAdd(k, 1)) {
                const float* c = Voronoi::GetPoint(i, j, k);
                const Vec3 q(static_cast<float>(i) + c[0], static_cast<float>(j) + c[1],
                             static_cast<float>(k) + c[2]);
                insert(measure(s - q, m), q, F, P);
                if (k == k1) break;
            }
        }
    }
}

float scaled(float v) { return static_cast<float>(static_cast<double>(v) * kRoot2 / kRoot3); }

}  // namespace

const std::array<std::uint8_t, 256>& Voronoi::IndexTable() { return kTables.index; }
const std::array<Voronoi::Row, 256>& Voronoi::CoordsTable() { return kTables.coords; }

const float* Voronoi::GetPoint(int i, int j, int k) {
    const auto& index = kTables.index;
    const int a = index[static_cast<std::size_t>(k & 255)];
    const int b = index[static_cast<std::size_t>(wrapAdd(a, j) & 255)];
    const int row = index[static_cast<std::size_t>(wrapAdd(b, i) & 255)];
    return kTables.coords[static_cast<std::size_t>(row)].data();
}

const float* Voronoi::GetPoint(int i, int j) { return GetPoint(i, j, 0); }

void Voronoi::Calculate(float x, float y, float* F, float* P, DistanceMethod m) {
    // Only the layer k = 0, measured from the slice z = 0: the feature's
    // height stays in the distance, as the 2-D look always had it.
    search(Vec3(x, y, 0.0f), TheFloor(x), TheFloor(y), 0, 0, F, P, m);
}

void Voronoi::Calculate(float x, float y, float z, float* F, float* P, DistanceMethod m) {
    const int cz = TheFloor(z);
    search(Vec3(x, y, z), TheFloor(x), TheFloor(y), wrapAdd(cz, -1), wrapAdd(cz, 1), F, P, m);
}

// ---- One point, distances only --------------------------------------------
//
// Get needs the distances of the search but not its features, so it runs a
// search of its own: the metric chosen once rather than per cell, the index
// chain of each layer and column looked up once and shared by the cells
// above it, and only as many places kept as the result reads. The values are
// those Calculate gives: of the same set of distances, the same N smallest.
//
// Length is compared squared and its root taken once at the end. sqrt is
// correctly rounded and so never reverses an order, and a key that reaches
// infinity (the only one whose root is not below kFarAway) stays out, as its
// distance would.

namespace {

// A metric as a key that orders as its distance does, the distance from the
// key, and the key that no distance of the search can reach.
struct LengthKey {
    static constexpr float kNone = __builtin_inff();
    static float key(const Vec3& v) { return sqrlen(v); }
    static float distance(float k) { return k == kNone ? kFarAway : std::sqrt(k); }
};

template <float (*Metric)(const Vec3&)>
struct PlainKey {
    static constexpr float kNone = kFarAway;
    [[gnu::always_inline]] static float key(const Vec3& v) { return Metric(v); }
    static float distance(float k) { return k; }
};

constexpr float squaredLength(const Vec3& v) { return sqrlen(v); }

// Keeps the N smallest keys ascending; a key that beats none leaves them.
template <int N>
[[gnu::always_inline]] inline void keep(float d, float* F) {
    for (int r = N - 1; r > 0; --r)
        if (d < F[r]) F[r] = d < F[r - 1] ? F[r - 1] : d;
    if (d < F[0]) F[0] = d;
}

// The index rows of the cells around cell (cx, cy, cz) in the visiting
// order: 3 x 3 columns of Layers cells (k from cz - Layers / 2 up).
template <int Layers>
[[gnu::always_inline]] inline void cellRows(int cx, int cy, int cz, std::uint8_t* rows) {
    const auto& index = kTables.index;
    auto low = [](int v) { return static_cast<std::uint8_t>(static_cast<unsigned>(v)); };
    std::uint8_t a[Layers], b[3][Layers];
    for (int dk = 0; dk < Layers; ++dk) a[dk] = index[low(wrapAdd(cz, dk - Layers / 2))];
    for (int dj = 0; dj < 3; ++dj)
        for (int dk = 0; dk < Layers; ++dk) b[dj][dk] = index[static_cast<std::uint8_t>(a[dk] + low(cy) + dj - 1)];
    for (int di = 0; di < 3; ++di) {
        const std::uint8_t x = static_cast<std::uint8_t>(low(cx) + di - 1);
        for (int dj = 0; dj < 3; ++dj)
            for (int dk = 0; dk < Layers; ++dk) *rows++ = index[static_cast<std::uint8_t>(b[dj][dk] + x)];
    }
}

// F[0..N-1] for the sample s in cell (cx, cy, cz): Layers 3 searches the
// cells around it in space; Layers 1 the plane's layer k = 0 alone (cz is 0).
// The chain is cellRows' steps, written into the loop: through an array of
// rows the plane's search ran 3 ns a point slower.
template <int N, int Layers, class Key>
void nearest(const Vec3& s, int cx, int cy, int cz, float* F) {
    const auto& index = kTables.index;
    auto low = [](int v) { return static_cast<std::uint8_t>(static_cast<unsigned>(v)); };
    float fi[3], fj[3], fk[Layers];
    std::uint8_t a[Layers], b[3][Layers];
    for (int d = 0; d < 3; ++d) {
        fi[d] = static_cast<float>(wrapAdd(cx, d - 1));
        fj[d] = static_cast<float>(wrapAdd(cy, d - 1));
    }
    for (int dk = 0; dk < Layers; ++dk) {
        const int k = wrapAdd(cz, dk - Layers / 2);
        fk[dk] = static_cast<float>(k);
        a[dk] = index[low(k)];
    }
    for (int dj = 0; dj < 3; ++dj)
        for (int dk = 0; dk < Layers; ++dk) b[dj][dk] = index[static_cast<std::uint8_t>(a[dk] + low(cy) + dj - 1)];
    for (int r = 0; r < N; ++r) F[r] = Key::kNone;
    for (int di = 0; di < 3; ++di) {
        const std::uint8_t x = static_cast<std::uint8_t>(low(cx) + di - 1);
        for (int dj = 0; dj < 3; ++dj)
            for (int dk = 0; dk < Layers; ++dk) {
                const Voronoi::Row& c = kTables.coords[index[static_cast<std::uint8_t>(b[dj][dk] + x)]];
                const Vec3 q(fi[di] + c[0], fj[dj] + c[1], fk[dk] + c[2]);
                keep<N>(Key::key(s - q), F);
            }
    }
    for (int r = 0; r < N; ++r) F[r] = Key::distance(F[r]);
}

// The combination Get returns from the N nearest distances the search finds.
template <int Layers, class Key>
float combineWith(const Vec3& s, int cx, int cy, int cz, Voronoi::VoronoiType t) {
    float F[4];
    switch (t) {
        case Voronoi::Difference21:
            nearest<2, Layers, Key>(s, cx, cy, cz, F);
            return scaled(F[1] - F[0]);
        case Voronoi::Difference32:
            nearest<3, Layers, Key>(s, cx, cy, cz, F);
            return scaled(F[2] - F[1]);
        case Voronoi::Crackle:
            // The difference is scaled, and scaled once more after the
            // floor: stored records depend on the double scaling.
            nearest<2, Layers, Key>(s, cx, cy, cz, F);
            return scaled(std::max(1.0f, 20.0f * scaled(F[1] - F[0])));
        case Voronoi::Second:
            nearest<2, Layers, Key>(s, cx, cy, cz, F);
            return scaled(F[1]);
        case Voronoi::Third:
            nearest<3, Layers, Key>(s, cx, cy, cz, F);
            return scaled(F[2]);
        case Voronoi::Fourth:
            nearest<4, Layers, Key>(s, cx, cy, cz, F);
            return scaled(F[3]);
        case Voronoi::First:
        default:
            nearest<1, Layers, Key>(s, cx, cy, cz, F);
            return scaled(F[0]);  // First, and every invalid type
    }
}

template <int Layers>
float getOne(const Vec3& s, int cx, int cy, int cz, Voronoi::VoronoiType t, Voronoi::DistanceMethod m) {
    switch (m) {
        case Voronoi::LengthSquared:
            return combineWith<Layers, PlainKey<squaredLength>>(s, cx, cy, cz, t);
        case Voronoi::Manhattan:
            return combineWith<Layers, PlainKey<manhattan>>(s, cx, cy, cz, t);
        case Voronoi::Chebychev:
            return combineWith<Layers, PlainKey<chebychev>>(s, cx, cy, cz, t);
        case Voronoi::Quadratic:
            return combineWith<Layers, PlainKey<quadratic>>(s, cx, cy, cz, t);
        case Voronoi::Minkowski4:
            return combineWith<Layers, PlainKey<minkowski4>>(s, cx, cy, cz, t);
        case Voronoi::Minkowski5:
            return combineWith<Layers, PlainKey<minkowski5>>(s, cx, cy, cz, t);
        case Voronoi::Length:
        default:
            return combineWith<Layers, LengthKey>(s, cx, cy, cz, t);  // and every value outside the enumeration
    }
}

}  // namespace

float Voronoi::Get(float x, float y, VoronoiType t, DistanceMethod m) {
    return getOne<1>(Vec3(x, y, 0.0f), TheFloor(x), TheFloor(y), 0, t, m);
}

namespace {
float firstInSpaceAcrossCells(const Vec3& s, int cx, int cy, int cz, Voronoi::DistanceMethod m);
}  // namespace

float Voronoi::Get(float x, float y, float z, VoronoiType t, DistanceMethod m) {
    const int cx = TheFloor(x), cy = TheFloor(y), cz = TheFloor(z);
    // F1 (and the invalid types, which read F1) across the lanes; Minkowski4's
    // root is the C library's powf, so it stays one cell at a time.
    const bool first = t == First || t < First || t > Crackle;
    if (first && m != Minkowski4 && simdLevel() >= SimdLevel::kAvx2)
        return scaled(firstInSpaceAcrossCells(Vec3(x, y, z), cx, cy, cz, m));
    return getOne<3>(Vec3(x, y, z), cx, cy, cz, t, m);
}

// ---- Eight points at a time ------------------------------------------------
//
// The searches and combination above, one lane per point, with the same
// operations in the same order: the cell by the round-to-nearest floor in
// double, the feature rows through the index table, the offsets, the
// distance by the record's metric, and the insertion into four ascending
// registers. F never holds a NaN, so the places a distance beats are a
// suffix of the list and each register takes the one below it, the
// distance, or stays, by the strict comparisons the scalar insert makes.
//
// The three dependent index lookups per cell are the slow part of the
// search. Gathers (and AVX-512 byte permutes, tried) left it at 54 ns a
// point; the byte chain in general registers, shared across each point's
// cells, with one 16-byte load per feature row, takes it to about 37. So
// AVX-512 processors run this kernel too.

namespace {

// A feature offset row padded to 16 bytes, so one load fetches it.
struct alignas(16) OffsetRow {
    float x, y, z, unused;
};

struct OffsetRows {
    OffsetRow row[256];
};

constexpr OffsetRows makeOffsetRows() {
    OffsetRows r{};
    for (int i = 0; i < 256; ++i) {
        const Voronoi::Row& c = kTables.coords[static_cast<std::size_t>(i)];
        r.row[i] = {c[0], c[1], c[2], 0.0f};
    }
    return r;
}

constexpr OffsetRows kOffsetRows = makeOffsetRows();

// The feature rows of the cells around each of eight points, in the
// search's visiting order: 3 x 3 columns of Layers cells each (three in
// space, one in the plane's layer k = 0). Only the low byte of a cell
// coordinate reaches the index table, so the chain runs on bytes; each
// point's k layer and (j, k) column are looked up once and shared by the
// cells above them.
template <int Layers>
void featureRows(const std::int32_t* cx, const std::int32_t* cy, const std::int32_t* cz,
                 std::uint8_t (&rows)[9 * Layers][8]) {
    const auto& index = kTables.index;
    auto low = [](std::int32_t v) { return static_cast<std::uint8_t>(static_cast<std::uint32_t>(v)); };
    for (int p = 0; p < 8; ++p) {
        const std::uint8_t x = low(cx[p]), y = low(cy[p]), z = low(cz[p]);
        std::uint8_t a[Layers], b[3][Layers];
        for (int dk = 0; dk < Layers; ++dk) a[dk] = index[static_cast<std::uint8_t>(z + dk - Layers / 2)];
        for (int dj = 0; dj < 3; ++dj)
            for (int dk = 0; dk < Layers; ++dk) b[dj][dk] = index[static_cast<std::uint8_t>(a[dk] + y + dj - 1)];
        for (int di = 0; di < 3; ++di)
            for (int dj = 0; dj < 3; ++dj)
                for (int dk = 0; dk < Layers; ++dk)
                    rows[(di * 3 + dj) * Layers + dk][p] = index[static_cast<std::uint8_t>(b[dj][dk] + x + di - 1)];
    }
}

struct OffsetLanes {
    __m256 x, y, z;
};

// Rows a and b of the offset table in the low and high halves.
GRITWELL_AVX2 inline __m256 rowPair(std::uint8_t a, std::uint8_t b) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_load_ps(&kOffsetRows.row[a].x)),
                                _mm_load_ps(&kOffsetRows.row[b].x), 1);
}

// Eight rows of the offset table as x, y and z lanes: one 16-byte load per
// row and a 4 x 4 transpose in each half.
GRITWELL_AVX2 inline OffsetLanes offsetsOf(const std::uint8_t* rows) {
    const __m256 t0 = rowPair(rows[0], rows[4]), t1 = rowPair(rows[1], rows[5]);
    const __m256 t2 = rowPair(rows[2], rows[6]), t3 = rowPair(rows[3], rows[7]);
    const __m256 xy01 = _mm256_unpacklo_ps(t0, t1), xy23 = _mm256_unpacklo_ps(t2, t3);
    const __m256 z01 = _mm256_unpackhi_ps(t0, t1), z23 = _mm256_unpackhi_ps(t2, t3);
    return {_mm256_shuffle_ps(xy01, xy23, _MM_SHUFFLE(1, 0, 1, 0)), _mm256_shuffle_ps(xy01, xy23, _MM_SHUFFLE(3, 2, 3, 2)),
            _mm256_shuffle_ps(z01, z23, _MM_SHUFFLE(1, 0, 1, 0))};
}

// TheFloor over four doubles: round(2 d - 0.5) >> 1.
GRITWELL_AVX2 inline __m128i floorQuad(__m256d d) {
    const __m256d doubled = _mm256_sub_pd(_mm256_mul_pd(_mm256_set1_pd(2.0), d), _mm256_set1_pd(0.5));
    return _mm_srai_epi32(roundToInt(doubled), 1);
}

// TheFloor of eight floats, each taken to double first.
GRITWELL_AVX2 inline __m256i floorLanes(__m256 v) {
    const DoubleLanes8 d = widen(v);
    return _mm256_inserti128_si256(_mm256_castsi128_si256(floorQuad(d.low)), floorQuad(d.high), 1);
}

// scaled(v), lane by lane.
GRITWELL_AVX2 inline __m256 scaledLanes(__m256 v) {
    const __m256d root2 = _mm256_set1_pd(kRoot2), root3 = _mm256_set1_pd(kRoot3);
    const DoubleLanes8 d = widen(v);
    return narrow({_mm256_div_pd(_mm256_mul_pd(d.low, root2), root3), _mm256_div_pd(_mm256_mul_pd(d.high, root2), root3)});
}

GRITWELL_AVX2 inline __m256 absLanes(__m256 v) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), v); }

// std::max(a, b): a unless a < b, so a NaN in a stays.
GRITWELL_AVX2 inline __m256 maxLanes(__m256 a, __m256 b) { return _mm256_max_ps(b, a); }

// sqrt(a) + sqrt(b) + sqrt(c), left to right.
GRITWELL_AVX2 inline __m256d rootSum(__m256d a, __m256d b, __m256d c) {
    return _mm256_add_pd(_mm256_add_pd(_mm256_sqrt_pd(a), _mm256_sqrt_pd(b)), _mm256_sqrt_pd(c));
}

// measure(v, m) lane by lane, for every metric the vector search takes.
GRITWELL_AVX2 inline __m256 measureLanes(Voronoi::DistanceMethod m, __m256 x, __m256 y, __m256 z) {
    const __m256 squared = _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(x, x), _mm256_mul_ps(y, y)), _mm256_mul_ps(z, z));
    switch (m) {
        case Voronoi::LengthSquared:
            return squared;
        case Voronoi::Manhattan: {
            const DoubleLanes8 ax = widen(absLanes(x)), ay = widen(absLanes(y)), az = widen(absLanes(z));
            const __m256 sum = narrow({_mm256_add_pd(_mm256_add_pd(ax.low, ay.low), az.low),
                                       _mm256_add_pd(_mm256_add_pd(ax.high, ay.high), az.high)});
            return _mm256_mul_ps(sum, sum);
        }
        case Voronoi::Chebychev: {
            const __m256 largest = maxLanes(maxLanes(absLanes(x), absLanes(y)), absLanes(z));
            return _mm256_mul_ps(largest, largest);
        }
        case Voronoi::Quadratic:
            return _mm256_add_ps(_mm256_add_ps(_mm256_add_ps(squared, _mm256_mul_ps(x, y)), _mm256_mul_ps(x, z)),
                                 _mm256_mul_ps(y, z));
        case Voronoi::Minkowski5: {
            const DoubleLanes8 ax = widen(absLanes(x)), ay = widen(absLanes(y)), az = widen(absLanes(z));
            const __m256 sum = narrow({rootSum(ax.low, ay.low, az.low), rootSum(ax.high, ay.high, az.high)});
            return _mm256_mul_ps(sum, sum);
        }
        default:
            return _mm256_sqrt_ps(squared);  // Length and every value outside the enumeration
    }
}

// Layers 3: the search in space around (xs, ys, zs). Layers 1: the plane's
// search, the layer k = 0 measured from z = 0 (zs is not read).
template <int Layers>
GRITWELL_AVX2 void get8(const float* xs, const float* ys, const float* zs, Voronoi::VoronoiType t,
                        Voronoi::DistanceMethod m, float* out) {
    const __m256 sx = _mm256_loadu_ps(xs), sy = _mm256_loadu_ps(ys);
    const __m256 sz = Layers == 3 ? _mm256_loadu_ps(zs) : _mm256_setzero_ps();
    const __m256i cx = floorLanes(sx), cy = floorLanes(sy);
    const __m256i cz = Layers == 3 ? floorLanes(sz) : _mm256_setzero_si256();
    alignas(32) std::int32_t cells[3][8];
    _mm256_store_si256(reinterpret_cast<__m256i*>(cells[0]), cx);
    _mm256_store_si256(reinterpret_cast<__m256i*>(cells[1]), cy);
    _mm256_store_si256(reinterpret_cast<__m256i*>(cells[2]), cz);
    std::uint8_t rows[9 * Layers][8];
    featureRows<Layers>(cells[0], cells[1], cells[2], rows);
    __m256 F[4];
    for (__m256& f : F) f = _mm256_set1_ps(kFarAway);
    const std::uint8_t* cellRows = rows[0];
    for (int di = -1; di <= 1; ++di) {
        const __m256 fi = _mm256_cvtepi32_ps(_mm256_add_epi32(cx, _mm256_set1_epi32(di)));
        for (int dj = -1; dj <= 1; ++dj) {
            const __m256 fj = _mm256_cvtepi32_ps(_mm256_add_epi32(cy, _mm256_set1_epi32(dj)));
            for (int dk = -(Layers / 2); dk <= Layers / 2; ++dk, cellRows += 8) {
                const __m256 fk = _mm256_cvtepi32_ps(_mm256_add_epi32(cz, _mm256_set1_epi32(dk)));
                const OffsetLanes offset = offsetsOf(cellRows);
                const __m256 qx = _mm256_add_ps(fi, offset.x);
                const __m256 qy = _mm256_add_ps(fj, offset.y);
                const __m256 qz = _mm256_add_ps(fk, offset.z);
                const __m256 vx = _mm256_sub_ps(sx, qx), vy = _mm256_sub_ps(sy, qy), vz = _mm256_sub_ps(sz, qz);
                const __m256 d = measureLanes(m, vx, vy, vz);
                const __m256 beats0 = _mm256_cmp_ps(d, F[0], _CMP_LT_OQ);
                const __m256 beats1 = _mm256_cmp_ps(d, F[1], _CMP_LT_OQ);
                const __m256 beats2 = _mm256_cmp_ps(d, F[2], _CMP_LT_OQ);
                const __m256 beats3 = _mm256_cmp_ps(d, F[3], _CMP_LT_OQ);
                F[3] = _mm256_blendv_ps(_mm256_blendv_ps(F[3], d, beats3), F[2], beats2);
                F[2] = _mm256_blendv_ps(_mm256_blendv_ps(F[2], d, beats2), F[1], beats1);
                F[1] = _mm256_blendv_ps(_mm256_blendv_ps(F[1], d, beats1), F[0], beats0);
                F[0] = _mm256_blendv_ps(F[0], d, beats0);
            }
        }
    }
    __m256 v;
    switch (t) {
        case Voronoi::Difference21: v = scaledLanes(_mm256_sub_ps(F[1], F[0])); break;
        case Voronoi::Difference32: v = scaledLanes(_mm256_sub_ps(F[2], F[1])); break;
        case Voronoi::Crackle: {
            // max(1, x) keeps 1 for a NaN x, as the comparison 1 < x does.
            const __m256 twenty = _mm256_mul_ps(_mm256_set1_ps(20.0f), scaledLanes(_mm256_sub_ps(F[1], F[0])));
            v = scaledLanes(_mm256_max_ps(twenty, _mm256_set1_ps(1.0f)));
            break;
        }
        case Voronoi::Second:
        case Voronoi::Third:
        case Voronoi::Fourth: v = scaledLanes(F[t]); break;
        case Voronoi::First:
        default: v = scaledLanes(F[0]); break;
    }
    _mm256_storeu_ps(out, v);
}

// ---- One point in space, its cells across the lanes ----------------------
//
// F1 alone is the least key of the 27 cells, whatever order they come in:
// keys are never NaN once kept and never -0, so the least is one value. So
// the cells go eight at a time through the lane steps of the kernel above,
// with one byte chain for the point, and the least of the lanes is taken at
// the end. Lanes past the last cell repeat the first.

struct CellOffsets {
    std::int32_t i[32], j[32], k[32];
};

constexpr CellOffsets makeCellOffsets() {
    CellOffsets o{};
    for (int n = 0; n < 32; ++n) {
        const int cell = n < 27 ? n : 0;
        o.i[n] = cell / 9 - 1;
        o.j[n] = cell / 3 % 3 - 1;
        o.k[n] = cell % 3 - 1;
    }
    return o;
}

constexpr CellOffsets kCellOffsets = makeCellOffsets();

// The eight cells' coordinates along one axis, c + offset with wrap-around, as floats.
GRITWELL_AVX2 inline __m256 cellLanes(__m256i c, const std::int32_t* offset) {
    return _mm256_cvtepi32_ps(_mm256_add_epi32(c, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(offset))));
}

GRITWELL_AVX2 float firstInSpaceAcrossCells(const Vec3& s, int cx, int cy, int cz, Voronoi::DistanceMethod m) {
    std::uint8_t rows[32];
    cellRows<3>(cx, cy, cz, rows);
    for (int n = 27; n < 32; ++n) rows[n] = rows[0];
    const bool length = m < Voronoi::LengthSquared || m > Voronoi::Minkowski5;
    const __m256 sx = _mm256_set1_ps(s.x), sy = _mm256_set1_ps(s.y), sz = _mm256_set1_ps(s.z);
    const __m256i ci = _mm256_set1_epi32(cx), cj = _mm256_set1_epi32(cy), ck = _mm256_set1_epi32(cz);
    __m256 least = _mm256_set1_ps(length ? LengthKey::kNone : kFarAway);
    for (int g = 0; g < 32; g += 8) {
        const OffsetLanes offset = offsetsOf(rows + g);
        const __m256 qx = _mm256_add_ps(cellLanes(ci, kCellOffsets.i + g), offset.x);
        const __m256 qy = _mm256_add_ps(cellLanes(cj, kCellOffsets.j + g), offset.y);
        const __m256 qz = _mm256_add_ps(cellLanes(ck, kCellOffsets.k + g), offset.z);
        const __m256 vx = _mm256_sub_ps(sx, qx), vy = _mm256_sub_ps(sy, qy), vz = _mm256_sub_ps(sz, qz);
        const __m256 key = length ? _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(vx, vx), _mm256_mul_ps(vy, vy)),
                                                  _mm256_mul_ps(vz, vz))
                                  : measureLanes(m, vx, vy, vz);
        least = _mm256_min_ps(key, least);  // keeps least for a NaN key
    }
    const __m128 four = _mm_min_ps(_mm256_castps256_ps128(least), _mm256_extractf128_ps(least, 1));
    const __m128 two = _mm_min_ps(four, _mm_movehl_ps(four, four));
    const float best = _mm_cvtss_f32(_mm_min_ss(two, _mm_shuffle_ps(two, two, 1)));
    return length ? LengthKey::distance(best) : best;
}

}  // namespace

void Voronoi::Get(const float* x, const float* y, const float* z, int n, VoronoiType t, DistanceMethod m,
                  float* out) {
    int done = 0;
    // Minkowski4's root is the C library's powf, so it stays one point at a time.
    if (m != Minkowski4 && simdLevel() >= SimdLevel::kAvx2)
        for (; done + 8 <= n; done += 8) get8<3>(x + done, y + done, z + done, t, m, out + done);
    for (; done < n; ++done) out[done] = Get(x[done], y[done], z[done], t, m);
}

void Voronoi::Get(const float* x, const float* y, int n, VoronoiType t, DistanceMethod m, float* out) {
    int done = 0;
    if (m != Minkowski4 && simdLevel() >= SimdLevel::kAvx2)
        for (; done + 8 <= n; done += 8) get8<1>(x + done, y + done, nullptr, t, m, out + done);
    for (; done < n; ++done) out[done] = Get(x[done], y[done], t, m);
}

}  // namespace gritwell
