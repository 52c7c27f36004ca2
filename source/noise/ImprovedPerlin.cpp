// Ken Perlin, "Improving Noise", SIGGRAPH 2002, and his reference code
// ImprovedNoise.java; noise3 gives its results bit for bit.
#include "noise/ImprovedPerlin.h"

#include <array>
#include <cmath>

#include "core/FloatToInt.h"
#include "noise/PerlinLattice.h"

namespace gritwell {

namespace {

using lattice::fade;
using lattice::interp;

// The reference grad picks u and v among x, y, z and negates them by the
// low four bits of the hash: twelve edge gradients, four of them repeated.
// Its choices are tabulated here from the reference's own conditions and
// applied without branches (hashes are random, so branches mispredict);
// multiplying by -1.0 is an exact negation, so the bits are the same.
struct GradientChoice {
    int u, v;      // 0 for x, 1 for y, 2 for z
    double su, sv;  // +1 or -1
};
constexpr std::array<GradientChoice, 16> kGradients = [] {
    std::array<GradientChoice, 16> g{};
    for (int h = 0; h < 16; ++h) {
        g[h].u = h < 8 ? 0 : 1;
        g[h].v = h < 4 ? 1 : h == 12 || h == 14 ? 0 : 2;
        g[h].su = (h & 1) == 0 ? 1.0 : -1.0;
        g[h].sv = (h & 2) == 0 ? 1.0 : -1.0;
    }
    return g;
}();

double grad(int hash, double x, double y, double z) {
    const GradientChoice& g = kGradients[hash & 15];
    const double c[3] = {x, y, z};
    return g.su * c[g.u] + g.sv * c[g.v];
}

// The lattice cell modulo 256 of an already floored coordinate; NaN and
// values beyond the int range land in cell 0.
int cell(double floored) { return truncToInt(floored) & 255; }

}  // namespace

double ImprovedPerlin::noise3(double x, double y, double z) const {
    const double fx = std::floor(x);
    const double fy = std::floor(y);
    const double fz = std::floor(z);
    const int X = cell(fx);
    const int Y = cell(fy);
    const int Z = cell(fz);
    x -= fx;
    y -= fy;
    z -= fz;
    const double u = fade(x);
    const double v = fade(y);
    const double w = fade(z);
    const std::array<int, 8> h = lattice::cornerHashes(X, Y, Z);
    return interp(w,
                  interp(v, interp(u, grad(h[0], x, y, z), grad(h[1], x - 1, y, z)),
                         interp(u, grad(h[2], x, y - 1, z), grad(h[3], x - 1, y - 1, z))),
                  interp(v, interp(u, grad(h[4], x, y, z - 1), grad(h[5], x - 1, y, z - 1)),
                         interp(u, grad(h[6], x, y - 1, z - 1), grad(h[7], x - 1, y - 1, z - 1))));
}

double ImprovedPerlin::noise1(double x) const {
    const double fx = std::floor(x);
    const int X = cell(fx);
    x -= fx;
    const std::array<int, 2> h = lattice::cornerHashes(X);
    const double g0 = (h[0] & 1) == 0 ? x : -x;
    const double g1 = (h[1] & 1) == 0 ? x - 1 : -(x - 1);
    return interp(fade(x), g0, g1);
}

}  // namespace gritwell
