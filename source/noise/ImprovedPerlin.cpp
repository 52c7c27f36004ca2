// Ken Perlin, "Improving Noise", SIGGRAPH 2002, and his reference code
// ImprovedNoise.java; noise3 gives its results bit for bit.
#include "noise/ImprovedPerlin.h"

#include <array>
#include <cmath>

#include "core/FloatToInt.h"
#include "noise/PerlinPermutation.h"

namespace gritwell {

namespace {

constexpr std::array<int, 512> kP = doubledPerlinPermutation<int>();

double fade(double t) { return t * t * t * (t * (t * 6 - 15) + 10); }

// Blends from a at t = 0 to b at t = 1 (unlike the library's global lerp).
double lerp(double t, double a, double b) { return a + t * (b - a); }

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
    const int A = kP[X] + Y;
    const int AA = kP[A] + Z;
    const int AB = kP[A + 1] + Z;
    const int B = kP[X + 1] + Y;
    const int BA = kP[B] + Z;
    const int BB = kP[B + 1] + Z;
    return lerp(w,
                lerp(v, lerp(u, grad(kP[AA], x, y, z), grad(kP[BA], x - 1, y, z)),
                     lerp(u, grad(kP[AB], x, y - 1, z), grad(kP[BB], x - 1, y - 1, z))),
                lerp(v, lerp(u, grad(kP[AA + 1], x, y, z - 1), grad(kP[BA + 1], x - 1, y, z - 1)),
                     lerp(u, grad(kP[AB + 1], x, y - 1, z - 1), grad(kP[BB + 1], x - 1, y - 1, z - 1))));
}

double ImprovedPerlin::noise1(double x) const {
    const double fx = std::floor(x);
    const int X = cell(fx);
    x -= fx;
    const double g0 = (kP[X] & 1) == 0 ? x : -x;
    const double g1 = (kP[X + 1] & 1) == 0 ? x - 1 : -(x - 1);
    return lerp(fade(x), g0, g1);
}

}  // namespace gritwell
