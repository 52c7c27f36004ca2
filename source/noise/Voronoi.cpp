#include "noise/Voronoi.h"

#include <algorithm>
#include <cstddef>

#include "core/DistanceMetrics.h"
#include "core/FloatToInt.h"
#include "core/Rounding.h"
#include "core/Vec3.h"

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

namespace {

// Get for either dimension; calc fills F (and P) for the sample.
template <class Calc, class Recurse>
float combine(Voronoi::VoronoiType t, Calc calc, Recurse recurse) {
    float F[4];
    float P[12];
    switch (t) {
        case Voronoi::Difference21:
            calc(F, P);
            return scaled(F[1] - F[0]);
        case Voronoi::Difference32:
            calc(F, P);
            return scaled(F[2] - F[1]);
        case Voronoi::Crackle:
            // The recursive value is already scaled and is scaled once more:
            // stored records depend on the double scaling.
            return scaled(std::max(1.0f, 20.0f * recurse(Voronoi::Difference21)));
        case Voronoi::Second:
        case Voronoi::Third:
        case Voronoi::Fourth:
            calc(F, P);
            return scaled(F[t]);
        case Voronoi::First:
        default:
            calc(F, P);
            return scaled(F[0]);  // First, and every invalid type
    }
}

}  // namespace

float Voronoi::Get(float x, float y, VoronoiType t, DistanceMethod m) {
    return combine(
        t, [&](float* F, float* P) { Calculate(x, y, F, P, m); },
        [&](VoronoiType u) { return Get(x, y, u, m); });
}

float Voronoi::Get(float x, float y, float z, VoronoiType t, DistanceMethod m) {
    return combine(
        t, [&](float* F, float* P) { Calculate(x, y, z, F, P, m); },
        [&](VoronoiType u) { return Get(x, y, z, u, m); });
}

}  // namespace gritwell
