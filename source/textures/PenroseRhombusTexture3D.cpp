// Pentagrid construction of the rhombus tiling after N. G. de Bruijn,
// "Algebraic theory of Penrose's non-periodic tilings of the plane" (1981).
#include "textures/PenroseRhombusTexture3D.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/FloatToInt.h"
#include "noise/CellNoise.h"

namespace gritwell {

namespace {

// The grid normals e_k = (cos 2πk/5, sin 2πk/5): cos 72° = (√5 − 1)/4,
// sin 72° = √(10 + 2√5)/4, cos 144° = −(√5 + 1)/4, sin 144° = √(10 − 2√5)/4.
constexpr double kCos72 = 0.30901699437494742;
constexpr double kSin72 = 0.95105651629515357;
constexpr double kCos144 = -0.80901699437494742;
constexpr double kSin144 = 0.58778525229247313;
constexpr double kNormalX[5] = {1.0, kCos72, kCos144, kCos144, kCos72};
constexpr double kNormalY[5] = {0.0, kSin72, kSin144, -kSin144, -kSin72};
// e_r × e_s = sin(2π(s − r)/5) and its inverse, by s − r in 1..4: the
// search multiplies rather than divides.
constexpr double kSine[5] = {0.0, kSin72, kSin144, -kSin144, -kSin72};
constexpr double kInverseSine[5] = {0.0, 1.0 / kSin72, 1.0 / kSin144, -1.0 / kSin144, -1.0 / kSin72};

// Line n of family k is {z : <z, e_k> + γ = n}, with the same offset γ = 1/5
// in every family. The sum 5γ = 1 is an integer, which makes the dual a
// Penrose tiling. No three lines meet: every three families are either
// k − 1, k, k + 1, tied by e_{k−1} + e_{k+1} = (τ − 1) e_k (τ the golden
// ratio), or k − 2, k, k + 2, tied by e_{k−2} + e_{k+2} = −τ e_k; three such
// lines through one point would give (n_{k−1} − γ) + (n_{k+1} − γ) =
// (τ − 1)(n_k − γ), or the like, whose irrational part forces n_k = γ, and
// 1/5 is no integer. Equal offsets also centre a five-fold star on the origin
// and make Σ γ e_k vanish, so the tiling's point p lies over grid point (2/5)p.
constexpr double kOffset = 0.2;
constexpr double kTileToGrid = 0.4;

// A tile's corners are Σ K_k e_k = (5/2)z + Σ δ_k e_k for its crossing z,
// with 0 <= δ_k <= 1; that decagon is centred on 0 and reaches φ ≈ 1.618
// along every e_k. So the crossing of the tile holding p lies within
// (2/5)φ ≈ 0.6472 of (2/5)p along every normal: at most two lines per
// family. The reach leaves a margin for rounding.
constexpr double kSearchReach = 0.65;

struct GridPoint {
    double x, y;
};

// Where line nr of family r crosses line ns of family s:
// <z, e_r> = nr − γ and <z, e_s> = ns − γ.
GridPoint crossingPoint(int r, int s, int nr, int ns) {
    const double rx = kNormalX[r], ry = kNormalY[r];
    const double sx = kNormalX[s], sy = kNormalY[s];
    const double a = static_cast<double>(nr) - kOffset;
    const double b = static_cast<double>(ns) - kOffset;
    const double inverse = kInverseSine[s - r];
    return {(a * sy - b * ry) * inverse, (b * rx - a * sx) * inverse};
}

// The tile of crossing z. Of the four meshes around z, the one just below
// both lines has indices K_k = ceil(<z, e_k> + γ) in the other families, nr
// and ns in these two; its vertex Σ K_k e_k is the tile's corner, and the
// other three meshes add e_r, e_s or both. The sums stay in double: line
// numbers of any size are safe.
PenroseRhombusTexture3D::Rhombus tileOfCrossing(int r, int s, int nr, int ns, GridPoint z) {
    double cx = static_cast<double>(nr) * kNormalX[r] + static_cast<double>(ns) * kNormalX[s];
    double cy = static_cast<double>(nr) * kNormalY[r] + static_cast<double>(ns) * kNormalY[s];
    for (int k = 0; k < 5; ++k) {
        if (k == r || k == s) continue;
        const double index = std::ceil(z.x * kNormalX[k] + z.y * kNormalY[k] + kOffset);
        cx += index * kNormalX[k];
        cy += index * kNormalY[k];
    }
    return {r, s, nr, ns, cx, cy};
}

// Whether crossing c lies within the search reach of the point, whose grid
// coordinates across the five families are `across`.
bool withinReach(GridPoint c, const double (&across)[5]) {
    for (int k = 0; k < 5; ++k)
        if (std::fabs(c.x * kNormalX[k] + c.y * kNormalY[k] + kOffset - across[k]) > kSearchReach) return false;
    return true;
}

}  // namespace

double PenroseRhombusTexture3D::depthInside(const Rhombus& t, double x, double y) {
    const double rx = kNormalX[t.r], ry = kNormalY[t.r];
    const double sx = kNormalX[t.s], sy = kNormalY[t.s];
    const double inverse = kInverseSine[t.s - t.r];
    const double dx = x - t.x, dy = y - t.y;
    // (dx, dy) = a e_r + b e_s.
    const double a = (dx * sy - dy * sx) * inverse;
    const double b = (rx * dy - ry * dx) * inverse;
    // The distance between opposite edges is the sine of the tile's angle.
    return std::min(std::min(a, 1.0 - a), std::min(b, 1.0 - b)) * std::fabs(kSine[t.s - t.r]);
}

namespace {

float tone(float lo, float hi, const PenroseRhombusTexture3D::Rhombus& t) {
    // One cell per crossing: its two line numbers and its pair of families.
    const float c = CellNoise::cellNoise(static_cast<float>(t.nr) + 0.5f,
                                         static_cast<float>(t.ns) + 0.5f,
                                         static_cast<float>(5 * t.r + t.s) + 0.5f);
    return lo + (hi - lo) * c;
}

}  // namespace

PenroseRhombusTexture3D::Rhombus PenroseRhombusTexture3D::rhombusOfCrossing(int r, int s, int nr, int ns) {
    return tileOfCrossing(r, s, nr, ns, crossingPoint(r, s, nr, ns));
}

std::optional<PenroseRhombusTexture3D::Rhombus> PenroseRhombusTexture3D::rhombusAt(double x, double y) {
    if (!(std::fabs(x) <= kMaxCoordinate && std::fabs(y) <= kMaxCoordinate)) return std::nullopt;

    // The grid point over (x, y), its coordinate across each family, and the
    // first of the two candidate lines of each family; within kMaxCoordinate
    // these line numbers are far from the int range.
    const GridPoint z{kTileToGrid * x, kTileToGrid * y};
    double across[5];
    int first[5];
    bool lineInReach[5][2];
    for (int k = 0; k < 5; ++k) {
        across[k] = z.x * kNormalX[k] + z.y * kNormalY[k] + kOffset;
        first[k] = cellIndex(across[k] - kSearchReach) + 1;
        for (int i = 0; i < 2; ++i)
            lineInReach[k][i] = std::fabs(static_cast<double>(first[k] + i) - across[k]) <= kSearchReach;
    }

    // Tiles do not overlap, so the first one holding the point is its tile.
    // Rounding can leave a point on a shared edge just outside both tiles:
    // the deepest candidate then stands in.
    Rhombus best{};
    double bestDepth = -INFINITY;
    for (int r = 0; r < 4; ++r)
        for (int s = r + 1; s < 5; ++s)
            for (int i = 0; i < 2; ++i)
                for (int j = 0; j < 2; ++j) {
                    const int nr = first[r] + i, ns = first[s] + j;
                    if (!lineInReach[r][i] || !lineInReach[s][j]) continue;
                    const GridPoint c = crossingPoint(r, s, nr, ns);
                    // Most candidates fail the reach across the other three
                    // families before their corner is summed.
                    if (!withinReach(c, across)) continue;
                    const Rhombus t = tileOfCrossing(r, s, nr, ns, c);
                    const double depth = depthInside(t, x, y);
                    if (depth >= 0.0) return t;
                    if (depth > bestDepth) {
                        bestDepth = depth;
                        best = t;
                    }
                }
    // Only rounding could defeat every reach test; any real tile nearby will do.
    if (bestDepth == -INFINITY) return rhombusOfCrossing(0, 1, first[0], first[1]);
    return best;
}

float PenroseRhombusTexture3D::evaluate(const Record& r, int, float x, float y, float) {
    const std::optional<Rhombus> tile = rhombusAt(x, y);
    if (!tile) return r.fatColor;  // NaN, infinite or beyond the tiled range
    // Each of the two tiles along an edge draws its half of the line. A
    // point that rounding left just outside every tile lies on an edge.
    if (r.edgeWidth > 0.0f && depthInside(*tile, x, y) < 0.5 * static_cast<double>(r.edgeWidth))
        return r.edgeColor;
    if (tile->fat()) return r.fatRandomize != 0 ? tone(r.fatMinColor, r.fatMaxColor, *tile) : r.fatColor;
    return r.skinnyRandomize != 0 ? tone(r.skinnyMinColor, r.skinnyMaxColor, *tile) : r.skinnyColor;
}

// The fields of version 1 lie where they lie now; only the edge is new.
static_assert(std::size(PenroseRhombusTexture3D::kOlderMajorVersions) == 1 &&
                  PenroseRhombusTexture3D::kOlderMajorVersions[0] == 1,
              "convertOlderRecord reads the version-1 layout alone");

void PenroseRhombusTexture3D::convertOlderRecord(Record& r, const char* in) {
    std::memcpy(reinterpret_cast<char*>(&r) + sizeof r.header, in + sizeof r.header,
                offsetof(Record, edgeWidth) - sizeof r.header);
    r.edgeWidth = 0.0f;
}

template class RecordTexture3D<PenroseRhombusTexture3D>;

}  // namespace gritwell
